// The portable part of exclusive files: argument checks and failure values.
#include "korvalen/platform/internal/exclusive_file.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code open_exclusive(const wchar_t* name, FILE*& file) {
  file = nullptr;
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  const std::error_code error = guarded([&] { return native::open_exclusive(name, file); });
  if (error) file = nullptr;
  return error;
}

std::error_code create_new_file(const wchar_t* name) {
  if (name == nullptr || *name == 0) return make_error(std::errc::invalid_argument);
  return guarded([&] { return native::create_new_file(name); });
}

}  // namespace korvalen::platform
