// The texts the user sees, from the string resources of the current language
// module.
//
//   wchar_t text[1024];
//   if (LoadStr(26235, text) == 0) { /* no such string, or no module loaded */ }
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// Empties the buffer and loads the string resource of that number from the
// current language module: 1, or 0 when there is none (the buffer stays
// empty). The buffer must hold the string; texts are cut at 1024 characters.
KORVALEN_API int LoadStr(UINT id, wchar_t* buffer);
