#include "korvalen/datafiles/sheet_queue.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/datafiles/internal/state_lines.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/directory_search.h"
#include "korvalen/platform/internal/exclusive_file.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/this_process.h"

namespace {

namespace platform = korvalen::platform;
using korvalen::detail::file_exists;
using korvalen::detail::or_empty;
using korvalen::detail::write_state_line;
using Clock = std::chrono::steady_clock;

constexpr const wchar_t* kQueueFile = L"CHGCHAPA.SYS";
constexpr const wchar_t* kWorkFile = L"CHGCHAPA.AUX";

constexpr int kKeyChars = 255;
constexpr int kSheetChars = 40;

// A rewrite holds the work file for milliseconds. One that has not changed for
// this long belongs to a program that died in the middle of a rewrite.
constexpr auto kAbandoned = std::chrono::seconds(3);
constexpr auto kGiveUp = std::chrono::seconds(10);
constexpr unsigned kFirstPauseMicroseconds = 100;
constexpr unsigned kLongestPauseMicroseconds = 5000;

// What tells a live holder's work file from an abandoned one: a live rewrite
// recreates and rewrites it, which changes its time or size.
struct Stamp {
  long long written = 0;
  std::uint64_t size = 0;
  bool operator==(const Stamp&) const = default;
};

enum class Entry { kGone, kFile, kOther };

Entry ReadStamp(const wchar_t* name, Stamp& stamp) {
  platform::DirectoryEntry entry;
  if (platform::entry_status(name, entry)) return Entry::kGone;
  if (entry.is_directory()) return Entry::kOther;
  stamp = Stamp{entry.written, entry.size};
  return Entry::kFile;
}

// The work file is shared by every program that rewrites the queue; creating
// it only when it does not exist yet makes it theirs alone until they remove
// or rename it. Without that, two rewrites would write into one work file.
bool ClaimWorkFile() {
  const Clock::time_point start = Clock::now();
  Clock::time_point unchanged_since = start;
  Stamp seen;
  bool have_seen = false;
  unsigned pause = kFirstPauseMicroseconds;
  for (;;) {
    const std::error_code created = platform::create_new_file(kWorkFile);
    if (!created) return true;
    if (created != std::errc::file_exists) return false;
    const Clock::time_point now = Clock::now();
    if (now - start >= kGiveUp) return false;
    Stamp stamp;
    const Entry entry = ReadStamp(kWorkFile, stamp);
    if (entry == Entry::kOther) return false;  // a directory is no holder's work file
    if (entry == Entry::kGone) {
      have_seen = false;  // released meanwhile
      continue;
    }
    if (!have_seen || !(stamp == seen)) {
      seen = stamp;
      have_seen = true;
      unchanged_since = now;
    } else if (now - unchanged_since >= kAbandoned) {
      Remove(kWorkFile);
      have_seen = false;
      continue;
    }
    platform::sleep_microseconds(pause);
    pause = pause * 2 < kLongestPauseMicroseconds ? pause * 2 : kLongestPauseMicroseconds;
  }
}

// Closes the written work file and makes it the queue; a work file that could
// not be written completely is thrown away instead, as is one that cannot
// take the queue's place, so the claim always ends here.
void ReplaceQueue(FILE* work) {
  const bool written = std::ferror(work) == 0;
  if (std::fclose(work) != 0 || !written || platform::replace_file(kWorkFile, kQueueFile)) {
    Remove(kWorkFile);
  }
}

// The queue for reading, or null when there is none.
FILE* OpenQueue() {
  FILE* queue = nullptr;
  platform::open_replaced_file(kQueueFile, L"rt", queue);
  return queue;
}

FILE* OpenWorkFile() {
  if (!ClaimWorkFile()) return nullptr;
  FILE* work = fOpen(kWorkFile, L"wt");
  if (work == nullptr) Remove(kWorkFile);
  return work;
}

}  // namespace

void AnadirFicheroRehacerChapas(const wchar_t* key, const wchar_t* sheet) {
  key = or_empty(key);
  sheet = or_empty(sheet);
  FILE* work = OpenWorkFile();
  if (work == nullptr) return;
  if (file_exists(kQueueFile)) {
    if (FILE* queue = OpenQueue()) {
      wchar_t old_key[kKeyChars + 1];
      wchar_t old_sheet[kSheetChars + 1];
      if (!std::feof(queue)) {
        do {
          LeerLineaDeFichero(queue, old_key, kKeyChars);
          LeerLineaDeFichero(queue, old_sheet, kSheetChars);
          // Either half matching drops the pair: a sheet is queued once, and
          // a key once.
          if (StrCmp(old_key, key) != 0 && StrCmp(old_sheet, sheet) != 0) {
            write_state_line(work, old_key);
            write_state_line(work, old_sheet);
          }
        } while (!std::feof(queue));
      }
      std::fclose(queue);
    }
  }
  write_state_line(work, key);
  write_state_line(work, sheet);
  ReplaceQueue(work);
}

void LeerFicheroRehacerChapas(const wchar_t* key, TRegListaNombre*& first, TRegListaNombre*& last) {
  key = or_empty(key);
  if (!file_exists(kQueueFile)) return;
  FILE* work = OpenWorkFile();
  if (work == nullptr) return;
  // A queue that does not open is still replaced by the (empty) work file.
  if (FILE* queue = OpenQueue()) {
    wchar_t line[kKeyChars + 1];
    if (!std::feof(queue)) {
      do {
        LeerLineaDeFichero(queue, line, kKeyChars);
        if (StrCmp(line, key) != 0) {
          write_state_line(work, line);
          LeerLineaDeFichero(queue, line, kKeyChars);
          write_state_line(work, line);
        } else {
          TRegListaNombre node{};
          LeerLineaDeFichero(queue, node.name, kSheetChars);
          korvalen::detail::append(first, last, node);
        }
      } while (!std::feof(queue));
    }
    std::fclose(queue);
  }
  ReplaceQueue(work);
}
