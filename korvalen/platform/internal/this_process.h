// The running process as the library sees it: its id, and pausing it for a
// while (the back-off of callers waiting for a file that another process
// holds).
#pragma once

namespace korvalen::platform {

unsigned long current_process_id();

// Sleeps at least about that long; 0 only gives up the rest of the time
// slice. Windows sleeps in whole milliseconds (rounded up).
void sleep_microseconds(unsigned microseconds);

}  // namespace korvalen::platform
