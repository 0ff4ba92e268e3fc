// Opening, reading and writing the suite's files. On disk they are 8-bit text
// in the code page, with CR LF line ends in text mode ("rt", "wt"); in memory
// a line is wide text ending in a single line feed. Every file of the suite is
// read and written through these functions (and formatted_output.h).
//
//   FILE* f = fOpen(L"UNIDADES.CFG", L"rt");
//   wchar_t line[1024];
//   while (f != nullptr && fGets(line, 1024, f) != nullptr) { ... }
//   if (f != nullptr) std::fclose(f);
//
// Names follow the Windows rules on every system: '\' is a separator, and a
// name that does not exist as spelled finds an existing entry that differs
// only in case.
#pragma once

#include <cstdio>

#include "korvalen/export.h"

// _wfopen_s; null when the file cannot be opened.
KORVALEN_API FILE* fOpen(const wchar_t* name, const wchar_t* mode);
KORVALEN_API FILE* fOpen(const char* name, const wchar_t* mode);
KORVALEN_API FILE* fOpen(const wchar_t* name, const char* mode);
KORVALEN_API FILE* fOpen(const char* name, const char* mode);
// _wfsopen with a sharing flag (_SH_DENYNO, ...); the flag has no effect
// outside Windows.
KORVALEN_API FILE* fsOpen(const wchar_t* name, const wchar_t* mode, int share_flag);
KORVALEN_API FILE* fsOpen(const char* name, const wchar_t* mode, int share_flag);
KORVALEN_API FILE* fsOpen(const wchar_t* name, const char* mode, int share_flag);
KORVALEN_API FILE* fsOpen(const char* name, const char* mode, int share_flag);
// One line of at most 2*capacity-1 bytes (2047 above 1024), converted into the
// caller's capacity characters. Null at end of file.
KORVALEN_API wchar_t* fGets(wchar_t* buffer, int capacity, FILE* stream);
// Writes the line converted to the code page: a character the code page
// cannot hold ends what is written.
KORVALEN_API int fPuts(const wchar_t* line, FILE* stream);
KORVALEN_API int fPuts(const char* line, FILE* stream);
