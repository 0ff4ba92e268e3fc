#include "korvalen/foundation/path_functions.h"

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/path_parts.h"

using korvalen::detail::WideArg;
namespace platform = korvalen::platform;

void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
              const wchar_t* ext) {
  platform::make_path(path, drive, dir, fname, ext);
}
void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const char* fname,
              const wchar_t* ext) {
  MakePath(path, drive, dir, WideArg(fname).get(), ext);
}
void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
              const char* ext) {
  MakePath(path, drive, dir, fname, WideArg(ext).get());
}
void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const char* fname,
              const char* ext) {
  MakePath(path, drive, dir, WideArg(fname).get(), WideArg(ext).get());
}

void SplitPath(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
  platform::split_path(path, drive, dir, fname, ext);
}
void SplitPath(const char* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
  SplitPath(WideArg(path).get(), drive, dir, fname, ext);
}
