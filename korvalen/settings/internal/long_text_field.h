// Writing a quoted text into a record that may be too short for it: when the
// text does not fit the line as read, the record is rebuilt at the length it
// needs, its head up to the field followed by the quoted text, without the
// terminator; then the line goes to the file. The database folder of the
// process file and the identification text are written so.
#pragma once

#include <cstdio>

namespace korvalen::detail {

// text at cursor in line, then the line (or the rebuilt record) written to
// out with EscribirLineaEnFichero.
void write_long_text_field(FILE* out, wchar_t* line, int cursor, const wchar_t* text);

}  // namespace korvalen::detail
