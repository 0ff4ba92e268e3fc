// Conversion between the 8-bit text of the settings files (the ANSI code page
// on Windows, Windows-1252 elsewhere) and the wide text the library works in.
// Every 8-bit overload of the library converts its arguments this way.
//
//   wchar_t wide[81];
//   CharToTChar(wide, 81, "A000 5 ;");
//   char bytes[161];
//   TCharToChar(bytes, 161, wide);
#pragma once

#include "korvalen/export.h"

// 8-bit to wide. capacity is in characters; -1 takes the destination to be as
// large as the text needs. Returns the characters written with the terminator,
// 0 when the text had to be cut (the destination is still terminated).
KORVALEN_API int CharToTChar(wchar_t* destination, int capacity, const char* source);
// Wide to 8-bit; capacity in bytes. A character the code page cannot hold
// becomes its best-fit look-alike where Windows has one, else a zero byte,
// which ends the converted text.
KORVALEN_API int TCharToChar(char* destination, int capacity, const wchar_t* source);
