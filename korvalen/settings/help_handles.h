// The hand-shake through which the suite's programs close one another's help
// window: each program publishes the handle of its help window in a file of
// its own, and CerrarAyuda closes the window named by "WINDHELP.SYS". The
// files are in the current directory, each one line, the handle in decimal
// ("%d\n"); which program writes "WINDHELP.SYS" is the suite's affair.
//
//   PonerHandleAyudaDrawNest(help_window);  // "DRAWHELP.SYS"
//   ...
//   CerrarAyuda();                          // elsewhere: closes what WINDHELP.SYS names
//
// These are small state files beside the other product and language
// settings, with no user interface of their own, hence here rather than
// among the dialogs. On Linux a handle is what RegistrarVentanaPrincipal
// returned for the help window (main_window_registration.h).
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// Reads the handle from "WINDHELP.SYS", asks that window to close (posted,
// WM_CLOSE) and deletes the file. 1 when the file was there, 0 when not.
KORVALEN_API int CerrarAyuda();

// Write "VORTHELP.SYS", "DRAWHELP.SYS" and "PROCHELP.SYS".
KORVALEN_API void PonerHandleAyudaVortanPr(HWND window);
KORVALEN_API void PonerHandleAyudaDrawNest(HWND window);
KORVALEN_API void PonerHandleAyudaProcesos(HWND window);
