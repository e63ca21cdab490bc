// A session: one stretch of time a dial-up connection is up. It is opened and
// closed by the poll tick, checkpointed into the settings every three minutes,
// and recorded in the log when it ends or, after a crash, at the next start.
// Its state and what recording it gives; the Monitor (monitor/monitor.h) owns it
// and runs its steps (monitor/session.cpp).
#pragma once
#include <cstddef>
#include <cstdint>

#include "storage/settings.h"

constexpr uint32_t kCheckpointPeriodMs = 180000;

// Told when a session recovered at start-up had a length that cannot be true.
constexpr char kDamagedCheckpointFormat[] =
    "The session of %s that was open when Orvalen stopped had a damaged length.\n"
    "It is recorded with the length its log-on and log-off times give.";

struct SessionState {
  uint32_t SessionOpen = 0;          // 1 while a session is open
  uint32_t SessionClosed = 1;        // always the complement of SessionOpen
  uint32_t SessionStartSeconds = 0;  // tick counter / 1000 when the session opened
  char SessionConnectionName[50] = "";
  uint32_t LogOnHour = 0, LogOnMinute = 0, LogOnSecond = 0;
  uint32_t LogOffHour = 0, LogOffMinute = 0, LogOffSecond = 0;
  uint8_t LastSessionChanged = 1;    // the main dialog redraws its previous session
  // The answer of the latest poll tick. The other readers of that tick (the
  // status text) and the main dialog's refresh take it rather than asking the
  // dial-up service again.
  uint8_t TickConnected = 0;
};

// What recording a session came to.
enum class RecordOutcome {
  kSaved,         // in the log, and the log saved
  kLogNotSaved,   // in the log in memory; the configuration keeps it as open
  kNoRoom,        // the log had no free record: nothing recorded
};

// A session recorded after the program stopped while it was open: from the
// checkpoint, dated on the day it began and ending at its latest checkpoint.
struct InterruptedSession {
  const char* name = "";
  TimeOfDay logOn = {};
  TimeOfDay logOff = {};
  int32_t duration = 0;
  uint32_t dayOfWeek = 0, month = 1, day = 1, year = 2000;
};
