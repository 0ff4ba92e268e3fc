#include "korvalen/machine/process_launch.h"

#include "korvalen/foundation/internal/number_file.h"
#include "korvalen/machine/internal/wait_clock.h"
#include "korvalen/platform/internal/processes.h"
#include "korvalen/platform/internal/this_process.h"

namespace {

namespace platform = korvalen::platform;

// The first try takes the line as a command line; the second as the name of
// the program file, spaces and all.
bool Start(const wchar_t* command_line, platform::Process& process) {
  return !platform::start_process(nullptr, command_line, process) ||
         !platform::start_process(command_line, nullptr, process);
}

}  // namespace

int LanzarProcesoEjecutable(const wchar_t* command_line, int wait, int& exit_code) {
  try {
    platform::Process process;
    unsigned long code = 0;
    if (command_line == nullptr || !Start(command_line, process)) {
      exit_code = 0;
      return 0;
    }
    if (wait != 0) {
      platform::raise_main_thread_priority(process);
      if (process.handle == nullptr && platform::open_process(process.id, true, process)) {
        return 0;
      }
      const unsigned interval = korvalen::detail::poll_interval_microseconds();
      code = platform::kStillActive;
      while (!platform::exit_code(process, code) && code == platform::kStillActive) {
        platform::sleep_microseconds(interval);
      }
    }
    exit_code = static_cast<int>(code);
    return 1;
  } catch (...) {
    return 0;
  }
}

void LanzarEjecutable(const wchar_t* command_line) {
  int ignored = 0;
  LanzarProcesoEjecutable(command_line, 0, ignored);
}

void EscribirModoLanza(int mode) {
  try {
    korvalen::detail::write_number_file(L"MODOEXE.SYS", mode);
  } catch (...) {
  }
}
