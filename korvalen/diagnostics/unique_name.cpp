#include "korvalen/diagnostics/unique_name.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/diagnostics/internal/unique_names.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/path_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/exclusive_file.h"
#include "korvalen/platform/internal/this_process.h"

namespace platform = korvalen::platform;
using korvalen::kUniqueNameChars;

namespace {

constexpr long kLastNumber = 99999999;
// Each name passed over costs a hold of the counter and a refused create; this
// many files in a row means the directory is not ours to fill. The counter has
// moved on meanwhile, so the next call starts beyond them.
constexpr long kMaxProbes = 10000;
// The counter is held only while a number is taken (microseconds), so waits
// start short; they double up to a millisecond, and a holder that keeps
// it for seconds is taken as gone wrong.
constexpr unsigned kFirstWaitMicros = 50;
constexpr unsigned kLongestWaitMicros = 1000;
constexpr std::chrono::seconds kGiveUpAfter{5};

constexpr int kPathChars = MAX_PATH;  // what MakePath composes at most

// Spreads the waits of processes that met at the counter, so they do not come
// back in step. Per thread, seeded by the process and the thread's stack.
unsigned NextJitter() {
  static thread_local std::uint32_t state = 0;
  if (state == 0) {
    int on_stack = 0;
    state = static_cast<std::uint32_t>(platform::current_process_id() * 2654435761u) ^
            static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&on_stack) >> 4);
    if (state == 0) state = 1;
  }
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  return state;
}

using Deadline = std::chrono::steady_clock::time_point;

// Opens the counter exclusively, waiting while another caller holds it, until
// the deadline. The clock decides, not the sum of the waits asked for: a sleep
// may last longer (whole milliseconds on Windows).
FILE* HoldCounter(const wchar_t* counter_file, Deadline give_up) {
  unsigned wait = kFirstWaitMicros;
  for (;;) {
    FILE* f = nullptr;
    const std::error_code error = platform::open_exclusive(counter_file, f);
    if (error != std::errc::device_or_resource_busy ||
        std::chrono::steady_clock::now() >= give_up) {
      return f;
    }
    platform::sleep_microseconds(wait / 2 + NextJitter() % (wait / 2 + 1));
    wait = wait * 2 < kLongestWaitMicros ? wait * 2 : kLongestWaitMicros;
  }
}

// The number of the base name on the counter's first line; 0 when it holds
// anything else (new, empty or damaged counter).
long LastNumber(FILE* counter) {
  wchar_t line[korvalen::kCfgLineChars + 1];
  LeerLineaDeFichero(counter, line, korvalen::kCfgLineChars);
  long value = 0;
  int digits = 0;
  for (; line[digits] != 0; ++digits) {
    if (digits == kUniqueNameChars || line[digits] < L'0' || line[digits] > L'9') return 0;
    value = value * 10 + (line[digits] - L'0');
  }
  return digits == kUniqueNameChars ? value : 0;
}

long Following(long number) { return number >= kLastNumber || number < 0 ? 1 : number + 1; }

// Takes the next number from the counter and writes it back: the counter is
// held only for this. 0 when the counter cannot be had.
long TakeNumber(const wchar_t* counter_file, Deadline give_up) {
  FILE* counter = HoldCounter(counter_file, give_up);
  if (counter == nullptr) return 0;
  const long number = Following(LastNumber(counter));
  wchar_t base[16];
  sPrintf(base, L"%08ld", number);
  // Same length every time, so writing over the old name needs no truncation.
  std::rewind(counter);
  fPrintf(counter, L"%s\n", base);
  std::fclose(counter);
  return number;
}

}  // namespace

int korvalen::detail::next_unique_name(const wchar_t* counter_file, const wchar_t* extension,
                                       wchar_t* base, const NameTaker& take) {
  if (counter_file == nullptr || *counter_file == 0) return 0;
  if (extension == nullptr) extension = L"";

  wchar_t drive[kPathChars];
  wchar_t folder[kPathChars];
  SplitPath(counter_file, drive, folder, nullptr, nullptr);
  // A name MakePath would have to cut is not the one reserved; refuse it.
  const int dot = (*extension != 0 && *extension != L'.') ? 1 : 0;
  if (StrLen(drive) + StrLen(folder) + 1 + kUniqueNameChars + dot + StrLen(extension) >=
      kPathChars) {
    return 0;
  }

  // Each number is handed out once, so callers never race for a name; taking
  // it only meets files left behind by an older count, whose numbers are
  // passed over. Taking it outside the counter keeps the counter's hold
  // short: creates can be slow in a full directory.
  const Deadline give_up = std::chrono::steady_clock::now() + kGiveUpAfter;
  for (long probe = 0; probe < kMaxProbes; ++probe) {
    const long number = TakeNumber(counter_file, give_up);
    if (number == 0) return 0;
    wchar_t candidate[16];
    sPrintf(candidate, L"%08ld", number);
    wchar_t path[kPathChars];
    MakePath(path, drive, folder, candidate, extension);
    const std::error_code error = take(path);
    if (!error) {
      StrCpy(base, candidate);
      return 1;
    }
    if (error != std::errc::file_exists) return 0;
  }
  return 0;
}

int DameNombreFic(const wchar_t* counter_file, const wchar_t* extension, wchar_t* base) {
  if (base == nullptr) return 0;
  base[0] = 0;
  try {
    return korvalen::detail::next_unique_name(
        counter_file, extension, base,
        [](const wchar_t* path) { return platform::create_new_file(path); });
  } catch (...) {
    base[0] = 0;
    return 0;
  }
}
