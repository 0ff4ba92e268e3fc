// The GTK module as the library sees it: loaded once, on the first dialog or
// message box, and only when the environment names a display (DISPLAY or
// WAYLAND_DISPLAY). It is "libkorvalen-gtk.so.1" beside this library, or the
// file KORVALEN_GTK_MODULE names. Without a display, without the module or
// when the toolkit cannot open the display, there is none and the dialogs
// are headless.
//
//   if (const KorvalenGtkApi* gtk = platform::gtk_module()) gtk->message_box(...);
#pragma once

#include "korvalen/platform/posix/gtk_interface.h"
#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// Null when there is no module to use.
const KorvalenGtkApi* gtk_module();

// Whether the environment names a display at all.
bool display_named();

// The module's dialog behind a handle the library gave out; null for any
// other handle.
void* gtk_dialog_of(HWND window);
void forget_gtk_dialog(HWND window);
HWND remember_gtk_dialog(void* dialog);

}  // namespace korvalen::platform
