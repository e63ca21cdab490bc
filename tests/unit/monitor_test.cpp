// The monitor: the texts of times and dates, the probe of the dial-up service, the
// alarm, and the question about connections without account details.
#include <cstring>
#include <string>
#include <vector>

#include "app/status_text.h"
#include "monitor/alarm.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "monitor/time_text.h"
#include "monitor/unconfigured_connections.h"
#include "storage/accounts.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;
std::vector<std::string> events;

class TimeText : public ProgramStateTest {};

TEST_F(TimeText, ClocksDatesAndDurations) {
  const struct {
    uint8_t use24;
    uint32_t h, m, s;
    const char* text;
  } clocks[] = {{0, 14, 5, 9, "2 : 05 : 09  PM"},    {0, 0, 30, 0, "12 : 30 : 00  AM"}, {0, 12, 0, 0, "12 : 00 : 00  PM"},
                {0, 11, 59, 59, "11 : 59 : 59  AM"}, {0, 23, 10, 5, "11 : 10 : 05  PM"}, {0, 1, 9, 10, "1 : 09 : 10  AM"},
                {1, 14, 5, 9, "14 : 05 : 09   "},    {1, 0, 10, 10, "0 : 10 : 10   "},   {7, 12, 0, 0, "12 : 00 : 00   "}};
  for (const auto& row : clocks) {
    settings.use24HourClock = row.use24;
    char text[kClockTextSize];
    FormatClock(text, row.h, row.m, row.s);
    EXPECT_STREQ(text, row.text);
  }
  const struct {
    uint32_t dayOfWeek, month, day, year;
    const char* text;
  } dates[] = {{1, 1, 7, 2002, "Mon.  Jan.  7, 2002"},   {5, 5, 3, 2002, "Fri.  May  3, 2002"},
               {0, 9, 30, 2001, "Sun. Sept.  30, 2001"}, {6, 12, 31, 1999, "Sat.  Dec.  31, 1999"},
               {3, 7, 4, 2003, "Wed.  July  4, 2003"},   {7, 1, 7, 2002, "Jan.  7, 2002"},
               {2, 0, 7, 2002, "Tue.    7, 2002"},       {0xFFFFFFFF, 13, 0xFFFFFFFF, 0xFFFFFFFF, "  -1, -1"}};
  for (const auto& row : dates) {
    char text[kDateTextSize];
    FormatDate(text, row.dayOfWeek, row.month, row.day, row.year);
    EXPECT_STREQ(text, row.text);
  }
  const struct {
    int32_t seconds;
    const char* text;
  } durations[] = {{125, "0 Hr : 2 Min : 5 sec"},         {0, "0 Hr : 0 Min : 0 sec"},
                   {3600, "1 Hr : 0 Min : 0 sec"},        {-65, "0 Hr : -1 Min : -5 sec"},
                   {3725, "1 Hr : 2 Min : 5 sec"},        {2147483647, "596523 Hr : 14 Min : 7 sec"},
                   {-2147483647 - 1, "-596523 Hr : -14 Min : -8 sec"}};
  for (const auto& row : durations) {
    FormatElapsed(row.seconds);
    EXPECT_STREQ(sessionTexts.ElapsedText, row.text);
  }
  char text[kLastDurationTextSize];
  FormatDuration(text, 10, 70, 80);
  EXPECT_STREQ(text, "10 Hr : 70 Min : 80 sec") << "already split values are not normalised";
}

TEST_F(TimeText, ClockAndLogOnTextsFollowTheClock) {
  clock_.now.hour = 13;
  clock_.now.minute = 2;
  clock_.now.second = 3;
  EXPECT_STREQ(ClockText(), "1 : 02 : 03  PM");
  NoteLogOnTime(20, 20, 20);  // the text comes from the clock, the numbers from the arguments
  settings.use24HourClock = 1;
  EXPECT_STREQ(ClockText(), "13 : 02 : 03   ");
  EXPECT_STREQ(GetLogOnText(), "1 : 02 : 03  PM") << "the log-on text keeps its form";
  EXPECT_EQ(sessionState.LogOnHour, 20u);
  EXPECT_EQ(sessionState.LogOnMinute, 20u);
  sessionState.SessionStartSeconds = clock_.tickMs / 1000;
  clock_.Advance(3661);
  EXPECT_STREQ(GetElapsedText(), "1 Hr : 1 Min : 1 sec");
}

