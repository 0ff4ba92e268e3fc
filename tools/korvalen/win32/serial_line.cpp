#include "../serial_line.h"

#include <io.h>
#include <windows.h>

#include <cstdio>

namespace korvalen::tool {

bool error_output_is_terminal() { return _isatty(_fileno(stderr)) != 0; }

// For a communications port this waits until the transmit buffer is empty.
void drain_port(HANDLE port) { FlushFileBuffers(port); }

}  // namespace korvalen::tool
