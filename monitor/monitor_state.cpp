#include "monitor/monitor_state.h"

#include "monitor/alarm.h"
#include "monitor/unconfigured_connections.h"

void ResetMonitorState() {
  ResetAlarmState();
  ResetUnconfiguredState();
}
