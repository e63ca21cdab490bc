// The monitor: the texts of times and dates, the probe of the dial-up service, the
// alarm, and the question about connections without account details.
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/status_text.h"
#include "monitor/alarm.h"
#include "monitor/time_text.h"
#include "monitor/unconfigured_connections.h"
#include "storage/storage.h"
#include "platform/program_paths.h"
#include "test_support.h"

namespace {

using State = ScriptedRas::State;
std::vector<std::string> events;

class TimeText : public ProgramStateTest {};

TEST_F(TimeText, ClocksDatesAndDurations) {
  const auto clock = [](uint8_t use24, uint32_t h, uint32_t m, uint32_t s) {
    char text[kClockTextSize];
    FormatClock(text, h, m, s, use24 != 0);
    return std::string(text);
  };
  const auto date = [](uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
    char text[kDateTextSize];
    FormatDate(text, dayOfWeek, month, day, year);
    return std::string(text);
  };
  const auto duration = [](int32_t seconds) {
    char text[kElapsedTextSize];
    FormatElapsed(text, seconds);
    return std::string(text);
  };
  const std::pair<std::string, const char*> rows[] = {
      {clock(0, 14, 5, 9), "2 : 05 : 09  PM"},     {clock(0, 0, 30, 0), "12 : 30 : 00  AM"},
      {clock(0, 12, 0, 0), "12 : 00 : 00  PM"},    {clock(0, 11, 59, 59), "11 : 59 : 59  AM"},
      {clock(0, 23, 10, 5), "11 : 10 : 05  PM"},   {clock(0, 1, 9, 10), "1 : 09 : 10  AM"},
      {clock(1, 14, 5, 9), "14 : 05 : 09   "},     {clock(1, 0, 10, 10), "0 : 10 : 10   "},
      {clock(7, 12, 0, 0), "12 : 00 : 00   "},     {date(1, 1, 7, 2002), "Mon.  Jan.  7, 2002"},
      {date(5, 5, 3, 2002), "Fri.  May  3, 2002"}, {date(0, 9, 30, 2001), "Sun. Sept.  30, 2001"},
      {date(6, 12, 31, 1999), "Sat.  Dec.  31, 1999"}, {date(7, 1, 7, 2002), "Jan.  7, 2002"},
      {date(2, 0, 7, 2002), "Tue.    7, 2002"},     {date(0xFFFFFFFF, 13, 0xFFFFFFFF, 0xFFFFFFFF), "  -1, -1"},
      {duration(-65), "0 Hr : -1 Min : -5 sec"},     {duration(3725), "1 Hr : 2 Min : 5 sec"},
      {duration(2147483647), "596523 Hr : 14 Min : 7 sec"},
      {duration(-2147483647 - 1), "-596523 Hr : -14 Min : -8 sec"}};
  for (const auto& [text, expected] : rows) EXPECT_EQ(text, expected);
}

class Probe : public ProgramStateTest {};

TEST_F(Probe, EachPollTickAsksTheServiceOnceAndTheSessionFollowsItsAnswer) {
  ASSERT_TRUE(storage_.CreateSettings(SettingsPath()));
  ASSERT_TRUE(storage_.CreateEmptyLog(LogFilePath().c_str()));
  // The service at a tick of timer 2; after it, whether a session is open, and the on-line
  // flag, which only a connection listed as disconnected clears.
  const struct {
    State state;
    uint32_t open;
    int onLine;
  } ticks[] = {{.state = State::None, .open = 0, .onLine = 0},      {.state = State::Dialling, .open = 0, .onLine = 0},
               {.state = State::Connected, .open = 1, .onLine = 1}, {.state = State::Connected, .open = 1, .onLine = 1},
               {.state = State::Vanished, .open = 0, .onLine = 1},  {.state = State::Connected, .open = 1, .onLine = 1},
               {.state = State::Dialling, .open = 0, .onLine = 1},  {.state = State::Disconnected, .open = 0, .onLine = 0},
               {.state = State::Unavailable, .open = 0, .onLine = 0}};
  int polls = 0, statusQueries = 0;
  for (bool dialogShown : {false, true}) {
    for (const auto& tick : ticks) {
      ras_.state = tick.state;
      ras_.name = tick.state == State::Connected ? "Home ISP" : "Other";  // taken only when connected
      const bool closes = monitor_.SessionOpen() && tick.open == 0;
      monitor_.Alarm().OneShotFired = 1;
      OnMainWindowTimer(true, dialogShown, monitor_);   // timer 2
      OnMainWindowTimer(false, dialogShown, monitor_);  // timer 5 or 10 in the same 100 ms
      EXPECT_EQ(ras_.enumCalls, ++polls) << "one dial-up query a tick, none for the other timers";
      EXPECT_EQ(ras_.statusCalls, statusQueries += tick.state != State::Unavailable) << "a failed enumeration ends it";
      EXPECT_EQ(monitor_.Session().SessionOpen, tick.open) << "opened or closed by the tick that saw the change";
      EXPECT_EQ(monitor_.Probe().OnLine(), tick.onLine);
      EXPECT_EQ(monitor_.Probe().NoConnectionSeen(), polls < 3 ? 1 : 0) << "until the first connection";
      EXPECT_EQ(monitor_.Alarm().OneShotFired, closes ? 0 : 1) << "the next session's one-shot alarm may fire";
    }
  }
  EXPECT_STREQ(monitor_.Probe().ConnectionName(), "Home ISP");
  EXPECT_STREQ(statusState.statusText, kOffLineStatusText) << "the last tick saw no connection";
  // Nothing seen yet: a zero handle; then the handle seen last, also when nothing is listed.
  std::vector<uintptr_t> handles(ras_.queriedHandles.size(), ras_.handle);
  handles[0] = 0;
  EXPECT_EQ(ras_.queriedHandles, handles);
}

class Alarm : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    shell_ = &recorder_;
    recorder_.test = this;
    storage_.ApplyDefaultSettings();  // every 1 h 0 min, or once after 2 h 30 min
    storage_.settings.alarmOn = 1;
  }
  void Fire() { RunTimer(&Monitor::OnAlarmTimer); }
  struct Recorder : MonitorShell {
    Alarm* test = nullptr;
    bool firedInside = false;  // one timer firing inside the first notice's message loop
    void PlayAlarmSound() override { events.push_back("sound"); }
    void ShowAlarmReminder(const char* text) override {
      events.push_back(std::string("notice:") + text);
      if (!std::exchange(firedInside, true)) test->Fire();
    }
  } recorder_;
};

