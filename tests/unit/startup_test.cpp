#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/binary_file.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/startup.h"
#include "test_support.h"

#ifdef _WIN32
#include <windows.h>
#include <objbase.h>
#include <shlobj.h>

#include "storage/win32/installation.h"
#endif

namespace {

std::vector<std::string> events;
std::string currentDirectory;
void* welcomeOwner = nullptr;
void* alertOwner = nullptr;
bool configExistedAtWelcome = false;

class Startup : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    welcomeOwner = alertOwner = nullptr;
    currentDirectory = ProgramFolder();
    startupHooks = StartupHooks{};
    startupHooks.showWelcome = [](void* owner) {
      welcomeOwner = owner;
      configExistedAtWelcome = std::filesystem::exists(SettingsPath());
      events.push_back("welcome");
    };
    startupHooks.showAlert = [](void* owner, const char* text, const char* caption) {
      alertOwner = owner;
      events.push_back(std::string("alert: ") + text + " | " + caption);
    };
    startupHooks.createProgramFolder = [] { events.push_back("create folder"); };
    startupHooks.installFiles = [] { events.push_back("copy files"); };
    startupHooks.createShortcuts = [] { events.push_back("shortcuts"); };
    startupHooks.setAutoStart = [](bool on) { events.push_back(on ? "autostart on" : "autostart off"); };
    startupHooks.currentDirectory = [] { return currentDirectory; };
    startupHooks.showFileProblem = [](const char* text, const char* caption) {
      events.push_back(std::string("problem: ") + text + " | " + caption);
    };
    installHooks.markFirstRun = [] { events.push_back("mark first run"); };
  }

  void TearDown() override {
    fileWriteCutoff = nullptr;
    startupHooks = PlatformStartupHooks();
    ProgramStateTest::TearDown();
  }

  // A configuration as a release with the given marker left it; memory is then
  // cleared again, as in a new process.
  // A configuration that has recorded a session unless told otherwise.
  void WriteConfiguration(const char* marker, uint32_t runAtStartup = 1, uint32_t previousSessionValid = 1) {
    const Settings inMemory = settings;
    std::memset(&settings, 0, sizeof settings);
    ApplyDefaultSettings();
    std::memset(settings.formatMarker, 0, sizeof settings.formatMarker);
    std::strcpy(settings.formatMarker, marker);
    std::strcpy(settings.currencyName, "DM");
    settings.runAtStartup = runAtStartup;
    settings.previousSessionValid = previousSessionValid;
    const auto* bytes = reinterpret_cast<const uint8_t*>(&settings);
    WriteBytes(SettingsPath(), std::vector<uint8_t>(bytes, bytes + sizeof settings));
    settings = inMemory;
  }

  // A current log holding one InUse record per name, then a Blank one; memory
  // is left alone.
  void WriteCurrentLog(const std::vector<std::string>& names) {
    std::vector<SessionRecord> records;
    for (const std::string& name : names) records.push_back(UsedRecord(name.c_str(), 60));
    records.push_back(SessionRecord{});
    const uint32_t header[2] = {static_cast<uint32_t>(records.size()), static_cast<uint32_t>(records.size() * 192)};
    std::vector<uint8_t> bytes(8 + records.size() * sizeof(SessionRecord));
    std::memcpy(bytes.data(), header, sizeof header);
    std::memcpy(bytes.data() + 8, records.data(), records.size() * sizeof(SessionRecord));
    WriteBytes(LogFilePath(), bytes);
  }

  // A legacy table of 2000 records with the given slots InUse.
  void WriteLegacyLog(const std::vector<std::size_t>& slots) {
    std::vector<uint8_t> bytes(kLegacyLogSlots * sizeof(SessionRecord), 0);
    for (std::size_t slot : slots) {
      uint8_t* record = &bytes[slot * sizeof(SessionRecord)];
      record[0] = InUse;
      const std::string name = "Slot " + std::to_string(slot);
      std::memcpy(record + offsetof(SessionRecord, connectionName), name.c_str(), name.size() + 1);
    }
    // A Deleted slot between them is dropped by the conversion.
    bytes[3 * sizeof(SessionRecord)] = Deleted;
    WriteBytes(LegacyLogPath(), bytes);
  }

  std::vector<std::string> LoadedNames() const {
    std::vector<std::string> names;
    for (const SessionRecord& record : sessionLog.records) {
      names.push_back(record.status == InUse ? std::string(record.connectionName) : std::string("<blank>"));
    }
    return names;
  }

  bool SettingsAreAllZero() const {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&settings);
    return std::all_of(bytes, bytes + sizeof settings, [](uint8_t b) { return b == 0; });
  }

  std::string MarkerOnDisk() const {
    const std::vector<uint8_t> bytes = ReadBytes(SettingsPath());
    return std::string(reinterpret_cast<const char*>(bytes.data()));
  }

  std::string AlertEvent() const { return std::string("alert: ") + kLogMissingText + " | " + kLogMissingCaption; }

  int owner_ = 0;  // stands for the main window
};

