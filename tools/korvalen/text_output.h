// The tool's output: the library's wide text printed as UTF-8, one line at a
// time, with the labelled fields the reading commands show.
//
//   print(L"param.sys\n");
//   print_field(L"Language", L"3", 2);  // "  Language                    3"
#pragma once

#include <string>

namespace korvalen::tool {

// Writes the text to standard output in UTF-8; nothing while a JSON document
// is being built (json_output.h).
void print(const std::wstring& text);
// "korvalen: " and the text, on standard error in UTF-8.
void print_error(const std::wstring& text);

// One line: the label padded to 28 columns after `indent` blanks, then the
// value; trailing blanks are dropped. With a JSON document open, the field
// goes into it instead.
void print_field(const std::wstring& label, const std::wstring& value, int indent = 0);

}  // namespace korvalen::tool
