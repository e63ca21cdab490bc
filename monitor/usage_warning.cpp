#include "monitor/usage_warning.h"

#include <cstdio>
#include <cstring>

#include "monitor/alarm.h"
#include "monitor/monitor.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

namespace {

constexpr uint32_t kCardMark = 1;  // a card has no periods: shown for this card

double Hours(int64_t seconds) { return static_cast<double>(seconds) / 3600.0; }

std::string Currency(const Settings& settings) {
  return std::string(settings.currencyName, FixedTextLength(settings.currencyName, kCurrencyNameSize));
}

template <typename... Args>
std::string Format(const char* format, Args... args) {
  char text[256];
  std::snprintf(text, sizeof text, format, args...);
  return text;
}

// The period's cost for the given seconds, by the account arithmetic.
float CostFor(Storage& store, const char* name, int64_t seconds) {
  LogUsageSums sums;
  sums.found = true;
  sums.monthSeconds = seconds > INT32_MAX ? INT32_MAX : static_cast<int32_t>(seconds);
  UsageSummary summary;
  return store.UsageFromLogSums(name, sums, summary);
}

bool Crossed(int64_t used, int64_t allowed, uint32_t percent) { return used * 100 >= allowed * percent; }

// Marks are the period's id for a plan (shown when at least this period's, so a
// clock set back brings nothing again) and kCardMark for a card.
bool Shown(uint32_t mark, uint32_t current) { return mark != 0 && mark >= current; }

std::string LimitedText(Storage& store, const char* name, UsageWarningKind kind, const AccountRecord& account,
                        int64_t used, const BillingPeriod& period, const CalendarDate& today) {
  const std::string currency = Currency(store.settings);
  const int64_t projected = ProjectedSeconds(used, period, today);
  std::string head;
  if (kind == UsageWarningKind::Cost) {
    head = Format("\n%s: this period's cost has reached %.2f %s\n%.2f %s so far", name,
                  static_cast<double>(account.warnCost), currency.c_str(),
                  static_cast<double>(CostFor(store, name, used)), currency.c_str());
  } else {
    const uint32_t percent = kind == UsageWarningKind::Full ? 100 : account.warnPercent;
    head = Format("\n%s: %u %% of the included hours used\n%.2f of %u Hrs.", name, static_cast<unsigned>(percent),
                  Hours(used), static_cast<unsigned>(account.hours));
  }
  return head + " this period (" + PeriodText(period) + ")\n" +
         Format("At this rate: %.2f Hrs. and %.2f %s by %s", Hours(projected),
                static_cast<double>(CostFor(store, name, projected)), currency.c_str(),
                DayMonthText(period.last).c_str());
}

std::string CardText(const char* name, UsageWarningKind kind, const AccountRecord& account, int64_t used,
                     int64_t usedThisPeriod, const BillingPeriod& period, const CalendarDate& today) {
  const int64_t allowed = int64_t{account.hours} * 3600;
  if (kind == UsageWarningKind::Full) {
    return Format("\n%s: the card's hours are used up\n%.2f of %u Hrs. used", name, Hours(used),
                  static_cast<unsigned>(account.hours));
  }
  std::string text = Format("\n%s: %u %% of the card used\n%.2f of %u Hrs. used", name,
                            static_cast<unsigned>(account.warnPercent), Hours(used),
                            static_cast<unsigned>(account.hours));
  CalendarDate runsOut;
  if (CardRunOutDate(allowed - used, usedThisPeriod, period, today, runsOut)) {
    text += "\nAt this rate it runs out around " + DayMonthText(runsOut);
  }
  return text;
}

}  // namespace

int64_t ProjectedSeconds(int64_t usedSeconds, const BillingPeriod& period, const CalendarDate& today) {
  return usedSeconds * PeriodDays(period) / PeriodDaysUpTo(period, today);
}

