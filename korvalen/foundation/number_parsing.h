// Internal: the runtime's text-to-number conversions done the same way on
// every system, with 32-bit results that saturate instead of overflowing.
#pragma once

#include <cstdint>

namespace korvalen::detail {

// _wtoi/_wtol: blanks, optional sign, decimal digits up to the first other
// character; 0 when there are none.
std::int32_t parse_int(const wchar_t* text);
// wcstod restricted to what the Windows runtime reads: sign, digits, '.',
// exponent. No "inf", "nan" or hexadecimal. *end (if given) after the number,
// or text when there is none.
double parse_double(const wchar_t* text, const wchar_t** end);
// wcstoul with a 32-bit result.
std::uint32_t parse_unsigned(const wchar_t* text, const wchar_t** end, int base);

}  // namespace korvalen::detail
