// The duct figures offered to the user, in groups by letter: the suite's own
// catalogue "LISTDUCT.CFG" (groups 0 to 99) and the user's "DUCTUSER.CFG"
// (groups 100 on, as group - 100), both in the current directory. A group's
// records carry the letter 'F' + group, the figure number as index and the
// name: "F012 \"Elbow 90\" ;". The favourites are group 9, letter 'O', in
// "LISTDUCT.CFG". A figure's own settings file holds its long name in the
// record X007.
//
//   TRegFig* first = nullptr;
//   TRegFig* last = nullptr;
//   LeerFicheroListaFiguras(2, first, last);   // the 'H' records of LISTDUCT.CFG
//   if (!IsFavorite(first->number, first->name)) AddFavorite(first->number, first->name);
//   LiberarLista((void**)&first, (void**)&last);
//
//   wchar_t long_name[81];
//   DameNombreLargo(L"CODO90.CFG", long_name);
//
// Letters run from F to Z: groups 0 to 20 and 100 to 120. Any other group
// (below 0, 21 to 99, above 120) has no records, reads as an empty list and
// is never written. Readers never fail: missing files give empty results.
#pragma once

#include <cstdint>

#include "korvalen/export.h"

inline constexpr int kFigureNameChars = 266;
// The longest long name that EscribirFiguraCfg writes, and that PonNombreLargo
// can write into a record EscribirFiguraCfg made.
inline constexpr int kFigureLongNameChars = 70;

struct TRegFig {
  TRegFig* next;
  TRegFig* previous;
  std::int32_t number;             // the record's index
  wchar_t name[kFigureNameChars];  // 265 characters and the terminator
};

// head and tail = a new list of the group's records in file order (empty for
// a missing file or a group without a letter).
KORVALEN_API void LeerFicheroListaFiguras(int group, TRegFig*& head, TRegFig*& tail);

// --- favourites ("LISTDUCT.CFG") ------------------------------------------------
// 1 when an 'O' record has that number as index, else 0; the name is not
// compared.
KORVALEN_API int IsFavorite(int number, const wchar_t* name);
// Unless the number is a favourite already, appends the record
// "O<number, three digits> \"<name>\" ;" at the end of the file (created when
// missing); the name is cut to 265 characters.
KORVALEN_API void AddFavorite(int number, const wchar_t* name);
// Rewrites the file through "AUXLDUCT.CFG" without the 'O' records of that
// number and without blank lines; the name is not used. As the suite has
// always done it, the file is deleted and the work file renamed onto it even
// when the work file could not be created: the catalogue is then lost.
KORVALEN_API void RemoveFavorite(int number, const wchar_t* name);

// --- whole catalogues ------------------------------------------------------------
// Writes the list as the group's records: the group's file is rewritten
// through its work file ("AUXLDUCT.CFG", "AUXDUSER.CFG") without the records
// of the group's letter, then the list's records follow the file's other
// lines, each "<letter><number, three digits> \"<name>\" ;". A missing file
// is created. Each name is cut at a double quote or a line end, and to fit
// the record in 80 characters, so that LeerFicheroListaFiguras reads back
// what was written. Nothing happens for a group without a letter.
KORVALEN_API void EscribirFicheroListaFiguras(int group, TRegFig* head);

// --- a figure's settings file ----------------------------------------------------
// long_name (81 characters) = the text of the file's first X007 record; empty
// when the file or the record is missing.
KORVALEN_API void DameNombreLargo(const wchar_t* file_name, wchar_t* long_name);
// Rewrites the file through "AUXCFGP.CFG" with the text of its X007 records
// replaced in place (cut so that the record keeps its length), blank lines
// dropped. When the work file cannot be created the file stays as it was.
KORVALEN_API void PonNombreLargo(const wchar_t* file_name, const wchar_t* long_name);
// Writes the figure's settings file anew: its one record X007 with the long
// name cut to kFigureLongNameChars, padded as DameParametroTexto pads a text
// record (terminator in column 77), so that PonNombreLargo later has the room
// of a whole long name. 1 when written, 0 when the file cannot be created.
KORVALEN_API int EscribirFiguraCfg(const wchar_t* file_name, const wchar_t* long_name);
