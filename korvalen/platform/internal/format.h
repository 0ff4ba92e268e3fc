// Wide formatted output with the Windows conventions: in a wide format "%s"
// and "%c" take wide arguments, "%S" and "%C" 8-bit ones, "%hs"/"%ls" say so
// explicitly, and "%I64d" is a 64-bit integer.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace korvalen::platform {

// Writes at most capacity-1 characters and always terminates (capacity > 0).
// Returns the length, or -1 when the text did not fit or the format failed.
int format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args);

}  // namespace korvalen::platform
