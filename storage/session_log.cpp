#include "storage/session_log.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "storage/binary_file.h"
#include "storage/fixed_text.h"
#include "storage/program_paths.h"
#include "storage/startup.h"

SessionLog sessionLog;
SessionRecord LegacyLogTable[kLegacyLogSlots];
uint32_t LogRecordLimit = kMaxLogRecords;

namespace {

uint64_t logGeneration = 1;

constexpr std::size_t kRecordSize = sizeof(SessionRecord);
constexpr uint32_t kRecordsPerRead = 4096;

void SetFreshLog() {
  sessionLog.records.assign(2, SessionRecord{});
  sessionLog.count = 2;
  NoteLogChanged();
}

// A damaged file may leave a name without its terminator; ending the field with
// one keeps every later reader inside the record.
void TerminateName(SessionRecord* record) { record->connectionName[kRecordNameSize - 1] = '\0'; }

const SessionRecord* RecordAt(uint32_t index) {
  return index < sessionLog.records.size() ? &sessionLog.records[index] : nullptr;
}

// The one way to a writable record: it counts as a change of the log.
SessionRecord* RecordToChange(uint32_t index) {
  if (index >= sessionLog.records.size()) return nullptr;
  NoteLogChanged();
  return &sessionLog.records[index];
}

// Room at once for the records the file can give: growing the array chunk by
// chunk would copy a large log several times over and touch its memory twice.
// Without a usable size (a file past 2 GB on Windows) the array grows as it is
// read. False only when the read position could not be restored.
bool ReserveForFile(std::FILE* file, uint32_t claimed, std::vector<SessionRecord>* records) {
  const long start = std::ftell(file);
  if (start < 0 || std::fseek(file, 0, SEEK_END) != 0) return true;  // not moved
  const long end = std::ftell(file);
  if (std::fseek(file, start, SEEK_SET) != 0) return false;
  if (end < start) return true;
  const std::size_t present = (static_cast<std::size_t>(end - start) + kRecordSize - 1) / kRecordSize;
  records->reserve(std::min<std::size_t>(claimed, present + kMissingRecordsPadded));
  return true;
}

// Reads the records that follow the header, in chunks, so memory follows the data
// actually in the file rather than the count the header claims.
bool ReadRecords(std::FILE* file, uint32_t claimed, std::vector<SessionRecord>* records) {
  if (!ReserveForFile(file, claimed, records)) return false;
  while (records->size() < claimed) {
    const std::size_t wanted = std::min<std::size_t>(kRecordsPerRead, claimed - records->size());
    const std::size_t first = records->size();
    records->resize(first + wanted);  // zero-filled: a short tail reads as Blank
    const std::size_t bytes = std::fread(&(*records)[first], 1, wanted * kRecordSize, file);
    if (std::ferror(file)) return false;
    for (std::size_t i = first; i < records->size(); ++i) TerminateName(&(*records)[i]);
    if (bytes < wanted * kRecordSize) {
      // End of file: keep a partly present record, then decide about the rest.
      const std::size_t present = first + (bytes + kRecordSize - 1) / kRecordSize;
      const bool plausible = claimed - present <= kMissingRecordsPadded;
      records->resize(plausible ? claimed : present);
      return true;
    }
  }
  return true;
}

}  // namespace

uint64_t LogGeneration() { return logGeneration; }

void NoteLogChanged() { ++logGeneration; }

bool LoadLog(const char* path) {
  std::FILE* file = OpenOrCreateForUpdate(path);
  if (file == nullptr) return false;
  uint32_t header[2] = {0, 0};
  const std::size_t headerBytes = std::fread(header, 1, sizeof header, file);
  if (std::ferror(file)) {
    std::fclose(file);
    return false;
  }
  if (headerBytes < sizeof header) {
    // No complete header means no records at all: start a fresh log.
    std::fclose(file);
    SetFreshLog();
    return true;
  }
  const uint32_t claimed = std::min(header[0], LogRecordLimit);
  std::vector<SessionRecord> records;
  bool read = false;
  try {
    read = ReadRecords(file, claimed, &records);
  } catch (const std::bad_alloc&) {
    read = false;
  }
  std::fclose(file);
  if (!read) return false;
  sessionLog.records.swap(records);
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
  return true;
}

