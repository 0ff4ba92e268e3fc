// Internal to the POSIX layer: the instance registry that stands in for
// FindWindowW and window messages (see program_windows.h for what it gives).
//
// In the registry folder, a registered class KEY has
//   KEY.lock   locked (an open-file-description lock) while its program lives;
//              holds "<handle> <pid>\n"
//   KEY.sock   the local socket on which the program answers requests
//   w<handle>  a symbolic link to KEY, for the lookup by handle number
// KEY is the class name in upper case, with every byte of its UTF-8 form
// outside [A-Z0-9_-] written as %XX, or a hash of it when that is too long.
//
// A request is one RequestRecord; a request that wants an answer gets one
// 64-bit value back on the same connection. Everything here may throw
// std::bad_alloc.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <system_error>

namespace korvalen::platform::posix {

inline constexpr std::uint32_t kRequestMagic = 0x4B564C31;  // "KVL1"

struct RequestRecord {
  std::uint32_t magic;
  std::uint32_t kind;  // RequestKind
  std::uint32_t message;
  std::int32_t show_command;
  std::uint64_t wparam;
  std::int64_t lparam;
  std::uint32_t wants_answer;
  std::uint32_t unused;
};

// The registry folder, made when missing; std::errc::permission_denied when
// it is not a folder of this user's that only this user can reach.
std::error_code registry_folder(std::string& folder);

// The files of a class.
struct ClassFiles {
  std::string key;
  std::string lock;
  std::string socket;
};
// std::errc::filename_too_long when even the hashed socket name does not fit.
std::error_code class_files(const std::string& folder, const wchar_t* class_name,
                            ClassFiles& files);
std::error_code class_files_of_key(const std::string& folder, const std::string& key,
                                   ClassFiles& files);
std::string handle_link(const std::string& folder, long handle);

// A descriptor closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  ~Descriptor() { reset(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  int release() {
    const int fd = fd_;
    fd_ = -1;
    return fd;
  }
  void reset(int fd = -1);

 private:
  int fd_;
};

// Opens a lock file for reading and writing (-1 with errno on failure).
int open_lock(const std::string& path, bool create);
// Whether the open file is still the one the path names.
bool same_file(int fd, const std::string& path);

// Puts this process's lock on an open lock file; false when another open of
// it holds a lock.
bool lock_file(int fd);
// Whether a lock is held on it by any open of the file (this process's
// included).
bool is_locked(int fd);
// The lock file's "<handle> <pid>" (0 0 when unreadable).
void read_owner(int fd, long& handle, pid_t& pid);
// Removes a class's files and its handle link (the caller holds the lock).
void remove_files(const std::string& folder, const ClassFiles& files, long handle);

// The process at the other end of a local socket when it runs as this
// user; false otherwise.
bool peer_is_this_user(int socket, pid_t& pid);

}  // namespace korvalen::platform::posix
