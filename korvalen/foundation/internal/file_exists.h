// Whether an entry of that name exists (Access mode 0), the check the state
// and settings files make before they read, remove or replace a file.
//
//   if (korvalen::detail::file_exists(L"CHGPIEZA.SYS")) { ... }
#pragma once

#include "korvalen/foundation/file_system.h"

namespace korvalen::detail {

inline bool file_exists(const wchar_t* name) { return Access(name, 0) == 0; }

}  // namespace korvalen::detail
