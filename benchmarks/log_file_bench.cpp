// Loading and saving the whole log file, as the program does at start-up and
// after every recorded session or deletion, in a scratch folder.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include <unistd.h>

#include "benchmarks/bench_support.h"
#include "storage/storage.h"

namespace {

namespace fs = std::filesystem;

class ScratchLog {
 public:
  ScratchLog() {
    folder_ = fs::temp_directory_path() / ("orvalen-bench-" + std::to_string(getpid()));
    fs::create_directories(folder_);
    path_ = (folder_ / "Orvabook_.ovb").string();
  }
  ~ScratchLog() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  const char* Path() const { return path_.c_str(); }

 private:
  fs::path folder_;
  std::string path_;
};

void BM_SaveLog(benchmark::State& state) {
  ScratchLog scratch;
  Storage store;
  FillLog(store, static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) {
    store.NoteLogChanged();  // an unchanged log would write nothing
    if (!store.SaveLog(scratch.Path())) state.SkipWithError("SaveLog failed");
  }
  state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<int64_t>(sizeof(SessionRecord)));
}

void BM_LoadLog(benchmark::State& state) {
  ScratchLog scratch;
  Storage store;
  FillLog(store, static_cast<uint32_t>(state.range(0)));
  if (!store.SaveLog(scratch.Path())) state.SkipWithError("SaveLog failed");
  for (auto _ : state) {
    if (!store.LoadLog(scratch.Path())) state.SkipWithError("LoadLog failed");
  }
  if (store.sessionLog.count != state.range(0)) state.SkipWithError("not every record loaded");
  state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<int64_t>(sizeof(SessionRecord)));
}

// 1000 only for the quick smoke run; the figures are at 100k and 1M.
BENCHMARK(BM_SaveLog)->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadLog)->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
