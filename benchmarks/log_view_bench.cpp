// How long one View Log filtering takes on large logs: the filter pass, the list
// lines and the report text together, as every filter change rebuilds them.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>

#include "logview/log_view_lines.h"
#include "logview/text_report.h"
#include "storage/session_log.h"

namespace {

const char* const kNames[] = {"Home ISP", "home isp", "Work Dial-Up", "Holiday Card", "HOME ISP"};

void FillLog(uint32_t records) {
  sessionLog = SessionLog{};
  sessionLog.records.resize(records);
  for (uint32_t i = 0; i < records; ++i) {
    SessionRecord& record = sessionLog.records[i];
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
    std::strcpy(record.connectionName, kNames[i % 5]);
  }
  sessionLog.count = records;
}

void Listing(benchmark::State& state, const char* connection, const char* month, const char* yearText) {
  FillLog(static_cast<uint32_t>(state.range(0)));
  LogListing listing;
  for (auto _ : state) {
    char year[kFilterYearSize];
    std::snprintf(year, sizeof year, "%s", yearText);
    BuildLogListing(connection, month, year, listing);
    benchmark::DoNotOptimize(listing.lines.size());
    benchmark::DoNotOptimize(FinishedReport.size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["listed"] = listing.count;
  state.counters["report_bytes"] = static_cast<double>(FinishedReport.size());
}

// Worst case: every record is listed.
void BM_ListEverything(benchmark::State& state) { Listing(state, "All Connections", "ALL", "ALL "); }
// The ignoring-case name comparison on every record, a fifth listed.
void BM_ListOneConnection(benchmark::State& state) { Listing(state, "Holiday Card", "ALL", "ALL "); }
// All three filters specific: few records listed, the pass dominates.
void BM_ListConnectionMonthYear(benchmark::State& state) { Listing(state, "Home ISP", "MAR", "2002"); }

void BM_ConnectionNames(benchmark::State& state) {
  FillLog(static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ConnectionNames("All Connections"));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_ListEverything)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListOneConnection)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListConnectionMonthYear)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConnectionNames)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
