#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "monitor/session_settings.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;

std::vector<std::string> events;

// A record in one line: status, name, duration, weekday/month/day/year, log-on and log-off times.
std::string Fields(const SessionRecord& r) {
  char text[300];
  std::snprintf(text, sizeof text, "%u %s %ds %u/%u/%u/%u %u:%u:%u-%u:%u:%u", r.status, r.connectionName,
                r.durationSeconds, r.dayOfWeek, r.month, r.day, r.year, r.logOnHour, r.logOnMinute, r.logOnSecond,
                r.logOffHour, r.logOffMinute, r.logOffSecond);
  return text;
}

class Session : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    shell_ = &recorder_;
    ASSERT_TRUE(storage_.CreateSettings(SettingsPath()));
    ASSERT_TRUE(storage_.CreateEmptyLog(LogFilePath().c_str()));
  }

  void OnSessionChange(SessionChange change) override {
    if (change != SessionChange::kNone) events.push_back(change == SessionChange::kOpened ? "start timers" : "stop timers");
  }
  struct Recorder : MonitorShell {
    void ShowOutOfSpace() override { events.push_back("out of space"); }
    void CheckAccounts() override { events.push_back("check accounts"); }
  } recorder_;

  uint8_t MarkerOnDisk() { return ReadBytes(SettingsPath()).at(134); }

  // Simulates a new process: everything in memory is lost, the files stay.
  void Restart() {
    storage_ = Storage{};
    monitor_ = Monitor{storage_};
    ASSERT_TRUE(storage_.LoadSettings(SettingsPath()));
    ASSERT_TRUE(storage_.LoadLog(LogFilePath().c_str()));
  }

  // A new process on fresh files at the fake clock's first moment, then on-line.
  void ConnectAfresh() {
    storage_ = Storage{};
    monitor_ = Monitor{storage_};
    clock_ = FakeClock{};
    clock_.now.day = 31;  // Thursday 31 January: the last day a checkpoint can carry
    clock_.now.dayOfWeek = 4;
    storage_.CreateSettings(SettingsPath());
    storage_.CreateEmptyLog(LogFilePath().c_str());
    ras_.Connect("Home ISP");
    Tick();
  }
};

// A session across midnight is dated by its end; the tick counter passes 2^32 ms and
// restarts from 0 thirty seconds in (about 49.7 days of uptime) without spoiling its length.
TEST_F(Session, ConnectThenDisconnectRecordsOneSession) {
  clock_.now = {2002, 1, 1, 7, 23, 59, 0};
  clock_.tickMs = 0xFFFFFFFFu - 29999;
  ras_.Connect("Home ISP");
  Tick();
  EXPECT_EQ(MarkerOnDisk(), 218) << "the file says a session is open";
  storage_.settings.use24HourClock = 1;
  EXPECT_STREQ(monitor_.ClockText(), "23 : 59 : 00   ");
  EXPECT_STREQ(monitor_.LogOnText(), "11 : 59 : 00  PM") << "the log-on text keeps the form it was made in";

  RunOnline(125);
  ras_.state = State::Disconnected;
  Tick();
  EXPECT_EQ(events, (std::vector<std::string>{"start timers", "stop timers", "check accounts"}));
  EXPECT_STREQ(monitor_.LastDurationText(), "0 Hr : 2 Min : 5 sec");

  // Both files are on disk with the session and the main dialog's summary of it.
  EXPECT_EQ(MarkerOnDisk(), 219);
  Restart();
  EXPECT_EQ(Fields(storage_.sessionLog.records[0]), "1 Home ISP 125s 2/1/8/2002 23:59:0-0:1:5");
  const PreviousSession& previous = storage_.settings.previousSession;
  EXPECT_EQ(std::vector<uint32_t>({storage_.settings.previousSessionValid, previous.durationSeconds,
                                   previous.logOn.hour, previous.logOff.second}),
            std::vector<uint32_t>({1, 125, 23, 5}));
  EXPECT_STREQ(previous.connectionName, "Home ISP");
  ras_.Connect("Home ISP");
  RunOnline(7);
  EXPECT_EQ(monitor_.Shutdown(ShutdownMode::kQuiet), SessionChange::kClosed);
  EXPECT_EQ(MarkerOnDisk(), 219) << "a shutdown records the open session";
}

