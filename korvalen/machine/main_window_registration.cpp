#include "korvalen/machine/main_window_registration.h"

#include "korvalen/platform/internal/program_windows.h"

namespace {

namespace platform = korvalen::platform;
using platform::RequestKind;
using platform::WindowRequest;

constexpr unsigned kFirstUserMessage = 0x0400;

void Call(void (*callback)(void*), void* context) {
  if (callback != nullptr) callback(context);
}

// The requests in the terms of a window procedure, turned into the program's
// callbacks.
long Answer(const TRegVentanaPrincipal& c, const WindowRequest& request) {
  switch (request.kind) {
    case RequestKind::kIsVisible:
      return c.is_visible != nullptr ? c.is_visible(c.context) : 1;
    case RequestKind::kIsMinimized:
      return c.is_minimized != nullptr ? c.is_minimized(c.context) : 0;
    case RequestKind::kShow:
      if (request.show_command == platform::kSwMinimize) Call(c.minimize, c.context);
      if (request.show_command == platform::kSwRestore) Call(c.restore, c.context);
      return 0;
    case RequestKind::kSetForeground:
      Call(c.bring_to_front, c.context);
      return 1;
    case RequestKind::kMessage:
      break;
  }
  if (request.message == platform::kWmActivate && (request.wparam & 0xFFFF) != 0) {
    Call(c.activate, c.context);
  } else if (request.message == platform::kWmSysCommand &&
             (request.wparam & 0xFFF0) == platform::kScRestore) {
    Call(c.restore, c.context);
  } else if (request.message == platform::kWmClose) {
    return c.close != nullptr && c.close(c.context) != 0 ? 1 : 0;
  } else if (request.message >= kFirstUserMessage && c.notice != nullptr) {
    c.notice(c.context, request.message);
  }
  return 0;
}

}  // namespace

HWND RegistrarVentanaPrincipal(const wchar_t* class_name, const TRegVentanaPrincipal* callbacks) {
  try {
    if (callbacks == nullptr) return nullptr;
    const TRegVentanaPrincipal c = *callbacks;
    HWND window = nullptr;
    platform::register_main_window(
        class_name, [c](const WindowRequest& request) { return Answer(c, request); }, window);
    return window;
  } catch (...) {
    return nullptr;
  }
}

void BorrarRegistroVentanaPrincipal(HWND window) {
  try {
    platform::unregister_main_window(window);
  } catch (...) {
  }
}
