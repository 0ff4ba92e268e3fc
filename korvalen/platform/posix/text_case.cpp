// ASCII and Latin-1 letters fold; other characters compare as they are, so the
// result does not depend on the process locale.
#include "korvalen/platform/text_case.h"

namespace korvalen::platform {

wchar_t to_upper(wchar_t c) {
  if ((c >= L'a' && c <= L'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) return c - 0x20;
  if (c == 0xFF) return static_cast<wchar_t>(0x178);
  return c;
}

wchar_t to_lower(wchar_t c) {
  if ((c >= L'A' && c <= L'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) return c + 0x20;
  if (c == 0x178) return static_cast<wchar_t>(0xFF);
  return c;
}

int compare_no_case(const wchar_t* a, const wchar_t* b) {
  for (;; ++a, ++b) {
    const wchar_t x = to_lower(*a);
    const wchar_t y = to_lower(*b);
    if (x != y || x == 0) return static_cast<int>(x) - static_cast<int>(y);
  }
}

}  // namespace korvalen::platform
