// Internal to the POSIX layer: turning a Windows-style wide name into the
// name of an existing file-system entry. Everything here may throw
// std::bad_alloc; the portable layer turns that into a failed call.
#pragma once

#include <string>

#include "korvalen/platform/internal/utf8.h"

namespace korvalen::platform::posix {

// UTF-8 with '\' taken as '/'. A name that does not exist as spelled resolves,
// component by component, to existing entries that match without regard to
// case; components that match nothing stay as spelled (so a new file is
// created under the name given).
std::string native_path(const wchar_t* name);

// A name as exclusive creates and work files take it: the folder resolved as
// for every name (with its closing '/', or empty for the current directory),
// the last component exactly as spelled (empty for a name ending in a
// separator).
struct FolderAndFile {
  std::string folder;
  std::string file;
};
FolderAndFile folder_and_file(const wchar_t* name);

// Whether folder (as folder_and_file gives it) holds an entry named file in
// another case, which Windows would take for the same name.
bool other_case_exists(const std::string& folder, const std::string& file);

// Windows wildcard match ('*', '?') without regard to case.
bool wildcard_match(const wchar_t* pattern, const wchar_t* name);

// A character of a name as NTFS compares it without regard to case: upper
// case, for the ASCII and Latin-1 letters.
wchar_t name_upper(wchar_t c);

// Equality without regard to case, as NTFS compares names.
bool same_name(const std::wstring& a, const std::wstring& b);

}  // namespace korvalen::platform::posix