using Events = std::vector<std::string>;

// --- First run -------------------------------------------------------------

TEST_F(Startup, FirstRunWelcomesCreatesTheDefaultsAndInstalls) {
  currentDirectory = "/media/cdrom";
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{"welcome", "mark first run", "create folder", "copy files", "shortcuts", "autostart on",
                            "shortcuts", "autostart on"}));
  EXPECT_EQ(welcomeOwner, &owner_);
  EXPECT_FALSE(configExistedAtWelcome) << "the Welcome dialog comes before the configuration";

  const std::vector<uint8_t> config = ReadBytes(SettingsPath());
  ASSERT_EQ(config.size(), 6352u);
  EXPECT_EQ(MarkerOnDisk(), "orvalen_v015");
  EXPECT_EQ(U32At(config, 60), 1u) << "runAtStartup";
  EXPECT_EQ(config.at(134), 219);

  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 392u) << "a fresh log, without a message";
  EXPECT_EQ(sessionLog.count, 2u);
}

TEST_F(Startup, FirstRunLoadsACurrentLogThatIsAlreadyThere) {
  WriteCurrentLog({"Home ISP", "Office"});
  WriteLegacyLog({0});
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(LoadedNames(), (Events{"Home ISP", "Office", "<blank>"}));
  EXPECT_EQ(std::count(events.begin(), events.end(), AlertEvent()), 0);
}

TEST_F(Startup, FirstRunConvertsALegacyLogSilently) {
  WriteLegacyLog({0, 5, 1999});
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(LoadedNames(), (Events{"Slot 0", "Slot 5", "Slot 1999", "<blank>", "<blank>"}));
  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 8u + 5u * 192u);
  EXPECT_EQ(std::count(events.begin(), events.end(), AlertEvent()), 0);
}

TEST_F(Startup, FirstRunWithoutAWritableConfigurationStillMakesShortcutsAndAutostart) {
  SetWindowsDirectory(Path("no-such-windows-folder"));
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{"welcome", "shortcuts", "autostart on"}));
  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 392u);
}

TEST_F(Startup, FirstRunKeepsAnInstallRoutineThatIsAlreadySet) {
  installHooks.installProgram = [] { events.push_back("own install"); };
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{"welcome", "mark first run", "own install", "shortcuts", "autostart on"}));
}

// --- Normal start ----------------------------------------------------------

TEST_F(Startup, NormalStartFromTheProgramFolderInstallsNothingInAnyLetterCase) {
  WriteConfiguration("orvalen_v015");
  WriteCurrentLog({"Home ISP"});
  // A short file proves the block is written back: it comes out full length.
  std::vector<uint8_t> config = ReadBytes(SettingsPath());
  config.resize(200);
  WriteBytes(SettingsPath(), config);

  std::string folder = ProgramFolder();
  std::transform(folder.begin(), folder.end(), folder.begin(), [](unsigned char c) { return std::toupper(c); });
  ASSERT_NE(folder, ProgramFolder());
  currentDirectory = folder;

  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, Events{});
  EXPECT_STREQ(settings.currencyName, "DM");
  EXPECT_EQ(LoadedNames(), (Events{"Home ISP", "<blank>"}));
  EXPECT_EQ(ReadBytes(SettingsPath()).size(), 6352u);
}

TEST_F(Startup, NormalStartFromElsewhereReinstallsEvenWithAutostartSwitchedOff) {
  WriteConfiguration("orvalen_v015", 0);
  WriteCurrentLog({});
  currentDirectory = "/media/cdrom";
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{"copy files", "shortcuts", "autostart on"}));
  EXPECT_EQ(settings.runAtStartup, 0u);
  EXPECT_EQ(U32At(ReadBytes(SettingsPath()), 60), 0u);
}

