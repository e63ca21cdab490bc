// The start-up decision: first run, normal start, upgrade from an older release,
// missing or damaged files, an unreadable configuration, saves that fail.
#include <algorithm>
#include <cerrno>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/binary_file.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "storage/startup.h"
#include "test_support.h"

namespace {

using Texts = std::vector<std::string>;
Texts events;
std::string currentDirectory;

class Startup : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    currentDirectory = ProgramFolder();
    storage_.startupHooks.showWelcome = [](void*) { events.push_back("welcome"); };
    storage_.startupHooks.showAlert = [](void*, const char* text, const char* caption) {
      events.push_back(std::string("alert: ") + text + " | " + caption);
    };
    storage_.startupHooks.createProgramFolder = [] { events.push_back("create folder"); };
    storage_.startupHooks.installFiles = [] { events.push_back("copy files"); };
    storage_.startupHooks.createShortcuts = [] { events.push_back("shortcuts"); };
    storage_.startupHooks.setAutoStart = [](bool on) { events.push_back(on ? "autostart on" : "autostart off"); };
    storage_.startupHooks.currentDirectory = [] { return currentDirectory; };
    storage_.installHooks.markFirstRun = [] { events.push_back("mark first run"); };
  }

  // A configuration that has recorded a session unless told otherwise.
  void WriteConfiguration(const char* marker, uint32_t runAtStartup = 1, uint32_t previousSessionValid = 1) {
    const Settings inMemory = storage_.settings;
    std::memset(&storage_.settings, 0, sizeof storage_.settings);
    storage_.ApplyDefaultSettings();
    std::strcpy(storage_.settings.formatMarker, marker);
    std::strcpy(storage_.settings.currencyName, "DM");
    storage_.settings.runAtStartup = runAtStartup;
    storage_.settings.previousSessionValid = previousSessionValid;
    const auto* bytes = reinterpret_cast<const uint8_t*>(&storage_.settings);
    WriteBytes(SettingsPath(), std::vector<uint8_t>(bytes, bytes + sizeof storage_.settings));
    storage_.settings = inMemory;
  }

  // A current log holding one InUse record per name, then a Blank one; memory
  // is left alone.
  void WriteCurrentLog(const std::vector<std::string>& names) {
    std::vector<SessionRecord> records;
    for (const std::string& name : names) records.push_back(UsedRecord(name.c_str(), 60));
    records.push_back(SessionRecord{});
    WriteBytes(LogFilePath(), LogImage(static_cast<uint32_t>(records.size()), records));
  }

  // A legacy table, whole or up to its last slot in use, with the given slots InUse
  // and slot 3 Deleted.
  void WriteLegacyLog(const std::vector<std::size_t>& slots) {
    std::vector<SessionRecord> table(std::max<std::size_t>(slots.back() + 1, 4));
    for (std::size_t slot : slots) table[slot] = UsedRecord(("Slot " + std::to_string(slot)).c_str(), 60);
    table[3].status = Deleted;
    WriteBytes(LegacyLogPath(), RecordBytes(table));
  }

  Texts LoadedNames() {
    Texts names;
    for (const SessionRecord& record : storage_.sessionLog.records) {
      names.push_back(record.status == InUse ? std::string(record.connectionName) : std::string("<blank>"));
    }
    return names;
  }

  int owner_ = 0;  // stands for the main window
  struct : MonitorShell {
    void ShowFileProblem(const char* text, const char* caption) override {
      events.push_back(std::string("problem: ") + text + " | " + caption);
    }
  } problems_;
};

const std::string kAlert = "alert: Your log file is missing, another one will be created | Orvalen Alert !!";
const Texts kReinstall = {"copy files", "shortcuts", "autostart on"};
enum Folder { FromProgramFolder, FromProgramFolderInCapitals, FromElsewhere, FromNowhere };

