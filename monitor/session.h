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

extern uint32_t SessionOpen;          // 1 while a session is open
extern uint32_t SessionClosed;        // always the complement of SessionOpen
extern uint32_t SessionStartSeconds;  // tick counter / 1000 when the session opened
extern char SessionConnectionName[50];
extern uint32_t LogOnHour, LogOnMinute, LogOnSecond;
extern uint32_t LogOffHour, LogOffMinute, LogOffSecond;
extern uint8_t LastSessionChanged;    // the main dialog redraws its previous session
// The answer of the latest session step's poll. The other readers of that tick
// (the status text) and the main dialog's refresh take it rather than asking
// the dial-up service again.
extern uint8_t TickConnected;

// What the session step needs from the window layer and from later features.
struct SessionHooks {
  void (*startSessionTimers)() = nullptr;  // checkpoint and alarm timers
  void (*stopSessionTimers)() = nullptr;
  void (*reportOutOfSpace)() = nullptr;    // "Out of space to record session"
  void (*checkUnconfiguredConnections)() = nullptr;
};
extern SessionHooks sessionHooks;

// One tick of the 100 ms timer: one poll, whose answer both checks take (up
// while no session is open opens one, down while one is open closes it) and
// which stays in TickConnected.
void RunSessionStep(DialUpProbe& probe);

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

// Back to the state of a freshly started process (tests, tools).
void ResetSessionState();

// Keeps the log-on time and the clock text of this moment.
void NoteLogOnTime(uint32_t hour, uint32_t minute, uint32_t second);
// The running session's duration text.
const char* GetElapsedText();
