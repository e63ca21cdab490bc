// Any loadable log, saved and loaded again, is the same log; recording a session
// into it and saving keeps every record that was there.
#include <cstring>

#include "fuzz_support.h"
#include "monitor/session.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"

namespace {

void RequireSameLog(const std::vector<SessionRecord>& want, const char* what) {
  Require(sessionLog.records.size() == want.size() && sessionLog.count == want.size(), what);
  for (std::size_t i = 0; i < want.size(); ++i) Require(SameRecord(sessionLog.records[i], want[i]), what);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshProgramState();
  const std::string path = WriteInput("Orvabook_.ovb", data, size);
  Require(LoadLog(path.c_str()), "a readable file always loads");
  const std::vector<SessionRecord> loaded = sessionLog.records;

  Require(SaveLog(path.c_str()), "the log saves");
  sessionLog = SessionLog{};
  Require(LoadLog(path.c_str()), "the saved log loads");
  RequireSameLog(loaded, "a saved log loads back the same");

  // A session recovered at start-up, as after a crash.
  Require(RecordInterruptedSession("Fuzz ISP", 10, 0, 0, 10, 3, 0, 180, 1, 1, 7, 2002), "a session is recorded");
  uint32_t slot = kNoSlot;
  for (uint32_t i = 0; i < loaded.size() && slot == kNoSlot; ++i) {
    if (loaded[i].status != InUse) slot = i;
  }
  if (slot == kNoSlot) slot = static_cast<uint32_t>(loaded.size());
  for (std::size_t i = 0; i < loaded.size(); ++i) {
    if (i == slot) continue;
    Require(SameRecord(sessionLog.records[i], loaded[i]), "recording touches no other record");
  }
  const SessionRecord& added = sessionLog.records.at(slot);
  Require(added.status == InUse && added.durationSeconds == 180 && std::strcmp(added.connectionName, "Fuzz ISP") == 0,
          "the session goes to the lowest free record");

  const std::vector<SessionRecord> recorded = sessionLog.records;
  sessionLog = SessionLog{};
  Require(LoadLog(LogFilePath().c_str()), "the log with the new session loads");
  RequireSameLog(recorded, "the saved log holds every record");
  return 0;
}
