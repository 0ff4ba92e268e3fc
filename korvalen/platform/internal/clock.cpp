// The portable part of the clock: argument checks and failure values.
#include "korvalen/platform/internal/clock.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                            const std::tm& tm, std::size_t& length) {
  length = 0;
  if (buffer == nullptr || capacity == 0 || format == nullptr) {
    return make_error(std::errc::invalid_argument);
  }
  length = native::format_time(buffer, capacity, format, tm);
  if (length > 0) return {};
  buffer[0] = 0;
  return make_error(std::errc::value_too_large);
}

}  // namespace korvalen::platform
