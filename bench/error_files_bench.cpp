// Writing error reports: GeneraError calls per second, against a plain
// create-write-close of the same 11-line file (a name of its own each time,
// no counter) in the same run. A report is written to a work file, put on
// disk (fsync) and only then given its name; the fsync's share is measured
// apart: GeneraError with the library's fsync turned into nothing (Linux), and
// the plain write with an fsync of its own. Also 8 processes reporting at once
// in one directory. Runs are interleaved and the fastest of each counts
// (ratio_reporter.h).
//
//   error_files_bench                  all benchmarks
//   error_files_bench --worker N       (internal) one of the 8 processes
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#if defined(__linux__)
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include "korvalen/korvalen.h"
#include "process_support.h"
#include "ratio_reporter.h"

namespace {

std::atomic<bool> syncing{true};

}  // namespace

#if defined(__linux__)
// The library's fsync, taken over by this program so that one run measures
// the reports with and without it, with the library as it ships.
extern "C" __attribute__((visibility("default"))) int fsync(int fd) {
  return syncing ? static_cast<int>(syscall(SYS_fsync, fd)) : 0;
}
#endif

namespace {

namespace fs = std::filesystem;

// Files per run: every variant meets a directory of the same size. Few
// enough that a run of reports waiting for the disk stays short.
constexpr int kCallsPerRun = 300;
constexpr int kProcesses = 8;
constexpr const char* kStartFile = "start.flag";

// A fresh directory, made current for the run and removed after it.
class ScratchDir {
 public:
  ScratchDir() : previous_(fs::current_path()) {
    std::random_device random;
    dir_ = fs::temp_directory_path() / ("korvalen-errors-bench-" + std::to_string(random()));
    fs::create_directories(dir_);
    fs::current_path(dir_);
  }
  ~ScratchDir() {
    fs::current_path(previous_);
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }

 private:
  fs::path previous_;
  fs::path dir_;
};

void Report(int i) {
  GeneraError(i, L"text one", L"text two", L"text three", L"a longer fourth text of the report",
              L"fifth", L"sixth", L"seventh", i, i * 2, i * 3);
}

// The same eleven lines through the library's streams, under a name known in
// advance.
void PlainWrite(int i) {
  wchar_t name[32];
  sPrintf(name, L"%08d.err", i);
  FILE* f = fOpen(name, L"wt");
  if (f == nullptr) std::abort();
  fPrintf(f, L"%d\n", i);
  for (const wchar_t* t : {L"text one", L"text two", L"text three",
                           L"a longer fourth text of the report", L"fifth", L"sixth", L"seventh"}) {
    fPrintf(f, L"\"%s\"\n", t);
  }
  fPrintf(f, L"%d\n%ld\n%d\n", i, static_cast<long>(i * 2), i * 3);
  std::fclose(f);
}

// The same bytes with the C library alone; with `sync`, on disk before the
// file is closed.
template <bool sync>
void StdioWrite(int i) {
  char name[32];
  std::snprintf(name, sizeof name, "%08d.err", i);
  FILE* f = std::fopen(name, "wb");
  if (f == nullptr) std::abort();
  std::fprintf(f,
               "%d\r\n\"text one\"\r\n\"text two\"\r\n\"text three\"\r\n\"a longer fourth text "
               "of the report\"\r\n\"fifth\"\r\n\"sixth\"\r\n\"seventh\"\r\n%d\r\n%d\r\n%d\r\n",
               i, i, i * 2, i * 3);
#if defined(__linux__)
  if (sync && (std::fflush(f) != 0 || fsync(fileno(f)) != 0)) std::abort();
#endif
  std::fclose(f);
}

// Each run writes kCallsPerRun files into a fresh directory.
template <void (*Write)(int), bool sync = true>
void Files(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    {
      ScratchDir dir;
      syncing = sync;
      state.ResumeTiming();
      for (int i = 1; i <= kCallsPerRun; ++i) Write(i);
      state.PauseTiming();
      syncing = true;
    }
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kCallsPerRun);
}

void StdioCreateWriteClose(benchmark::State& state) { Files<StdioWrite<false>>(state); }
void StdioCreateWriteSyncClose(benchmark::State& state) { Files<StdioWrite<true>>(state); }
void PlainCreateWriteClose(benchmark::State& state) { Files<PlainWrite>(state); }
void GeneraErrorAlone(benchmark::State& state) { Files<Report>(state); }
void GeneraErrorWithoutSync(benchmark::State& state) { Files<Report, false>(state); }

// 8 copies of this program, each writing kCallsPerRun reports once the start
// file appears; timed from the start file to the end of the last copy.
void GeneraError8Processes(benchmark::State& state) {
  for (auto _ : state) {
    ScratchDir dir;
    std::chrono::steady_clock::time_point start;
    std::thread starter([&start] {
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      start = std::chrono::steady_clock::now();
      std::fclose(std::fopen(kStartFile, "w"));
    });
    const int ok = korvalen::testing::RunCopiesOfThisProgram(
        {"--worker", std::to_string(kCallsPerRun)}, kProcesses);
    const auto end = std::chrono::steady_clock::now();
    starter.join();
    char last[32];
    std::snprintf(last, sizeof last, "%08d.err", kProcesses * kCallsPerRun);
    if (ok != kProcesses) state.SkipWithError("a worker process failed");
    if (!fs::exists(last)) state.SkipWithError("reports missing");
    state.SetIterationTime(std::chrono::duration<double>(end - start).count());
  }
  state.SetItemsProcessed(state.iterations() * kProcesses * kCallsPerRun);
}

int Worker(int calls) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!fs::exists(kStartFile)) {
    if (std::chrono::steady_clock::now() > deadline) return 1;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  for (int i = 0; i < calls; ++i) Report(i);
  return 0;
}

}  // namespace

BENCHMARK(StdioCreateWriteClose)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime()
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(StdioCreateWriteSyncClose)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime()
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(PlainCreateWriteClose)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime()
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(GeneraErrorWithoutSync)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime()
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(GeneraErrorAlone)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime()
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(GeneraError8Processes)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseManualTime()
    ->ComputeStatistics("min", korvalen::bench::Fastest);

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--worker") == 0) return Worker(std::atoi(argv[2]));
  korvalen::bench::RatioReporter reporter({
      {"GeneraErrorWithoutSync", "StdioCreateWriteClose", " (the publication; target <= 3.0)"},
      {"GeneraErrorAlone", "StdioCreateWriteClose", " (as shipped, with its fsync)"},
      {"StdioCreateWriteSyncClose", "StdioCreateWriteClose", " (an fsync alone)"},
      {"GeneraErrorAlone", "StdioCreateWriteSyncClose", " (both on disk)"},
  });
  return korvalen::bench::RunInterleaved(argc, argv, reporter, 10);
}
