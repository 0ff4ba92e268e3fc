// The C runtime's wide string functions under the suite's short names, each
// with overloads that take any text argument as 8-bit text.
//
// An 8-bit argument is converted from the code page into a 1024-character
// wide copy first (see text_conversion.h). A pointer returned by such an
// overload points into that copy, which stays valid in the calling thread
// until the next call of the same overload.
//
//   wchar_t name[256];
//   StrCpy(name, "CFGSMACH");
//   StrCat(name, L".CFG");
//   if (StriCmp(name, L"cfgsmach.cfg") == 0) { ... }
#pragma once

#include <cstddef>

#include "korvalen/export.h"

KORVALEN_API void StrCpy(wchar_t* destination, const wchar_t* source);
KORVALEN_API void StrCpy(wchar_t* destination, const char* source);
KORVALEN_API wchar_t* StrnCpy(wchar_t* destination, const wchar_t* source, std::size_t count);
KORVALEN_API wchar_t* StrnCpy(wchar_t* destination, const char* source, std::size_t count);
KORVALEN_API wchar_t* StrCat(wchar_t* destination, const wchar_t* source);
KORVALEN_API wchar_t* StrCat(wchar_t* destination, const char* source);
KORVALEN_API wchar_t* StrnCat(wchar_t* destination, const wchar_t* source, std::size_t count);
KORVALEN_API wchar_t* StrnCat(wchar_t* destination, const char* source, std::size_t count);

// Ordinal comparison of code units: -1, 0 or 1.
KORVALEN_API int StrCmp(const wchar_t* a, const wchar_t* b);
KORVALEN_API int StrCmp(const char* a, const wchar_t* b);
KORVALEN_API int StrCmp(const wchar_t* a, const char* b);
KORVALEN_API int StrCmp(const char* a, const char* b);
// Without regard to case (ASCII letters only, as the runtime's "C" locale
// folds them): <0, 0 or >0.
KORVALEN_API int StriCmp(const wchar_t* a, const wchar_t* b);
KORVALEN_API int StriCmp(const char* a, const wchar_t* b);
KORVALEN_API int StriCmp(const wchar_t* a, const char* b);
KORVALEN_API int StriCmp(const char* a, const char* b);
KORVALEN_API int StrnCmp(const wchar_t* a, const wchar_t* b, std::size_t count);
KORVALEN_API int StrnCmp(const char* a, const wchar_t* b, std::size_t count);
KORVALEN_API int StrnCmp(const wchar_t* a, const char* b, std::size_t count);
KORVALEN_API int StrnCmp(const char* a, const char* b, std::size_t count);

KORVALEN_API int StrLen(const wchar_t* text);
KORVALEN_API int StrLen(const char* text);
KORVALEN_API wchar_t* StrChr(const wchar_t* text, wchar_t c);
KORVALEN_API wchar_t* StrChr(const char* text, wchar_t c);
KORVALEN_API wchar_t* StrrChr(const wchar_t* text, wchar_t c);
KORVALEN_API wchar_t* StrrChr(const char* text, wchar_t c);
KORVALEN_API wchar_t* StrStr(const wchar_t* text, const wchar_t* search);
KORVALEN_API wchar_t* StrStr(const char* text, const wchar_t* search);
KORVALEN_API wchar_t* StrStr(const wchar_t* text, const char* search);
KORVALEN_API wchar_t* StrStr(const char* text, const char* search);
KORVALEN_API std::size_t StrCspn(const wchar_t* text, const wchar_t* set);
KORVALEN_API std::size_t StrCspn(const char* text, const wchar_t* set);
KORVALEN_API std::size_t StrCspn(const wchar_t* text, const char* set);
KORVALEN_API std::size_t StrCspn(const char* text, const char* set);
// Keeps its position between calls (per thread), as wcstok does on Windows.
KORVALEN_API wchar_t* StrTok(wchar_t* text, const wchar_t* delimiters);
KORVALEN_API wchar_t* StrTok(wchar_t* text, const char* delimiters);
KORVALEN_API wchar_t* StrUpr(wchar_t* text);
KORVALEN_API wchar_t* StrLwr(wchar_t* text);
KORVALEN_API wchar_t* StrRev(wchar_t* text);