TEST_F(Alarm, PeriodFromTheFieldsOfTheModeNeverATightLoop) {
  constexpr uint32_t kDefault = kDefaultAlarmPeriodMs / 60000;
  // The mode, its own hours and minutes (the other mode's keep their defaults), the period in minutes.
  const struct {
    uint8_t mode;
    int8_t hours, minutes;
    uint32_t period;
  } rows[] = {{.mode = kAlarmEveryInterval, .hours = 0, .minutes = 45, .period = 45},
              {.mode = kAlarmEveryInterval, .hours = 0, .minutes = 1, .period = 1},
              {.mode = kAlarmEveryInterval, .hours = 24, .minutes = 59, .period = 24 * 60 + 59},
              {.mode = kAlarmOnceAtEnd, .hours = 2, .minutes = 30, .period = 150},
              {.mode = kAlarmEveryInterval, .hours = 0, .minutes = 0, .period = kDefault},
              {.mode = kAlarmOnceAtEnd, .hours = 0, .minutes = 0, .period = kDefault},
              {.mode = kAlarmEveryInterval, .hours = -3, .minutes = 10, .period = kDefault},
              {.mode = 0, .hours = 1, .minutes = 0, .period = kDefault}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.mode) + " " + std::to_string(row.hours) + ":" + std::to_string(row.minutes));
    storage_.ApplyDefaultSettings();
    storage_.settings.alarmMode = row.mode;
    (row.mode == kAlarmOnceAtEnd ? storage_.settings.alarmOnceHours : storage_.settings.alarmRepeatHours) = row.hours;
    (row.mode == kAlarmOnceAtEnd ? storage_.settings.alarmOnceMinutes : storage_.settings.alarmRepeatMinutes) =
        row.minutes;
    Monitor monitor(storage_);
    monitor.Alarm().OneShotFired = 1;
    EXPECT_EQ(monitor.AlarmPeriodMs(), row.period * 60000);
    EXPECT_EQ(monitor.Alarm().OneShotFired, row.mode == kAlarmEveryInterval ? 0 : 1) << "cleared by a repeating period";
  }
}

