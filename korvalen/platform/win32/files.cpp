// The C runtime's wide file calls, as the suite has always used them.
#include "korvalen/platform/internal/files.h"

#include <direct.h>
#include <io.h>
#include <share.h>
#include <stdlib.h>
#include <wchar.h>

#include <cerrno>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/win32/busy_retry.h"

namespace korvalen::platform {
namespace {

// The result of a runtime call that sets errno on failure.
std::error_code checked(int result) { return result == 0 ? std::error_code() : errno_error(); }

}  // namespace

namespace native {

std::error_code open_file(const wchar_t* name, const wchar_t* mode, int share_flag, FILE*& file) {
  if (share_flag < 0) {
    const errno_t error = _wfopen_s(&file, name, mode);
    if (error != 0) file = nullptr;
    return error == 0 ? std::error_code() : std::error_code(error, std::generic_category());
  }
  file = _wfsopen(name, mode, share_flag);
  return file != nullptr ? std::error_code() : errno_error();
}

std::error_code open_replaced_file(const wchar_t* name, const wchar_t* mode, FILE*& file) {
  std::error_code error;
  win32::retry_while_busy([&] { return !(error = open_file(name, mode, -1, file)); },
                          [&] { return _waccess(name, 0) == 0; });
  return error;
}

std::error_code access_file(const wchar_t* name, int mode) {
  const errno_t error = _waccess_s(name, mode);
  return error == 0 ? std::error_code() : std::error_code(error, std::generic_category());
}

std::error_code change_mode(const wchar_t* name, int permission) {
  return checked(_wchmod(name, permission));
}
std::error_code change_directory(const wchar_t* name) { return checked(_wchdir(name)); }
std::error_code make_directory(const wchar_t* name) { return checked(_wmkdir(name)); }
std::error_code remove_directory(const wchar_t* name) { return checked(_wrmdir(name)); }
std::error_code remove_file(const wchar_t* name) { return checked(_wremove(name)); }

std::error_code rename_file(const wchar_t* old_name, const wchar_t* new_name) {
  return checked(_wrename(old_name, new_name));
}

std::error_code replace_file(const wchar_t* work_name, const wchar_t* target) {
  DWORD error = ERROR_SUCCESS;
  return win32::move_file_while_busy(work_name, target,
                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH, error)
             ? std::error_code()
             : std::error_code(static_cast<int>(error), std::system_category());
}

std::error_code current_directory(wchar_t* buffer, int capacity) {
  return _wgetcwd(buffer, capacity) != nullptr ? std::error_code() : errno_error();
}

std::error_code search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  const errno_t error = _wsearchenv_s(file, variable, result, MAX_PATH);
  if (error != 0) return std::error_code(error, std::generic_category());
  return result[0] != 0 ? std::error_code() : make_error(std::errc::no_such_file_or_directory);
}

std::error_code executable_path(wchar_t* buffer, int capacity) {
  const DWORD n = GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(capacity));
  if (n == 0) return std::error_code(static_cast<int>(GetLastError()), std::system_category());
  if (n >= static_cast<DWORD>(capacity)) return make_error(std::errc::result_out_of_range);
  return {};
}

}  // namespace native

}  // namespace korvalen::platform
