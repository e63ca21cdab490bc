#include "monitor/session_settings.h"

#include "storage/fixed_text.h"
#include "storage/settings.h"

void SetPreviousSessionLogOff(uint32_t hour, uint32_t minute, uint32_t second) {
  settings.previousSession.logOff = {hour, minute, second};
}

void SetPreviousSessionLogOn(uint32_t hour, uint32_t minute, uint32_t second) {
  settings.previousSession.logOn = {hour, minute, second};
}

void SetPreviousSessionDate(uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
  settings.previousSession.dayOfWeek = dayOfWeek;
  settings.previousSession.month = month;
  settings.previousSession.day = day;
  settings.previousSession.year = year;
}

void SetPreviousSessionName(const char* name) {
  CopyFixedText(settings.previousSession.connectionName, name);
}

void SetCheckpointTime(const char* name, uint32_t hour, uint32_t minute, uint32_t second,
                       uint32_t elapsed) {
  CopyFixedText(settings.checkpointName, name);
  settings.checkpointTime = {hour, minute, second};
  settings.checkpointElapsed = elapsed;
}

void SetCheckpointStart(const char* name, uint32_t hour, uint32_t minute, uint32_t second,
                        uint32_t dayOfWeek, uint32_t day, uint32_t month, uint32_t year) {
  CopyFixedText(settings.checkpointName, name);
  settings.checkpointLogOn = {hour, minute, second};
  settings.checkpointDayOfWeek = dayOfWeek;
  settings.checkpointDay = day;
  settings.checkpointMonth = month;
  settings.checkpointYear = year;
}
