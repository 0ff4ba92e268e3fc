#include "korvalen/machine/escape_key.h"

#include "korvalen/platform/internal/key_queue.h"

int HayEscapePulsado(HWND window) {
  try {
    constexpr unsigned kEscape = 27;
    unsigned key = 0;
    return window != nullptr && korvalen::platform::take_key_down(window, key) && key == kEscape
               ? 1
               : 0;
  } catch (...) {
    return 0;
  }
}