class Probe : public ProgramStateTest {};

TEST_F(Probe, AsksWithTheWindows95SizesAndFollowsTheConnection) {
  EXPECT_FALSE(probe_.IsConnected());
  EXPECT_EQ(ras_.queriedHandles, std::vector<uintptr_t>{0u}) << "nothing seen yet: a zero handle";
  EXPECT_EQ(probeState.NoConnectionSeen, 1);

  ras_.Connect("Home ISP");
  ras_.enumCalls = ras_.statusCalls = 0;
  EXPECT_TRUE(probe_.IsConnected());
  EXPECT_EQ(ras_.enumCalls, 1);
  EXPECT_EQ(ras_.statusCalls, 1);
  EXPECT_EQ(ras_.lastEntrySize, sizeof(ras::Connection95));
  EXPECT_EQ(ras_.lastEnumBufferSize, 8 * sizeof(ras::Connection95));
  EXPECT_EQ(ras_.lastStatusSize, 160u);
  EXPECT_STREQ(probeState.CurrentConnectionName, "Home ISP");
  EXPECT_EQ(probeState.OnLineFlag, 1);
  EXPECT_EQ(probeState.NoConnectionSeen, 0);

  // Each state after the connection: connected?, the on-line flag, and the name kept.
  const uintptr_t oldHandle = ras_.handle;
  const struct {
    State state;
    int onLine;
  } rows[] = {{State::Dialling, 1}, {State::Vanished, 1}, {State::Disconnected, 0}};
  for (const auto& row : rows) {
    ras_.state = row.state;
    ras_.name = row.state == State::Dialling ? "Other" : "Home ISP";
    EXPECT_FALSE(probe_.IsConnected());
    EXPECT_EQ(probeState.OnLineFlag, row.onLine);
    EXPECT_STREQ(probeState.CurrentConnectionName, "Home ISP");
    EXPECT_EQ(ras_.queriedHandles.back(), oldHandle) << "a vanished connection is asked about by its old handle";
  }

  ras_.state = State::Unavailable;
  ras_.statusCalls = 0;
  EXPECT_FALSE(probe_.IsConnected());
  EXPECT_EQ(ras_.statusCalls, 0) << "a failed enumeration ends the poll";
}

TEST_F(Probe, EachPollTickAsksTheServiceOnceAndTheSessionFollowsItsAnswer) {
  ASSERT_TRUE(CreateSettings(SettingsPath()));
  ASSERT_TRUE(CreateEmptyLog(LogFilePath().c_str()));
  // The service at a tick of timer 2, and whether a session is open after it.
  const struct { State state; uint32_t open; } ticks[] = {
      {State::None, 0},      {State::Dialling, 0},     {State::Connected, 1}, {State::Connected, 1},
      {State::Vanished, 0},  {State::Connected, 1},    {State::Disconnected, 0}, {State::Unavailable, 0}};
  int polls = 0;
  for (bool dialogShown : {false, true}) {
    for (const auto& tick : ticks) {
      ras_.state = tick.state;
      const bool closes = sessionState.SessionOpen != 0 && tick.open == 0;
      alarmState.OneShotFired = 1;
      OnMainWindowTimer(true, dialogShown, probe_);   // timer 2
      OnMainWindowTimer(false, dialogShown, probe_);  // timer 5 or 10 in the same 100 ms
      EXPECT_EQ(ras_.enumCalls, ++polls) << "one dial-up query a tick, none for the other timers";
      EXPECT_EQ(sessionState.SessionOpen, tick.open) << "opened or closed by the tick that saw the change";
      EXPECT_EQ(alarmState.OneShotFired, closes ? 0 : 1) << "the next session's one-shot alarm may fire";
    }
  }
}

