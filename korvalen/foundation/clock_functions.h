// The C runtime's clock and calendar functions under the suite's short names,
// with the Windows conventions: 64-bit times, "mm/dd/yy" and "hh:mm:ss" texts,
// and no broken-down time for a time before 1970 or after the year 3000.
//
//   long long now = ...;              // seconds since 1970
//   if (std::tm* t = LocalTime(&now)) {
//     wchar_t text[64];
//     StrfTime(text, 64, L"%d/%m/%Y", t);
//   }
#pragma once

#include <cstddef>
#include <ctime>

#include "korvalen/export.h"

KORVALEN_API wchar_t* StrDate(wchar_t* buffer);  // "mm/dd/yy", 9 characters
KORVALEN_API wchar_t* StrTime(wchar_t* buffer);  // "hh:mm:ss", 9 characters
// wcsftime: the length written, 0 (with an empty buffer) when it did not fit.
KORVALEN_API std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                                  const std::tm* time);
KORVALEN_API std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const char* format,
                                  const std::tm* time);
// A per-thread broken-down time, valid until the next call in the thread;
// null outside 1970 to 3000.
KORVALEN_API std::tm* LocalTime(const long long* time);
KORVALEN_API std::tm* gmTime(const long long* time);
