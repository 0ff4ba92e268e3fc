// The running process over Win32.
#include "korvalen/platform/internal/this_process.h"

#include <windows.h>

namespace korvalen::platform {

unsigned long current_process_id() { return static_cast<unsigned long>(GetCurrentProcessId()); }

void sleep_microseconds(unsigned microseconds) {
  Sleep(static_cast<DWORD>((microseconds + 999) / 1000));
}

}  // namespace korvalen::platform
