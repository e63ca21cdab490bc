// The log of sessions: held whole in memory, rewritten whole when it changed.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "storage/session_record.h"

constexpr uint32_t kLegacyLogSlots = 2000;
constexpr uint32_t kNoSlot = 0xFFFFFFFFu;

// The header stores the record area's byte length in 32 bits, so the log can
// never hold more records than that length can describe.
constexpr uint32_t kMaxLogRecords = 0xFFFFFFFFu / sizeof(SessionRecord);

// A file whose count promises more records than it holds gets the missing ones
// as Blank records, up to this many; a count that overshoots further is damage,
// and only the records actually present are loaded (nothing recorded is lost, and
// a count like 4,000,000,000 cannot exhaust memory).
constexpr uint32_t kMissingRecordsPadded = 4096;

struct SessionLog {
  std::vector<SessionRecord> records;
  uint32_t count = 0;  // always records.size(); Blank and Deleted records count too
};

// The one program-wide log.
extern SessionLog sessionLog;
struct LogState {
  // The fixed table of older releases, read once for conversion.
  SessionRecord LegacyLogTable[kLegacyLogSlots] = {};
  // Largest number of records the log may grow to; lowered only by tests.
  uint32_t LogRecordLimit = kMaxLogRecords;
  // What the last successful save wrote (0: nothing yet): a save of the same
  // generation to the same file writes nothing.
  uint64_t savedGeneration = 0;
  std::string savedPath;
};
extern LogState logState;

// Changes whenever the log's records may have changed. Every operation below that
// changes a record or the array moves it on, so caches of figures computed from the
// log (usage_cache.h) know when to compute afresh. Code that writes
// sessionLog.records directly instead (tests building a log by hand) must call
// NoteLogChanged() afterwards.
uint64_t LogGeneration();
void NoteLogChanged();

// Reads the file only. Every whole record the file holds is loaded, also past a
// header count that says fewer.
bool LoadLog(const char* path);
// Refused (false, nothing written) while the log is held; see FileHeld.
[[nodiscard]] bool SaveLog(const char* path);
// After the log's file (path; an older release's when legacy) could not be read:
// tells the user, holds the log and starts a fresh one in memory for the sessions
// of this run. The first save that can read the file keeps both.
void KeepSessionsUntilLogRead(const char* path, bool legacy);
bool CreateEmptyLog(const char* path);
bool LoadLegacyLog(const char* path);
bool ConvertLegacyLog();

void AppendBlankRecords();
bool HasNoFreeSlot();
bool IsLogEmpty();
// Lowest record that is not InUse, growing the log by two first when every record
// is InUse; kNoSlot only when the log cannot grow.
uint32_t FindFreeSlot();

void SetRecordDate(uint32_t index, uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year);
void SetRecordLogOn(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second);
void SetRecordLogOff(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second);
void SetRecordDuration(uint32_t index, int32_t seconds);
void SetRecordName(uint32_t index, const char* name);
// The recorder marks the slot FindFreeSlot gave it InUse with this.
void SetRecordStatus(uint32_t index, RecordStatus status);
// The record's name when it is InUse, otherwise nullptr.
const char* RecordName(uint32_t index);

// Whether two records are one session: the same connection, begun at the same
// second, dated no further apart than its length reaches from its log-on (a
// session recorded at its end carries its end date, one recovered from its
// checkpoint its start date), with a day to spare for a clock set back or on.
// The longer one is taken for the later record.
bool SameSession(const SessionRecord& a, const SessionRecord& b);
// Whether an InUse record of the records is that session.
bool HoldsSession(const std::vector<SessionRecord>& records, const SessionRecord& session);

bool MarkConnectionDeleted(const char* name);
void ClearLog();
