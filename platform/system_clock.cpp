#include "platform/system_clock.h"

#include "platform/platform_state.h"

Clock& CurrentClock() { return platformState.clockInUse ? *platformState.clockInUse : SystemClock(); }

void UseClock(Clock* clock) { platformState.clockInUse = clock; }
