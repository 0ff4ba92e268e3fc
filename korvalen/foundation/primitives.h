// Wide-text and file primitives: the short-named wrappers of the C runtime
// through which the whole suite handles text and files.
//
// Every function works on wide text; each overload that takes 8-bit text
// converts it from the ANSI code page into its own 1024-character buffer first
// and then behaves as the wide form. Pointers returned by such an overload
// point into that converted copy, which stays valid in the calling thread
// until the next call of the same overload.
//
// Files are read and written only through fOpen/fsOpen, fGets, fPuts and
// fPrintf: on disk they are 8-bit ANSI text with CR LF line ends in text mode,
// in memory wide text with a single line feed.
//
//   FILE* f = fOpen(L"UNIDADES.CFG", L"rt");
//   wchar_t line[1024];
//   while (f && fGets(line, 1024, f)) { ... }
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// --- conversions ----------------------------------------------------------
// 8-bit to wide. capacity is in characters; -1 takes the destination to be as
// large as the text needs. Returns the characters written with the terminator,
// 0 when the text had to be cut (the destination is still terminated).
KORVALEN_API int CharToTChar(wchar_t* destination, int capacity, const char* source);
// Wide to 8-bit; capacity in bytes. A character the code page cannot hold
// becomes its best-fit look-alike where Windows has one, else a zero byte,
// which ends the converted text.
KORVALEN_API int TCharToChar(char* destination, int capacity, const wchar_t* source);

// --- strings --------------------------------------------------------------
KORVALEN_API void StrCpy(wchar_t* destination, const wchar_t* source);
KORVALEN_API void StrCpy(wchar_t* destination, const char* source);
KORVALEN_API wchar_t* StrnCpy(wchar_t* destination, const wchar_t* source, std::size_t count);
KORVALEN_API wchar_t* StrnCpy(wchar_t* destination, const char* source, std::size_t count);
KORVALEN_API wchar_t* StrCat(wchar_t* destination, const wchar_t* source);
KORVALEN_API wchar_t* StrCat(wchar_t* destination, const char* source);
KORVALEN_API wchar_t* StrnCat(wchar_t* destination, const wchar_t* source, std::size_t count);
KORVALEN_API wchar_t* StrnCat(wchar_t* destination, const char* source, std::size_t count);

// Ordinal comparison of code units: -1, 0 or 1.
KORVALEN_API int StrCmp(const wchar_t* a, const wchar_t* b);
KORVALEN_API int StrCmp(const char* a, const wchar_t* b);
KORVALEN_API int StrCmp(const wchar_t* a, const char* b);
KORVALEN_API int StrCmp(const char* a, const char* b);
// Without regard to case: <0, 0 or >0.
KORVALEN_API int StriCmp(const wchar_t* a, const wchar_t* b);
KORVALEN_API int StriCmp(const char* a, const wchar_t* b);
KORVALEN_API int StriCmp(const wchar_t* a, const char* b);
KORVALEN_API int StriCmp(const char* a, const char* b);
KORVALEN_API int StrnCmp(const wchar_t* a, const wchar_t* b, std::size_t count);
KORVALEN_API int StrnCmp(const char* a, const wchar_t* b, std::size_t count);
KORVALEN_API int StrnCmp(const wchar_t* a, const char* b, std::size_t count);
KORVALEN_API int StrnCmp(const char* a, const char* b, std::size_t count);

KORVALEN_API int StrLen(const wchar_t* text);
KORVALEN_API int StrLen(const char* text);
KORVALEN_API wchar_t* StrChr(const wchar_t* text, wchar_t c);
KORVALEN_API wchar_t* StrChr(const char* text, wchar_t c);
KORVALEN_API wchar_t* StrrChr(const wchar_t* text, wchar_t c);
KORVALEN_API wchar_t* StrrChr(const char* text, wchar_t c);
KORVALEN_API wchar_t* StrStr(const wchar_t* text, const wchar_t* search);
KORVALEN_API wchar_t* StrStr(const char* text, const wchar_t* search);
KORVALEN_API wchar_t* StrStr(const wchar_t* text, const char* search);
KORVALEN_API wchar_t* StrStr(const char* text, const char* search);
KORVALEN_API std::size_t StrCspn(const wchar_t* text, const wchar_t* set);
KORVALEN_API std::size_t StrCspn(const char* text, const wchar_t* set);
KORVALEN_API std::size_t StrCspn(const wchar_t* text, const char* set);
KORVALEN_API std::size_t StrCspn(const char* text, const char* set);
// Keeps its position between calls (per thread), as wcstok does on Windows.
KORVALEN_API wchar_t* StrTok(wchar_t* text, const wchar_t* delimiters);
KORVALEN_API wchar_t* StrTok(wchar_t* text, const char* delimiters);
KORVALEN_API wchar_t* StrUpr(wchar_t* text);
KORVALEN_API wchar_t* StrLwr(wchar_t* text);
KORVALEN_API wchar_t* StrRev(wchar_t* text);