TEST_F(Startup, AnEmptyCurrentDirectoryCountsAsElsewhere) {
  WriteConfiguration("orvalen_v015");
  WriteCurrentLog({});
  startupHooks.currentDirectory = nullptr;
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{"copy files", "shortcuts", "autostart on"}));
}

TEST_F(Startup, MissingLogShowsOneMessageAndCreatesAFreshLog) {
  WriteConfiguration("orvalen_v015");
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{AlertEvent()}));
  EXPECT_EQ(events[0], "alert: Your log file is missing, another one will be created | Orvalen Alert !!");
  EXPECT_EQ(alertOwner, &owner_);
  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 392u);
  EXPECT_EQ(sessionLog.count, 2u);
}

TEST_F(Startup, AFirstRunCutShortIsFinishedWithoutTheMissingLogMessage) {
  // Stopped before the configuration was whole (older releases left it empty) ...
  WriteBytes(SettingsPath(), {});
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events.at(0), "welcome");
  EXPECT_EQ(ReadBytes(SettingsPath()).size(), 6352u);
  // ... or between writing it and creating the log.
  events.clear();
  std::filesystem::remove(LogFilePath());
  WriteConfiguration("orvalen_v015", 1, 0);
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, Events{});
  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 392u);
}

TEST_F(Startup, MarkerInAnotherLetterCaseIsCurrent) {
  WriteConfiguration("ORVALEN_V015");
  WriteCurrentLog({"Home ISP"});
  WriteLegacyLog({0, 1});
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(LoadedNames(), (Events{"Home ISP", "<blank>"})) << "no conversion";
  EXPECT_EQ(MarkerOnDisk(), "ORVALEN_V015");
}

// --- Upgrade from an older release ----------------------------------------

TEST_F(Startup, UpgradeConvertsTheLegacyLogAndUpdatesTheMarker) {
  WriteConfiguration("orvalen_v012");
  WriteLegacyLog({0, 5, 1999});
  currentDirectory = "/media/cdrom";
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{"copy files", "shortcuts", "autostart on"})) << "no message";
  EXPECT_EQ(LoadedNames(), (Events{"Slot 0", "Slot 5", "Slot 1999", "<blank>", "<blank>"}));
  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 8u + 5u * 192u);
  EXPECT_EQ(MarkerOnDisk(), "orvalen_v015");
  EXPECT_STREQ(settings.currencyName, "DM") << "the rest of the configuration is kept";
}

TEST_F(Startup, UpgradeWithoutALegacyLogShowsTheMessageAndSkipsTheReinstall) {
  WriteConfiguration("orvalen_v012");
  currentDirectory = "/media/cdrom";
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, (Events{AlertEvent()}));
  EXPECT_EQ(ReadBytes(LogFilePath()).size(), 392u);
  EXPECT_EQ(sessionLog.count, 2u);
  EXPECT_EQ(MarkerOnDisk(), "orvalen_v015");
}

TEST_F(Startup, DamagedMarkerBesideACurrentLogKeepsTheLog) {
  WriteCurrentLog({"Home ISP"});
  const std::vector<uint8_t> log = ReadBytes(LogFilePath());
  WriteConfiguration("\x01garbage");
  WriteLegacyLog({0});
  EXPECT_TRUE(InitialiseStorage(&owner_));
  EXPECT_EQ(events, Events{}) << "no missing-log message, no conversion";
  EXPECT_EQ(ReadBytes(LogFilePath()), log);
  EXPECT_EQ(LoadedNames(), (Events{"Home ISP", "<blank>"}));
  EXPECT_EQ(MarkerOnDisk(), "orvalen_v015");
}

// --- Files that cannot be read, saves that fail ------------------------------

