#include "korvalen/machine/single_instance.h"

#include "korvalen/machine/internal/wait_clock.h"
#include "korvalen/machine/process_launch.h"
#include "korvalen/platform/internal/processes.h"
#include "korvalen/platform/internal/program_windows.h"
#include "korvalen/platform/internal/this_process.h"

namespace {

namespace platform = korvalen::platform;
using platform::FoundWindow;

constexpr int kActivateLooks = 1000;
constexpr int kCloseLooks = 6;

bool Find(const wchar_t* class_name, FoundWindow& window) {
  return !platform::find_window(class_name, window);
}

bool Runs(const wchar_t* class_name) {
  FoundWindow window;
  return Find(class_name, window);
}

// Restore when minimised, else activate; sent or posted.
void RestoreOrActivate(FoundWindow& window, bool send) {
  const bool minimized = platform::is_minimized(window);
  const unsigned message = minimized ? platform::kWmSysCommand : platform::kWmActivate;
  const std::uintptr_t wparam = minimized ? platform::kScRestore : platform::kWaActive;
  if (send) {
    platform::send_message(window, message, wparam, 0);
  } else {
    platform::post_message(window, message, wparam, 0);
  }
}

// Minimised then restored: the way to bring a window above all others.
void BringToFront(FoundWindow& window) {
  platform::show_window(window, platform::kSwMinimize);
  platform::show_window(window, platform::kSwRestore);
  platform::send_message(window, platform::kWmActivate, platform::kWaActive, 0);
  platform::set_foreground(window);
}

// Whether the program has ended: by its exit code, or, when its process
// cannot be queried, by the end of its window.
bool Ended(platform::Process& process, const wchar_t* class_name) {
  if (process.handle == nullptr) return !Runs(class_name);
  unsigned long code = platform::kStillActive;
  return platform::exit_code(process, code) || code != platform::kStillActive;
}

}  // namespace

void LanzarEjecutableVnt(const wchar_t* class_name, const wchar_t* command_line) {
  try {
    FoundWindow window;
    if (!Find(class_name, window)) {
      LanzarEjecutable(command_line);
      return;
    }
    RestoreOrActivate(window, true);
    platform::set_foreground(window);
  } catch (...) {
  }
}

int ActivarEjecutableVnt(const wchar_t* class_name, const wchar_t* command_line) {
  try {
    FoundWindow window;
    if (Find(class_name, window)) {
      RestoreOrActivate(window, false);
      return 1;
    }
    int ignored = 0;
    if (!LanzarProcesoEjecutable(command_line, 0, ignored)) return 0;
    const unsigned interval = korvalen::detail::poll_interval_microseconds();
    for (int look = 0; !Runs(class_name); ++look) {
      if (look == kActivateLooks) return 0;
      platform::sleep_microseconds(interval);
    }
    return 1;
  } catch (...) {
    return 0;
  }
}

int HayOtroProgramaIgual(const wchar_t* class_name) {
  try {
    FoundWindow window;
    if (!Find(class_name, window)) return 0;
    if (!platform::is_visible(window)) {
      platform::send_message(window, platform::kWmClose, 0, 0);
      return 0;
    }
    BringToFront(window);
    return 1;
  } catch (...) {
    return 0;
  }
}

int CerrarModuloActivo(const wchar_t* class_name) {
  try {
    FoundWindow window;
    if (!Find(class_name, window)) return 1;
    BringToFront(window);
    platform::Process process;
    (void)platform::open_process(platform::window_process_id(window), false, process);
    platform::send_message(window, platform::kWmClose, 0, 0);
    for (int looks = 1;; ++looks) {
      platform::sleep_microseconds(0);
      if (Ended(process, class_name)) return 1;
      if (Runs(class_name) && looks >= kCloseLooks) return 0;
    }
  } catch (...) {
    return 0;
  }
}

void EsperarATerminarEjec(const wchar_t* class_name, int close) {
  try {
    FoundWindow window;
    if (!Find(class_name, window)) return;
    platform::Process process;
    (void)platform::open_process(platform::window_process_id(window), false, process);
    if (close != 0) platform::send_message(window, platform::kWmClose, 0, 0);
    while (!Ended(process, class_name)) platform::sleep_microseconds(0);
  } catch (...) {
  }
}