class Alarm : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    alarmHooks.playSound = [] { events.push_back("sound"); };
    alarmHooks.showNotice = [] { events.push_back(std::string("notice:") + alarmState.AlarmMessage); };
    ApplyDefaultSettings();
    probeState.OnLineFlag = 1;
  }
  void TearDown() override {
    probeState.OnLineFlag = 0;
    ProgramStateTest::TearDown();
  }

  static void Set(uint8_t mode, int8_t hours, int8_t minutes, uint8_t action = kAlarmBoxAndSound) {
    settings.alarmOn = 1;
    settings.alarmMode = mode;
    settings.alarmAction = action;
    settings.alarmOnceHours = settings.alarmRepeatHours = 1;
    settings.alarmOnceMinutes = settings.alarmRepeatMinutes = 0;
    if (mode == kAlarmOnceAtEnd) {
      settings.alarmOnceHours = hours;
      settings.alarmOnceMinutes = minutes;
    } else {
      settings.alarmRepeatHours = hours;
      settings.alarmRepeatMinutes = minutes;
    }
  }
};

const std::string kEveryHour = "\nThis Reminder Comes Every 1 Hr and  0 Min.  From the\n time You First Logged On ";
const std::string kAfterTwoAndAHalf =
    "\n2 Hr and  30 Min.\nThe Time Set On The Alarm Has Elapsed.\nThis Reminder Will Not Come Again In This Session";

TEST_F(Alarm, PeriodFromTheFieldsOfTheModeNeverATightLoop) {
  EXPECT_EQ(settings.alarmOn, 0) << "off by default, every hour";
  EXPECT_EQ(AlarmPeriodMs(), 3600000u);
  const struct {
    uint8_t mode;
    int8_t hours, minutes;
    uint32_t periodMs;
  } rows[] = {{kAlarmEveryInterval, 0, 45, 45u * 60000u},       {kAlarmEveryInterval, 0, 1, 60000u},
              {kAlarmEveryInterval, 24, 59, (24u * 60u + 59u) * 60000u},
              {kAlarmOnceAtEnd, 2, 30, 150u * 60000u},          {kAlarmEveryInterval, 0, 0, kDefaultAlarmPeriodMs},
              {kAlarmOnceAtEnd, 0, 0, kDefaultAlarmPeriodMs},   {kAlarmEveryInterval, -3, 10, kDefaultAlarmPeriodMs},
              {0, 1, 0, kDefaultAlarmPeriodMs},                 {7, 1, 0, kDefaultAlarmPeriodMs},
              {255, 1, 0, kDefaultAlarmPeriodMs}};
  for (const auto& row : rows) {
    Set(row.mode, row.hours, row.minutes);
    EXPECT_EQ(AlarmPeriodMs(), row.periodMs) << int(row.mode) << " " << int(row.hours) << ":" << int(row.minutes);
  }
  // Only the repeating period clears the one-shot flag.
  Set(kAlarmOnceAtEnd, 2, 30);
  alarmState.OneShotFired = 1;
  AlarmPeriodMs();
  EXPECT_EQ(alarmState.OneShotFired, 1);
  Set(kAlarmEveryInterval, 1, 0);
  AlarmPeriodMs();
  EXPECT_EQ(alarmState.OneShotFired, 0);
}

