// The client area of a window through GetClientRect.
#include "korvalen/platform/internal/window_geometry.h"

namespace korvalen::platform {

std::error_code client_area(HWND window, RECT& area) {
  RECT rect;
  if (!::GetClientRect(window, &rect)) {
    return std::error_code(static_cast<int>(GetLastError()), std::system_category());
  }
  area = rect;
  return {};
}

}  // namespace korvalen::platform
