// Converting a line of a settings file, whose length the reader already
// knows, from the ANSI code page to wide text. It gives what ansi_to_wide
// gives for the same text, without scanning the bytes once more for their
// end; settings readers convert every line they read this way.
//
//   const std::size_t length = line_end - bytes;  // known from reading
//   line_to_wide(bytes, length, out, capacity);
#pragma once

#include <cstddef>

namespace korvalen::platform {

// Converts the first length bytes as ansi_to_wide converts a text of that
// length: at most capacity - 1 characters (capacity < 0: all), terminated.
// Returns the characters written including the terminator, or 0 when the text
// had to be cut. A NUL byte among them becomes a wide NUL, so the wide text
// ends there too. capacity must not be 0 and dst not null. Nothing from
// bytes[length] on is looked at, so the bytes need no terminator.
int line_to_wide(const char* bytes, std::size_t length, wchar_t* dst, int capacity);

}  // namespace korvalen::platform
