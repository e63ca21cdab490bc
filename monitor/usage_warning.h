// Warnings before a card's or a plan's hours, or a plan's money, run out.
//
// Each account may set a share of its hours (the warning comes at that share and
// again at 100 %) and, for limited access, an amount of the period's cost. A
// warning comes once per billing period (once per card), within a check of being
// crossed while on-line and at the first check after connecting when it was
// crossed before. Its mark is stored in the account entry and saved before the
// notice shows, so neither a kill, a restart nor the clock set back brings it
// again; a new period, a recharge or a changed threshold re-arms it.
#pragma once
#include <cstdint>
#include <string>

#include "platform/system_clock.h"
#include "storage/billing_period.h"

class Storage;

constexpr uint32_t kUsageWarningCheckMs = 10000;  // well within the minute a warning may take
constexpr char kUsageWarningCaption[] = "Orvalen Usage Warning";

enum class UsageWarningKind { None, Share, Full, Cost };

// The figures by the end of the period at the rate of its days so far (today
// counted whole): seconds used scaled to the period's length.
int64_t ProjectedSeconds(int64_t usedSeconds, const BillingPeriod& period, const CalendarDate& today);
// The day a card's remaining seconds run out at the rate of this period's days so
// far; false when nothing was used this period (no rate to go by).
bool CardRunOutDate(int64_t remainingSeconds, int64_t usedThisPeriod, const BillingPeriod& period,
                    const CalendarDate& today, CalendarDate& runsOut);

// The warning due for the connection now, with runningSeconds of an open session
// not yet in the log: marks it as shown in the account entry and writes its text.
// At most one a call; a full card or plan marks its share's warning too.
UsageWarningKind TakeDueWarning(Storage& store, const char* name, const LocalTime& now, int32_t runningSeconds,
                                std::string& text);

// The check timer's work (Monitor::OnUsageWarningTimer) while a session is open:
// a due warning is marked, the settings saved and the warning queued; once the
// step has returned, the sound is played (when the alarm's action has sound) and
// the notice shown, one at a time.
