// DameNombreFic: unique 8-character base names for files that several
// programs of the suite create at the same time in one directory, such as the
// ".err" error reports.
//
//   wchar_t base[korvalen::kUniqueNameChars + 1];
//   if (DameNombreFic(L"CONTERRW.cdr", L".err", base)) {
//     // base is "00000042"; "00000042.err" now exists, empty, and is ours
//   }
//
// The counter file holds the last base name handed out ("00000041") on its
// first line. A caller holds it exclusively while it takes the next number, so
// concurrent callers wait for each other (with a bounded back-off). The name is
// then reserved by creating base + extension beside the counter file, which
// cannot succeed twice: a name that a file left behind already holds (say,
// from a counter file deleted since) is skipped, never reused.
#pragma once

#include "korvalen/export.h"

namespace korvalen {

// Characters of a base name: eight decimal digits, from "00000001" up to
// "99999999", after which the count starts again at "00000001".
inline constexpr int kUniqueNameChars = 8;

}  // namespace korvalen

// Writes the next free base name (kUniqueNameChars + 1 characters with the
// terminator) and creates the empty file base + extension in the counter
// file's directory. Returns 1, or 0 with base empty when the counter file stays
// held by another process for about five seconds, cannot be opened, or no
// name could be reserved.
KORVALEN_API int DameNombreFic(const wchar_t* counter_file, const wchar_t* extension,
                               wchar_t* base);
