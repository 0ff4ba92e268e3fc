// The running process over POSIX.
#include "korvalen/platform/internal/this_process.h"

#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace korvalen::platform {

unsigned long current_process_id() { return static_cast<unsigned long>(::getpid()); }

void sleep_microseconds(unsigned microseconds) {
  if (microseconds == 0) {
    sched_yield();
    return;
  }
  timespec left{static_cast<time_t>(microseconds / 1000000),
                static_cast<long>(microseconds % 1000000) * 1000};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

}  // namespace korvalen::platform
