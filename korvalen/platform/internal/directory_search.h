// Walking directories: searches with the Windows wildcards '*' and '?', done
// without regard to case and listing entries in the order NTFS lists them
// ("." and ".." first, then by name), the state of one entry, and removing a
// link without touching what it points to. Calls that can fail follow the
// convention of error.h.
//
//   platform::SearchHandle search = platform::kNoSearch;
//   platform::DirectoryEntry entry;
//   for (std::error_code e = platform::find_first(L"*.err", search, entry); !e;
//        e = platform::find_next(search, entry)) {
//     if (!entry.is_directory()) use(entry.name);
//   }
//   platform::find_close(search);
#pragma once

#include <cstdint>
#include <system_error>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// The attributes of an entry, with the values of the Windows attribute word,
// so that the C runtime's find record carries them unchanged.
inline constexpr std::uint32_t kAttributeReadOnly = 0x01;
inline constexpr std::uint32_t kAttributeHidden = 0x02;
inline constexpr std::uint32_t kAttributeSystem = 0x04;
inline constexpr std::uint32_t kAttributeDirectory = 0x10;
inline constexpr std::uint32_t kAttributeArchive = 0x20;
// A symbolic link, or on Windows any reparse point (junctions included).
inline constexpr std::uint32_t kAttributeLink = 0x400;

inline constexpr int kEntryNameChars = 260;

struct DirectoryEntry {
  wchar_t name[kEntryNameChars] = {};  // cut to fit, always terminated
  std::uint32_t attributes = 0;        // kAttribute... bits
  long long created = 0;               // seconds since 1970, UTC
  long long accessed = 0;
  long long written = 0;
  std::uint64_t size = 0;  // 0 for a directory

  // A directory, or a link to one: searches list it as a directory.
  bool is_directory() const { return (attributes & kAttributeDirectory) != 0; }
  bool is_link() const { return (attributes & kAttributeLink) != 0; }
};

// A search in progress. Close every handle find_first gave with find_close,
// also after its end (on POSIX a search is released at its end already, and
// closing it then is harmless).
using SearchHandle = std::intptr_t;
inline constexpr SearchHandle kNoSearch = -1;

// The first entry matching pattern (a directory, then a mask); on failure
// handle is kNoSearch, with std::errc::no_such_file_or_directory when nothing
// matches.
std::error_code find_first(const wchar_t* pattern, SearchHandle& handle, DirectoryEntry& entry);
// The next entry; std::errc::no_such_file_or_directory at the end.
std::error_code find_next(SearchHandle handle, DirectoryEntry& entry);
std::error_code find_close(SearchHandle handle);

// The C runtime's find record (what FindFirst and FindNext hand out) of an
// entry.
void to_find_data(const DirectoryEntry& entry, _wfinddata64i32_t& data);

// The entry of that name itself: a link is reported as a link, not followed.
// std::errc::no_such_file_or_directory when there is none.
std::error_code entry_status(const wchar_t* name, DirectoryEntry& entry);

// Removes a link, never its target; std::errc::invalid_argument when the
// entry is no link.
std::error_code remove_link(const wchar_t* name);

// Each system's implementation, for the portable layer (directory_search.cpp)
// only: names and patterns are not null, the entry is cleared, and an
// allocation failure may throw.
namespace native {
std::error_code find_first(const wchar_t* pattern, SearchHandle& handle, DirectoryEntry& entry);
std::error_code find_next(SearchHandle handle, DirectoryEntry& entry);
std::error_code find_close(SearchHandle handle);
std::error_code entry_status(const wchar_t* name, DirectoryEntry& entry);
std::error_code remove_link(const wchar_t* name);
}  // namespace native

}  // namespace korvalen::platform
