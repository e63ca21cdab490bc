#include "storage/account_figures.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "storage/accounts.h"
#include "storage/settings.h"

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
      break;
    case LimitedAccess:
      view.fillLimited = true;
      std::snprintf(view.basicHours, sizeof view.basicHours, "%d", static_cast<int>(entry.hours));
      std::snprintf(view.monthlyCharge, sizeof view.monthlyCharge, "%.2f", static_cast<double>(entry.monthlyCharge));
      std::snprintf(view.excessPerMinute, sizeof view.excessPerMinute, "%.2f",
                    static_cast<double>(entry.excessPerMinute));
      std::snprintf(view.vatPercent, sizeof view.vatPercent, "%.1f", static_cast<double>(entry.vatPercent));
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
  switch (input.checked) {
    case UnlimitedAccess:
      entry.kind = UnlimitedAccess;
      break;
    case PrePaidCard:
      entry.hours = ReadWholeNumber(input.cardHours);
      entry.kind = PrePaidCard;
      break;
    case LimitedAccess:
      entry.hours = ReadWholeNumber(input.basicHours);
      entry.kind = LimitedAccess;
      entry.monthlyCharge = ReadFigure(input.monthlyCharge);
      entry.excessPerMinute = ReadFigure(input.excessPerMinute);
      entry.vatPercent = ReadFigure(input.vatPercent);
      break;
    default:
      break;
  }
}

bool SaveAccountInput(const char* connectionName, const AccountPageInput& input) {
  if (connectionName == nullptr || connectionName[0] == '\0') return false;
  const int k = AccountIndexByName(connectionName);
  if (k == kNoAccount) return false;
  ApplyAccountInput(settings.accounts[k], input);
  return true;
}
