#include "korvalen/platform/internal/directories.h"

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {
namespace {

DWORD attributes_of(const wchar_t* name) {
  return name != nullptr ? GetFileAttributesW(name) : INVALID_FILE_ATTRIBUTES;
}

}  // namespace

bool is_link(const wchar_t* name) {
  const DWORD a = attributes_of(name);
  return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

int remove_link(const wchar_t* name) {
  const DWORD a = attributes_of(name);
  if (a == INVALID_FILE_ATTRIBUTES || (a & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return -1;
  // A directory link goes as a directory, which removes the link and leaves
  // the target's contents alone.
  const BOOL done =
      (a & FILE_ATTRIBUTE_DIRECTORY) != 0 ? RemoveDirectoryW(name) : DeleteFileW(name);
  return done ? 0 : -1;
}

}  // namespace korvalen::platform
