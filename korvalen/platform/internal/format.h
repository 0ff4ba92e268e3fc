// Wide formatted output with the Windows conventions: in a wide format "%s"
// and "%c" take wide arguments, "%S" and "%C" 8-bit ones, "%hs"/"%ls" say so
// explicitly, and "%I64d" is a 64-bit integer. Follows the convention of
// error.h.
//
//   int length = 0;
//   if (!platform::format_wide(buffer, capacity, L"A%03d ;", args, length)) { ... }
#pragma once

#include <cstdarg>
#include <cstddef>
#include <system_error>

namespace korvalen::platform {

// Writes at most capacity-1 characters and always terminates (capacity > 0),
// setting length to the text's length. Fails with std::errc::value_too_large
// when the text did not fit or could not be formatted (the runtimes do not
// tell the two apart); the buffer then holds what fitted.
std::error_code format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                            va_list args, int& length);

// Each system's implementation, for the portable layer (format.cpp) only: the
// buffer is not null, capacity is above zero, the buffer is empty, format is
// not null, and an allocation failure may throw. Returns the length, or -1
// when the text did not fit or could not be formatted.
namespace native {
int format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args);
}  // namespace native

}  // namespace korvalen::platform
