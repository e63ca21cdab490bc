#include <cstring>
#include <string>
#include <vector>

#include "monitor/alarm_state.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "monitor/time_text.h"
#include "storage/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;

std::vector<std::string> events;

class Session : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    sessionHooks.startSessionTimers = [] { events.push_back("start timers"); };
    sessionHooks.stopSessionTimers = [] { events.push_back("stop timers"); };
    sessionHooks.reportOutOfSpace = [] { events.push_back("out of space"); };
    sessionHooks.checkUnconfiguredConnections = [] { events.push_back("check accounts"); };
    ASSERT_TRUE(CreateSettings(SettingsPath()));
    ASSERT_TRUE(CreateEmptyLog(LogFilePath().c_str()));
  }

  // Runs the 100 ms step for the given number of seconds of connection time.
  void RunFor(uint32_t seconds) {
    for (uint32_t i = 0; i < seconds; ++i) {
      clock_.Advance(1);
      Tick();
    }
  }
  void Tick() { RunSessionStep(probe_); }

  uint8_t MarkerOnDisk() { return ReadBytes(SettingsPath()).at(134); }

  // Simulates a new process: everything in memory is lost, the files stay.
  void Restart() {
    std::memset(&settings, 0, sizeof settings);
    sessionLog = SessionLog{};
    ResetSessionState();
    ASSERT_TRUE(LoadSettings(SettingsPath()));
    ASSERT_TRUE(LoadLog(LogFilePath().c_str()));
  }

  // Checkpoints every three minutes, as the timer does, over the given seconds.
  void RunWithCheckpoints(uint32_t seconds) {
    for (uint32_t elapsed = 1; elapsed <= seconds; ++elapsed) {
      clock_.Advance(1);
      Tick();
      if (elapsed % 180 == 0) OnCheckpointTimer();
    }
  }

  DialUpProbe probe_;
};

TEST_F(Session, ConnectThenDisconnectRecordsOneSession) {
  clock_.now = {2002, 1, 1, 7, 10, 0, 0};
  ras_.Connect("Home ISP");
  Tick();
  EXPECT_EQ(SessionOpen, 1u);
  EXPECT_EQ(SessionClosed, 0u);
  EXPECT_EQ(MarkerOnDisk(), 218) << "the file says a session is open";
  EXPECT_STREQ(SessionConnectionName, "Home ISP");
  EXPECT_STREQ(LogOnText, "10 : 00 : 00  AM");
  EXPECT_EQ(std::string(settings.checkpointName), "Home ISP");
  EXPECT_EQ(settings.checkpointElapsed, 0u);

  RunFor(125);
  ras_.state = State::Disconnected;
  Tick();
  EXPECT_EQ(SessionOpen, 0u);
  EXPECT_EQ(events, (std::vector<std::string>{"start timers", "stop timers", "check accounts"}));

  const SessionRecord& record = sessionLog.records[0];
  EXPECT_EQ(record.status, InUse);
  EXPECT_EQ(record.durationSeconds, 125);
  EXPECT_EQ(record.logOnHour, 10u);
  EXPECT_EQ(record.logOnMinute, 0u);
  EXPECT_EQ(record.logOffMinute, 2u);
  EXPECT_EQ(record.logOffSecond, 5u);
  EXPECT_EQ(record.day, 7u);
  EXPECT_EQ(record.month, 1u);
  EXPECT_EQ(record.year, 2002u);
  EXPECT_EQ(record.dayOfWeek, 1u);
  EXPECT_STREQ(record.connectionName, "Home ISP");
  EXPECT_EQ(SessionConnectionName[0], '\0');
  EXPECT_STREQ(GetLastDurationText(), "0 Hr : 2 Min : 5 sec");

  // Both files are on disk with the session and the summary.
  EXPECT_EQ(MarkerOnDisk(), 219);
  Restart();
  EXPECT_EQ(sessionLog.records[0].durationSeconds, 125);
  EXPECT_EQ(settings.previousSessionValid, 1u);
  EXPECT_EQ(settings.previousSession.durationSeconds, 125u);
  EXPECT_EQ(settings.previousSession.logOn.hour, 10u);
  EXPECT_EQ(settings.previousSession.logOff.second, 5u);
  EXPECT_STREQ(settings.previousSession.connectionName, "Home ISP");
}

