// Exclusive files over POSIX: an flock on the open file, and O_EXCL creation.
#include "korvalen/platform/internal/exclusive_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <string>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/posix/native_path.h"
#include "korvalen/platform/posix/text_stream.h"

namespace korvalen::platform {
namespace {

int open_retrying(const char* path, int flags, mode_t mode) {
  for (;;) {
    const int fd = ::open(path, flags | O_CLOEXEC, mode);
    if (fd >= 0 || errno != EINTR) return fd;
  }
}

bool exists(const std::string& path) {
  struct stat st;
  return ::lstat(path.c_str(), &st) == 0;
}

// Up to this many ASCII letters, the other spellings of a name are looked up
// one by one (2^letters lookups); beyond, or with other letters, the folder is
// read through. Generated names ("00000042.err") have few letters, and
// reading a folder of thousands of them for every new one would cost far more.
constexpr int kMaxLettersToSpell = 6;

// Whether `dir` holds an entry named `file` in another case.
bool other_case_exists(const std::string& dir, const std::string& file) {
  int letters[kMaxLettersToSpell];
  int count = 0;
  for (std::size_t i = 0; i < file.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(file[i]);
    if (c >= 0x80 || (count == kMaxLettersToSpell && std::isalpha(c))) {
      const std::string spelled = dir + file;
      return posix::native_path(from_utf8(spelled).c_str()) != spelled;
    }
    if (std::isalpha(c)) letters[count++] = static_cast<int>(i);
  }
  for (unsigned mask = 1; mask < (1u << count); ++mask) {
    std::string variant = file;
    for (int b = 0; b < count; ++b) {
      if ((mask & (1u << b)) == 0) continue;
      char& c = variant[static_cast<std::size_t>(letters[b])];
      c = std::isupper(static_cast<unsigned char>(c)) ? static_cast<char>(std::tolower(c))
                                                      : static_cast<char>(std::toupper(c));
    }
    if (exists(dir + variant)) return true;
  }
  return false;
}

}  // namespace

namespace native {

std::error_code open_exclusive(const wchar_t* name, FILE*& file) {
  const std::string path = posix::native_path(name);
  const int fd = open_retrying(path.c_str(), O_RDWR | O_CREAT, 0666);
  if (fd < 0) return errno_error();
  // flock belongs to this open file description, so two holders inside one
  // process exclude each other as well (fcntl locks would not).
  while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    const std::error_code error =
        errno == EWOULDBLOCK ? make_error(std::errc::device_or_resource_busy) : errno_error();
    ::close(fd);
    return error;
  }
  // The lock goes with the descriptor, which the stream closes.
  file = posix::open_text_stream(fd, "r+");
  return file != nullptr ? std::error_code() : errno_error();
}

std::error_code create_new_file(const wchar_t* name) {
  // The folder resolves as for every name; an entry of the name in another
  // case counts as existing, as on Windows.
  std::string path = to_utf8(name);
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  const std::size_t slash = path.rfind('/');
  std::string dir;
  if (slash != std::string::npos) {
    dir = slash == 0 ? std::string("/")
                     : posix::native_path(from_utf8(path.substr(0, slash)).c_str()) + "/";
  }
  const std::string file = path.substr(slash == std::string::npos ? 0 : slash + 1);
  if (file.empty()) return make_error(std::errc::invalid_argument);
  if (exists(dir + file) || other_case_exists(dir, file)) {
    return make_error(std::errc::file_exists);
  }
  const int fd = open_retrying((dir + file).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
  if (fd < 0) return errno_error();  // EEXIST reads as std::errc::file_exists
  ::close(fd);
  return {};
}

}  // namespace native

}  // namespace korvalen::platform