TEST_F(Alarm, WhatEachFiringGives) {
  const std::string sound = "sound", everyHour = "notice:" + kEveryHour, once = "notice:" + kAfterTwoAndAHalf;
  const struct {
    const char* what;
    uint8_t mode, action;
    int onLine, alarmOn, timerFirings;
    std::vector<std::string> events;
  } rows[] = {
      {"repeating, box and sound", kAlarmEveryInterval, kAlarmBoxAndSound, 1, 1, 3,
       {sound, everyHour, sound, everyHour, sound, everyHour}},
      {"one-shot fires once", kAlarmOnceAtEnd, kAlarmBoxOnly, 1, 1, 3, {once}},
      {"sound only", kAlarmEveryInterval, kAlarmSoundOnly, 1, 1, 1, {sound}},
      {"box only", kAlarmEveryInterval, kAlarmBoxOnly, 1, 1, 1, {everyHour}},
      {"unknown action", kAlarmEveryInterval, 0, 1, 1, 1, {}},
      {"another unknown action", kAlarmEveryInterval, 20, 1, 1, 1, {}},
      {"unknown mode", 0, kAlarmBoxAndSound, 1, 1, 1, {}},
      {"alarm off", kAlarmEveryInterval, kAlarmBoxAndSound, 1, 0, 1, {}},
      {"off-line", kAlarmOnceAtEnd, kAlarmBoxAndSound, 0, 1, 1, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    events.clear();
    alarmState.OneShotFired = 0;
    alarmState.AlarmMessage[0] = '\0';
    Set(row.mode, row.mode == kAlarmOnceAtEnd ? 2 : 1, row.mode == kAlarmOnceAtEnd ? 30 : 0, row.action);
    settings.alarmOn = static_cast<uint8_t>(row.alarmOn);
    probeState.OnLineFlag = row.onLine;
    AlarmPeriodMs();
    for (int i = 0; i < row.timerFirings; ++i) OnAlarmTimer();
    EXPECT_EQ(events, row.events);
    EXPECT_EQ(alarmState.OneShotFired, row.events.size() == 1 && row.mode == kAlarmOnceAtEnd ? 1 : 0);
  }
}

TEST_F(Alarm, OneShotIsMarkedBeforeTheNoticeOpens) {
  Set(kAlarmOnceAtEnd, 0, 5, kAlarmBoxOnly);
  alarmHooks.showNotice = [] {
    events.push_back(alarmState.OneShotFired ? "fired" : "not yet");
    FireAlarm();  // a timer firing inside the notice's message loop
  };
  FireAlarm();
  EXPECT_EQ(events, std::vector<std::string>{"fired"});
}

TEST_F(Alarm, PageClampsTimesAndMapsUnknownStoredValuesToTheDefaults) {
  const struct {
    uint32_t hours, minutes;
    int8_t clampedHours, clampedMinutes;
  } clamps[] = {{0, 0, 0, 5},    {0, 99, 0, 59},   {300, 0, 24, 0},  {0xFFFFFFFFu, 0xFFFFFFFFu, 24, 59},
                {24, 59, 24, 59}, {25, 60, 24, 59}, {0, 1, 0, 1},     {1, 0, 1, 0}};
  for (const auto& row : clamps) {
    const AlarmTime t = ClampAlarmTime(row.hours, row.minutes);
    EXPECT_EQ(t.hours, row.clampedHours) << row.hours << ":" << row.minutes;
    EXPECT_EQ(t.minutes, row.clampedMinutes) << row.hours << ":" << row.minutes;
  }
  // Stored values the page does not know open as the defaults; OK stores what it shows, clamped.
  const auto page = [] {
    return std::vector<int>{static_cast<int>(alarmState.AlarmOnState), alarmState.AlarmModeState,
                            alarmState.AlarmActionState};
  };
  settings.alarmOn = 3;
  settings.alarmMode = kAlarmOnceAtEnd;
  settings.alarmAction = kAlarmBoxOnly;
  LoadAlarmPageState();
  EXPECT_EQ(page(), (std::vector<int>{1, kAlarmOnceAtEnd, kAlarmBoxOnly}));
  settings.alarmOn = settings.alarmMode = settings.alarmAction = 0;
  LoadAlarmPageState();
  EXPECT_EQ(page(), (std::vector<int>{0, kAlarmEveryInterval, kAlarmBoxAndSound}));
  StoreAlarmPage(0, 0, 300, 99);
  EXPECT_EQ(std::vector<int>({settings.alarmOn, settings.alarmMode, settings.alarmAction, settings.alarmRepeatMinutes,
                              settings.alarmOnceHours, settings.alarmOnceMinutes}),
            (std::vector<int>{0, kAlarmEveryInterval, kAlarmBoxAndSound, 5, 24, 59}));
}

// --- Connections without account details ------------------------------------

std::vector<intptr_t> dialogResults;  // one per dialog, 0 when exhausted

class Unconfigured : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    dialogResults.clear();
    unconfiguredHooks.showConfigureNotice = [](const char* text, const char* caption) {
      events.push_back(std::string("notice[") + caption + "]" + text);
    };
    unconfiguredHooks.showNotSetUp = [](const char* text, const char* caption) {
      events.push_back(std::string("not set up[") + caption + "]" + text);
    };
    unconfiguredHooks.runAccountDialog = []() -> intptr_t {
      events.push_back(std::string("dialog ") + unconfiguredState.ConnectionToConfigure + (unconfiguredState.OpenedFromNotice ? " from notice" : ""));
      unconfiguredState.OpenedFromNotice = 0;  // the dialog clears it
      if (dialogResults.empty()) return 0;
      const intptr_t result = dialogResults.front();
      dialogResults.erase(dialogResults.begin());
      if (result != 0) {
        const int k = AccountIndexByName(unconfiguredState.ConnectionToConfigure);
        if (k != kNoAccount) settings.accounts[k].configured = 1;
      }
      return result;
    };
    ASSERT_TRUE(CreateSettings(SettingsPath()));
  }

  static void Log(const std::string& name, uint8_t status = InUse) { LogSession(name.c_str(), 60, 1, 2002, status); }

  static std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const AccountRecord& account : settings.accounts) {
      if (account.connectionName[0] != '\0') names.push_back(account.connectionName);
    }
    return names;
  }

  static std::string Notice(const std::string& name) {
    return "notice[Orvalen Notification...]Orvalen detected a connection   (- " + name +
           " -) that hasn't been configured for its database.\nBest to configure this connection now";
  }
  static std::vector<std::string> Asked(const std::string& name) {
    return {Notice(name), "dialog " + name + " from notice",
            "not set up[Orvalen Notification]This connection was not properly set up for Orvalen's database. \n"
            "You will be asked to do this at a later time"};
  }
};

