// Files that one holder at a time may have open, across processes, and files
// created only when no entry of that name exists yet. The unique-name
// generator keeps its counter file this way and reserves each name it hands
// out by creating the file; the sheet queue claims its work file so; every
// file the library writes as a whole is first a work file held by its writer
// alone, then takes its target's place in one step. Calls follow the
// convention of error.h.
//
//   FILE* counter = nullptr;
//   const std::error_code error = platform::open_exclusive(L"CONTERRW.cdr", counter);
//   if (error == std::errc::device_or_resource_busy) { /* held elsewhere: back off */ }
//   ... fGets, rewind, fPuts ...
//   std::fclose(counter);  // releases it
//
//   platform::WorkFile work;
//   if (!platform::claim_work_file(L"ORDENACT.SYS.work", work)) {
//     ... fPuts(..., work.stream) ...
//     if (platform::finish_work_file(work, true) ||
//         platform::replace_with_work_file(work, L"ORDENACT.SYS")) {
//       platform::drop_work_file(work);  // the target stays as it was
//     }
//   }
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <system_error>

namespace korvalen::platform {

// Opens name as a text stream for reading and writing, creating it empty when
// missing, and holds it until the stream is closed: no other open_exclusive of
// the same file, in this process or another, succeeds meanwhile. Never waits:
// fails with std::errc::device_or_resource_busy while another holder has the
// file (worth trying again). file is null on failure.
//
// Windows opens the file without any sharing, so ordinary opens are refused
// too; POSIX puts an exclusive lock (flock) on it, which only open_exclusive
// respects. Either way the hold ends with the holder's process.
std::error_code open_exclusive(const wchar_t* name, FILE*& file);

// Creates name as a new empty file in one atomic step that fails with
// std::errc::file_exists when an entry of that name (in any case) exists
// already. Windows refuses for a moment to create a name that another program
// is renaming or deleting; that refusal is retried for half a second.
std::error_code create_new_file(const wchar_t* name);

// What a work file's stream writes: text as "wt" does (CR LF line ends), or
// the bytes as given ("wb").
enum class WorkContent { kText, kBinary };

// A work file while its writer holds it: its stream, the name it was claimed
// under and the system's handle of the open file. Empty (null stream) when
// nothing is held.
struct WorkFile {
  FILE* stream = nullptr;
  std::wstring name;
  std::intptr_t handle = -1;
};

// Creates name as an empty work file and holds it: another claim of the same
// name, in this process or another, fails with
// std::errc::device_or_resource_busy until this writer has put the file in
// place or dropped it, or has died (the hold ends with the process, so a
// writer that was killed never blocks the next one). What such a writer left
// under the name is thrown away first. Never waits. work is empty on failure.
//
// The name's last component is taken exactly as spelled (work files are the
// library's own names): on POSIX no other case of it is looked for.
std::error_code claim_work_file(const wchar_t* name, WorkContent content, WorkFile& work);

// Writes out what the stream still buffers, and with `sync` waits until the
// file is on disk (fsync, FlushFileBuffers), so that the file put in place
// survives a power cut with its content. Fails with std::errc::io_error when
// anything written to the stream was lost.
std::error_code finish_work_file(WorkFile& work, bool sync);

// Puts the finished work file in target's place in one atomic step,
// replacing target when it exists (which keeps its permissions on POSIX); a
// reader sees the old file or the new one, never a part. A target that
// exists read-only is left alone (std::errc::permission_denied), as opening
// it for writing would have failed. Windows refuses for a moment while
// another program has the target open; that refusal is retried for up to a
// second. On success the work file is closed and work emptied; on failure it
// is still held.
std::error_code replace_with_work_file(WorkFile& work, const wchar_t* target);

// Puts the finished work file under name only when no entry of that name (in
// any case) exists: fails with std::errc::file_exists otherwise, the work
// file still held for another name. On success as replace_with_work_file.
std::error_code publish_work_file(WorkFile& work, const wchar_t* name);

// Removes the work file and ends the hold; nothing when work is empty.
void drop_work_file(WorkFile& work);

// Removes a file under a work file's name that no writer holds: what a writer
// that died left behind. Fails with std::errc::device_or_resource_busy while
// a writer holds it, with std::errc::no_such_file_or_directory when there is
// none. Never waits.
std::error_code remove_abandoned_work_file(const wchar_t* name);

// Each system's implementation, for the portable layer (exclusive_file.cpp)
// only: names are not null or empty, work holds a file where the call needs
// one, and an allocation failure may throw.
namespace native {
std::error_code open_exclusive(const wchar_t* name, FILE*& file);
std::error_code create_new_file(const wchar_t* name);
std::error_code claim_work_file(const wchar_t* name, WorkContent content, WorkFile& work);
std::error_code finish_work_file(WorkFile& work, bool sync);
std::error_code replace_with_work_file(WorkFile& work, const wchar_t* target);
std::error_code publish_work_file(WorkFile& work, const wchar_t* name);
void drop_work_file(WorkFile& work);
std::error_code remove_abandoned_work_file(const wchar_t* name);
}  // namespace native

}  // namespace korvalen::platform
