// _wmakepath and _wsplitpath under the suite's names: composing a path from
// drive, directory, file name and extension, and taking one apart. Parts are
// bounded by the runtime's limits (3, 256, 256 and 256 characters; MAX_PATH
// for the whole path).
//
//   wchar_t path[MAX_PATH];
//   MakePath(path, L"C", L"\\suite", "MIRSELIN", ".CNI");  // "C:\suite\MIRSELIN.CNI"
//   wchar_t name[256], extension[256];
//   SplitPath(path, nullptr, nullptr, name, extension);
#pragma once

#include "korvalen/export.h"

KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const wchar_t* fname, const wchar_t* ext);
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const char* fname, const wchar_t* ext);
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const wchar_t* fname, const char* ext);
KORVALEN_API void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir,
                           const char* fname, const char* ext);
// Null outputs are skipped.
KORVALEN_API void SplitPath(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname,
                            wchar_t* ext);
KORVALEN_API void SplitPath(const char* path, wchar_t* drive, wchar_t* dir, wchar_t* fname,
                            wchar_t* ext);
