// The alarm's state: the one-shot mark the session lifecycle resets when a session
// closes, the reminder text and the Alarm page's choices.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr std::size_t kAlarmMessageSize = 224;

// The alarm's state; ResetAlarmState() brings it back to these values.
struct AlarmState {
  // 1 once the one-time alarm has fired in the running session.
  uint8_t OneShotFired = 0;
  // The reminder text the notice window shows (IDC_NOTICE_MESSAGE).
  char AlarmMessage[kAlarmMessageSize] = {};
  // The Alarm page's choices between its opening and OK.
  uint32_t AlarmOnState = 0;
  uint8_t AlarmActionState = 0;
  uint8_t AlarmModeState = 0;
};
extern AlarmState alarmState;