TEST_F(Startup, AnUnreadableFileIsToldOnceLeftAloneAndMergedWhenReadable) {
  struct Row {
    const char* marker;
    std::string (*path)();  // the file that is a folder
    bool currentLogOnDisk;
    bool started;                         // InitialiseStorage's result
    std::vector<std::string> afterSave;   // the log once the file can be read
  };
  const Row rows[] = {
      {"orvalen_v015", [] { return std::string(SettingsPath()); }, true, false, {"Home ISP", "Run"}},
      {"orvalen_v015", LogFilePath, false, true, {"Home ISP", "Run"}},
      {"orvalen_v012", LegacyLogPath, false, true, {"Slot 0", "Run", "<blank>"}},
  };
  for (const Row& row : rows) {
    const std::string path = row.path();
    SCOPED_TRACE(path);
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    events.clear();
    WriteConfiguration(row.marker);
    if (row.currentLogOnDisk) WriteCurrentLog({"Home ISP"});
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);

    EXPECT_EQ(InitialiseStorage(&owner_), row.started);
    const uint32_t slot = FindFreeSlot();
    SetRecordStatus(slot, InUse);
    SetRecordName(slot, "Run");
    SaveLog(LogFilePath().c_str());
    SaveSettings();
    ASSERT_EQ(events.size(), 1u) << "told once, and no other message";
    EXPECT_EQ(events[0].rfind("problem: Orvalen cannot read " + path + " (", 0), 0u) << events[0];
    EXPECT_TRUE(std::filesystem::is_directory(path)) << "left as it is";

    // Readable again: the next save keeps what is on disk and what was recorded.
    std::filesystem::remove(path);
    if (path == LogFilePath()) WriteCurrentLog({"Home ISP"});
    if (path == LegacyLogPath()) WriteLegacyLog({0});
    if (path == SettingsPath()) WriteConfiguration(row.marker);
    ASSERT_TRUE(SaveLog(LogFilePath().c_str()));
    EXPECT_EQ(LoadedNames(), row.afterSave);
    EXPECT_EQ(std::string(settings.formatMarker), "orvalen_v015");
    EXPECT_EQ(SaveSettings(), path != SettingsPath()) << "a configuration is read again at the next start";
    EXPECT_TRUE(InitialiseStorage(&owner_));
    EXPECT_EQ(LoadedNames(), row.afterSave);
  }
}

TEST_F(Startup, AFailedSaveIsToldOnceUntilASaveSucceedsAndTheDataStay) {
  WriteConfiguration("orvalen_v015");
  WriteCurrentLog({"Home ISP"});
  ASSERT_TRUE(InitialiseStorage(&owner_));
  fileWriteCutoff = [](const char*, SaveStep, std::size_t size) { return size - 1; };  // a full disk
  const std::vector<uint8_t> log = ReadBytes(LogFilePath());
  AppendToLog(UsedRecord("Run", 60));
  EXPECT_FALSE(SaveLog(LogFilePath().c_str()));
  EXPECT_FALSE(SaveLog(LogFilePath().c_str()));
  EXPECT_FALSE(SaveSettings());
  EXPECT_EQ(ReadBytes(LogFilePath()), log);
  const std::string told = "problem: Orvalen could not save " + LogFilePath() + " (";
  ASSERT_EQ(events.size(), 2u) << "once for each file";
  EXPECT_EQ(events[0].rfind(told, 0), 0u) << events[0];
  fileWriteCutoff = nullptr;
  EXPECT_TRUE(SaveLog(LogFilePath().c_str()));
  EXPECT_EQ(U32At(ReadBytes(LogFilePath()), 0), 3u) << "the next save has it all";
  fileWriteCutoff = [](const char*, SaveStep, std::size_t size) { return size - 1; };
  EXPECT_FALSE(SaveLog(LogFilePath().c_str()));
  fileWriteCutoff = nullptr;
  EXPECT_EQ(events.size(), 3u) << "a new run of failures is told again";
}

#ifdef _WIN32
// --- The system's side (Windows only) --------------------------------------

class Installation : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    GetCurrentDirectoryA(sizeof savedDirectory_, savedDirectory_);
    // The test must not lose a value that was there before it.
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kAutoStartKey, 0, KEY_READ, &key) == ERROR_SUCCESS) {
      savedSize_ = sizeof savedValue_;
      hadValue_ = RegQueryValueExA(key, kAutoStartValueName, nullptr, &savedType_, savedValue_, &savedSize_) ==
                  ERROR_SUCCESS;
      RegCloseKey(key);
    }
  }

  void TearDown() override {
    SetCurrentDirectoryA(savedDirectory_);
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kAutoStartKey, 0, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS) {
      if (hadValue_) {
        RegSetValueExA(key, kAutoStartValueName, 0, savedType_, savedValue_, savedSize_);
      } else {
        RegDeleteValueA(key, kAutoStartValueName);
      }
      RegCloseKey(key);
    }
    ProgramStateTest::TearDown();
  }

  // The autostart value's type and bytes; false when there is none.
  bool ReadAutoStart(DWORD* type, std::vector<uint8_t>* data) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kAutoStartKey, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    BYTE buffer[512] = {};
    DWORD size = sizeof buffer;
    const bool found = RegQueryValueExA(key, kAutoStartValueName, nullptr, type, buffer, &size) == ERROR_SUCCESS;
    RegCloseKey(key);
    if (found) data->assign(buffer, buffer + size);
    return found;
  }

  char savedDirectory_[MAX_PATH + 1] = {};
  bool hadValue_ = false;
  DWORD savedType_ = 0;
  BYTE savedValue_[512] = {};
  DWORD savedSize_ = 0;
};

