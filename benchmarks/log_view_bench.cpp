// How long one View Log filtering takes on large logs: the filter pass, the list
// lines and the report text together, as every filter change rebuilds them.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "benchmarks/bench_support.h"
#include "logview/log_view_lines.h"
#include "logview/text_report.h"
#include "storage/storage.h"

namespace {

void Listing(benchmark::State& state, const char* connection, const char* month, const char* yearText) {
  Storage store;
  FillLog(store, static_cast<uint32_t>(state.range(0)));
  LogListing listing;
  for (auto _ : state) {
    char year[kFilterYearSize];
    std::snprintf(year, sizeof year, "%s", yearText);
    BuildLogListing(store, connection, month, year, listing);
    benchmark::DoNotOptimize(listing.lines.size());
    benchmark::DoNotOptimize(logViewState.FinishedReport.size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["listed"] = listing.count;
  state.counters["report_bytes"] = static_cast<double>(logViewState.FinishedReport.size());
}

// Worst case: every record is listed.
void BM_ListEverything(benchmark::State& state) { Listing(state, "All Connections", "ALL", "ALL "); }
// The ignoring-case name comparison on every record, a fifth listed.
void BM_ListOneConnection(benchmark::State& state) { Listing(state, "Holiday Card", "ALL", "ALL "); }
// All three filters specific: few records listed, the pass dominates.
void BM_ListConnectionMonthYear(benchmark::State& state) { Listing(state, "Home ISP", "MAR", "2002"); }

void BM_ConnectionNames(benchmark::State& state) {
  Storage store;
  FillLog(store, static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ConnectionNames(store, "All Connections"));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_ListEverything)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListOneConnection)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListConnectionMonthYear)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConnectionNames)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
