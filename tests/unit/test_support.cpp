#include "test_support.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "app/status_text.h"
#include "logview/logview_state.h"
#include "monitor/monitor_state.h"
#include "platform/platform_state.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/startup.h"
#include "storage/settings.h"
#include "storage/usage_cache.h"

namespace fs = std::filesystem;

void FakeClock::Advance(uint32_t seconds) {
  tickMs += seconds * 1000u;
  static const uint32_t kMonthDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  uint32_t total = now.hour * 3600 + now.minute * 60 + now.second + seconds;
  for (; total >= 86400; total -= 86400) {
    now.dayOfWeek = (now.dayOfWeek + 1) % 7;
    const bool leap = now.year % 4 == 0 && (now.year % 100 != 0 || now.year % 400 == 0);
    if (++now.day <= kMonthDays[now.month - 1] + (now.month == 2 && leap ? 1u : 0u)) continue;
    now.day = 1;
    if (++now.month > 12) now.month = 1, ++now.year;
  }
  now.hour = total / 3600;
  now.minute = total / 60 % 60;
  now.second = total % 60;
}

uint32_t ScriptedRas::EnumConnections(ras::Connection95* connections, uint32_t* bufferSize,
                                      uint32_t* connectionCount) {
  ++enumCalls;
  lastEnumBufferSize = *bufferSize;
  lastEntrySize = connections[0].dwSize;
  if (state == State::Unavailable) return 711;
  if (state == State::None || state == State::Vanished) {
    *connectionCount = 0;  // entry 0 is left as it was, as the service does
    return 0;
  }
  connections[0].hrasconn = reinterpret_cast<ras::ConnectionHandle>(handle);
  std::memset(connections[0].szEntryName, 0, sizeof connections[0].szEntryName);
  std::strncpy(connections[0].szEntryName, name.c_str(), ras::kEntryNameLength);
  *connectionCount = 1;
  return 0;
}

uint32_t ScriptedRas::GetConnectStatus(ras::ConnectionHandle queried, ras::ConnectionStatus95* status) {
  ++statusCalls;
  queriedHandles.push_back(reinterpret_cast<uintptr_t>(queried));
  lastStatusSize = status->dwSize;
  const bool listed = state == State::Connected || state == State::Disconnected || state == State::Dialling;
  if (!listed || reinterpret_cast<uintptr_t>(queried) != handle) return ras::kErrorInvalidHandle;
  status->rasconnstate = state == State::Connected      ? ras::kStateConnected
                         : state == State::Disconnected ? ras::kStateDisconnected
                                                        : 0x0A;  // authenticating
  return 0;
}

void ProgramStateTest::SetUp() {
  static int serial = 0;
  static const std::string run = std::to_string(std::random_device{}());  // apart from other runs at once
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = "orvalen-test-" + run + "-" + std::to_string(serial++) + "-" + info->name();
  folder_ = (fs::temp_directory_path() / name).string();
  fs::remove_all(folder_);
  fs::create_directories(folder_);
  SetWindowsDirectory(folder_);
  SetProgramFolder(folder_);
  ResetPlatformState();
  ResetStorageState();
  ResetMonitorState();
  ResetLogViewState();
  ResetStatusState();
  UseClock(&clock_);
  UseRasService(&ras_);
}

void ProgramStateTest::TearDown() {
  ResetPlatformState();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

std::string ProgramStateTest::Path(const char* name) const { return JoinPath(folder_, name); }

std::vector<uint8_t> ProgramStateTest::ReadBytes(const std::string& path) const {
  std::ifstream file(path, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void ProgramStateTest::WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) const {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void ProgramStateTest::Tick() {
  OnSessionChange(monitor_.OnPollTick());
  monitor_.ShowPendingNotices(*shell_);  // as the shell does once the step has returned
}

void ProgramStateTest::RunOnline(uint32_t seconds) {
  for (uint32_t elapsed = 1; elapsed <= seconds; ++elapsed) {
    clock_.Advance(1);
    Tick();
    if (elapsed % 180 == 0) monitor_.OnCheckpointTimer();
  }
}

bool ProgramStateTest::Exists(const std::string& path) const { return fs::exists(path); }

std::vector<uint8_t> RecordBytes(const std::vector<SessionRecord>& records) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(records.data());
  return std::vector<uint8_t>(bytes, bytes + records.size() * sizeof(SessionRecord));
}

std::vector<uint8_t> LogImage(uint32_t count, const std::vector<SessionRecord>& records) {
  const uint32_t header[2] = {count, count * 192u};
  std::vector<uint8_t> bytes(reinterpret_cast<const uint8_t*>(header), reinterpret_cast<const uint8_t*>(header + 2));
  const std::vector<uint8_t> body = RecordBytes(records);
  bytes.insert(bytes.end(), body.begin(), body.end());
  return bytes;
}

uint32_t U32At(const std::vector<uint8_t>& bytes, std::size_t offset) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8) | bytes.at(offset + static_cast<std::size_t>(i));
  return value;
}

SessionRecord UsedRecord(const char* name, int32_t seconds, uint32_t month, uint32_t year, uint8_t status) {
  SessionRecord record{};
  record.status = status;
  record.dayOfWeek = 1;
  record.month = month;
  record.day = 7;
  record.year = year;
  record.durationSeconds = seconds;
  std::strncpy(record.connectionName, name, kRecordNameSize - 1);
  return record;
}

uint32_t AppendToLog(const SessionRecord& record) {
  sessionLog.records.push_back(record);
  sessionLog.count = static_cast<uint32_t>(sessionLog.records.size());
  NoteLogChanged();
  return sessionLog.count - 1;
}

AccountRecord& ConfigureAccount(int k, const char* name, uint32_t kind, uint32_t hours, float monthlyCharge,
                                float excessPerMinute, float vatPercent) {
  AccountRecord& account = settings.accounts[k];
  std::strncpy(account.connectionName, name, kAccountNameSize - 1);
  account.configured = 1;
  account.kind = kind;
  account.hours = hours;
  account.monthlyCharge = monthlyCharge;
  account.excessPerMinute = excessPerMinute;
  account.vatPercent = vatPercent;
  return account;
}
