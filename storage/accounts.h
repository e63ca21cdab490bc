// Connection accounts and the usage figures computed from the log for them.
// Usage is never stored: every query here walks the whole log again. The displays
// that ask many times a second go through usage_cache.h instead.
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

// The card balance in seconds of the last pre-paid card computation.
extern float cardSecondsRemaining;

// The entry's writable name field (32 bytes); nullptr when k is not 0 to 49.
char* AccountName(int k);

// Lowest entry whose name equals name byte for byte, configured or not; kNoAccount
// when there is none. An empty name matches nothing: empty entries are free ones.
int AccountIndexByName(const char* name);
// As AccountIndexByName, but only entries the user has configured.
int FindAccount(const char* name);

// Puts the name into the lowest free entry unless an entry already has it or all
// fifty are taken. The kind and figures of a reused entry are left as they are.
void AddAccountName(const char* name);
// Frees the first entry with that name (its kind and figures stay); false when none.
bool DeleteAccount(const char* name);

// Fills the summary for the connection and returns the card's remaining seconds
// (kind 1), this month's cost (kind 2), 1.0 (kind 3) or 0.0. Log records match the
// name ignoring letter case; the account must match it exactly and be configured.
float ComputeUsage(const char* name, UsageSummary& summary);

// ComputeUsage in its two halves. What the log's part counts for one connection:
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
// The window of the connection's configured account on the given day: its billing
// period for limited access with a start day, its recharge for a card.
UsageWindow UsageWindowFor(const char* name, const LocalTime& now);
// The account's current billing period; false when it has none (calendar months).
bool CurrentBillingPeriod(const char* name, BillingPeriod& period);

// The log's part: seconds in the window's month or period, seconds in total (a
// 32-bit float sum, rounded at every addition; for a card only the sessions since
// its recharge) and whether any record matched. It walks the whole log.
struct LogUsageSums {
  bool found = false;
  int32_t monthSeconds = 0;
  float allSeconds = 0.0f;
};
LogUsageSums SumLogUsage(const char* name, const UsageWindow& window);
// The account's part: the summary and the result of ComputeUsage from the sums.
float UsageFromLogSums(const char* name, const LogUsageSums& sums, UsageSummary& summary);

// Each runs ComputeUsage afresh and returns one figure.
uint32_t AccountKindOf(const char* name);
int32_t AllottedAmount(const char* name);
int32_t SecondsThisMonth(const char* name);
int32_t TotalSeconds(const char* name);
float CardSecondsRemaining(const char* name);  // meaningful for a pre-paid card only
