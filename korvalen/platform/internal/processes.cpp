// The portable part of processes: argument checks, the command line's work
// copy, and releasing what the backend keeps.
#include "korvalen/platform/internal/processes.h"

#include <cwchar>
#include <vector>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

Process::~Process() { native::close_process(*this); }

std::error_code start_process(const wchar_t* application, const wchar_t* command_line,
                              Process& process) {
  native::close_process(process);
  if (application == nullptr && command_line == nullptr) {
    return make_error(std::errc::invalid_argument);
  }
  return guarded([&] {
    std::vector<wchar_t> line;
    if (command_line != nullptr)
      line.assign(command_line, command_line + std::wcslen(command_line) + 1);
    return native::start_process(application, line.empty() ? nullptr : line.data(), process);
  });
}

void raise_main_thread_priority(Process& process) {
  if (process.handle != nullptr) native::raise_main_thread_priority(process);
}

std::error_code open_process(unsigned long id, bool full_access, Process& process) {
  native::close_process(process);
  if (id == 0) return make_error(std::errc::invalid_argument);
  return guarded([&] { return native::open_process(id, full_access, process); });
}

std::error_code exit_code(Process& process, unsigned long& code) {
  if (process.handle == nullptr) return make_error(std::errc::invalid_argument);
  return guarded([&] { return native::exit_code(process, code); });
}

}  // namespace korvalen::platform
