#include "monitor/monitor.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "monitor/session_settings.h"
#include "platform/system_clock.h"
#include "storage/billing_period.h"
#include "storage/fixed_text.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "storage/startup.h"

namespace {

// The tick counter in seconds restarts from 0 after 2^32 ms (about 49.7 days of
// uptime); a session open across that moment still gets its true length.
constexpr uint32_t kTickWrapSeconds = 0xFFFFFFFFu / 1000u;

int64_t CheckpointDay(const Settings& settings) {
  return DayNumber(CalendarDate{settings.checkpointYear, settings.checkpointMonth, settings.checkpointDay});
}

// Whether the log already holds the checkpointed session.
bool IsCheckpointRecorded(const Storage& store) {
  return HoldsSession(store.sessionLog.records, CheckpointRecord(store.settings));
}

void TellDamagedCheckpoint(NoticeQueue& notices, const char* name) {
  char text[kCheckpointNameSize + sizeof kDamagedCheckpointFormat];
  std::snprintf(text, sizeof text, kDamagedCheckpointFormat, name);
  notices.Queue(NoticeKind::kFileProblem, text);
}

bool IsTimeOfDay(const TimeOfDay& time) { return time.hour < 24 && time.minute < 60 && time.second < 60; }

// A checkpoint from a damaged file: without a name, a real date and real times
// there is nothing to record.
bool IsCheckpointWhole(const Settings& settings, const char* name) {
  return name[0] != '\0' && settings.checkpointMonth >= 1 && settings.checkpointMonth <= 12 &&
         settings.checkpointDay >= 1 && settings.checkpointDay <= 31 && settings.checkpointYear >= 1980 &&
         settings.checkpointYear <= 9999 && settings.checkpointDayOfWeek <= 6 &&
         IsTimeOfDay(settings.checkpointLogOn) && IsTimeOfDay(settings.checkpointTime);
}

int64_t SecondsOfDay(const TimeOfDay& time) { return time.hour * 3600 + time.minute * 60 + time.second; }

// The checkpoint's length, unless it cannot be true: negative, or longer than the
// time since the session began (with a day to spare for a clock set back or
// forward, daylight saving included). Then -1.
int32_t PlausibleElapsed(const Settings& settings) {
  const uint32_t elapsed = settings.checkpointElapsed;
  if (elapsed > 0x7FFFFFFFu) return -1;
  const LocalTime now = ReadLocalTime();
  const int64_t since = (DayNumber(CalendarDate{now.year, now.month, now.day}) - CheckpointDay(settings)) * 86400 +
                        now.hour * 3600 + now.minute * 60 + now.second - SecondsOfDay(settings.checkpointLogOn);
  return elapsed <= std::max<int64_t>(since, 0) + 86400 ? static_cast<int32_t>(elapsed) : -1;
}

}  // namespace

// Nothing here opens a box (notices wait in their queue), so no tick runs until
// this one has opened or closed its session whole.
SessionChange Monitor::OnPollTick() {
  const bool connected = probe_.IsConnected();
  session_.TickConnected = connected ? 1 : 0;
  if (connected && session_.SessionOpen == 0) {
    session_.SessionClosed = 0;
    session_.SessionOpen = 1;
    StartSession();
    store_->settings.sessionOpenMarker = kSessionOpen;
    // The file now holds the marker and the first checkpoint. A failed save was
    // told by the save; the session goes on in memory and the next save retries.
    (void)store_->SaveSettings();
    return SessionChange::kOpened;
  }
  if (connected || session_.SessionClosed != 0) return SessionChange::kNone;
  CloseSession();
  return SessionChange::kClosed;
}

SessionChange Monitor::Shutdown(ShutdownMode mode) {
  SessionChange change = SessionChange::kNone;
  if (session_.SessionOpen != 0) {
    change = SessionChange::kClosed;
    // Out of space or a failed save keeps the marker: the next start records it.
    CloseSession();
  }
  if (mode == ShutdownMode::kQuiet) store_->notices.Clear();
  return change;
}

// The one way a session closes: the flags and one-shot alarm first, then the
// record (EndSession clears the marker); a session the log has no room for is told.
void Monitor::CloseSession() {
  session_.SessionClosed = 1;
  session_.SessionOpen = 0;
  alarm_.OneShotFired = 0;
  if (EndSession() == RecordOutcome::kNoRoom) store_->notices.Queue(NoticeKind::kOutOfSpace);
}

