// The program killed at every file write of a day's use: sessions ended, sessions
// checkpointed, a session cut short and recovered at the next start. Each run
// lets the first k writes reach the disk and drops the rest, as a kill -9 at that
// moment would; then the program starts again from what is on disk, and the log
// must hold every session once, the one cut short from its last checkpoint.
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "storage/binary_file.h"
#include "storage/fixed_text.h"
#include "storage/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/startup.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;

// What one write carried, noted from the program's memory as the write happens.
struct WriteNote {
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

std::size_t CutWrite(const char* path, std::size_t size) {
  const std::size_t index = cut.seen++;
  if (cut.notes != nullptr) {
    // Not SettingsPath(): it rebuilds the text that path may point into.
    const bool settingsFile = std::string(path) != LogFilePath();
    const auto text = [](const char* field, std::size_t width) {
      return std::string(field, FixedTextLength(field, width));
    };
    cut.notes->push_back({settingsFile, settings.sessionOpenMarker,
                          text(settings.checkpointName, kCheckpointNameSize), settings.checkpointElapsed,
                          text(settings.previousSession.connectionName, kPreviousNameSize)});
  }
  if (index < cut.intact) return size;
  return index == cut.intact ? cut.torn : 0;
}

const char* const kSessions[] = {"ISP A", "ISP B", "ISP C", "ISP D"};

// Where each session's writes fall in the list of writes of an uncut day.
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
  }
  void TearDown() override {
    fileWriteCutoff = nullptr;
    cut = Cut{};
    startupHooks = PlatformStartupHooks();
    ProgramStateTest::TearDown();
  }

  // A first run's files, then nothing else on disk.
  void FreshInstall() {
    std::memset(&settings, 0, sizeof settings);
    sessionLog = SessionLog{};
    ResetSessionState();
    ras_ = ScriptedRas{};
    probe_ = DialUpProbe{};
    clock_ = FakeClock{};
    ASSERT_TRUE(CreateSettings(SettingsPath()));
    ASSERT_TRUE(CreateEmptyLog(LogFilePath().c_str()));
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

  void Tick() { RunSessionStep(probe_); }

  void Online(const char* name, uint32_t seconds) {
    ras_.Connect(name);
    Tick();
    for (uint32_t elapsed = 1; elapsed <= seconds; ++elapsed) {
      clock_.Advance(1);
      Tick();
      if (elapsed % 180 == 0) OnCheckpointTimer();
    }
  }

  // Two sessions, a third cut short by a kill while on-line, the start that
  // recovers it, and one more session.
  void PlayDay() {
    Online("ISP A", 400);
    ras_.state = State::Disconnected;
    Tick();
    Online("ISP B", 200);
    ras_.state = State::Disconnected;
    Tick();
    Online("ISP C", 500);
    ras_.state = State::None;
    clock_.Advance(600);
    Start();
    Online("ISP D", 100);
    ras_.state = State::Disconnected;
    Tick();
  }

  std::map<std::string, SessionWrites> MapUncutDay() {
    std::vector<WriteNote> notes;
    FreshInstall();
    cut = Cut{};
    cut.notes = &notes;
    fileWriteCutoff = CutWrite;
    PlayDay();
    fileWriteCutoff = nullptr;
    cut.notes = nullptr;

    std::map<std::string, SessionWrites> day;
    for (std::size_t i = 0; i < notes.size(); ++i) {
      const WriteNote& note = notes[i];
      if (note.settingsFile && note.marker == kSessionOpen) {
        day[note.checkpointName].openSaves.push_back({i, note.elapsed});
      } else if (!note.settingsFile) {
        day[note.previousName].logSave = i;
      }
    }
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
    fileWriteCutoff = CutWrite;
    PlayDay();
    fileWriteCutoff = nullptr;
    ras_.state = State::None;
    Start();
  }

  std::vector<const SessionRecord*> RecordsOf(const char* name) const {
    std::vector<const SessionRecord*> found;
    for (const SessionRecord& record : sessionLog.records) {
      if (record.status == InUse && std::strcmp(record.connectionName, name) == 0) found.push_back(&record);
    }
    return found;
  }

  int InUseCount() const {
    int count = 0;
    for (const SessionRecord& record : sessionLog.records) count += record.status == InUse ? 1 : 0;
    return count;
  }

  std::size_t writeCount_ = 0;
  DialUpProbe probe_;
};

TEST_F(CrashRecovery, KilledAtEveryWriteEverySessionOnce) {
  const auto day = MapUncutDay();
  ASSERT_EQ(day.size(), 4u);
  for (std::size_t k = 0; k <= writeCount_; ++k) {
    SCOPED_TRACE("killed before write " + std::to_string(k) + " of " + std::to_string(writeCount_));
    PlayDayCut(k, 0);
    const std::vector<uint8_t> config = ReadBytes(SettingsPath());
    ASSERT_EQ(config.size(), sizeof(Settings));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(config.data())), kFormatMarker) << "never zeroed";
    EXPECT_EQ(config[134], kNoSessionOpen) << "the start recovered whatever was open";

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
        EXPECT_EQ(records[0]->durationSeconds, static_cast<int32_t>(session.CheckpointBefore(k)));
        EXPECT_EQ(records[0]->logOffHour * 3600 + records[0]->logOffMinute * 60 + records[0]->logOffSecond -
                      (records[0]->logOnHour * 3600 + records[0]->logOnMinute * 60 + records[0]->logOnSecond),
                  session.CheckpointBefore(k))
            << "log-off is the checkpoint's time";
      } else {
        EXPECT_TRUE(records.empty()) << "killed before its first save: nothing to record";
      }
      expectedTotal += static_cast<int>(records.size());
    }
    EXPECT_EQ(InUseCount(), expectedTotal) << "no other records";

    // Yet another start records nothing more.
    const std::vector<uint8_t> log = ReadBytes(LogFilePath());
    Start();
    EXPECT_EQ(ReadBytes(LogFilePath()), log);
  }
}

TEST_F(CrashRecovery, TornWritesNeverLoseARecordedSessionNorZeroTheSettings) {
  // A power cut can leave part of a write. The program's own kills cannot (each
  // save is one write), but whatever part lands, the start must still work and
  // keep every session that was recorded before.
  const auto day = MapUncutDay();
  const std::size_t cuts[] = {1, 8, 135, 200, 4096, 6351};
  for (std::size_t k = 0; k < writeCount_; ++k) {
    for (const std::size_t torn : cuts) {
      SCOPED_TRACE("write " + std::to_string(k) + " torn after " + std::to_string(torn) + " bytes");
      PlayDayCut(k, torn);
      const std::vector<uint8_t> config = ReadBytes(SettingsPath());
      ASSERT_EQ(config.size(), sizeof(Settings));
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(config.data())), kFormatMarker);
      EXPECT_EQ(config[134], kNoSessionOpen);
      for (const char* name : kSessions) {
        const SessionWrites& session = day.at(name);
        if (session.logSave >= k) continue;
        const auto records = RecordsOf(name);
        ASSERT_FALSE(records.empty()) << name << " was recorded before the cut";
        EXPECT_EQ(records[0]->durationSeconds, session.recordedDuration) << name;
      }
    }
  }
}

}  // namespace
