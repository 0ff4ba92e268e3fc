// Reading a settings file of 100 000 records through the config reader (text
// stream, record lines, field readers) against a plain fgets loop over the
// same file, in the same run. Prints the ratio of the two; the target is 2.0
// at most, with no heap allocation per record. Also prints the ratio of a
// floor reader: the same values taken by the least code that can take them,
// which shows how much of the reader's time any reader of these records pays.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <new>
#include <random>
#include <string>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "korvalen/korvalen.h"
#include "ratio_reporter.h"

namespace {

std::atomic<long long> g_allocations{0};

constexpr int kRecords = 100000;

// The settings file, written once per process with CR LF line ends as the
// suite writes it, and removed at exit.
class SettingsFile {
 public:
  SettingsFile() {
    std::random_device random;
    name_ = (std::filesystem::temp_directory_path() /
             ("korvalen-config-bench-" + std::to_string(random()) + ".cfg"))
                .string();
    FILE* f = std::fopen(name_.c_str(), "wb");
    if (f == nullptr) std::abort();
    char line[128];
    for (int i = 0; i < kRecords; ++i) {
      const int n = std::snprintf(line, sizeof line, "A%03d %d %1.3f %s \"text %d\" ;\r\n",
                                  i % 1000, i, i * 0.25, i % 3 == 0 ? "OFF" : "ON", i);
      std::fwrite(line, 1, static_cast<std::size_t>(n), f);
    }
    std::fclose(f);
  }
  ~SettingsFile() { std::remove(name_.c_str()); }
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

const std::string& FileName() {
  static const SettingsFile file;
  return file.name();
}

void ConfigReader(benchmark::State& state) {
  const std::string& name = FileName();
  long long allocations = 0;
  for (auto _ : state) {
    const long long before = g_allocations.load();
    FILE* f = fOpen(name.c_str(), "rt");
    if (f == nullptr) {
      state.SkipWithError("cannot open the settings file");
      break;
    }
    wchar_t line[81];
    wchar_t text[81];
    wchar_t type = L' ';
    int index = 0, cursor = 0, number = 0, on = 0;
    double real = 0;
    long long sum = 0;
    while (!std::feof(f)) {
      LeerLineaDeCfg(f, line, type, index, cursor);
      if (type != L'A') continue;
      LeerUnEntero(line, cursor, number);
      LeerUnReal(line, cursor, real);
      LeerSIoNO(line, cursor, on);
      LeerUnTexto(line, cursor, text);
      sum += index + number + on + static_cast<long long>(real) + text[0];
    }
    std::fclose(f);
    benchmark::DoNotOptimize(sum);
    allocations += g_allocations.load() - before;
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
  state.counters["allocs_per_record"] =
      static_cast<double>(allocations) / static_cast<double>(state.iterations() * kRecords);
}
BENCHMARK(ConfigReader)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

// Counts the lines of the settings file read with std::fgets from the stream
// that open gives.
template <typename Open>
void CountLinesWithFgets(benchmark::State& state, Open open) {
  const std::string& name = FileName();
  for (auto _ : state) {
    FILE* f = open(name);
    if (f == nullptr) {
      state.SkipWithError("cannot open the settings file");
      break;
    }
    char line[1024];
    long long lines = 0;
    while (std::fgets(line, sizeof line, f) != nullptr) ++lines;
    std::fclose(f);
    benchmark::DoNotOptimize(lines);
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}

void PlainFgets(benchmark::State& state) {
  CountLinesWithFgets(state, [](const std::string& name) { return std::fopen(name.c_str(), "r"); });
}
BENCHMARK(PlainFgets)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

// The floor: fgets into bytes, the bytes up to the line end widened (16 at a
// time where the machine has vectors), then the index and the four values read
// by inline loops that trust the line. It does none of what the library must
// do: no cursor is checked against the line's end, no code-page table, no
// 80-character cut, no care for exact decimals, no CR LF stream. Any reader
// that takes these records into wide lines and then reads their fields does
// at least this much.
namespace floor_reader {

// Widens bytes up to the first CR, LF or NUL, at most 80 of them. bytes must
// be readable 96 bytes on, line must hold 96 characters.
int Widen(const char* bytes, wchar_t* line) {
  int n = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; n < 80; n += 16) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + n));
    const __m128i ends =
        _mm_or_si128(_mm_cmpeq_epi8(v, zero), _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('\r')),
                                                           _mm_cmpeq_epi8(v, _mm_set1_epi8('\n'))));
    const __m128i low = _mm_unpacklo_epi8(v, zero);
    const __m128i high = _mm_unpackhi_epi8(v, zero);
    auto* out = reinterpret_cast<__m128i*>(line + n);
    if constexpr (sizeof(wchar_t) == 4) {
      _mm_storeu_si128(out, _mm_unpacklo_epi16(low, zero));
      _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(low, zero));
      _mm_storeu_si128(out + 2, _mm_unpacklo_epi16(high, zero));
      _mm_storeu_si128(out + 3, _mm_unpackhi_epi16(high, zero));
    } else {
      _mm_storeu_si128(out, low);
      _mm_storeu_si128(out + 1, high);
    }
    if (const int mask = _mm_movemask_epi8(ends); mask != 0) {
      n += std::countr_zero(static_cast<unsigned>(mask));
      break;
    }
  }
  if (n > 80) n = 80;