// Shared tail of recording a session: the duration, log-on and name parts that a
// finished and an interrupted session write alike.
void Monitor::StoreDurationAndLogOn(uint32_t slot, int32_t duration, uint32_t hour, uint32_t minute,
                                    uint32_t second) {
  store_->SetRecordDuration(slot, duration);
  store_->SetRecordLogOn(slot, hour, minute, second);
  store_->settings.previousSession.durationSeconds = static_cast<uint32_t>(duration);
  FormatElapsed(texts_.ElapsedText, duration);
  CopyFixedText(texts_.LastDurationText, texts_.ElapsedText);
  SetPreviousSessionLogOn(store_->settings, hour, minute, second);
}

// kLogNotSaved when the log could not be saved: the session then stays in memory,
// and the configuration keeps it as an open session's checkpoint, so a kill
// before a later save succeeds still finds it at the next start.
RecordOutcome Monitor::StoreNameAndSave(uint32_t slot, const char* name) {
  store_->SetRecordName(slot, name);
  SetPreviousSessionName(store_->settings, name);
  session_.LastSessionChanged = 1;
  store_->settings.previousSessionValid = 1;
  session_.SessionConnectionName[0] = '\0';
  const bool logged = store_->SaveLog(LogFilePath().c_str());
  if (!logged) store_->settings.sessionOpenMarker = kSessionOpen;
  // A failed save was told by the save itself; the marker it keeps (or the one
  // already on disk) makes the next start record the session.
  (void)store_->SaveSettings();
  session_.LastSessionChanged = 1;
  return logged ? RecordOutcome::kSaved : RecordOutcome::kLogNotSaved;
}

void Monitor::StartSession() {
  const LocalTime now = ReadLocalTime();
  session_.SessionStartSeconds = ReadTickCount() / 1000u;
  NoteLogOnTime(now.hour, now.minute, now.second);
  CopyFixedText(session_.SessionConnectionName, probe_.ConnectionName());
  SetCheckpointStart(store_->settings, probe_.ConnectionName(), now.hour, now.minute, now.second, now.dayOfWeek,
                     now.day, now.month, now.year);
  // The first checkpoint is the log-on moment itself, with nothing elapsed.
  SetCheckpointTime(store_->settings, probe_.ConnectionName(), now.hour, now.minute, now.second, 0);
}

int32_t Monitor::ElapsedSeconds() const {
  const uint32_t nowSeconds = ReadTickCount() / 1000u;
  const uint32_t start = session_.SessionStartSeconds;
  if (nowSeconds >= start) return static_cast<int32_t>(nowSeconds - start);
  return static_cast<int32_t>(nowSeconds + kTickWrapSeconds - start);
}

RecordOutcome Monitor::EndSession() {
  const int32_t elapsed = ElapsedSeconds();
  const LocalTime logOff = ReadLocalTime();
  session_.LogOffHour = logOff.hour;
  session_.LogOffMinute = logOff.minute;
  session_.LogOffSecond = logOff.second;
  store_->settings.sessionOpenMarker = kNoSessionOpen;

  const uint32_t slot = store_->FindFreeSlot();
  if (slot == kNoSlot) return RecordOutcome::kNoRoom;
  store_->SetRecordStatus(slot, InUse);
  StoreDurationAndLogOn(slot, elapsed, session_.LogOnHour, session_.LogOnMinute, session_.LogOnSecond);

  // The record carries the date on which the session ended.
  const LocalTime now = ReadLocalTime();
  store_->SetRecordDate(slot, now.dayOfWeek, now.month, now.day, now.year);
  SetPreviousSessionDate(store_->settings, now.dayOfWeek, now.month, now.day, now.year);
  store_->SetRecordLogOff(slot, session_.LogOffHour, session_.LogOffMinute, session_.LogOffSecond);
  SetPreviousSessionLogOff(store_->settings, now.hour, now.minute, now.second);

  // Its own name, not the slot's: a save that read a held log again moves the
  // run's records to other slots.
  char name[sizeof session_.SessionConnectionName];
  CopyFixedText(name, session_.SessionConnectionName);
  const RecordOutcome outcome = StoreNameAndSave(slot, name);
  if (outcome == RecordOutcome::kLogNotSaved) {
    // The log did not save: the checkpoint takes the whole session, which a start
    // after a kill then records. Should this save fail too, the checkpoint on disk
    // still holds the session up to its last three minutes.
    SetCheckpointTime(store_->settings, name, session_.LogOffHour, session_.LogOffMinute, session_.LogOffSecond,
                      static_cast<uint32_t>(elapsed));
    (void)store_->SaveSettings();
  }
  store_->notices.Queue(NoticeKind::kAccountCheck);
  return outcome;
}

