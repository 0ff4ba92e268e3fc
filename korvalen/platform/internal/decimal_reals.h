// What the C runtime's wcstod promises for decimal texts. The library reads
// simple decimals itself only where its result is then bit for bit the
// runtime's, since aTof and StrTod must give exactly what the runtime gives.
#pragma once

namespace korvalen::platform {

// True when wcstod gives the correctly rounded double of every decimal text
// (in the current rounding direction).
bool runtime_rounds_decimals_exactly();

}  // namespace korvalen::platform