bool SaveLog(const char* path) {
  if (SavesRefused()) return false;
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  const uint32_t header[2] = {sessionLog.count, static_cast<uint32_t>(sessionLog.count * kRecordSize)};
  const WriteBlock blocks[] = {{header, sizeof header},
                               {sessionLog.records.data(), sessionLog.records.size() * kRecordSize}};
  return WriteFileStart(path, blocks, 2);
}

bool CreateEmptyLog(const char* path) {
  SetFreshLog();
  return SaveLog(path);
}

bool LoadLegacyLog(const char* path) {
  std::memset(LegacyLogTable, 0, sizeof LegacyLogTable);
  std::size_t bytesRead = 0;
  return ReadFileStart(path, LegacyLogTable, sizeof LegacyLogTable, &bytesRead);
}

bool ConvertLegacyLog() {
  sessionLog.records.clear();
  for (const SessionRecord& record : LegacyLogTable) {
    if (record.status != InUse) continue;
    sessionLog.records.push_back(record);
    TerminateName(&sessionLog.records.back());
  }
  sessionLog.records.resize(sessionLog.records.size() + 2);
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
  SaveLog(LogFilePath().c_str());
  return true;
}

void AppendBlankRecords() {
  if (sessionLog.records.size() + 2 > LogRecordLimit) return;
  try {
    sessionLog.records.resize(sessionLog.records.size() + 2);
  } catch (const std::bad_alloc&) {
    // Out of memory: the log stays as it was and the caller finds no free slot.
  }
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
}

bool HasNoFreeSlot() {
  for (const SessionRecord& record : sessionLog.records) {
    if (record.status == Blank || record.status == Deleted) return false;
  }
  return true;
}

bool IsLogEmpty() {
  for (const SessionRecord& record : sessionLog.records) {
    if (record.status != Blank && record.status != Deleted) return false;
  }
  return true;
}

uint32_t FindFreeSlot() {
  if (HasNoFreeSlot()) AppendBlankRecords();
  for (uint32_t index = 0; index < sessionLog.records.size(); ++index) {
    if (sessionLog.records[index].status != InUse) return index;
  }
  return kNoSlot;
}

void SetRecordDate(uint32_t index, uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
  if (SessionRecord* record = RecordToChange(index)) {
    record->dayOfWeek = dayOfWeek;
    record->month = month;
    record->day = day;
    record->year = year;
  }
}

void SetRecordLogOn(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second) {
  if (SessionRecord* record = RecordToChange(index)) {
    record->logOnHour = hour;
    record->logOnMinute = minute;
    record->logOnSecond = second;
  }
}

void SetRecordLogOff(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second) {
  if (SessionRecord* record = RecordToChange(index)) {
    record->logOffHour = hour;
    record->logOffMinute = minute;
    record->logOffSecond = second;
  }
}

void SetRecordDuration(uint32_t index, int32_t seconds) {
  if (SessionRecord* record = RecordToChange(index)) record->durationSeconds = seconds;
}

void SetRecordName(uint32_t index, const char* name) {
  if (SessionRecord* record = RecordToChange(index)) CopyFixedText(record->connectionName, name);
}

void SetRecordStatus(uint32_t index, RecordStatus status) {
  if (SessionRecord* record = RecordToChange(index)) record->status = status;
}

const char* RecordName(uint32_t index) {
  const SessionRecord* record = RecordAt(index);
  return record != nullptr && record->status == InUse ? record->connectionName : nullptr;
}

bool MarkConnectionDeleted(const char* name) {
  bool changed = false;
  for (SessionRecord& record : sessionLog.records) {
    if (record.status == Deleted) continue;
    if (std::strncmp(record.connectionName, name, kRecordNameSize) == 0) {
      record.status = Deleted;
      changed = true;
    }
  }
  if (changed) NoteLogChanged();
  return changed;
}

void ClearLog() {
  for (SessionRecord& record : sessionLog.records) record.status = Deleted;
  NoteLogChanged();
}
