// Internal: how the state files write a line. As EscribirLineaEnFichero (the
// value cut at 498 characters, in the ANSI code page), except that the line end
// is always written: a value holding a line feed, or a character the code page
// cannot hold, is cut there but never runs into the next line, so a reader
// always finds each value on its own line.
#pragma once

#include <cstdio>

namespace korvalen::detail {

void write_state_line(FILE* file, const wchar_t* value);

}  // namespace korvalen::detail
