// The msvcrt.dll runtime the library links does not round every decimal text
// correctly (under Wine "2930820.366102" comes out one unit in the last place
// off), so a correctly rounded result could differ from its own.
#include "korvalen/platform/internal/decimal_reals.h"

namespace korvalen::platform {

bool runtime_rounds_decimals_exactly() { return false; }

}  // namespace korvalen::platform
