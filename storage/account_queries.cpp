#include "storage/storage.h"

#include <cstddef>

#include "platform/system_clock.h"
#include "storage/fixed_text.h"
#include "storage/usage_cache.h"

namespace {

const char* OrEmpty(const char* name) { return name != nullptr ? name : ""; }

// Compares a field's text with the first fieldSize - 1 characters of name: the cut
// that CopyFixedText makes when the name is stored. Never reads past the field,
// even when a damaged file left it unterminated.
bool FieldMatchesCutName(const char* field, std::size_t fieldSize, const char* name, bool ignoreCase) {
  const std::size_t length = FixedTextLength(field, fieldSize);
  if (length == 0 || length == fieldSize) return false;  // free entry, or no terminator
  for (std::size_t i = 0; i < length; ++i) {
    if (name[i] == '\0') return false;
    const bool same = ignoreCase ? LowerAscii(field[i]) == LowerAscii(name[i]) : field[i] == name[i];
    if (!same) return false;
  }
  return name[length] == '\0' || length == fieldSize - 1;
}

bool AccountNameMatches(const AccountRecord& account, const char* name) {
  return FieldMatchesCutName(account.connectionName, kAccountNameSize, name, false);
}

// An empty name matches nothing, so Blank records (empty names) never count.
bool RecordNameMatches(const SessionRecord& record, const char* name) {
  return FieldMatchesCutName(record.connectionName, kRecordNameSize, name, true);
}

// Truncation toward zero that stays defined for figures from a damaged file.
int32_t TruncateToInt32(float value) {
  if (!(value > -2147483648.0f)) return value != value ? 0 : INT32_MIN;
  if (value >= 2147483648.0f) return INT32_MAX;
  return static_cast<int32_t>(value);
}

int32_t AddWrapping(int32_t sum, int32_t value) {
  return static_cast<int32_t>(static_cast<uint32_t>(sum) + static_cast<uint32_t>(value));
}

}  // namespace

char* Storage::AccountName(int k) {
  if (k < 0 || k >= static_cast<int>(kAccountCount)) return nullptr;
  return settings.accounts[k].connectionName;
}

int Storage::AccountIndexByName(const char* name) const {
  name = OrEmpty(name);
  for (std::size_t k = 0; k < kAccountCount; ++k) {
    if (AccountNameMatches(settings.accounts[k], name)) return static_cast<int>(k);
  }
  return kNoAccount;
}

int Storage::FindAccount(const char* name) const {
  name = OrEmpty(name);
  for (std::size_t k = 0; k < kAccountCount; ++k) {
    const AccountRecord& account = settings.accounts[k];
    if (account.configured != 0 && AccountNameMatches(account, name)) return static_cast<int>(k);
  }
  return kNoAccount;
}

void Storage::AddAccountName(const char* name) {
  name = OrEmpty(name);
  if (name[0] == '\0' || AccountIndexByName(name) != kNoAccount) return;
  for (AccountRecord& account : settings.accounts) {
    if (account.connectionName[0] == '\0') {
      CopyFixedText(account.connectionName, name);
      return;
    }
  }
}

bool Storage::DeleteAccount(const char* name) {
  const int k = AccountIndexByName(name);
  if (k == kNoAccount) return false;
  AccountRecord& account = settings.accounts[k];
  CopyFixedText(account.connectionName, "");
  account.configured = 0;
  return true;
}

UsageWindow Storage::UsageWindowFor(const char* name, const LocalTime& now) const {
  UsageWindow window;
  window.periodId = PeriodOf(0, CalendarDate{now.year, now.month, 1}).id;  // the day does not matter
  const int k = FindAccount(OrEmpty(name));
  if (k == kNoAccount) return window;
  const AccountRecord& account = settings.accounts[k];
  if (account.kind == LimitedAccess && account.periodStartDay != 0) {
    window.periodStartDay = account.periodStartDay;
    window.periodId = PeriodOf(account.periodStartDay, now).id;
  }
  if (account.kind == PrePaidCard) window.cardFrom = StampMoment(account.recharged);
  return window;
}

bool Storage::CurrentBillingPeriod(const char* name, BillingPeriod& period) const {
  const LocalTime now = ReadLocalTime();
  const UsageWindow window = UsageWindowFor(name, now);
  if (window.periodStartDay == 0) return false;
  period = PeriodOf(window.periodStartDay, now);
  return true;
}

LogUsageSums Storage::SumLogUsage(const char* name, const UsageWindow& window) const {
  name = OrEmpty(name);
  LogUsageSums sums;
  // Calendar months compare the record's own fields: the walk stays as quick as it was.
  const bool calendar = window.periodStartDay == 0;
  const uint32_t year = window.periodId / 12, month = window.periodId % 12 + 1;
  for (uint32_t i = 0; i < sessionLog.count && i < sessionLog.records.size(); ++i) {
    const SessionRecord& record = sessionLog.records[i];
    if (record.status == Deleted || !RecordNameMatches(record, name)) continue;
    sums.found = true;
    const bool counts = calendar ? record.year == year && record.month == month
                                 : CountingPeriodId(window.periodStartDay, record) == window.periodId;
    if (window.periodId != kNoPeriod && counts) {
      sums.monthSeconds = AddWrapping(sums.monthSeconds, record.durationSeconds);
    }
    if (window.cardFrom != 0 && LogOnMoment(record) < window.cardFrom) continue;  // an earlier card's
    // A 32-bit float, rounded at every addition: exact up to 2^24 seconds (about
    // 194 days), as the figures have always been computed.
    const float added = sums.allSeconds + static_cast<float>(record.durationSeconds);
    sums.allSeconds = added;
  }
  return sums;
}

