// The program killed at every step of every save of a day's use: sessions ended,
// sessions checkpointed, one across midnight into a new month, a session cut short
// and recovered at the next start. Each run lets the first k steps (a content
// write, or one of the renames and the deletion that put it in place) reach the
// disk and drops the rest, as a kill -9 at that moment would, or tears step k
// after some bytes, as a power cut would; then the program starts again from what
// is on disk, and the log must hold every session once, the one cut short from
// its last checkpoint.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "platform/binary_file.h"
#include "storage/fixed_text.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/startup.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;

// What one write carried, noted from the program's memory as the write happens.
struct WriteNote {
  SaveStep step;
  bool settingsFile;
  uint8_t marker;              // settings writes only
  std::string checkpointName;  // the open session's, with marker 218
  uint32_t elapsed;
  std::string previousName;    // the session just recorded, for log writes
};

// The cut: writes before `intact` reach the disk whole, write `intact` only `torn`
// bytes of itself, and every later one nothing: the process is dead.
struct Cut {
  std::size_t intact = SIZE_MAX;
  std::size_t torn = 0;
  std::size_t seen = 0;
  std::vector<WriteNote>* notes = nullptr;
};
Cut cut;

// A torn write that stops one byte short of its end.
constexpr std::size_t kAllButOne = SIZE_MAX;

std::size_t CutWrite(const char* path, SaveStep step, std::size_t size) {
  const std::size_t index = cut.seen++;
  if (cut.notes != nullptr) {
    // Not SettingsPath(): it rebuilds the text that path may point into.
    const bool settingsFile = std::string(path) != LogFilePath();
    const auto text = [](const char* field, std::size_t width) {
      return std::string(field, FixedTextLength(field, width));
    };
    cut.notes->push_back({step, settingsFile, settings.sessionOpenMarker,
                          text(settings.checkpointName, kCheckpointNameSize), settings.checkpointElapsed,
                          text(settings.previousSession.connectionName, kPreviousNameSize)});
  }
  if (index < cut.intact) return size;
  if (index > cut.intact) return 0;
  return cut.torn == kAllButOne ? size - 1 : cut.torn;
}

int alerts = 0;  // "Your log file is missing" and the like

const char* const kSessions[] = {"ISP A", "ISP B", "ISP C", "ISP D", "ISP E"};

// Where each session's writes fall in the list of writes of an uncut day.
// A save counts from its commit step on: from then a start finds the new content.
struct SessionWrites {
  std::vector<std::pair<std::size_t, uint32_t>> openSaves;  // (index, checkpoint elapsed)
  std::size_t logSave = SIZE_MAX;       // the log with its record
  int32_t recordedDuration = 0;

  // The elapsed seconds of the last checkpoint on disk when `writes` writes got there.
  uint32_t CheckpointBefore(std::size_t writes) const {
    uint32_t elapsed = 0;
    for (const auto& [index, seconds] : openSaves) {
      if (index < writes) elapsed = seconds;
    }
    return elapsed;
  }
  bool OpenedBefore(std::size_t writes) const { return !openSaves.empty() && openSaves[0].first < writes; }
};

