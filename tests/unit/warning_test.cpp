// Usage warnings: each comes once per crossing and again only after its re-arm,
// survives a restart, and says what is used and where this rate leads.
#include <cstdint>
#include <cstring>
#include <string>

#include "monitor/alarm.h"
#include "monitor/usage_warning.h"
#include "storage/account_figures.h"
#include "storage/storage.h"
#include "test_support.h"

namespace {

constexpr const char* kIsp = "Meter ISP";
constexpr int32_t kHour = 3600;
using W = UsageWarningKind;

class Warnings : public ProgramStateTest {
 protected:
  void SetUp() override {
    ProgramStateTest::SetUp();
    clock_.now = {2003, 3, 4, 20, 12, 0, 0};  // Thursday 20 March 2003
    AppendToLog(EndedSession(kIsp, {2003, 3, 10}, {1, 0, 0}, {8, 0, 0}, 7 * kHour));
  }
  W Take(int32_t running) { return TakeDueWarning(storage_, kIsp, clock_.now, running, text_); }
  std::string text_;

 public:
  void Timer() { RunTimer(&Monitor::OnUsageWarningTimer); }
};

struct Step {
  const char* what;
  int32_t running;          // seconds of the open session
  W expected;
  uint32_t month = 3;       // of the clock
  const char* percent = nullptr;  // typed into the page, nullptr: not applied
  const char* cost = nullptr;
  bool recharge = false;
  const char* text = nullptr;  // the notice's text, when checked
};

void Apply(AccountRecord& entry, AccountKind kind, const Step& step, const LocalTime& now) {
  if (step.percent == nullptr && !step.recharge) return;
  AccountPageInput input{kind, "10", "10", "20", "0.05", "5"};
  input.warnPercent = step.percent;
  input.warnCost = step.cost != nullptr ? step.cost : "";
  if (step.recharge) input.rechargedAt = &now;
  ApplyAccountInput(entry, input);
}

// A plan of 10 h with 7 h logged on 10 March, 20.0 a month + 0.05 a minute beyond, 5 % VAT.
TEST_F(Warnings, PlanWarningsComeOnceAndAgainAfterTheirReArm) {
  AccountRecord& entry = ConfigureAccount(0, kIsp, LimitedAccess, 10, 20.0f, 0.05f, 5.0f);
  const Step steps[] = {
      {.what = "zero thresholds: nothing", .running = 5 * kHour, .expected = W::None},
      {.what = "80 %: not yet at 7 h 59", .running = 59 * 60, .expected = W::None, .percent = "80", .cost = ""},
      {.what = "crossed at 8 h", .running = kHour, .expected = W::Share},
      {.what = "once", .running = kHour + 60, .expected = W::None},
      {.what = "100 %", .running = 3 * kHour, .expected = W::Full},
      {.what = "once", .running = 4 * kHour, .expected = W::None},
      {.what = "a new threshold re-arms", .running = 4 * kHour, .expected = W::Full, .percent = "90", .cost = ""},
      {.what = "the same value: no re-arm", .running = 4 * kHour, .expected = W::None, .percent = "90", .cost = ""},
      {.what = "a cost threshold of 21.00", .running = 4 * kHour, .expected = W::Cost, .percent = "90", .cost = "21"},
      {.what = "next period re-arms: only the open session", .running = 9 * kHour, .expected = W::Share, .month = 4},
      {.what = "the clock set back brings nothing again", .running = 4 * kHour, .expected = W::None},
  };
  for (const Step& step : steps) {
    clock_.now.month = step.month;
    Apply(entry, LimitedAccess, step, clock_.now);
    EXPECT_EQ(Take(step.running), step.expected) << step.what;
  }
}

// A 10-hour card with the same 7 h on it.
TEST_F(Warnings, CardWarningsComeOnceAndAgainAfterARecharge) {
  AccountRecord& entry = ConfigureAccount(0, kIsp, PrePaidCard, 10);
  const Step steps[] = {
      {.what = "no percent: nothing", .running = kHour / 2, .expected = W::None},
      {.what = "75 %: crossed at 7.5 h", .running = kHour / 2, .expected = W::Share, .percent = "75",
       .text = "\nMeter ISP: 75 % of the card used\n7.50 of 10 Hrs. used\nAt this rate it runs out around 27 Mar"},
      {.what = "once", .running = kHour, .expected = W::None},
      {.what = "used up", .running = 3 * kHour, .expected = W::Full,
       .text = "\nMeter ISP: the card's hours are used up\n10.00 of 10 Hrs. used"},
      {.what = "once", .running = 4 * kHour, .expected = W::None},
      {.what = "a recharge: the old sessions no longer count", .running = 7 * kHour, .expected = W::None, .percent = "75",
       .recharge = true},
      {.what = "the new card crosses", .running = 8 * kHour, .expected = W::Share},
      {.what = "used up, at connect already: the share is implied", .running = 11 * kHour, .expected = W::Full,
       .percent = "75", .recharge = true},
      {.what = "nothing left to tell", .running = 11 * kHour, .expected = W::None},
  };
  for (const Step& step : steps) {
    Apply(entry, PrePaidCard, step, clock_.now);
    EXPECT_EQ(Take(step.running), step.expected) << step.what;
    EXPECT_TRUE(step.text == nullptr || text_ == step.text) << text_;
  }
}

// The timer's way: the mark saved before the notice, shown once, and still shown
// after the program is killed and started again.
TEST_F(Warnings, OncePerCrossingAcrossARestart) {
  ConfigureAccount(0, kIsp, LimitedAccess, 10, 20.0f, 0.05f, 5.0f).warnPercent = 80;
  storage_.settings.alarmAction = kAlarmBoxAndSound;
  static int notices, sounds;
  static std::string shown;
  notices = sounds = 0;
  struct : MonitorShell {
    Warnings* test = nullptr;
    void PlayAlarmSound() override { ++sounds; }
    void ShowUsageWarning(const char* text) override {
      ++notices;
      shown = text;
      test->Timer();  // the notice's message loop runs the timer: no second notice
    }
  } shell;
  shell.test = this;
  shell_ = &shell;
  ras_.Connect(kIsp);
  Tick();
  clock_.Advance(3600);  // on-line for an hour: 8 h
  Timer();
  Timer();
  EXPECT_EQ(notices, 1);
  EXPECT_EQ(sounds, 1);
  EXPECT_EQ(shown,
            "\nMeter ISP: 80 % of the included hours used\n8.00 of 10 Hrs. this period (1 Mar - 31 Mar)\n"
            "At this rate: 12.40 Hrs. and 28.56  by 31 Mar");
  std::memset(&storage_.settings, 0, sizeof storage_.settings);  // killed, and started again
  ASSERT_TRUE(storage_.LoadSettings(SettingsPath()));
  storage_.settings.alarmAction = kAlarmBoxOnly;
  clock_.Advance(600);
  Timer();
  EXPECT_EQ(notices, 1);
  clock_.Advance(2 * 3600);
  Timer();
  EXPECT_EQ(notices, 2) << "100 % still comes";
  EXPECT_EQ(sounds, 1) << "no sound when the alarm's action has none";
}

TEST(WarningProjection, Figures) {
  const BillingPeriod from14th = PeriodOf(14, CalendarDate{2003, 3, 20});
  EXPECT_EQ(ProjectedSeconds(10 * kHour, from14th, CalendarDate{2003, 3, 20}), 10 * kHour * 31 / 7);
  EXPECT_EQ(ProjectedSeconds(10 * kHour, from14th, CalendarDate{2003, 4, 13}), 10 * kHour);
  const BillingPeriod march = PeriodOf(0, CalendarDate{2003, 3, 10});
  const struct {
    int64_t remaining, usedThisPeriod;
    const char* runsOut;
  } rows[] = {{6 * kHour, 4 * kHour, "25 Mar"}, {0, 4 * kHour, "10 Mar"}, {1, 4 * kHour, "11 Mar"}, {kHour, 0, ""}};
  for (const auto& row : rows) {
    CalendarDate date;
    const bool known = CardRunOutDate(row.remaining, row.usedThisPeriod, march, CalendarDate{2003, 3, 10}, date);
    EXPECT_EQ(known ? DayMonthText(date) : "", row.runsOut) << row.remaining;
  }
}

}  // namespace
