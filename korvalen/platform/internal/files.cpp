// The portable part of the file calls: argument checks and the failure
// values, once for both systems.
#include "korvalen/platform/internal/files.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

bool is_name(const wchar_t* name) { return name != nullptr && *name != 0; }

std::error_code invalid() { return make_error(std::errc::invalid_argument); }

}  // namespace

std::error_code open_file(const wchar_t* name, const wchar_t* mode, int share_flag, FILE*& file) {
  file = nullptr;
  if (!is_name(name) || mode == nullptr) return invalid();
  return guarded([&] { return native::open_file(name, mode, share_flag, file); });
}

std::error_code open_replaced_file(const wchar_t* name, const wchar_t* mode, FILE*& file) {
  file = nullptr;
  if (!is_name(name) || mode == nullptr) return invalid();
  return guarded([&] { return native::open_replaced_file(name, mode, file); });
}

std::error_code access_file(const wchar_t* name, int mode) {
  if (name == nullptr) return invalid();
  return guarded([&] { return native::access_file(name, mode); });
}

std::error_code change_mode(const wchar_t* name, int permission) {
  if (name == nullptr) return invalid();
  return guarded([&] { return native::change_mode(name, permission); });
}

std::error_code change_directory(const wchar_t* name) {
  if (name == nullptr) return invalid();
  return guarded([&] { return native::change_directory(name); });
}

std::error_code make_directory(const wchar_t* name) {
  if (name == nullptr) return invalid();
  return guarded([&] { return native::make_directory(name); });
}

std::error_code remove_directory(const wchar_t* name) {
  if (name == nullptr) return invalid();
  return guarded([&] { return native::remove_directory(name); });
}

std::error_code remove_file(const wchar_t* name) {
  if (name == nullptr) return invalid();
  return guarded([&] { return native::remove_file(name); });
}

std::error_code rename_file(const wchar_t* old_name, const wchar_t* new_name) {
  if (old_name == nullptr || new_name == nullptr) return invalid();
  return guarded([&] { return native::rename_file(old_name, new_name); });
}

std::error_code replace_file(const wchar_t* work_name, const wchar_t* target) {
  if (work_name == nullptr || target == nullptr) return invalid();
  return guarded([&] { return native::replace_file(work_name, target); });
}

std::error_code current_directory(wchar_t* buffer, int capacity) {
  if (buffer == nullptr || capacity <= 0) return invalid();
  return guarded([&] { return native::current_directory(buffer, capacity); });
}

std::error_code search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  if (result == nullptr) return invalid();
  result[0] = 0;
  if (!is_name(file) || variable == nullptr)
    return make_error(std::errc::no_such_file_or_directory);
  const std::error_code error = guarded([&] { return native::search_env(file, variable, result); });
  if (error) result[0] = 0;
  return error;
}

std::error_code executable_path(wchar_t* buffer, int capacity) {
  if (buffer == nullptr || capacity <= 0) return invalid();
  buffer[0] = 0;
  const std::error_code error = guarded([&] { return native::executable_path(buffer, capacity); });
  if (error) buffer[0] = 0;
  return error;
}

}  // namespace korvalen::platform