void Monitor::CheckpointSession() {
  const int32_t elapsed = ElapsedSeconds();
  const LocalTime now = ReadLocalTime();
  SetCheckpointTime(store_->settings, session_.SessionConnectionName, now.hour, now.minute, now.second,
                    static_cast<uint32_t>(elapsed));
  // The previous-session date, end and name follow the open session; its log-on
  // time and duration stay those of the session recorded before.
  SetPreviousSessionDate(store_->settings, now.dayOfWeek, now.month, now.day, now.year);
  SetPreviousSessionLogOff(store_->settings, now.hour, now.minute, now.second);
  SetPreviousSessionName(store_->settings, session_.SessionConnectionName);
  store_->settings.previousSessionValid = 1;
  // A failed save was told by the save; the next checkpoint tries again.
  (void)store_->SaveSettings();
  session_.LastSessionChanged = 1;
}

void Monitor::OnCheckpointTimer() {
  if (probe_.OnLine()) CheckpointSession();
}

void Monitor::RecoverInterruptedSession() {
  if (store_->settings.sessionOpenMarker != kSessionOpen) return;
  // The stored name may be unterminated in a damaged file: copy the field alone.
  char name[kCheckpointNameSize + 1] = {};
  std::memcpy(name, store_->settings.checkpointName, kCheckpointNameSize);
  bool done = true;  // nothing (more) to record
  // A program stopped between saving the log and saving the cleared marker left
  // the session already recorded; recording it again would count it twice.
  if (IsCheckpointWhole(store_->settings, name) && !IsCheckpointRecorded(*store_)) {
    int32_t elapsed = PlausibleElapsed(store_->settings);
    if (elapsed < 0) {
      // A damaged length: the checkpoint's own times tell how long the session ran.
      const int64_t span =
          SecondsOfDay(store_->settings.checkpointTime) - SecondsOfDay(store_->settings.checkpointLogOn);
      elapsed = static_cast<int32_t>((span + 86400) % 86400);
      TellDamagedCheckpoint(store_->notices, name);
    }
    done = RecordInterruptedSession({.name = name,
                                     .logOn = store_->settings.checkpointLogOn,
                                     .logOff = store_->settings.checkpointTime,
                                     .duration = elapsed,
                                     .dayOfWeek = store_->settings.checkpointDayOfWeek,
                                     .month = store_->settings.checkpointMonth,
                                     .day = store_->settings.checkpointDay,
                                     .year = store_->settings.checkpointYear}) == RecordOutcome::kSaved;
  }
  if (done) {
    store_->settings.sessionOpenMarker = kNoSessionOpen;
    // Told by the save when it fails; the marker left on disk then brings the
    // recovery again, and IsCheckpointRecorded keeps it from counting twice.
    (void)store_->SaveSettings();
  }
}

RecordOutcome Monitor::RecordInterruptedSession(const InterruptedSession& s) {
  const uint32_t slot = store_->FindFreeSlot();
  if (slot == kNoSlot) return RecordOutcome::kNoRoom;
  store_->SetRecordStatus(slot, InUse);
  StoreDurationAndLogOn(slot, s.duration, s.logOn.hour, s.logOn.minute, s.logOn.second);
  // Recorded at start-up, the session carries the date on which it began and ends
  // at its latest checkpoint.
  store_->SetRecordDate(slot, s.dayOfWeek, s.month, s.day, s.year);
  SetPreviousSessionDate(store_->settings, s.dayOfWeek, s.month, s.day, s.year);
  store_->SetRecordLogOff(slot, s.logOff.hour, s.logOff.minute, s.logOff.second);
  SetPreviousSessionLogOff(store_->settings, s.logOff.hour, s.logOff.minute, s.logOff.second);
  return StoreNameAndSave(slot, s.name);
}

void Monitor::NoteLogOnTime(uint32_t hour, uint32_t minute, uint32_t second) {
  CopyFixedText(texts_.LogOnText, ClockText());
  session_.LogOnHour = hour;
  session_.LogOnMinute = minute;
  session_.LogOnSecond = second;
}

const char* Monitor::ElapsedText() {
  FormatElapsed(texts_.ElapsedText, ElapsedSeconds());
  return texts_.ElapsedText;
}

const char* Monitor::ClockText() {
  const LocalTime now = ReadLocalTime();
  FormatClock(texts_.ClockTextBuffer, now.hour, now.minute, now.second, store_->settings.use24HourClock != 0);
  return texts_.ClockTextBuffer;
}
