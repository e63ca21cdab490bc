#include "monitor/session.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "monitor/alarm_state.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session_settings.h"
#include "platform/system_clock.h"
#include "monitor/time_text.h"
#include "storage/billing_period.h"
#include "storage/fixed_text.h"
#include "storage/notice_queue.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/startup.h"

SessionState sessionState;
SessionHooks sessionHooks;

namespace {

// The tick counter in seconds restarts from 0 after 2^32 ms (about 49.7 days of
// uptime); a session open across that moment still gets its true length.
constexpr uint32_t kTickWrapSeconds = 0xFFFFFFFFu / 1000u;

bool lastLogSaved = false;  // the result of the last session's log save

void CallHook(void (*hook)()) {
  if (hook) hook();
}

// Shared tail of recording a session: the duration, log-on and name parts that a
// finished and an interrupted session write alike.
void StoreDurationAndLogOn(uint32_t slot, int32_t duration, uint32_t hour, uint32_t minute,
                           uint32_t second) {
  SetRecordDuration(slot, duration);
  SetRecordLogOn(slot, hour, minute, second);
  settings.previousSession.durationSeconds = static_cast<uint32_t>(duration);
  FormatElapsed(duration);
  CopyFixedText(sessionTexts.LastDurationText, sessionTexts.ElapsedText);
  SetPreviousSessionLogOn(hour, minute, second);
}

// False when the log could not be saved: the session then stays in memory, and
// the configuration keeps it as an open session's checkpoint, so a kill before a
// later save succeeds still finds it at the next start.
bool StoreNameAndSave(uint32_t slot, const char* name) {
  SetRecordName(slot, name);
  SetPreviousSessionName(name);
  sessionState.LastSessionChanged = 1;
  settings.previousSessionValid = 1;
  sessionState.SessionConnectionName[0] = '\0';
  const bool logged = lastLogSaved = SaveLog(LogFilePath().c_str());
  if (!logged) settings.sessionOpenMarker = kSessionOpen;
  SaveSettings();
  sessionState.LastSessionChanged = 1;
  return logged;
}

int64_t CheckpointDay() {
  return DayNumber(CalendarDate{settings.checkpointYear, settings.checkpointMonth, settings.checkpointDay});
}

// Whether the log already holds the checkpointed session (SameSession).
bool IsCheckpointRecorded() {
  const SessionRecord checkpoint = CheckpointRecord(settings);
  for (const SessionRecord& record : sessionLog.records) {
    if (record.status == InUse && SameSession(record, checkpoint)) return true;
  }
  return false;
}

void TellDamagedCheckpoint(const char* name) {
  char text[kCheckpointNameSize + sizeof kDamagedCheckpointFormat];
  std::snprintf(text, sizeof text, kDamagedCheckpointFormat, name);
  QueueNotice(NoticeKind::kFileProblem, text);
}

bool IsTimeOfDay(const TimeOfDay& time) { return time.hour < 24 && time.minute < 60 && time.second < 60; }

// A checkpoint from a damaged file: without a name, a real date and real times
// there is nothing to record.
bool IsCheckpointWhole(const char* name) {
  return name[0] != '\0' && settings.checkpointMonth >= 1 && settings.checkpointMonth <= 12 &&
         settings.checkpointDay >= 1 && settings.checkpointDay <= 31 && settings.checkpointYear >= 1980 &&
         settings.checkpointYear <= 9999 && settings.checkpointDayOfWeek <= 6 &&
         IsTimeOfDay(settings.checkpointLogOn) && IsTimeOfDay(settings.checkpointTime);
}

int64_t SecondsOfDay(const TimeOfDay& time) { return time.hour * 3600 + time.minute * 60 + time.second; }

// The checkpoint's length, unless it cannot be true: negative, or longer than the
// time since the session began (with a day to spare for a clock set back or
// forward, daylight saving included). Then -1.
int32_t PlausibleElapsed() {
  const uint32_t elapsed = settings.checkpointElapsed;
  if (elapsed > 0x7FFFFFFFu) return -1;
  const LocalTime now = ReadLocalTime();
  const int64_t since = (DayNumber(CalendarDate{now.year, now.month, now.day}) - CheckpointDay()) * 86400 +
                        now.hour * 3600 + now.minute * 60 + now.second - SecondsOfDay(settings.checkpointLogOn);
  return elapsed <= std::max<int64_t>(since, 0) + 86400 ? static_cast<int32_t>(elapsed) : -1;
}

// The one way a session closes: the flags, timers and one-shot alarm first, then
// the record (EndSession clears the marker). False when the log had no room.
bool CloseSession() {
  sessionState.SessionClosed = 1;
  sessionState.SessionOpen = 0;
  CallHook(sessionHooks.stopSessionTimers);
  alarmState.OneShotFired = 0;
  return EndSession();
}

}  // namespace

