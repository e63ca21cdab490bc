#include <cstring>
#include <string>
#include <vector>

#include "monitor/alarm.h"
#include "monitor/dial_up_probe.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

std::vector<std::string> events;

class Alarm : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    ResetAlarmState();
    events.clear();
    alarmHooks.playSound = [] { events.push_back("sound"); };
    alarmHooks.showNotice = [] { events.push_back(std::string("notice:") + AlarmMessage); };
    ApplyDefaultSettings();
    OnLineFlag = 1;
  }
  void TearDown() override {
    OnLineFlag = 0;
    ResetAlarmState();
    ProgramStateTest::TearDown();
  }

  void Repeating(int8_t hours, int8_t minutes) {
    settings.alarmOn = 1;
    settings.alarmMode = kAlarmEveryInterval;
    settings.alarmRepeatHours = hours;
    settings.alarmRepeatMinutes = minutes;
  }
  void OneShot(int8_t hours, int8_t minutes) {
    settings.alarmOn = 1;
    settings.alarmMode = kAlarmOnceAtEnd;
    settings.alarmOnceHours = hours;
    settings.alarmOnceMinutes = minutes;
  }
};

const std::string kEveryHour = "\nThis Reminder Comes Every 1 Hr and  0 Min.  From the\n time You First Logged On ";
const std::string kAfterTwoAndAHalf =
    "\n2 Hr and  30 Min.\nThe Time Set On The Alarm Has Elapsed.\nThis Reminder Will Not Come Again In This Session";

TEST_F(Alarm, DefaultsAreOffRepeatingEveryHourWithBoxAndSound) {
  EXPECT_EQ(settings.alarmOn, 0);
  EXPECT_EQ(settings.alarmMode, kAlarmEveryInterval);
  EXPECT_EQ(settings.alarmAction, kAlarmBoxAndSound);
  EXPECT_EQ(AlarmPeriodMs(), 3600000u);
}

TEST_F(Alarm, RepeatingPeriodComesFromTheRepeatFields) {
  Repeating(1, 0);
  EXPECT_EQ(AlarmPeriodMs(), 3600000u);
  Repeating(0, 45);
  EXPECT_EQ(AlarmPeriodMs(), 45u * 60u * 1000u);
  Repeating(0, 1);
  EXPECT_EQ(AlarmPeriodMs(), 60000u);
  Repeating(24, 59);
  EXPECT_EQ(AlarmPeriodMs(), (24u * 60u + 59u) * 60u * 1000u);
}

TEST_F(Alarm, OneShotPeriodComesFromTheOnceFields) {
  OneShot(2, 30);
  settings.alarmRepeatHours = 1;
  EXPECT_EQ(AlarmPeriodMs(), 150u * 60u * 1000u);
}

TEST_F(Alarm, RepeatingPeriodClearsOneShotFiredButOneShotPeriodDoesNot) {
  OneShot(2, 30);
  OneShotFired = 1;
  AlarmPeriodMs();
  EXPECT_EQ(OneShotFired, 1);
  Repeating(1, 0);
  AlarmPeriodMs();
  EXPECT_EQ(OneShotFired, 0);
}

TEST_F(Alarm, ZeroPeriodOrUnknownModeNeverGivesATightLoop) {
  Repeating(0, 0);
  EXPECT_EQ(AlarmPeriodMs(), kDefaultAlarmPeriodMs);
  OneShot(0, 0);
  EXPECT_EQ(AlarmPeriodMs(), kDefaultAlarmPeriodMs);
  Repeating(-3, 10);  // damaged file
  EXPECT_EQ(AlarmPeriodMs(), kDefaultAlarmPeriodMs);
  for (uint8_t mode : {0, 7, 31, 255}) {
    settings.alarmMode = mode;
    EXPECT_EQ(AlarmPeriodMs(), kDefaultAlarmPeriodMs) << int(mode);
  }
  EXPECT_EQ(kDefaultAlarmPeriodMs, 300000u);
}