struct StartRow {
  const char* what;
  const char* marker = nullptr;  // nullptr: no configuration; "": an empty file
  uint32_t runAtStartup = 1;
  const Texts* log = nullptr;    // nullptr: no current log
  std::vector<std::size_t> legacySlots = {};
  Folder folder;
  const Texts* events;
  Texts loaded;
  const char* markerOnDisk = "orvalen_v015";
  std::size_t logSize = 0;  // 0: the log as it was written
  uint32_t previousSessionValid = 1;
  bool logAsNew = false;  // the log left as a lone ".new" by a save killed after removing the log
};

TEST_F(Startup, DecisionTable) {
  const Texts none, home = {"Home ISP"}, two = {"Home ISP", "Office"}, quiet, alert = {kAlert};
  const Texts firstRun = {"welcome", "mark first run", "create folder", "copy files", "shortcuts", "autostart on",
                          "shortcuts", "autostart on"};
  const StartRow rows[] = {
      {.what = "first run", .folder = FromElsewhere, .events = &firstRun, .loaded = {"<blank>", "<blank>"},
       .logSize = 392},
      {.what = "a first run cut short before the configuration was whole", .marker = "", .folder = FromElsewhere,
       .events = &firstRun, .loaded = {"<blank>", "<blank>"}, .logSize = 392},
      {.what = "a first run cut short before the log: no message", .marker = "orvalen_v015",
       .folder = FromProgramFolder, .events = &quiet, .loaded = {"<blank>", "<blank>"}, .logSize = 392,
       .previousSessionValid = 0},
      {.what = "first run beside a current log", .log = &two, .legacySlots = {0}, .folder = FromProgramFolder,
       .events = &firstRun, .loaded = {"Home ISP", "Office", "<blank>"}},
      {.what = "first run converts a legacy log silently", .legacySlots = {0, 5, 1999}, .folder = FromProgramFolder,
       .events = &firstRun, .loaded = {"Slot 0", "Slot 5", "Slot 1999", "<blank>", "<blank>"},
       .logSize = 8 + 5 * 192},
      {.what = "normal start from the program folder in capitals", .marker = "orvalen_v015", .log = &home,
       .folder = FromProgramFolderInCapitals, .events = &quiet, .loaded = {"Home ISP", "<blank>"}, .logAsNew = true},
      {.what = "normal start from elsewhere reinstalls, autostart off or not", .marker = "orvalen_v015",
       .runAtStartup = 0, .log = &none, .folder = FromElsewhere, .events = &kReinstall, .loaded = {"<blank>"}},
      {.what = "no current directory counts as elsewhere", .marker = "orvalen_v015", .log = &none,
       .folder = FromNowhere, .events = &kReinstall, .loaded = {"<blank>"}},
      {.what = "missing log: one message and a fresh log", .marker = "orvalen_v015", .folder = FromProgramFolder,
       .events = &alert, .loaded = {"<blank>", "<blank>"}, .logSize = 392},
      {.what = "marker in another letter case is current", .marker = "ORVALEN_V015", .log = &home,
       .legacySlots = {0, 1}, .folder = FromProgramFolder, .events = &quiet, .loaded = {"Home ISP", "<blank>"},
       .markerOnDisk = "ORVALEN_V015"},
      {.what = "upgrade converts a short legacy log", .marker = "orvalen_v012", .legacySlots = {0, 5},
       .folder = FromElsewhere, .events = &kReinstall, .loaded = {"Slot 0", "Slot 5", "<blank>", "<blank>"},
       .logSize = 8 + 4 * 192},
      {.what = "upgrade without a legacy log: the message, no reinstall", .marker = "orvalen_v012",
       .folder = FromElsewhere, .events = &alert, .loaded = {"<blank>", "<blank>"}, .logSize = 392},
      {.what = "damaged marker beside a current log keeps the log", .marker = "\x01rvalen_v015", .log = &home,
       .legacySlots = {0}, .folder = FromProgramFolder, .events = &quiet, .loaded = {"Home ISP", "<blank>"}},
  };
  for (const StartRow& row : rows) {
    SCOPED_TRACE(row.what);
    std::filesystem::remove(SettingsPath());
    std::filesystem::remove(LogFilePath());
    std::filesystem::remove(LegacyLogPath());
    events.clear();
    storage_.startupHooks.currentDirectory = [] { return currentDirectory; };
    if (row.marker != nullptr) {
      WriteConfiguration(row.marker, row.runAtStartup, row.previousSessionValid);
      // A short file proves the block is written back: it comes out full length.
      std::vector<uint8_t> config = ReadBytes(SettingsPath());
      config.resize(*row.marker != '\0' ? 200 : 0);
      WriteBytes(SettingsPath(), config);
    }
    if (row.log != nullptr) WriteCurrentLog(*row.log);
    const std::vector<uint8_t> logBefore = ReadBytes(LogFilePath());
    if (row.logAsNew) std::filesystem::rename(LogFilePath(), LogFilePath() + ".new");
    if (!row.legacySlots.empty()) WriteLegacyLog(row.legacySlots);
    const std::vector<uint8_t> legacyBefore = ReadBytes(LegacyLogPath());
    currentDirectory = ProgramFolder();
    if (row.folder == FromProgramFolderInCapitals) {
      std::transform(currentDirectory.begin(), currentDirectory.end(), currentDirectory.begin(),
                     [](unsigned char c) { return std::toupper(c); });
    }
    if (row.folder == FromElsewhere) currentDirectory = "/media/cdrom";
    if (row.folder == FromNowhere) storage_.startupHooks.currentDirectory = nullptr;

    EXPECT_TRUE(storage_.InitialiseStorage(&owner_));
    EXPECT_EQ(events, *row.events);
    EXPECT_EQ(LoadedNames(), row.loaded);
    const std::vector<uint8_t> config = ReadBytes(SettingsPath());
    ASSERT_EQ(config.size(), 6352u);
    EXPECT_STREQ(reinterpret_cast<const char*>(config.data()), row.markerOnDisk);
    EXPECT_EQ(U32At(config, 60), row.runAtStartup) << "run at startup is kept";
    EXPECT_EQ(config.at(134), 219);
    if (row.marker != nullptr && *row.marker != '\0') {
      EXPECT_STREQ(storage_.settings.currencyName, "DM") << "the rest of the configuration is kept";
    }
    EXPECT_EQ(ReadBytes(LegacyLogPath()), legacyBefore) << "never written";
    if (row.logSize != 0) {
      EXPECT_EQ(ReadBytes(LogFilePath()).size(), row.logSize);
    } else {
      EXPECT_EQ(ReadBytes(LogFilePath()), logBefore) << "the log is not rewritten";
    }
  }
}

