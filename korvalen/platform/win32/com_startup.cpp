#include "korvalen/platform/internal/com_startup.h"

#include <objbase.h>

namespace korvalen::platform {

std::error_code start_com() {
  // Each call is counted and never balanced: COM stays up for the life of the
  // thread, as the programs expect.
  const HRESULT result = CoInitialize(nullptr);
  if (SUCCEEDED(result)) return {};
  return std::error_code(static_cast<int>(result), std::system_category());
}

}  // namespace korvalen::platform