void RunSessionStep(DialUpProbe& probe) {
  const bool connected = probe.IsConnected();
  sessionState.TickConnected = connected ? 1 : 0;
  // Nothing here opens a box (notices wait in their queue), so no tick runs
  // until this one has opened or closed its session whole.
  if (connected && sessionState.SessionOpen == 0) {
    sessionState.SessionClosed = 0;
    sessionState.SessionOpen = 1;
    StartSession();
    settings.sessionOpenMarker = kSessionOpen;
    SaveSettings();  // the file now holds the marker and the first checkpoint
    CallHook(sessionHooks.startSessionTimers);
  }
  if (!connected && sessionState.SessionClosed == 0 && !CloseSession()) QueueNotice(NoticeKind::kOutOfSpace);
}

void RecordSessionAtShutdown() {
  if (sessionState.SessionOpen != 0) CloseSession();
  ClearNotices();
}

void StartSession() {
  const LocalTime now = ReadLocalTime();
  sessionState.SessionStartSeconds = ReadTickCount() / 1000u;
  NoteLogOnTime(now.hour, now.minute, now.second);
  CopyFixedText(sessionState.SessionConnectionName, probeState.CurrentConnectionName);
  SetCheckpointStart(probeState.CurrentConnectionName, now.hour, now.minute, now.second, now.dayOfWeek, now.day,
                     now.month, now.year);
  // The first checkpoint is the log-on moment itself, with nothing elapsed.
  SetCheckpointTime(probeState.CurrentConnectionName, now.hour, now.minute, now.second, 0);
}

int32_t ElapsedSeconds() {
  const uint32_t nowSeconds = ReadTickCount() / 1000u;
  const uint32_t start = sessionState.SessionStartSeconds;
  if (nowSeconds >= start) return static_cast<int32_t>(nowSeconds - start);
  return static_cast<int32_t>(nowSeconds + kTickWrapSeconds - start);
}

bool EndSession() {
  const int32_t elapsed = ElapsedSeconds();
  const LocalTime logOff = ReadLocalTime();
  sessionState.LogOffHour = logOff.hour;
  sessionState.LogOffMinute = logOff.minute;
  sessionState.LogOffSecond = logOff.second;
  settings.sessionOpenMarker = kNoSessionOpen;

  const uint32_t slot = FindFreeSlot();
  if (slot == kNoSlot) return false;
  SetRecordStatus(slot, InUse);
  StoreDurationAndLogOn(slot, elapsed, sessionState.LogOnHour, sessionState.LogOnMinute, sessionState.LogOnSecond);

  // The record carries the date on which the session ended.
  const LocalTime now = ReadLocalTime();
  SetRecordDate(slot, now.dayOfWeek, now.month, now.day, now.year);
  SetPreviousSessionDate(now.dayOfWeek, now.month, now.day, now.year);
  SetRecordLogOff(slot, sessionState.LogOffHour, sessionState.LogOffMinute, sessionState.LogOffSecond);
  SetPreviousSessionLogOff(now.hour, now.minute, now.second);

  // Its own name, not the slot's: a save that read a held log again moves the
  // run's records to other slots.
  char name[sizeof sessionState.SessionConnectionName];
  CopyFixedText(name, sessionState.SessionConnectionName);
  if (!StoreNameAndSave(slot, name)) {
    // The log did not save: the checkpoint takes the whole session, which a start
    // after a kill then records.
    SetCheckpointTime(name, sessionState.LogOffHour, sessionState.LogOffMinute,
                      sessionState.LogOffSecond, static_cast<uint32_t>(elapsed));
    SaveSettings();
  }
  QueueNotice(NoticeKind::kAccountCheck);
  return true;
}