// --- Files that cannot be read, saves that fail ------------------------------

TEST_F(Startup, AnUnreadableFileIsToldOnceLeftAloneAndMergedWhenReadable) {
  struct Row {
    const char* marker;  // nullptr: no configuration, a first run
    std::string (*path)();  // the file that is a folder
    bool currentLogOnDisk;
    bool started;                         // InitialiseStorage's result
    std::vector<std::string> afterSave;   // the log once the file can be read
  };
  const Row rows[] = {
      {.marker = "orvalen_v015", .path = [] { return std::string(SettingsPath()); }, .currentLogOnDisk = true,
       .started = false, .afterSave = {"Home ISP", "Run"}},
      {.marker = "orvalen_v015", .path = LogFilePath, .currentLogOnDisk = false, .started = true,
       .afterSave = {"Home ISP", "Run"}},
      {.marker = "orvalen_v012", .path = LegacyLogPath, .currentLogOnDisk = false, .started = true,
       .afterSave = {"Slot 0", "Run", "<blank>"}},
      {.marker = nullptr, .path = LegacyLogPath, .currentLogOnDisk = false, .started = true,
       .afterSave = {"Slot 0", "Run", "<blank>"}},
  };
  for (const Row& row : rows) {
    const std::string path = row.path();
    SCOPED_TRACE(path);
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    events.clear();
    if (row.marker != nullptr) WriteConfiguration(row.marker);
    if (row.currentLogOnDisk) WriteCurrentLog({"Home ISP"});
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);

    EXPECT_EQ(storage_.InitialiseStorage(&owner_), row.started);
    EXPECT_EQ(storage_.settings.accounts[0].connectionName[0], '\0') << "no account from a configuration not read";
    const uint32_t slot = storage_.FindFreeSlot();
    storage_.SetRecordStatus(slot, InUse);
    storage_.SetRecordName(slot, "Run");
    EXPECT_EQ(storage_.SaveLog(LogFilePath().c_str()), path == SettingsPath()) << "nothing saved while the log cannot be read";
    (void)storage_.SaveSettings();
    monitor_.ShowPendingNotices(problems_);
    const auto told = std::count_if(events.begin(), events.end(), [](const std::string& event) {
      return event.rfind("problem: ", 0) == 0 || event.rfind("alert: ", 0) == 0;
    });
    ASSERT_EQ(told, 1) << "told once, and no other message";
    EXPECT_EQ(events.back().rfind("problem: Orvalen cannot read " + path + " (", 0), 0u) << events.back();
    EXPECT_TRUE(std::filesystem::is_directory(path)) << "left as it is";

    // Readable again: the next save keeps what is on disk and what was recorded.
    std::filesystem::remove(path);
    if (path == LogFilePath()) WriteCurrentLog({"Home ISP"});
    if (path == LegacyLogPath()) WriteLegacyLog({0});
    if (path == SettingsPath()) WriteConfiguration(row.marker);
    ASSERT_TRUE(storage_.SaveLog(LogFilePath().c_str()));
    EXPECT_FALSE(storage_.holds.Held(kLogFile)) << "the hold ends";
    EXPECT_EQ(LoadedNames(), row.afterSave);
    EXPECT_EQ(std::string(storage_.settings.formatMarker), "orvalen_v015");
    EXPECT_EQ(storage_.SaveSettings(), path != SettingsPath()) << "a configuration is read again at the next start";
    EXPECT_TRUE(storage_.InitialiseStorage(&owner_));
    EXPECT_EQ(LoadedNames(), row.afterSave);
  }
}

