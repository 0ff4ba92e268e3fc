// Key presses waiting in a window's queue: the Escape poll of long operations.
//
//   unsigned key = 0;
//   if (platform::take_key_down(window, key) && key == 27) { /* Escape */ }
//
// Windows removes at most one WM_KEYDOWN of that window from the calling
// thread's queue. POSIX has no window queue of its own: the GUI backend hands
// its key queue to set_key_down_source when it starts, and until one does,
// no key is ever waiting.
#pragma once

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// Removes the oldest key-down of that window, if any; true with its key code.
bool take_key_down(HWND window, unsigned& key);

// The key queue of the GUI backend: takes the oldest key-down of a window as
// take_key_down does. Null removes it. Windows ignores it.
using KeyDownSource = bool (*)(HWND window, unsigned& key);
void set_key_down_source(KeyDownSource source);

}  // namespace korvalen::platform