#else
  for (; n < 80 && bytes[n] != 0 && bytes[n] != '\r' && bytes[n] != '\n'; ++n) {
    line[n] = static_cast<unsigned char>(bytes[n]);
  }
#endif
  line[n] = 0;
  return n;
}

const wchar_t* SkipBlanks(const wchar_t* p) {
  while (*p == L' ') ++p;
  return p;
}

unsigned Digit(wchar_t c) { return static_cast<unsigned>(c) - L'0'; }

int Integer(const wchar_t*& p) {
  p = SkipBlanks(p);
  int value = 0;
  for (; Digit(*p) < 10; ++p) value = value * 10 + static_cast<int>(Digit(*p));
  return value;
}

double Real(const wchar_t*& p) {
  p = SkipBlanks(p);
  static constexpr double kScale[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
  long long mantissa = 0;
  int decimals = 0;
  for (; Digit(*p) < 10; ++p) mantissa = mantissa * 10 + Digit(*p);
  if (*p == L'.') {
    for (++p; Digit(*p) < 10; ++p, ++decimals) mantissa = mantissa * 10 + Digit(*p);
  }
  return static_cast<double>(mantissa) / kScale[decimals & 7];
}

int On(const wchar_t*& p) {
  p = SkipBlanks(p);
  const wchar_t* word = p;
  while (*p != L' ' && *p != 0) ++p;
  return p - word == 2 && (word[0] | 0x20) == L'o' && (word[1] | 0x20) == L'n';
}

void Text(const wchar_t*& p, wchar_t* text) {
  while (*p != 0 && *p != L'"') ++p;
  if (*p != 0) ++p;
  while (*p != 0 && *p != L'"') *text++ = *p++;
  *text = 0;
  if (*p != 0) ++p;
}

}  // namespace floor_reader

void FloorReader(benchmark::State& state) {
  const std::string& name = FileName();
  for (auto _ : state) {
    FILE* f = std::fopen(name.c_str(), "r");
    if (f == nullptr) {
      state.SkipWithError("cannot open the settings file");
      break;
    }
    char bytes[1024] = {};
    wchar_t line[96];
    wchar_t text[96];
    long long sum = 0;
    while (std::fgets(bytes, sizeof bytes, f) != nullptr) {
      floor_reader::Widen(bytes, line);
      if (line[0] != L'A') continue;
      const wchar_t* p = line + 1;
      const int index = floor_reader::Integer(p);
      const int number = floor_reader::Integer(p);
      const double real = floor_reader::Real(p);
      const int on = floor_reader::On(p);
      floor_reader::Text(p, text);
      sum += index + number + on + static_cast<long long>(real) + text[0];
    }
    std::fclose(f);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(FloorReader)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

// Where the reader's time goes: the library's text stream alone, and the
// stream with the line conversion, without any field.
void TextStreamFgets(benchmark::State& state) {
  CountLinesWithFgets(state, [](const std::string& name) { return fOpen(name.c_str(), "rt"); });
}
BENCHMARK(TextStreamFgets)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

void RecordLinesOnly(benchmark::State& state) {
  const std::string& name = FileName();
  for (auto _ : state) {
    FILE* f = fOpen(name.c_str(), "rt");
    if (f == nullptr) {
      state.SkipWithError("cannot open the settings file");
      break;
    }
    wchar_t line[81];
    wchar_t type = L' ';
    int index = 0, cursor = 0;
    long long sum = 0;
    while (!std::feof(f)) {
      LeerLineaDeCfg(f, line, type, index, cursor);
      sum += index;
    }
    std::fclose(f);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(RecordLinesOnly)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

}  // namespace

// Counts every allocation of the process, the library's included. The
// standard operator delete frees with std::free, which matches.
void* operator new(std::size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}

// Every benchmark runs 20 times, the runs of all of them shuffled together,
// and the ratios are taken from the fastest runs.
int main(int argc, char** argv) {
  FileName();  // written before any measurement
  korvalen::bench::RatioReporter reporter(
      {{"ConfigReader", "PlainFgets", " (target <= 2.0)"},
       {"FloorReader", "PlainFgets", " (the least any reader of these records pays)"}});
  return korvalen::bench::RunInterleaved(argc, argv, reporter, 20);
}
