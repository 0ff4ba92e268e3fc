// fabs under its C name. This file must not see <cmath>/<math.h>: MinGW's
// optimised builds define fabs inline there, which would clash with this
// definition.
#include <bit>
#include <cstdint>

#include "korvalen/foundation/number_functions.h"

extern "C" double fabs(double value) KORVALEN_CRT_NOEXCEPT {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) & ~(std::uint64_t{1} << 63));
}
