// The C runtime's wide file calls, as the suite has always used them.
#include "korvalen/platform/internal/files.h"

#include <direct.h>
#include <share.h>
#include <stdlib.h>
#include <wchar.h>

#include <cerrno>

namespace korvalen::platform {

FILE* open_file(const wchar_t* name, const wchar_t* mode, int share_flag, int* error) {
  int ignored = 0;
  if (error == nullptr) error = &ignored;
  if (name == nullptr || mode == nullptr || *name == 0) {
    *error = EINVAL;
    return nullptr;
  }
  if (share_flag < 0) {
    FILE* f = nullptr;
    *error = _wfopen_s(&f, name, mode);
    return *error == 0 ? f : nullptr;
  }
  FILE* f = _wfsopen(name, mode, share_flag);
  *error = f != nullptr ? 0 : errno;
  return f;
}

int access_file(const wchar_t* name, int mode) {
  if (name == nullptr) return EINVAL;
  return _waccess_s(name, mode);
}

int change_mode(const wchar_t* name, int permission) {
  return name != nullptr ? _wchmod(name, permission) : -1;
}
int change_directory(const wchar_t* name) { return name != nullptr ? _wchdir(name) : -1; }
int make_directory(const wchar_t* name) { return name != nullptr ? _wmkdir(name) : -1; }
int remove_directory(const wchar_t* name) { return name != nullptr ? _wrmdir(name) : -1; }
int remove_file(const wchar_t* name) { return name != nullptr ? _wremove(name) : -1; }

int rename_file(const wchar_t* old_name, const wchar_t* new_name) {
  if (old_name == nullptr || new_name == nullptr) return -1;
  return _wrename(old_name, new_name);
}

int replace_file(const wchar_t* work_name, const wchar_t* target) {
  if (work_name == nullptr || target == nullptr) return -1;
  return MoveFileExW(work_name, target, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ? 0
                                                                                            : -1;
}

wchar_t* current_directory(wchar_t* buffer, int capacity) {
  if (buffer == nullptr || capacity <= 0) return nullptr;
  return _wgetcwd(buffer, capacity);
}

intptr_t find_first(const wchar_t* pattern, _wfinddata64i32_t* data) {
  if (pattern == nullptr || data == nullptr) return -1;
  return _wfindfirst64i32(pattern, data);
}

int find_next(intptr_t handle, _wfinddata64i32_t* data) {
  if (handle == -1 || data == nullptr) return -1;
  return _wfindnext64i32(handle, data);
}

int find_close(intptr_t handle) { return handle == -1 ? -1 : _findclose(handle); }

void search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  if (result == nullptr) return;
  result[0] = 0;
  if (file == nullptr || variable == nullptr) return;
  _wsearchenv_s(file, variable, result, MAX_PATH);
}

void executable_path(wchar_t* buffer, int capacity) {
  if (buffer == nullptr || capacity <= 0) return;
  const DWORD n = GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(capacity));
  if (n == 0 || n >= static_cast<DWORD>(capacity)) buffer[0] = 0;
}

}  // namespace korvalen::platform
