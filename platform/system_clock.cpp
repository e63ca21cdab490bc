#include "platform/system_clock.h"

namespace {
Clock* clockInUse = nullptr;
}

Clock& CurrentClock() { return clockInUse ? *clockInUse : SystemClock(); }

void UseClock(Clock* clock) { clockInUse = clock; }