bool CardRunOutDate(int64_t remainingSeconds, int64_t usedThisPeriod, const BillingPeriod& period,
                    const CalendarDate& today, CalendarDate& runsOut) {
  if (usedThisPeriod <= 0) return false;
  if (remainingSeconds < 0) remainingSeconds = 0;
  const int64_t daysSoFar = PeriodDaysUpTo(period, today);
  // Whole days at the daily rate, rounded up: the day on which it is gone.
  const int64_t days = (remainingSeconds * daysSoFar + usedThisPeriod - 1) / usedThisPeriod;
  runsOut = DateOfDayNumber(DayNumber(today) + days);
  return true;
}

UsageWarningKind TakeDueWarning(Storage& store, const char* name, const LocalTime& now, int32_t runningSeconds,
                                std::string& text) {
  const int k = store.FindAccount(name);
  if (k == kNoAccount) return UsageWarningKind::None;
  AccountRecord& account = store.settings.accounts[k];
  UsageSummary usage;
  store.CachedComputeUsage(name, usage);
  const CalendarDate today{now.year, now.month, now.day};
  const int64_t running = runningSeconds > 0 ? runningSeconds : 0;
  const int64_t thisPeriod = int64_t{usage.secondsThisMonth} + running;
  const int64_t allowed = int64_t{account.hours} * 3600;

  if (account.kind == PrePaidCard) {
    if (account.warnPercent == 0 || allowed == 0) return UsageWarningKind::None;
    const int64_t used = int64_t{usage.totalSeconds} + running;
    UsageWarningKind kind = UsageWarningKind::None;
    if (used >= allowed && !Shown(account.warnedFull, kCardMark)) kind = UsageWarningKind::Full;
    else if (Crossed(used, allowed, account.warnPercent) && !Shown(account.warnedPercent, kCardMark))
      kind = UsageWarningKind::Share;
    if (kind == UsageWarningKind::None) return kind;
    account.warnedPercent = kCardMark;
    if (kind == UsageWarningKind::Full) account.warnedFull = kCardMark;
    text = CardText(name, kind, account, used, thisPeriod, PeriodOf(0, today), today);
    return kind;
  }
  if (account.kind != LimitedAccess) return UsageWarningKind::None;
  const BillingPeriod period = PeriodOf(account.periodStartDay, today);
  UsageWarningKind kind = UsageWarningKind::None;
  if (account.warnPercent != 0 && allowed != 0) {
    if (thisPeriod >= allowed && !Shown(account.warnedFull, period.id)) kind = UsageWarningKind::Full;
    else if (Crossed(thisPeriod, allowed, account.warnPercent) && !Shown(account.warnedPercent, period.id))
      kind = UsageWarningKind::Share;
  }
  if (kind == UsageWarningKind::None && account.warnCost > 0.0f &&
      CostFor(store, name, thisPeriod) >= account.warnCost && !Shown(account.warnedCost, period.id)) {
    kind = UsageWarningKind::Cost;
  }
  switch (kind) {
    case UsageWarningKind::Full: account.warnedFull = period.id; [[fallthrough]];
    case UsageWarningKind::Share: account.warnedPercent = period.id; break;
    case UsageWarningKind::Cost: account.warnedCost = period.id; break;
    case UsageWarningKind::None: return kind;
  }
  text = LimitedText(store, name, kind, account, thisPeriod, period, today);
  return kind;
}

void Monitor::OnUsageWarningTimer() {
  if (session_.SessionOpen == 0) return;
  std::string text;
  if (TakeDueWarning(*store_, session_.SessionConnectionName, ReadLocalTime(), ElapsedSeconds(), text) ==
      UsageWarningKind::None) {
    return;
  }
  // The mark first: a kill while the notice is up brings it no second time. A
  // failed save was told by the save; the mark in memory still keeps this run
  // from warning twice.
  (void)store_->SaveSettings();
  store_->notices.Queue(NoticeKind::kUsageWarning, text);
}
