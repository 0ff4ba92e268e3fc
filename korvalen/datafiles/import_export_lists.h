// The formats the suite offers the user, by language: import formats ("IMP"),
// export formats ("EXP"), list formats ("LST") and configuration formats
// ("CFG"), kept in the language-numbered file "LSIMPEXP.<language, three
// digits>" of the application directory ("LSIMPEXP.007" for language 7). Each
// entry is one record of its kind's letter, A, B, C or D, with two texts, the
// entry's name and its second text:
//
//   A100 "Parts list (CSV)" "IMPCSV" ;
//
// The installed importers ("LISTIMPO.CFG") and exporters ("LISTEXPO.CFG") are
// formats too: their entry names and first short codes follow the import and
// export lists.
//
//   TRegListaNombre *names = nullptr, *names_last = nullptr,
//                   *texts = nullptr, *texts_last = nullptr;
//   DameListasImpExp(7, L"IMP", nullptr, names, names_last, texts, texts_last);
//   MeterLsImpExpNuevo(7, L"LST", L"Sheets (CSV)", L"LSTCHCSV");
//   BorrarEnLsImpExp(7, L"IMP", names);  // every import format of the file goes
//   LiberarLista((void**)&names, (void**)&names_last);  // and texts
//
// The kind is compared exactly: "imp", null or any other text has no letter,
// reads as empty lists and is never written. Lines are read as record lines of
// 80 characters, and the rewrites cut longer lines to 80 on copying. Nothing
// is reported: a missing file reads as empty.
#pragma once

#include "korvalen/export.h"
#include "korvalen/foundation/name_list.h"

// names and texts = new lists (set empty first, not freed), node k of one
// beside node k of the other: the two texts of every record of the kind's
// letter, any index, in file order (a text the record lacks reads as empty),
// then for "IMP" and "EXP" the A001 and A002 texts of the installed file, each
// in its own list. Before reading, the application directory becomes the
// current directory, and stays so.
KORVALEN_API void DameListasImpExp(int language, const wchar_t* kind, void* reserved,
                                   TRegListaNombre*& names, TRegListaNombre*& names_last,
                                   TRegListaNombre*& texts, TRegListaNombre*& texts_last);
// The library's own: the same lists from the files of the current directory,
// which stays as it is (for tools that look at an installation from outside).
KORVALEN_API void DameListasImpExpDeDirActual(int language, const wchar_t* kind,
                                              TRegListaNombre*& names, TRegListaNombre*& names_last,
                                              TRegListaNombre*& texts,
                                              TRegListaNombre*& texts_last);

// Rewrites the language file of the current directory through "LSIMPEXP.AUX",
// without its blank lines, and appends `<letter>100 "name" "text" ;` (its
// first 498 characters, as every line is written). A missing file is created
// with that line alone; when the work file cannot be created nothing changes.
KORVALEN_API void MeterLsImpExpNuevo(int language, const wchar_t* kind, const wchar_t* name,
                                     const wchar_t* text);
// Rewrites the language file of the current directory through "LSIMPEXP.AUX"
// without its blank lines and without the records of the kind's letter whose
// first text is in names (exact comparison). A missing file stays missing.
KORVALEN_API void BorrarEnLsImpExp(int language, const wchar_t* kind, const TRegListaNombre* names);
