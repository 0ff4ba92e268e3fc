// Lines of known length through the system conversion of the ANSI code page,
// which takes a length and so never scans for the end itself.
#include "korvalen/platform/internal/line_conversion.h"

#include <climits>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

int line_to_wide(const char* bytes, std::size_t length, wchar_t* dst, int capacity) {
  int count = length > INT_MAX - 1 ? INT_MAX - 1 : static_cast<int>(length);
  const int needed =
      (count == 0 ? 0 : MultiByteToWideChar(CP_ACP, 0, bytes, count, nullptr, 0)) + 1;
  if (capacity < 0) capacity = needed;
  if (needed <= capacity) {
    if (count > 0) MultiByteToWideChar(CP_ACP, 0, bytes, count, dst, capacity);
    dst[needed - 1] = 0;
    return needed;
  }
  // Too long: convert the bytes that fit and terminate, so the result is cut
  // rather than left unterminated.
  int written = 0;
  while (count > 0 && capacity > 1) {
    written = MultiByteToWideChar(CP_ACP, 0, bytes, count, dst, capacity - 1);
    if (written > 0) break;
    count = count > capacity - 1 ? capacity - 1 : count - 1;
  }
  dst[written] = 0;
  return 0;
}

}  // namespace korvalen::platform
