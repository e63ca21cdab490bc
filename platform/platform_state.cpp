#include "platform/platform_state.h"

PlatformState platformState;

void ResetPlatformState() { platformState = PlatformState{}; }
