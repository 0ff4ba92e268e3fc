// The C runtime's file calls with Windows semantics over POSIX.
#include "korvalen/platform/internal/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/posix/native_path.h"
#include "korvalen/platform/posix/text_stream.h"
#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {
namespace {

using posix::native_path;

// The result of a system call that sets errno on failure.
std::error_code checked(int result) { return result == 0 ? std::error_code() : errno_error(); }

struct Mode {
  int flags = 0;
  const char* stdio = "r";
  bool text = true;
  bool valid = false;
};

// "r", "w", "a", with '+', 'b' or 't' and the Windows extras ("c", "n", "N",
// "S", "R", "T", "D", ",ccs=...") that have no meaning here.
Mode parse_mode(const std::wstring& mode) {
  Mode m;
  if (mode.empty()) return m;
  const bool plus = mode.find(L'+') != std::wstring::npos;
  m.text = mode.find(L'b') == std::wstring::npos;
  switch (mode[0]) {
    case L'r':
      m.flags = plus ? O_RDWR : O_RDONLY;
      m.stdio = plus ? "r+" : "r";
      break;
    case L'w':
      m.flags = (plus ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
      m.stdio = plus ? "w+" : "w";
      break;
    case L'a':
      m.flags = (plus ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
      m.stdio = plus ? "a+" : "a";
      break;
    default:
      return m;
  }
  m.valid = true;
  return m;
}

}  // namespace

namespace native {

std::error_code open_file(const wchar_t* name, const wchar_t* mode, int /*share_flag*/,
                          FILE*& file) {
  const Mode m = parse_mode(mode);
  if (!m.valid) return make_error(std::errc::invalid_argument);
  const std::string path = native_path(name);
  const int fd = ::open(path.c_str(), m.flags | O_CLOEXEC, 0666);
  if (fd < 0) return errno_error();
  struct stat st;
  if (fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
    ::close(fd);
    return make_error(std::errc::permission_denied);
  }
  file = m.text ? posix::open_text_stream(fd, m.stdio) : fdopen(fd, m.stdio);
  if (file == nullptr) {
    const std::error_code error = errno_error();
    if (!m.text) ::close(fd);
    return error;
  }
  return {};
}

// A rename or an unlink never keeps another program from opening a file.
std::error_code open_replaced_file(const wchar_t* name, const wchar_t* mode, FILE*& file) {
  return open_file(name, mode, -1, file);
}

std::error_code access_file(const wchar_t* name, int mode) {
  // Windows knows existence (0), write (2) and read (4); 1 is not a valid mode.
  if ((mode & ~6) != 0) return make_error(std::errc::invalid_argument);
  int how = F_OK;
  if (mode & 2) how |= W_OK;
  if (mode & 4) how |= R_OK;
  return checked(::access(native_path(name).c_str(), how));
}

std::error_code change_mode(const wchar_t* name, int permission) {
  const std::string path = native_path(name);
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return errno_error();
  mode_t m = st.st_mode & 07777;
  // Windows has only the read-only attribute: write permission on or off.
  if (permission & _S_IWRITE) {
    m |= S_IWUSR;
  } else {
    m &= ~(S_IWUSR | S_IWGRP | S_IWOTH);
  }
  return checked(::chmod(path.c_str(), m));
}

std::error_code change_directory(const wchar_t* name) {
  return checked(::chdir(native_path(name).c_str()));
}

std::error_code make_directory(const wchar_t* name) {
  return checked(::mkdir(native_path(name).c_str(), 0777));
}

std::error_code remove_directory(const wchar_t* name) {
  return checked(::rmdir(native_path(name).c_str()));
}

std::error_code remove_file(const wchar_t* name) {
  const std::string path = native_path(name);
  struct stat st;
  // unlink would not refuse a directory on every system; Windows does.
  if (lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
    return make_error(std::errc::permission_denied);
  }
  return checked(::unlink(path.c_str()));
}

std::error_code rename_file(const wchar_t* old_name, const wchar_t* new_name) {
  const std::string from = native_path(old_name);
  const std::string to = native_path(new_name);
  struct stat st;
  if (lstat(to.c_str(), &st) == 0) {
    // Windows refuses to rename onto an existing name, except the same entry
    // under another case.
    struct stat src;
    if (lstat(from.c_str(), &src) != 0 || src.st_ino != st.st_ino || src.st_dev != st.st_dev) {
      return make_error(std::errc::permission_denied);
    }
  }
  return checked(::rename(from.c_str(), to.c_str()));
}

std::error_code replace_file(const wchar_t* work_name, const wchar_t* target) {
  return checked(::rename(native_path(work_name).c_str(), native_path(target).c_str()));
}

std::error_code current_directory(wchar_t* buffer, int capacity) {
  std::vector<char> raw(PATH_MAX + 1);
  if (::getcwd(raw.data(), raw.size()) == nullptr) return errno_error();
  const std::wstring cwd = from_utf8(raw.data());
  if (cwd.size() + 1 > static_cast<std::size_t>(capacity)) {
    return make_error(std::errc::result_out_of_range);
  }
  copy_cut(buffer, capacity, cwd);
  return {};
}

std::error_code search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  const std::string name = native_path(file);
  struct stat st;
  if (stat(name.c_str(), &st) == 0) {
    if (name[0] == '/') {
      copy_cut(result, MAX_PATH, from_utf8(name));
      return {};
    }
    wchar_t cwd[MAX_PATH];
    if (const std::error_code error = current_directory(cwd, MAX_PATH)) return error;
    copy_cut(result, MAX_PATH, std::wstring(cwd) + L"/" + from_utf8(name));
    return {};
  }
  const char* list = std::getenv(to_utf8(variable).c_str());
  if (list == nullptr) return make_error(std::errc::no_such_file_or_directory);
  const std::string dirs = list;
  std::size_t pos = 0;
  while (pos <= dirs.size()) {
    std::size_t end = dirs.find_first_of(":;", pos);
    if (end == std::string::npos) end = dirs.size();
    std::string dir = dirs.substr(pos, end - pos);
    if (!dir.empty()) {
      if (dir.back() != '/') dir += '/';
      const std::wstring candidate = from_utf8(dir + name);
      if (stat(native_path(candidate.c_str()).c_str(), &st) == 0) {
        copy_cut(result, MAX_PATH, candidate);
        return {};
      }
    }
    pos = end + 1;
  }
  return make_error(std::errc::no_such_file_or_directory);
}

std::error_code executable_path(wchar_t* buffer, int capacity) {
  std::vector<char> raw(PATH_MAX + 1);
  const ssize_t n = ::readlink("/proc/self/exe", raw.data(), raw.size() - 1);
  if (n <= 0) return errno_error();
  raw[static_cast<std::size_t>(n)] = 0;
  copy_cut(buffer, capacity, from_utf8(raw.data()));
  return {};
}

}  // namespace native

}  // namespace korvalen::platform
