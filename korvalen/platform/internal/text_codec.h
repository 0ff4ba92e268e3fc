// Conversion between the 8-bit ANSI code page of the settings files and the
// wide text the library works in. Windows uses the system ANSI code page; other
// systems use a fixed Windows-1252 table.
//
// Both directions convert up to the source's terminator. The destination is
// always terminated when its capacity is above zero; text that does not fit is
// cut. A wide character the code page cannot hold is written as its best-fit
// look-alike where Windows has one (U+0100 as 'A'), else as a zero byte, which
// ends the 8-bit text at that point (a line written to a file stops there).
#pragma once

namespace korvalen::platform {

// Returns the characters written including the terminator; with a capacity of
// 0, the capacity the whole text needs; 0 when the text had to be cut.
int ansi_to_wide(const char* src, wchar_t* dst, int capacity);

// As ansi_to_wide, in bytes.
int wide_to_ansi(const wchar_t* src, char* dst, int capacity);

// Code-page conversion of one character; 0 where the code page has none.
wchar_t ansi_char_to_wide(unsigned char c);
char wide_char_to_ansi(wchar_t c);

}  // namespace korvalen::platform