// What stays on disk and in memory is the simulation's matter; here, what is told.
TEST_F(Startup, AFailedSaveIsToldOnceUntilASaveSucceeds) {
  WriteConfiguration("orvalen_v015");
  WriteCurrentLog({"Home ISP"});
  ASSERT_TRUE(storage_.InitialiseStorage(&owner_));
  const auto fullDisk = [](std::FILE*) {
    errno = ENOSPC;
    return false;
  };
  platformState.fileCalls.commit = fullDisk;
  AppendToLog(UsedRecord("Run", 60));
  EXPECT_FALSE(storage_.SaveLog(LogFilePath().c_str()));
  monitor_.ShowPendingNotices(problems_);  // shown before the next failure
  EXPECT_FALSE(storage_.SaveLog(LogFilePath().c_str()));
  EXPECT_FALSE(storage_.SaveSettings());
  monitor_.ShowPendingNotices(problems_);
  const std::string told = "problem: Orvalen could not save " + LogFilePath() + " (";
  ASSERT_EQ(events.size(), 2u) << "once for each file";
  EXPECT_EQ(events[0].rfind(told, 0), 0u) << events[0];
  platformState.fileCalls.commit = nullptr;
  EXPECT_TRUE(storage_.SaveLog(LogFilePath().c_str()));
  platformState.fileCalls.commit = fullDisk;
  AppendToLog(UsedRecord("Run", 60));
  EXPECT_FALSE(storage_.SaveLog(LogFilePath().c_str()));
  platformState.fileCalls.commit = nullptr;
  monitor_.ShowPendingNotices(problems_);
  EXPECT_EQ(events.size(), 3u) << "a new run of failures is told again";
}

}  // namespace
