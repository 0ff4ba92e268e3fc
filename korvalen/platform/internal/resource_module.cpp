// The portable part of resource libraries: argument checks and cleared
// outputs.
#include "korvalen/platform/internal/resource_module.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

std::error_code invalid() { return make_error(std::errc::invalid_argument); }

}  // namespace

std::error_code load_resource_module(const wchar_t* path, HMODULE& module) {
  module = nullptr;
  if (path == nullptr || *path == 0) return invalid();
  const std::error_code error = guarded([&] { return native::load_resource_module(path, module); });
  if (error) module = nullptr;
  return error;
}

std::error_code free_resource_module(HMODULE module) {
  if (module == nullptr) return invalid();
  return guarded([&] { return native::free_resource_module(module); });
}

std::error_code load_string(HMODULE module, unsigned id, wchar_t* buffer, int capacity,
                            int& length) {
  length = 0;
  if (buffer == nullptr || capacity <= 0) return invalid();
  buffer[0] = 0;
  if (module == nullptr) return invalid();
  const std::error_code error =
      guarded([&] { return native::load_string(module, id, buffer, capacity, length); });
  if (error) {
    length = 0;
    buffer[0] = 0;
  }
  return error;
}

std::error_code find_resource(HMODULE module, std::uint32_t type, std::uint32_t name,
                              std::span<const std::uint8_t>& data) {
  data = {};
  if (module == nullptr) return invalid();
  return guarded([&] { return native::find_resource(module, type, name, data); });
}

}  // namespace korvalen::platform
