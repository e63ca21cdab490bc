#include "monitor/alarm.h"

#include <cstdio>

#include "monitor/monitor.h"
#include "monitor/monitor_shell.h"
#include "storage/storage.h"

AlarmState alarmState;

namespace {

// Stored fields are signed bytes; a damaged file may hold negative values, so the
// arithmetic is done wide and anything not positive counts as no period. Any
// positive period, one minute included, is kept as set.
uint32_t PeriodMs(int8_t hours, int8_t minutes) {
  const int64_t ms = (static_cast<int64_t>(hours) * 60 + minutes) * 60 * 1000;
  if (ms <= 0) return kDefaultAlarmPeriodMs;
  return static_cast<uint32_t>(ms);  // at most (127 * 60 + 127) minutes
}

int8_t ClampTo(uint32_t value, uint32_t limit) { return static_cast<int8_t>(value > limit ? limit : value); }

bool IsStoredAction(uint8_t action) {
  return action == kAlarmSoundOnly || action == kAlarmBoxAndSound || action == kAlarmBoxOnly;
}

}  // namespace

uint32_t Monitor::AlarmPeriodMs() {
  if (store_->settings.alarmMode == kAlarmEveryInterval) {
    alarm_.OneShotFired = 0;
    return PeriodMs(store_->settings.alarmRepeatHours, store_->settings.alarmRepeatMinutes);
  }
  if (store_->settings.alarmMode == kAlarmOnceAtEnd) {
    return PeriodMs(store_->settings.alarmOnceHours, store_->settings.alarmOnceMinutes);
  }
  // No mode: the timer still runs (the session step always starts it), slowly,
  // and FireAlarm gives nothing for such a mode.
  return kDefaultAlarmPeriodMs;
}

void Monitor::OnAlarmTimer() {
  if (probe_.OnLine()) FireAlarm();
}

void FormatAlarmPeriod(char* text, std::size_t size, int hours, int minutes) {
  std::snprintf(text, size, kAlarmPeriodFormat, hours, minutes);
}

void Monitor::FireAlarm() {
  if (!probe_.OnLine() || store_->settings.alarmOn == 0 || alarm_.OneShotFired == 1) return;
  const uint8_t mode = store_->settings.alarmMode;
  if (mode != kAlarmEveryInterval && mode != kAlarmOnceAtEnd) return;

  char repeating[40];
  char once[40];
  FormatAlarmPeriod(repeating, sizeof repeating, store_->settings.alarmRepeatHours,
                    store_->settings.alarmRepeatMinutes);
  FormatAlarmPeriod(once, sizeof once, store_->settings.alarmOnceHours, store_->settings.alarmOnceMinutes);
  if (mode == kAlarmOnceAtEnd) {
    std::snprintf(alarm_.AlarmMessage, sizeof alarm_.AlarmMessage, kOneShotAlarmFormat, once);
    // Set before the modal notice: its message loop keeps the alarm timer running.
    alarm_.OneShotFired = 1;
  } else {
    std::snprintf(alarm_.AlarmMessage, sizeof alarm_.AlarmMessage, kRepeatingAlarmFormat, repeating);
  }
  store_->notices.Queue(NoticeKind::kAlarmReminder, alarm_.AlarmMessage);
}

void PlayAlarmSoundIfChosen(const Settings& settings, MonitorShell& shell) {
  const uint8_t action = settings.alarmAction;
  if (action == kAlarmSoundOnly || action == kAlarmBoxAndSound) shell.PlayAlarmSound();
}

void ShowAlarmReminder(const Settings& settings, MonitorShell& shell, const char* text) {
  const uint8_t action = settings.alarmAction;
  PlayAlarmSoundIfChosen(settings, shell);
  if (action == kAlarmBoxAndSound || action == kAlarmBoxOnly) shell.ShowAlarmReminder(text);
}

AlarmTime ClampAlarmTime(uint32_t hours, uint32_t minutes) {
  AlarmTime time{ClampTo(hours, kAlarmMaxHours), ClampTo(minutes, kAlarmMaxMinutes)};
  if (time.hours == 0 && time.minutes == 0) time.minutes = 5;
  return time;
}

void LoadAlarmPageState(const Settings& settings) {
  alarmState.AlarmOnState = settings.alarmOn != 0 ? 1 : 0;
  alarmState.AlarmModeState = settings.alarmMode == kAlarmOnceAtEnd ? kAlarmOnceAtEnd : kAlarmEveryInterval;
  alarmState.AlarmActionState = IsStoredAction(settings.alarmAction) ? settings.alarmAction : kAlarmBoxAndSound;
}

void StoreAlarmPage(Settings& settings, uint32_t repeatHours, uint32_t repeatMinutes, uint32_t onceHours,
                    uint32_t onceMinutes) {
  settings.alarmOn = static_cast<uint8_t>(alarmState.AlarmOnState != 0 ? 1 : 0);
  settings.alarmAction = alarmState.AlarmActionState;
  settings.alarmMode = alarmState.AlarmModeState;
  const AlarmTime repeat = ClampAlarmTime(repeatHours, repeatMinutes);
  settings.alarmRepeatHours = repeat.hours;
  settings.alarmRepeatMinutes = repeat.minutes;
  const AlarmTime once = ClampAlarmTime(onceHours, onceMinutes);
  settings.alarmOnceHours = once.hours;
  settings.alarmOnceMinutes = once.minutes;
}

void ResetAlarmState() { alarmState = AlarmState{}; }
