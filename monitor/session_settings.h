// Writes the previous-session summary and the running session's checkpoint into
// the settings block. Names are cut to their field's width.
#pragma once
#include <cstdint>

#include "storage/session_record.h"

struct Settings;

void SetPreviousSessionLogOff(Settings& settings, uint32_t hour, uint32_t minute, uint32_t second);
void SetPreviousSessionLogOn(Settings& settings, uint32_t hour, uint32_t minute, uint32_t second);
void SetPreviousSessionDate(Settings& settings, uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year);
void SetPreviousSessionName(Settings& settings, const char* name);
void SetCheckpointTime(Settings& settings, const char* name, uint32_t hour, uint32_t minute, uint32_t second,
                       uint32_t elapsed);
void SetCheckpointStart(Settings& settings, const char* name, uint32_t hour, uint32_t minute, uint32_t second,
                        uint32_t dayOfWeek, uint32_t day, uint32_t month, uint32_t year);
// The checkpoint of a configuration as a record (InUse, its name, log-on, the
// date it began and its length), to be compared with the log's records.
SessionRecord CheckpointRecord(const Settings& saved);
