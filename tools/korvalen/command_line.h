// The tool's command-line arguments as wide text. Each system hands a program
// its arguments in its own 8-bit encoding: UTF-8 on POSIX, the ANSI code page
// on Windows; the file for the system being built says which.
#pragma once

#include <string>

namespace korvalen::tool {

std::wstring argument_text(const std::string& argument);

}  // namespace korvalen::tool
