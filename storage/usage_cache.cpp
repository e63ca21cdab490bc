#include "storage/usage_cache.h"

#include <cstring>

#include "platform/system_clock.h"
#include "storage/session_log.h"
#include "storage/session_record.h"

namespace {

// A few connections are asked for at a time (the current one, the previous
// session's); more than this many in turn only cost extra walks.
constexpr int kEntries = 8;

// Log records match a name on at most its first 104 characters (their field's
// width), so names that agree that far have the same sums: the key is that cut.
constexpr std::size_t kKeySize = kRecordNameSize;

struct Entry {
  bool used = false;
  uint32_t lastUse = 0;
  char key[kKeySize] = {};
  UsageWindow window;
  LogUsageSums sums;
};

struct Cache {
  // What the entries were computed from.
  uint64_t logGeneration = 0;
  std::size_t logLength = 0;
  uint32_t logCount = 0;
  uint32_t year = 0;
  uint32_t month = 0;
  uint32_t useClock = 0;
  uint64_t walks = 0;
  Entry entries[kEntries];
};

Cache cache;

void MakeKey(const char* name, char (&key)[kKeySize]) {
  std::size_t length = 0;
  while (length < kKeySize - 1 && name[length] != '\0') ++length;
  std::memcpy(key, name, length);
  std::memset(key + length, 0, kKeySize - length);
}

void DropEntries() {
  for (Entry& entry : cache.entries) entry.used = false;
}

const LogUsageSums& SumsFor(const char* name) {
  const LocalTime now = ReadLocalTime();
  if (cache.logGeneration != LogGeneration() || cache.logLength != sessionLog.records.size() ||
      cache.logCount != sessionLog.count || cache.year != now.year || cache.month != now.month) {
    DropEntries();
    cache.logGeneration = LogGeneration();
    cache.logLength = sessionLog.records.size();
    cache.logCount = sessionLog.count;
    cache.year = now.year;
    cache.month = now.month;
  }
  char key[kKeySize];
  MakeKey(name, key);
  const UsageWindow window = UsageWindowFor(key, now);
  ++cache.useClock;
  Entry* victim = &cache.entries[0];
  for (Entry& entry : cache.entries) {
    if (entry.used && std::memcmp(entry.key, key, kKeySize) == 0 && entry.window == window) {
      entry.lastUse = cache.useClock;
      return entry.sums;
    }
    // Replace a free entry, else the one unused longest.
    if (victim->used && (!entry.used || entry.lastUse < victim->lastUse)) victim = &entry;
  }
  victim->used = true;
  victim->lastUse = cache.useClock;
  std::memcpy(victim->key, key, kKeySize);
  victim->window = window;
  victim->sums = SumLogUsage(key, window);
  ++cache.walks;
  return victim->sums;
}

UsageSummary CachedUsageOf(const char* name) {
  UsageSummary summary;
  CachedComputeUsage(name, summary);
  return summary;
}

}  // namespace

float CachedComputeUsage(const char* name, UsageSummary& summary) {
  if (name == nullptr) name = "";
  return UsageFromLogSums(name, SumsFor(name), summary);
}

uint32_t CachedAccountKindOf(const char* name) { return CachedUsageOf(name).kind; }

int32_t CachedAllottedAmount(const char* name) { return CachedUsageOf(name).allotted; }

int32_t CachedSecondsThisMonth(const char* name) { return CachedUsageOf(name).secondsThisMonth; }

int32_t CachedTotalSeconds(const char* name) { return CachedUsageOf(name).totalSeconds; }

float CachedCardSecondsRemaining(const char* name) {
  CachedUsageOf(name);  // sets cardSecondsRemaining, as CardSecondsRemaining does
  return cardSecondsRemaining;
}

void ClearUsageCache() { cache = Cache{}; }

uint64_t UsageCacheLogWalks() { return cache.walks; }

const UsageQueries kCachedUsage = {CachedAccountKindOf, CachedAllottedAmount, CachedSecondsThisMonth,
                                   CachedTotalSeconds, CachedCardSecondsRemaining};
const UsageQueries kFreshUsage = {AccountKindOf, AllottedAmount, SecondsThisMonth, TotalSeconds,
                                  CardSecondsRemaining};
