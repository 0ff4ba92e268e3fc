// The system's object linking services (COM on Windows), which the suite's
// programs initialise once per thread at start. Other systems have nothing to
// initialise.
#pragma once

namespace korvalen::platform {

// Initialises them for the calling thread; a repeated call is harmless.
void initialize_object_linking();

}  // namespace korvalen::platform
