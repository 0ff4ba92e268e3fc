// UTF-8 and the wide text of the library, in both directions: the file names
// and environment texts of POSIX systems, and what the korvalen tool reads
// from its command line and prints. Nothing malformed passes either way: a
// byte sequence that is not UTF-8 (a stray or missing continuation byte, an
// overlong form, an encoded surrogate, a value past U+10FFFF) and a wide
// character that is no Unicode scalar value (a lone surrogate) each become
// U+FFFD. Where wchar_t is UTF-16 (Windows), characters past U+FFFF are
// surrogate pairs; where it is UTF-32, single characters.
//
//   const std::string bytes = korvalen::platform::to_utf8(L"Ca\u00F1o.cfg");
//   const std::wstring name = korvalen::platform::from_utf8(bytes);
//
// Both allocate, and throw std::bad_alloc when that fails.
#pragma once

#include <string>
#include <string_view>

namespace korvalen::platform {

std::string to_utf8(std::wstring_view text);
std::wstring from_utf8(std::string_view text);
// The same into a string the caller keeps, whose storage is reused.
void from_utf8(std::string_view text, std::wstring& out);

}  // namespace korvalen::platform
