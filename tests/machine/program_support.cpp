#include "program_support.h"

#include <chrono>
#include <fstream>
#include <thread>

#include "temp_dir_test.h"

#if defined(_WIN32)
#include <direct.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#endif

namespace korvalen::testing {

std::vector<std::string> FileLines(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

namespace {

template <typename Condition>
bool WaitFor(Condition condition, int timeout_ms) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

std::string ThisProgram() {
#if defined(_WIN32)
  char self[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, self, MAX_PATH);
  return self;
#else
  char self[PATH_MAX] = {};
  const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  return n > 0 ? std::string(self, static_cast<std::size_t>(n)) : std::string();
#endif
}

}  // namespace

bool WaitForFile(const std::string& name, int timeout_ms) {
  return WaitFor([&] { return Exists(name); }, timeout_ms);
}

bool WaitForLine(const std::string& name, const std::string& line, int timeout_ms) {
  return WaitFor(
      [&] {
        for (const std::string& l : FileLines(name)) {
          if (l == line) return true;
        }
        return false;
      },
      timeout_ms);
}

std::string HelperPath() {
  std::string path = ThisProgram();
  path = path.substr(0, path.find_last_of("/\\") + 1) + "korvalen_window_program";
#if defined(_WIN32)
  path += ".exe";
#endif
  return path;
}

std::wstring HelperCommand(const std::string& options) {
  const std::string line = "\"" + HelperPath() + "\" " + options;
  return std::wstring(line.begin(), line.end());
}

#if defined(_WIN32)

namespace {

LRESULT CALLBACK Ignore(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace

OwnWindow::OwnWindow() {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = Ignore;
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = L"KorvalenTestWindow";
  RegisterClassW(&window_class);
  handle_ = CreateWindowExW(0, L"KorvalenTestWindow", L"test", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100,
                            nullptr, nullptr, window_class.hInstance, nullptr);
}

OwnWindow::~OwnWindow() {
  if (handle_ != nullptr) DestroyWindow(handle_);
}

void OwnWindow::PostKeyDown(unsigned key) { PostMessageW(handle_, WM_KEYDOWN, key, 0); }

ForeignListener::ForeignListener(const std::string&, const std::string&, unsigned) {}
ForeignListener::~ForeignListener() {}
bool RunningAsRoot() { return false; }

void MakePrivateFolder(const std::string& name, unsigned) { _mkdir(name.c_str()); }

#else

OwnWindow::OwnWindow() {}
OwnWindow::~OwnWindow() {}
void OwnWindow::PostKeyDown(unsigned) {}

ForeignListener::ForeignListener(const std::string& lock, const std::string& socket_name,
                                 unsigned as_user) {
  int ready[2];
  if (pipe(ready) != 0) return;
  const pid_t child = fork();
  if (child == 0) {
    // Only system calls from here: the test program may have threads.
    const int fd = open(lock.c_str(), O_RDWR | O_CREAT, 0600);
    struct flock whole {};
    whole.l_type = F_WRLCK;
    const char owner[] = "77 1\n";
    const int s = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket_name.c_str(), sizeof address.sun_path - 1);
    const bool made = fd >= 0 && fcntl(fd, F_OFD_SETLK, &whole) == 0 &&
                      write(fd, owner, sizeof owner - 1) == sizeof owner - 1 && s >= 0 &&
                      bind(s, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                      (as_user == 0 || (setresgid(as_user, as_user, as_user) == 0 &&
                                        setresuid(as_user, as_user, as_user) == 0)) &&
                      listen(s, 4) == 0;
    const char answer = made ? 1 : 0;
    (void)write(ready[1], &answer, 1);
    for (;;) pause();
  }
  close(ready[1]);
  char answer = 0;
  listening_ = child > 0 && read(ready[0], &answer, 1) == 1 && answer == 1;
  close(ready[0]);
  process_ = child;
}

ForeignListener::~ForeignListener() {
  if (process_ <= 0) return;
  kill(static_cast<pid_t>(process_), SIGKILL);
  waitpid(static_cast<pid_t>(process_), nullptr, 0);
}

bool RunningAsRoot() { return geteuid() == 0; }

void MakePrivateFolder(const std::string& name, unsigned mode) {
  mkdir(name.c_str(), 0700);
  chmod(name.c_str(), mode);
}

#endif

}  // namespace korvalen::testing
