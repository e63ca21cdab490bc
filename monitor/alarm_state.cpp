#include "monitor/alarm_state.h"

AlarmState alarmState;
