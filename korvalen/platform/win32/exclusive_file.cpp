// Exclusive files over Win32: a handle opened without sharing, and CREATE_NEW.
#include "korvalen/platform/internal/exclusive_file.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace korvalen::platform {

FILE* open_exclusive(const wchar_t* name, bool* busy) {
  bool ignored = false;
  if (busy == nullptr) busy = &ignored;
  *busy = false;
  if (name == nullptr || *name == 0) return nullptr;
  HANDLE h = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    *busy = error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
    return nullptr;
  }
  const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(h), _O_RDWR | _O_TEXT);
  if (fd == -1) {
    CloseHandle(h);
    return nullptr;
  }
  FILE* f = _wfdopen(fd, L"r+t");
  if (f == nullptr) _close(fd);
  return f;
}

CreateResult create_new_file(const wchar_t* name) {
  if (name == nullptr || *name == 0) return CreateResult::kFailed;
  HANDLE h =
      CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS ? CreateResult::kExists
                                                                       : CreateResult::kFailed;
  }
  CloseHandle(h);
  return CreateResult::kCreated;
}

}  // namespace korvalen::platform
