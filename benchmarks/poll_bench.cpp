// The poll runs ten times a second for as long as the program runs: what it costs,
// and that it allocates nothing in any state of the dial-up service. A poll that
// allocates fails the run (and so the benchmarks' smoke pass in the test run); the
// counting operator new below is this program's own.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "monitor/dial_up_probe.h"
#include "platform/ras_service.h"

namespace {

unsigned long allocations = 0;  // the benchmarks run on one thread
bool counting = false;

void* Allocate(std::size_t size) {
  if (counting) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}

// Every delete frees here: one delete calling another is a mismatched pair to
// GCC's optimiser at -O3, and free() must stay out of its sight of operator new.
[[gnu::noinline]] void Release(void* block) noexcept { std::free(block); }

}  // namespace

void* operator new(std::size_t size) {
  if (void* block = Allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  if (void* block = Allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }

namespace {

// A connection through every state the service reports, one a poll: none,
// dialling, connected, disconnected, vanished (its handle no longer known) and
// the service unavailable; the next connection gets a new handle.
class CyclingRas : public RasService {
 public:
  uint32_t EnumConnections(ras::Connection95* connections, uint32_t*, uint32_t* count) override {
    step_ = (step_ + 1) % 6;
    if (step_ == 5) return 711;
    *count = step_ == 0 || step_ == 4 ? 0 : 1;
    connections[0].hrasconn = reinterpret_cast<ras::ConnectionHandle>(uintptr_t{0x70} + (handle_ += step_ == 1));
    std::memset(connections[0].szEntryName, 'n', ras::kEntryNameLength);  // the longest name
    connections[0].szEntryName[ras::kEntryNameLength] = '\0';
    return 0;
  }
  uint32_t GetConnectStatus(ras::ConnectionHandle, ras::ConnectionStatus95* status) override {
    if (step_ == 4) return ras::kErrorInvalidHandle;  // asked about by its old handle
    status->rasconnstate = step_ == 1 ? 0x0A : step_ == 2 ? ras::kStateConnected : ras::kStateDisconnected;
    return 0;
  }

 private:
  unsigned step_ = 0;
  uintptr_t handle_ = 0;
};

void BM_Poll(benchmark::State& state) {
  CyclingRas ras;
  UseRasService(&ras);
  DialUpProbe probe;
  allocations = 0;
  counting = true;
  for (auto _ : state) {
    for (int64_t i = 0; i < state.range(0); ++i) benchmark::DoNotOptimize(probe.IsConnected());
  }
  counting = false;
  UseRasService(nullptr);
  state.counters["allocations"] = static_cast<double>(allocations);
  if (allocations != 0) state.SkipWithError("the poll allocates");
}

}  // namespace

BENCHMARK(BM_Poll)->Arg(1000)->Unit(benchmark::kMicrosecond);
