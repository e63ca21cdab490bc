#include "monitor/session_settings.h"

#include <algorithm>
#include <cstring>

#include "storage/fixed_text.h"
#include "storage/settings.h"

void SetPreviousSessionLogOff(Settings& settings, uint32_t hour, uint32_t minute, uint32_t second) {
  settings.previousSession.logOff = {hour, minute, second};
}

void SetPreviousSessionLogOn(Settings& settings, uint32_t hour, uint32_t minute, uint32_t second) {
  settings.previousSession.logOn = {hour, minute, second};
}

void SetPreviousSessionDate(Settings& settings, uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
  settings.previousSession.dayOfWeek = dayOfWeek;
  settings.previousSession.month = month;
  settings.previousSession.day = day;
  settings.previousSession.year = year;
}

void SetPreviousSessionName(Settings& settings, const char* name) {
  CopyFixedText(settings.previousSession.connectionName, name);
}

void SetCheckpointTime(Settings& settings, const char* name, uint32_t hour, uint32_t minute, uint32_t second,
                       uint32_t elapsed) {
  CopyFixedText(settings.checkpointName, name);
  settings.checkpointTime = {hour, minute, second};
  settings.checkpointElapsed = elapsed;
}

void SetCheckpointStart(Settings& settings, const char* name, uint32_t hour, uint32_t minute, uint32_t second,
                        uint32_t dayOfWeek, uint32_t day, uint32_t month, uint32_t year) {
  CopyFixedText(settings.checkpointName, name);
  settings.checkpointLogOn = {hour, minute, second};
  settings.checkpointDayOfWeek = dayOfWeek;
  settings.checkpointDay = day;
  settings.checkpointMonth = month;
  settings.checkpointYear = year;
}

SessionRecord CheckpointRecord(const Settings& saved) {
  SessionRecord checkpoint{};
  checkpoint.status = InUse;
  char name[kCheckpointNameSize + 1] = {};  // the field may be unterminated in a damaged file
  std::memcpy(name, saved.checkpointName, kCheckpointNameSize);
  CopyFixedText(checkpoint.connectionName, name);
  checkpoint.logOnHour = saved.checkpointLogOn.hour;
  checkpoint.logOnMinute = saved.checkpointLogOn.minute;
  checkpoint.logOnSecond = saved.checkpointLogOn.second;
  checkpoint.year = saved.checkpointYear;
  checkpoint.month = saved.checkpointMonth;
  checkpoint.day = saved.checkpointDay;
  checkpoint.durationSeconds = static_cast<int32_t>(std::min<uint32_t>(saved.checkpointElapsed, 0x7FFFFFFFu));
  return checkpoint;
}
