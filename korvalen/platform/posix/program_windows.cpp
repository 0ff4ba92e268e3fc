// Program windows over POSIX: lookups in the instance registry and requests
// through the registered program's socket (the registration itself is in
// window_registration.cpp).
#include "korvalen/platform/internal/program_windows.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/posix/instance_registry.h"

namespace korvalen::platform::native {
namespace {

using posix::ClassFiles;
using posix::RequestRecord;

std::error_code not_found() { return make_error(std::errc::no_such_process); }

// A registration whose program died (its lock is free) is removed, unless a
// program takes the class meanwhile.
void remove_if_stale(const std::string& folder, const ClassFiles& files, int lock) {
  if (!posix::lock_file(lock) || !posix::same_file(lock, files.lock)) return;
  long handle = 0;
  pid_t pid = 0;
  posix::read_owner(lock, handle, pid);
  posix::remove_files(folder, files, handle);
}

std::error_code find_registration(const std::string& folder, const ClassFiles& files,
                                  long expected_handle, FoundWindow& window) {
  posix::Descriptor lock(posix::open_lock(files.lock, false));
  if (lock.get() < 0) return errno == ENOENT ? not_found() : errno_error();
  struct stat st;
  if (::fstat(lock.get(), &st) != 0) return errno_error();
  if (st.st_uid != ::geteuid()) return make_error(std::errc::permission_denied);
  if (!posix::is_locked(lock.get())) {
    remove_if_stale(folder, files, lock.get());
    return not_found();
  }
  long handle = 0;
  pid_t pid = 0;
  posix::read_owner(lock.get(), handle, pid);
  if (handle == 0 || (expected_handle != 0 && handle != expected_handle)) return not_found();

  posix::Descriptor s(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (s.get() < 0) return errno_error();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, files.socket.c_str(), files.socket.size() + 1);
  int result = 0;
  do {
    result = ::connect(s.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  } while (result != 0 && errno == EINTR);
  if (result == 0) {
    if (!posix::peer_is_this_user(s.get(), pid)) return make_error(std::errc::permission_denied);
    window.connection = s.release();
  } else if (errno == EAGAIN) {
    // Lives, but takes no requests: its queue of waiting connections is full.
    window.unanswered = true;
  } else {
    return not_found();  // not listening yet, or no longer
  }
  window.window = reinterpret_cast<HWND>(static_cast<std::intptr_t>(handle));
  window.process_id = static_cast<unsigned long>(pid);
  return {};
}

RequestRecord record_of(RequestKind kind, int show_command, unsigned message, std::uintptr_t wparam,
                        std::intptr_t lparam) {
  RequestRecord r{};
  r.magic = posix::kRequestMagic;
  r.kind = static_cast<std::uint32_t>(kind);
  r.show_command = show_command;
  r.message = message;
  r.wparam = wparam;
  r.lparam = lparam;
  return r;
}

bool deliver(FoundWindow& window, const RequestRecord& r) {
  if (window.connection < 0) return false;
  ssize_t sent = 0;
  do {
    sent = ::send(window.connection, &r, sizeof r, MSG_NOSIGNAL);
  } while (sent < 0 && errno == EINTR);
  return sent == static_cast<ssize_t>(sizeof r);
}

// Sends and waits for the answer; false (the request then only posted) when
// the program has left one unanswered before, or leaves this one.
bool ask(FoundWindow& window, RequestRecord r, std::int64_t& answer) {
  r.wants_answer = window.unanswered ? 0 : 1;
  if (!deliver(window, r) || !r.wants_answer) return false;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kAnswerWaitMs);
  unsigned char bytes[sizeof answer];
  std::size_t got = 0;
  while (got < sizeof bytes) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) break;
    pollfd p{window.connection, POLLIN, 0};
    const int ready = ::poll(&p, 1, static_cast<int>(left.count()) + 1);
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) break;
    const ssize_t n = ::recv(window.connection, bytes + got, sizeof bytes - got, 0);
    if (n < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (n <= 0) break;
    got += static_cast<std::size_t>(n);
  }
  if (got < sizeof bytes) {
    window.unanswered = true;
    return false;
  }
  std::memcpy(&answer, bytes, sizeof answer);
  return true;
}

}  // namespace

std::error_code find_window(const wchar_t* class_name, FoundWindow& window) {
  std::string folder;
  if (const std::error_code error = posix::registry_folder(folder)) return error;
  ClassFiles files;
  if (const std::error_code error = posix::class_files(folder, class_name, files)) return error;
  return find_registration(folder, files, 0, window);
}

std::error_code window_from_handle(long handle, FoundWindow& window) {
  std::string folder;
  if (const std::error_code error = posix::registry_folder(folder)) return error;
  char key[PATH_MAX];
  const ssize_t n = ::readlink(posix::handle_link(folder, handle).c_str(), key, sizeof key - 1);
  if (n <= 0) return not_found();
  ClassFiles files;
  if (const std::error_code error =
          posix::class_files_of_key(folder, std::string(key, static_cast<std::size_t>(n)), files)) {
    return error;
  }
  return find_registration(folder, files, handle, window);
}

bool is_visible(FoundWindow& window) {
  std::int64_t answer = 1;
  ask(window, record_of(RequestKind::kIsVisible, 0, 0, 0, 0), answer);
  return answer != 0;
}

bool is_minimized(FoundWindow& window) {
  std::int64_t answer = 0;
  ask(window, record_of(RequestKind::kIsMinimized, 0, 0, 0, 0), answer);
  return answer != 0;
}

void show_window(FoundWindow& window, int command) {
  std::int64_t answer = 0;
  ask(window, record_of(RequestKind::kShow, command, 0, 0, 0), answer);
}

long send_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam) {
  std::int64_t answer = 0;
  ask(window, record_of(RequestKind::kMessage, 0, message, wparam, lparam), answer);
  return static_cast<long>(answer);
}

void post_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam) {
  deliver(window, record_of(RequestKind::kMessage, 0, message, wparam, lparam));
}

void set_foreground(FoundWindow& window) {
  std::int64_t answer = 0;
  ask(window, record_of(RequestKind::kSetForeground, 0, 0, 0, 0), answer);
}

unsigned long window_process_id(FoundWindow& window) { return window.process_id; }

void close_window(FoundWindow& window) noexcept {
  if (window.connection >= 0) ::close(window.connection);
  window.connection = -1;
  window.window = nullptr;
  window.process_id = 0;
  window.unanswered = false;
}

}  // namespace korvalen::platform::native
