// The portable part of program windows: argument checks, failure values, and
// no exception out of a request.
#include "korvalen/platform/internal/program_windows.h"

#include <utility>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

bool empty(const wchar_t* text) { return text == nullptr || *text == 0; }

// A request that fails for want of memory is a request not delivered.
template <typename Call, typename Result>
Result quietly(Call call, Result failed) noexcept {
  try {
    return call();
  } catch (...) {
    return failed;
  }
}

}  // namespace

FoundWindow::~FoundWindow() { native::close_window(*this); }

std::error_code find_window(const wchar_t* class_name, FoundWindow& window) {
  native::close_window(window);
  if (empty(class_name)) return make_error(std::errc::no_such_process);
  return guarded([&] { return native::find_window(class_name, window); });
}

std::error_code window_from_handle(long handle, FoundWindow& window) {
  native::close_window(window);
  if (handle == 0) return make_error(std::errc::no_such_process);
  return guarded([&] { return native::window_from_handle(handle, window); });
}

bool is_visible(FoundWindow& window) {
  return quietly([&] { return native::is_visible(window); }, true);
}

bool is_minimized(FoundWindow& window) {
  return quietly([&] { return native::is_minimized(window); }, false);
}

void show_window(FoundWindow& window, int command) {
  quietly([&] { return native::show_window(window, command), 0; }, 0);
}

long send_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam) {
  return quietly([&] { return native::send_message(window, message, wparam, lparam); }, 0L);
}

void post_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam) {
  quietly([&] { return native::post_message(window, message, wparam, lparam), 0; }, 0);
}

void set_foreground(FoundWindow& window) {
  quietly([&] { return native::set_foreground(window), 0; }, 0);
}

unsigned long window_process_id(FoundWindow& window) {
  return quietly([&] { return native::window_process_id(window); }, 0UL);
}

std::error_code register_main_window(const wchar_t* class_name, WindowProcedure procedure,
                                     HWND& window) {
  window = nullptr;
  if (empty(class_name) || !procedure) return make_error(std::errc::invalid_argument);
  const std::error_code error = guarded(
      [&] { return native::register_main_window(class_name, std::move(procedure), window); });
  if (error) window = nullptr;
  return error;
}

void unregister_main_window(HWND window) {
  if (window != nullptr) quietly([&] { return native::unregister_main_window(window), 0; }, 0);
}

}  // namespace korvalen::platform
