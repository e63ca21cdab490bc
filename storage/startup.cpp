#include "storage/startup.h"

#include <cstdio>
#include <cstring>

#include "platform/binary_file.h"
#include "platform/program_paths.h"
#include "storage/fixed_text.h"
#include "storage/storage.h"

namespace {

void ShowLogMissing(const StartupHooks& hooks, void* owner) {
  if (hooks.showAlert) hooks.showAlert(owner, kLogMissingText, kLogMissingCaption);
}

void CallInstallFiles(const StartupHooks& hooks) {
  if (hooks.installFiles) hooks.installFiles();
}

void CallCreateShortcuts(const StartupHooks& hooks) {
  if (hooks.createShortcuts) hooks.createShortcuts();
}

void CallSetAutoStart(const StartupHooks& hooks, bool on) {
  if (hooks.setAutoStart) hooks.setAutoStart(on);
}

std::string CurrentDirectory(const StartupHooks& hooks) {
  return hooks.currentDirectory ? hooks.currentDirectory() : std::string();
}

// The first run's installation, run by CreateSettings once the defaults are in.
void InstallProgram(Storage& storage) {
  const StartupHooks& hooks = storage.startupHooks;
  if (hooks.createProgramFolder) hooks.createProgramFolder();
  CallInstallFiles(hooks);
  CallCreateShortcuts(hooks);
  CallSetAutoStart(hooks, true);
}

void LoadCurrentLog(Storage& storage, const std::string& path) {
  if (!storage.LoadLog(path.c_str())) storage.KeepSessionsUntilLogRead(path.c_str(), false);
}

void LoadFirstRunLog(Storage& storage) {
  const std::string current = LogFilePath();
  const std::string legacy = LegacyLogPath();
  if (StoredFileExists(current.c_str())) {
    LoadCurrentLog(storage, current);
  } else if (StoredFileExists(legacy.c_str())) {
    if (storage.LoadLegacyLog(legacy.c_str())) {
      storage.ConvertLegacyLog();
    } else {
      storage.KeepSessionsUntilLogRead(legacy.c_str(), true);
    }
  } else {
    storage.CreateEmptyLog(current.c_str());
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
bool FirstRunUnfinished(const Settings& settings) {
  return settings.previousSessionValid == 0 && settings.sessionOpenMarker != kSessionOpen;
}

}  // namespace

bool Storage::InitialiseStorage(void* owner) {
  holds.Reset();
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
    CallCreateShortcuts(startupHooks);
    CallSetAutoStart(startupHooks, true);
    LoadFirstRunLog(*this);
    return true;
  }

  if (!LoadSettings(path.c_str())) {
    // Locked, or a folder of that name: the run goes on with the defaults, and
    // the file stays as it is. Sessions still reach the log.
    holds.ReportUnreadable(kConfigurationFile, path.c_str(), notices);
    std::memset(&settings, 0, sizeof settings);
    ApplyDefaultSettings();
    if (StoredFileExists(log.c_str())) {
      LoadCurrentLog(*this, log);
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
      if (!FirstRunUnfinished(settings)) ShowLogMissing(startupHooks, owner);
      CreateEmptyLog(log.c_str());
    } else {
      LoadCurrentLog(*this, log);
    }
  } else {
    // Written by an older release: its log, if any, is converted; every other
    // field is taken as it is.
    const std::string legacy = LegacyLogPath();
    if (!StoredFileExists(legacy.c_str())) {
      ShowLogMissing(startupHooks, owner);
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
  if (reinstallCheck && !EqualsIgnoringCase(CurrentDirectory(startupHooks).c_str(), ProgramFolder().c_str())) {
    CallInstallFiles(startupHooks);
    CallCreateShortcuts(startupHooks);
    CallSetAutoStart(startupHooks, true);
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
