// Internal: writing a file as a whole, so that no program of the suite ever
// sees part of it. What is written goes to a work file beside the target,
// held by this writer alone: another writer of the same file waits for it,
// and what a writer that was killed left behind is thrown away by the next.
// Once complete, the work file is flushed to disk and takes the target's
// place in one step, so a reader, or a program started after a crash or a
// power cut, finds the old file or the new one.
//
//   korvalen::detail::write_whole_file(L"ORDENACT.SYS", [&](FILE* out) {
//     write_state_line(out, name);
//     write_state_line(out, quote);
//   });
//
// Rewrites whose work file has a fixed name of its own ("AUXMRSID.CFG") use
// WorkFile with that name (rewrite_through in config/internal/record_walk.h);
// the error reports claim one of a few work files and publish it under a new
// name. Every file the library writes in full goes through here.
#pragma once

#include <cstdio>
#include <string>
#include <system_error>
#include <type_traits>

#include "korvalen/platform/internal/exclusive_file.h"

namespace korvalen::detail {

class WorkFile {
 public:
  WorkFile() = default;
  // Claims the work file `name`, waiting while another writer holds it, a
  // few seconds at most.
  explicit WorkFile(const wchar_t* name,
                    platform::WorkContent content = platform::WorkContent::kText);
  // A work file that was not put in place is removed.
  ~WorkFile();
  WorkFile(const WorkFile&) = delete;
  WorkFile& operator=(const WorkFile&) = delete;

  // Claims `name` only when no other writer holds it now; never waits.
  // std::errc::device_or_resource_busy when one does.
  std::error_code TryClaim(const wchar_t* name);

  // The stream to write ("wt", or "wb" for binary content), null when the
  // file could not be claimed.
  FILE* stream() const { return work_.stream; }
  // Why the last claim failed; std::errc::device_or_resource_busy when
  // another writer held the work file all along.
  std::error_code claim_error() const { return claim_error_; }

  // Puts the complete file in target's place. False, the target as it was
  // and the work file removed, when anything went wrong: a write lost, a
  // target that exists read-only, a target that cannot be replaced.
  bool Replace(const wchar_t* target);
  // Gives the complete file the new name `name` when no entry has it yet.
  // std::errc::file_exists when one has, the work file kept for another
  // name; on any other failure the work file is removed.
  std::error_code Publish(const wchar_t* name);
  // Removes the work file.
  void Drop();

 private:
  bool Finish();

  platform::WorkFile work_;
  platform::WorkContent content_ = platform::WorkContent::kText;
  std::error_code claim_error_;
  bool finished_ = false;
};

// The work file of a file written as a whole: its name followed by ".work",
// which no reader of the suite takes for one of its files.
std::wstring work_file_name(const wchar_t* target);

// Kept from some of the suite's own rewrites, for one whose work file could
// not be had: the target is deleted and whatever has the work file's name is
// renamed onto it all the same, so the target is lost. A work file that
// another writer held all along is that writer's: the target then stays.
void give_up_target(const WorkFile& work, const wchar_t* target, const wchar_t* work_name);

// Writes target as a whole: write(FILE*) fills the work file, which then
// replaces target; a write that returns false leaves target as it was. False,
// target as it was, when nothing was put in place, an exception included (the
// exported writers' edge).
template <typename Write>
bool write_whole_file(const wchar_t* target, Write write,
                      platform::WorkContent content = platform::WorkContent::kText) noexcept {
  if (target == nullptr || *target == 0) return false;
  try {
    WorkFile work(work_file_name(target).c_str(), content);
    if (work.stream() == nullptr) return false;
    if constexpr (std::is_same_v<std::invoke_result_t<Write&, FILE*>, bool>) {
      if (!write(work.stream())) return false;
    } else {
      write(work.stream());
    }
    return work.Replace(target);
  } catch (...) {
    return false;
  }
}

}  // namespace korvalen::detail
