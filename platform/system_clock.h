// The local date and time and the millisecond tick counter. The running program
// reads the system's (GetLocalTime, GetTickCount); tests put in a clock of their
// own so a whole session, midnight or a restart take microseconds.
#pragma once
#include <cstdint>

struct LocalTime {
  uint32_t year;
  uint32_t month;      // 1 = January
  uint32_t dayOfWeek;  // 0 = Sunday
  uint32_t day;
  uint32_t hour;
  uint32_t minute;
  uint32_t second;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() = 0;
  virtual uint32_t TickCount() = 0;  // milliseconds since the system started, wraps
};

// The clock in use; the system's unless UseClock gave another.
Clock& CurrentClock();
// nullptr goes back to the system's clock.
void UseClock(Clock* clock);

// The platform's own clock.
Clock& SystemClock();

inline LocalTime ReadLocalTime() { return CurrentClock().Now(); }
inline uint32_t ReadTickCount() { return CurrentClock().TickCount(); }