void CheckpointSession() {
  const int32_t elapsed = ElapsedSeconds();
  const LocalTime now = ReadLocalTime();
  SetCheckpointTime(sessionState.SessionConnectionName, now.hour, now.minute, now.second,
                    static_cast<uint32_t>(elapsed));
  // The previous-session date, end and name follow the open session; its log-on
  // time and duration stay those of the session recorded before.
  SetPreviousSessionDate(now.dayOfWeek, now.month, now.day, now.year);
  SetPreviousSessionLogOff(now.hour, now.minute, now.second);
  SetPreviousSessionName(sessionState.SessionConnectionName);
  settings.previousSessionValid = 1;
  SaveSettings();
  sessionState.LastSessionChanged = 1;
}

void OnCheckpointTimer() {
  if (probeState.OnLineFlag != 0) CheckpointSession();
}

void RecoverInterruptedSession() {
  if (settings.sessionOpenMarker != kSessionOpen) return;
  // The stored name may be unterminated in a damaged file: copy the field alone.
  char name[kCheckpointNameSize + 1] = {};
  std::memcpy(name, settings.checkpointName, kCheckpointNameSize);
  bool done = true;  // nothing (more) to record
  // A program stopped between saving the log and saving the cleared marker left
  // the session already recorded; recording it again would count it twice.
  if (IsCheckpointWhole(name) && !IsCheckpointRecorded()) {
    int32_t elapsed = PlausibleElapsed();
    if (elapsed < 0) {
      // A damaged length: the checkpoint's own times tell how long the session ran.
      const int64_t span = SecondsOfDay(settings.checkpointTime) - SecondsOfDay(settings.checkpointLogOn);
      elapsed = static_cast<int32_t>((span + 86400) % 86400);
      TellDamagedCheckpoint(name);
    }
    done = RecordInterruptedSession(name, settings.checkpointLogOn.hour, settings.checkpointLogOn.minute,
                                    settings.checkpointLogOn.second, settings.checkpointTime.hour,
                                    settings.checkpointTime.minute, settings.checkpointTime.second, elapsed,
                                    settings.checkpointDayOfWeek, settings.checkpointMonth,
                                    settings.checkpointDay, settings.checkpointYear) &&
           lastLogSaved;
  }
  if (done) {
    settings.sessionOpenMarker = kNoSessionOpen;
    SaveSettings();
  }
}

bool RecordInterruptedSession(const char* name, uint32_t logOnHour, uint32_t logOnMinute,
                              uint32_t logOnSecond, uint32_t logOffHour, uint32_t logOffMinute,
                              uint32_t logOffSecond, int32_t duration, uint32_t dayOfWeek,
                              uint32_t month, uint32_t day, uint32_t year) {
  const uint32_t slot = FindFreeSlot();
  if (slot == kNoSlot) return false;
  SetRecordStatus(slot, InUse);
  StoreDurationAndLogOn(slot, duration, logOnHour, logOnMinute, logOnSecond);
  // Recorded at start-up, the session carries the date on which it began and ends
  // at its latest checkpoint.
  SetRecordDate(slot, dayOfWeek, month, day, year);
  SetPreviousSessionDate(dayOfWeek, month, day, year);
  SetRecordLogOff(slot, logOffHour, logOffMinute, logOffSecond);
  SetPreviousSessionLogOff(logOffHour, logOffMinute, logOffSecond);
  StoreNameAndSave(slot, name);
  return true;
}

void ResetSessionState() {
  sessionState = SessionState{};
  probeState = ProbeState{};
  sessionTexts = SessionTexts{};
  alarmState.OneShotFired = 0;
}

void NoteLogOnTime(uint32_t hour, uint32_t minute, uint32_t second) {
  CopyFixedText(sessionTexts.LogOnText, ClockText());
  sessionState.LogOnHour = hour;
  sessionState.LogOnMinute = minute;
  sessionState.LogOnSecond = second;
}

const char* GetElapsedText() {
  FormatElapsed(ElapsedSeconds());
  return sessionTexts.ElapsedText;
}
