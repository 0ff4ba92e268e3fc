#include "korvalen/foundation/formatted_output.h"

#include <cstdarg>
#include <cstring>
#include <memory>
#include <new>

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/format.h"
#include "korvalen/platform/internal/text_codec.h"

using korvalen::detail::kLineBytes;
using korvalen::detail::kWorkChars;
using korvalen::detail::WideArg;
namespace platform = korvalen::platform;

namespace {

// The length of the formatted text, or -1 when it did not fit or could not be
// formatted, as the runtime's printf functions report it.
int format_into(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args) {
  int length = 0;
  return platform::format_wide(buffer, capacity, format, args, length) ? -1 : length;
}

// Formats and writes, the common body of both fPrintf overloads.
int print_to(FILE* stream, const wchar_t* format, va_list args) {
  wchar_t text[kWorkChars];
  const int length = format_into(text, kWorkChars, format, args);
  if (length < 1) return length;
  char bytes[kLineBytes];
  platform::wide_to_ansi(text, bytes, kLineBytes);
  if (stream != nullptr) std::fputs(bytes, stream);
  return length;
}

// swprintf without a count: the result goes to the caller's buffer as long as
// it is, but only the characters of the result are ever written there.
int print_unbounded(wchar_t* buffer, const wchar_t* format, va_list args) {
  if (buffer == nullptr) return -1;
  wchar_t small[kWorkChars];
  va_list copy;
  va_copy(copy, args);
  int length = format_into(small, kWorkChars, format, copy);
  va_end(copy);
  if (length >= 0) {
    std::memcpy(buffer, small, (static_cast<std::size_t>(length) + 1) * sizeof(wchar_t));
    return length;
  }
  for (std::size_t capacity = 16 * kWorkChars; capacity <= (std::size_t{1} << 22); capacity *= 4) {
    std::unique_ptr<wchar_t[]> big(new (std::nothrow) wchar_t[capacity]);
    if (!big) break;
    va_copy(copy, args);
    length = format_into(big.get(), capacity, format, copy);
    va_end(copy);
    if (length >= 0) {
      std::memcpy(buffer, big.get(), (static_cast<std::size_t>(length) + 1) * sizeof(wchar_t));
      return length;
    }
  }
  buffer[0] = 0;
  return -1;
}

}  // namespace

int sPrintf(wchar_t* buffer, const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = print_unbounded(buffer, format, args);
  va_end(args);
  return length;
}
int sPrintf(wchar_t* buffer, const char* format, ...) {
  WideArg wide_format(format);
  va_list args;
  va_start(args, format);
  const int length = print_unbounded(buffer, wide_format.get(), args);
  va_end(args);
  return length;
}

int fPrintf(FILE* stream, const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = print_to(stream, format, args);
  va_end(args);
  return length;
}
int fPrintf(FILE* stream, const char* format, ...) {
  WideArg wide_format(format);
  va_list args;
  va_start(args, format);
  const int length = print_to(stream, wide_format.get(), args);
  va_end(args);
  return length;
}
