// The Microsoft runtime's own wide printf, whose "%s" is wide in a wide format.
#include "korvalen/platform/format.h"

#include <stdio.h>
#include <wchar.h>

namespace korvalen::platform {

int format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args) {
  if (buffer == nullptr || capacity == 0) return -1;
  buffer[0] = 0;
  if (format == nullptr) return -1;
  // One place is kept for the terminator, which _vsnwprintf leaves out when
  // the text fills the count exactly.
  const int n = _vsnwprintf(buffer, capacity - 1, format, args);
  buffer[n >= 0 ? n : capacity - 1] = 0;
  return n;
}

}  // namespace korvalen::platform
