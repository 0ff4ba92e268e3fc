// Internal: the runtime's text-to-number conversions done the same way on
// every system, with 32-bit results that saturate instead of overflowing.
#pragma once

#include <cstdint>

namespace korvalen::detail {

// _wtoi/_wtol: blanks, optional sign, decimal digits up to the first other
// character; 0 when there are none.
std::int32_t parse_int(const wchar_t* text);

// parse_int after its blanks: optional sign and decimal digits from text on,
// *end where they stop. Inline, for readers that take many short numbers.
inline std::int32_t parse_int_digits(const wchar_t* text, const wchar_t** end) {
  bool negative = false;
  if (*text == L'-' || *text == L'+') negative = *text++ == L'-';
  const auto digit = [](wchar_t c) { return static_cast<std::uint32_t>(c) - L'0'; };
  std::int64_t value = 0;
  // Nine digits cannot reach the saturation point; only longer numbers pay
  // for the check.
  int i = 0;
  for (; i < 9 && digit(text[i]) <= 9; ++i) value = value * 10 + digit(text[i]);
  for (text += i; digit(*text) <= 9; ++text) {
    value = value * 10 + digit(*text);
    if (value > 0x80000000LL) value = 0x80000000LL;  // saturate, keep reading
  }
  *end = text;
  if (negative) value = -value;
  if (value > INT32_MAX) value = INT32_MAX;
  return static_cast<std::int32_t>(value);
}
// wcstod restricted to what the Windows runtime reads: sign, digits, '.',
// exponent. No "inf", "nan" or hexadecimal. *end (if given) after the number,
// or text when there is none.
double parse_double(const wchar_t* text, const wchar_t** end);
// wcstoul with a 32-bit result.
std::uint32_t parse_unsigned(const wchar_t* text, const wchar_t** end, int base);

}  // namespace korvalen::detail