TEST_F(Session, ASessionAcrossMidnightIsDatedByItsEnd) {
  clock_.now = {2002, 1, 1, 7, 23, 50, 0};
  ras_.Connect("Night");
  Tick();
  RunFor(20 * 60);
  ras_.state = State::Disconnected;
  Tick();
  const SessionRecord& record = sessionLog.records[0];
  EXPECT_EQ(record.day, 8u);
  EXPECT_EQ(record.dayOfWeek, 2u);
  EXPECT_EQ(record.logOnHour, 23u);
  EXPECT_EQ(record.logOffHour, 0u);
  EXPECT_EQ(record.logOffMinute, 10u);
  EXPECT_EQ(record.durationSeconds, 1200);
}

TEST_F(Session, DurationIsMeasuredOnTheTickCounterNotTheClock) {
  ras_.Connect("Home ISP");
  Tick();
  clock_.tickMs += 90 * 1000;
  clock_.now.hour = 3;  // the user moved the clock back
  ras_.state = State::Disconnected;
  Tick();
  EXPECT_EQ(sessionLog.records[0].durationSeconds, 90);
}

TEST_F(Session, TickCounterWrapDoesNotSpoilTheDuration) {
  clock_.tickMs = 0xFFFFFFFFu - 30000;
  ras_.Connect("Home ISP");
  Tick();
  clock_.tickMs += 60000;  // wraps past zero
  EXPECT_NEAR(ElapsedSeconds(), 60, 1);
}

TEST_F(Session, CheckpointsEveryThreeMinutesFollowTheOpenSession) {
  clock_.now = {2002, 1, 1, 7, 10, 0, 0};
  ras_.Connect("Home ISP");
  Tick();
  RunWithCheckpoints(200);
  EXPECT_EQ(settings.checkpointElapsed, 180u);
  EXPECT_EQ(settings.checkpointTime.minute, 3u);
  EXPECT_STREQ(settings.previousSession.connectionName, "Home ISP");
  EXPECT_EQ(settings.previousSession.logOff.minute, 3u);
  EXPECT_EQ(settings.previousSession.durationSeconds, 0u) << "kept from the session before";
  EXPECT_EQ(ReadBytes(SettingsPath()).at(6288), 180) << "the checkpoint is on disk";
}

TEST_F(Session, CheckpointDoesNothingWhileOffLine) {
  ras_.Connect("Home ISP");
  Tick();
  ras_.state = State::Disconnected;
  probe_.IsConnected();  // OnLineFlag drops to 0
  clock_.Advance(180);
  OnCheckpointTimer();
  EXPECT_EQ(settings.checkpointElapsed, 0u);
}

TEST_F(Session, KilledTenMinutesInIsRecordedFromItsThirdCheckpoint) {
  clock_.now = {2002, 1, 4, 10, 23, 55, 0};  // Thursday 10 January, before midnight
  ras_.Connect("Home ISP");
  Tick();
  RunWithCheckpoints(600);
  // The process dies here; the next start finds the marker 218.
  Restart();
  EXPECT_EQ(settings.sessionOpenMarker, 218);
  clock_.Advance(3600);
  RecoverInterruptedSession();

  const SessionRecord& record = sessionLog.records[0];
  EXPECT_EQ(record.status, InUse);
  EXPECT_EQ(record.durationSeconds, 540);
  EXPECT_EQ(record.logOnHour, 23u);
  EXPECT_EQ(record.logOnMinute, 55u);
  EXPECT_EQ(record.logOffHour, 0u);
  EXPECT_EQ(record.logOffMinute, 4u);
  EXPECT_EQ(record.day, 10u) << "dated on the day it began";
  EXPECT_EQ(record.dayOfWeek, 4u);
  EXPECT_STREQ(record.connectionName, "Home ISP");
  EXPECT_EQ(MarkerOnDisk(), 219);
  EXPECT_STREQ(GetLastDurationText(), "0 Hr : 9 Min : 0 sec");

  Restart();
  RecoverInterruptedSession();
  EXPECT_EQ(sessionLog.records[1].status, Blank) << "recorded once only";
}

