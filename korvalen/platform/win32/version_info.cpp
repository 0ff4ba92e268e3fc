// Version resources over Win32.
#include "korvalen/platform/internal/version_info.h"

#include <windows.h>

namespace korvalen::platform {

std::uint16_t user_default_language() { return GetUserDefaultLangID(); }

namespace native {

std::error_code read_version_resource(const wchar_t* file, std::vector<std::uint8_t>& resource) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(file, &ignored);
  if (size == 0) return {};
  resource.resize(size);
  if (!GetFileVersionInfoW(file, 0, size, resource.data())) {
    resource.clear();
    return std::error_code(static_cast<int>(GetLastError()), std::system_category());
  }
  return {};
}

}  // namespace native
}  // namespace korvalen::platform
