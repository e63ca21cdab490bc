#include "storage/storage.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "platform/binary_file.h"
#include "storage/billing_period.h"
#include "storage/fixed_text.h"
#include "platform/program_paths.h"

namespace {

constexpr std::size_t kRecordSize = sizeof(SessionRecord);
constexpr uint32_t kRecordsPerRead = 4096;

// A damaged file may leave a name without its terminator; ending the field with
// one keeps every later reader inside the record.
void TerminateName(SessionRecord* record) { record->connectionName[kRecordNameSize - 1] = '\0'; }

// The byte length of an open file, or -1 when it cannot be told (past 2 GB on
// Windows). The read position is put back to `start`; false when it cannot be.
bool FileLength(std::FILE* file, long start, long* length) {
  *length = -1;
  if (std::fseek(file, 0, SEEK_END) != 0) return true;  // not moved
  *length = std::ftell(file);
  return std::fseek(file, start, SEEK_SET) == 0;
}

// Reads the records that follow the header, in chunks, so memory follows the data
// actually in the file rather than the count the header claims. Room for them is
// taken at once: growing the array chunk by chunk would copy a large log several
// times over.
bool ReadRecords(std::FILE* file, uint32_t claimed, std::size_t present, std::vector<SessionRecord>* records) {
  records->reserve(std::min<std::size_t>(claimed, present + kMissingRecordsPadded));
  while (records->size() < claimed) {
    const std::size_t wanted = std::min<std::size_t>(kRecordsPerRead, claimed - records->size());
    const std::size_t first = records->size();
    records->resize(first + wanted);  // zero-filled: a short tail reads as Blank
    const std::size_t bytes = std::fread(&(*records)[first], 1, wanted * kRecordSize, file);
    if (std::ferror(file)) return FileCallFailed();
    for (std::size_t i = first; i < records->size(); ++i) TerminateName(&(*records)[i]);
    if (bytes < wanted * kRecordSize) {
      // End of file: keep a partly present record, then decide about the rest.
      const std::size_t kept = first + (bytes + kRecordSize - 1) / kRecordSize;
      const bool plausible = claimed - kept <= kMissingRecordsPadded;
      records->resize(plausible ? claimed : kept);
      return true;
    }
  }
  return true;
}

}  // namespace

void Storage::SetFreshLog() {
  sessionLog.records.assign(2, SessionRecord{});
  sessionLog.count = 2;
  NoteLogChanged();
}

// The one way to a writable record: it counts as a change of the log.
SessionRecord* Storage::RecordToChange(uint32_t index) {
  if (index >= sessionLog.records.size()) return nullptr;
  NoteLogChanged();
  return &sessionLog.records[index];
}

// The records of a current log file, as LoadLog takes them.
bool Storage::ReadLogFile(const char* path, std::vector<SessionRecord>* records) const {
  std::FILE* file = OpenForReading(path);
  if (file == nullptr) return false;
  uint32_t header[2] = {0, 0};
  const std::size_t headerBytes = std::fread(header, 1, sizeof header, file);
  bool read = std::ferror(file) == 0 || FileCallFailed();
  if (read && headerBytes < sizeof header) {
    // No complete header means no records at all: a fresh log.
    records->assign(2, SessionRecord{});
  } else if (read) {
    // A count smaller than the records the file holds (a damaged header) must not
    // hide them: every whole record present is loaded, and so kept by the next save.
    long length = -1;
    read = FileLength(file, static_cast<long>(sizeof header), &length);
    const std::size_t present = length > 8 ? static_cast<std::size_t>(length - 8) / kRecordSize : 0;
    const uint32_t inFile = static_cast<uint32_t>(std::min<std::size_t>(present, kMaxLogRecords));
    const uint32_t claimed = std::min(std::max(header[0], inFile), logRecordLimit);
    try {
      read = read && ReadRecords(file, claimed, present + 1, records);
    } catch (const std::bad_alloc&) {
      read = false;
    }
  }
  std::fclose(file);
  return read;
}

std::vector<SessionRecord> Storage::LegacyRecords() const {
  std::vector<SessionRecord> records;
  for (const SessionRecord& record : LegacyLogTable) {
    if (record.status != InUse) continue;
    records.push_back(record);
    TerminateName(&records.back());
  }
  records.resize(records.size() + 2);
  return records;
}

// The log becomes the file's records, and the sessions recorded while it was held
// go into its free slots, as the recorder would have put them. One the file holds
// already (recovered from a checkpoint while the file could not be read) is not
// added again.
void Storage::KeepRunSessionsOver(std::vector<SessionRecord> records) {
  std::vector<SessionRecord> run;
  for (const SessionRecord& record : sessionLog.records) {
    if (record.status == InUse && !HoldsSession(records, record)) run.push_back(record);
  }
  sessionLog.records.swap(records);
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  for (const SessionRecord& record : run) {
    const uint32_t slot = FindFreeSlot();
    if (slot == kNoSlot) break;
    sessionLog.records[slot] = record;
  }
  NoteLogChanged();
}

