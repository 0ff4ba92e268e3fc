// COM start-up: the suite's programs initialise COM once per thread when they
// start, and the library does it for them where it changes their directory.
// Systems without COM have nothing to start.
#pragma once

#include <system_error>

namespace korvalen::platform {

// CoInitialize for the calling thread; a repeated call is harmless. Fails
// when the thread's apartment was set up differently, which leaves it as it is.
std::error_code start_com();

}  // namespace korvalen::platform
