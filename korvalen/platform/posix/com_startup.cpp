#include "korvalen/platform/internal/com_startup.h"

namespace korvalen::platform {

std::error_code start_com() { return {}; }

}  // namespace korvalen::platform