class CrashRecovery : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    startupHooks = StartupHooks{};  // no installation, no message boxes
    startupHooks.showAlert = [](void*, const char*, const char*) { ++alerts; };
    startupHooks.showFileProblem = [](const char*, const char*) { ++alerts; };
  }
  void TearDown() override {
    cut = Cut{};
    startupHooks = PlatformStartupHooks();
    ProgramStateTest::TearDown();
  }

  // Nothing on disk: the day begins with a first run.
  void FreshInstall() {
    std::memset(&settings, 0, sizeof settings);
    sessionLog = SessionLog{};
    ResetSessionState();
    ras_ = ScriptedRas{};
    probe_ = DialUpProbe{};
    clock_ = FakeClock{};
    clock_.now = {2005, 2, 1, 28, 10, 0, 0};  // the session across midnight ends on 1 March
    for (const std::string& file : {std::string(SettingsPath()), LogFilePath()}) {
      for (const char* suffix : {"", ".tmp", ".new", ".prev"}) std::remove((file + suffix).c_str());
    }
    alerts = 0;
  }

  // A new process: memory lost, the files loaded as the main window does.
  void Start() {
    std::memset(&settings, 0, sizeof settings);
    sessionLog = SessionLog{};
    ResetSessionState();
    probe_ = DialUpProbe{};
    ASSERT_TRUE(InitialiseStorage(nullptr));
    RecoverInterruptedSession();
  }

  void Online(const char* name, uint32_t seconds) {
    ras_.Connect(name);
    Tick();
    RunOnline(seconds);
  }

  void OnlineThenOff(const char* name, uint32_t seconds) {
    Online(name, seconds);
    ras_.state = State::Disconnected;
    Tick();
  }

  // Two sessions, a third cut short by a kill while on-line, the start that
  // recovers it, one more session, and one across midnight.
  void PlayDay() {
    Start();
    OnlineThenOff("ISP A", 400);
    OnlineThenOff("ISP B", 200);
    Online("ISP C", 500);
    ras_.state = State::None;
    clock_.Advance(600);
    Start();
    OnlineThenOff("ISP D", 100);
    clock_.Advance(24 * 3600 - (clock_.now.hour * 3600 + clock_.now.minute * 60 + clock_.now.second) - 120);
    OnlineThenOff("ISP E", 400);
  }

  std::map<std::string, SessionWrites> MapUncutDay() {
    std::vector<WriteNote> notes;
    FreshInstall();
    cut = Cut{};
    cut.notes = &notes;
    platformState.fileWriteCutoff = CutWrite;
    PlayDay();
    platformState.fileWriteCutoff = nullptr;
    cut.notes = nullptr;

    std::map<std::string, SessionWrites> day;
    for (std::size_t i = 0; i < notes.size(); ++i) {
      const WriteNote& note = notes[i];
      if (note.step != SaveStep::Commit || (!note.settingsFile && note.previousName.empty())) continue;
      if (note.settingsFile && note.marker == kSessionOpen) {
        day[note.checkpointName].openSaves.push_back({i, note.elapsed});
      } else if (!note.settingsFile) {
        day[note.previousName].logSave = i;
      }
    }
    steps_ = notes;
    for (const SessionRecord& record : sessionLog.records) {
      if (record.status == InUse) day[record.connectionName].recordedDuration = record.durationSeconds;
    }
    writeCount_ = notes.size();
    return day;
  }

  // Plays the day with the given cut, then starts the program from the disk.
  void PlayDayCut(std::size_t intact, std::size_t torn) {
    FreshInstall();
    cut = Cut{};
    cut.intact = intact;
    cut.torn = torn;
    platformState.fileWriteCutoff = CutWrite;
    PlayDay();
    platformState.fileWriteCutoff = nullptr;
    ras_.state = State::None;
    alerts = 0;  // the dead program's messages were never seen
    Start();
  }

  std::vector<const SessionRecord*> RecordsOf(const char* name) const {
    std::vector<const SessionRecord*> found;
    for (const SessionRecord& record : sessionLog.records) {
      if (record.status == InUse && std::strcmp(record.connectionName, name) == 0) found.push_back(&record);
    }
    return found;
  }

  // After a cut, whatever the program did: every session once, the one cut short
  // from its last checkpoint on disk, the configuration whole, nothing open.
  void ExpectEverySessionOnce(const std::map<std::string, SessionWrites>& day, std::size_t k) {
    const std::vector<uint8_t> config = ReadBytes(SettingsPath());
    ASSERT_EQ(config.size(), sizeof(Settings));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(config.data())), kFormatMarker) << "never zeroed";
    EXPECT_EQ(config[134], kNoSessionOpen) << "the start recovered whatever was open";
    EXPECT_EQ(alerts, 0) << "a first run cut short is finished, not reported as a missing log";

    int expectedTotal = 0;
    for (const char* name : kSessions) {
      SCOPED_TRACE(name);
      const SessionWrites& session = day.at(name);
      const auto records = RecordsOf(name);
      if (session.logSave < k) {
        // Recorded, also when killed after the log save but before the marker
        // went back to 219: the next start finds it in the log and keeps it once.
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0]->durationSeconds, session.recordedDuration);
      } else if (session.OpenedBefore(k)) {
        ASSERT_EQ(records.size(), 1u) << "cut short: recorded once at the next start";
        const uint32_t checkpoint = session.CheckpointBefore(k);
        EXPECT_EQ(records[0]->durationSeconds, static_cast<int32_t>(checkpoint));
        EXPECT_EQ((records[0]->logOffHour * 3600 + records[0]->logOffMinute * 60 + records[0]->logOffSecond +
                   86400 - (records[0]->logOnHour * 3600 + records[0]->logOnMinute * 60 + records[0]->logOnSecond)) %
                      86400,
                  checkpoint)
            << "log-off is the checkpoint's time";
      } else {
        EXPECT_TRUE(records.empty()) << "killed before its first save: nothing to record";
      }
      expectedTotal += static_cast<int>(records.size());
    }
    EXPECT_EQ(std::count_if(sessionLog.records.begin(), sessionLog.records.end(),
                            [](const SessionRecord& record) { return record.status == InUse; }),
              expectedTotal)
        << "no other records";

    // Yet another start records nothing more, and no sibling file is left.
    const std::vector<uint8_t> log = ReadBytes(LogFilePath());
    Start();
    EXPECT_EQ(ReadBytes(LogFilePath()), log);
    for (const std::string& file : {std::string(SettingsPath()), LogFilePath()}) {
      EXPECT_FALSE(Exists(file + ".tmp") || Exists(file + ".new") || Exists(file + ".prev")) << file;
    }
  }

  std::vector<WriteNote> steps_;
  std::size_t writeCount_ = 0;
};