// A held log's file read again; false while it still cannot be.
bool Storage::ReadHeldLogAgain(const char* path) {
  std::vector<SessionRecord> records;
  if (heldFromLegacy_) {
    if (!LoadLegacyLog(LegacyLogPath().c_str())) return false;
    records = LegacyRecords();
    CopyFixedText(settings.formatMarker, kFormatMarker);
  } else if (!ReadLogFile(path, &records)) {
    return false;
  }
  KeepRunSessionsOver(std::move(records));
  holds.Hold(kLogFile, false);
  return true;
}

bool Storage::LoadLog(const char* path) {
  std::vector<SessionRecord> records;
  if (!ReadLogFile(path, &records)) return false;
  sessionLog.records.swap(records);
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
  return true;
}

bool Storage::SaveLog(const char* path) {
  // A log that could not be read is never saved over: it is read first.
  if (holds.Held(kLogFile) && !ReadHeldLogAgain(path)) return false;
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  // Every change of a record moves the generation on: the file already holds it.
  if (savedGeneration_ == logGeneration_ && savedPath_ == path) return true;
  const uint32_t header[2] = {sessionLog.count, static_cast<uint32_t>(sessionLog.count * kRecordSize)};
  const WriteBlock blocks[] = {{header, sizeof header},
                               {sessionLog.records.data(), sessionLog.records.size() * kRecordSize}};
  // Written to its exact length: whole records past the count would load again.
  const bool saved = SaveWholeFile(path, blocks, 2, false);
  savedGeneration_ = saved ? logGeneration_ : 0;
  savedPath_ = saved ? path : "";
  return holds.NoteSaveResult(kLogFile, path, saved, notices);
}

void Storage::KeepSessionsUntilLogRead(const char* path, bool legacy) {
  holds.ReportUnreadable(kLogFile, path, notices);
  heldFromLegacy_ = legacy;
  SetFreshLog();
}

bool Storage::CreateEmptyLog(const char* path) {
  SetFreshLog();
  return SaveLog(path);
}

bool Storage::LoadLegacyLog(const char* path) {
  LegacyLogTable.assign(kLegacyLogSlots, SessionRecord{});
  std::size_t bytesRead = 0;
  return ReadFileStart(path, LegacyLogTable.data(), LegacyLogTable.size() * sizeof(SessionRecord), &bytesRead);
}

bool Storage::ConvertLegacyLog() {
  sessionLog.records = LegacyRecords();
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
  // The converted records stay in memory; a failure was told by the save, and
  // the next session's save writes them.
  (void)SaveLog(LogFilePath().c_str());
  return true;
}

void Storage::AppendBlankRecords() {
  if (sessionLog.records.size() + 2 > logRecordLimit) return;
  try {
    sessionLog.records.resize(sessionLog.records.size() + 2);
  } catch (const std::bad_alloc&) {
    // Out of memory: the log stays as it was and the caller finds no free slot.
  }
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
}

bool Storage::HasNoFreeSlot() const {
  for (const SessionRecord& record : sessionLog.records) {
    if (record.status == Blank || record.status == Deleted) return false;
  }
  return true;
}

bool Storage::IsLogEmpty() const {
  for (const SessionRecord& record : sessionLog.records) {
    if (record.status != Blank && record.status != Deleted) return false;
  }
  return true;
}

uint32_t Storage::FindFreeSlot() {
  if (HasNoFreeSlot()) AppendBlankRecords();
  for (uint32_t index = 0; index < sessionLog.records.size(); ++index) {
    if (sessionLog.records[index].status != InUse) return index;
  }
  return kNoSlot;
}

void Storage::SetRecordDate(uint32_t index, uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year) {
  if (SessionRecord* record = RecordToChange(index)) {
    record->dayOfWeek = dayOfWeek;
    record->month = month;
    record->day = day;
    record->year = year;
  }
}

void Storage::SetRecordLogOn(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second) {
  if (SessionRecord* record = RecordToChange(index)) {
    record->logOnHour = hour;
    record->logOnMinute = minute;
    record->logOnSecond = second;
  }
}

void Storage::SetRecordLogOff(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second) {
  if (SessionRecord* record = RecordToChange(index)) {
    record->logOffHour = hour;
    record->logOffMinute = minute;
    record->logOffSecond = second;
  }
}

void Storage::SetRecordDuration(uint32_t index, int32_t seconds) {
  if (SessionRecord* record = RecordToChange(index)) record->durationSeconds = seconds;
}

void Storage::SetRecordName(uint32_t index, const char* name) {
  if (SessionRecord* record = RecordToChange(index)) CopyFixedText(record->connectionName, name);
}

void Storage::SetRecordStatus(uint32_t index, RecordStatus status) {
  if (SessionRecord* record = RecordToChange(index)) record->status = status;
}

const char* Storage::RecordName(uint32_t index) const {
  if (index >= sessionLog.records.size()) return nullptr;
  const SessionRecord& record = sessionLog.records[index];
  return record.status == InUse ? record.connectionName : nullptr;
}

bool Storage::MarkConnectionDeleted(const char* name) {
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

void Storage::ClearLog() {
  for (SessionRecord& record : sessionLog.records) record.status = Deleted;
  NoteLogChanged();
}
