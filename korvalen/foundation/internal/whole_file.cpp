#include "korvalen/foundation/internal/whole_file.h"

#include <chrono>

#include "korvalen/foundation/file_system.h"
#include "korvalen/platform/internal/this_process.h"

namespace korvalen::detail {
namespace {

namespace platform = korvalen::platform;
using Clock = std::chrono::steady_clock;

// A writer holds its work file while it writes a small file and flushes it to
// disk: milliseconds. Waits start short and double up to a few milliseconds;
// a holder that keeps it for seconds is taken as gone wrong. (A killed holder
// never counts: its hold ends with it.)
constexpr unsigned kFirstPauseMicroseconds = 50;
constexpr unsigned kLongestPauseMicroseconds = 4000;
constexpr auto kGiveUp = std::chrono::seconds(5);

// The work files of the library are written to disk before they take a
// target's place: they hold state other programs of the installation need
// after a power cut.
constexpr bool kSync = true;

}  // namespace

WorkFile::WorkFile(const wchar_t* name, platform::WorkContent content) : content_(content) {
  const Clock::time_point give_up = Clock::now() + kGiveUp;
  unsigned pause = kFirstPauseMicroseconds;
  while (TryClaim(name) == std::errc::device_or_resource_busy && Clock::now() < give_up) {
    platform::sleep_microseconds(pause);
    pause = pause * 2 < kLongestPauseMicroseconds ? pause * 2 : kLongestPauseMicroseconds;
  }
}

WorkFile::~WorkFile() { Drop(); }

std::error_code WorkFile::TryClaim(const wchar_t* name) {
  finished_ = false;
  claim_error_ = platform::claim_work_file(name, content_, work_);
  return claim_error_;
}

bool WorkFile::Finish() {
  if (!finished_) finished_ = !platform::finish_work_file(work_, kSync);
  return finished_;
}

bool WorkFile::Replace(const wchar_t* target) {
  if (!Finish() || platform::replace_with_work_file(work_, target)) {
    Drop();
    return false;
  }
  return true;
}

std::error_code WorkFile::Publish(const wchar_t* name) {
  if (!Finish()) {
    Drop();
    return std::make_error_code(std::errc::io_error);
  }
  const std::error_code error = platform::publish_work_file(work_, name);
  if (error && error != std::errc::file_exists) Drop();
  return error;
}

void WorkFile::Drop() { platform::drop_work_file(work_); }

std::wstring work_file_name(const wchar_t* target) { return std::wstring(target) + L".work"; }

void give_up_target(const WorkFile& work, const wchar_t* target, const wchar_t* work_name) {
  if (work.claim_error() == std::errc::device_or_resource_busy) return;
  Remove(target);
  Rename(work_name, target);
}

}  // namespace korvalen::detail
