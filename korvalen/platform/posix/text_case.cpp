// ASCII letters fold, as in the Windows runtime's "C" locale; other characters
// compare as they are, so the result does not depend on the process locale.
#include "korvalen/platform/internal/text_case.h"

namespace korvalen::platform {

wchar_t to_upper(wchar_t c) { return c >= L'a' && c <= L'z' ? c - (L'a' - L'A') : c; }

wchar_t to_lower(wchar_t c) { return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c; }

int compare_no_case(const wchar_t* a, const wchar_t* b) {
  for (;; ++a, ++b) {
    const wchar_t x = to_lower(*a);
    const wchar_t y = to_lower(*b);
    if (x != y || x == 0) return static_cast<int>(x) - static_cast<int>(y);
  }
}

}  // namespace korvalen::platform
