// The library's own addition for systems without the Windows window manager:
// a program of the suite registers its main-window class, so that the others
// find it (HayOtroProgramaIgual, LanzarEjecutableVnt, CerrarModuloActivo, the
// main-window notices, CerrarAyuda) and their requests reach it.
//
//   TRegVentanaPrincipal callbacks{};
//   callbacks.context = &app;
//   callbacks.is_visible = [](void* a) { return static_cast<App*>(a)->shown ? 1 : 0; };
//   callbacks.close = [](void* a) { static_cast<App*>(a)->Quit(); return 1; };
//   HWND me = RegistrarVentanaPrincipal(L"C_VortanPr", &callbacks);
//   ...
//   BorrarRegistroVentanaPrincipal(me);  // at the end (a program that dies loses it anyway)
//
// Linux: the registration lives while the program does, in a folder of the
// user's only ($XDG_RUNTIME_DIR/korvalen, else korvalen-<uid> in the temporary
// folder); only programs of the same user reach it. The callbacks run on a
// thread of the library, one at a time, and should return promptly: a caller
// gives up on an answer after a second. A null callback answers as a window
// that is visible, not minimised, and ignores the request.
//
// Windows: programs are found by their real windows, which receive the
// messages themselves; the callbacks are not used. Registering returns this
// program's top-level window of that class (null when it has none yet), and
// ending a registration does nothing.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// What the other programs ask of a registered main window.
struct TRegVentanaPrincipal {
  void* context;                       // handed to every callback
  int (*is_visible)(void* context);    // 1 when the window is shown
  int (*is_minimized)(void* context);  // 1 when it is minimised
  void (*minimize)(void* context);
  void (*restore)(void* context);         // from minimised, or asked to restore
  void (*activate)(void* context);        // becomes the active window
  void (*bring_to_front)(void* context);  // becomes the foreground window
  // Asked to close: 1 when the window closes, which ends the registration
  // before the asking program hears back (the program then ends when it
  // likes); 0 when it stays.
  int (*close)(void* context);
  // The main-window notices: 1024 parts changed, 1025 sheets or elements
  // changed, 1026 posts changed.
  void (*notice)(void* context, unsigned message);
};

// Registers the class for this program. Returns the window's handle, which
// names it (a program may publish it, as the help windows do); null when a
// running program holds the class, or the class cannot be registered (no
// class name, no callbacks, a registry folder that is not the user's own).
KORVALEN_API HWND RegistrarVentanaPrincipal(const wchar_t* class_name,
                                            const TRegVentanaPrincipal* callbacks);
// Ends the registration; callable from within its callbacks.
KORVALEN_API void BorrarRegistroVentanaPrincipal(HWND window);
