// Version resources over POSIX: read from the file as a PE image.
#include "korvalen/platform/internal/version_info.h"

#include "korvalen/platform/internal/pe_image.h"
#include "korvalen/platform/internal/resource_module.h"

namespace korvalen::platform {

std::uint16_t user_default_language() { return 0x0409; }

namespace native {

std::error_code read_version_resource(const wchar_t* file, std::vector<std::uint8_t>& resource) {
  HMODULE module = nullptr;
  if (const std::error_code error = load_resource_module(file, module)) return error;
  std::span<const std::uint8_t> data;
  find_resource(module, kResourceVersion, 1, data);
  resource.assign(data.begin(), data.end());
  free_resource_module(module);
  return {};
}

}  // namespace native
}  // namespace korvalen::platform
