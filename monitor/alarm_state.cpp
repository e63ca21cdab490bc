#include "monitor/alarm_state.h"

uint8_t OneShotFired = 0;
