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
#include "storage/billing_period.h"
#include "storage/session_log.h"
#include "storage/startup.h"
#include "storage/settings.h"
#include "storage/usage_cache.h"

namespace fs = std::filesystem;

void FakeClock::Advance(uint32_t seconds) {
  tickMs += seconds * 1000u;
  const uint32_t total = now.hour * 3600 + now.minute * 60 + now.second + seconds, days = total / 86400;
  const CalendarDate date = DateOfDayNumber(DayNumber(CalendarDate{now.year, now.month, now.day}) + days);
  now = {date.year, date.month, (now.dayOfWeek + days) % 7, date.day, total % 86400 / 3600, total / 60 % 60, total % 60};
}

uint32_t ScriptedRas::EnumConnections(ras::Connection95* connections, uint32_t* /*bufferSize*/,
                                      uint32_t* connectionCount) {
  ++enumCalls;
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
  return bytes.at(offset) | bytes.at(offset + 1) << 8 | bytes.at(offset + 2) << 16 | uint32_t{bytes.at(offset + 3)} << 24;
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

SessionRecord EndedSession(const char* name, CalendarDate ended, TimeOfDay on, TimeOfDay off, int32_t seconds,
                           uint32_t dayOfWeek) {
  SessionRecord record = UsedRecord(name, seconds, ended.month, ended.year);
  record.dayOfWeek = dayOfWeek;
  record.day = ended.day;
  record.logOnHour = on.hour, record.logOnMinute = on.minute, record.logOnSecond = on.second;
  record.logOffHour = off.hour, record.logOffMinute = off.minute, record.logOffSecond = off.second;
  return record;
}

uint32_t ProgramStateTest::AppendToLog(const SessionRecord& record) {
  storage_.sessionLog.records.push_back(record);
  storage_.sessionLog.count = static_cast<uint32_t>(storage_.sessionLog.records.size());
  storage_.NoteLogChanged();
  return storage_.sessionLog.count - 1;
}

AccountRecord& ProgramStateTest::ConfigureAccount(int k, const char* name, uint32_t kind, uint32_t hours,
                                                  float monthlyCharge, float excessPerMinute, float vatPercent) {
  AccountRecord& account = storage_.settings.accounts[k];
  std::strncpy(account.connectionName, name, kAccountNameSize - 1);
  account.configured = 1;
  account.kind = kind;
  account.hours = hours;
  account.monthlyCharge = monthlyCharge;
  account.excessPerMinute = excessPerMinute;
  account.vatPercent = vatPercent;
  return account;
}
