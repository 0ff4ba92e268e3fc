// Registering this program's main window in the instance registry, and the
// thread that answers the requests that come through its socket.
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/program_windows.h"
#include "korvalen/platform/posix/instance_registry.h"

namespace korvalen::platform::native {
namespace {

using posix::ClassFiles;
using posix::Descriptor;
using posix::RequestRecord;

constexpr int kWaitingConnections = 16;
constexpr std::size_t kMaxClients = 64;

struct Registration {
  std::string folder;
  ClassFiles files;
  long handle = 0;
  Descriptor lock;
  Descriptor listener;
  Descriptor wake_read;
  Descriptor wake_write;
  WindowProcedure procedure;
  bool stop = false;  // set on the server thread only
  std::mutex mutex;
  std::condition_variable finished_changed;
  bool finished = false;
};

// Never destroyed: server threads may still run while the program exits.
struct Registry {
  std::mutex mutex;
  std::map<long, std::shared_ptr<Registration>> live;
  unsigned sequence = 0;
};

// The registration whose requests this thread answers.
thread_local Registration* g_serving = nullptr;

Registry& registry() {
  static Registry* r = new Registry;
  return *r;
}

// Handle numbers: the process id and a sequence number, so that they differ
// across the programs and fit the "%d" of the files that publish them.
long next_handle(Registry& r) {
  for (;;) {
    r.sequence = r.sequence % 255 + 1;
    const long handle = (static_cast<long>(::getpid()) << 8) | static_cast<long>(r.sequence);
    if (r.live.count(handle) == 0) return handle;
  }
}

// The files go before the lock is let go, so that no lookup takes them for
// another program's.
void remove_registration(Registration& reg) {
  if (reg.lock.get() < 0) return;
  posix::remove_files(reg.folder, reg.files, reg.handle);
  reg.listener.reset();
  reg.lock.reset();
}

WindowRequest request_of(const RequestRecord& r) {
  WindowRequest request{};
  request.kind = static_cast<RequestKind>(r.kind);
  request.show_command = r.show_command;
  request.message = r.message;
  request.wparam = static_cast<std::uintptr_t>(r.wparam);
  request.lparam = static_cast<std::intptr_t>(r.lparam);
  return request;
}

bool valid(const RequestRecord& r) {
  return r.magic == posix::kRequestMagic &&
         r.kind <= static_cast<std::uint32_t>(RequestKind::kSetForeground);
}

struct Client {
  Descriptor fd;
  std::string pending;
};

// Answers the complete requests of a client; false when the client is to be
// dropped.
bool answer_requests(Registration& reg, Client& client) {
  while (client.pending.size() >= sizeof(RequestRecord)) {
    RequestRecord r;
    std::memcpy(&r, client.pending.data(), sizeof r);
    client.pending.erase(0, sizeof r);
    if (!valid(r)) return false;
    const WindowRequest request = request_of(r);
    std::int64_t answer = 0;
    try {
      answer = reg.procedure(request);
    } catch (...) {
      answer = 0;
    }
    if (request.kind == RequestKind::kMessage && request.message == kWmClose && answer == 1) {
      // The window closes: it is gone before the sender hears back.
      remove_registration(reg);
      reg.stop = true;
    }
    if (r.wants_answer != 0 &&
        ::send(client.fd.get(), &answer, sizeof answer, MSG_NOSIGNAL | MSG_DONTWAIT) !=
            static_cast<ssize_t>(sizeof answer)) {
      return false;
    }
    if (reg.stop) return false;
  }
  return true;
}

void accept_clients(Registration& reg, std::vector<std::unique_ptr<Client>>& clients) {
  for (;;) {
    Descriptor fd(::accept4(reg.listener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (fd.get() < 0) return;
    pid_t pid = 0;
    if (!posix::peer_is_this_user(fd.get(), pid) || clients.size() >= kMaxClients) continue;
    auto client = std::make_unique<Client>();
    client->fd.reset(fd.release());
    clients.push_back(std::move(client));
  }
}

// Reads what a client sent; false when it is to be dropped.
bool read_client(Registration& reg, Client& client) {
  char bytes[512];
  for (;;) {
    const ssize_t n = ::recv(client.fd.get(), bytes, sizeof bytes, 0);
    if (n > 0) {
      client.pending.append(bytes, static_cast<std::size_t>(n));
      if (!answer_requests(reg, client)) return false;
      continue;
    }
    if (n < 0 && errno == EINTR) continue;
    return n < 0 && errno == EAGAIN;
  }
}

void serve(Registration& reg) {
  std::vector<std::unique_ptr<Client>> clients;
  std::vector<pollfd> fds;
  while (!reg.stop) {
    fds.assign({{reg.wake_read.get(), POLLIN, 0}, {reg.listener.get(), POLLIN, 0}});
    for (const auto& c : clients) fds.push_back({c->fd.get(), POLLIN, 0});
    if (::poll(fds.data(), fds.size(), -1) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    if (fds[0].revents != 0) break;
    std::vector<std::unique_ptr<Client>> kept;
    for (std::size_t i = 0; i < clients.size(); ++i) {
      const bool keep = reg.stop || fds[i + 2].revents == 0 || read_client(reg, *clients[i]);
      if (keep) kept.push_back(std::move(clients[i]));
    }
    clients = std::move(kept);
    if (!reg.stop && fds[1].revents != 0) accept_clients(reg, clients);
  }
}

void run_server(std::shared_ptr<Registration> reg) noexcept {
  g_serving = reg.get();
  try {
    serve(*reg);
  } catch (...) {
    // Out of memory: the registration ends as if the window had closed.
  }
  {
    Registry& r = registry();
    std::lock_guard<std::mutex> hold(r.mutex);
    remove_registration(*reg);
    r.live.erase(reg->handle);
  }
  std::lock_guard<std::mutex> hold(reg->mutex);
  reg->finished = true;
  reg->finished_changed.notify_all();
}

std::error_code take_lock(Registration& reg) {
  for (int attempt = 0; attempt < 8; ++attempt) {
    Descriptor lock(posix::open_lock(reg.files.lock, true));
    if (lock.get() < 0) return errno_error();
    if (!posix::lock_file(lock.get())) {
      if (errno != EAGAIN && errno != EACCES) return errno_error();
      // A lookup holds a stale registration's lock for the moment it takes
      // to remove it; a running program holds it for good.
      if (attempt == 7) return make_error(std::errc::device_or_resource_busy);
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      continue;
    }
    // A lookup may have removed a stale file between the open and the lock.
    if (posix::same_file(lock.get(), reg.files.lock)) {
      reg.lock.reset(lock.release());
      return {};
    }
  }
  return make_error(std::errc::device_or_resource_busy);
}

std::error_code listen_and_link(Registration& reg) {
  const std::string owner = std::to_string(reg.handle) + " " + std::to_string(::getpid()) + "\n";
  if (::ftruncate(reg.lock.get(), 0) != 0 || ::pwrite(reg.lock.get(), owner.data(), owner.size(),
                                                      0) != static_cast<ssize_t>(owner.size())) {
    return errno_error();
  }
  // Whatever socket is there was left by a program that died: the lock is ours.
  ::unlink(reg.files.socket.c_str());
  reg.listener.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (reg.listener.get() < 0) return errno_error();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, reg.files.socket.c_str(), reg.files.socket.size() + 1);
  if (::bind(reg.listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
          0 ||
      ::chmod(reg.files.socket.c_str(), 0600) != 0 ||
      ::listen(reg.listener.get(), kWaitingConnections) != 0) {
    return errno_error();
  }
  const std::string link = posix::handle_link(reg.folder, reg.handle);
  ::unlink(link.c_str());
  if (::symlink(reg.files.key.c_str(), link.c_str()) != 0) return errno_error();
  int wake[2];
  if (::pipe2(wake, O_CLOEXEC | O_NONBLOCK) != 0) return errno_error();
  reg.wake_read.reset(wake[0]);
  reg.wake_write.reset(wake[1]);
  return {};
}

}  // namespace

std::error_code register_main_window(const wchar_t* class_name, WindowProcedure procedure,
                                     HWND& window) {
  auto reg = std::make_shared<Registration>();
  reg->procedure = std::move(procedure);
  if (const std::error_code error = posix::registry_folder(reg->folder)) return error;
  if (const std::error_code error = posix::class_files(reg->folder, class_name, reg->files)) {
    return error;
  }
  if (const std::error_code error = take_lock(*reg)) return error;
  Registry& r = registry();
  std::lock_guard<std::mutex> hold(r.mutex);
  reg->handle = next_handle(r);
  std::error_code error = listen_and_link(*reg);
  if (!error) {
    try {
      r.live[reg->handle] = reg;
      std::thread(run_server, reg).detach();
    } catch (...) {
      r.live.erase(reg->handle);
      error = make_error(std::errc::resource_unavailable_try_again);
    }
  }
  if (error) {
    remove_registration(*reg);
    return error;
  }
  window = reinterpret_cast<HWND>(static_cast<std::intptr_t>(reg->handle));
  return {};
}

void unregister_main_window(HWND window) {
  const long handle = static_cast<long>(reinterpret_cast<std::intptr_t>(window));
  std::shared_ptr<Registration> reg;
  {
    Registry& r = registry();
    std::lock_guard<std::mutex> hold(r.mutex);
    const auto found = r.live.find(handle);
    if (found == r.live.end()) return;
    reg = found->second;
  }
  if (g_serving == reg.get()) {
    reg->stop = true;  // asked from its own procedure: the server ends after it
    return;
  }
  const char wake = 1;
  (void)::write(reg->wake_write.get(), &wake, 1);
  std::unique_lock<std::mutex> hold(reg->mutex);
  reg->finished_changed.wait(hold, [&] { return reg->finished; });
}

}  // namespace korvalen::platform::native
