// A console view of the session lifecycle: polls the dial-up service ten times a
// second, as the tray program does, and prints each session as it opens, is
// checkpointed and is recorded. It uses the real configuration and log files.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "monitor/dial_up_probe.h"
#include "monitor/session.h"
#include "monitor/time_text.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"

namespace {

uint32_t checkpointDueMs = 0;

void PrintRecorded() {
  char date[kDateTextSize];
  char logOn[kClockTextSize];
  char logOff[kClockTextSize];
  const PreviousSession& last = settings.previousSession;
  FormatDate(date, last.dayOfWeek, last.month, last.day, last.year);
  FormatClock(logOn, last.logOn.hour, last.logOn.minute, last.logOn.second);
  FormatClock(logOff, last.logOff.hour, last.logOff.minute, last.logOff.second);
  std::printf("recorded: \"%s\" %s  ON %s  OFF %s  %s\n", last.connectionName, date, logOn, logOff,
              GetLastDurationText());
  std::fflush(stdout);
}

void LoadOrCreateFiles() {
  CreateDirectoryA(ProgramFolder().c_str(), nullptr);
  if (!LoadSettings(SettingsPath()) || !HasCurrentFormatMarker()) CreateSettings(SettingsPath());
  LoadLog(LogFilePath().c_str());
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
  LoadOrCreateFiles();
  if (settings.sessionOpenMarker == kSessionOpen) {
    RecoverInterruptedSession();
    std::printf("recovered an interrupted session:\n");
    PrintRecorded();
  }
  sessionHooks.startSessionTimers = [] {
    checkpointDueMs = GetTickCount() + kCheckpointPeriodMs;
    std::printf("opened: \"%s\" at %s\n", SessionConnectionName, GetLogOnText());
    std::fflush(stdout);
  };
  sessionHooks.stopSessionTimers = [] { checkpointDueMs = 0; };
  sessionHooks.reportOutOfSpace = [] { std::printf("Out of space to record session\n"); };
  sessionHooks.checkUnconfiguredConnections = PrintRecorded;

  std::printf("polling the dial-up service for %d s (log: %s)\n", seconds, LogFilePath().c_str());
  std::fflush(stdout);
  DialUpProbe probe;
  const DWORD end = GetTickCount() + static_cast<DWORD>(seconds) * 1000;
  while (static_cast<int32_t>(end - GetTickCount()) > 0) {
    RunSessionStep(probe);
    if (checkpointDueMs != 0 && static_cast<int32_t>(GetTickCount() - checkpointDueMs) >= 0) {
      OnCheckpointTimer();
      checkpointDueMs += kCheckpointPeriodMs;
      std::printf("checkpoint: %s\n", GetElapsedText());
      std::fflush(stdout);
    }
    Sleep(100);
  }
  if (SessionOpen) std::printf("still on-line: the next start records the session from its checkpoint\n");
  return 0;
}
