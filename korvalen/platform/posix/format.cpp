// glibc's wide printf follows ISO C ("%s" is 8-bit); the suite's formats follow
// Windows ("%s" is wide in a wide format). The format is rewritten before it
// is handed to vswprintf.
#include "korvalen/platform/format.h"

#include <cwchar>
#include <string>

namespace korvalen::platform {
namespace {

bool is_flag_or_width(wchar_t c) {
  return c == L'-' || c == L'+' || c == L' ' || c == L'#' || c == L'0' || c == L'*' || c == L'.' ||
         (c >= L'1' && c <= L'9');
}

template <typename Out>
void translate(const wchar_t* format, Out& out) {
  for (const wchar_t* p = format; *p != 0;) {
    if (*p != L'%') {
      out.push_back(*p++);
      continue;
    }
    out.push_back(*p++);
    if (*p == L'%') {
      out.push_back(*p++);
      continue;
    }
    while (is_flag_or_width(*p)) out.push_back(*p++);
    // Length prefix: Windows' h (8-bit), l/w (wide), I64/I32/I.
    wchar_t size = 0;
    if (*p == L'h' && (p[1] == L's' || p[1] == L'c' || p[1] == L'S' || p[1] == L'C')) {
      size = L'h';
      ++p;
    } else if ((*p == L'l' || *p == L'w') &&
               (p[1] == L's' || p[1] == L'c' || p[1] == L'S' || p[1] == L'C')) {
      size = L'l';
      ++p;
    } else if (p[0] == L'I' && p[1] == L'6' && p[2] == L'4') {
      out.push_back(L'l');
      out.push_back(L'l');
      p += 3;
    } else if (p[0] == L'I' && p[1] == L'3' && p[2] == L'2') {
      p += 3;
    } else if (p[0] == L'I') {
      out.push_back(L'z');
      ++p;
    }
    const wchar_t conv = *p;
    if (conv == L's' || conv == L'c' || conv == L'S' || conv == L'C') {
      const bool upper = conv == L'S' || conv == L'C';
      const bool wide = size == L'l' || (size == 0 && !upper);
      if (wide) out.push_back(L'l');
      out.push_back(upper ? static_cast<wchar_t>(conv + (L'a' - L'A')) : conv);
      ++p;
      continue;
    }
    // Copy the rest of the directive (length letters and conversion).
    while (*p != 0) {
      const wchar_t c = *p++;
      out.push_back(c);
      if (!(c == L'h' || c == L'l' || c == L'L' || c == L'j' || c == L'z' || c == L't' ||
            c == L'q')) {
        break;
      }
    }
  }
  out.push_back(0);
}

// A fixed buffer for the usual short formats, the heap only for long ones.
struct SmallBuffer {
  wchar_t data[512];
  std::size_t size = 0;
  std::wstring spill;
  bool spilled = false;
  void push_back(wchar_t c) {
    if (!spilled && size < sizeof(data) / sizeof(data[0])) {
      data[size++] = c;
      return;
    }
    if (!spilled) {
      spill.assign(data, size);
      spilled = true;
    }
    spill.push_back(c);
  }
  const wchar_t* c_str() const { return spilled ? spill.c_str() : data; }
};

}  // namespace

int format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args) {
  try {
    if (buffer == nullptr || capacity == 0) return -1;
    if (format == nullptr) {
      buffer[0] = 0;
      return -1;
    }
    SmallBuffer translated;
    translate(format, translated);
    const int n = std::vswprintf(buffer, capacity, translated.c_str(), args);
    if (n < 0) buffer[capacity - 1] = 0;
    return n;
  } catch (...) {
    // Only allocation can throw here; it reads as a failed call.
    buffer[0] = 0;
    return -1;
  }
}

}  // namespace korvalen::platform
