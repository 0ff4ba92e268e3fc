#include "process_support.h"

#include <cstdlib>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

extern char** environ;
#endif

namespace korvalen::testing {

#if defined(_WIN32)

std::string ProgramDirectory() {
  char self[MAX_PATH];
  const DWORD n = GetModuleFileNameA(nullptr, self, MAX_PATH);
  if (n == 0 || n >= MAX_PATH) return {};
  std::string path(self, n);
  return path.substr(0, path.find_last_of("\\/"));
}

int RunCopiesOfThisProgram(const std::vector<std::string>& arguments, int count) {
  wchar_t self[MAX_PATH];
  if (GetModuleFileNameW(nullptr, self, MAX_PATH) == 0) return 0;
  std::wstring command = L"\"" + std::wstring(self) + L"\"";
  for (const std::string& a : arguments) command += L" " + std::wstring(a.begin(), a.end());
  std::vector<PROCESS_INFORMATION> started;
  for (int i = 0; i < count; ++i) {
    SetEnvironmentVariableA("KORVALEN_WORKER", std::to_string(i).c_str());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    std::wstring line = command;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process)) {
      started.push_back(process);
    }
  }
  SetEnvironmentVariableA("KORVALEN_WORKER", nullptr);
  int succeeded = 0;
  for (PROCESS_INFORMATION& p : started) {
    WaitForSingleObject(p.hProcess, INFINITE);
    DWORD code = 1;
    if (GetExitCodeProcess(p.hProcess, &code) && code == 0) ++succeeded;
    CloseHandle(p.hProcess);
    CloseHandle(p.hThread);
  }
  return succeeded;
}

ExclusiveHold::ExclusiveHold(const std::string& name) {
  HANDLE h = CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  held_ = h != INVALID_HANDLE_VALUE;
  handle_ = reinterpret_cast<long long>(h);
}

void ExclusiveHold::Release() {
  if (held_) CloseHandle(reinterpret_cast<HANDLE>(handle_));
  held_ = false;
}

void SetEnvironment(const char* name, const std::string& value) { _putenv_s(name, value.c_str()); }

bool MessageBoxesAreWindows() { return true; }

#else

std::string ProgramDirectory() {
  char self[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  if (n <= 0) return {};
  std::string path(self, static_cast<std::size_t>(n));
  return path.substr(0, path.rfind('/'));
}

int RunCopiesOfThisProgram(const std::vector<std::string>& arguments, int count) {
  char self[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  if (n <= 0) return 0;
  self[n] = 0;
  std::vector<std::string> words = arguments;
  std::vector<char*> argv{self};
  for (std::string& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);
  std::vector<pid_t> started;
  for (int i = 0; i < count; ++i) {
    setenv("KORVALEN_WORKER", std::to_string(i).c_str(), 1);
    pid_t pid = 0;
    if (posix_spawn(&pid, self, nullptr, nullptr, argv.data(), environ) == 0)
      started.push_back(pid);
  }
  unsetenv("KORVALEN_WORKER");
  int succeeded = 0;
  for (pid_t pid : started) {
    int status = 0;
    pid_t ended = -1;
    do {
      ended = waitpid(pid, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (ended == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0) ++succeeded;
  }
  return succeeded;
}

ExclusiveHold::ExclusiveHold(const std::string& name) {
  const int fd = open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  held_ = fd >= 0 && flock(fd, LOCK_EX | LOCK_NB) == 0;
  if (!held_ && fd >= 0) close(fd);
  handle_ = fd;
}

void ExclusiveHold::Release() {
  if (held_) close(static_cast<int>(handle_));
  held_ = false;
}

void SetEnvironment(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

bool MessageBoxesAreWindows() { return false; }

#endif

ExclusiveHold::~ExclusiveHold() { Release(); }

int RunTestsInCopies(const std::string& gtest_filter, int count) {
  return RunCopiesOfThisProgram(
      {"--gtest_brief=1", "--gtest_also_run_disabled_tests", "--gtest_filter=" + gtest_filter},
      count);
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace korvalen::testing
