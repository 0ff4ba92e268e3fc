// The client area of a native window, for the drawing classes that fit a
// view into it.
//
//   RECT area;
//   if (!platform::client_area(window.GetSafeHwnd(), area)) fit(area.right, area.bottom);
#pragma once

#include <system_error>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// GetClientRect of the window: left and top 0, right and bottom its width
// and height. Fails with std::errc::not_supported where the system has no
// native windows of the library's kind (POSIX), otherwise with the system's
// error (a handle that is no window); area is then unchanged.
std::error_code client_area(HWND window, RECT& area);

}  // namespace korvalen::platform
