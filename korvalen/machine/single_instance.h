// Finding the suite's running programs by the class of their main window:
// bringing one to the front instead of starting a second copy, asking one to
// close, waiting for one to end.
//
//   // At the start of a program: a visible copy already runs? It comes to
//   // the front and this one ends.
//   if (HayOtroProgramaIgual(L"C_VortanPr")) return 0;
//   RegistrarVentanaPrincipal(L"C_VortanPr", &callbacks);  // Linux; see main_window_registration.h
//
//   LanzarEjecutableVnt(L"C_DrawNest", L"DrawNest.exe");    // to the front, or start it
//   if (!CerrarModuloActivo(L"C_DrawNest")) { /* it did not close */ }
//
// On Windows a program is found by its main window (FindWindowW) and talked to
// with window messages. On Linux a program is found by its registration
// (RegistrarVentanaPrincipal), whose callbacks answer the same requests; a
// program that died without ending its registration is not found. A request
// to a program that does not answer within a second is given up, and that
// program is taken as visible and not minimised.
//
// The waits block the caller's thread; its window handles no messages
// meanwhile.
#pragma once

#include "korvalen/export.h"

// Brings the program to the front: restored when it is minimised, else
// activated (sent, synchronous). When none runs, starts the command line
// without waiting.
KORVALEN_API void LanzarEjecutableVnt(const wchar_t* class_name, const wchar_t* command_line);

// As LanzarEjecutableVnt, but the restore or activate request is posted
// (asynchronous) and the window is not made the foreground window. When none
// runs, starts the command line and looks for its window every 100 ms, up to
// 1000 times (100 s); a program that never shows one keeps running. Returns 1
// when the window exists at the end, 0 otherwise (also when the start failed).
KORVALEN_API int ActivarEjecutableVnt(const wchar_t* class_name, const wchar_t* command_line);

// 1 when a visible copy runs, which is then minimised, restored, activated and
// made the foreground window. 0 when none runs, or when the one that runs is
// invisible: that one is asked to close, so that the caller goes on as the
// only copy.
KORVALEN_API int HayOtroProgramaIgual(const wchar_t* class_name);

// Brings the program to the front and asks it to close (synchronous), then
// looks, as fast as it can, whether it has ended: returns 1 when it has (or
// when none ran), 0 when its window is still there after six looks. While the
// window is gone but the program still runs, it keeps looking.
KORVALEN_API int CerrarModuloActivo(const wchar_t* class_name);

// Waits, without a time limit, until the program has ended, asking it first
// to close when close is non-zero. Returns at once when none runs.
KORVALEN_API void EsperarATerminarEjec(const wchar_t* class_name, int close);
