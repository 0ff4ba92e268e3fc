#include "korvalen/platform/internal/path_parts.h"

#include <stdlib.h>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

void make_path(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
               const wchar_t* ext) {
  if (path == nullptr) return;
  if (_wmakepath_s(path, kMaxPath, drive, dir, fname, ext) != 0) path[0] = 0;
}

void split_path(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
  wchar_t d[kMaxDrive], di[kMaxDir], f[kMaxFname], e[kMaxExt];
  if (path == nullptr ||
      _wsplitpath_s(path, d, kMaxDrive, di, kMaxDir, f, kMaxFname, e, kMaxExt) != 0) {
    d[0] = di[0] = f[0] = e[0] = 0;
  }
  if (drive != nullptr) wcscpy(drive, d);
  if (dir != nullptr) wcscpy(dir, di);
  if (fname != nullptr) wcscpy(fname, f);
  if (ext != nullptr) wcscpy(ext, e);
}

}  // namespace korvalen::platform
