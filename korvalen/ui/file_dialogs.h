// The shared file, folder and help dialogs of the suite's programs: the file
// dialog with a filter made from a comma-separated extension list, the
// folder browser, help by context number, and the check that the browser
// component is new enough for HTML help.
//
//   wchar_t file[2048] = L"plate.dxf";
//   wchar_t folder[256] = L"C:\\Parts";
//   if (SeleccionarUnFichero(1, L"dxf,dwg", file, folder, 0, 1, 1, 0)) open(file);
//   // folder now holds the folder the user ended in; the current directory
//   // is what it was before the call.
//
// On Windows these are the system's common dialogs and HTML help. On Linux
// they are GTK dialogs when there is a display (help files open in the
// desktop's viewer); without one the pickers answer as cancelled.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// The open (open non-zero) or save dialog, in the folder, starting on the
// file name. The filter lists "*.e" for each extension e of the list; the
// default extension is the list itself, none for "*". A save dialog always
// asks before overwriting. With a multiple selection the file name receives
// every chosen full path, tab-separated (2048 characters at most), otherwise
// the one full path (MAX_PATH). The folder (256 characters) receives the
// folder the user ended in, also on cancel; the current directory is always
// restored. 1 when the user confirmed, else 0.
KORVALEN_API int SeleccionarUnFichero(int open, const wchar_t* extensions, wchar_t* file,
                                      wchar_t* folder, int read_only_shown, int file_must_exist,
                                      int path_must_exist, int multiple);

// The folder browser, on the folder when one is given; the chosen
// file-system folder (MAX_PATH characters) into folder and 1, else 0.
KORVALEN_API int SeleccionarUnDirectorio(const wchar_t* title, wchar_t* folder);

// Command 1: the help file at the context number (0x20000 when that opens
// nothing); command 11: its default topic. The help window, null when none
// opened. Any other command opens nothing and comes back as the result.
KORVALEN_API HWND LanzarAyuda(unsigned long context, unsigned command, const wchar_t* file);

// 1 when the version of "SHDOCVW.DLL" is above "4.70", compared as text
// (so 4.71 and 5.00 pass, 4.70 and 10.0 do not); 0 without version
// information.
KORVALEN_API int InternetExplorerValidoParaHtmlHelp();
