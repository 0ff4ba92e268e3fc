// What the send command asks of the system beside the library: whether
// standard error is a terminal (for the progress bar), and waiting until a
// port has put out everything written to it, before closing it purges what
// is left.
#pragma once

#include "korvalen/platform/windows_types.h"

namespace korvalen::tool {

bool error_output_is_terminal();
void drain_port(HANDLE port);

}  // namespace korvalen::tool
