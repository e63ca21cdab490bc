// The alarm's state: the running session's part (the one-shot mark the session
// lifecycle resets when a session closes, the reminder text), which the Monitor
// owns, and the Alarm page's choices between its opening and OK.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr std::size_t kAlarmMessageSize = 224;

struct AlarmSession {
  // 1 once the one-time alarm has fired in the running session.
  uint8_t OneShotFired = 0;
  // The latest reminder's text, which its notice shows (IDC_NOTICE_MESSAGE).
  char AlarmMessage[kAlarmMessageSize] = {};
};

// The Alarm page's choices; ResetAlarmState() brings them back to these values.
struct AlarmState {
  uint32_t AlarmOnState = 0;
  uint8_t AlarmActionState = 0;
  uint8_t AlarmModeState = 0;
};
extern AlarmState alarmState;
