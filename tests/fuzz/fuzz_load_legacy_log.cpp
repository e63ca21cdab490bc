// LoadLegacyLog and ConvertLegacyLog on any bytes: the table is the file's first
// 384000 bytes, the conversion keeps exactly the records in use, in table order,
// and the current file it writes loads back the same.
#include <cstring>

#include "fuzz_support.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshProgramState();
  const std::string path = WriteInput("Orvabook.ovb", data, size);
  Require(LoadLegacyLog(path.c_str()), "a readable legacy file always loads");

  std::vector<SessionRecord> inUse;
  for (uint32_t slot = 0; slot < kLegacyLogSlots; ++slot) {
    const std::size_t offset = slot * sizeof(SessionRecord);
    SessionRecord want{};
    if (offset < size) {
      std::memcpy(&want, data + offset, std::min(size - offset, sizeof want));
    }
    Require(std::memcmp(&logState.LegacyLogTable[slot], &want, sizeof want) == 0, "the table is the file's start");
    want.connectionName[kRecordNameSize - 1] = '\0';
    if (want.status == InUse) inUse.push_back(want);
  }

  Require(ConvertLegacyLog(), "conversion reports success");
  Require(sessionLog.count == inUse.size() + 2, "the records in use and two Blank ones");
  for (std::size_t i = 0; i < inUse.size(); ++i) {
    Require(SameRecord(sessionLog.records[i], inUse[i]), "records in use keep their bytes and order");
  }
  const std::vector<SessionRecord> converted = sessionLog.records;
  sessionLog = SessionLog{};
  Require(LoadLog(LogFilePath().c_str()), "the converted log loads");
  Require(sessionLog.records.size() == converted.size(), "the converted log keeps its length");
  for (std::size_t i = 0; i < converted.size(); ++i) {
    Require(SameRecord(sessionLog.records[i], converted[i]), "the converted log reloads byte for byte");
  }
  return 0;
}