TEST_F(Unconfigured, WhichConnectionsAreAskedAbout) {
  using Names_ = std::vector<std::string>;
  const struct {
    const char* what;
    std::vector<std::pair<std::string, uint8_t>> log;
    Names_ preset;            // account names added before the check
    int configuredEntry;      // -1: none
    uint32_t configuredValue;
    Names_ names;             // the table afterwards
    Names_ asked;             // in order
  } rows[] = {
      {"empty log and table", {}, {}, -1, 0, {}, {}},
      {"named entry not set up", {}, {"Old ISP"}, -1, 0, {"Old ISP"}, {"Old ISP"}},
      {"duplicates", {{"Home ISP", InUse}, {"Home ISP", InUse}}, {}, -1, 0, {"Home ISP"}, {"Home ISP"}},
      {"letter case differs", {{"Home ISP", InUse}, {"home isp", InUse}}, {}, -1, 0, {"Home ISP", "home isp"},
       {"Home ISP", "home isp"}},
      {"deleted and blank records", {{"Gone", Deleted}, {"", Blank}, {"Blank", Blank}, {"Home ISP", InUse}}, {}, -1, 0,
       {"Home ISP"}, {"Home ISP"}},
      {"configured entries are not asked about", {{"Home ISP", InUse}, {"Office", InUse}}, {"Home ISP"}, 0, 1,
       {"Home ISP", "Office"}, {"Office"}},
      {"only configured 1 counts as set up", {}, {"Odd"}, 0, 2, {"Odd"}, {"Odd"}},
      {"long names are cut to the entry", {{std::string(60, 'x'), InUse}, {std::string(60, 'x'), InUse}}, {}, -1, 0,
       {std::string(31, 'x')}, {std::string(31, 'x')}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    sessionLog = SessionLog{};
    std::memset(settings.accounts, 0, sizeof settings.accounts);
    events.clear();
    for (const auto& [name, status] : row.log) Log(name, status);
    for (const std::string& name : row.preset) AddAccountName(name.c_str());
    if (row.configuredEntry >= 0) settings.accounts[row.configuredEntry].configured = row.configuredValue;
    EXPECT_TRUE(CheckUnconfiguredConnections());
    EXPECT_EQ(Names(), row.names);
    Names_ expected;
    for (const std::string& name : row.asked) {
      const Names_ one = Asked(name);
      expected.insert(expected.end(), one.begin(), one.end());
    }
    EXPECT_EQ(events, expected);
  }
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&ReadBytes(SettingsPath()).at(136 + 4))), std::string(31, 'x'))
      << "the added names are saved";
}

