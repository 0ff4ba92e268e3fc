// Directory searches over the C runtime's _wfindfirst64i32, and entries over
// the Win32 attribute calls.
#include "korvalen/platform/internal/directory_search.h"

#include <io.h>

#include <cerrno>
#include <cwchar>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

void from_find_data(const _wfinddata64i32_t& data, DirectoryEntry& entry) {
  static_assert(sizeof(data.name) / sizeof(data.name[0]) == kEntryNameChars);
  std::wmemcpy(entry.name, data.name, kEntryNameChars);
  entry.name[kEntryNameChars - 1] = 0;
  entry.attributes = data.attrib;
  entry.created = data.time_create;
  entry.accessed = data.time_access;
  entry.written = data.time_write;
  entry.size = data.size;
}

// FILETIME counts 100 ns from 1601.
long long unix_seconds(const FILETIME& time) {
  constexpr unsigned long long kTicksTo1970 = 116444736000000000ULL;
  const unsigned long long ticks =
      (static_cast<unsigned long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
  return ticks < kTicksTo1970 ? 0 : static_cast<long long>((ticks - kTicksTo1970) / 10000000ULL);
}

std::error_code last_error() {
  const DWORD error = GetLastError();
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
    return make_error(std::errc::no_such_file_or_directory);
  }
  return std::error_code(static_cast<int>(error), std::system_category());
}

}  // namespace

namespace native {

std::error_code find_first(const wchar_t* pattern, SearchHandle& handle, DirectoryEntry& entry) {
  _wfinddata64i32_t data;
  const intptr_t found = _wfindfirst64i32(pattern, &data);
  if (found == -1) return errno_error();
  from_find_data(data, entry);
  handle = found;
  return {};
}

std::error_code find_next(SearchHandle handle, DirectoryEntry& entry) {
  _wfinddata64i32_t data;
  if (_wfindnext64i32(handle, &data) != 0) return errno_error();
  from_find_data(data, entry);
  return {};
}

std::error_code find_close(SearchHandle handle) {
  return _findclose(handle) == 0 ? std::error_code() : errno_error();
}

std::error_code entry_status(const wchar_t* name, DirectoryEntry& entry) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(name, GetFileExInfoStandard, &data)) return last_error();
  const wchar_t* base = name;
  for (const wchar_t* p = name; *p != 0; ++p) {
    if (*p == L'\\' || *p == L'/' || *p == L':') base = p + 1;
  }
  std::wcsncpy(entry.name, base, kEntryNameChars - 1);
  entry.attributes = data.dwFileAttributes == FILE_ATTRIBUTE_NORMAL ? 0 : data.dwFileAttributes;
  entry.created = unix_seconds(data.ftCreationTime);
  entry.accessed = unix_seconds(data.ftLastAccessTime);
  entry.written = unix_seconds(data.ftLastWriteTime);
  entry.size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
  return {};
}

std::error_code remove_link(const wchar_t* name) {
  const DWORD a = GetFileAttributesW(name);
  if (a == INVALID_FILE_ATTRIBUTES) return last_error();
  if ((a & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return make_error(std::errc::invalid_argument);
  // A directory link goes as a directory, which removes the link and leaves
  // the target's contents alone.
  const BOOL done =
      (a & FILE_ATTRIBUTE_DIRECTORY) != 0 ? RemoveDirectoryW(name) : DeleteFileW(name);
  return done ? std::error_code() : last_error();
}

}  // namespace native

}  // namespace korvalen::platform
