// Wide printf into a caller's buffer or into a file, with the Windows
// conventions on every system: in a wide format "%s" and "%c" take wide
// arguments, "%S" and "%C" (or "%hs", "%hc") 8-bit ones in the code page, and
// "%I64d" is a 64-bit integer.
//
//   wchar_t line[81];
//   sPrintf(line, L"A%03d %1.3f ;", 12, 2.5);  // "A012 2.500 ;"
//   fPrintf(file, L"\"%s\"\n", name);
#pragma once

#include <cstdio>

#include "korvalen/export.h"

// Like swprintf without a count: the caller's buffer must hold the result.
// Returns the length, or -1 (with an empty buffer) when formatting failed.
KORVALEN_API int sPrintf(wchar_t* buffer, const wchar_t* format, ...);
KORVALEN_API int sPrintf(wchar_t* buffer, const char* format, ...);
// Formats into 1024 characters; an empty or failed result writes nothing and
// is returned as it is; else the text goes to the file in the code page and
// its length is returned.
KORVALEN_API int fPrintf(FILE* stream, const wchar_t* format, ...);
KORVALEN_API int fPrintf(FILE* stream, const char* format, ...);
