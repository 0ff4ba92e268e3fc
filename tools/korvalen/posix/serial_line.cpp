// POSIX: the port handle is the device's descriptor.
#include "../serial_line.h"

#include <termios.h>
#include <unistd.h>

#include <cstdint>

namespace korvalen::tool {

bool error_output_is_terminal() { return isatty(STDERR_FILENO) != 0; }

void drain_port(HANDLE port) { tcdrain(static_cast<int>(reinterpret_cast<std::intptr_t>(port))); }

}  // namespace korvalen::tool
