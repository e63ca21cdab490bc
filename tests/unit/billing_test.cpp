// Billing periods, a recharged card and the page's added boxes: which sessions
// count in "this month" and on the card, and what zero settings leave unchanged.
#include <cstdint>
#include <cstdio>
#include <string>

#include "logview/log_view_lines.h"
#include "storage/account_figures.h"
#include "storage/storage.h"
#include "storage/billing_period.h"
#include "test_support.h"

namespace {

class Billing : public ProgramStateTest {};

std::string PeriodWithYears(uint32_t startDay, CalendarDate date) {
  const BillingPeriod p = PeriodOf(startDay, date);
  return PeriodText(p) + " " + std::to_string(p.first.year) + "-" + std::to_string(p.last.year);
}

TEST(BillingPeriod, Boundaries) {
  const struct {
    const char* what;
    uint32_t start;
    CalendarDate date;
    const char* period;
  } rows[] = {
      {.what = "day 31, a leap February", .start = 31, .date = {2004, 2, 29}, .period = "29 Feb - 30 Mar 2004-2004"},
      {.what = "day 31, a common February", .start = 31, .date = {2003, 2, 28}, .period = "28 Feb - 30 Mar 2003-2003"},
      {.what = "the day before it", .start = 31, .date = {2003, 2, 27}, .period = "31 Jan - 27 Feb 2003-2003"},
      {.what = "day 31 in April", .start = 31, .date = {2003, 4, 30}, .period = "30 Apr - 30 May 2003-2003"},
      {.what = "day 1 is the calendar month", .start = 1, .date = {2003, 4, 30}, .period = "1 Apr - 30 Apr 2003-2003"},
      {.what = "day 0 too", .start = 0, .date = {2004, 2, 10}, .period = "1 Feb - 29 Feb 2004-2004"},
      {.what = "the start day itself", .start = 14, .date = {2003, 3, 14}, .period = "14 Mar - 13 Apr 2003-2003"},
      {.what = "the last day", .start = 14, .date = {2003, 4, 13}, .period = "14 Mar - 13 Apr 2003-2003"},
      {.what = "across the year's end", .start = 15, .date = {2003, 1, 5}, .period = "15 Dec - 14 Jan 2002-2003"},
      {.what = "December", .start = 15, .date = {2003, 12, 20}, .period = "15 Dec - 14 Jan 2003-2004"},
      {.what = "a month's first and last day", .start = 0, .date = {2003, 1, 1}, .period = "1 Jan - 31 Jan 2003-2003"},
      {.what = "", .start = 0, .date = {2003, 1, 31}, .period = "1 Jan - 31 Jan 2003-2003"},
      {.what = "a record's last year", .start = 0, .date = {99999, 1, 5}, .period = "1 Jan - 31 Jan 99999-99999"},
      {.what = "a damaged month", .start = 15, .date = {2003, 13, 5}, .period = " 0-0"},
      {.what = "a damaged day", .start = 15, .date = {2003, 1, 32}, .period = " 0-0"},
      {.what = "day 0", .start = 15, .date = {2003, 1, 0}, .period = " 0-0"},
      {.what = "a damaged year", .start = 15, .date = {100000, 1, 5}, .period = " 0-0"},
  };
  for (const auto& row : rows) EXPECT_EQ(PeriodWithYears(row.start, row.date), row.period) << row.what;
  const BillingPeriod march = PeriodOf(14, CalendarDate{2003, 3, 20});
  EXPECT_EQ(PeriodText(NextPeriod(14, march)), "14 Apr - 13 May");
  EXPECT_EQ(NextPeriod(14, march).id, march.id + 1);
  EXPECT_EQ(PeriodDays(march), 31u);
  EXPECT_EQ(PeriodDaysUpTo(march, CalendarDate{2003, 3, 20}), 7u);
  std::string days;  // month 0 and 13 come from damaged records
  for (uint32_t month = 0; month <= 13; ++month) days += std::to_string(DaysInMonth(2003, month)) + " ";
  days += std::to_string(DaysInMonth(1900, 2)) + std::to_string(DaysInMonth(2000, 2));  // common, leap
  EXPECT_EQ(days, "31 31 28 31 30 31 30 31 31 30 31 30 31 31 2829");
  for (const CalendarDate d : {CalendarDate{2000, 2, 29}, CalendarDate{1969, 12, 31}, CalendarDate{2100, 3, 1}}) {
    EXPECT_EQ(PeriodWithYears(0, DateOfDayNumber(DayNumber(d))), PeriodWithYears(0, d)) << d.year;
  }
  EXPECT_EQ(CountingPeriodId(0, UsedRecord("a", 1, 12, 2002)), 2002u * 12 + 11) << "December counts";
  EXPECT_EQ(CountingPeriodId(0, UsedRecord("a", 1, 13, 2002)), kNoPeriod) << "month 13 does not";
  EXPECT_EQ(PeriodText(PeriodById(14, CountingPeriodId(14, UsedRecord("a", 1, 13, 2002)))), "") << "a damaged month";
  EXPECT_EQ(DayMonthText(CalendarDate{2003, 13, 1}), "?");
}

TEST(BillingPeriod, LogOnDate) {
  const struct {
    SessionRecord record;
    CalendarDate logOn;
  } rows[] = {
      {.record = EndedSession("a", {2003, 3, 1}, {10, 0, 0}, {12, 0, 0}, 7200), .logOn = {2003, 3, 1}},
      // across midnight, then a day and two hours
      {.record = EndedSession("a", {2003, 3, 1}, {23, 0, 0}, {1, 0, 0}, 7200), .logOn = {2003, 2, 28}},
      {.record = EndedSession("a", {2004, 1, 1}, {23, 0, 0}, {1, 0, 0}, 7200 + 86400), .logOn = {2003, 12, 30}},
  };
  for (const auto& row : rows) {
    const CalendarDate d = LogOnDate(row.record);
    EXPECT_EQ(d.year * 10000 + d.month * 100 + d.day, row.logOn.year * 10000 + row.logOn.month * 100 + row.logOn.day);
  }
}

constexpr const char* kIsp = "Meter ISP";

// The figures of a limited plan (10 h, 20.0 + 0.05 a minute beyond, 5 % VAT) and a
// 10-hour card on 20 January 2003, by start day and recharge.
TEST_F(Billing, UsageFollowsThePeriodAndTheRecharge) {
  clock_.now = {2003, 1, 1, 20, 12, 0, 0};
  const SessionRecord log[] = {
      EndedSession(kIsp, {2003, 1, 13}, {10, 0, 0}, {11, 0, 0}, 3600),      // before the 14th
      EndedSession(kIsp, {2003, 1, 14}, {23, 0, 0}, {1, 0, 0}, 7200),       // logged on the 13th, ended on the 14th
      EndedSession(kIsp, {2003, 1, 14}, {9, 0, 0}, {10, 0, 0}, 1800),       // on the 14th
      EndedSession(kIsp, {2003, 1, 19}, {8, 0, 0}, {18, 0, 0}, 11 * 3600),  // logged on before noon
      EndedSession(kIsp, {2003, 1, 19}, {13, 30, 0}, {14, 30, 0}, 3600),    // after noon
      EndedSession(kIsp, {2002, 12, 31}, {10, 0, 0}, {11, 0, 0}, 600),      // last year
  };
  for (const SessionRecord& r : log) AppendToLog(r);
  const struct {
    const char* what;
    uint32_t kind;
    uint8_t startDay;
    MomentStamp recharged;
    const char* figures;  // seconds this period, total seconds, excess minutes, result
  } rows[] = {
      {"limited, calendar month: as before", LimitedAccess, 0, {}, "55800 56400 330 38.33"},
      {"limited from the 14th", LimitedAccess, 14, {}, "45000 56400 150 28.88"},
      {"limited from the 20th: last period", LimitedAccess, 20, {}, "0 56400 0 21.00"},
      {"limited from the 13th", LimitedAccess, 13, {}, "55800 56400 330 38.33"},
      {"card, never recharged", PrePaidCard, 0, {}, "55800 56400 0 0.00"},
      {"card recharged a second before the 13:30 session", PrePaidCard, 0, {2003, 1, 19, 13, 29, 59, 0},
       "55800 3600 0 32400.00"},
      {"card recharged before every session", PrePaidCard, 0, {2002, 1, 1, 0, 0, 0, 0}, "55800 56400 0 0.00"},
      {"a start day on a card changes nothing", PrePaidCard, 14, {}, "55800 56400 0 0.00"},
  };
  for (const auto& row : rows) {
    AccountRecord& account = ConfigureAccount(0, kIsp, row.kind, 10, 20.0f, 0.05f, 5.0f);
    account.periodStartDay = row.startDay;
    account.recharged = row.recharged;
    UsageSummary u;
    const float result = storage_.ComputeUsage(kIsp, u);
    char figures[80];
    std::snprintf(figures, sizeof figures, "%d %d %d %.2f", u.secondsThisMonth, u.totalSeconds, u.excessMinutes,
                  static_cast<double>(result));
    EXPECT_EQ(std::string(figures), row.figures) << row.what;
  }
  // The period's dates where the summaries have room; none for calendar months.
  storage_.settings.accounts[0] = AccountRecord{};
  ConfigureAccount(0, kIsp, LimitedAccess, 10, 20.0f, 0.05f, 5.0f);
  EXPECT_EQ(AccountSummaryText(storage_, kIsp),
            "Limited Access Account\nThis Month   : 930 Mins.\nCurrent Cost : 38.33 ");
  storage_.settings.accounts[0].periodStartDay = 14;
  EXPECT_EQ(AccountSummaryText(storage_, kIsp),
            "Limited Access Account\nThis Month   : 750 Mins.\nCurrent Cost : 28.88 \nPeriod : 14 Jan - 13 Feb");
  ConfigureAccount(0, kIsp, PrePaidCard, 10).recharged = MomentStamp{2003, 1, 19, 12, 0, 0, 0};
  EXPECT_EQ(AccountSummaryText(storage_, kIsp), "Prepaid Card\nAllotted Time : 10 Hrs.\nSince : 19 Jan 2003");
}

// The added boxes: shown empty for zero settings, read within their ranges, and a
// changed threshold, another kind or a recharge re-arms the warnings. Every row
// starts from a limited plan stored with day 14, 80 % and 30.50, all marks set.
TEST_F(Billing, PageBoxes) {
  AccountRecord& entry = ConfigureAccount(0, kIsp, LimitedAccess, 10, 20.0f, 0.05f, 5.0f);
  AccountEntryView view = ViewAccountEntry(entry);
  EXPECT_EQ(std::string(view.periodDay) + view.warnPercent + view.warnCost, "");
  const struct {
    const char* what;
    AccountKind kind;
    const char *day, *percent, *cost;
    bool recharge = false;
    const char* stored;  // day percent cost warned-marks recharged-year
  } rows[] = {
      {.what = "the same again keeps the marks", .kind = LimitedAccess, .day = "14", .percent = "80",
       .cost = "30.5", .stored = "14 80 30.50 777 0"},
      {.what = "a new percent re-arms the hours' two", .kind = LimitedAccess, .day = "14", .percent = "90",
       .cost = "30.5", .stored = "14 90 30.50 007 0"},
      {.what = "a new cost re-arms the cost's", .kind = LimitedAccess, .day = "14", .percent = "80", .cost = "31",
       .stored = "14 80 31.00 770 0"},
      {.what = "beyond the ranges", .kind = LimitedAccess, .day = "45", .percent = "250", .cost = "-3",
       .stored = "31 100 0.00 000 0"},
      {.what = "not numbers", .kind = LimitedAccess, .day = "x", .percent = "", .cost = "abc",
       .stored = "0 0 0.00 000 0"},
      {.what = "card: the percent, not the period; another kind re-arms all", .kind = PrePaidCard, .day = "9",
       .percent = "80", .cost = "5", .stored = "14 80 30.50 000 0"},
      {.what = "a recharge re-arms the card's", .kind = PrePaidCard, .day = "", .percent = "80", .cost = "",
       .recharge = true, .stored = "14 80 30.50 000 2002"},
  };
  for (const auto& row : rows) {
    entry.kind = LimitedAccess;
    entry.periodStartDay = 14;
    entry.warnPercent = 80;
    entry.warnCost = 30.5f;
    entry.recharged = MomentStamp{};
    entry.warnedPercent = entry.warnedFull = entry.warnedCost = 7;
    const LocalTime now = clock_.now;
    AccountPageInput input{row.kind, "10", "10", "20", "0.05", "5"};
    input.periodDay = row.day;
    input.warnPercent = row.percent;
    input.warnCost = row.cost;
    if (row.recharge) input.rechargedAt = &now;
    ApplyAccountInput(entry, input);
    char stored[80];
    std::snprintf(stored, sizeof stored, "%u %u %.2f %u%u%u %u", entry.periodStartDay, entry.warnPercent,
                  static_cast<double>(entry.warnCost), entry.warnedPercent, entry.warnedFull, entry.warnedCost,
                  entry.recharged.year);
    EXPECT_EQ(std::string(stored), row.stored) << row.what;
  }
  view = ViewAccountEntry(entry);
  EXPECT_STREQ(view.warnPercent, "80");
  EXPECT_TRUE(view.rechargeEnabled);
  entry.kind = LimitedAccess;
  EXPECT_STREQ(ViewAccountEntry(entry).periodDay, "14");
}

}  // namespace
