#include "storage/startup.h"

#include <cstring>

#include "storage/binary_file.h"
#include "storage/fixed_text.h"
#include "storage/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

StartupHooks startupHooks = PlatformStartupHooks();

namespace {

bool savesRefused = false;

// A configuration that is there but cannot be opened (locked by another process,
// or a folder of that name) is not a first run: it must be neither replaced by
// defaults nor overwritten later.
bool IsOnDisk(const char* path) {
#ifdef _WIN32
  return FileExists(path) || _access(path, 0) == 0;
#else
  return FileExists(path) || access(path, F_OK) == 0;
#endif
}

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameIgnoringCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

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

void LoadFirstRunLog() {
  const std::string current = LogFilePath();
  const std::string legacy = LegacyLogPath();
  if (FileExists(current.c_str())) {
    LoadLog(current.c_str());
  } else if (FileExists(legacy.c_str())) {
    LoadLegacyLog(legacy.c_str());
    ConvertLegacyLog();
  } else {
    CreateEmptyLog(current.c_str());
  }
}

}  // namespace

void RefuseSaves(bool refuse) { savesRefused = refuse; }
bool SavesRefused() { return savesRefused; }

bool InitialiseStorage(void* owner) {
  RefuseSaves(false);
  const std::string path = SettingsPath();

  if (!IsOnDisk(path.c_str())) {
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
    // A half-read block is worse than none: the rest of the program sees zeros,
    // and the file on disk stays as it is.
    std::memset(&settings, 0, sizeof settings);
    RefuseSaves(true);
    return false;
  }

  const std::string log = LogFilePath();
  bool reinstallCheck = true;
  // A current log on disk is always loaded, also beside a configuration that looks
  // like an older release's: a damaged marker must not cost the recorded sessions.
  if (HasCurrentFormatMarker() || FileExists(log.c_str())) {
    if (!HasCurrentFormatMarker()) CopyFixedText(settings.formatMarker, kFormatMarker);
    if (!FileExists(log.c_str())) {
      ShowLogMissing(owner);
      CreateEmptyLog(log.c_str());
    }
    LoadLog(log.c_str());
  } else {
    // Written by an older release: its log, if any, is converted; every other
    // field is taken as it is.
    const std::string legacy = LegacyLogPath();
    if (!FileExists(legacy.c_str())) {
      ShowLogMissing(owner);
      CreateEmptyLog(log.c_str());
      CopyFixedText(settings.formatMarker, kFormatMarker);
      reinstallCheck = false;
    } else {
      LoadLegacyLog(legacy.c_str());
      CopyFixedText(settings.formatMarker, kFormatMarker);
      ConvertLegacyLog();
    }
  }

  // Started from anywhere but the program folder (the set-up medium, say): refresh
  // the installed copy, whatever runAtStartup says.
  if (reinstallCheck && !SameIgnoringCase(CurrentDirectory(), ProgramFolder())) {
    CallInstallFiles();
    CallCreateShortcuts();
    CallSetAutoStart(true);
  }

  SaveSettingsTo(path.c_str());
  return true;
}

#ifndef _WIN32
// Off Windows nothing is installed; tests put in hooks of their own.
StartupHooks PlatformStartupHooks() { return StartupHooks{}; }
#endif
