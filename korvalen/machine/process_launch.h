// Starting the suite's programs, waiting for one to end, and the launch-mode
// file "MODOEXE.SYS" through which a program tells the next one how it was
// started.
//
//   int code = 0;
//   if (LanzarProcesoEjecutable(L"\"C:\\Vortan\\DrawNest.exe\" /import", 1, code)) {
//     // ended, with its exit code in code
//   }
//   EscribirModoLanza(2);
//   LanzarEjecutable(L"Procesos.exe");
//
// A command line is the program file and its arguments, quoted as on Windows.
// On Linux it is split as Windows programs split theirs (blanks separate,
// double quotes group, backslashes escape only quotes), and a bare program
// name is looked for beside the running program, in the current directory,
// then along PATH; a name ending in ".exe" that names nothing is also tried
// without it. Exit codes read as on Windows: the code the program ended
// with; 3 after an abort, 0xC0000005 after an access violation, 1 when it
// was killed.
#pragma once

#include "korvalen/export.h"

// Starts the command line (if that fails, once more with the whole line
// taken as the program file's name). With wait non-zero, waits for the end of
// the program, looking every 100 ms, and gives its exit code; otherwise
// exit_code is 0. Returns non-zero when the program was started. The caller's
// thread is blocked while it waits.
KORVALEN_API int LanzarProcesoEjecutable(const wchar_t* command_line, int wait, int& exit_code);
// Starts the command line without waiting.
KORVALEN_API void LanzarEjecutable(const wchar_t* command_line);

// Writes "MODOEXE.SYS" in the current directory: the mode as one line
// ("%d\n"); nothing when the file cannot be created.
KORVALEN_API void EscribirModoLanza(int mode);
