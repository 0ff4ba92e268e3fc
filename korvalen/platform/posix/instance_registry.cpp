// The instance registry's folder, file names and locks.
#include "korvalen/platform/posix/instance_registry.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/native_path.h"

namespace korvalen::platform::posix {
namespace {

constexpr std::size_t kSocketPathBytes = sizeof(sockaddr_un::sun_path);

std::string absolute_env(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && value[0] == '/' ? std::string(value) : std::string();
}

std::string escaped_key(const wchar_t* class_name) {
  std::wstring upper;
  for (const wchar_t* c = class_name; *c != 0; ++c) upper += name_upper(*c);
  std::string key;
  for (const unsigned char b : to_utf8(upper)) {
    if ((b >= 'A' && b <= 'Z') || (b >= '0' && b <= '9') || b == '_' || b == '-') {
      key += static_cast<char>(b);
    } else {
      char hex[4];
      std::snprintf(hex, sizeof hex, "%%%02X", b);
      key += hex;
    }
  }
  return key;
}

// FNV-1a: a stable short name for a class whose escaped name is too long.
std::string hashed_key(const std::string& key) {
  std::uint64_t hash = 14695981039346656037ULL;
  for (const unsigned char b : key) {
    hash ^= b;
    hash *= 1099511628211ULL;
  }
  char text[20];
  std::snprintf(text, sizeof text, "h%016llx", static_cast<unsigned long long>(hash));
  return text;
}

flock whole_file(short type) {
  flock lock{};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  return lock;
}

}  // namespace

std::error_code registry_folder(std::string& folder) {
  const std::string runtime = absolute_env("XDG_RUNTIME_DIR");
  if (!runtime.empty()) {
    folder = runtime + "/korvalen";
  } else {
    std::string temp = absolute_env("TMPDIR");
    if (temp.empty()) temp = "/tmp";
    folder = temp + "/korvalen-" + std::to_string(::geteuid());
  }
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return errno_error();
  struct stat st;
  if (::lstat(folder.c_str(), &st) != 0) return errno_error();
  if (!S_ISDIR(st.st_mode) || st.st_uid != ::geteuid() || (st.st_mode & 077) != 0) {
    return make_error(std::errc::permission_denied);
  }
  return {};
}

std::error_code class_files_of_key(const std::string& folder, const std::string& key,
                                   ClassFiles& files) {
  files.key = key;
  files.lock = folder + "/" + key + ".lock";
  files.socket = folder + "/" + key + ".sock";
  return files.socket.size() < kSocketPathBytes ? std::error_code()
                                                : make_error(std::errc::filename_too_long);
}

std::error_code class_files(const std::string& folder, const wchar_t* class_name,
                            ClassFiles& files) {
  const std::string key = escaped_key(class_name);
  if (!class_files_of_key(folder, key, files)) return {};
  return class_files_of_key(folder, hashed_key(key), files);
}

std::string handle_link(const std::string& folder, long handle) {
  return folder + "/w" + std::to_string(handle);
}

void Descriptor::reset(int fd) {
  if (fd_ >= 0) ::close(fd_);
  fd_ = fd;
}

int open_lock(const std::string& path, bool create) {
  for (;;) {
    const int fd =
        ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | (create ? O_CREAT : 0), 0600);
    if (fd >= 0 || errno != EINTR) return fd;
  }
}

bool same_file(int fd, const std::string& path) {
  struct stat open_file, named;
  return ::fstat(fd, &open_file) == 0 && ::stat(path.c_str(), &named) == 0 &&
         open_file.st_dev == named.st_dev && open_file.st_ino == named.st_ino;
}

bool lock_file(int fd) {
  flock lock = whole_file(F_WRLCK);
  while (::fcntl(fd, F_OFD_SETLK, &lock) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

bool is_locked(int fd) {
  flock lock = whole_file(F_WRLCK);
  while (::fcntl(fd, F_OFD_GETLK, &lock) != 0) {
    if (errno != EINTR) return true;  // unknown: not taken for stale
  }
  return lock.l_type != F_UNLCK;
}

void read_owner(int fd, long& handle, pid_t& pid) {
  handle = 0;
  pid = 0;
  char text[64] = {};
  const ssize_t n = ::pread(fd, text, sizeof text - 1, 0);
  if (n <= 0) return;
  long long h = 0, p = 0;
  if (std::sscanf(text, "%lld %lld", &h, &p) == 2) {
    handle = static_cast<long>(h);
    pid = static_cast<pid_t>(p);
  }
}

void remove_files(const std::string& folder, const ClassFiles& files, long handle) {
  if (handle != 0) ::unlink(handle_link(folder, handle).c_str());
  ::unlink(files.socket.c_str());
  ::unlink(files.lock.c_str());
}

bool peer_is_this_user(int socket, pid_t& pid) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  pid = peer.pid;
  return peer.uid == ::geteuid();
}

}  // namespace korvalen::platform::posix
