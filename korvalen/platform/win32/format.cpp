// The Microsoft runtime's own wide printf, whose "%s" is wide in a wide format.
#include "korvalen/platform/internal/format.h"

#include <locale.h>
#include <stdio.h>
#include <wchar.h>

namespace korvalen::platform {
namespace {

// The runtime converts 8-bit arguments ("%S", "%hs") with its character-type
// locale, which stays "C" unless the application changes it; there every byte
// becomes the character of the same number, so 0x80 would not be the euro
// sign. With the ANSI code page as the character type they read like every
// other 8-bit text of the library. Only the character type changes: the
// decimal point stays '.'.
_locale_t AnsiLocale() {
  static const _locale_t locale = _create_locale(LC_CTYPE, ".ACP");
  return locale;
}

}  // namespace

namespace native {

int format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args) {
  // One place is kept for the terminator, which _vsnwprintf leaves out when
  // the text fills the count exactly.
  const _locale_t locale = AnsiLocale();
  const int n = locale != nullptr ? _vsnwprintf_l(buffer, capacity - 1, format, locale, args)
                                  : _vsnwprintf(buffer, capacity - 1, format, args);
  buffer[n >= 0 ? n : capacity - 1] = 0;
  return n;
}

}  // namespace native

}  // namespace korvalen::platform
