// Text between the tool's UTF-8 command line / output and the library's wide text.
#pragma once

#include <string>

namespace korvalen::tool {

std::string to_utf8(const std::wstring& text);
std::wstring from_utf8(const std::string& text);

// Writes UTF-8 text to standard output as it stands.
void print(const std::wstring& text);

// One setting of a file's listing: the label indented by two and padded to 28
// columns, then the value; no blanks at the end of the line.
void print_field(const std::wstring& label, const std::wstring& value);

}  // namespace korvalen::tool
