// Processes over POSIX: posix_spawn of the split command line, waitpid for
// the children, a pidfd (or kill 0) for the others.
#include "korvalen/platform/internal/processes.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cwctype>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/posix/command_line.h"
#include "korvalen/platform/posix/native_path.h"

extern char** environ;

namespace korvalen::platform {
namespace {

struct Record {
  pid_t pid = 0;
  int pidfd = -1;
  bool child = false;
  bool ended = false;
  unsigned long code = 0;
};

Record& record(Process& process) { return *static_cast<Record*>(process.handle); }

// The codes Windows gives a program that ends the like way.
unsigned long windows_exit_code(int status) {
  if (WIFEXITED(status)) return static_cast<unsigned long>(WEXITSTATUS(status));
  if (!WIFSIGNALED(status)) return 1;
  switch (WTERMSIG(status)) {
    case SIGABRT:
      return 3;  // abort()
    case SIGSEGV:
    case SIGBUS:
      return 0xC0000005;  // access violation
    case SIGILL:
      return 0xC000001D;  // illegal instruction
    case SIGFPE:
      return 0xC0000094;  // integer division by zero
    case SIGINT:
      return 0xC000013A;  // Ctrl+C
    default:
      return 1;  // ended from outside, as by the task manager
  }
}

bool has_separator(const std::wstring& name) {
  return name.find_first_of(L"/\\") != std::wstring::npos;
}

bool is_program(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

// The spellings tried: the name, and without ".exe" a name written for Windows.
std::vector<std::wstring> spellings(const std::wstring& name) {
  std::vector<std::wstring> all{name};
  const std::size_t n = name.size();
  if (n > 4 && name[n - 4] == L'.' && std::towlower(name[n - 3]) == L'e' &&
      std::towlower(name[n - 2]) == L'x' && std::towlower(name[n - 1]) == L'e') {
    all.push_back(name.substr(0, n - 4));
  }
  return all;
}

std::wstring program_directory() {
  wchar_t self[4096] = {};
  if (executable_path(self, 4096)) return {};
  std::wstring dir(self);
  const std::size_t slash = dir.rfind(L'/');
  return slash == std::wstring::npos ? std::wstring() : dir.substr(0, slash + 1);
}

// The files to try, in order, as Windows looks for a program; a bare name
// that is not beside this program or in the current directory is left to
// posix_spawnp's search along PATH (`search` true).
std::vector<std::string> candidates(const std::wstring& name, bool& search) {
  const std::vector<std::wstring> names = spellings(name);
  search = false;
  if (has_separator(name)) {
    for (const std::wstring& n : names) {
      const std::string path = posix::native_path(n.c_str());
      if (is_program(path)) return {path};
    }
    return {posix::native_path(name.c_str())};  // the spawn reports why it fails
  }
  for (const std::wstring& dir : {program_directory(), std::wstring(L"./")}) {
    if (dir.empty()) continue;
    for (const std::wstring& n : names) {
      const std::string path = posix::native_path((dir + n).c_str());
      if (is_program(path)) return {path};
    }
  }
  search = true;
  std::vector<std::string> words;
  for (const std::wstring& n : names) words.push_back(to_utf8(n));
  return words;
}

std::error_code spawn(const std::vector<std::wstring>& words, Process& process) {
  auto r = std::make_unique<Record>();
  std::vector<std::string> args;
  for (const std::wstring& w : words) args.push_back(to_utf8(w));
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  if (int e = posix_spawn_file_actions_init(&actions)) {
    return std::error_code(e, std::generic_category());
  }
  if (int e = posix_spawnattr_init(&attributes)) {
    posix_spawn_file_actions_destroy(&actions);
    return std::error_code(e, std::generic_category());
  }
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 34))
  // No inherited handles: only the standard streams reach the new program.
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
#endif
  // A new program starts with no signal blocked, whatever this thread blocks.
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  bool search = false;
  int e = ENOENT;
  pid_t pid = 0;
  for (const std::string& file : candidates(words[0], search)) {
    e = search ? posix_spawnp(&pid, file.c_str(), &actions, &attributes, argv.data(), environ)
               : posix_spawn(&pid, file.c_str(), &actions, &attributes, argv.data(), environ);
    if (e != ENOENT) break;
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (e != 0) return std::error_code(e, std::generic_category());
  r->pid = pid;
  r->child = true;
  process.handle = r.release();
  process.id = static_cast<unsigned long>(pid);
  return {};
}

int open_pidfd(pid_t pid) {
#if defined(SYS_pidfd_open)
  return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
#else
  (void)pid;
  errno = ENOSYS;
  return -1;
#endif
}

void reap_in_background(pid_t pid) noexcept {
  try {
    std::thread([pid] {
      while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
      }
    }).detach();
  } catch (...) {
    // No thread to spare: the child stays a zombie until this program ends.
  }
}

}  // namespace

namespace native {

std::error_code start_process(const wchar_t* application, wchar_t* command_line, Process& process) {
  if (application != nullptr) return spawn({std::wstring(application)}, process);
  const std::vector<std::wstring> words = posix::split_command_line(command_line);
  if (words[0].empty()) return make_error(std::errc::no_such_file_or_directory);
  return spawn(words, process);
}

void raise_main_thread_priority(Process&) {}

std::error_code open_process(unsigned long id, bool, Process& process) {
  const pid_t pid = static_cast<pid_t>(id);
  auto r = std::make_unique<Record>();
  const int fd = open_pidfd(pid);
  if (fd < 0) {
    if (errno != ENOSYS) return errno_error();
    if (::kill(pid, 0) != 0 && errno == ESRCH) return errno_error();
  }
  r->pid = pid;
  r->pidfd = fd;
  process.handle = r.release();
  process.id = id;
  return {};
}

std::error_code exit_code(Process& process, unsigned long& code) {
  Record& r = record(process);
  if (!r.ended && r.child) {
    int status = 0;
    pid_t done = 0;
    do {
      done = ::waitpid(r.pid, &status, WNOHANG);
    } while (done < 0 && errno == EINTR);
    if (done == r.pid) {
      r.ended = true;
      r.code = windows_exit_code(status);
    } else if (done < 0) {
      if (errno != ECHILD) return errno_error();
      r.child = false;  // reaped elsewhere (SIGCHLD ignored): only its end is known
    }
  }
  if (!r.ended && !r.child) {
    if (r.pidfd >= 0) {
      pollfd p{r.pidfd, POLLIN, 0};
      r.ended = ::poll(&p, 1, 0) > 0;
    } else {
      r.ended = ::kill(r.pid, 0) != 0 && errno == ESRCH;
    }
  }
  code = r.ended ? r.code : kStillActive;
  return {};
}

void close_process(Process& process) noexcept {
  if (process.handle == nullptr) return;
  Record* r = static_cast<Record*>(process.handle);
  if (r->child && !r->ended) reap_in_background(r->pid);
  if (r->pidfd >= 0) ::close(r->pidfd);
  delete r;
  process.handle = nullptr;
  process.id = 0;
}

}  // namespace native

}  // namespace korvalen::platform
