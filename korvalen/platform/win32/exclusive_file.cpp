// Exclusive files over Win32: a handle opened without sharing, and CREATE_NEW.
#include "korvalen/platform/internal/exclusive_file.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/win32/busy_retry.h"

namespace korvalen::platform {
namespace {

std::error_code system_error(DWORD error) {
  return std::error_code(static_cast<int>(error), std::system_category());
}

}  // namespace

namespace native {

std::error_code open_exclusive(const wchar_t* name, FILE*& file) {
  HANDLE h = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
      return make_error(std::errc::device_or_resource_busy);
    }
    return system_error(error);
  }
  const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(h), _O_RDWR | _O_TEXT);
  if (fd == -1) {
    CloseHandle(h);
    return errno_error();
  }
  file = _wfdopen(fd, L"r+t");
  if (file == nullptr) {
    const std::error_code error = errno_error();
    _close(fd);
    return error;
  }
  return {};
}

std::error_code create_new_file(const wchar_t* name) {
  DWORD error = ERROR_SUCCESS;
  // Half a second of refusals: a rename or delete of the name takes moments.
  const bool created = win32::retry_while_busy(
      [&] {
        HANDLE h =
            CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (h == INVALID_HANDLE_VALUE) {
          error = GetLastError();
          return false;
        }
        CloseHandle(h);
        return true;
      },
      [&] { return win32::is_busy(error); }, win32::kBusyAttempts / 2);
  if (created) return {};
  if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS) {
    return make_error(std::errc::file_exists);
  }
  return system_error(error);
}

}  // namespace native

}  // namespace korvalen::platform
