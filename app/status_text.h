// The account-status text of the main status dialog, rebuilt at every tick of the
// main window's timers, and the lines of its previous-session summary.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "storage/storage.h"

class Monitor;
enum class SessionChange;

constexpr std::size_t kStatusTextSize = 256;

// The shell's program-wide state; ResetStatusState() brings it back to these values.
struct StatusState {
  char statusText[kStatusTextSize] = "";  // the account-status text the main dialog shows
};
extern StatusState statusState;
// Back to a fresh start (tests, tools).
void ResetStatusState();

constexpr char kInitialStatusText[] = "\t\t   Status: \n\n        No  Active  Dial-Up  Connections...";
constexpr char kOffLineStatusText[] = "\t\t      Status :\n\n           No  Active  Dial-Up  Connections ...";

// What the status text is built on: the answer of the latest poll tick, the
// connection it saw and the running session's length.
struct StatusInputs {
  bool connected = false;
  const char* connectionName = "";
  int32_t elapsedSeconds = 0;
};
StatusInputs StatusInputsOf(const Monitor& monitor);

// Built on the monitor's latest poll tick, so it asks the dial-up service
// nothing. Takes the account figures from the usage cache, so a rebuild costs the
// same whatever the log's size; the With forms take them from the family given.
void RefreshStatusText(Monitor& monitor);
void RefreshStatusTextWith(Storage& store, const StatusInputs& inputs, const UsageQueries& usage);

// A tick of the main window's timers 2, 5 and 10: timer 2's tick (pollTick) runs
// the monitor's poll, the one dial-up query of the tick; every tick rebuilds the
// status text while the main status dialog exists to show it. Returns what the
// poll did to the session, for the shell's session timers.
SessionChange OnMainWindowTimer(bool pollTick, bool statusShown, Monitor& monitor);

// "0.50 Hr." / "1.01 Hrs.": an hour figure with its unit.
std::string HoursText(float hours);

// The summary of the previous session stored in the settings, line by line.
std::vector<std::string> PreviousSessionLines(Storage& store);
std::vector<std::string> PreviousSessionLinesWith(Storage& store, const UsageQueries& usage);
