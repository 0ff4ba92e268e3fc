#include "korvalen/foundation/number_functions.h"

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/number_parsing.h"

using korvalen::detail::WideArg;
using korvalen::detail::WorkCopy;

namespace {

thread_local WorkCopy t_tod_copy;
thread_local WorkCopy t_toul_copy;

}  // namespace

double StrTod(const wchar_t* text, wchar_t** end) {
  const wchar_t* stop = text;
  const double value = korvalen::detail::parse_double(text, &stop);
  if (end != nullptr) *end = const_cast<wchar_t*>(stop);
  return value;
}
double StrTod(const char* text, wchar_t** end) { return StrTod(t_tod_copy.from(text), end); }

ULONG strToul(const wchar_t* text, wchar_t** end, int base) {
  const wchar_t* stop = text;
  const ULONG value = korvalen::detail::parse_unsigned(text, &stop, base);
  if (end != nullptr) *end = const_cast<wchar_t*>(stop);
  return value;
}
ULONG strToul(const char* text, wchar_t** end, int base) {
  return strToul(t_toul_copy.from(text), end, base);
}

int aToi(const wchar_t* text) { return korvalen::detail::parse_int(text); }
int aToi(const char* text) { return aToi(WideArg(text).get()); }
LONG aTol(const wchar_t* text) { return korvalen::detail::parse_int(text); }
LONG aTol(const char* text) { return aTol(WideArg(text).get()); }
double aTof(const wchar_t* text) { return korvalen::detail::parse_double(text, nullptr); }
double aTof(const char* text) { return aTof(WideArg(text).get()); }

wchar_t* iToa(int value, wchar_t* buffer, int radix) {
  if (buffer == nullptr) return buffer;
  buffer[0] = 0;
  if (radix < 2 || radix > 36) return buffer;
  // Only base 10 has a sign; other bases show the two's-complement value.
  const bool negative = radix == 10 && value < 0;
  auto u = static_cast<unsigned int>(value);
  if (negative) u = 0U - u;
  wchar_t digits[40];
  int n = 0;
  do {
    const unsigned d = u % static_cast<unsigned>(radix);
    digits[n++] = static_cast<wchar_t>(d < 10 ? L'0' + d : L'a' + d - 10);
    u /= static_cast<unsigned>(radix);
  } while (u != 0);
  int i = 0;
  if (negative) buffer[i++] = L'-';
  while (n > 0) buffer[i++] = digits[--n];
  buffer[i] = 0;
  return buffer;
}

wchar_t* lToa(LONG value, wchar_t* buffer, int radix) {
  return iToa(static_cast<int>(value), buffer, radix);
}
