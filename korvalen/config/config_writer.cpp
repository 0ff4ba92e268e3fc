#include "korvalen/config/config_writer.h"

#include <climits>
#include <cwchar>

#include "korvalen/config/internal/cursor.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/number_formatting.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/streams.h"

namespace korvalen::detail {

void LimpiarCampoCfg(wchar_t* line, int& cursor);

}  // namespace korvalen::detail

namespace {

using korvalen::detail::cursor_start;
using korvalen::detail::or_empty;

constexpr wchar_t kBlank = L' ';
constexpr wchar_t kQuote = L'"';
constexpr wchar_t kTerminator = L';';

// A value formatted for an in-place writer, with its terminator.
constexpr int kValueChars = 80;
// Holds any double in "%1.3f", sign included.
constexpr int kRecordValueChars = 400;
// The longest prefix EscribirUnTextoLargo keeps, with its terminator.
constexpr int kPrefixChars = 80;
// EscribirLineaEnFichero's work line, with its line feed and terminator.
constexpr int kOutputLineChars = 500;
// DameParametroTexto pads the record to this many characters before the ';'.
constexpr int kTextRecordFill = 76;

int Length(const wchar_t* text) {
  if (text == nullptr) return 0;
  const std::size_t n = std::wcslen(text);
  return n > INT_MAX - 8 ? INT_MAX - 8 : static_cast<int>(n);
}

void WriteWord(wchar_t* line, int& cursor, const wchar_t* text) {
  if (line == nullptr) return;
  const int n = Length(line);
  korvalen::detail::LimpiarCampoCfg(line, cursor);
  int i = cursor;
  for (text = or_empty(text); i < n && *text != 0; ++i, ++text) line[i] = *text;
  cursor = i;
}

// Writes the quoted text as if the line were n characters long; the caller
// has cleared the field and moved the cursor past the separating blank.
void WriteQuoted(wchar_t* line, int n, int& cursor, const wchar_t* text) {
  int i = cursor;
  if (i >= n) return;
  line[i++] = kQuote;
  for (text = or_empty(text); i < n && *text != 0; ++i, ++text) line[i] = *text;
  if (i >= n) i = n - 1;
  line[i++] = kQuote;
  cursor = i;
}

void WriteText(wchar_t* line, int& cursor, const wchar_t* text) {
  if (line == nullptr) return;
  const int n = Length(line);
  korvalen::detail::LimpiarCampoCfg(line, cursor);
  WriteQuoted(line, n, cursor, text);
}

// cursor + length of text + 3: the length of the line once the quoted text
// stands after the blank at the cursor.
long long NeededLength(int cursor, const wchar_t* text) {
  return static_cast<long long>(cursor_start(cursor)) + Length(text) + 3;
}

wchar_t* Append(wchar_t* out, const wchar_t* text) {
  for (text = or_empty(text); *text != 0; ++text) *out++ = *text;
  *out = 0;
  return out;
}

void BuildRecord(const wchar_t* head, const wchar_t* value, wchar_t* out) {
  if (out == nullptr) return;
  Append(Append(Append(out, head), value), L" ;");
}

void BuildIntegerRecord(const wchar_t* head, int value, wchar_t* out) {
  wchar_t digits[34];
  iToa(value, digits, 10);
  BuildRecord(head, digits, out);
}

void BuildSwitchRecord(const wchar_t* head, int value, wchar_t* out) {
  BuildRecord(head, value != 0 ? L"ON" : L"OFF", out);
}

}  // namespace

namespace korvalen::detail {

// Blanks the record from the cursor up to its ';' (or its end), then steps
// over the blank that will separate the new value from what stands before.
void LimpiarCampoCfg(wchar_t* line, int& cursor) {
  const int n = Length(line);
  const int start = cursor_start(cursor);
  for (int i = start; i < n && line[i] != kTerminator; ++i) line[i] = kBlank;
  cursor = start == INT_MAX ? start : start + 1;
}

}  // namespace korvalen::detail

void EscribirUnStr(wchar_t* line, int& cursor, const wchar_t* text) {
  WriteWord(line, cursor, text);
}

void EscribirUnTexto(wchar_t* line, int& cursor, const wchar_t* text) {
  WriteText(line, cursor, text);
}

