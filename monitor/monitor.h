// The monitor: the one owner of the running session's state, of the dial-up
// probe the session polls and what it saw, of the session's texts and of the
// alarm's part of the session. The shell creates one and drives it with events;
// what the user must see or answer waits in the notice queue (storage/
// notice_queue.h) until the shell hands its MonitorShell to ShowPendingNotices.
#pragma once
#include <cstdint>

#include "monitor/alarm_state.h"
#include "monitor/dial_up_probe.h"
#include "monitor/session_state.h"
#include "monitor/time_text.h"

class MonitorShell;
class Storage;

// What an event did to the session: the shell starts the session's timers
// (checkpoint, alarm, usage warning) when it opened and stops them when it closed.
enum class SessionChange { kNone, kOpened, kClosed };

enum class ShutdownMode {
  kKeepNotices,  // the notices the recording queued are shown as usual
  kQuiet,        // the system is going down: no notice is kept that would hold it up
};

class Monitor {
 public:
  // The session is recorded into the storage, which outlives the monitor.
  explicit Monitor(Storage& storage) : store_(&storage) {}
  Storage& Store() { return *store_; }
  const Storage& Store() const { return *store_; }

  // --- Events in ---------------------------------------------------------------
  // The 100 ms poll: one dial-up query, whose answer both checks take (up while
  // no session is open opens one, down while one is open closes it) and which
  // stays for the tick's other readers (TickConnected).
  SessionChange OnPollTick();
  // Every kCheckpointPeriodMs while a session is open: a checkpoint while on-line.
  void OnCheckpointTimer();
  // The alarm timer: a reminder while on-line, when the settings allow one.
  void OnAlarmTimer();
  // Every kUsageWarningCheckMs while a session is open: a due usage warning is
  // marked and saved, then queued.
  void OnUsageWarningTimer();
  // At start, once the files are read: records a session a crash left open.
  void RecoverInterruptedSession();
  // The program ends with a session open: it is recorded as it stands now. Out
  // of space or a failed save leaves the marker set, so the next start records it.
  SessionChange Shutdown(ShutdownMode mode);

  // --- Notices out ---------------------------------------------------------------
  // Shows what the steps queued, oldest first, through the shell. A box shown here
  // runs ticks in its own message loop; notices they queue wait until it closes.
  void ShowPendingNotices(MonitorShell& shell);

  // --- What the readers see ------------------------------------------------------
  const SessionState& Session() const { return session_; }
  bool SessionOpen() const { return session_.SessionOpen != 0; }
  bool TickConnected() const { return session_.TickConnected != 0; }
  // The probe of the session's polls: its name, on-line flag and first connection.
  const DialUpProbe& Probe() const { return probe_; }
  // A fresh poll through the same probe (Exit's question, View Log's filter).
  bool PollNow() { return probe_.IsConnected(); }
  // The main dialog redraws its previous session while this is set.
  bool PreviousSessionChanged() const { return session_.LastSessionChanged != 0; }
  void SetPreviousSessionChanged(bool changed) { session_.LastSessionChanged = changed ? 1 : 0; }

  // The running session's length from the tick counter.
  int32_t ElapsedSeconds() const;
  const char* ElapsedText();  // the running session's duration text
  const char* LogOnText() const { return texts_.LogOnText; }
  const char* LastDurationText() const { return texts_.LastDurationText; }
  // Clock text of the local time now; valid until the next call.
  const char* ClockText();

  AlarmSession& Alarm() { return alarm_; }
  // Period of the alarm timer for a session opening now; kDefaultAlarmPeriodMs
  // when none is set. In repeating mode it also clears the one-shot mark.
  uint32_t AlarmPeriodMs();

  // --- The session's steps (the events above run them) ---------------------------
  void StartSession();
  RecordOutcome EndSession();
  void CheckpointSession();
  RecordOutcome RecordInterruptedSession(const InterruptedSession& session);
  // One reminder when the settings and the session allow it. A stored mode that is
  // neither repeating nor one-shot has no reminder text, so it gives no reminder.
  void FireAlarm();

 private:
  void CloseSession();
  void StoreDurationAndLogOn(uint32_t slot, int32_t duration, uint32_t hour, uint32_t minute, uint32_t second);
  RecordOutcome StoreNameAndSave(uint32_t slot, const char* name);
  void NoteLogOnTime(uint32_t hour, uint32_t minute, uint32_t second);

  Storage* store_;  // never null
  DialUpProbe probe_;
  SessionState session_;
  SessionTexts texts_;
  AlarmSession alarm_;
  bool showing_ = false;  // a box of ours is open: its own loop's ticks show nothing
};
