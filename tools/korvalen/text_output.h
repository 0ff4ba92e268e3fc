// Text between the tool's UTF-8 command line / output and the library's wide text.
#pragma once

#include <string>

namespace korvalen::tool {

std::string to_utf8(const std::wstring& text);
std::wstring from_utf8(const std::string& text);

// Writes UTF-8 text to standard output as it stands.
void print(const std::wstring& text);

}  // namespace korvalen::tool
