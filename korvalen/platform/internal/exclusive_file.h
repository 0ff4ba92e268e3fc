// Files that one holder at a time may have open, across processes, and files
// created only when no entry of that name exists yet. The unique-name
// generator keeps its counter file this way and reserves each name it hands
// out by creating the file.
//
//   bool busy = false;
//   FILE* counter = korvalen::platform::open_exclusive(L"CONTERRW.cdr", &busy);
//   if (counter == nullptr && busy) { /* held elsewhere: back off, try again */ }
//   ... fGets, rewind, fPuts ...
//   std::fclose(counter);  // releases it
#pragma once

#include <cstdio>

namespace korvalen::platform {

// Opens name as a text stream for reading and writing, creating it empty when
// missing, and holds it until the stream is closed: no other open_exclusive of
// the same file, in this process or another, succeeds meanwhile. Never waits.
// Returns null on failure, with *busy true when another holder has the file
// (worth trying again) and false for any other cause.
//
// Windows opens the file without any sharing, so ordinary opens are refused
// too; POSIX puts an exclusive lock (flock) on it, which only open_exclusive
// respects. Either way the hold ends with the holder's process.
FILE* open_exclusive(const wchar_t* name, bool* busy);

enum class CreateResult { kCreated, kExists, kFailed };

// Creates name as a new empty file in one atomic step that fails when an
// entry of that name (in any case) exists already.
CreateResult create_new_file(const wchar_t* name);

}  // namespace korvalen::platform
