// The Accounts page's plain logic: how it reads figures from its edit boxes, what
// it shows for an entry, and what OK / Apply store in the entry. The dialog and
// its texts belong to the window layer.
#pragma once
#include <cstddef>
#include <cstdint>

#include "platform/system_clock.h"
#include "storage/account_record.h"

// Money and VAT edits are read from their first 4 characters only ("100.75" reads
// as 100.0).
constexpr std::size_t kFigureCharacters = 4;
// Hours are shown with "%d", money with "%.2f", VAT with "%.1f".
constexpr std::size_t kFigureTextSize = 32;

// An edit box's text as an unsigned whole number, as the dialog manager reads it:
// blanks around digits are allowed; anything else, or a value beyond 32 bits, is
// not a number and gives 0.
uint32_t ReadWholeNumber(const char* text);

// A money or VAT edit box's text: its first four characters converted like "%f".
// Text that is no number, or no finite one, is stored as 0.0 (the figures feed the
// cost arithmetic, which expects finite values).
float ReadFigure(const char* text);

// What the page shows when an entry is chosen.
struct AccountEntryView {
  bool known = true;           // false for a kind the page does not know: nothing changes
  AccountKind radio = LimitedAccess;
  bool cardControlsEnabled = false;
  bool limitedControlsEnabled = true;
  bool fillCard = false;       // IDC_ACCOUNTS_CARD_HOURS
  bool fillLimited = false;    // the basic hours, monthly charge, excess and VAT edits
  char cardHours[kFigureTextSize] = {};
  char basicHours[kFigureTextSize] = {};
  char monthlyCharge[kFigureTextSize] = {};
  char excessPerMinute[kFigureTextSize] = {};
  char vatPercent[kFigureTextSize] = {};
  // The boxes added after the first release; empty for a zero setting. Filled for
  // the kinds that use them (period day and cost: limited access; percent: card
  // and limited access), cleared for the others.
  char periodDay[kFigureTextSize] = {};
  char warnPercent[kFigureTextSize] = {};
  char warnCost[kFigureTextSize] = {};
  bool rechargeEnabled = false;  // the card's Recharged button
};
AccountEntryView ViewAccountEntry(const AccountRecord& entry);

// The page's inputs at OK / Apply: the checked kind radio and the edit texts.
struct AccountPageInput {
  AccountKind checked = LimitedAccess;  // IDC_ACCOUNTS_CARD, _LIMITED or _UNLIMITED
  const char* cardHours = "";           // IDC_ACCOUNTS_CARD_HOURS
  const char* basicHours = "";          // IDC_ACCOUNTS_BASIC_HOURS
  const char* monthlyCharge = "";       // IDC_ACCOUNTS_MONTHLY_CHARGE
  const char* excessPerMinute = "";     // IDC_ACCOUNTS_EXCESS_PER_MINUTE
  const char* vatPercent = "";          // IDC_ACCOUNTS_VAT
  const char* periodDay = "";           // IDC_ACCOUNTS_PERIOD_DAY: 1 to 31, else 0
  const char* warnPercent = "";         // IDC_ACCOUNTS_WARN_PERCENT: 1 to 100, else 0
  const char* warnCost = "";            // IDC_ACCOUNTS_WARN_COST: the whole text, not four characters
  const LocalTime* rechargedAt = nullptr;  // the Recharged button was pressed at this time
};

// A whole-text money amount: finite and not negative, else 0.0.
float ReadAmount(const char* text);

// Marks the entry configured and stores the checked kind with that kind's figures;
// figures of the other kinds keep their stored values. With no kind radio checked
// only the mark is set. A changed threshold re-arms its warnings; a recharge sets
// the card's start moment and re-arms the card's warnings.
void ApplyAccountInput(AccountRecord& entry, const AccountPageInput& input);
