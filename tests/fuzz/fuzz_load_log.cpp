// LoadLog on any bytes: it loads, keeps every record that is in the file byte for
// byte (names ended inside their record), pads a short tail with Blank records
// only within reason, and leaves a log that can take a new session.
#include <algorithm>
#include <cstring>

#include "fuzz_support.h"
#include "storage/session_log.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshProgramState();
  const std::string path = WriteInput("Orvabook_.ovb", data, size);
  Require(LoadLog(path.c_str()), "a readable file always loads");
  Require(sessionLog.count == sessionLog.records.size(), "the count follows the array");

  if (size < 8) {
    Require(sessionLog.count == 2, "no complete header loads as a fresh log");
  } else {
    uint32_t claimed = 0;
    std::memcpy(&claimed, data, sizeof claimed);
    const std::size_t recordBytes = size - 8;
    const std::size_t present = (recordBytes + sizeof(SessionRecord) - 1) / sizeof(SessionRecord);
    // A smaller count never hides a whole record of the file.
    std::size_t expected = std::max<std::size_t>(claimed, recordBytes / sizeof(SessionRecord));
    if (expected > present && expected - present > kMissingRecordsPadded) expected = present;
    Require(sessionLog.count == expected, "the count is the header's, or the records present");
    for (std::size_t i = 0; i < sessionLog.records.size(); ++i) {
      const std::size_t offset = i * sizeof(SessionRecord);
      const SessionRecord want =
          offset < recordBytes ? ExpectedRecord(data + 8 + offset, recordBytes - offset) : SessionRecord{};
      Require(SameRecord(sessionLog.records[i], want), "each record is the file's");
    }
  }

  const bool full = HasNoFreeSlot();
  const std::size_t before = sessionLog.records.size();
  const uint32_t slot = FindFreeSlot();
  Require(slot != kNoSlot, "a loaded log always has room for a session");
  Require(slot < sessionLog.records.size() && sessionLog.records[slot].status != InUse,
          "the free slot is a record not in use");
  Require(sessionLog.records.size() == before + (full ? 2 : 0), "the log grows by two only when full");
  return 0;
}
