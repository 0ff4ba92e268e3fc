// The printer each printing program of the suite keeps, with its driver's
// settings, in a small file of its own, and the setup dialog that changes
// it.
//
//   C_MiImpresora printer;
//   printer.ConfigurarImpresora(0, L"LISTADO.IMP");  // the dialog, then the file
//
//   int a = 0, b = 0, c = 0;
//   wchar_t driver[81], device[81], port[81];
//   LPDEVMODEW settings = nullptr;
//   LeerFicheroCfgList(L"LISTADO.IMP", a, b, c, driver, device, port, settings);
//   if (settings != nullptr) GlobalFree(settings);
//
// The printer file, written in binary mode (every line ends with a line
// feed alone): three integers the caller gives meaning to, the driver,
// device and port names in double quotes, then n, the size of the settings
// (0 for none), and n bytes of settings. On Windows they are the DEVMODEW
// record with its driver's extra bytes (n is 220 plus their count); on Linux
// the GTK print dialog's settings, and any bytes the library did not write
// are kept as they are.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"
#include "korvalen/platform/windows_types.h"

// The print-setup dialog of the framework, with no extra flags and no
// parent, that keeps its choice in a printer file.
class KORVALEN_API C_MiImpresora : public CPrintDialog {
 public:
  C_MiImpresora();
  ~C_MiImpresora() override;

  // Shows the dialog, starting on the file's printer when it names a driver
  // (else on the system's default), and writes the file again: the three
  // integers as read, the chosen names and settings, or, when the user
  // cancels (or there is no display), what was read.
  void ConfigurarImpresora(int unused, const wchar_t* file);
};

// Reads the printer file. The integers are 0 when it cannot be opened, and
// then the names and the settings stay as the caller set them. The names
// hold 81 characters. When n is above 0 settings receives a zero-filled
// block of n bytes read from the file, which the caller frees with
// GlobalFree; it is null when that block cannot be had.
KORVALEN_API void LeerFicheroCfgList(const wchar_t* file, int& first, int& second, int& third,
                                     wchar_t* driver, wchar_t* device, wchar_t* port,
                                     LPDEVMODEW& settings);

#if !defined(_WIN32)
// Frees a settings block of LeerFicheroCfgList, as Windows frees global
// memory; null back.
extern "C" KORVALEN_API HGLOBAL GlobalFree(HGLOBAL block);
#endif
