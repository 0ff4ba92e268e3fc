// The portable part of formatted output: argument checks and failure values.
#include "korvalen/platform/internal/format.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                            va_list args, int& length) {
  length = 0;
  if (buffer == nullptr || capacity == 0) return make_error(std::errc::invalid_argument);
  buffer[0] = 0;
  if (format == nullptr) return make_error(std::errc::invalid_argument);
  const std::error_code error = guarded([&] {
    length = native::format_wide(buffer, capacity, format, args);
    return length >= 0 ? std::error_code() : make_error(std::errc::value_too_large);
  });
  if (error) {
    length = 0;
    buffer[capacity - 1] = 0;
  }
  return error;
}

}  // namespace korvalen::platform