TEST_F(Alarm, RepeatingGivesEveryFiringWithItsText) {
  Repeating(1, 0);
  settings.alarmAction = kAlarmBoxAndSound;
  AlarmPeriodMs();
  OnAlarmTimer();
  OnAlarmTimer();
  OnAlarmTimer();
  const std::vector<std::string> expected = {"sound", "notice:" + kEveryHour, "sound", "notice:" + kEveryHour,
                                             "sound", "notice:" + kEveryHour};
  EXPECT_EQ(events, expected);
  EXPECT_EQ(OneShotFired, 0);
}

TEST_F(Alarm, OneShotFiresOncePerSession) {
  OneShot(2, 30);
  settings.alarmAction = kAlarmBoxOnly;
  AlarmPeriodMs();
  OnAlarmTimer();
  OnAlarmTimer();
  OnAlarmTimer();
  ASSERT_EQ(events, std::vector<std::string>{"notice:" + kAfterTwoAndAHalf});
  EXPECT_EQ(OneShotFired, 1);

  // The session step clears the flag when the session closes; the next one fires again.
  OneShotFired = 0;
  AlarmPeriodMs();
  OnAlarmTimer();
  OnAlarmTimer();
  EXPECT_EQ(events.size(), 2u);
}

TEST_F(Alarm, ActionsChooseSoundNoticeOrBoth) {
  Repeating(1, 0);
  settings.alarmAction = kAlarmSoundOnly;
  FireAlarm();
  EXPECT_EQ(events, std::vector<std::string>{"sound"});
  events.clear();
  settings.alarmAction = kAlarmBoxOnly;
  FireAlarm();
  EXPECT_EQ(events, std::vector<std::string>{"notice:" + kEveryHour});
  events.clear();
  settings.alarmAction = kAlarmBoxAndSound;
  FireAlarm();
  EXPECT_EQ(events, (std::vector<std::string>{"sound", "notice:" + kEveryHour})) << "sound first, then the notice";
}

TEST_F(Alarm, OtherStoredActionsGiveNeitherButStillBuildTheText) {
  Repeating(1, 0);
  for (uint8_t action : {0, 1, 20, 255}) {
    settings.alarmAction = action;
    AlarmMessage[0] = '\0';
    FireAlarm();
    EXPECT_TRUE(events.empty()) << int(action);
    EXPECT_EQ(std::string(AlarmMessage), kEveryHour);
  }
}

TEST_F(Alarm, AlarmOffGivesNothing) {
  Repeating(1, 0);
  settings.alarmOn = 0;
  OnAlarmTimer();
  FireAlarm();
  EXPECT_TRUE(events.empty());
  EXPECT_STREQ(AlarmMessage, "");
}

TEST_F(Alarm, OffLineGivesNothing) {
  OneShot(2, 30);
  OnLineFlag = 0;
  OnAlarmTimer();
  FireAlarm();
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(OneShotFired, 0) << "the one-shot reminder is still to come";
}

TEST_F(Alarm, UnknownModeGivesNoReminder) {
  settings.alarmOn = 1;
  settings.alarmMode = 0;
  FireAlarm();
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(OneShotFired, 0);
}

TEST_F(Alarm, OneShotIsMarkedBeforeTheNoticeOpens) {
  OneShot(0, 5);
  settings.alarmAction = kAlarmBoxOnly;
  alarmHooks.showNotice = [] {
    events.push_back(OneShotFired ? "fired" : "not yet");
    FireAlarm();  // a timer firing inside the notice's message loop
  };
  FireAlarm();
  EXPECT_EQ(events, std::vector<std::string>{"fired"});
}

TEST_F(Alarm, MissingHooksAreSkipped) {
  alarmHooks = AlarmHooks{};
  Repeating(1, 0);
  FireAlarm();
  EXPECT_EQ(std::string(AlarmMessage), kEveryHour);
}

