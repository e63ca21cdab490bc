// One logged dial-up session: 192 bytes, identical in memory and in the log files.
#pragma once
#include <cstddef>
#include <cstdint>

enum RecordStatus : uint8_t {
  Blank = 0,    // free, never used
  InUse = 1,    // holds a session
  Deleted = 3,  // deleted by the user, free for reuse
};

constexpr std::size_t kRecordNameSize = 105;  // 104 characters and the NUL

#pragma pack(push, 1)
struct SessionRecord {
  uint8_t status;           // RecordStatus
  uint8_t reserved1[3];
  uint32_t dayOfWeek;       // 0 = Sunday
  uint32_t month;           // 1 = January
  uint32_t day;
  uint32_t year;
  uint32_t logOnHour;
  uint32_t logOnMinute;
  uint32_t logOnSecond;
  uint32_t logOffHour;
  uint32_t logOffMinute;
  uint32_t logOffSecond;
  float reservedFloat;      // kept from older releases, never written
  int32_t durationSeconds;
  uint8_t reserved2[35];
  char connectionName[kRecordNameSize];
};
#pragma pack(pop)

static_assert(sizeof(SessionRecord) == 192, "a log record is 192 bytes");
static_assert(offsetof(SessionRecord, dayOfWeek) == 4, "layout");
static_assert(offsetof(SessionRecord, month) == 8, "layout");
static_assert(offsetof(SessionRecord, day) == 12, "layout");
static_assert(offsetof(SessionRecord, year) == 16, "layout");
static_assert(offsetof(SessionRecord, logOnHour) == 20, "layout");
static_assert(offsetof(SessionRecord, logOnMinute) == 24, "layout");
static_assert(offsetof(SessionRecord, logOnSecond) == 28, "layout");
static_assert(offsetof(SessionRecord, logOffHour) == 32, "layout");
static_assert(offsetof(SessionRecord, logOffMinute) == 36, "layout");
static_assert(offsetof(SessionRecord, logOffSecond) == 40, "layout");
static_assert(offsetof(SessionRecord, reservedFloat) == 44, "layout");
static_assert(offsetof(SessionRecord, durationSeconds) == 48, "layout");
static_assert(offsetof(SessionRecord, reserved2) == 52, "layout");
static_assert(offsetof(SessionRecord, connectionName) == 87, "layout");
