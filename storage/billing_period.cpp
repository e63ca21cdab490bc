#include "storage/billing_period.h"


namespace {

constexpr int64_t kSecondsPerDay = 86400;

bool IsLeap(uint32_t year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

bool ValidDate(const CalendarDate& date) {
  return date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31 && date.year < 100000;
}

uint32_t Min(uint32_t a, uint32_t b) { return a < b ? a : b; }

CalendarDate MonthAfter(uint32_t year, uint32_t month) {
  return month == 12 ? CalendarDate{year + 1, 1, 1} : CalendarDate{year, month + 1, 1};
}

CalendarDate MonthBefore(uint32_t year, uint32_t month) {
  return month == 1 ? CalendarDate{year - 1, 12, 1} : CalendarDate{year, month - 1, 1};
}

// The period's first day in the month of `month`.
CalendarDate StartIn(uint32_t startDay, CalendarDate month) {
  month.day = startDay == 0 ? 1 : Min(startDay, DaysInMonth(month.year, month.month));
  return month;
}

BillingPeriod PeriodFrom(uint32_t startDay, const CalendarDate& first) {
  BillingPeriod period;
  period.first = first;
  const CalendarDate next = StartIn(startDay, MonthAfter(first.year, first.month));
  period.last = DateOfDayNumber(DayNumber(next) - 1);
  period.id = first.year * 12 + first.month - 1;
  return period;
}

}  // namespace

uint32_t DaysInMonth(uint32_t year, uint32_t month) {
  static const uint8_t kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 31;
  return month == 2 && IsLeap(year) ? 29 : kDays[month - 1];
}

// The civil-from-days algorithm and its inverse (proleptic Gregorian calendar).
int64_t DayNumber(const CalendarDate& date) {
  const int64_t y = static_cast<int64_t>(date.year) - (date.month <= 2 ? 1 : 0);
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yearOfEra = y - era * 400;
  const int64_t m = date.month;
  const int64_t dayOfYear = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + date.day - 1;
  const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

CalendarDate DateOfDayNumber(int64_t days) {
  days += 719468;
  const int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const int64_t dayOfEra = days - era * 146097;
  const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int64_t mp = (5 * dayOfYear + 2) / 153;
  const int64_t day = dayOfYear - (153 * mp + 2) / 5 + 1;
  const int64_t month = mp < 10 ? mp + 3 : mp - 9;
  const int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
  return CalendarDate{static_cast<uint32_t>(year), static_cast<uint32_t>(month), static_cast<uint32_t>(day)};
}

BillingPeriod PeriodOf(uint32_t startDay, const CalendarDate& date) {
  if (!ValidDate(date) || date.year == 0) {
    BillingPeriod none;
    none.id = kNoPeriod;
    return none;
  }
  CalendarDate first = StartIn(startDay, date);
  if (date.day < first.day) first = StartIn(startDay, MonthBefore(date.year, date.month));
  return PeriodFrom(startDay, first);
}

BillingPeriod NextPeriod(uint32_t startDay, const BillingPeriod& period) {
  return PeriodFrom(startDay, StartIn(startDay, MonthAfter(period.first.year, period.first.month)));
}

uint32_t PeriodDays(const BillingPeriod& period) {
  return static_cast<uint32_t>(DayNumber(period.last) - DayNumber(period.first) + 1);
}

uint32_t PeriodDaysUpTo(const BillingPeriod& period, const CalendarDate& date) {
  const int64_t days = DayNumber(date) - DayNumber(period.first) + 1;
  if (days < 1) return 1;
  return Min(static_cast<uint32_t>(days), PeriodDays(period));
}

std::string DayMonthText(const CalendarDate& date) {
  static const char* const kMonths[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  if (date.month < 1 || date.month > 12) return "?";
  return std::to_string(date.day) + " " + kMonths[date.month - 1];
}

std::string PeriodText(const BillingPeriod& period) {
  if (period.id == kNoPeriod) return std::string();
  return DayMonthText(period.first) + " - " + DayMonthText(period.last);
}

CalendarDate LogOnDate(const SessionRecord& record) {
  const CalendarDate ended{record.year, record.month, record.day};
  if (!ValidDate(ended)) return ended;
  const int64_t off = int64_t{record.logOffHour} * 3600 + record.logOffMinute * 60 + record.logOffSecond;
  const int64_t on = int64_t{record.logOnHour} * 3600 + record.logOnMinute * 60 + record.logOnSecond;
  // The duration beyond the clock's difference is whole days, give or take the
  // checkpoint's rounding; a damaged figure cannot send the date back more than a year.
  const int64_t beyond = int64_t{record.durationSeconds} - (off - on);
  int64_t daysBack = beyond > kSecondsPerDay / 2 ? (beyond + kSecondsPerDay / 2) / kSecondsPerDay : 0;
  if (daysBack > 366) daysBack = 366;
  return daysBack == 0 ? ended : DateOfDayNumber(DayNumber(ended) - daysBack);
}

uint32_t CountingPeriodId(uint32_t startDay, const SessionRecord& record) {
  if (startDay != 0) return PeriodOf(startDay, LogOnDate(record)).id;
  if (record.month < 1 || record.month > 12 || record.year == 0 || record.year >= 100000) return kNoPeriod;
  return record.year * 12 + record.month - 1;
}

BillingPeriod PeriodById(uint32_t startDay, uint32_t id) {
  if (id == kNoPeriod) return PeriodOf(startDay, CalendarDate{});
  return PeriodFrom(startDay, StartIn(startDay, CalendarDate{id / 12, id % 12 + 1, 1}));
}

int64_t MomentOf(const CalendarDate& date, uint32_t hour, uint32_t minute, uint32_t second) {
  return DayNumber(date) * kSecondsPerDay + int64_t{hour} * 3600 + int64_t{minute} * 60 + second;
}

int64_t LogOnMoment(const SessionRecord& record) {
  return MomentOf(LogOnDate(record), record.logOnHour, record.logOnMinute, record.logOnSecond);
}

int64_t StampMoment(const MomentStamp& stamp) {
  if (stamp.year == 0) return 0;
  return MomentOf(CalendarDate{stamp.year, stamp.month, stamp.day}, stamp.hour, stamp.minute, stamp.second);
}

MomentStamp StampOf(const LocalTime& now) {
  MomentStamp stamp{};
  stamp.year = static_cast<uint16_t>(now.year);
  stamp.month = static_cast<uint8_t>(now.month);
  stamp.day = static_cast<uint8_t>(now.day);
  stamp.hour = static_cast<uint8_t>(now.hour);
  stamp.minute = static_cast<uint8_t>(now.minute);
  stamp.second = static_cast<uint8_t>(now.second);
  return stamp;
}
