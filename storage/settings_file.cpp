#include <cstring>
#include <string>

#include "platform/binary_file.h"
#include "storage/fixed_text.h"
#include "platform/program_paths.h"
#include "storage/storage.h"

const char* SettingsPath() {
  // Rebuilt on each call so a changed Windows directory (tests) is followed.
  static std::string path;
  path = JoinPath(WindowsDirectory(), "Orvaconfig.bic");
  return path.c_str();
}

void Storage::ApplyDefaultSettings() {
  CopyFixedText(settings.formatMarker, kFormatMarker);
  settings.reservedOne = 1.0f;
  settings.reservedUnit = 1;
  settings.alarmRepeatHours = 1;
  settings.alarmRepeatMinutes = 0;
  settings.alarmOnceHours = 2;
  settings.use24HourClock = 0;
  settings.logSystemColours = 0;
  settings.alarmOn = 0;
  settings.alarmAction = kAlarmBoxAndSound;
  settings.alarmMode = kAlarmEveryInterval;
  settings.alarmOnceMinutes = 30;
  settings.showMainWindowAtStart = 0;
  settings.runAtStartup = 1;
  settings.logInitialFilter = 1;
  settings.sessionOpenMarker = kNoSessionOpen;
}

bool Storage::LoadSettings(const char* path) {
  // A short file fills only the start of the block; the rest keeps its values.
  std::size_t bytesRead = 0;
  return ReadFileStart(path, &settings, sizeof settings, &bytesRead);
}

bool Storage::SaveSettingsTo(const char* path) {
  // A configuration file that could not be read is never replaced by the defaults.
  if (holds.Held(kConfigurationFile)) return false;
  // Written at every save, changed or not: closing the settings sheet, even with
  // Cancel, rewrites the file, which users (and their backups) know it by.
  const WriteBlock block = {&settings, sizeof settings};
  return holds.NoteSaveResult(kConfigurationFile, path, SaveWholeFile(path, &block, 1, true), notices);
}

bool Storage::SaveSettings() { return SaveSettingsTo(SettingsPath()); }

bool Storage::CreateSettings(const char* path) {
  // The file itself appears only once written whole, so a first run stopped before
  // that is a first run again at the next start.
  if (!CanCreate(path)) return false;
  ApplyDefaultSettings();
  if (installHooks.markFirstRun) installHooks.markFirstRun();
  if (installHooks.installProgram) installHooks.installProgram(*this);
  return SaveSettingsTo(path);
}

bool Storage::HasCurrentFormatMarker() const {
  return FixedTextEqualsIgnoringCase(settings.formatMarker, sizeof settings.formatMarker, kFormatMarker);
}