TEST_F(CrashRecovery, KilledAtEveryStepOrTornAtAnyByteEverySessionOnce) {
  const auto day = MapUncutDay();
  ASSERT_EQ(day.size(), 5u);
  // 0 is a kill before the step; the others tear a content write inside its
  // header, at its end, past the configuration's marker, inside the first
  // record, at the C library's buffer size, and one byte short.
  const std::size_t cuts[] = {0, 1, 7, 8, 135, 200, 4096, kAllButOne};
  for (std::size_t k = 0; k <= writeCount_; ++k) {
    for (const std::size_t torn : cuts) {
      if (torn != 0 && (k == writeCount_ || steps_[k].step != SaveStep::Content)) continue;
      SCOPED_TRACE("step " + std::to_string(k) + " of " + std::to_string(writeCount_) + " cut after " +
                   std::to_string(torn) + " bytes");
      PlayDayCut(k, torn);
      // A torn content write never reaches the file: it counts as a kill before it.
      ExpectEverySessionOnce(day, k);
    }
  }
}

// Another program holds the log (a folder in its place cannot be deleted either),
// so each save leaves its content as ".new". A kill at any step of the next save
// leaves the newest complete content for the next start.
TEST_F(CrashRecovery, AHeldLogKeepsItsNewestCompleteSaveAtEveryKill) {
  const std::string log = LogFilePath();
  std::filesystem::create_directories(log + "/held");
  const auto save = [&log](char fill) {
    const std::string content(300, fill);
    const WriteBlock block{content.data(), content.size()};
    return WriteFileStart(log.c_str(), &block, 1, false);
  };
  char first = 0;
  for (std::size_t k = 0;; ++k) {
    SCOPED_TRACE("killed before step " + std::to_string(k));
    EXPECT_FALSE(save('A')) << "complete, but the held log is not replaced";
    cut = Cut{};
    cut.intact = k;
    platformState.fileWriteCutoff = CutWrite;
    save('B');
    platformState.fileWriteCutoff = nullptr;
    FinishInterruptedSave(log.c_str());
    std::size_t read = 0;
    EXPECT_TRUE(ReadFileStart(log.c_str(), &first, 1, &read) && (first == 'A' || first == 'B'));
    EXPECT_FALSE(Exists(log + ".tmp") || Exists(log + ".prev"));
    if (cut.seen <= k) break;  // the save ran uncut
  }
  EXPECT_EQ(std::string(1, first), "B");

  // Let go, but with a ".prev" that cannot be deleted: ".new" is not put in place
  // while the older copy could outlive it.
  std::filesystem::remove_all(log);
  WriteBytes(log, {'A'});
  std::filesystem::create_directories(log + ".prev/held");
  FinishInterruptedSave(log.c_str());
  std::size_t read = 0;
  EXPECT_TRUE(Exists(log + ".new") && ReadFileStart(log.c_str(), &first, 1, &read) && first == 'B');
}

}  // namespace
