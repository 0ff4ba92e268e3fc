// The benchmarks' way of measuring on a machine shared with other work: every
// benchmark runs many times, the runs of all of them shuffled together, and
// the fastest run of each counts (other work only ever adds time). The
// reporter prints the console table, then the ratio of each measured way to
// its baseline.
//
//   RatioReporter reporter({{"ConfigReader", "PlainFgets", " (target <= 2.0)"}});
//   return RunInterleaved(argc, argv, reporter, 20);
#pragma once

#include <benchmark/benchmark.h>

#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace korvalen::bench {

struct Ratio {
  std::string measured;
  std::string baseline;
  std::string note;
};

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  explicit RatioReporter(std::vector<Ratio> ratios) : ratios_(std::move(ratios)) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const bool fastest = run.run_type == Run::RT_Aggregate && run.aggregate_name == "min";
      if ((run.run_type == Run::RT_Iteration || fastest) && !run.error_occurred) {
        times_[run.run_name.function_name] = {run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()};
      }
    }
  }

  void PrintRatios() const {
    for (const Ratio& r : ratios_) {
      const auto measured = times_.find(r.measured);
      const auto baseline = times_.find(r.baseline);
      if (measured == times_.end() || baseline == times_.end()) continue;
      if (baseline->second.real <= 0 || baseline->second.cpu <= 0) continue;
      std::cout << "ratio " << r.measured << " / " << r.baseline << ": "
                << measured->second.real / baseline->second.real << " real, "
                << measured->second.cpu / baseline->second.cpu << " cpu" << r.note << "\n";
    }
  }

 private:
  struct Times {
    double real;
    double cpu;
  };
  std::vector<Ratio> ratios_;
  std::map<std::string, Times> times_;
};

// The fastest of the repetitions, as the "min" aggregate.
inline double Fastest(const std::vector<double>& times) {
  double best = times.empty() ? 0.0 : times.front();
  for (const double t : times) best = t < best ? t : best;
  return best;
}

// Runs every benchmark `repetitions` times, interleaved (unless the command
// line says otherwise), then prints the ratios.
inline int RunInterleaved(int argc, char** argv, RatioReporter& reporter, int repetitions) {
  std::vector<char*> args(argv, argv + argc);
  std::string count = "--benchmark_repetitions=" + std::to_string(repetitions);
  char interleaving[] = "--benchmark_enable_random_interleaving=true";
  char aggregates[] = "--benchmark_report_aggregates_only=true";
  args.insert(args.begin() + 1, {count.data(), interleaving, aggregates});
  argc = static_cast<int>(args.size());
  argv = args.data();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  benchmark::Shutdown();
  return 0;
}

}  // namespace korvalen::bench
