// Key presses over Win32: PeekMessageW, removing key-downs only.
#include "korvalen/platform/internal/key_queue.h"

#include <windows.h>

namespace korvalen::platform {

bool take_key_down(HWND window, unsigned& key) {
  MSG message{};
  if (!PeekMessageW(&message, window, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE)) return false;
  key = static_cast<unsigned>(message.wParam);
  return true;
}

void set_key_down_source(KeyDownSource) {}

}  // namespace korvalen::platform
