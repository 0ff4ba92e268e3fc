// The clock of the launch and window waits: 100 ms between two looks at a
// started program, in the library's own tests shorter.
//
// The test mode: when the environment variable KORVALEN_TEST_TIME_DIVISOR
// holds a number from 2 to 1000 at the moment a wait starts, the interval is
// 100 ms divided by it (so ActivarEjecutableVnt's 1000 looks take 100 s / N).
// The tests set it in their own process, which the library shares; a hidden
// symbol of the library would be out of their reach.
//
//   const unsigned interval = korvalen::detail::poll_interval_microseconds();
#pragma once

namespace korvalen::detail {

inline constexpr unsigned kPollMilliseconds = 100;

unsigned poll_interval_microseconds();

}  // namespace korvalen::detail
