// The usage figures of accounts.h, remembered per connection between queries.
//
// The status text is rebuilt about twelve times a second and each rebuild asks for
// two or three figures; walking the whole log for every one of them costs in
// proportion to the log. Here the log's part of the computation (seconds this month,
// seconds in total) is kept per connection and the log is walked only when that part
// can have changed:
//   - the log changed: every log operation moves LogGeneration() on (session
//     recorded or recovered, record deleted, log cleared, loaded, created,
//     converted), and the log's length is compared too;
//   - the calendar month changed: the local date is read at every query;
//   - the account's window changed: its billing period (a new period, or another
//     start day) or a card's recharge; it is worked out at every query (a fixed
//     50-entry lookup) and kept with each connection's sums.
// The account's part (kind, card balance, cost) is not kept at all: it takes the
// account table as it is at the moment of the query, a fixed 50-entry lookup, so a
// change of the accounts needs no invalidation that a settings page could forget.
// The results are the same, bit for bit, as those of the functions in accounts.h.
#pragma once
#include <cstdint>

#include "storage/accounts.h"

float CachedComputeUsage(const char* name, UsageSummary& summary);
uint32_t CachedAccountKindOf(const char* name);
int32_t CachedAllottedAmount(const char* name);
int32_t CachedSecondsThisMonth(const char* name);
int32_t CachedTotalSeconds(const char* name);
float CachedCardSecondsRemaining(const char* name);  // meaningful for a pre-paid card only

// Forgets everything (tests; the cache never needs it to stay correct).
void ClearUsageCache();
// How many times the cache walked the log since it was last cleared.
uint64_t UsageCacheLogWalks();

// One set of the five accessors, so a display can be built from either family:
// the program uses the cached one, the benchmarks compare it with the fresh one.
struct UsageQueries {
  uint32_t (*accountKindOf)(const char* name);
  int32_t (*allottedAmount)(const char* name);
  int32_t (*secondsThisMonth)(const char* name);
  int32_t (*totalSeconds)(const char* name);
  float (*cardSecondsRemaining)(const char* name);
};
extern const UsageQueries kCachedUsage;  // the functions above
extern const UsageQueries kFreshUsage;   // accounts.h: a walk of the log per call
