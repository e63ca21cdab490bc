#include "fuzz_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "logview/text_report.h"
#include "monitor/monitor_state.h"
#include "platform/binary_file.h"
#include "platform/program_paths.h"
#include "platform/system_clock.h"

namespace {

// Monday 7 January 2002, 10:00:00; inputs must not behave differently by the hour.
class FixedClock : public Clock {
 public:
  LocalTime Now() override { return {2002, 1, 1, 7, 10, 0, 0}; }
  uint32_t TickCount() override { return 5000000; }
};

// In memory when it can be (ext4 flushes a truncated and rewritten file, which
// costs milliseconds an input); never destroyed, as the exit handler needs it.
const std::string& ScratchFolder() {
  static const std::string* folder = [] {
    namespace fs = std::filesystem;
    const fs::path base = fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    auto* name = new std::string((base / ("orvalen-fuzz-" + std::to_string(getpid()))).string());
    fs::create_directories(*name);
    std::atexit([] { std::filesystem::remove_all(ScratchFolder()); });
    return name;
  }();
  return *folder;
}

}  // namespace

void FreshProgramState() {
  static FixedClock clock;
  UseClock(&clock);
  SetWindowsDirectory(ScratchFolder());
  SetProgramFolder(ScratchFolder());
  ResetMonitorState();
  ResetLogViewState();
  platformState.fileCalls = FileCalls{};
}

std::string WriteInput(const char* name, const uint8_t* data, std::size_t size) {
  const std::string path = JoinPath(ScratchFolder(), name);
  std::FILE* file = std::fopen(path.c_str(), "wb");
  Require(file != nullptr && (size == 0 || std::fwrite(data, 1, size, file) == size), "the input is written whole");
  std::fclose(file);
  return path;
}

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "property broken: %s\n", what);
  std::abort();
}

SessionRecord ExpectedRecord(const uint8_t* bytes, std::size_t available) {
  SessionRecord record{};
  std::memcpy(&record, bytes, available < sizeof record ? available : sizeof record);
  record.connectionName[kRecordNameSize - 1] = '\0';
  return record;
}

bool SameRecord(const SessionRecord& a, const SessionRecord& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
