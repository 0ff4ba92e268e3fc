// The C libraries of the POSIX systems round decimal texts correctly.
#include "korvalen/platform/internal/decimal_reals.h"

namespace korvalen::platform {

bool runtime_rounds_decimals_exactly() { return true; }

}  // namespace korvalen::platform
