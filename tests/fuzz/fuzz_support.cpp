#include "fuzz_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "logview/text_report.h"
#include "monitor/alarm.h"
#include "monitor/session.h"
#include "platform/system_clock.h"
#include "monitor/unconfigured_connections.h"
#include "platform/binary_file.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/startup.h"

namespace {

// Monday 7 January 2002, 10:00:00; inputs must not behave differently by the hour.
class FixedClock : public Clock {
 public:
  LocalTime Now() override { return {2002, 1, 1, 7, 10, 0, 0}; }
  uint32_t TickCount() override { return 5000000; }
};

// Never destroyed: the exit handler that removes the folder still needs its name.
const std::string& ScratchFolder() {
  static const std::string* folder = [] {
    // Memory-backed when there is such a folder: ext4 flushes a file that is
    // truncated and rewritten, which costs milliseconds an input.
    std::error_code error;
    const std::filesystem::path base = std::filesystem::is_directory("/dev/shm", error)
                                           ? std::filesystem::path("/dev/shm")
                                           : std::filesystem::temp_directory_path();
    const std::filesystem::path path = base / ("orvalen-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(path);
    auto* name = new std::string(path.string());
    std::atexit([] {
      std::error_code ignored;
      std::filesystem::remove_all(ScratchFolder(), ignored);
    });
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
  std::memset(&settings, 0, sizeof settings);
  sessionLog = SessionLog{};
  logState.LogRecordLimit = kMaxLogRecords;
  ResetSessionState();
  sessionHooks = SessionHooks{};
  installHooks = InstallHooks{};
  startupHooks = StartupHooks{};
  unconfiguredHooks = UnconfiguredHooks{};
  alarmHooks = AlarmHooks{};
  ResetLogViewState();
  HoldFile(kConfigurationFile, false);
  HoldFile(kLogFile, false);
  platformState.fileWriteCutoff = nullptr;
}

std::string ScratchPath(const char* name) { return JoinPath(ScratchFolder(), name); }

std::string WriteInput(const char* name, const uint8_t* data, std::size_t size) {
  const std::string path = ScratchPath(name);
  std::FILE* file = std::fopen(path.c_str(), "wb");
  Require(file != nullptr, "the scratch file can be written");
  if (size > 0) Require(std::fwrite(data, 1, size, file) == size, "the input is written whole");
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

bool SameRecord(const SessionRecord& a, const SessionRecord& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}
