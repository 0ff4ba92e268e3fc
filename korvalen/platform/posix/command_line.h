// Internal to the POSIX layer: a Windows command line taken apart into the
// arguments a Windows program sees (CommandLineToArgvW's rules).
//
//   split_command_line(L"\"C:\\Prog Files\\a.exe\" x \"y z\"")
//     -> {L"C:\\Prog Files\\a.exe", L"x", L"y z"}
//
// The program name ends at the next quote when it starts with one, else at
// the first blank, and takes no escapes. In the other arguments, 2n
// backslashes before a quote give n backslashes and the quote opens or closes
// a quoted part; 2n+1 give n and a literal quote; other backslashes are
// literal; in a run of quotes every third gives a literal quote, and a run
// that ends on an even count leaves the argument unquoted. Blanks (space,
// tab) outside quoted parts separate arguments.
#pragma once

#include <string>
#include <vector>

namespace korvalen::platform::posix {

// Never empty: the first element is the program name (leading blanks are
// skipped, so it is empty only for a blank line).
std::vector<std::wstring> split_command_line(const wchar_t* line);

}  // namespace korvalen::platform::posix
