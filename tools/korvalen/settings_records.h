// The records of a settings file as the tool's cfg commands see them: each
// line as the library's record reader delivers it, and its fields as the
// field readers take them (a quoted text or a bare word; the ';' terminator
// is the last word, and shows as a field).
//
//   const Fields fields = record_fields(line, cursor);  // after the head
//   fields[0].text, fields[0].quoted, fields[0].start, fields[0].end
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace korvalen::tool {

// The long record reader's limit.
inline constexpr int kRecordChars = 500;

struct RecordField {
  std::wstring text;  // without its quotes
  bool quoted = false;
  int start = 0;  // where the field stands in the line, quotes included
  int end = 0;
};
using Fields = std::vector<RecordField>;

Fields record_fields(const wchar_t* line, int cursor);
// The field as cfg dump shows it: a quoted one between its quotes.
std::wstring shown(const RecordField& field);

// A record code "A001": the type letter and the index; false when the text
// is none.
bool parse_record_code(const std::string& code, wchar_t& type, int& index);
// "A001" from the type letter and the index.
std::wstring record_code(wchar_t type, int index);
// Whether the line, read as the record (t, i), is record (type, index): a
// line of blanks only reads as a record too, with no head.
bool is_record(const wchar_t* line, wchar_t t, int i, wchar_t type, int index);

// Every line of an open settings file with its number (from 1), as the
// reader gives it: visit(number, line, type, index, cursor); type ' ' for an
// empty line. The end of the file gives no line.
template <typename Visit>
void for_each_settings_line(FILE* file, Visit visit);

}  // namespace korvalen::tool

#include "korvalen/config/config_reader.h"

template <typename Visit>
void korvalen::tool::for_each_settings_line(FILE* file, Visit visit) {
  wchar_t line[kRecordChars + 1];
  wchar_t type = L' ';
  int index = 0;
  int cursor = 0;
  for (int number = 1; !std::feof(file); ++number) {
    LeerLineaLargaDeCfg(file, line, type, index, cursor);
    if (line[0] == 0 && std::feof(file)) break;
    visit(number, line, type, index, cursor);
  }
}
