#include <windows.h>

#include "platform/system_clock.h"

namespace {
class WindowsClock : public Clock {
 public:
  LocalTime Now() override {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDayOfWeek, now.wDay, now.wHour, now.wMinute, now.wSecond};
  }
  uint32_t TickCount() override { return GetTickCount(); }
};
}  // namespace

Clock& SystemClock() {
  static WindowsClock clock;
  return clock;
}
