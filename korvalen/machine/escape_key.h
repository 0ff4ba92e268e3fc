// The Escape poll of long operations: whether the user pressed Escape in a
// window since the last look.
//
//   while (working) {
//     if (HayEscapePulsado(dialog)) break;
//     ...
//   }
//
// On Windows the oldest key-down message of that window is taken from the
// calling thread's queue; a key other than Escape is taken too, and lost. On
// Linux the key presses come from the graphical interface once it is loaded;
// until then no key is ever waiting.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// 1 when a key-down was waiting for the window and its key was Escape (27),
// else 0; 0 for a null window.
KORVALEN_API int HayEscapePulsado(HWND window);
