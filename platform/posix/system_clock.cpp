#include <ctime>

#include "platform/system_clock.h"

namespace {
class PosixClock : public Clock {
 public:
  LocalTime Now() override {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    return {static_cast<uint32_t>(local.tm_year + 1900), static_cast<uint32_t>(local.tm_mon + 1),
            static_cast<uint32_t>(local.tm_wday),        static_cast<uint32_t>(local.tm_mday),
            static_cast<uint32_t>(local.tm_hour),        static_cast<uint32_t>(local.tm_min),
            static_cast<uint32_t>(local.tm_sec)};
  }
  uint32_t TickCount() override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(now.tv_sec * 1000u + now.tv_nsec / 1000000);
  }
};
}  // namespace

Clock& SystemClock() {
  static PosixClock clock;
  return clock;
}
