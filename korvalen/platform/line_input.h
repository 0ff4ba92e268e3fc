// The conversion of a line read from a settings file, whose length the
// reader already knows, from the ANSI code page to wide text. It gives what
// ansi_to_wide gives for the same text, without scanning the bytes once more
// for their end where the system conversion allows it.
//
//   const std::size_t length = std::strlen(bytes);  // known from reading
//   line_to_wide(bytes, length, out, capacity);
#pragma once

#include <cstddef>

namespace korvalen::platform {

// Converts the first length bytes (none of them NUL) as ansi_to_wide converts
// a text of that length: at most capacity - 1 characters (capacity < 0: all),
// terminated. Returns length + 1, or 0 when the text had to be cut. capacity
// must not be 0 and dst not null; bytes[length] is not looked at.
int line_to_wide(const char* bytes, std::size_t length, wchar_t* dst, int capacity);

}  // namespace korvalen::platform
