#include "korvalen/foundation/number_parsing.h"

#include <cstdlib>
#include <cwchar>

namespace korvalen::detail {
namespace {

bool is_blank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }
bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

int digit_value(wchar_t c) {
  if (is_digit(c)) return c - L'0';
  if (c >= L'a' && c <= L'z') return c - L'a' + 10;
  if (c >= L'A' && c <= L'Z') return c - L'A' + 10;
  return 99;
}

}  // namespace

std::int32_t parse_int(const wchar_t* text) {
  if (text == nullptr) return 0;
  while (is_blank(*text)) ++text;
  bool negative = false;
  if (*text == L'-' || *text == L'+') negative = *text++ == L'-';
  std::int64_t value = 0;
  for (; is_digit(*text); ++text) {
    value = value * 10 + (*text - L'0');
    if (value > 0x80000000LL) value = 0x80000000LL;  // saturate, keep reading
  }
  if (negative) value = -value;
  if (value > INT32_MAX) value = INT32_MAX;
  return static_cast<std::int32_t>(value);
}

double parse_double(const wchar_t* text, const wchar_t** end) {
  if (end != nullptr) *end = text;
  if (text == nullptr) return 0.0;
  const wchar_t* p = text;
  while (is_blank(*p)) ++p;
  const wchar_t* start = p;
  if (*p == L'-' || *p == L'+') ++p;
  int digits = 0;
  while (is_digit(*p)) ++p, ++digits;
  if (*p == L'.') {
    ++p;
    while (is_digit(*p)) ++p, ++digits;
  }
  if (digits == 0) return 0.0;
  if (*p == L'e' || *p == L'E') {
    const wchar_t* q = p + 1;
    if (*q == L'-' || *q == L'+') ++q;
    if (is_digit(*q)) {
      while (is_digit(*q)) ++q;
      p = q;
    }
  }
  // Only the accepted prefix reaches wcstod, so it cannot read further.
  wchar_t number[128];
  const std::size_t length = static_cast<std::size_t>(p - start);
  if (length >= sizeof(number) / sizeof(number[0])) {
    // An absurdly long number: wcstod on the original reads the same prefix
    // (it never accepts more than this scan did).
    if (end != nullptr) *end = p;
    return std::wcstod(start, nullptr);
  }
  std::wmemcpy(number, start, length);
  number[length] = 0;
  if (end != nullptr) *end = p;
  return std::wcstod(number, nullptr);
}

std::uint32_t parse_unsigned(const wchar_t* text, const wchar_t** end, int base) {
  if (end != nullptr) *end = text;
  if (text == nullptr || base < 0 || base == 1 || base > 36) return 0;
  const wchar_t* p = text;
  while (is_blank(*p)) ++p;
  bool negative = false;
  if (*p == L'-' || *p == L'+') negative = *p++ == L'-';
  if ((base == 0 || base == 16) && p[0] == L'0' && (p[1] == L'x' || p[1] == L'X') &&
      digit_value(p[2]) < 16) {
    p += 2;
    base = 16;
  } else if (base == 0) {
    base = p[0] == L'0' ? 8 : 10;
  }
  const wchar_t* first = p;
  std::uint64_t value = 0;
  bool overflow = false;
  for (; digit_value(*p) < base; ++p) {
    value = value * static_cast<unsigned>(base) + static_cast<unsigned>(digit_value(*p));
    if (value > 0xFFFFFFFFULL) {
      overflow = true;
      value = 0xFFFFFFFFULL;
    }
  }
  if (p == first) return 0;
  if (end != nullptr) *end = p;
  if (overflow) return 0xFFFFFFFFU;
  const auto result = static_cast<std::uint32_t>(value);
  return negative ? static_cast<std::uint32_t>(0U - result) : result;
}

}  // namespace korvalen::detail