TEST_F(Session, ADamagedCheckpointIsRepairedAndToldOrNotRecorded) {
  const struct {
    const char* damage;
    void (*apply)(Settings&);
    int32_t recorded;  // 0: nothing recorded
    bool told = false;  // as a damaged length
  } rows[] = {
      {.damage = "elapsed -1", .apply = [](Settings& s) { s.checkpointElapsed = ~0u; }, .recorded = 540, .told = true},
      {.damage = "elapsed a day and a second beyond its log-on", .apply = [](Settings& s) { s.checkpointElapsed = 87001; },
       .recorded = 540, .told = true},
      {.damage = "none: weekday 6, 1 December 1980",
       .apply = [](Settings& s) { SetCheckpointStart(s, "Home ISP", 10, 0, 0, 6, 1, 12, 1980); }, .recorded = 540},
      {.damage = "none: year 9999", .apply = [](Settings& s) { s.checkpointYear = 9999; }, .recorded = 540},
      {.damage = "no name", .apply = [](Settings& s) { s.checkpointName[0] = '\0'; }, .recorded = 0},
      {.damage = "month 13", .apply = [](Settings& s) { s.checkpointMonth = 13; }, .recorded = 0},
      {.damage = "day 32", .apply = [](Settings& s) { s.checkpointDay = 32; }, .recorded = 0},
      {.damage = "weekday 7", .apply = [](Settings& s) { s.checkpointDayOfWeek = 7; }, .recorded = 0},
      {.damage = "year 10000", .apply = [](Settings& s) { s.checkpointYear = 10000; }, .recorded = 0},
      {.damage = "log-on hour 24", .apply = [](Settings& s) { s.checkpointLogOn.hour = 24; }, .recorded = 0},
      {.damage = "log-on minute 60", .apply = [](Settings& s) { s.checkpointLogOn.minute = 60; }, .recorded = 0},
      {.damage = "checkpoint second 60", .apply = [](Settings& s) { s.checkpointTime.second = 60; }, .recorded = 0},
  };
  const std::vector<std::string> told = {"The session of Home ISP that was open when Orvalen stopped had a damaged "
                                         "length.\nIt is recorded with the length its log-on and log-off times give."};
  struct : MonitorShell {
    void ShowFileProblem(const char* text, const char*) override { events.push_back(text); }
  } toldShell;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.damage);
    ConnectAfresh();
    RunOnline(600);  // the last checkpoint: 540 s, at 10:09:00
    events.clear();
    Restart();
    row.apply(storage_.settings);
    monitor_.RecoverInterruptedSession();
    monitor_.ShowPendingNotices(toldShell);
    EXPECT_EQ(storage_.settings.sessionOpenMarker, 219);
    EXPECT_EQ(storage_.IsLogEmpty(), row.recorded == 0);
    EXPECT_EQ(storage_.sessionLog.records[0].durationSeconds, row.recorded) << "from its log-on and checkpoint times";
    EXPECT_EQ(events, row.told ? told : std::vector<std::string>{});
    EXPECT_EQ(storage_.settings.previousSession.day, row.recorded == 0 ? 31 : storage_.settings.checkpointDay) << "as its checkpoint";
  }
}

TEST_F(Session, OutOfSpaceIsReportedOnceAndTheNextSessionWorks) {
  for (SessionRecord& record : storage_.sessionLog.records) record.status = InUse;
  storage_.logRecordLimit = 2;
  ras_.Connect("Home ISP");
  Tick();
  RunOnline(200);
  ras_.state = State::Disconnected;
  Tick();
  Tick();
  EXPECT_EQ(events, (std::vector<std::string>{"start timers", "stop timers", "out of space"}));
  EXPECT_EQ(MarkerOnDisk(), 218) << "the next start records it from its checkpoint";
  storage_.settings.sessionOpenMarker = 218;
  monitor_.RecoverInterruptedSession();
  EXPECT_EQ(storage_.settings.sessionOpenMarker, 218) << "a recovery without room keeps the marker too";

  storage_.logRecordLimit = kMaxLogRecords;
  ras_.Connect("Home ISP");
  Tick();
  EXPECT_EQ(monitor_.Session().SessionOpen, 1u);
}

}  // namespace
