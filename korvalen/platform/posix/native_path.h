// Internal to the POSIX layer: turning a Windows-style wide name into the
// name of an existing file-system entry.
#pragma once

#include <string>

namespace korvalen::platform::posix {

// UTF-8 with '\' taken as '/'. A name that does not exist as spelled resolves,
// component by component, to existing entries that match without regard to
// case; components that match nothing stay as spelled (so a new file is
// created under the name given).
std::string native_path(const wchar_t* name);

// UTF-8 <-> wide for names and environment texts.
std::string to_utf8(const wchar_t* text);
std::wstring from_utf8(const char* text);

// Windows wildcard match ('*', '?') without regard to case.
bool wildcard_match(const wchar_t* pattern, const wchar_t* name);

// A character of a name as NTFS compares it without regard to case: upper
// case, for the ASCII and Latin-1 letters.
wchar_t name_upper(wchar_t c);

// Equality without regard to case, as NTFS compares names.
bool same_name(const std::wstring& a, const std::wstring& b);

}  // namespace korvalen::platform::posix
