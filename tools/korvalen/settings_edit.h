// The in-place edit behind `korvalen cfg set`: one field of the first record
// with a code changes, through the library's field writers and its line
// writer, into a work file that then takes the file's place. Every other
// byte of the file stays: the fields after the changed one keep their
// columns where the new value leaves room, and move only as far as it needs.
//
//   set_record_field(L"UNIDADES.CFG", L'A', 1, 1, L"2");
#pragma once

#include <string>

namespace korvalen::tool {

// Fails the command (failure.h) when the file, the record or the field is
// missing, or the value does not suit the field.
void set_record_field(const std::wstring& file, wchar_t type, int index, int field,
                      const std::wstring& value);

}  // namespace korvalen::tool
