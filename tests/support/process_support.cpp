#include "process_support.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <signal.h>
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

RunningCopy::RunningCopy(const std::vector<std::string>& arguments, int worker) {
  wchar_t self[MAX_PATH];
  if (GetModuleFileNameW(nullptr, self, MAX_PATH) == 0) return;
  std::wstring command = L"\"" + std::wstring(self) + L"\"";
  for (const std::string& a : arguments) command += L" " + std::wstring(a.begin(), a.end());
  // The copy's own environment, so that copies can be started from several
  // threads at once.
  std::wstring environment;
  wchar_t* inherited = GetEnvironmentStringsW();
  for (const wchar_t* v = inherited; *v != 0; v += wcslen(v) + 1) {
    if (_wcsnicmp(v, L"KORVALEN_WORKER=", 16) != 0) environment.append(v).push_back(0);
  }
  FreeEnvironmentStringsW(inherited);
  environment.append(L"KORVALEN_WORKER=" + std::to_wstring(worker)).push_back(0);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  started_ =
      CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT,
                     environment.data(), nullptr, &startup, &process) != 0;
  if (!started_) return;
  CloseHandle(process.hThread);
  process_ = reinterpret_cast<long long>(process.hProcess);
}

void RunningCopy::Kill() {
  if (started_) TerminateProcess(reinterpret_cast<HANDLE>(process_), 9);
}

bool RunningCopy::Wait() {
  if (!started_) return false;
  const HANDLE process = reinterpret_cast<HANDLE>(process_);
  WaitForSingleObject(process, INFINITE);
  DWORD code = 1;
  const bool succeeded = GetExitCodeProcess(process, &code) && code == 0;
  CloseHandle(process);
  started_ = false;
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

RunningCopy::RunningCopy(const std::vector<std::string>& arguments, int worker) {
  char self[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  if (n <= 0) return;
  self[n] = 0;
  std::vector<std::string> words = arguments;
  std::vector<char*> argv{self};
  for (std::string& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);
  // The copy's own environment, so that copies can be started from several
  // threads at once.
  std::vector<std::string> variables;
  for (char** v = environ; *v != nullptr; ++v) {
    if (std::strncmp(*v, "KORVALEN_WORKER=", 16) != 0) variables.emplace_back(*v);
  }
  variables.push_back("KORVALEN_WORKER=" + std::to_string(worker));
  std::vector<char*> envp;
  for (std::string& v : variables) envp.push_back(v.data());
  envp.push_back(nullptr);
  pid_t pid = 0;
  started_ = posix_spawn(&pid, self, nullptr, nullptr, argv.data(), envp.data()) == 0;
  process_ = pid;
}

void RunningCopy::Kill() {
  if (started_) kill(static_cast<pid_t>(process_), SIGKILL);
}

bool RunningCopy::Wait() {
  if (!started_) return false;
  started_ = false;
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(static_cast<pid_t>(process_), &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended == process_ && WIFEXITED(status) && WEXITSTATUS(status) == 0;
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

RunningCopy::~RunningCopy() {
  Kill();
  Wait();
}

int RunCopiesOfThisProgram(const std::vector<std::string>& arguments, int count) {
  std::vector<std::unique_ptr<RunningCopy>> copies;
  for (int i = 0; i < count; ++i) copies.push_back(std::make_unique<RunningCopy>(arguments, i));
  int succeeded = 0;
  for (const auto& copy : copies) succeeded += copy->Wait() ? 1 : 0;
  return succeeded;
}

std::vector<std::string> TestsOnly(const std::string& gtest_filter) {
  return {"--gtest_brief=1", "--gtest_also_run_disabled_tests", "--gtest_filter=" + gtest_filter};
}

int RunTestsInCopies(const std::string& gtest_filter, int count) {
  return RunCopiesOfThisProgram(TestsOnly(gtest_filter), count);
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace korvalen::testing
