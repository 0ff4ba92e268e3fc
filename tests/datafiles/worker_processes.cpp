#include "worker_processes.h"

#include <cstdlib>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

extern char** environ;
#endif

namespace korvalen::testing {

namespace {
constexpr const char* kWorkerVariable = "KORVALEN_WORKER";
}

#if defined(_WIN32)

int RunWorkers(const std::string& gtest_filter, int count) {
  wchar_t self[MAX_PATH];
  if (GetModuleFileNameW(nullptr, self, MAX_PATH) == 0) return 0;
  const std::wstring filter(gtest_filter.begin(), gtest_filter.end());
  std::vector<PROCESS_INFORMATION> started;
  for (int i = 0; i < count; ++i) {
    SetEnvironmentVariableA(kWorkerVariable, std::to_string(i).c_str());
    std::wstring command = L"\"" + std::wstring(self) +
                           L"\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=" +
                           filter;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                       &startup, &process)) {
      started.push_back(process);
    }
  }
  SetEnvironmentVariableA(kWorkerVariable, nullptr);
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

std::string WorkerIndex() {
  char value[32];
  const DWORD n = GetEnvironmentVariableA(kWorkerVariable, value, sizeof value);
  return n > 0 && n < sizeof value ? std::string(value, n) : std::string();
}

#else

int RunWorkers(const std::string& gtest_filter, int count) {
  char self[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  if (n <= 0) return 0;
  self[n] = 0;
  std::string filter = "--gtest_filter=" + gtest_filter;
  char brief[] = "--gtest_brief=1";
  char disabled[] = "--gtest_also_run_disabled_tests";
  std::vector<pid_t> started;
  for (int i = 0; i < count; ++i) {
    setenv(kWorkerVariable, std::to_string(i).c_str(), 1);
    char* argv[] = {self, brief, disabled, filter.data(), nullptr};
    pid_t pid = 0;
    if (posix_spawn(&pid, self, nullptr, nullptr, argv, environ) == 0) started.push_back(pid);
  }
  unsetenv(kWorkerVariable);
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

std::string WorkerIndex() {
  const char* value = std::getenv(kWorkerVariable);
  return value != nullptr ? value : "";
}

#endif

}  // namespace korvalen::testing