TEST_F(Alarm, WhatEachFiringGives) {
  const std::string sound = "sound";
  const std::string everyHour =
      "notice:\nThis Reminder Comes Every 1 Hr and  0 Min.  From the\n time You First Logged On ";
  const std::string once = "notice:\n2 Hr and  30 Min.\nThe Time Set On The Alarm Has Elapsed.\n"
                           "This Reminder Will Not Come Again In This Session";
  const struct {
    const char* what;
    uint8_t mode, action;
    int onLine = 1, alarmOn = 1, timerFirings = 1;
    std::vector<std::string> events = {};
  } rows[] = {
      {.what = "repeating, box and sound", .mode = kAlarmEveryInterval, .action = kAlarmBoxAndSound,
       .events = {sound, everyHour, sound, everyHour}},
      {.what = "one-shot fires once, marked before its notice", .mode = kAlarmOnceAtEnd, .action = kAlarmBoxOnly,
       .timerFirings = 3, .events = {once}},
      {.what = "sound only", .mode = kAlarmEveryInterval, .action = kAlarmSoundOnly, .timerFirings = 2,
       .events = {sound, sound}},
      {.what = "box only", .mode = kAlarmEveryInterval, .action = kAlarmBoxOnly, .events = {everyHour, everyHour}},
      {.what = "unknown action", .mode = kAlarmEveryInterval, .action = 0},
      {.what = "unknown mode", .mode = 0, .action = kAlarmBoxAndSound},
      {.what = "alarm off", .mode = kAlarmEveryInterval, .action = kAlarmBoxAndSound, .alarmOn = 0},
      {.what = "off-line", .mode = kAlarmOnceAtEnd, .action = kAlarmBoxAndSound, .onLine = 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    events.clear();
    monitor_ = Monitor{storage_};
    recorder_.firedInside = false;
    storage_.settings.alarmMode = row.mode;
    storage_.settings.alarmAction = row.action;
    storage_.settings.alarmOn = static_cast<uint8_t>(row.alarmOn);
    ras_.state = row.onLine ? State::Connected : State::None;
    monitor_.PollNow();
    for (int i = 0; i < row.timerFirings; ++i) Fire();
    EXPECT_EQ(events, row.events);
    EXPECT_EQ(monitor_.Alarm().OneShotFired, row.events.size() == 1 && row.mode == kAlarmOnceAtEnd ? 1 : 0);
  }
}

TEST_F(Alarm, PageClampsTimesAndMapsUnknownStoredValuesToTheDefaults) {
  const struct {
    uint32_t hours, minutes;
    AlarmTime clamped;  // hours, minutes
  } clamps[] = {{.hours = 0, .minutes = 0, .clamped = {0, 5}},     {.hours = 0, .minutes = 99, .clamped = {0, 59}},
                {.hours = 300, .minutes = 0, .clamped = {24, 0}},  {.hours = 24, .minutes = 59, .clamped = {24, 59}},
                {.hours = 25, .minutes = 60, .clamped = {24, 59}}, {.hours = 0, .minutes = 1, .clamped = {0, 1}},
                {.hours = 1, .minutes = 0, .clamped = {1, 0}},
                {.hours = 0xFFFFFFFFu, .minutes = 0xFFFFFFFFu, .clamped = {24, 59}}};
  for (const auto& row : clamps) {
    const AlarmTime t = ClampAlarmTime(row.hours, row.minutes);
    EXPECT_EQ(t.hours, row.clamped.hours) << row.hours << ":" << row.minutes;
    EXPECT_EQ(t.minutes, row.clamped.minutes) << row.hours << ":" << row.minutes;
  }
  // Stored values the page does not know open as the defaults; OK stores what it shows, clamped.
  const auto page = [] {
    return std::vector<int>{static_cast<int>(alarmState.AlarmOnState), alarmState.AlarmModeState,
                            alarmState.AlarmActionState};
  };
  storage_.settings.alarmOn = 3;
  storage_.settings.alarmMode = kAlarmOnceAtEnd;
  storage_.settings.alarmAction = kAlarmBoxOnly;
  LoadAlarmPageState(storage_.settings);
  EXPECT_EQ(page(), (std::vector<int>{1, kAlarmOnceAtEnd, kAlarmBoxOnly}));
  storage_.settings.alarmOn = storage_.settings.alarmMode = storage_.settings.alarmAction = 0;
  LoadAlarmPageState(storage_.settings);
  EXPECT_EQ(page(), (std::vector<int>{0, kAlarmEveryInterval, kAlarmBoxAndSound}));
  StoreAlarmPage(storage_.settings, 0, 0, 300, 99);
  EXPECT_EQ(std::vector<int>({storage_.settings.alarmOn, storage_.settings.alarmMode, storage_.settings.alarmAction,
                              storage_.settings.alarmRepeatMinutes, storage_.settings.alarmOnceHours,
                              storage_.settings.alarmOnceMinutes}),
            (std::vector<int>{0, kAlarmEveryInterval, kAlarmBoxAndSound, 5, 24, 59}));
}

// --- Connections without account details ------------------------------------

int dialogsThatSave = 0;          // the next account dialogs that save their account
std::function<void()> underDialog;  // what happens while a dialog is open

struct AskingShell : MonitorShell {
  Storage* store = nullptr;  // the test's
  void ShowConfigureNotice(const char* text, const char* caption) override {
    events.push_back(std::string("notice[") + caption + "]" + text);
  }
  void ShowNotSetUp(const char* text, const char* caption) override {
    events.push_back(std::string("not set up[") + caption + "]" + text);
  }
  intptr_t RunAccountDialog() override {
    events.push_back(std::string("dialog ") + unconfiguredState.ConnectionToConfigure +
                     (unconfiguredState.OpenedFromNotice == 1 ? " from notice" : ""));
    unconfiguredState.OpenedFromNotice = 0;  // the dialog clears it
    if (underDialog) underDialog();
    if (dialogsThatSave == 0) return 0;
    --dialogsThatSave;
    store->settings.accounts[store->AccountIndexByName(unconfiguredState.ConnectionToConfigure)].configured = 1;
    return 1;
  }
} asking;

class Unconfigured : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    events.clear();
    dialogsThatSave = 0;
    underDialog = nullptr;
    asking.store = &storage_;
    ASSERT_TRUE(storage_.CreateSettings(SettingsPath()));
  }

  void Log(const std::string& name, uint8_t status = InUse) { LogSession(name.c_str(), 60, 1, 2002, status); }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const AccountRecord& a : storage_.settings.accounts)
      if (a.connectionName[0] != '\0') names.push_back(a.connectionName);
    return names;
  }

  // For each name in turn: the notice, the account dialog it opens, and the box saying it is not set up.
  static std::vector<std::string> Asked(const std::vector<std::string>& names) {
    std::vector<std::string> asked;
    for (const std::string& name : names) {
      asked.insert(asked.end(), {"notice[Orvalen Notification...]Orvalen detected a connection   (- " + name +
                                     " -) that hasn't been configured for its database.\nBest to configure this "
                                     "connection now",
                                 "dialog " + name + " from notice",
                                 "not set up[Orvalen Notification]This connection was not properly set up for "
                                 "Orvalen's database. \nYou will be asked to do this at a later time"});
    }
    return asked;
  }
};

