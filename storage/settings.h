// The settings block: every option, the account table, the previous session and
// the checkpoint of a running session. The configuration file is this block byte
// for byte (6352 bytes, little-endian, no header).
#pragma once
#include <cstddef>
#include <cstdint>

#include "storage/account_record.h"

constexpr char kFormatMarker[] = "orvalen_v015";
constexpr uint8_t kSessionOpen = 218;
constexpr uint8_t kNoSessionOpen = 219;
constexpr std::size_t kCurrencyNameSize = 15;        // 14 characters and the NUL
constexpr std::size_t kPreviousNameSize = 52;        // 51 characters and the NUL
constexpr std::size_t kCheckpointNameSize = 60;      // 59 characters and the NUL

// Alarm modes and actions as stored.
constexpr uint8_t kAlarmEveryInterval = 30;
constexpr uint8_t kAlarmOnceAtEnd = 35;
constexpr uint8_t kAlarmSoundOnly = 5;
constexpr uint8_t kAlarmBoxAndSound = 10;
constexpr uint8_t kAlarmBoxOnly = 15;

#pragma pack(push, 1)
struct TimeOfDay {
  uint32_t hour;
  uint32_t minute;
  uint32_t second;
};

struct PreviousSession {
  char connectionName[kPreviousNameSize];
  uint32_t dayOfWeek;  // 0 = Sunday
  uint32_t month;
  uint32_t day;
  uint32_t year;
  TimeOfDay logOff;
  TimeOfDay logOn;
  uint32_t durationSeconds;
};

struct Settings {
  char formatMarker[20];
  float reservedOne;               // 1.0 in new files, never read
  uint32_t reservedUnit;           // 1 in new files, never read
  char currencyName[kCurrencyNameSize];
  int8_t alarmRepeatHours;
  int8_t alarmRepeatMinutes;
  int8_t alarmOnceHours;
  uint8_t use24HourClock;
  uint8_t reserved47;
  uint32_t logSystemColours;
  uint8_t alarmOn;
  uint8_t alarmAction;             // kAlarmSoundOnly / kAlarmBoxAndSound / kAlarmBoxOnly
  uint8_t alarmMode;               // kAlarmEveryInterval / kAlarmOnceAtEnd
  int8_t alarmOnceMinutes;
  uint32_t showMainWindowAtStart;
  uint32_t runAtStartup;
  uint8_t reserved64[56];
  uint32_t previousSessionValid;
  uint8_t reserved124[9];
  uint8_t logInitialFilter;        // 1 = all connections, 2 = previous session's
  uint8_t sessionOpenMarker;       // kSessionOpen / kNoSessionOpen
  uint8_t reserved135;
  AccountRecord accounts[kAccountCount];
  uint8_t reserved6136[12];
  PreviousSession previousSession;
  uint8_t reserved6244[4];
  TimeOfDay checkpointTime;
  TimeOfDay checkpointLogOn;
  uint32_t checkpointMonth;
  uint32_t checkpointDayOfWeek;
  uint32_t checkpointDay;
  uint32_t checkpointYear;
  uint32_t checkpointElapsed;
  char checkpointName[kCheckpointNameSize];
};
#pragma pack(pop)

static_assert(sizeof(TimeOfDay) == 12, "layout");
static_assert(sizeof(PreviousSession) == 96, "layout");
static_assert(sizeof(Settings) == 6352, "the configuration file is 6352 bytes");
static_assert(offsetof(Settings, formatMarker) == 0, "layout");
static_assert(offsetof(Settings, reservedOne) == 20, "layout");
static_assert(offsetof(Settings, reservedUnit) == 24, "layout");
static_assert(offsetof(Settings, currencyName) == 28, "layout");
static_assert(offsetof(Settings, alarmRepeatHours) == 43, "layout");
static_assert(offsetof(Settings, alarmRepeatMinutes) == 44, "layout");
static_assert(offsetof(Settings, alarmOnceHours) == 45, "layout");
static_assert(offsetof(Settings, use24HourClock) == 46, "layout");
static_assert(offsetof(Settings, logSystemColours) == 48, "layout");
static_assert(offsetof(Settings, alarmOn) == 52, "layout");
static_assert(offsetof(Settings, alarmAction) == 53, "layout");
static_assert(offsetof(Settings, alarmMode) == 54, "layout");
static_assert(offsetof(Settings, alarmOnceMinutes) == 55, "layout");
static_assert(offsetof(Settings, showMainWindowAtStart) == 56, "layout");
static_assert(offsetof(Settings, runAtStartup) == 60, "layout");
static_assert(offsetof(Settings, previousSessionValid) == 120, "layout");
static_assert(offsetof(Settings, logInitialFilter) == 133, "layout");
static_assert(offsetof(Settings, sessionOpenMarker) == 134, "layout");
static_assert(offsetof(Settings, accounts) == 136, "layout");
static_assert(offsetof(Settings, previousSession) == 6148, "layout");
static_assert(offsetof(Settings, previousSession) + offsetof(PreviousSession, dayOfWeek) == 6200, "layout");
static_assert(offsetof(Settings, previousSession) + offsetof(PreviousSession, logOff) == 6216, "layout");
static_assert(offsetof(Settings, previousSession) + offsetof(PreviousSession, logOn) == 6228, "layout");
static_assert(offsetof(Settings, previousSession) + offsetof(PreviousSession, durationSeconds) == 6240, "layout");
static_assert(offsetof(Settings, checkpointTime) == 6248, "layout");
static_assert(offsetof(Settings, checkpointLogOn) == 6260, "layout");
static_assert(offsetof(Settings, checkpointMonth) == 6272, "layout");
static_assert(offsetof(Settings, checkpointDayOfWeek) == 6276, "layout");
static_assert(offsetof(Settings, checkpointDay) == 6280, "layout");
static_assert(offsetof(Settings, checkpointYear) == 6284, "layout");
static_assert(offsetof(Settings, checkpointElapsed) == 6288, "layout");
static_assert(offsetof(Settings, checkpointName) == 6292, "layout");

// Where the configuration file lives: the Windows directory + "\Orvaconfig.bic".
const char* SettingsPath();

class Storage;

// The installation that a first run performs. The running program fills these in;
// without them (unit tests, tools) CreateSettings only writes the file.
struct InstallHooks {
  void (*markFirstRun)() = nullptr;            // the main dialog then opens once at start
  void (*installProgram)(Storage&) = nullptr;  // folder, files, shortcuts, autostart
};