float Storage::ComputeUsage(const char* name, UsageSummary& summary) {
  return UsageFromLogSums(name, SumLogUsage(name, UsageWindowFor(name, ReadLocalTime())), summary);
}

float Storage::UsageFromLogSums(const char* name, const LogUsageSums& sums, UsageSummary& summary) {
  name = OrEmpty(name);
  summary = UsageSummary{};
  if (!sums.found) return 0.0f;
  const int32_t monthSeconds = sums.monthSeconds;
  const float allSeconds = sums.allSeconds;

  const int k = FindAccount(name);
  if (k == kNoAccount) return 0.0f;
  const AccountRecord& account = settings.accounts[k];
  summary.kind = account.kind;
  summary.secondsThisMonth = monthSeconds;
  summary.totalSeconds = TruncateToInt32(allSeconds);

  switch (account.kind) {
    case PrePaidCard: {
      summary.allotted =
          account.hours > static_cast<uint32_t>(INT32_MAX) ? INT32_MAX : static_cast<int32_t>(account.hours);
      float remaining = static_cast<float>(account.hours) * 3600.0f;
      remaining = remaining - allSeconds;
      if (remaining < 0.0f) remaining = 0.0f;
      cardSecondsRemaining = remaining;
      return remaining;
    }
    case LimitedAccess: {
      // Seconds of an unfinished minute do not count.
      const int32_t minutesUsed = monthSeconds / 60;
      const float basicMinutes = static_cast<float>(account.hours) * 60.0f;
      summary.allotted = TruncateToInt32(basicMinutes);
      const float vatFactor = account.vatPercent * 0.01f;
      float subtotal = account.monthlyCharge;
      const float minutes = static_cast<float>(minutesUsed);
      if (minutes > basicMinutes) {
        const float excess = minutes - basicMinutes;
        summary.excessMinutes = TruncateToInt32(excess);
        const float excessCharge = excess * account.excessPerMinute;
        subtotal = subtotal + excessCharge;
      }
      // Each step is stored on its own so x87 builds round as SSE builds do.
      const float vat = subtotal * vatFactor;
      const float cost = subtotal + vat;
      summary.cost = cost;
      return cost;
    }
    case UnlimitedAccess:
      return 1.0f;
    default:
      return 0.0f;
  }
}

bool Storage::SaveAccountInput(const char* connectionName, const AccountPageInput& input) {
  if (connectionName == nullptr || connectionName[0] == '\0') return false;
  const int k = AccountIndexByName(connectionName);
  if (k == kNoAccount) return false;
  ApplyAccountInput(settings.accounts[k], input);
  return true;
}

// Each accessor recomputes the usage afresh: figures follow the log as it is now.
UsageSummary Storage::UsageOf(const char* name) {
  UsageSummary summary;
  ComputeUsage(name, summary);
  return summary;
}

uint32_t Storage::AccountKindOf(const char* name) { return UsageOf(name).kind; }

int32_t Storage::AllottedAmount(const char* name) { return UsageOf(name).allotted; }

int32_t Storage::SecondsThisMonth(const char* name) { return UsageOf(name).secondsThisMonth; }

int32_t Storage::TotalSeconds(const char* name) { return UsageOf(name).totalSeconds; }

float Storage::CardSecondsRemaining(const char* name) {
  UsageOf(name);
  return cardSecondsRemaining;
}

// The figures remembered between queries: the log's part comes from the usage
// cache, walked afresh only when the log, the month or the account's window changed.
float Storage::CachedComputeUsage(const char* name, UsageSummary& summary) {
  name = OrEmpty(name);
  const LocalTime now = ReadLocalTime();
  const UsageBasis basis{.logGeneration = logGeneration_,
                         .logLength = sessionLog.records.size(),
                         .logCount = sessionLog.count,
                         .year = now.year,
                         .month = now.month};
  UsageCache::Key key;
  UsageCache::MakeKey(name, key);
  const UsageWindow window = UsageWindowFor(key, now);
  bool found = false;
  LogUsageSums& sums = usageCache_.Entry(basis, key, window, &found);
  if (!found) sums = SumLogUsage(key, window);
  return UsageFromLogSums(name, sums, summary);
}

UsageSummary Storage::CachedUsageOf(const char* name) {
  UsageSummary summary;
  CachedComputeUsage(name, summary);
  return summary;
}

uint32_t Storage::CachedAccountKindOf(const char* name) { return CachedUsageOf(name).kind; }

int32_t Storage::CachedAllottedAmount(const char* name) { return CachedUsageOf(name).allotted; }

int32_t Storage::CachedSecondsThisMonth(const char* name) { return CachedUsageOf(name).secondsThisMonth; }

int32_t Storage::CachedTotalSeconds(const char* name) { return CachedUsageOf(name).totalSeconds; }

float Storage::CachedCardSecondsRemaining(const char* name) {
  CachedUsageOf(name);  // sets the card balance, as CardSecondsRemaining does
  return cardSecondsRemaining;
}

const UsageQueries kCachedUsage = {&Storage::CachedAccountKindOf, &Storage::CachedAllottedAmount,
                                   &Storage::CachedSecondsThisMonth, &Storage::CachedTotalSeconds,
                                   &Storage::CachedCardSecondsRemaining};
const UsageQueries kFreshUsage = {&Storage::AccountKindOf, &Storage::AllottedAmount, &Storage::SecondsThisMonth,
                                  &Storage::TotalSeconds, &Storage::CardSecondsRemaining};
