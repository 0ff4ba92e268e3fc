// Files that hold one number as a line ("%d\n", written in text mode): the
// launch mode and the published help windows. Each is written whole, here
// only, so that the way whole files are written can change in one place.
//
//   korvalen::detail::write_number_file(L"MODOEXE.SYS", 2);
#pragma once

namespace korvalen::detail {

// The file becomes the number, written whole (whole_file.h); nothing when
// the file cannot be written.
void write_number_file(const wchar_t* name, int value);

}  // namespace korvalen::detail
