// Internal: reals written as fixed-point text, the way "%1.3f" and "%1.6f"
// write them, with one rounding rule on every system.
//
//   wchar_t digits[80];
//   korvalen::detail::format_fixed(digits, 80, value, 3);  // "0.063" for 0.0625
#pragma once

#include <cstddef>

namespace korvalen::detail {

// value with decimals (0 to 9) digits after the point, as "%1.<decimals>f"
// writes it, into buffer: at most capacity - 1 characters, always terminated
// (capacity > 0). A value exactly halfway between two results (0.0625 with 3
// decimals) rounds away from zero, as the Windows runtime that wrote the
// suite's files rounds it; C libraries that round such halves to even would
// otherwise write binary fractions like 1/16 differently on each system.
// Returns the length, or -1 when the text did not fit.
int format_fixed(wchar_t* buffer, std::size_t capacity, double value, int decimals);

}  // namespace korvalen::detail
