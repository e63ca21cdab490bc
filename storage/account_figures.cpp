#include "storage/account_figures.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "storage/accounts.h"
#include "storage/billing_period.h"

namespace {

const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

uint32_t ReadWholeNumber(const char* text) {
  const char* p = OrEmpty(text);
  while (IsBlank(*p)) ++p;
  if (*p < '0' || *p > '9') return 0;
  uint64_t value = 0;
  for (; *p >= '0' && *p <= '9'; ++p) {
    value = value * 10 + static_cast<uint64_t>(*p - '0');
    if (value > 0xFFFFFFFFu) return 0;
  }
  while (IsBlank(*p)) ++p;
  return *p == '\0' ? static_cast<uint32_t>(value) : 0;
}

float ReadFigure(const char* text) {
  char head[kFigureCharacters + 1] = {};
  std::strncpy(head, OrEmpty(text), kFigureCharacters);
  float value = 0.0f;
  if (std::sscanf(head, "%f", &value) != 1 || !std::isfinite(value)) return 0.0f;
  return value;
}

float ReadAmount(const char* text) {
  char* end = nullptr;
  const char* p = OrEmpty(text);
  const float value = std::strtof(p, &end);
  while (end != nullptr && IsBlank(*end)) ++end;
  if (end == p || end == nullptr || *end != '\0' || !std::isfinite(value) || value < 0.0f) return 0.0f;
  return value;
}

namespace {

void WholeOrEmpty(char (&text)[kFigureTextSize], uint32_t value) {
  if (value != 0) std::snprintf(text, sizeof text, "%u", static_cast<unsigned>(value));
}

uint32_t ReadUpTo(const char* text, uint32_t limit) {
  const uint32_t value = ReadWholeNumber(text);
  return value > limit ? limit : value;
}

// The share and the 100 % warnings come again.
void RearmHoursWarnings(AccountRecord& entry) {
  entry.warnedPercent = 0;
  entry.warnedFull = 0;
}

void ApplyWarnPercent(AccountRecord& entry, const char* text) {
  const uint8_t percent = static_cast<uint8_t>(ReadUpTo(text, 100));
  if (percent == entry.warnPercent) return;
  entry.warnPercent = percent;
  RearmHoursWarnings(entry);
}

}  // namespace

AccountEntryView ViewAccountEntry(const AccountRecord& entry) {
  AccountEntryView view;
  switch (entry.kind) {
    case NotChosen:
      break;  // limited access checked and enabled, nothing filled
    case PrePaidCard:
      view.radio = PrePaidCard;
      view.cardControlsEnabled = true;
      view.limitedControlsEnabled = false;
      view.fillCard = true;
      std::snprintf(view.cardHours, sizeof view.cardHours, "%d", static_cast<int>(entry.hours));
      WholeOrEmpty(view.warnPercent, entry.warnPercent);
      view.rechargeEnabled = true;
      break;
    case LimitedAccess:
      view.fillLimited = true;
      std::snprintf(view.basicHours, sizeof view.basicHours, "%d", static_cast<int>(entry.hours));
      std::snprintf(view.monthlyCharge, sizeof view.monthlyCharge, "%.2f", static_cast<double>(entry.monthlyCharge));
      std::snprintf(view.excessPerMinute, sizeof view.excessPerMinute, "%.2f",
                    static_cast<double>(entry.excessPerMinute));
      std::snprintf(view.vatPercent, sizeof view.vatPercent, "%.1f", static_cast<double>(entry.vatPercent));
      WholeOrEmpty(view.periodDay, entry.periodStartDay);
      WholeOrEmpty(view.warnPercent, entry.warnPercent);
      if (entry.warnCost > 0.0f) {
        std::snprintf(view.warnCost, sizeof view.warnCost, "%.2f", static_cast<double>(entry.warnCost));
      }
      break;
    case UnlimitedAccess:
      view.radio = UnlimitedAccess;
      view.limitedControlsEnabled = false;
      break;
    default:
      view.known = false;
      break;
  }
  return view;
}

void ApplyAccountInput(AccountRecord& entry, const AccountPageInput& input) {
  entry.configured = 1;
  if (input.checked != NotChosen && input.checked != entry.kind) {
    // A card's marks and a plan's mean different things: another kind starts afresh.
    RearmHoursWarnings(entry);
    entry.warnedCost = 0;
  }
  switch (input.checked) {
    case UnlimitedAccess:
      entry.kind = UnlimitedAccess;
      break;
    case PrePaidCard:
      entry.hours = ReadWholeNumber(input.cardHours);
      entry.kind = PrePaidCard;
      ApplyWarnPercent(entry, input.warnPercent);
      if (input.rechargedAt != nullptr) {
        entry.recharged = StampOf(*input.rechargedAt);
        RearmHoursWarnings(entry);
      }
      break;
    case LimitedAccess:
      entry.hours = ReadWholeNumber(input.basicHours);
      entry.kind = LimitedAccess;
      entry.monthlyCharge = ReadFigure(input.monthlyCharge);
      entry.excessPerMinute = ReadFigure(input.excessPerMinute);
      entry.vatPercent = ReadFigure(input.vatPercent);
      entry.periodStartDay = static_cast<uint8_t>(ReadUpTo(input.periodDay, 31));
      ApplyWarnPercent(entry, input.warnPercent);
      if (const float cost = ReadAmount(input.warnCost); cost != entry.warnCost) {
        entry.warnCost = cost;
        entry.warnedCost = 0;
      }
      break;
    default:
      break;
  }
}
