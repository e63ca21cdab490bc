#include "monitor/monitor_state.h"

#include "monitor/alarm.h"
#include "monitor/session.h"
#include "monitor/unconfigured_connections.h"

void ResetMonitorState() {
  ResetSessionState();
  ResetAlarmState();
  ResetUnconfiguredState();
  sessionHooks = SessionHooks{};
}
