#include "settings_edit.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <cwctype>
#include <vector>

#include "failure.h"
#include "korvalen/korvalen.h"
#include "settings_records.h"

namespace korvalen::tool {
namespace {

bool SameText(const std::wstring& a, const wchar_t* b) { return StriCmp(a.c_str(), b) == 0; }

bool IsInteger(const std::wstring& text, long long& value) {
  if (text.empty()) return false;
  wchar_t* end = nullptr;
  errno = 0;
  value = std::wcstoll(text.c_str(), &end, 10);
  return *end == 0 && errno == 0 && text.find_first_of(L" +") == std::wstring::npos;
}

bool IsReal(const std::wstring& text, double& value) {
  if (text.empty() || text.find(L'.') == std::wstring::npos) return false;
  wchar_t* end = nullptr;
  value = std::wcstod(text.c_str(), &end);
  return *end == 0 && text.find_first_of(L" +") == std::wstring::npos;
}

// Writes the value over the field with the writer its present value calls
// for; the cursor stands on the blank before the field, and ends one past
// the new value.
void WriteField(const std::wstring& file, const RecordField& old, wchar_t* line, int& cursor,
                const std::wstring& value) {
  const auto refuse = [&](const wchar_t* what) {
    fail(file, L"\"" + value + L"\" is " + what + L" for " + shown(old), kBadCommandLine);
  };
  if (old.quoted) {
    if (value.find(L'"') != std::wstring::npos) refuse(L"no text (it holds a double quote)");
    EscribirUnTexto(line, cursor, value.c_str());
    return;
  }
  long long whole = 0;
  double real = 0;
  if (IsInteger(old.text, whole)) {
    if (!IsInteger(value, whole) || whole < INT32_MIN || whole > INT32_MAX) refuse(L"no integer");
    LONG number = static_cast<LONG>(whole);
    EscribirUnLong(line, cursor, number);
  } else if (IsReal(old.text, real)) {
    if (!IsReal(value, real) && !IsInteger(value, whole)) refuse(L"no real");
    if (!IsReal(value, real)) real = static_cast<double>(whole);
    // Six decimals stay six decimals.
    const bool long_form = old.text.size() - old.text.find(L'.') > 4;
    long_form ? EscribirUnRealLargo(line, cursor, real) : EscribirUnReal(line, cursor, real);
  } else if (SameText(old.text, L"ON") || SameText(old.text, L"OFF")) {
    int on = SameText(value, L"ON") || value == L"1" ? 1 : 0;
    if (on == 0 && !SameText(value, L"OFF") && value != L"0") refuse(L"not ON or OFF");
    EscribirSIoNO(line, cursor, on);
  } else {
    if (value.empty() || value.find_first_of(L" \"") != std::wstring::npos) {
      refuse(L"no single word");
    }
    EscribirUnStr(line, cursor, value.c_str());
  }
}

// The record with the field changed. The writers clear the record from the
// field to its ';' and stop at the line's end, so they get room beyond it,
// and what stood after the field is put back: in its columns when the value
// shrank or grew into blanks, further right only as far as it must (one
// blank stays before what follows).
std::wstring EditedRecord(const std::wstring& file, const wchar_t* line, const Fields& fields,
                          int field, const std::wstring& value) {
  const RecordField& old = fields[static_cast<std::size_t>(field - 1)];
  const std::wstring original = line;
  std::vector<wchar_t> buffer(original.begin(), original.end());
  buffer.resize(original.size() + value.size() + 8, L' ');
  buffer.push_back(0);
  int cursor = old.start - 1;
  WriteField(file, old, buffer.data(), cursor, value);
  std::wstring edited(buffer.data(), static_cast<std::size_t>(cursor));
  std::wstring rest = original.substr(static_cast<std::size_t>(old.end));
  if (cursor <= old.end)
    return edited + std::wstring(static_cast<std::size_t>(old.end - cursor), L' ') + rest;
  const std::size_t blanks = rest.find_first_not_of(L' ');
  const std::size_t spare = blanks == std::wstring::npos ? rest.size()
                            : blanks > 0                 ? blanks - 1
                                                         : 0;
  rest.erase(0, std::min(spare, static_cast<std::size_t>(cursor - old.end)));
  return edited + rest;
}

// The work file beside the file: its name with the extension ".AUX".
std::wstring WorkName(const std::wstring& file) {
  const std::size_t dot = file.find_last_of(L'.');
  const std::size_t slash = file.find_last_of(L"/\\");
  std::wstring base = dot != std::wstring::npos && (slash == std::wstring::npos || dot > slash)
                          ? file.substr(0, dot)
                          : file;
  return base + (SameText(file.substr(base.size()), L".AUX") ? L".AU~" : L".AUX");
}

}  // namespace

void set_record_field(const std::wstring& file, wchar_t type, int index, int field,
                      const std::wstring& value) {
  errno = 0;
  FILE* in = fOpen(file.c_str(), L"rt");
  if (in == nullptr) fail_errno(file);
  const std::wstring code = record_code(type, index);
  const std::wstring work = WorkName(file);
  if (Access(work.c_str(), 0) == 0) {
    std::fclose(in);
    fail(file, L"its work file " + work + L" exists: another writer is at it, or one stopped");
  }
  std::vector<std::wstring> lines;
  bool found = false;
  int too_long = 0;
  std::wstring problem;
  for_each_settings_line(in, [&](int number, const wchar_t* line, wchar_t t, int i, int cursor) {
    lines.emplace_back(line);
    if (lines.back().size() >= static_cast<std::size_t>(kRecordChars)) too_long = number;
    if (found || !is_record(line, t, i, type, index)) return;
    found = true;
    const Fields fields = record_fields(line, cursor);
    if (field < 1 || field > static_cast<int>(fields.size())) {
      problem = L"record " + code + L" has no field " + std::to_wstring(field) + L" (it has " +
                std::to_wstring(fields.size()) + L")";
      return;
    }
    lines.back() = EditedRecord(file, line, fields, field, value);
  });
  std::fclose(in);
  if (!found) fail(file, L"no record " + code);
  if (!problem.empty()) fail(file, problem);
  if (too_long > 0) {
    fail(file, L"line " + std::to_wstring(too_long) + L" is longer than the record reader takes");
  }
  for (const std::wstring& line : lines) {
    if (line.size() > static_cast<std::size_t>(kRecordChars) - 2)
      fail(file, L"the record would be longer than the line writer takes");
  }
  errno = 0;
  FILE* out = fOpen(work.c_str(), L"wt");
  if (out == nullptr) fail_errno(work);
  for (const std::wstring& line : lines) EscribirLineaEnFichero(out, line.c_str());
  const bool written = std::fflush(out) == 0 && std::ferror(out) == 0;
  std::fclose(out);
  // Windows renames over no file.
  if (!written || (Rename(work.c_str(), file.c_str()) != 0 &&
                   (Remove(file.c_str()) != 0 || Rename(work.c_str(), file.c_str()) != 0))) {
    Remove(work.c_str());
    fail(file, L"cannot be replaced by its work file " + work);
  }
}

}  // namespace korvalen::tool