TEST_F(Unconfigured, NamesGoToTheLowestFreeEntriesUpToFifty) {
  AddAccountName("A");
  AddAccountName("B");
  DeleteAccount("A");
  Log("C");
  Log("B");
  Log("D");
  AddLogConnectionsToAccounts();
  EXPECT_EQ(Names(), (std::vector<std::string>{"C", "B", "D"}));

  std::memset(settings.accounts, 0, sizeof settings.accounts);
  sessionLog = SessionLog{};
  for (int i = 0; i < 53; ++i) Log("ISP " + std::to_string(i));
  CheckUnconfiguredConnections();
  const std::vector<std::string> names = Names();
  ASSERT_EQ(names.size(), 50u);
  EXPECT_EQ(names.back(), "ISP 49");
  EXPECT_EQ(AccountIndexByName("ISP 50"), kNoAccount);
  EXPECT_EQ(events.size(), 150u) << "fifty notices, dialogs and not-set-up boxes, none for the skipped names";
  EXPECT_EQ(events[147], Notice("ISP 49"));
}

TEST_F(Unconfigured, AskedInIndexOrderUntilSetUp) {
  Log("Home ISP");
  Log("Office");
  dialogResults = {1, 0};
  CheckUnconfiguredConnections();
  std::vector<std::string> expected = Asked("Office");
  expected.insert(expected.begin(), {Notice("Home ISP"), "dialog Home ISP from notice"});
  EXPECT_EQ(events, expected);
  EXPECT_EQ(settings.accounts[0].configured, 1u);
  EXPECT_EQ(settings.accounts[1].configured, 0u);
  EXPECT_STREQ(unconfiguredState.ConnectionToConfigure, "Office") << "kept when the dialog did not save";
  events.clear();
  CheckUnconfiguredConnections();
  EXPECT_EQ(events, Asked("Office")) << "asked again until it is set up";

  dialogResults = {1};
  EXPECT_TRUE(AskToConfigure("Office"));
  EXPECT_STREQ(unconfiguredState.ConnectionToConfigure, "") << "emptied after a saved account";
  EXPECT_FALSE(AskToConfigure("Office"));
}

TEST_F(Unconfigured, ACheckDuringAQuestionOnlyAddsNamesAndSaves) {
  Log("Home ISP");
  unconfiguredHooks.runAccountDialog = []() -> intptr_t {
    events.push_back(std::string("dialog ") + unconfiguredState.ConnectionToConfigure);
    Log("Office");  // a session ends under the dialog and records a new connection
    if (events.size() < 4) CheckUnconfiguredConnections();
    return 0;
  };
  CheckUnconfiguredConnections();
  EXPECT_EQ(Names(), (std::vector<std::string>{"Home ISP", "Office"}));
  ASSERT_EQ(events.size(), 6u) << "the outer check reaches the new entry; the inner one asked nothing";
  EXPECT_EQ(events[1], "dialog Home ISP");
  EXPECT_EQ(events[4], "dialog Office");
}

TEST_F(Unconfigured, WithoutHooksOrAFolder) {
  unconfiguredHooks = UnconfiguredHooks{};
  Log("Home ISP");
  EXPECT_TRUE(CheckUnconfiguredConnections());
  EXPECT_EQ(unconfiguredState.OpenedFromNotice, 1) << "no dialog ran to clear it";
  EXPECT_STREQ(unconfiguredState.ConnectionToConfigure, "Home ISP") << "nothing was saved";
  char text[kConfigureNoticeSize];
  BuildConfigureNotice(text, std::string(300, 'n').c_str());
  EXPECT_EQ(std::strlen(text), kConfigureNoticeSize - 1) << "the notice text fits its buffer";
  SetWindowsDirectory(Path("missing/folder"));
  EXPECT_FALSE(CheckUnconfiguredConnections()) << "a save failure is returned";
}

}  // namespace
