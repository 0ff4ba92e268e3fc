// Files that one holder at a time may have open, across processes, and files
// created only when no entry of that name exists yet. The unique-name
// generator keeps its counter file this way and reserves each name it hands
// out by creating the file; the sheet queue claims its work file so. Calls
// follow the convention of error.h.
//
//   FILE* counter = nullptr;
//   const std::error_code error = platform::open_exclusive(L"CONTERRW.cdr", counter);
//   if (error == std::errc::device_or_resource_busy) { /* held elsewhere: back off */ }
//   ... fGets, rewind, fPuts ...
//   std::fclose(counter);  // releases it
#pragma once

#include <cstdio>
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

// Each system's implementation, for the portable layer (exclusive_file.cpp)
// only: names are not null or empty, and an allocation failure may throw.
namespace native {
std::error_code open_exclusive(const wchar_t* name, FILE*& file);
std::error_code create_new_file(const wchar_t* name);
}  // namespace native

}  // namespace korvalen::platform
