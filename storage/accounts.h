// Connection accounts and the usage figures computed from the log for them
// (Storage's account queries): the names' rule and the figures' types.
#pragma once
#include <cstdint>

#include "storage/account_record.h"
#include "storage/billing_period.h"

// What the lookups return when no entry has the name.
constexpr int kNoAccount = -1;

// Account names are cut to the width of the entry's name field (31 characters).
// A longer connection name is stored as its first 31 characters, and every lookup
// cuts the name it is given the same way, so the entry added for a long name is
// found again for it. Two names that agree in their first 31 characters share one
// entry.
constexpr std::size_t kAccountNameLength = kAccountNameSize - 1;

struct UsageSummary {
  uint32_t kind = NotChosen;      // AccountKind
  int32_t secondsThisMonth = 0;   // sessions dated in the current month and year
  int32_t totalSeconds = 0;       // all sessions (truncated from a float sum)
  int32_t excessMinutes = 0;      // limited access: minutes this month beyond the basic usage
  int32_t allotted = 0;           // card: its hours; limited access: basic usage in minutes
  float cost = 0.0f;              // limited access: this month's cost including VAT
};

// What the log's part of the usage counts for one connection:
// the month (or billing period) that counts as "this month", and the moment from
// which a pre-paid card's hours count.
struct UsageWindow {
  uint32_t periodStartDay = 0;  // 0: calendar months, by the records' dates
  uint32_t periodId = 0;        // the id of the month or period that counts (CountingPeriodId)
  int64_t cardFrom = 0;         // 0: every session uses the card
  bool operator==(const UsageWindow& other) const {
    return periodStartDay == other.periodStartDay && periodId == other.periodId && cardFrom == other.cardFrom;
  }
};
// The log's part: seconds in the window's month or period, seconds in total (a
// 32-bit float sum, rounded at every addition; for a card only the sessions since
// its recharge) and whether any record matched. It walks the whole log.
struct LogUsageSums {
  bool found = false;
  int32_t monthSeconds = 0;
  float allSeconds = 0.0f;
};
