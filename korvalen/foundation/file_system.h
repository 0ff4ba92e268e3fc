// The C runtime's file-system calls under the suite's short names, with the
// Windows semantics on every system: results as the Windows runtime gives
// them (0 on success, else -1 or an errno value), names with '\' as a
// separator and found without regard to case, and directory searches with the
// wildcards '*' and '?' in the order NTFS lists entries.
//
//   if (Access(L"MIRSELIN.CNI", 0) == 0) { ... }  // exists
//   _wfinddata64i32_t data;
//   const intptr_t search = FindFirst(L"*.err", &data);
//   if (search != -1) {
//     do { use(data.name); } while (FindNext(search, &data) == 0);
//   }
#pragma once

#include <cstdint>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

KORVALEN_API int Access(const wchar_t* name, int mode);  // 0, or an errno value
KORVALEN_API int Access(const char* name, int mode);
KORVALEN_API int chMod(const wchar_t* name, int permission);
KORVALEN_API int chMod(const char* name, int permission);
KORVALEN_API int chDir(const wchar_t* name);
KORVALEN_API int chDir(const char* name);
KORVALEN_API int mkDir(const wchar_t* name);
KORVALEN_API int mkDir(const char* name);
KORVALEN_API int rmDir(const wchar_t* name);
KORVALEN_API int rmDir(const char* name);
KORVALEN_API int unLink(const wchar_t* name);
KORVALEN_API int unLink(const char* name);
KORVALEN_API int Remove(const wchar_t* name);
KORVALEN_API int Remove(const char* name);
// Refuses an existing new name, as on Windows.
KORVALEN_API int Rename(const wchar_t* old_name, const wchar_t* new_name);
KORVALEN_API int Rename(const char* old_name, const wchar_t* new_name);
KORVALEN_API int Rename(const wchar_t* old_name, const char* new_name);
KORVALEN_API int Rename(const char* old_name, const char* new_name);
KORVALEN_API wchar_t* GetCwd(wchar_t* buffer, int capacity);

// A search handle, or -1 when nothing matches. FindNext gives 0 for each
// further entry and -1 at the end.
KORVALEN_API intptr_t FindFirst(const wchar_t* pattern, _wfinddata64i32_t* data);
KORVALEN_API intptr_t FindFirst(const char* pattern, _wfinddata64i32_t* data);
KORVALEN_API int FindNext(intptr_t handle, _wfinddata64i32_t* data);

// _wsearchenv: the full name of file in the current directory or in one of
// the directories the environment variable lists. The result holds at most
// MAX_PATH characters; it is empty when the file is not found.
KORVALEN_API void SearchEnv(const wchar_t* file, const wchar_t* variable, wchar_t* result);
KORVALEN_API void SearchEnv(const char* file, const wchar_t* variable, wchar_t* result);
KORVALEN_API void SearchEnv(const wchar_t* file, const char* variable, wchar_t* result);
KORVALEN_API void SearchEnv(const char* file, const char* variable, wchar_t* result);
