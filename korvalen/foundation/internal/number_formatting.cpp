#include "korvalen/foundation/internal/number_formatting.h"

#include <cmath>
#include <cstdarg>
#include <cstdint>

#include "korvalen/platform/internal/format.h"

namespace korvalen::detail {
namespace {

constexpr int kMaxDecimals = 9;

int Format(wchar_t* buffer, std::size_t capacity, const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  int length = 0;
  const std::error_code error = platform::format_wide(buffer, capacity, format, args, length);
  va_end(args);
  return error ? -1 : length;
}

// A value halfway between two results with d decimals is odd / 2^(d+1): it
// must be (2k+1) / (2 * 10^d) and a binary fraction, so 5^d divides 2k+1.
// Below 2^40 its scaled value, odd * 5^d / 2, is worked out exactly in 64-bit
// integers; anything larger has no halves of this kind within a double's
// precision worth treating.
bool ExactHalf(double value, int decimals, std::int64_t& twice_scaled) {
  if (!(std::fabs(value) < 0x1p40)) return false;      // NaN and infinities too
  const double odd = std::ldexp(value, decimals + 1);  // exact: a power of two
  if (odd != std::floor(odd) || std::fmod(odd, 2.0) == 0.0) return false;
  std::int64_t five = 1;
  for (int i = 0; i < decimals; ++i) five *= 5;
  twice_scaled = static_cast<std::int64_t>(odd) * five;
  return true;
}

}  // namespace

int format_fixed(wchar_t* buffer, std::size_t capacity, double value, int decimals) {
  if (buffer == nullptr || capacity == 0) return -1;
  if (decimals < 0) decimals = 0;
  if (decimals > kMaxDecimals) decimals = kMaxDecimals;
  std::int64_t twice = 0;
  if (!ExactHalf(value, decimals, twice))
    return Format(buffer, capacity, L"%1.*f", decimals, value);
  // twice is odd: one more in size is the result away from zero, doubled.
  const std::int64_t scaled = (twice + (twice > 0 ? 1 : -1)) / 2;
  const std::uint64_t magnitude = static_cast<std::uint64_t>(scaled < 0 ? -scaled : scaled);
  std::uint64_t unit = 1;
  for (int i = 0; i < decimals; ++i) unit *= 10;
  const auto whole = static_cast<unsigned long long>(magnitude / unit);
  const auto fraction = static_cast<unsigned long long>(magnitude % unit);
  const wchar_t* sign = scaled < 0 ? L"-" : L"";
  if (decimals == 0) return Format(buffer, capacity, L"%s%I64u", sign, whole);
  return Format(buffer, capacity, L"%s%I64u.%0*I64u", sign, whole, decimals, fraction);
}

}  // namespace korvalen::detail
