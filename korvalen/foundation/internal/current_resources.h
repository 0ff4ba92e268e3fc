// The language library the texts of the library come from: the one
// CargaRecursosDeIdioma loaded last and made current. LoadStr, the default
// and special messages, the error texts and the dialogs read from it; until
// one is current there are no texts.
//
//   korvalen::detail::set_current_resources(module);
//   wchar_t text[1024];
//   korvalen::detail::load_string(25000, text, 1024);
#pragma once

#include "korvalen/platform/windows_types.h"

namespace korvalen::detail {

void set_current_resources(HMODULE module);
HMODULE current_resources();

// String id of the current library into buffer (capacity characters, cut to
// fit, terminated): its length, 0 (with an empty buffer) when there is no
// such string or no current library.
int load_string(unsigned id, wchar_t* buffer, int capacity);

}  // namespace korvalen::detail
