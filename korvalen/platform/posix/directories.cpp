#include "korvalen/platform/internal/directories.h"

#include <sys/stat.h>
#include <unistd.h>

#include "korvalen/platform/posix/native_path.h"

namespace korvalen::platform {

bool is_link(const wchar_t* name) {
  if (name == nullptr) return false;
  struct stat st;
  return lstat(posix::native_path(name).c_str(), &st) == 0 && S_ISLNK(st.st_mode);
}

int remove_link(const wchar_t* name) {
  if (!is_link(name)) return -1;
  return ::unlink(posix::native_path(name).c_str()) == 0 ? 0 : -1;
}

}  // namespace korvalen::platform
