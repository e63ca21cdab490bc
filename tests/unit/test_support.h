// Shared helpers of the unit tests: a clock and a dial-up service the test drives,
// and a fixture that gives each test fresh program state in its own folder.
#pragma once
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "monitor/monitor.h"
#include "monitor/monitor_shell.h"
#include "platform/ras_service.h"
#include "platform/system_clock.h"
#include "storage/account_record.h"
#include "storage/billing_period.h"
#include "storage/session_record.h"
#include "storage/storage.h"

class FakeClock : public Clock {
 public:
  LocalTime now{2002, 1, 1, 7, 10, 0, 0};  // Monday 7 January 2002, 10:00:00
  uint32_t tickMs = 5000000;

  LocalTime Now() override { return now; }
  uint32_t TickCount() override { return tickMs; }

  // Moves the tick counter and the clock on together, across midnight, month
  // ends and 29 February.
  void Advance(uint32_t seconds);
};

// Answers like the dial-up service: one listed connection or none.
class ScriptedRas : public RasService {
 public:
  enum class State { None, Dialling, Connected, Disconnected, Vanished, Unavailable };
  State state = State::None;
  std::string name = "Home ISP";
  uintptr_t handle = 0x51;
  int enumCalls = 0;
  int statusCalls = 0;
  std::vector<uintptr_t> queriedHandles;

  void Connect(const std::string& connectionName) {
    name = connectionName;
    ++handle;
    state = State::Connected;
  }

  uint32_t EnumConnections(ras::Connection95* connections, uint32_t* bufferSize,
                           uint32_t* connectionCount) override;
  uint32_t GetConnectStatus(ras::ConnectionHandle handle, ras::ConnectionStatus95* status) override;
};

// A record with the given name and duration, dated day 7 (a Monday) of the month
// and year; names are cut to the record's field.
SessionRecord UsedRecord(const char* name, int32_t seconds, uint32_t month = 1, uint32_t year = 2002,
                         uint8_t status = InUse);
// A session that ended on the date (weekday 1 unless given), from `on` to `off`.
SessionRecord EndedSession(const char* name, CalendarDate ended, TimeOfDay on, TimeOfDay off, int32_t seconds,
                           uint32_t dayOfWeek = 1);
// A scratch folder used as both Windows directory and program folder, all program
// state back to a fresh start, the fake clock and the scripted service in use.
class ProgramStateTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  std::string Path(const char* name) const;
  std::vector<uint8_t> ReadBytes(const std::string& path) const;
  void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) const;
  bool Exists(const std::string& path) const;

  // The 100 ms poll tick, then its notices shown; RunOnline runs it through the
  // given seconds with a checkpoint every three minutes, as the program's timers do.
  void Tick();
  void RunOnline(uint32_t seconds);
  // One of the monitor's timers, then its notices, as the program's timer procedures run them.
  void RunTimer(void (Monitor::*timer)()) { (monitor_.*timer)(), monitor_.ShowPendingNotices(*shell_); }
  // What the shell does with a tick's change of session (its timers).
  virtual void OnSessionChange(SessionChange) {}

  // Appends a record to the in-memory log and returns its index.
  uint32_t AppendToLog(const SessionRecord& record);
  uint32_t LogSession(const char* name, int32_t seconds, uint32_t month = 1, uint32_t year = 2002,
                      uint8_t status = InUse) {
    return AppendToLog(UsedRecord(name, seconds, month, year, status));
  }
  // Fills account entry k as an account the user has configured.
  AccountRecord& ConfigureAccount(int k, const char* name, uint32_t kind, uint32_t hours = 0,
                                  float monthlyCharge = 0.0f, float excessPerMinute = 0.0f, float vatPercent = 0.0f);

  std::string folder_;
  FakeClock clock_;
  ScriptedRas ras_;
  Storage storage_;
  Monitor monitor_{storage_};
  MonitorShell quietShell_;              // shows nothing, asks nothing
  MonitorShell* shell_ = &quietShell_;  // the notices are shown through it
};

// The bytes of records one after another, as the older release's table holds them,
// and of a log file: the header with `count` (and count * 192), then the records.
std::vector<uint8_t> RecordBytes(const std::vector<SessionRecord>& records);
std::vector<uint8_t> LogImage(uint32_t count, const std::vector<SessionRecord>& records);

// A little-endian read from a byte image of a file.
uint32_t U32At(const std::vector<uint8_t>& bytes, std::size_t offset);
