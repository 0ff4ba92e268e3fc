#include "korvalen/machine/internal/wait_clock.h"

#include <cstdlib>

namespace korvalen::detail {

unsigned poll_interval_microseconds() {
  unsigned divisor = 1;
  if (const char* text = std::getenv("KORVALEN_TEST_TIME_DIVISOR")) {
    const long value = std::strtol(text, nullptr, 10);
    if (value >= 2 && value <= 1000) divisor = static_cast<unsigned>(value);
  }
  return kPollMilliseconds * 1000 / divisor;
}

}  // namespace korvalen::detail
