// Program windows over Win32: FindWindowW and window messages.
#include "korvalen/platform/internal/program_windows.h"

#include <windows.h>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform::native {
namespace {

// The top-level window of that class that belongs to this process.
HWND own_window(const wchar_t* class_name) {
  for (HWND w = FindWindowExW(nullptr, nullptr, class_name, nullptr); w != nullptr;
       w = FindWindowExW(nullptr, w, class_name, nullptr)) {
    DWORD owner = 0;
    GetWindowThreadProcessId(w, &owner);
    if (owner == GetCurrentProcessId()) return w;
  }
  return nullptr;
}

}  // namespace

std::error_code find_window(const wchar_t* class_name, FoundWindow& window) {
  window.window = FindWindowW(class_name, nullptr);
  return window.window != nullptr ? std::error_code() : make_error(std::errc::no_such_process);
}

std::error_code window_from_handle(long handle, FoundWindow& window) {
  // Handles are 32-bit values, sign-extended on 64-bit Windows.
  window.window = reinterpret_cast<HWND>(static_cast<LONG_PTR>(handle));
  return {};
}

bool is_visible(FoundWindow& window) { return IsWindowVisible(window.window) != FALSE; }
bool is_minimized(FoundWindow& window) { return IsIconic(window.window) != FALSE; }
void show_window(FoundWindow& window, int command) { ShowWindow(window.window, command); }

long send_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam) {
  return static_cast<long>(SendMessageW(window.window, message, wparam, lparam));
}

void post_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam) {
  PostMessageW(window.window, message, wparam, lparam);
}

void set_foreground(FoundWindow& window) { SetForegroundWindow(window.window); }

unsigned long window_process_id(FoundWindow& window) {
  DWORD id = 0;
  GetWindowThreadProcessId(window.window, &id);
  return id;
}

std::error_code register_main_window(const wchar_t* class_name, WindowProcedure, HWND& window) {
  window = own_window(class_name);
  return window != nullptr ? std::error_code() : make_error(std::errc::no_such_process);
}

void unregister_main_window(HWND) {}

void close_window(FoundWindow& window) noexcept { window.window = nullptr; }

}  // namespace korvalen::platform::native