TEST_F(Installation, AutoStartValueIsTheProgramPathIn101Bytes) {
  ASSERT_TRUE(SetAutoStart(true));
  DWORD type = 0;
  std::vector<uint8_t> data;
  ASSERT_TRUE(ReadAutoStart(&type, &data));
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  ASSERT_EQ(data.size(), 101u);
  std::vector<uint8_t> expected(101, 0);
  const char path[] = "C:\\Program Files\\Orvalen\\Orvalen.exe";
  std::memcpy(expected.data(), path, sizeof path);
  EXPECT_EQ(data, expected);

  EXPECT_TRUE(SetAutoStart(false));
  EXPECT_FALSE(ReadAutoStart(&type, &data));
  EXPECT_TRUE(SetAutoStart(false)) << "a missing value is not an error";
}

TEST_F(Installation, InstallFilesCopiesTheFourFilesFromTheCurrentDirectory) {
  const std::string medium = Path("medium");
  const std::string installed = Path("installed");
  std::filesystem::create_directory(medium);
  for (const char* name : {"Orvalen.exe", "ReadMe.txt", "OrvalenManual.doc", "Alarm.wav"}) {
    WriteBytes(JoinPath(medium, name), std::vector<uint8_t>(name, name + std::strlen(name)));
  }
  SetProgramFolder(installed);
  ASSERT_TRUE(CreateProgramFolder());
  EXPECT_TRUE(CreateProgramFolder()) << "an existing folder is not an error";
  WriteBytes(JoinPath(installed, "ReadMe.txt"), {'o', 'l', 'd'});
  std::filesystem::remove(JoinPath(medium, "Alarm.wav"));
  ASSERT_TRUE(SetCurrentDirectoryA(medium.c_str()));

  InstallFiles();
  for (const char* name : {"Orvalen.exe", "ReadMe.txt", "OrvalenManual.doc"}) {
    EXPECT_EQ(ReadBytes(JoinPath(installed, name)), std::vector<uint8_t>(name, name + std::strlen(name))) << name;
  }
  EXPECT_FALSE(Exists(JoinPath(installed, "Alarm.wav"))) << "a missing source is skipped";
  EXPECT_FALSE(PlatformStartupHooks().currentDirectory().empty());
}

TEST_F(Installation, CreateShortcutWritesALinkWithTargetAndDescription) {
  const std::string linkFile = Path("ReadMe.lnk");
  const long result = CreateShortcut("c:\\Program Files\\Orvalen\\ReadMe.txt", linkFile.c_str(), "ReadMe");
  ASSERT_TRUE(SUCCEEDED(result)) << std::hex << result;
  ASSERT_TRUE(Exists(linkFile));

  // Read it back through the shell's own link object.
  ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
  IShellLinkA* link = nullptr;
  ASSERT_TRUE(SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                         reinterpret_cast<void**>(&link))));
  IPersistFile* file = nullptr;
  ASSERT_TRUE(SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file))));
  WCHAR widePath[MAX_PATH + 1] = {};
  MultiByteToWideChar(CP_ACP, 0, linkFile.c_str(), -1, widePath, MAX_PATH);
  EXPECT_TRUE(SUCCEEDED(file->Load(widePath, STGM_READ)));
  char description[MAX_PATH] = {};
  link->GetDescription(description, sizeof description);
  EXPECT_STREQ(description, "ReadMe");
  char target[MAX_PATH] = {};
  link->GetPath(target, sizeof target, nullptr, 0);
  EXPECT_EQ(lstrcmpiA(target, "c:\\Program Files\\Orvalen\\ReadMe.txt"), 0) << target;
  file->Release();
  link->Release();
  CoUninitialize();
}

TEST_F(Installation, CreateShortcutReportsAFolderThatIsNotThere) {
  const long result =
      CreateShortcut("c:\\Program Files\\Orvalen\\Orvalen.exe", Path("missing\\Orvalen.lnk").c_str(), "Orvalen");
  EXPECT_TRUE(FAILED(result));
}
#endif

}  // namespace
