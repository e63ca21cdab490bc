// The benchmarks' entry point: Google Benchmark's usual console output, then a
// table that puts each cached figure beside the straightforward walk it replaces,
// measured in the same run: "<name>/fresh/N" against "<name>/cached/N".
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  bool Failed() const { return failed_; }

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      failed_ = failed_ || run.error_occurred;
      if (run.error_occurred || run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
      const std::string name = run.benchmark_name();
      for (const char* family : {"/fresh/", "/cached/"}) {
        const std::size_t at = name.find(family);
        if (at == std::string::npos) continue;
        const std::string key = name.substr(0, at) + " " + name.substr(at + std::string(family).size());
        // CPU time: the machine may be shared, and the work is all on this thread.
        const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
        (family[1] == 'f' ? times_[key].first : times_[key].second) = seconds;
      }
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    if (times_.empty()) return;
    std::printf("\n%-36s %14s %14s %12s   %s\n", "cached vs straightforward (CPU)", "fresh (us)", "cached (us)",
                "ratio", "share of a core at 12.1 refreshes/s");
    for (const auto& [key, pair] : times_) {
      const double fresh = pair.first, cached = pair.second;
      if (fresh <= 0.0 || cached <= 0.0) continue;
      std::printf("%-36s %14.3f %14.3f %11.0fx", key.c_str(), fresh * 1e6, cached * 1e6, fresh / cached);
      // The status text is rebuilt 12.1 times a second (timers of 100, 500 and
      // 10000 ms): the share of one core either way at that rate.
      if (key.find("StatusRefresh") != std::string::npos) {
        std::printf("   fresh %.3f%%, cached %.5f%%", fresh * 12.1 * 100.0, cached * 12.1 * 100.0);
      }
      std::printf("\n");
    }
  }

 private:
  std::map<std::string, std::pair<double, double>> times_;  // fresh, cached seconds per call
  bool failed_ = false;  // a benchmark stopped with an error (the poll allocated)
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return reporter.Failed() ? 1 : 0;
}
