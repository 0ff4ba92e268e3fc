// The C runtime's conversions between text and numbers under the suite's
// short names, giving the Windows runtime's results on every system: 32-bit
// integers that saturate, no "inf", "nan" or hexadecimal reals.
//
//   int count = aToi(L" 42 parts");   // 42
//   wchar_t* end = nullptr;
//   double v = StrTod(L"1.5e3mm", &end);  // 1500.0, end at "mm"
//   wchar_t digits[34];
//   iToa(255, digits, 16);                // "ff"
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// wcstod; an 8-bit text's end pointer points into its converted copy.
KORVALEN_API double StrTod(const wchar_t* text, wchar_t** end);
KORVALEN_API double StrTod(const char* text, wchar_t** end);
KORVALEN_API ULONG strToul(const wchar_t* text, wchar_t** end, int base);
KORVALEN_API ULONG strToul(const char* text, wchar_t** end, int base);
KORVALEN_API int aToi(const wchar_t* text);
KORVALEN_API int aToi(const char* text);
KORVALEN_API LONG aTol(const wchar_t* text);
KORVALEN_API LONG aTol(const char* text);
KORVALEN_API double aTof(const wchar_t* text);
KORVALEN_API double aTof(const char* text);
// _itow: base 10 has a sign; other bases show the two's-complement value.
KORVALEN_API wchar_t* iToa(int value, wchar_t* buffer, int radix);
KORVALEN_API wchar_t* lToa(LONG value, wchar_t* buffer, int radix);
// Exported under its C name, as the suite links it.
extern "C" KORVALEN_API double fabs(double value) KORVALEN_CRT_NOEXCEPT;
