// A 50 MB UTF-16 text file (CR LF lines of 10 to 120 characters, Latin,
// accented and Cyrillic) read line by line with CUTF16File::ReadString,
// against a plain fread loop decoding the same units into the same lines in
// the same run. Prints the ratio of the two; the target is 2.0 at most. The
// file is written once per process into the temporary folder and removed at
// exit. Memory must stay flat: each run reports how far the process's peak
// resident size grew while it read the file (rss_growth_kB).
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>

#include "korvalen/korvalen.h"
#include "ratio_reporter.h"

namespace {

constexpr std::size_t kFileBytes = 50u << 20;

class TextFile {
 public:
  TextFile() {
    std::random_device random;
    name_ = (std::filesystem::temp_directory_path() /
             ("korvalen-utf16-bench-" + std::to_string(random()) + ".txt"))
                .string();
    FILE* f = std::fopen(name_.c_str(), "wb");
    if (f == nullptr) std::abort();
    std::mt19937 draw(7);
    const std::u16string alphabet =
        u"abcdefghijklmnopqrstuvwxyz ABCDEF 0123456789 \u00E1\u00F1\u00FC"
        u"\u0416\u0438\u0434\u043A\u043E";
    std::string bytes = "\xFF\xFE";
    std::size_t written = 0;
    while (written < kFileBytes) {
      const int length = 10 + static_cast<int>(draw() % 111);
      for (int i = 0; i < length; ++i) Put(bytes, alphabet[draw() % alphabet.size()]);
      Put(bytes, u'\r');
      Put(bytes, u'\n');
      ++lines_;
      if (bytes.size() >= 65536) {
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        written += bytes.size();
        bytes.clear();
      }
    }
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
    wide_.assign(name_.begin(), name_.end());
  }
  ~TextFile() { std::remove(name_.c_str()); }
  const std::string& name() const { return name_; }
  const std::wstring& wide() const { return wide_; }
  long long lines() const { return lines_; }

 private:
  static void Put(std::string& bytes, char16_t unit) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  std::string name_;
  std::wstring wide_;
  long long lines_ = 0;
};

const TextFile& File() {
  static const TextFile file;
  return file;
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

struct Count {
  long long lines = 0;
  long long chars = 0;
};

Count LibraryLines() {
  Count count;
  CUTF16File file(File().wide().c_str(), CFile::modeRead | CFile::typeBinary);
  CString line;
  while (file.ReadString(line)) {
    ++count.lines;
    count.chars += line.GetLength();
  }
  return count;
}

// fread in 64 KB blocks, each unit decoded (little-endian) and appended to
// the line, a CR LF pair ending it.
Count PlainLines() {
  Count count;
  FILE* f = std::fopen(File().name().c_str(), "rb");
  if (f == nullptr) return count;
  static unsigned char block[65536];
  std::wstring line;
  bool after_cr = false;
  bool mark = true;
  std::size_t n = 0;
  while ((n = std::fread(block, 1, sizeof block, f)) > 0) {
    for (std::size_t i = mark ? 2 : 0; i + 1 < n; i += 2) {
      const wchar_t c = static_cast<wchar_t>(block[i] | (block[i + 1] << 8));
      if (c == L'\n' && after_cr) {
        after_cr = false;
        continue;
      }
      after_cr = c == L'\r';
      if (c == L'\r' || c == L'\n') {
        ++count.lines;
        count.chars += static_cast<long long>(line.size());
        benchmark::DoNotOptimize(line.data());
        line.clear();
      } else {
        line += c;
      }
    }
    mark = false;
  }
  std::fclose(f);
  return count;
}

template <Count (*Read)()>
void Run(benchmark::State& state) {
  const long before = PeakKilobytes();
  Count count;
  for (auto _ : state) {
    count = Read();
    benchmark::DoNotOptimize(count);
  }
  if (count.lines != File().lines()) state.SkipWithError("wrong number of lines");
  state.counters["rss_growth_kB"] = static_cast<double>(PeakKilobytes() - before);
  state.SetBytesProcessed(static_cast<long long>(state.iterations()) *
                          static_cast<long long>(kFileBytes));
}

void ReadString(benchmark::State& state) { Run<LibraryLines>(state); }
void PlainFreadDecode(benchmark::State& state) { Run<PlainLines>(state); }

BENCHMARK(ReadString)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(PlainFreadDecode)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

}  // namespace

int main(int argc, char** argv) {
  File();  // written before any measurement
  const Count library = LibraryLines(), plain = PlainLines();
  if (library.lines != plain.lines || library.chars != plain.chars) {
    std::cerr << "the two readers differ: " << library.lines << " and " << plain.lines
              << " lines\n";
    return 1;
  }
  std::cout << "file: " << (kFileBytes >> 20) << " MB, " << library.lines << " lines, peak "
            << PeakKilobytes() << " kB before measuring\n";
  korvalen::bench::RatioReporter reporter({{"ReadString", "PlainFreadDecode", " (target <= 2.0)"}});
  return korvalen::bench::RunInterleaved(argc, argv, reporter, 9);
}
