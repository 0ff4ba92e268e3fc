// Internal to the POSIX layer: a stdio stream over a file descriptor that
// behaves as a Windows text-mode stream, so files are byte-identical to those
// the library writes on Windows.
#pragma once

#include <cstdio>

namespace korvalen::platform::posix {

// Reading folds CR LF into LF and stops at Ctrl-Z; writing turns LF into CR LF.
// Takes ownership of fd; returns null (closing fd) on failure.
FILE* open_text_stream(int fd, const char* stdio_mode);

}  // namespace korvalen::platform::posix
