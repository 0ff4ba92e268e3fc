#include "korvalen/foundation/internal/number_parsing.h"

#include <cfloat>
#include <cstdint>
#include <cstdlib>
#include <cwchar>

#include "korvalen/platform/internal/decimal_reals.h"

namespace korvalen::detail {
namespace {

bool is_blank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }
bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// The exact decimal reals: a mantissa below 2^53 times a power of ten up to
// 10^22, the largest one a double holds exactly.
constexpr int kMaxMantissaDigits = 19;
constexpr int kMaxExactPower = 22;
constexpr double kPowersOfTen[kMaxExactPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
// Dividing by 10^k is dividing by 5^k and then by 2^k, which is exact. When
// the mantissa is a multiple of 5^k the first division is exact too, and
// then the quotient is an exact double that a multiplication by 2^-k
// gives without the slow division: whole numbers and halves or quarters
// written with decimals, which settings files are full of. The multiple is
// found with the inverse of 5^k modulo 2^64: m * inverse (mod 2^64) is at
// most (2^64 - 1) / 5^k exactly when 5^k divides m, and is then m / 5^k.
struct ExactQuotients {
  std::uint64_t inverse[kMaxExactPower + 1];
  std::uint64_t limit[kMaxExactPower + 1];
  double half_power[kMaxExactPower + 1];  // 2^-k
};

constexpr ExactQuotients make_exact_quotients() {
  ExactQuotients q{};
  std::uint64_t five = 1;
  double half = 1.0;
  for (int k = 0; k <= kMaxExactPower; ++k) {
    std::uint64_t x = five;  // correct to 3 bits for an odd number; each step doubles that
    for (int i = 0; i < 5; ++i) x *= 2 - five * x;
    q.inverse[k] = x;
    q.limit[k] = UINT64_MAX / five;
    q.half_power[k] = half;
    five *= 5;
    half /= 2;
  }
  return q;
}

constexpr ExactQuotients kExactQuotients = make_exact_quotients();

constexpr bool inverses_hold() {
  std::uint64_t five = 1;
  for (int k = 0; k <= kMaxExactPower; ++k, five *= 5) {
    if (five * kExactQuotients.inverse[k] != 1) return false;
  }
  return true;
}
static_assert(inverses_hold());

// Bounds the bookkeeping of absurd exponents and digit runs; anything that
// far out goes to wcstod.
constexpr int kMaxScale = 100000;
// Where the arithmetic carries more precision than a double (x87), the
// product would be rounded twice and could differ in the last bit.
#if defined(FLT_EVAL_METHOD) && FLT_EVAL_METHOD == 0
constexpr bool kFastPathExact = true;
#else
constexpr bool kFastPathExact = false;
#endif

int digit_value(wchar_t c) {
  if (is_digit(c)) return c - L'0';
  if (c >= L'a' && c <= L'z') return c - L'a' + 10;
  if (c >= L'A' && c <= L'Z') return c - L'A' + 10;
  return 99;
}

// wcstod of the number the scan accepted. Only that prefix reaches wcstod, so
// it cannot read further.
double runtime_value(const wchar_t* start, const wchar_t* stop) {
  wchar_t number[128];
  const auto length = static_cast<std::size_t>(stop - start);
  if (length >= sizeof(number) / sizeof(number[0])) {
    // An absurdly long number: wcstod on the original reads the same prefix
    // (it never accepts more than the scan did).
    return std::wcstod(start, nullptr);
  }
  std::wmemcpy(number, start, length);
  number[length] = 0;
  return std::wcstod(number, nullptr);
}

// A decimal text as the scan reads it: mantissa * 10^power, exactly when
// `exact` (at most 19 significant digits and a power within bounds).
struct Decimal {
  const wchar_t* start = nullptr;  // the sign or first digit, after the blanks
  const wchar_t* end = nullptr;    // past the number
  bool negative = false;
  std::uint64_t mantissa = 0;
  int power = 0;
  bool exact = false;
};

// Reads sign, digits, '.', digits and an exponent as wcstod does; false when
// there are no digits.
bool scan_decimal(const wchar_t* text, Decimal& d) {
  const wchar_t* p = text;
  while (is_blank(*p)) ++p;
  d.start = p;
  if (*p == L'-' || *p == L'+') d.negative = *p++ == L'-';
  // The digits go into an integer mantissa; the decimal point and the
  // exponent only move a power of ten. Leading zeros do not count, so that
  // "0.001" is 1 * 10^-3; more than 19 other digits do not fit.
  const wchar_t* const digits = p;
  while (*p == L'0') ++p;
  const wchar_t* first = p;
  for (; is_digit(*p); ++p) d.mantissa = d.mantissa * 10 + static_cast<unsigned>(*p - L'0');
  std::ptrdiff_t kept = p - first;
  std::ptrdiff_t fraction = 0;
  bool any_digit = p != digits;
  if (*p == L'.') {
    const wchar_t* const point = ++p;
    if (kept == 0) {
      while (*p == L'0') ++p;
    }
    first = p;
    for (; is_digit(*p); ++p) d.mantissa = d.mantissa * 10 + static_cast<unsigned>(*p - L'0');
    kept += p - first;
    fraction = p - point;
    any_digit = any_digit || p != point;
  }
  if (!any_digit) return false;
  d.exact = kept <= kMaxMantissaDigits && fraction <= kMaxScale;
  int exponent = 0;
  if (*p == L'e' || *p == L'E') {
    const wchar_t* q = p + 1;
    bool exponent_negative = false;
    if (*q == L'-' || *q == L'+') exponent_negative = *q++ == L'-';
    if (is_digit(*q)) {
      for (; is_digit(*q); ++q) {
        if (exponent < kMaxScale) {
          exponent = exponent * 10 + (*q - L'0');
        } else {
          d.exact = false;
        }
      }
      if (exponent_negative) exponent = -exponent;
      p = q;
    }
  }
  d.end = p;
  d.power = (d.exact ? -static_cast<int>(fraction) : 0) + exponent;
  return true;
}

// The value of an exact decimal where one rounding gives it: both operands
// are exact doubles, so the one rounding of the product or quotient is the
// correctly rounded value of the text, which is what wcstod gives. With the
// sign on the operand the rounding direction also matches. False where the
// runtime must read the text.
bool exact_value(const Decimal& d, double& value) {
  if (!d.exact || !kFastPathExact || !platform::runtime_rounds_decimals_exactly()) return false;
  if (d.mantissa == 0) {
    value = d.negative ? -0.0 : 0.0;
    return true;
  }
  if (d.mantissa > (std::uint64_t{1} << 53) || d.power < -kMaxExactPower ||
      d.power > kMaxExactPower) {
    return false;
  }
  const auto signed_value = [&d](double magnitude) { return d.negative ? -magnitude : magnitude; };
  if (d.power >= 0) {
    value = signed_value(static_cast<double>(d.mantissa)) * kPowersOfTen[d.power];
    return true;
  }
  const std::uint64_t fifths = d.mantissa * kExactQuotients.inverse[-d.power];
  if (fifths <= kExactQuotients.limit[-d.power]) {
    value = signed_value(static_cast<double>(fifths)) * kExactQuotients.half_power[-d.power];
  } else {
    value = signed_value(static_cast<double>(d.mantissa)) / kPowersOfTen[-d.power];
  }
  return true;
}

}  // namespace

std::int32_t parse_int(const wchar_t* text) {
  if (text == nullptr) return 0;
  while (is_blank(*text)) ++text;
  return parse_int_digits(text, &text);
}

double parse_double(const wchar_t* text, const wchar_t** end) {
  if (end != nullptr) *end = text;
  if (text == nullptr) return 0.0;
  Decimal decimal;
  if (!scan_decimal(text, decimal)) return 0.0;
  if (end != nullptr) *end = decimal.end;
  double value = 0.0;
  if (exact_value(decimal, value)) return value;
  return runtime_value(decimal.start, decimal.end);
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