// --- numbers --------------------------------------------------------------
KORVALEN_API double StrTod(const wchar_t* text, wchar_t** end);
KORVALEN_API double StrTod(const char* text, wchar_t** end);
KORVALEN_API ULONG strToul(const wchar_t* text, wchar_t** end, int base);
KORVALEN_API ULONG strToul(const char* text, wchar_t** end, int base);
KORVALEN_API int aToi(const wchar_t* text);
KORVALEN_API int aToi(const char* text);
KORVALEN_API LONG aTol(const wchar_t* text);
KORVALEN_API LONG aTol(const char* text);
KORVALEN_API double aTof(const wchar_t* text);
KORVALEN_API double aTof(const char* text);
KORVALEN_API wchar_t* iToa(int value, wchar_t* buffer, int radix);
KORVALEN_API wchar_t* lToa(LONG value, wchar_t* buffer, int radix);
extern "C" KORVALEN_API double fabs(double value) KORVALEN_CRT_NOEXCEPT;

// --- time -----------------------------------------------------------------
KORVALEN_API wchar_t* StrDate(wchar_t* buffer);  // "mm/dd/yy"
KORVALEN_API wchar_t* StrTime(wchar_t* buffer);  // "hh:mm:ss"
KORVALEN_API std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                                  const std::tm* time);
KORVALEN_API std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const char* format,
                                  const std::tm* time);
KORVALEN_API std::tm* LocalTime(const long long* time);
KORVALEN_API std::tm* gmTime(const long long* time);

// --- environment and formatting -------------------------------------------
// The result holds at most MAX_PATH characters; empty when not found.
KORVALEN_API void SearchEnv(const wchar_t* file, const wchar_t* variable, wchar_t* result);
KORVALEN_API void SearchEnv(const char* file, const wchar_t* variable, wchar_t* result);
KORVALEN_API void SearchEnv(const wchar_t* file, const char* variable, wchar_t* result);
KORVALEN_API void SearchEnv(const char* file, const char* variable, wchar_t* result);
// Like swprintf without a count: the caller's buffer must hold the result.
// "%s" takes a wide string in a wide format, as on Windows.
KORVALEN_API int sPrintf(wchar_t* buffer, const wchar_t* format, ...);
KORVALEN_API int sPrintf(wchar_t* buffer, const char* format, ...);

// --- streams --------------------------------------------------------------
KORVALEN_API FILE* fOpen(const wchar_t* name, const wchar_t* mode);
KORVALEN_API FILE* fOpen(const char* name, const wchar_t* mode);
KORVALEN_API FILE* fOpen(const wchar_t* name, const char* mode);
KORVALEN_API FILE* fOpen(const char* name, const char* mode);
KORVALEN_API FILE* fsOpen(const wchar_t* name, const wchar_t* mode, int share_flag);
KORVALEN_API FILE* fsOpen(const char* name, const wchar_t* mode, int share_flag);
KORVALEN_API FILE* fsOpen(const wchar_t* name, const char* mode, int share_flag);
KORVALEN_API FILE* fsOpen(const char* name, const char* mode, int share_flag);
// One line of at most 2*capacity-1 bytes (2047 above 1024), converted into the
// caller's capacity characters. Null at end of file.
KORVALEN_API wchar_t* fGets(wchar_t* buffer, int capacity, FILE* stream);
KORVALEN_API int fPuts(const wchar_t* line, FILE* stream);
KORVALEN_API int fPuts(const char* line, FILE* stream);
// Formats into 1024 characters; an empty or failed result writes nothing and
// is returned as it is; else the length is returned.
KORVALEN_API int fPrintf(FILE* stream, const wchar_t* format, ...);
KORVALEN_API int fPrintf(FILE* stream, const char* format, ...);

// --- file system ----------------------------------------------------------
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
KORVALEN_API int Rename(const wchar_t* old_name, const wchar_t* new_name);
KORVALEN_API int Rename(const char* old_name, const wchar_t* new_name);
KORVALEN_API int Rename(const wchar_t* old_name, const char* new_name);
KORVALEN_API int Rename(const char* old_name, const char* new_name);
KORVALEN_API wchar_t* GetCwd(wchar_t* buffer, int capacity);
KORVALEN_API intptr_t FindFirst(const wchar_t* pattern, _wfinddata64i32_t* data);
KORVALEN_API intptr_t FindFirst(const char* pattern, _wfinddata64i32_t* data);
KORVALEN_API int FindNext(intptr_t handle, _wfinddata64i32_t* data);

// --- paths ----------------------------------------------------------------
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const wchar_t* fname, const wchar_t* ext);
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const char* fname, const wchar_t* ext);
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const wchar_t* fname, const char* ext);
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const char* fname, const char* ext);
KORVALEN_API void SplitPath(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname,
                            wchar_t* ext);
KORVALEN_API void SplitPath(const char* path, wchar_t* drive, wchar_t* dir, wchar_t* fname,
                            wchar_t* ext);

// --- resources ------------------------------------------------------------
// Empties the buffer and loads the string resource of that number from the
// current language module: 1, or 0 when there is none (the buffer stays
// empty). The buffer must hold the string; texts are cut at 1024 characters.
KORVALEN_API int LoadStr(UINT id, wchar_t* buffer);
