// The system ANSI code page, through the Win32 conversion calls with no flags:
// the default character for what the code page cannot hold is the zero byte.
#include "korvalen/platform/internal/text_codec.h"

#include <climits>
#include <cstring>
#include <cwchar>

#include "korvalen/platform/internal/line_conversion.h"
#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

wchar_t ansi_char_to_wide(unsigned char c) {
  char in = static_cast<char>(c);
  wchar_t out = 0;
  if (c == 0 || MultiByteToWideChar(CP_ACP, 0, &in, 1, &out, 1) != 1) return 0;
  return out;
}

char wide_char_to_ansi(wchar_t c) {
  char out = 0;
  if (WideCharToMultiByte(CP_ACP, 0, &c, 1, &out, 1, "", nullptr) != 1) return 0;
  return out;
}

int ansi_to_wide(const char* src, wchar_t* dst, int capacity) {
  if (src == nullptr) src = "";
  const std::size_t length = std::strlen(src);
  if (capacity == 0 || dst == nullptr) {
    const int bytes = length > INT_MAX - 1 ? INT_MAX - 1 : static_cast<int>(length);
    return (bytes == 0 ? 0 : MultiByteToWideChar(CP_ACP, 0, src, bytes, nullptr, 0)) + 1;
  }
  return line_to_wide(src, length, dst, capacity);
}

int wide_to_ansi(const wchar_t* src, char* dst, int capacity) {
  if (src == nullptr) src = L"";
  const int needed = WideCharToMultiByte(CP_ACP, 0, src, -1, nullptr, 0, "", nullptr);
  if (capacity == 0 || dst == nullptr) return needed;
  if (capacity < 0) capacity = needed;
  if (needed <= capacity)
    return WideCharToMultiByte(CP_ACP, 0, src, -1, dst, capacity, "", nullptr);
  int chars = static_cast<int>(std::wcslen(src));
  int written = 0;
  while (chars > 0 && capacity > 1) {
    written = WideCharToMultiByte(CP_ACP, 0, src, chars, dst, capacity - 1, "", nullptr);
    if (written > 0) break;
    chars = chars > capacity - 1 ? capacity - 1 : chars - 1;
  }
  dst[written] = 0;
  return 0;
}

}  // namespace korvalen::platform
