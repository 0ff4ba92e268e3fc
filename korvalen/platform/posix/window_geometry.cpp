// POSIX: the library draws into no native window, so no handle has a client
// area; the window stand-in carries the size its application gave it.
#include "korvalen/platform/internal/window_geometry.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code client_area(HWND /*window*/, RECT& /*area*/) {
  return make_error(std::errc::not_supported);
}

}  // namespace korvalen::platform