TEST_F(Session, KilledWithinThreeMinutesRecordsAZeroLengthSession) {
  clock_.now = {2002, 1, 1, 7, 10, 0, 0};
  ras_.Connect("Home ISP");
  Tick();
  RunWithCheckpoints(150);
  Restart();
  RecoverInterruptedSession();
  const SessionRecord& record = sessionLog.records[0];
  EXPECT_EQ(record.durationSeconds, 0);
  EXPECT_EQ(record.logOffHour, record.logOnHour);
  EXPECT_EQ(record.logOffMinute, record.logOnMinute);
  EXPECT_EQ(record.logOffSecond, record.logOnSecond);
}

TEST_F(Session, RestartWhileStillConnectedRecordsTheOldAndOpensANewSession) {
  ras_.Connect("Home ISP");
  Tick();
  RunWithCheckpoints(400);
  Restart();
  RecoverInterruptedSession();
  Tick();
  EXPECT_EQ(SessionOpen, 1u);
  EXPECT_EQ(sessionLog.records[0].durationSeconds, 360);
  EXPECT_EQ(MarkerOnDisk(), 218);
}

TEST_F(Session, NoMarkerNothingRecovered) {
  settings.sessionOpenMarker = 219;
  settings.checkpointElapsed = 999;
  RecoverInterruptedSession();
  EXPECT_TRUE(IsLogEmpty());
}

TEST_F(Session, DamagedCheckpointNameIsCutInsideItsField) {
  settings.sessionOpenMarker = 218;
  std::memset(settings.checkpointName, 'C', sizeof settings.checkpointName);
  RecoverInterruptedSession();
  EXPECT_EQ(std::strlen(sessionLog.records[0].connectionName), 60u);
  EXPECT_EQ(std::strlen(settings.previousSession.connectionName), 51u);
}

TEST_F(Session, OutOfSpaceIsReportedOnceAndTheNextSessionWorks) {
  for (SessionRecord& record : sessionLog.records) record.status = InUse;
  LogRecordLimit = 2;
  ras_.Connect("Home ISP");
  Tick();
  RunWithCheckpoints(200);
  ras_.state = State::Disconnected;
  Tick();
  Tick();
  EXPECT_EQ(events, (std::vector<std::string>{"start timers", "stop timers", "out of space"}));
  EXPECT_EQ(settings.sessionOpenMarker, 219) << "in memory only";
  EXPECT_EQ(MarkerOnDisk(), 218) << "the next start records it from its checkpoint";

  LogRecordLimit = kMaxLogRecords;
  ras_.Connect("Home ISP");
  Tick();
  EXPECT_EQ(SessionOpen, 1u);
  EXPECT_EQ(events.back(), "start timers");
}

TEST_F(Session, RecoveryWithoutRoomKeepsTheMarkerForTheNextStart) {
  for (SessionRecord& record : sessionLog.records) record.status = InUse;
  LogRecordLimit = 2;
  settings.sessionOpenMarker = 218;
  std::strcpy(settings.checkpointName, "Home ISP");
  RecoverInterruptedSession();
  EXPECT_EQ(settings.sessionOpenMarker, 218);
}

TEST_F(Session, ClosingResetsTheOneShotAlarm) {
  ras_.Connect("Home ISP");
  Tick();
  OneShotFired = 1;
  ras_.state = State::Disconnected;
  Tick();
  EXPECT_EQ(OneShotFired, 0);
}

TEST_F(Session, VanishedConnectionStillClosesTheSession) {
  ras_.Connect("Home ISP");
  Tick();
  RunFor(10);
  ras_.state = State::Vanished;
  Tick();
  EXPECT_EQ(SessionOpen, 0u);
  EXPECT_EQ(sessionLog.records[0].durationSeconds, 10);
}

TEST_F(Session, LongConnectionNamesAreCutInEveryCopy) {
  ras_.Connect(std::string(256, 'x'));
  Tick();
  EXPECT_EQ(std::strlen(SessionConnectionName), 49u);
  EXPECT_EQ(std::strlen(settings.checkpointName), 49u);
  ras_.state = State::Disconnected;
  Tick();
  EXPECT_EQ(std::strlen(sessionLog.records[0].connectionName), 49u);
  EXPECT_EQ(std::strlen(settings.previousSession.connectionName), 49u);
}

}  // namespace
