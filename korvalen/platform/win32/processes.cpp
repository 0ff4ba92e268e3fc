// Processes over Win32: CreateProcessW, OpenProcess, GetExitCodeProcess.
#include "korvalen/platform/internal/processes.h"

#include <windows.h>

namespace korvalen::platform {
namespace {

std::error_code last_error() {
  return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

}  // namespace

namespace native {

std::error_code start_process(const wchar_t* application, wchar_t* command_line, Process& process) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(application, command_line, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &started)) {
    return last_error();
  }
  process.handle = started.hProcess;
  process.thread = started.hThread;
  process.id = started.dwProcessId;
  return {};
}

void raise_main_thread_priority(Process& process) {
  if (process.thread != nullptr) SetThreadPriority(process.thread, THREAD_PRIORITY_HIGHEST);
}

std::error_code open_process(unsigned long id, bool full_access, Process& process) {
  HANDLE h = OpenProcess(full_access ? PROCESS_ALL_ACCESS : PROCESS_QUERY_INFORMATION, FALSE,
                         static_cast<DWORD>(id));
  if (h == nullptr) return last_error();
  process.handle = h;
  process.id = id;
  return {};
}

std::error_code exit_code(Process& process, unsigned long& code) {
  DWORD value = 0;
  if (!GetExitCodeProcess(process.handle, &value)) return last_error();
  code = value;
  return {};
}

void close_process(Process& process) noexcept {
  if (process.thread != nullptr) CloseHandle(process.thread);
  if (process.handle != nullptr) CloseHandle(process.handle);
  process.handle = nullptr;
  process.thread = nullptr;
  process.id = 0;
}

}  // namespace native

}  // namespace korvalen::platform
