// What the status text and the main dialog's figures cost as the log grows: the
// cached figures (what the program uses) against the straightforward walk of the
// whole log per figure, in the same run. bench_main.cpp prints the ratio.
#include <benchmark/benchmark.h>

#include <cstring>

#include "app/status_text.h"
#include "benchmarks/bench_support.h"
#include "storage/session_log.h"
#include "storage/storage.h"
#include "storage/usage_cache.h"

namespace {

// On-line with "Home ISP" (limited access: the refresh asks for its kind and its
// seconds this month), the previous session of the same connection.
class OnLineProgram {
 public:
  explicit OnLineProgram(uint32_t records) : ras_("Home ISP") {
    UseClock(&clock_);
    UseRasService(&ras_);
    FillLog(store, records);
    UseBenchmarkAccounts(store);
    store.Cache().Clear();
    std::strcpy(store.settings.previousSession.connectionName, "Home ISP");
    store.settings.previousSessionValid = 1;
  }
  ~OnLineProgram() {
    UseClock(nullptr);
    UseRasService(nullptr);
  }

  // What the monitor's poll tick gives the status text: on-line for a while.
  const StatusInputs inputs{.connected = true, .connectionName = "Home ISP", .elapsedSeconds = 1234};
  Storage store;

 private:
  FixedClock clock_;
  ConnectedRas ras_;
};

// One RefreshStatusText as the main window's timers run it (about twelve a second).
void BM_StatusRefresh(benchmark::State& state, const UsageQueries* usage) {
  OnLineProgram program(static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) {
    RefreshStatusTextWith(program.store, program.inputs, *usage);
    benchmark::DoNotOptimize(statusState.statusText[0]);
  }
  if (std::strstr(statusState.statusText, "Time Consumed this month") == nullptr) state.SkipWithError("not the on-line text");
  state.counters["records"] = static_cast<double>(state.range(0));
}

// The main dialog's previous-session figures (kind, month and total hours).
void BM_PreviousSessionFigures(benchmark::State& state, const UsageQueries* usage) {
  OnLineProgram program(static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(PreviousSessionLinesWith(program.store, *usage));
  state.counters["records"] = static_cast<double>(state.range(0));
}

// The first refresh after the log changed (a session recorded): the cache walks
// the log once for the connection.
void BM_StatusRefreshAfterLogChange(benchmark::State& state) {
  OnLineProgram program(static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) {
    program.store.NoteLogChanged();
    RefreshStatusTextWith(program.store, program.inputs, kCachedUsage);
    benchmark::DoNotOptimize(statusState.statusText[0]);
  }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
}

BENCHMARK_CAPTURE(BM_StatusRefresh, fresh, &kFreshUsage)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_StatusRefresh, cached, &kCachedUsage)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_PreviousSessionFigures, fresh, &kFreshUsage)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_PreviousSessionFigures, cached, &kCachedUsage)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StatusRefreshAfterLogChange)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

}  // namespace