void EscribirUnTextoForzado(wchar_t* line, int& cursor, const wchar_t* text) {
  if (line == nullptr) return;
  const long long needed = NeededLength(cursor, text);
  if (needed <= Length(line) || needed >= INT_MAX) {
    WriteText(line, cursor, text);
    return;
  }
  const int old_length = Length(line);
  const int start = cursor_start(cursor);
  korvalen::detail::LimpiarCampoCfg(line, cursor);
  // The line now reaches past its old end: a cursor standing at (or after)
  // that end still gets its separating blank.
  for (int i = old_length; i <= start; ++i) line[i] = kBlank;
  WriteQuoted(line, static_cast<int>(needed), cursor, text);
  line[cursor] = 0;
}

void EscribirUnTextoLargo(const wchar_t* source, wchar_t* destination, int& cursor,
                          const wchar_t* text) {
  if (destination == nullptr) return;
  const int n = Length(source);
  if (NeededLength(cursor, text) <= n) {
    Append(destination, source);
    WriteText(destination, cursor, text);
    return;
  }
  // The prefix passes through a buffer of 80 characters, so at most 79 of
  // them survive.
  wchar_t prefix[kPrefixChars];
  const long long wanted = static_cast<long long>(cursor_start(cursor)) + 1;
  int k = 0;
  for (; k < wanted && k < n && k < kPrefixChars - 1; ++k) prefix[k] = source[k];
  prefix[k] = 0;
  wchar_t* out = Append(destination, prefix);
  out = Append(out, L"\"");
  out = Append(out, text);
  Append(out, L"\"");
}

void EscribirSIoNO(wchar_t* line, int& cursor, int& value) {
  WriteWord(line, cursor, value != 0 ? L"ON" : L"OFF");
}

void EscribirUnEntero(wchar_t* line, int& cursor, int& value) {
  wchar_t digits[kValueChars];
  iToa(value, digits, 10);
  WriteWord(line, cursor, digits);
}

void EscribirUnLong(wchar_t* line, int& cursor, LONG& value) {
  wchar_t digits[kValueChars];
  lToa(value, digits, 10);
  WriteWord(line, cursor, digits);
}

void EscribirUnReal(wchar_t* line, int& cursor, double& value) {
  wchar_t digits[kValueChars];
  korvalen::detail::format_fixed(digits, kValueChars, value, 3);
  WriteWord(line, cursor, digits);
}

void EscribirUnRealLargo(wchar_t* line, int& cursor, double& value) {
  wchar_t digits[kValueChars];
  korvalen::detail::format_fixed(digits, kValueChars, value, 6);
  WriteWord(line, cursor, digits);
}

void EscribirLineaEnFichero(FILE* file, const wchar_t* line) {
  if (file == nullptr) return;
  wchar_t work[kOutputLineChars];
  line = or_empty(line);
  int n = 0;
  for (; n < kOutputLineChars - 2 && line[n] != 0; ++n) work[n] = line[n];
  work[n++] = L'\n';
  work[n] = 0;
  fPuts(work, file);
}

void DameParametroTexto(const wchar_t* head, const wchar_t* value, wchar_t* out) {
  if (out == nullptr) return;
  wchar_t* end = Append(out, head);
  // An empty head has no last character to turn into the opening quote.
  if (end > out) --end;
  end = Append(end, L"\"");
  end = Append(end, value);
  end = Append(end, L"\"");
  while (end - out < kTextRecordFill) *end++ = kBlank;
  Append(end, L";");
}

void DameParametroEntero(const wchar_t* head, int value, wchar_t* out) {
  BuildIntegerRecord(head, value, out);
}

void DameParametroLong(const wchar_t* head, LONG value, wchar_t* out) {
  BuildIntegerRecord(head, static_cast<int>(value), out);
}

void DameParametroReal(const wchar_t* head, double value, wchar_t* out) {
  wchar_t digits[kRecordValueChars];
  korvalen::detail::format_fixed(digits, kRecordValueChars, value, 3);
  BuildRecord(head, digits, out);
}

void DameParametroBool(const wchar_t* head, int value, wchar_t* out) {
  BuildSwitchRecord(head, value, out);
}

void DameONOFFConUnInt(const wchar_t* head, int value, wchar_t* out) {
  BuildSwitchRecord(head, value, out);
}
