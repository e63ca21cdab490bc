// How long View Log's export takes on large logs: the filter pass, the CSV text
// and, for the sessions, the safe save of the file (the goal: 100,000 sessions
// under a second).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "benchmarks/bench_support.h"
#include "logview/csv_export.h"
#include "logview/log_view_lines.h"
#include "storage/storage.h"

namespace {

std::vector<uint32_t> Everything(const Storage& store) {
  char year[kFilterYearSize] = "ALL ";
  return FilteredRecordIndexes(store, "All Connections", "ALL", year);
}

void BM_ExportSessionsToFile(benchmark::State& state) {
  Storage store;
  FillLog(store, static_cast<uint32_t>(state.range(0)));
  UseBenchmarkAccounts(store);
  store.settings.accounts[0].periodStartDay = 14;  // a billing period on every "Home ISP" record
  const std::string path = "orvalen-bench-export.csv";
  std::size_t bytes = 0;
  for (auto _ : state) {
    const std::string text = SessionsCsv(store, Everything(store), CsvFormat{});
    bytes = text.size();
    if (!WriteExportFile(path.c_str(), text)) state.SkipWithError("the file could not be written");
  }
  std::remove(path.c_str());
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["file_bytes"] = static_cast<double>(bytes);
}

void BM_ExportSummary(benchmark::State& state) {
  Storage store;
  FillLog(store, static_cast<uint32_t>(state.range(0)));
  UseBenchmarkAccounts(store);
  for (auto _ : state) benchmark::DoNotOptimize(PeriodSummaryCsv(store, Everything(store), CsvFormat{}).size());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_ExportSessionsToFile)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExportSummary)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
