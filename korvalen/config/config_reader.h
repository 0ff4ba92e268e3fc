// Reading config records: the lines of the suite's settings files ("A000 5 ;",
// "B012 1.5 A ;", "A001 \"two words\" ;"), classified by type letter and index,
// then taken apart field by field with a cursor shared by all the readers.
//
//   FILE* f = fOpen(L"UNIDADES.CFG", L"rt");
//   wchar_t line[81];
//   wchar_t type = L' ';
//   int index = 0, cursor = 0;
//   while (f && !feof(f)) {
//     LeerLineaDeCfg(f, line, type, index, cursor);
//     if (type == L'A' && index == 0) LeerUnEntero(line, cursor, value);
//   }
//
// Readers never fail: a missing field reads as an empty word (0, 0.0, blank,
// empty text). A cursor at or past the end of the line reads as a missing
// field; a negative cursor is taken as 0. Nothing is allocated on the heap.
#pragma once

#include <cstdio>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

namespace korvalen {

// What a real field written as a word beginning with 'A' (automatic) reads as.
inline constexpr double kRealNotSet = 99999.999;

// Longest record line of LeerLineaDeCfg and LeerLineaLargaDeCfg, without the
// terminating zero.
inline constexpr int kCfgLineChars = 80;
inline constexpr int kCfgLongLineChars = 500;

}  // namespace korvalen

// --- lines from a file ------------------------------------------------------
// A physical line is read in one piece of at most 1023 characters; the rest of
// a longer line is skipped, so the next read starts on the next line. A NUL
// byte ends the line where it stands.
// The next line without its line feed, cut to max_length characters; empty at
// end of file. line must hold max_length + 1 characters.
KORVALEN_API void LeerLineaDeFichero(FILE* file, wchar_t* line, int max_length);
// The next line (80 characters at most) as an integer; 0 when empty or at end.
KORVALEN_API int LeerEnteroDeFichero(FILE* file);
// The next line as a real; 0.0 when empty or at end; kRealNotSet when it
// starts with 'A'.
KORVALEN_API double LeerRealDeFichero(FILE* file);

// Reads and classifies the next line (80 characters at most; line holds 81).
// An empty line or the end of the file gives type ' ', a line starting with
// '#' type '#'; in both cases index and cursor keep their values. Otherwise
// type and index are those of the record and the cursor is left after the
// index, ready for the first field.
KORVALEN_API void LeerLineaDeCfg(FILE* file, wchar_t* line, wchar_t& type, int& index, int& cursor);
// As LeerLineaDeCfg with lines of up to 500 characters (line holds 501).
KORVALEN_API void LeerLineaLargaDeCfg(FILE* file, wchar_t* line, wchar_t& type, int& index,
                                      int& cursor);
// The head of a record already in memory. A line of blanks only leaves type
// as it was and gives index 0.
KORVALEN_API void ObtenerTipoIndexCfg(const wchar_t* line, wchar_t& type, int& index, int& cursor);

// --- fields -------------------------------------------------------------------
// Bare words end at the next blank (or the given separator) and leave the
// cursor on it. Text outputs are not bounded: they must be as long as the line.
// Words converted to numbers, characters or switches are cut to 79 characters
// (the cursor still moves past the whole word).
KORVALEN_API void LeerUnStr(const wchar_t* line, int& cursor, wchar_t* word);
// The separator is a character of the ANSI code page; blanks are then
// ordinary characters.
KORVALEN_API void LeerUnStrSep(const wchar_t* line, int& cursor, char separator, wchar_t* word);
// First character of the next word; blank when there is none.
KORVALEN_API void LeerUnChar(const wchar_t* line, int& cursor, wchar_t& value);
// The text between the next pair of double quotes, whatever stands before the
// opening one. The cursor ends one past the closing quote; with no opening
// quote the text is empty and the cursor ends two past the end of the line.
KORVALEN_API void LeerUnTexto(const wchar_t* line, int& cursor, wchar_t* text);
// A quoted text when the next field starts with a double quote, else a bare
// word.
KORVALEN_API void LeerUnString(const wchar_t* line, int& cursor, wchar_t* text);
KORVALEN_API void LeerUnStringSep(const wchar_t* line, int& cursor, char separator, wchar_t* text);
// 1 when the word is "ON" in any case, else 0.
KORVALEN_API void LeerSIoNO(const wchar_t* line, int& cursor, int& value);
// 1 when the word reads as a non-zero integer, else 0.
KORVALEN_API void LeerSIoNOInt(const wchar_t* line, int& cursor, int& value);
// The integer kept to its low 16 bits.
KORVALEN_API void LeerUnShort(const wchar_t* line, int& cursor, short& value);
KORVALEN_API void LeerUnEntero(const wchar_t* line, int& cursor, int& value);
KORVALEN_API void LeerUnEnteroSep(const wchar_t* line, int& cursor, char separator, int& value);
KORVALEN_API void LeerUnLong(const wchar_t* line, int& cursor, LONG& value);
// kRealNotSet when the word starts with 'A' (upper case only).
KORVALEN_API void LeerUnReal(const wchar_t* line, int& cursor, double& value);
