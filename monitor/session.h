// A session: one stretch of time a dial-up connection is up. It is opened and
// closed by the poll step, checkpointed into the settings every three minutes,
// and recorded in the log when it ends or, after a crash, at the next start.
#pragma once
#include <cstddef>
#include <cstdint>

class DialUpProbe;

constexpr uint32_t kCheckpointPeriodMs = 180000;

// Told when a session recovered at start-up had a length that cannot be true.
constexpr char kDamagedCheckpointFormat[] =
    "The session of %s that was open when Orvalen stopped had a damaged length.\n"
    "It is recorded with the length its log-on and log-off times give.";

struct SessionState {
  uint32_t SessionOpen = 0;          // 1 while a session is open
  uint32_t SessionClosed = 1;        // always the complement of SessionOpen
  uint32_t SessionStartSeconds = 0;  // tick counter / 1000 when the session opened
  char SessionConnectionName[50] = "";
  uint32_t LogOnHour = 0, LogOnMinute = 0, LogOnSecond = 0;
  uint32_t LogOffHour = 0, LogOffMinute = 0, LogOffSecond = 0;
  uint8_t LastSessionChanged = 1;    // the main dialog redraws its previous session
  // The answer of the latest session step's poll. The other readers of that tick
  // (the status text) and the main dialog's refresh take it rather than asking
  // the dial-up service again.
  uint8_t TickConnected = 0;
};
extern SessionState sessionState;

// What the session step needs from the window layer and from later features.
struct SessionHooks {
  void (*startSessionTimers)() = nullptr;  // checkpoint and alarm timers
  void (*stopSessionTimers)() = nullptr;
  // Shown once the step has returned (monitor/pending_notices.h).
  void (*reportOutOfSpace)() = nullptr;    // "Out of space to record session"
  void (*checkUnconfiguredConnections)() = nullptr;
};
extern SessionHooks sessionHooks;

// One tick of the 100 ms timer: one poll, whose answer both checks take (up
// while no session is open opens one, down while one is open closes it) and
// which stays in TickConnected.
void RunSessionStep(DialUpProbe& probe);

// The system shuts down or the user logs off: an open session is recorded as it
// stands now, and no notice is kept that would hold the shutdown up. Out of space
// or a failed save leaves the marker set, so the next start records it.
void RecordSessionAtShutdown();

void StartSession();
bool EndSession();
int32_t ElapsedSeconds();
void CheckpointSession();
// The checkpoint timer's work: a checkpoint only while on-line.
void OnCheckpointTimer();
void RecoverInterruptedSession();
bool RecordInterruptedSession(const char* name, uint32_t logOnHour, uint32_t logOnMinute,
                              uint32_t logOnSecond, uint32_t logOffHour, uint32_t logOffMinute,
                              uint32_t logOffSecond, int32_t duration, uint32_t dayOfWeek,
                              uint32_t month, uint32_t day, uint32_t year);

// Back to the state of a freshly started process (tests, tools): sessionState,
// probeState, sessionTexts and the one-shot alarm's mark.
void ResetSessionState();

// Keeps the log-on time and the clock text of this moment.
void NoteLogOnTime(uint32_t hour, uint32_t minute, uint32_t second);
// The running session's duration text.
const char* GetElapsedText();