TEST_F(Unconfigured, WhichConnectionsAreAskedAbout) {
  using Names_ = std::vector<std::string>;
  std::vector<std::pair<std::string, uint8_t>> many;  // more connections than the fifty entries
  Names_ fifty;
  for (int i = 0; i < 53; ++i) {
    many.push_back({"ISP " + std::to_string(i), InUse});
    if (i < 50) fifty.push_back(many.back().first);
  }
  const struct {
    const char* what;
    std::vector<std::pair<std::string, uint8_t>> log = {};
    std::vector<std::pair<std::string, uint32_t>> entries = {};  // the table before: name ("" free), configured
    Names_ names = {};                                           // the table afterwards
    Names_ asked = {};                                           // in order
  } rows[] = {
      {.what = "empty log and table"},
      {.what = "named entry not set up", .entries = {{"Old ISP", 0}}, .names = {"Old ISP"}, .asked = {"Old ISP"}},
      {.what = "only configured 1 counts as set up", .entries = {{"Odd", 2}}, .names = {"Odd"}, .asked = {"Odd"}},
      {.what = "duplicates", .log = {{"Home", InUse}, {"Home", InUse}}, .names = {"Home"}, .asked = {"Home"}},
      {.what = "letter case differs", .log = {{"Home", InUse}, {"home", InUse}}, .names = {"Home", "home"},
       .asked = {"Home", "home"}},
      {.what = "deleted and blank records", .log = {{"Gone", Deleted}, {"", Blank}, {"Blank", Blank}, {"Home", InUse}},
       .names = {"Home"}, .asked = {"Home"}},
      {.what = "configured entries are not asked about", .log = {{"Home", InUse}, {"Office", InUse}},
       .entries = {{"Home", 1}}, .names = {"Home", "Office"}, .asked = {"Office"}},
      {.what = "at most fifty entries", .log = many, .names = fifty, .asked = fifty},
      {.what = "the lowest free entries, in log order", .log = {{"Cable", InUse}, {"Brio", InUse}, {"Dial", InUse}},
       .entries = {{"", 0}, {"Brio", 0}}, .names = {"Cable", "Brio", "Dial"}, .asked = {"Cable", "Brio", "Dial"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    storage_.sessionLog = SessionLog{};
    std::memset(storage_.settings.accounts, 0, sizeof storage_.settings.accounts);
    events.clear();
    for (const auto& [name, status] : row.log) Log(name, status);
    for (std::size_t k = 0; k < row.entries.size(); ++k) {
      std::strcpy(storage_.settings.accounts[k].connectionName, row.entries[k].first.c_str());
      storage_.settings.accounts[k].configured = row.entries[k].second;
    }
    EXPECT_TRUE(CheckUnconfiguredConnections(storage_, asking));
    EXPECT_EQ(Names(), row.names);
    EXPECT_EQ(events, Asked(row.asked));
  }
  EXPECT_STREQ(reinterpret_cast<const char*>(&ReadBytes(SettingsPath()).at(136 + 4)), "Cable") << "saved";
}

TEST_F(Unconfigured, AskedAgainUntilSetUp) {
  Log("Home ISP");
  Log("Office");
  dialogsThatSave = 1;
  CheckUnconfiguredConnections(storage_, asking);
  std::vector<std::string> expected = Asked({"Home ISP", "Office"});
  expected.erase(expected.begin() + 2);  // the first dialog saved its account: no box after it
  EXPECT_EQ(events, expected);
  EXPECT_STREQ(unconfiguredState.ConnectionToConfigure, "Office") << "kept when the dialog did not save";
  events.clear();
  dialogsThatSave = 1;
  CheckUnconfiguredConnections(storage_, asking);
  EXPECT_EQ(events, std::vector<std::string>(expected.begin() + 2, expected.end() - 1)) << "Office asked again";
  EXPECT_STREQ(unconfiguredState.ConnectionToConfigure, "") << "emptied after a saved account";

}

TEST_F(Unconfigured, ACheckDuringAQuestionOnlyAddsNamesAndSaves) {
  Log("Home ISP");
  underDialog = [this] {
    Log("Office");  // a session ends under the dialog and records a new connection
    if (events.size() < 4) CheckUnconfiguredConnections(storage_, asking);
  };
  CheckUnconfiguredConnections(storage_, asking);
  EXPECT_EQ(Names(), (std::vector<std::string>{"Home ISP", "Office"}));
  EXPECT_EQ(events, Asked({"Home ISP", "Office"})) << "the outer check reaches the new entry; the inner asks nothing";
}

}  // namespace