TEST_F(Alarm, LongestPeriodTextsFitTheMessage) {
  OneShot(-128, -128);
  FireAlarm();
  EXPECT_EQ(std::string(AlarmMessage),
            "\n-128 Hr and  -128 Min.\nThe Time Set On The Alarm Has Elapsed.\nThis Reminder Will Not Come Again In "
            "This Session");
}

TEST(AlarmClamp, ZeroHoursZeroMinutesBecomeFiveMinutes) {
  const AlarmTime t = ClampAlarmTime(0, 0);
  EXPECT_EQ(t.hours, 0);
  EXPECT_EQ(t.minutes, 5);
}

TEST(AlarmClamp, LimitsAre24HoursAnd59Minutes) {
  EXPECT_EQ(ClampAlarmTime(0, 99).minutes, 59);
  EXPECT_EQ(ClampAlarmTime(0, 99).hours, 0);
  EXPECT_EQ(ClampAlarmTime(300, 0).hours, 24);
  EXPECT_EQ(ClampAlarmTime(300, 0).minutes, 0) << "24 h 0 min is a period";
  EXPECT_EQ(ClampAlarmTime(0xFFFFFFFFu, 0xFFFFFFFFu).hours, 24);
  EXPECT_EQ(ClampAlarmTime(0xFFFFFFFFu, 0xFFFFFFFFu).minutes, 59);
  EXPECT_EQ(ClampAlarmTime(24, 59).hours, 24);
  EXPECT_EQ(ClampAlarmTime(24, 59).minutes, 59);
  EXPECT_EQ(ClampAlarmTime(25, 60).hours, 24);
  EXPECT_EQ(ClampAlarmTime(25, 60).minutes, 59);
  EXPECT_EQ(ClampAlarmTime(0, 1).minutes, 1);
  EXPECT_EQ(ClampAlarmTime(1, 0).minutes, 0);
}

TEST_F(Alarm, PageOkStoresChoicesAndClampedTimes) {
  LoadAlarmPageState();
  AlarmOnState = 1;
  AlarmModeState = kAlarmOnceAtEnd;
  AlarmActionState = kAlarmSoundOnly;
  StoreAlarmPage(0, 0, 300, 99);
  EXPECT_EQ(settings.alarmOn, 1);
  EXPECT_EQ(settings.alarmMode, kAlarmOnceAtEnd);
  EXPECT_EQ(settings.alarmAction, kAlarmSoundOnly);
  EXPECT_EQ(settings.alarmRepeatHours, 0);
  EXPECT_EQ(settings.alarmRepeatMinutes, 5);
  EXPECT_EQ(settings.alarmOnceHours, 24);
  EXPECT_EQ(settings.alarmOnceMinutes, 59);
}

TEST_F(Alarm, PageOpensWithTheStoredChoices) {
  settings.alarmOn = 3;
  settings.alarmMode = kAlarmOnceAtEnd;
  settings.alarmAction = kAlarmBoxOnly;
  LoadAlarmPageState();
  EXPECT_EQ(AlarmOnState, 1u);
  EXPECT_EQ(AlarmModeState, kAlarmOnceAtEnd);
  EXPECT_EQ(AlarmActionState, kAlarmBoxOnly);
}

TEST_F(Alarm, PageMapsUnknownStoredValuesToTheDefaultsAndKeepsThem) {
  settings.alarmOn = 0;
  settings.alarmMode = 0;
  settings.alarmAction = 0;
  LoadAlarmPageState();
  EXPECT_EQ(AlarmOnState, 0u);
  EXPECT_EQ(AlarmModeState, kAlarmEveryInterval);
  EXPECT_EQ(AlarmActionState, kAlarmBoxAndSound);
  StoreAlarmPage(1, 0, 2, 30);
  EXPECT_EQ(settings.alarmMode, kAlarmEveryInterval);
  EXPECT_EQ(settings.alarmAction, kAlarmBoxAndSound);
}

TEST(AlarmText, PeriodFormat) {
  char text[40];
  FormatAlarmPeriod(text, sizeof text, 1, 0);
  EXPECT_STREQ(text, "1 Hr and  0 Min.");
}

}  // namespace
