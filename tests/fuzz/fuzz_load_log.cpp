// LoadLog on any bytes: it loads, keeps every record that is in the file byte for
// byte (names ended inside their record), pads a short tail with Blank records
// only within reason, and leaves a log that can take a new session. Saved and
// loaded again it is the same log; recording a session into it and saving keeps
// every record that was there.
#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz_support.h"
#include "monitor/monitor.h"
#include "platform/program_paths.h"
#include "storage/storage.h"

namespace {

void RequireSameLog(const Storage& store, const std::vector<SessionRecord>& want, const char* what) {
  Require(store.sessionLog.records.size() == want.size() && store.sessionLog.count == want.size(), what);
  for (std::size_t i = 0; i < want.size(); ++i) Require(SameRecord(store.sessionLog.records[i], want[i]), what);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshProgramState();
  Storage store;
  const std::string path = WriteInput("Orvabook_.ovb", data, size);
  Require(store.LoadLog(path.c_str()), "a readable file always loads");
  Require(store.sessionLog.count == store.sessionLog.records.size(), "the count follows the array");

  if (size < 8) {
    Require(store.sessionLog.count == 2, "no complete header loads as a fresh log");
  } else {
    uint32_t claimed = 0;
    std::memcpy(&claimed, data, sizeof claimed);
    const std::size_t recordBytes = size - 8;
    const std::size_t present = (recordBytes + sizeof(SessionRecord) - 1) / sizeof(SessionRecord);
    // A smaller count never hides a whole record of the file.
    std::size_t expected = std::max<std::size_t>(claimed, recordBytes / sizeof(SessionRecord));
    if (expected > present && expected - present > kMissingRecordsPadded) expected = present;
    Require(store.sessionLog.count == expected, "the count is the header's, or the records present");
    for (std::size_t i = 0; i < store.sessionLog.records.size(); ++i) {
      const std::size_t offset = i * sizeof(SessionRecord);
      const SessionRecord want =
          offset < recordBytes ? ExpectedRecord(data + 8 + offset, recordBytes - offset) : SessionRecord{};
      Require(SameRecord(store.sessionLog.records[i], want), "each record is the file's");
    }
  }
  const std::vector<SessionRecord> loaded = store.sessionLog.records;

  const bool full = store.HasNoFreeSlot();
  const uint32_t slot = store.FindFreeSlot();
  Require(slot != kNoSlot, "a loaded log always has room for a session");
  Require(slot < store.sessionLog.records.size() && store.sessionLog.records[slot].status != InUse,
          "the free slot is a record not in use");
  Require(store.sessionLog.records.size() == loaded.size() + (full ? 2 : 0), "the log grows by two only when full");

  store.sessionLog.records = loaded;
  store.sessionLog.count = static_cast<uint32_t>(loaded.size());
  Require(store.SaveLog(path.c_str()), "the log saves");
  store.sessionLog = SessionLog{};
  Require(store.LoadLog(path.c_str()), "the saved log loads");
  RequireSameLog(store, loaded, "a saved log loads back the same");

  // A session recovered at start-up, as after a crash, goes to that free record.
  const InterruptedSession session{.name = "Fuzz ISP", .logOn = {10, 0, 0}, .logOff = {10, 3, 0}, .duration = 180,
                                   .dayOfWeek = 1, .month = 1, .day = 7, .year = 2002};
  Require(Monitor(store).RecordInterruptedSession(session) != RecordOutcome::kNoRoom, "a session is recorded");
  for (std::size_t i = 0; i < loaded.size(); ++i) {
    if (i != slot) Require(SameRecord(store.sessionLog.records[i], loaded[i]), "recording touches no other record");
  }
  const SessionRecord& added = store.sessionLog.records.at(slot);
  Require(added.status == InUse && added.durationSeconds == 180 && std::strcmp(added.connectionName, "Fuzz ISP") == 0,
          "the session goes to the lowest free record");
  const std::vector<SessionRecord> recorded = store.sessionLog.records;
  store.sessionLog = SessionLog{};
  Require(store.LoadLog(LogFilePath().c_str()), "the log with the new session loads");
  RequireSameLog(store, recorded, "the saved log holds every record");
  return 0;
}
