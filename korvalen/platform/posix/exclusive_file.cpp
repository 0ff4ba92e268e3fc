// Exclusive files over POSIX: an flock on the open file, O_EXCL creation, and
// work files held by an flock, put in place by rename or published by link.
#include "korvalen/platform/internal/exclusive_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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

// Takes the exclusive lock of fd without waiting: busy while another holder
// has it.
std::error_code lock_now(int fd) {
  while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    return errno == EWOULDBLOCK ? make_error(std::errc::device_or_resource_busy) : errno_error();
  }
  return {};
}

// lock_now for fd, opened on path, and the status of the file locked. Fails
// with std::errc::no_such_file_or_directory when path no longer names that
// file: its holder put it in place or removed it before the lock was had.
std::error_code lock_named(int fd, const std::string& path, struct stat& held) {
  if (const std::error_code error = lock_now(fd)) return error;
  struct stat named;
  if (::fstat(fd, &held) != 0) return errno_error();
  if (::lstat(path.c_str(), &named) != 0 || named.st_ino != held.st_ino ||
      named.st_dev != held.st_dev) {
    return make_error(std::errc::no_such_file_or_directory);
  }
  return {};
}

std::string work_path(const std::wstring& name) {
  const posix::FolderAndFile parts = posix::folder_and_file(name.c_str());
  return parts.folder + parts.file;
}

int descriptor(const WorkFile& work) { return static_cast<int>(work.handle); }

// Rounds of a claim that lost a race: the file it opened was put in place or
// removed by its holder before the lock was had. Each round is a few system
// calls; losing this many in a row means writers keep coming.
constexpr int kClaimRounds = 16;

}  // namespace

namespace native {

std::error_code open_exclusive(const wchar_t* name, FILE*& file) {
  const std::string path = posix::native_path(name);
  const int fd = open_retrying(path.c_str(), O_RDWR | O_CREAT, 0666);
  if (fd < 0) return errno_error();
  // flock belongs to this open file description, so two holders inside one
  // process exclude each other as well (fcntl locks would not).
  if (const std::error_code error = lock_now(fd)) {
    ::close(fd);
    return error;
  }
  // The lock goes with the descriptor, which the stream closes.
  file = posix::open_text_stream(fd, "r+");
  return file != nullptr ? std::error_code() : errno_error();
}

std::error_code create_new_file(const wchar_t* name) {
  // An entry of the name in another case counts as existing, as on Windows.
  const posix::FolderAndFile name_parts = posix::folder_and_file(name);
  const std::string& dir = name_parts.folder;
  const std::string& file = name_parts.file;
  if (file.empty()) return make_error(std::errc::invalid_argument);
  if (exists(dir + file) || posix::other_case_exists(dir, file)) {
    return make_error(std::errc::file_exists);
  }
  const int fd = open_retrying((dir + file).c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
  if (fd < 0) return errno_error();  // EEXIST reads as std::errc::file_exists
  ::close(fd);
  return {};
}

std::error_code claim_work_file(const wchar_t* name, WorkContent content, WorkFile& work) {
  const std::string path = work_path(name);
  for (int round = 0; round < kClaimRounds; ++round) {
    // Never O_TRUNC: until the lock is had, the file may be another writer's.
    const int fd = open_retrying(path.c_str(), O_WRONLY | O_CREAT, 0666);
    if (fd < 0) return errno_error();
    struct stat held;
    const std::error_code error = lock_named(fd, path, held);
    if (error) ::close(fd);
    if (error == std::errc::no_such_file_or_directory) continue;
    if (error) return error;
    if (held.st_size != 0 || held.st_nlink != 1) {
      // Left by a writer that died: part of a file, or one already published
      // under its final name too (a second link), which must not be emptied.
      ::unlink(path.c_str());
      ::close(fd);
      continue;
    }
    // Still held: the name is this writer's until the stream is had.
    work.stream =
        content == WorkContent::kText ? posix::open_text_stream(fd, "w") : ::fdopen(fd, "w");
    if (work.stream == nullptr) {
      const std::error_code failed = errno_error();
      ::unlink(path.c_str());
      if (content == WorkContent::kBinary) ::close(fd);
      return failed;
    }
    work.handle = fd;
    return {};
  }
  return make_error(std::errc::device_or_resource_busy);
}

std::error_code finish_work_file(WorkFile& work, bool sync) {
  if (std::fflush(work.stream) != 0 || std::ferror(work.stream) != 0) {
    return make_error(std::errc::io_error);
  }
  while (sync && ::fsync(descriptor(work)) != 0) {
    if (errno != EINTR) return errno_error();
  }
  return {};
}

std::error_code replace_with_work_file(WorkFile& work, const wchar_t* target) {
  const std::string to = posix::native_path(target);
  struct stat st;
  if (::stat(to.c_str(), &st) == 0 && S_ISREG(st.st_mode)) {
    if (::access(to.c_str(), W_OK) != 0) return make_error(std::errc::permission_denied);
    (void)::fchmod(descriptor(work), st.st_mode & 07777);
  }
  if (::rename(work_path(work.name).c_str(), to.c_str()) != 0) return errno_error();
  // The hold ends only now that the file is in place.
  std::fclose(work.stream);
  return {};
}

std::error_code publish_work_file(WorkFile& work, const wchar_t* name) {
  const posix::FolderAndFile parts = posix::folder_and_file(name);
  if (parts.file.empty()) return make_error(std::errc::invalid_argument);
  const std::string to = parts.folder + parts.file;
  if (exists(to) || posix::other_case_exists(parts.folder, parts.file)) {
    return make_error(std::errc::file_exists);
  }
  const std::string from = work_path(work.name);
  // link, unlike rename, never replaces an entry that appeared meanwhile.
  if (::link(from.c_str(), to.c_str()) == 0) {
    ::unlink(from.c_str());
  } else if (errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS) {
    // A file system without hard links. The name was free a moment ago, and
    // the names published come from a counter that hands each out once.
    if (::rename(from.c_str(), to.c_str()) != 0) return errno_error();
  } else {
    return errno_error();  // EEXIST reads as std::errc::file_exists
  }
  std::fclose(work.stream);
  return {};
}

void drop_work_file(WorkFile& work) {
  // Still held, so the name is still this writer's file.
  ::unlink(work_path(work.name).c_str());
  std::fclose(work.stream);
}

std::error_code remove_abandoned_work_file(const wchar_t* name) {
  const std::string path = work_path(name);
  const int fd = open_retrying(path.c_str(), O_RDONLY, 0);
  if (fd < 0) return errno_error();  // ENOENT reads as std::errc::no_such_file_or_directory
  struct stat held;
  const std::error_code error = lock_named(fd, path, held);
  // Only a file: a folder of that name is no writer's work.
  if (!error && S_ISREG(held.st_mode)) ::unlink(path.c_str());
  ::close(fd);
  return error;
}

}  // namespace native

}  // namespace korvalen::platform
