// The alarm: while a session is open, the alarm timer reminds the user how long they
// have been on-line, every period (repeating) or once per session (one-shot).
// The sound, the notice window and the Alarm page belong to the window layer; this
// is their logic. The timer's part is the Monitor's (OnAlarmTimer, FireAlarm,
// AlarmPeriodMs); a reminder is queued and shown through the MonitorShell.
#pragma once
#include <cstddef>
#include <cstdint>

#include "monitor/alarm_state.h"
#include "platform/program_paths.h"

constexpr char kAlarmSoundPath[] = ORVALEN_INSTALLED_FOLDER "\\alarm.wav";
constexpr uint32_t kAlarmNoticeLifetimeMs = 20000;  // the notice closes itself

constexpr char kAlarmPeriodFormat[] = "%d Hr and  %d Min.";
constexpr char kOneShotAlarmFormat[] =
    "\n%s\nThe Time Set On The Alarm Has Elapsed.\nThis Reminder Will Not Come Again In This Session";
constexpr char kRepeatingAlarmFormat[] = "\nThis Reminder Comes Every %s  From the\n time You First Logged On ";

// What 0 h 0 min means on the Alarm page (it is stored as 0 h 5 min). Stored
// settings with no period at all (0, negative) or no known mode get this one, so
// the alarm timer can never fire in a tight loop; 1 to 4 minutes are kept.
constexpr uint32_t kDefaultAlarmPeriodMs = 5u * 60u * 1000u;

// The upper limits of the page's up-down controls.
constexpr uint32_t kAlarmMaxHours = 24;
constexpr uint32_t kAlarmMaxMinutes = 59;

class MonitorShell;
struct Settings;

// Plays the alarm's sound when the stored action has one (sound only, or box and
// sound): the alarm's reminders and the usage warnings.
void PlayAlarmSoundIfChosen(const Settings& settings, MonitorShell& shell);
// Shows a queued reminder as the stored action says: its sound, its box or both.
void ShowAlarmReminder(const Settings& settings, MonitorShell& shell, const char* text);

// The text "%d Hr and  %d Min." of a period.
void FormatAlarmPeriod(char* text, std::size_t size, int hours, int minutes);

// What the Alarm page stores on OK for one hours / minutes pair read from its
// number-only edit boxes: hours above 24 become 24, minutes above 59 become 59,
// and 0 h 0 min becomes 0 h 5 min.
struct AlarmTime {
  int8_t hours;
  int8_t minutes;
};
AlarmTime ClampAlarmTime(uint32_t hours, uint32_t minutes);

// The page's choices as it opens, from the settings. A mode or action that is not
// one of the stored values shows (and, on OK, keeps) the default: repeating mode,
// message box and sound, so what the page shows is what it stores.
void LoadAlarmPageState(const Settings& settings);
// OK on the page: the choices and the clamped times into the settings (the
// sheet's caller saves them).
void StoreAlarmPage(Settings& settings, uint32_t repeatHours, uint32_t repeatMinutes, uint32_t onceHours,
                    uint32_t onceMinutes);

// The page's choices back to those of a freshly started process (tests, tools).
void ResetAlarmState();
