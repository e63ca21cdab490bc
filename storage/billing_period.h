// Billing periods and moments in time for the account arithmetic.
//
// A limited-access account may be billed from a day of the month other than the
// 1st: its period runs from that day to the day before it in the next month. A
// start day beyond a month's end falls on that month's last day (31 gives 28 or
// 29 February and 30 April). Start day 0 is the calendar month.
#pragma once
#include <cstdint>
#include <string>

#include "platform/system_clock.h"
#include "storage/account_record.h"
#include "storage/session_record.h"

struct CalendarDate {
  uint32_t year = 0;
  uint32_t month = 0;  // 1 = January
  uint32_t day = 0;
};

struct BillingPeriod {
  CalendarDate first;
  CalendarDate last;
  uint32_t id = 0;  // grows by one a period: year * 12 + month - 1 of the first day
};

constexpr uint32_t kNoPeriod = 0xFFFFFFFFu;  // the id of a damaged date's period

uint32_t DaysInMonth(uint32_t year, uint32_t month);
// Days since 1 January 1970 (negative before), and back.
int64_t DayNumber(const CalendarDate& date);
CalendarDate DateOfDayNumber(int64_t days);

BillingPeriod PeriodOf(uint32_t startDay, const CalendarDate& date);
inline BillingPeriod PeriodOf(uint32_t startDay, const LocalTime& now) {
  return PeriodOf(startDay, CalendarDate{now.year, now.month, now.day});
}
// The period after the given one.
BillingPeriod NextPeriod(uint32_t startDay, const BillingPeriod& period);
// Days of the period, and days of it up to and including the date.
uint32_t PeriodDays(const BillingPeriod& period);
uint32_t PeriodDaysUpTo(const BillingPeriod& period, const CalendarDate& date);

// "14 Mar".
std::string DayMonthText(const CalendarDate& date);
// "14 Mar - 13 Apr".
std::string PeriodText(const BillingPeriod& period);

// The record carries the date on which its session ended; the session began the
// day before when it crossed midnight (more days before for a longer one). Its
// log-on time against its log-off time and duration tells which.
CalendarDate LogOnDate(const SessionRecord& record);

// The id of the period a record counts in: for start day 0 the month it was
// recorded in, as the figures have always been counted; else the period of its
// log-on date. kNoPeriod for a damaged date.
uint32_t CountingPeriodId(uint32_t startDay, const SessionRecord& record);
// The period of that id.
BillingPeriod PeriodById(uint32_t startDay, uint32_t id);

// Moments ordered in time as plain numbers: seconds since 1 January 1970.
int64_t MomentOf(const CalendarDate& date, uint32_t hour, uint32_t minute, uint32_t second);
int64_t LogOnMoment(const SessionRecord& record);
// 0 for a zero stamp (none).
int64_t StampMoment(const MomentStamp& stamp);
MomentStamp StampOf(const LocalTime& now);
