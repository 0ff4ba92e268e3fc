// Loading a language library of 4 000 strings and reading every one of them
// through LoadStr, against reading the same file whole with one fread and
// summing its bytes, in the same run; the target is 3.0 at most.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "korvalen/korvalen.h"
#include "ratio_reporter.h"

namespace {

constexpr unsigned kFirst = 20000;
constexpr unsigned kStrings = 4000;

// The library copied, as the English one, into a directory of its own.
class LibraryDirectory {
 public:
  LibraryDirectory() {
    std::random_device random;
    dir_ = std::filesystem::temp_directory_path() /
           ("korvalen-language-bench-" + std::to_string(random()));
    std::filesystem::create_directories(dir_);
    std::filesystem::copy_file(KORVALEN_BENCH_LIBRARY, dir_ / "UKVORTAN.DLL");
    std::filesystem::current_path(dir_);
  }
  ~LibraryDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(std::filesystem::temp_directory_path(), ignored);
    std::filesystem::remove_all(dir_, ignored);
  }

 private:
  std::filesystem::path dir_;
};

void Library(benchmark::State& state) {
  for (auto _ : state) {
    HMODULE module = CargaRecursosDeIdioma(3);
    if (module == nullptr) state.SkipWithError("the library does not load");
    long long characters = 0;
    wchar_t text[1024];
    for (unsigned id = kFirst; id < kFirst + kStrings; ++id) {
      if (LoadStr(id, text) == 0) state.SkipWithError("a string is missing");
      characters += static_cast<long long>(std::char_traits<wchar_t>::length(text));
    }
    LiberaRecursosDeIdioma(module);
    benchmark::DoNotOptimize(characters);
  }
}
BENCHMARK(Library)
    ->Unit(benchmark::kMicrosecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

void WholeFile(benchmark::State& state) {
  for (auto _ : state) {
    FILE* f = std::fopen("UKVORTAN.DLL", "rb");
    if (f == nullptr) state.SkipWithError("the library does not open");
    std::fseek(f, 0, SEEK_END);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(std::ftell(f)));
    std::rewind(f);
    const std::size_t n = std::fread(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
    unsigned long long sum = 0;
    for (std::size_t i = 0; i < n; ++i) sum += bytes[i];
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(WholeFile)
    ->Unit(benchmark::kMicrosecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

}  // namespace

int main(int argc, char** argv) {
  const LibraryDirectory directory;
  korvalen::bench::RatioReporter reporter({{"Library", "WholeFile", " (target <= 3.0)"}});
  return korvalen::bench::RunInterleaved(argc, argv, reporter, 15);
}
