// Resource libraries over Win32: LoadLibraryW, LoadStringW, FindResourceW.
#include <windows.h>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/resource_module.h"

namespace korvalen::platform::native {
namespace {

std::error_code last_error() {
  return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

}  // namespace

std::error_code load_resource_module(const wchar_t* path, HMODULE& module) {
  module = LoadLibraryW(path);
  if (module != nullptr) return {};
  // A library built for the other word size (the suite's 32-bit language
  // libraries in a 64-bit program) cannot be loaded to run, but its
  // resources can be read all the same.
  if (GetLastError() != ERROR_BAD_EXE_FORMAT) return last_error();
  module = LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE);
  return module != nullptr ? std::error_code() : last_error();
}

std::error_code free_resource_module(HMODULE module) {
  return FreeLibrary(module) ? std::error_code() : last_error();
}

std::error_code load_string(HMODULE module, unsigned id, wchar_t* buffer, int capacity,
                            int& length) {
  length = LoadStringW(module, id, buffer, capacity);
  if (length <= 0) {
    length = 0;
    buffer[0] = 0;
  }
  return {};
}

std::error_code find_resource(HMODULE module, std::uint32_t type, std::uint32_t name,
                              std::span<const std::uint8_t>& data) {
  HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(name), MAKEINTRESOURCEW(type));
  if (found == nullptr) return {};
  HGLOBAL loaded = LoadResource(module, found);
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes == nullptr) return last_error();
  data = std::span<const std::uint8_t>(static_cast<const std::uint8_t*>(bytes),
                                       SizeofResource(module, found));
  return {};
}

}  // namespace korvalen::platform::native
