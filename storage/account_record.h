// One connection account: 120 bytes; fifty of them live in the settings block.
#pragma once
#include <cstddef>
#include <cstdint>

enum AccountKind : uint32_t {
  NotChosen = 0,
  PrePaidCard = 1,
  LimitedAccess = 2,
  UnlimitedAccess = 3,
};

constexpr std::size_t kAccountNameSize = 32;  // 31 characters and the NUL
constexpr std::size_t kAccountCount = 50;

#pragma pack(push, 1)
// A local date and time, packed; all zero = none.
struct MomentStamp {
  uint16_t year;
  uint8_t month;
  uint8_t day;
  uint8_t hour;
  uint8_t minute;
  uint8_t second;
  uint8_t unused;
};

struct AccountRecord {
  uint32_t configured;       // 1 once the user has entered details
  char connectionName[kAccountNameSize];  // empty = entry free
  uint32_t kind;             // AccountKind
  uint32_t hours;            // card: hours on the card; limited: hours included a month
  float monthlyCharge;
  float excessPerMinute;
  float vatPercent;
  // Added after the first release in its reserved bytes; zero everywhere means
  // "as before", so an older release reads an entry written here unchanged.
  uint8_t periodStartDay;    // limited: the billing period's first day, 1 to 31; 0 = calendar month
  uint8_t warnPercent;       // card / limited: warn at this share of the hours (and at 100 %); 0 = never
  uint8_t reserved58[2];
  float warnCost;            // limited: warn when the period's cost reaches it; 0 = never
  MomentStamp recharged;     // card: its hours count from this log-on moment; zero = from the first session
  uint32_t warnedPercent;    // the period (or 1 for a card) whose warning was shown; 0 = none yet
  uint32_t warnedFull;
  uint32_t warnedCost;
  uint8_t reserved84[36];
};
#pragma pack(pop)

static_assert(sizeof(AccountRecord) == 120, "an account entry is 120 bytes");
static_assert(offsetof(AccountRecord, connectionName) == 4, "layout");
static_assert(offsetof(AccountRecord, kind) == 36, "layout");
static_assert(offsetof(AccountRecord, hours) == 40, "layout");
static_assert(offsetof(AccountRecord, monthlyCharge) == 44, "layout");
static_assert(offsetof(AccountRecord, excessPerMinute) == 48, "layout");
static_assert(offsetof(AccountRecord, vatPercent) == 52, "layout");
static_assert(offsetof(AccountRecord, periodStartDay) == 56, "layout");
static_assert(offsetof(AccountRecord, warnCost) == 60, "layout");
static_assert(offsetof(AccountRecord, recharged) == 64, "layout");
static_assert(offsetof(AccountRecord, warnedPercent) == 72, "layout");
static_assert(offsetof(AccountRecord, reserved84) == 84, "layout");
