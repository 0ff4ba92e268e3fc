// Writing config records: editing a record line in place, field by field with
// the cursor of the readers (config_reader.h), writing lines to a settings
// file, and building whole records from a head and one value.
//
//   LeerLineaDeCfg(in, line, type, index, cursor);   // "A000 5 ;", cursor 4
//   int value = 7;
//   EscribirUnEntero(line, cursor, value);            // "A000 7 ;"
//   EscribirLineaEnFichero(out, line);
//
// An in-place writer blanks the record from the cursor up to its ';' (every
// later field goes too, so a caller rewrites each field from the first changed
// one to the last), then writes its value after the separating blank. The
// value may run over the ';' but never past the end of the line; only
// EscribirUnTextoForzado makes a line longer. A negative cursor is taken as 0.
#pragma once

#include <cstdio>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// --- in-place field writers -------------------------------------------------
// The text as a bare word, cut at the end of the line.
KORVALEN_API void EscribirUnStr(wchar_t* line, int& cursor, const wchar_t* text);
// The text in double quotes, cut so that the closing quote stays inside the line.
KORVALEN_API void EscribirUnTexto(wchar_t* line, int& cursor, const wchar_t* text);
// The text in double quotes, whole: when it does not fit, the line ends right
// after the closing quote (the terminator is gone). The buffer must hold
// cursor + length of text + 4 characters.
KORVALEN_API void EscribirUnTextoForzado(wchar_t* line, int& cursor, const wchar_t* text);
// source with the quoted text written at the cursor, into destination. When
// the text does not fit, destination is the source up to and including the
// cursor's character (79 characters at most) followed by the quoted text, and
// the cursor is left unchanged.
KORVALEN_API void EscribirUnTextoLargo(const wchar_t* source, wchar_t* destination, int& cursor,
                                       const wchar_t* text);
// "ON" for non-zero, "OFF" for zero.
KORVALEN_API void EscribirSIoNO(wchar_t* line, int& cursor, int& value);
KORVALEN_API void EscribirUnEntero(wchar_t* line, int& cursor, int& value);
KORVALEN_API void EscribirUnLong(wchar_t* line, int& cursor, LONG& value);
// "%1.3f" and "%1.6f", cut at 79 characters.
KORVALEN_API void EscribirUnReal(wchar_t* line, int& cursor, double& value);
KORVALEN_API void EscribirUnRealLargo(wchar_t* line, int& cursor, double& value);

// --- line output ----------------------------------------------------------------
// The line (its first 498 characters) and a line feed, in the ANSI code page; a
// character the code page cannot hold ends the line there.
KORVALEN_API void EscribirLineaEnFichero(FILE* file, const wchar_t* line);

// --- whole records ----------------------------------------------------------------
// head is the record up to the value, e.g. L"A001 \"" or L"A002 ". The output
// buffer must hold the record.
// head with its last character replaced by a double quote, the value, a double
// quote, blanks up to column 76, then ";": 77 characters for a short value.
KORVALEN_API void DameParametroTexto(const wchar_t* head, const wchar_t* value, wchar_t* out);
// head, value, " ;".
KORVALEN_API void DameParametroEntero(const wchar_t* head, int value, wchar_t* out);
KORVALEN_API void DameParametroLong(const wchar_t* head, LONG value, wchar_t* out);
KORVALEN_API void DameParametroReal(const wchar_t* head, double value, wchar_t* out);
KORVALEN_API void DameParametroBool(const wchar_t* head, int value, wchar_t* out);
KORVALEN_API void DameONOFFConUnInt(const wchar_t* head, int value, wchar_t* out);
