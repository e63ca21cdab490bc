#include "benchmarks/bench_support.h"

#include <cstring>

#include "storage/accounts.h"
#include "storage/session_log.h"
#include "storage/storage.h"

const char* const kBenchNames[5] = {"Home ISP", "home isp", "Work Dial-Up", "Holiday Card", "HOME ISP"};

void FillLog(Storage& store, uint32_t records) {
  store.sessionLog = SessionLog{};
  store.sessionLog.records.resize(records);
  for (uint32_t i = 0; i < records; ++i) {
    SessionRecord& record = store.sessionLog.records[i];
    record.status = (i % 97 == 0) ? Deleted : InUse;
    record.dayOfWeek = i % 7;
    record.month = 1 + i % 12;
    record.day = 1 + i % 28;
    record.year = 1999 + (i / 12) % 13;
    record.logOnHour = i % 24;
    record.logOnMinute = i % 60;
    record.logOnSecond = (i * 7) % 60;
    record.logOffHour = (i + 1) % 24;
    record.logOffMinute = (i * 3) % 60;
    record.logOffSecond = (i * 11) % 60;
    record.durationSeconds = static_cast<int32_t>(60 + i % 7200);
    std::strcpy(record.connectionName, kBenchNames[i % 5]);
  }
  store.sessionLog.count = records;
  store.NoteLogChanged();
}

void UseBenchmarkAccounts(Storage& store) {
  std::memset(store.settings.accounts, 0, sizeof store.settings.accounts);
  AccountRecord& limited = store.settings.accounts[0];
  std::strcpy(limited.connectionName, "Home ISP");
  limited.configured = 1;
  limited.kind = LimitedAccess;
  limited.hours = 10;
  limited.monthlyCharge = 20.0f;
  limited.excessPerMinute = 0.05f;
  limited.vatPercent = 5.0f;
  AccountRecord& card = store.settings.accounts[1];
  std::strcpy(card.connectionName, "Holiday Card");
  card.configured = 1;
  card.kind = PrePaidCard;
  card.hours = 100;
}

ConnectedRas::ConnectedRas(const char* name) : name_(name) {}

uint32_t ConnectedRas::EnumConnections(ras::Connection95* connections, uint32_t*, uint32_t* connectionCount) {
  connections[0].hrasconn = reinterpret_cast<ras::ConnectionHandle>(uintptr_t{0x51});
  std::strncpy(connections[0].szEntryName, name_, ras::kEntryNameLength);
  *connectionCount = 1;
  return 0;
}

uint32_t ConnectedRas::GetConnectStatus(ras::ConnectionHandle, ras::ConnectionStatus95* status) {
  status->rasconnstate = ras::kStateConnected;
  return 0;
}
