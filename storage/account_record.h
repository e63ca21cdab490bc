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
struct AccountRecord {
  uint32_t configured;       // 1 once the user has entered details
  char connectionName[kAccountNameSize];  // empty = entry free
  uint32_t kind;             // AccountKind
  uint32_t hours;            // card: hours on the card; limited: hours included a month
  float monthlyCharge;
  float excessPerMinute;
  float vatPercent;
  uint8_t reserved[64];
};
#pragma pack(pop)

static_assert(sizeof(AccountRecord) == 120, "an account entry is 120 bytes");
static_assert(offsetof(AccountRecord, connectionName) == 4, "layout");
static_assert(offsetof(AccountRecord, kind) == 36, "layout");
static_assert(offsetof(AccountRecord, hours) == 40, "layout");
static_assert(offsetof(AccountRecord, monthlyCharge) == 44, "layout");
static_assert(offsetof(AccountRecord, excessPerMinute) == 48, "layout");
static_assert(offsetof(AccountRecord, vatPercent) == 52, "layout");
static_assert(offsetof(AccountRecord, reserved) == 56, "layout");
