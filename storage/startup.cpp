#include "storage/startup.h"

#include <cstdio>
#include <cstring>

#include "platform/binary_file.h"
#include "storage/accounts.h"
#include "storage/fixed_text.h"
#include "storage/notice_queue.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/usage_cache.h"

namespace {

void ShowLogMissing(void* owner) {
  if (startupHooks.showAlert) startupHooks.showAlert(owner, kLogMissingText, kLogMissingCaption);
}

void CallInstallFiles() {
  if (startupHooks.installFiles) startupHooks.installFiles();
}

void CallCreateShortcuts() {
  if (startupHooks.createShortcuts) startupHooks.createShortcuts();
}

void CallSetAutoStart(bool on) {
  if (startupHooks.setAutoStart) startupHooks.setAutoStart(on);
}

std::string CurrentDirectory() {
  return startupHooks.currentDirectory ? startupHooks.currentDirectory() : std::string();
}

// The first run's installation, run by CreateSettings once the defaults are in.
void InstallProgram() {
  if (startupHooks.createProgramFolder) startupHooks.createProgramFolder();
  CallInstallFiles();
  CallCreateShortcuts();
  CallSetAutoStart(true);
}

void LoadCurrentLog(const std::string& path) {
  if (!LoadLog(path.c_str())) KeepSessionsUntilLogRead(path.c_str(), false);
}

void LoadFirstRunLog() {
  const std::string current = LogFilePath();
  const std::string legacy = LegacyLogPath();
  if (StoredFileExists(current.c_str())) {
    LoadCurrentLog(current);
  } else if (StoredFileExists(legacy.c_str())) {
    if (LoadLegacyLog(legacy.c_str())) {
      ConvertLegacyLog();
    } else {
      KeepSessionsUntilLogRead(legacy.c_str(), true);
    }
  } else {
    CreateEmptyLog(current.c_str());
  }
}

// A configuration file of no bytes is what an older release's first run left when
// it was stopped before writing it: the first run is done again.
bool IsEmptyFile(const char* path) {
  char first = 0;
  std::size_t bytesRead = 0;
  return ReadFileStart(path, &first, 1, &bytesRead) && bytesRead == 0;
}

// A current configuration that never recorded a session, beside no log: the first
// run was stopped between writing the configuration and creating the log.
bool FirstRunUnfinished() {
  return settings.previousSessionValid == 0 && settings.sessionOpenMarker != kSessionOpen;
}

}  // namespace

bool InitialiseStorage(void* owner) {
  ResetFileHolds();
  const std::string path = SettingsPath();
  const std::string log = LogFilePath();
  // A save cut short by a kill or a power cut is settled before anything is read.
  FinishInterruptedSave(path.c_str());
  FinishInterruptedSave(log.c_str());

  if (!StoredFileExists(path.c_str()) || IsEmptyFile(path.c_str())) {
    if (startupHooks.showWelcome) startupHooks.showWelcome(owner);
    if (!installHooks.installProgram) installHooks.installProgram = InstallProgram;
    CreateSettings(path.c_str());
    // Once more whatever CreateSettings managed, so the shortcuts and the
    // autostart value exist even when the configuration could not be created.
    CallCreateShortcuts();
    CallSetAutoStart(true);
    LoadFirstRunLog();
    return true;
  }

  if (!LoadSettings(path.c_str())) {
    // Locked, or a folder of that name: the run goes on with the defaults, and
    // the file stays as it is. Sessions still reach the log.
    ReportUnreadable(kConfigurationFile, path.c_str());
    std::memset(&settings, 0, sizeof settings);
    ApplyDefaultSettings();
    if (StoredFileExists(log.c_str())) {
      LoadCurrentLog(log);
    } else {
      // Whether a log is missing or an older one waits for conversion, only the
      // configuration can tell: nothing is written until it has been read.
      KeepSessionsUntilLogRead(log.c_str(), false);
    }
    return false;
  }

  bool reinstallCheck = true;
  // A current log on disk is always loaded, also beside a configuration that looks
  // like an older release's: a damaged marker must not cost the recorded sessions.
  if (HasCurrentFormatMarker() || StoredFileExists(log.c_str())) {
    if (!HasCurrentFormatMarker()) CopyFixedText(settings.formatMarker, kFormatMarker);
    if (!StoredFileExists(log.c_str())) {
      if (!FirstRunUnfinished()) ShowLogMissing(owner);
      CreateEmptyLog(log.c_str());
    } else {
      LoadCurrentLog(log);
    }
  } else {
    // Written by an older release: its log, if any, is converted; every other
    // field is taken as it is.
    const std::string legacy = LegacyLogPath();
    if (!StoredFileExists(legacy.c_str())) {
      ShowLogMissing(owner);
      CreateEmptyLog(log.c_str());
      CopyFixedText(settings.formatMarker, kFormatMarker);
      reinstallCheck = false;
    } else if (LoadLegacyLog(legacy.c_str())) {
      CopyFixedText(settings.formatMarker, kFormatMarker);
      ConvertLegacyLog();
    } else {
      // The marker stays an older release's until the conversion is done.
      KeepSessionsUntilLogRead(legacy.c_str(), true);
    }
  }

  // Started from anywhere but the program folder (the set-up medium, say): refresh
  // the installed copy, whatever runAtStartup says.
  if (reinstallCheck && !EqualsIgnoringCase(CurrentDirectory().c_str(), ProgramFolder().c_str())) {
    CallInstallFiles();
    CallCreateShortcuts();
    CallSetAutoStart(true);
  }

  // The start goes on without it: a failure was told by the save, and the next
  // save writes the same block.
  (void)SaveSettingsTo(path.c_str());
  return true;
}

#ifndef _WIN32
// Off Windows nothing is installed; tests put in hooks of their own.
StartupHooks PlatformStartupHooks() { return StartupHooks{}; }
#endif

void ResetStorageState() {
  std::memset(&settings, 0, sizeof settings);
  sessionLog = SessionLog{};
  logState = LogState{};
  NoteLogChanged();
  ClearUsageCache();
  ResetFileHolds();
  ClearNotices();
  cardSecondsRemaining = 0.0f;
  installHooks = InstallHooks{};
  startupHooks = StartupHooks{};
}
