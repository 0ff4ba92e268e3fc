// _wmakepath and _wsplitpath: composing and taking apart drive, directory,
// file name and extension. Parts are bounded by the runtime's limits (3, 256,
// 256 and 256 characters; 260 for the whole path). Neither reports failure:
// what exceeds a limit is cut on POSIX, where the Windows runtime gives empty
// parts instead.
#pragma once

namespace korvalen::platform {

constexpr int kMaxDrive = 3;
constexpr int kMaxDir = 256;
constexpr int kMaxFname = 256;
constexpr int kMaxExt = 256;
constexpr int kMaxPath = 260;

void make_path(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
               const wchar_t* ext);
// Null outputs are skipped.
void split_path(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext);

}  // namespace korvalen::platform
