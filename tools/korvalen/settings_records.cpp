#include "settings_records.h"

#include <cwchar>
#include <cwctype>

#include "korvalen/korvalen.h"

namespace korvalen::tool {

Fields record_fields(const wchar_t* line, int cursor) {
  Fields fields;
  const int length = StrLen(line);
  wchar_t text[kRecordChars + 1];
  for (;;) {
    while (cursor < length && line[cursor] == L' ') ++cursor;
    if (cursor >= length) break;
    RecordField field;
    field.start = cursor;
    field.quoted = line[cursor] == L'"';
    LeerUnString(line, cursor, text);
    field.end = cursor;
    field.text = text;
    fields.push_back(field);
  }
  return fields;
}

std::wstring shown(const RecordField& field) {
  return field.quoted ? L"\"" + field.text + L"\"" : field.text;
}

bool parse_record_code(const std::string& code, wchar_t& type, int& index) {
  if (code.size() != 4 || !std::iswalpha(static_cast<wint_t>(code[0]))) return false;
  index = 0;
  for (std::size_t i = 1; i < 4; ++i) {
    if (code[i] < '0' || code[i] > '9') return false;
    index = index * 10 + (code[i] - '0');
  }
  type = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(code[0])));
  return true;
}

std::wstring record_code(wchar_t type, int index) {
  wchar_t code[16];
  sPrintf(code, L"%c%03d", type, index);
  return code;
}

bool is_record(const wchar_t* line, wchar_t t, int i, wchar_t type, int index) {
  return std::towupper(static_cast<wint_t>(t)) == static_cast<wint_t>(type) && i == index &&
         line[std::wcsspn(line, L" ")] != 0;
}

}  // namespace korvalen::tool
