// Walking the files, or the subfolders, of a folder one entry at a time, with
// a search record the caller owns.
//
//   TDtsFile search;
//   for (int found = DamePrimerFichero(L"*.err", search); found != 0;
//        found = DameSiguienteFichero(search)) {
//     use(search.data.name);
//   }
//   // a search that has run out is closed, and its handle is -1 again
//
// A caller that stops before the end keeps the search open in the record.
#pragma once

#include <cstdint>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// The search handle (-1 when no search is open) and the entry found last.
// The handle is pointer-sized: an int on 32-bit Windows, and wide enough on
// 64-bit systems for what the find functions return there.
struct TDtsFile {
  intptr_t handle;
  _wfinddata64i32_t data;
};

// Starts a search for the pattern (wildcards '*' and '?') and finds its first
// file, skipping folders. 1 when one was found; 0 when
// none, the search then closed and the handle -1.
KORVALEN_API int DamePrimerFichero(const wchar_t* pattern, TDtsFile& search);
// The next file of the search; 0 at the end, the search then closed and the
// handle -1. 0 at once when the handle is already -1.
KORVALEN_API int DameSiguienteFichero(TDtsFile& search);

// The same for folders only, leaving out "." and "..".
KORVALEN_API int DamePrimerSubdirectorio(const wchar_t* pattern, TDtsFile& search);
KORVALEN_API int DameSiguienteSubdirectorio(TDtsFile& search);

// The size in bytes of the first file that matches the path or pattern; 0 when
// none does. Sizes beyond 2 GiB do not fit the result.
KORVALEN_API LONG DameTallaDeFich(const wchar_t* path);
