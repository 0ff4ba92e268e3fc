// _wmakepath and _wsplitpath as the Windows runtime does them, both separators
// accepted and each part cut at the runtime's limits.
#include "korvalen/platform/internal/path_parts.h"

#include <cwchar>

namespace korvalen::platform {
namespace {

bool is_separator(wchar_t c) { return c == L'\\' || c == L'/'; }

void put(wchar_t* out, int capacity, const wchar_t* begin, const wchar_t* end) {
  if (out == nullptr) return;
  int n = 0;
  for (; begin < end && n < capacity - 1; ++begin) out[n++] = *begin;
  out[n] = 0;
}

// Appends text to path at *used, within kMaxPath.
void append(wchar_t* path, int* used, const wchar_t* text) {
  for (; text != nullptr && *text != 0 && *used < kMaxPath - 1; ++text) path[(*used)++] = *text;
}

void append_char(wchar_t* path, int* used, wchar_t c) {
  if (*used < kMaxPath - 1) path[(*used)++] = c;
}

}  // namespace

void make_path(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
               const wchar_t* ext) {
  if (path == nullptr) return;
  int used = 0;
  if (drive != nullptr && *drive != 0) {
    append_char(path, &used, drive[0]);
    append_char(path, &used, L':');
  }
  if (dir != nullptr && *dir != 0) {
    append(path, &used, dir);
    if (!is_separator(dir[std::wcslen(dir) - 1])) append_char(path, &used, L'\\');
  }
  append(path, &used, fname);
  if (ext != nullptr && *ext != 0) {
    if (*ext != L'.') append_char(path, &used, L'.');
    append(path, &used, ext);
  }
  path[used] = 0;
}

void split_path(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
  if (path == nullptr) path = L"";
  const wchar_t* p = path;
  if (p[0] != 0 && p[1] == L':') {
    put(drive, kMaxDrive, p, p + 2);
    p += 2;
  } else {
    put(drive, kMaxDrive, p, p);
  }
  const wchar_t* last_sep = nullptr;
  const wchar_t* last_dot = nullptr;
  for (const wchar_t* q = p; *q != 0; ++q) {
    if (is_separator(*q)) {
      last_sep = q;
      last_dot = nullptr;
    } else if (*q == L'.') {
      last_dot = q;
    }
  }
  const wchar_t* name = last_sep != nullptr ? last_sep + 1 : p;
  put(dir, kMaxDir, p, name);
  const wchar_t* end = name + std::wcslen(name);
  const wchar_t* dot = last_dot != nullptr ? last_dot : end;
  put(fname, kMaxFname, name, dot);
  put(ext, kMaxExt, dot, end);
}

}  // namespace korvalen::platform
