// Shared set-up of the benchmarks: a large log, a fixed clock and a dial-up
// service that answers "connected" without any work of its own.
#pragma once
#include <cstdint>

#include "platform/ras_service.h"
#include "platform/system_clock.h"

class Storage;

// Connection names of the benchmark logs, used in turn; the first and fourth
// have accounts in UseBenchmarkAccounts.
extern const char* const kBenchNames[5];

// The storage's log becomes `records` records: names in turn, dates spread
// over 1999 to 2011 and every 97th record Deleted.
void FillLog(Storage& store, uint32_t records);

// "Home ISP": limited access; "Holiday Card": a pre-paid card.
void UseBenchmarkAccounts(Storage& store);

// Always 12 March 2002, 10:00; the tick counter does not move.
class FixedClock : public Clock {
 public:
  LocalTime Now() override { return LocalTime{2002, 3, 2, 12, 10, 0, 0}; }
  uint32_t TickCount() override { return 5000000; }
};

// One connection, always connected.
class ConnectedRas : public RasService {
 public:
  explicit ConnectedRas(const char* name);
  uint32_t EnumConnections(ras::Connection95* connections, uint32_t* bufferSize,
                           uint32_t* connectionCount) override;
  uint32_t GetConnectStatus(ras::ConnectionHandle handle, ras::ConnectionStatus95* status) override;

 private:
  const char* name_;
};
