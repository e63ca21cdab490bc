#include "monitor/monitor_state.h"

#include "monitor/alarm.h"
#include "monitor/session.h"
#include "monitor/unconfigured_connections.h"
#include "monitor/usage_warning.h"

void ResetMonitorState() {
  ResetSessionState();
  ResetAlarmState();
  ResetUnconfiguredState();
  sessionHooks = SessionHooks{};
  usageWarningHooks = UsageWarningHooks{};
}
