// Starting the suite's programs and following them to their end, with the
// Windows behaviour on every system. Calls that can fail follow the
// convention of error.h.
//
//   platform::Process process;
//   if (!platform::start_process(nullptr, L"DrawNest.exe /auto", process)) {
//     unsigned long code = platform::kStillActive;
//     while (!platform::exit_code(process, code) && code == platform::kStillActive) {
//       platform::sleep_microseconds(100000);
//     }
//   }
//
// POSIX splits a command line into arguments as Windows programs read theirs
// (CommandLineToArgvW), and finds a bare program name as Windows does: beside
// the running program, then in the current directory, then along PATH; a name
// ending in ".exe" that names nothing is also tried without it.
#pragma once

#include <system_error>

namespace korvalen::platform {

// The exit code of a process that still runs.
inline constexpr unsigned long kStillActive = 259;

// A process that this program started or opened. Destroying it releases what
// the system keeps for it; the process itself runs on. A child that nobody
// waited for is reaped on POSIX once it ends, so that it leaves no zombie.
struct Process {
  Process() = default;
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Windows: the process and main-thread handles; POSIX: the backend's record
  // of the process (thread unused).
  void* handle = nullptr;
  void* thread = nullptr;
  unsigned long id = 0;
};

// CreateProcessW with that application name and command line (either may be
// null, not both), no inherited handles, no creation flags, the current
// environment and directory, and a start-up record of zeros but its size. The
// command line is copied first: the system may write into its argument. POSIX
// starts the application name as one program file with no arguments, or else
// the command line split as above; descriptors above 2 are not inherited.
std::error_code start_process(const wchar_t* application, const wchar_t* command_line,
                              Process& process);

// Windows raises the started process's main thread to the highest priority.
// POSIX leaves the priority: raising it needs privileges a user lacks.
void raise_main_thread_priority(Process& process);

// Opens a running process by its identifier, for reading its exit code
// (Windows asks for all access, or for querying only).
std::error_code open_process(unsigned long id, bool full_access, Process& process);

// kStillActive while the process runs, then its exit code as Windows reports
// it. POSIX knows the exit code of its own children only: a signal reads as
// the code Windows gives for the like ending (an abort 3, an access
// violation 0xC0000005, a kill 1); a process this program did not start
// reads 0 once it has ended.
std::error_code exit_code(Process& process, unsigned long& code);

// Each system's implementation, for the portable layer (processes.cpp) only:
// the process is empty on entry to start and open, the command line is a
// writable copy, and an allocation failure may throw.
namespace native {
std::error_code start_process(const wchar_t* application, wchar_t* command_line, Process& process);
void raise_main_thread_priority(Process& process);
std::error_code open_process(unsigned long id, bool full_access, Process& process);
std::error_code exit_code(Process& process, unsigned long& code);
void close_process(Process& process) noexcept;
}  // namespace native

}  // namespace korvalen::platform
