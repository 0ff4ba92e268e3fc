// Internal: the file pairs of the three catalogues, and the reader that takes
// one field of every catalogue entry into a name list (the makers of A000,
// the names of A001, the codes of A002), which the catalogue lists and the
// import and export lists share.
//
//   TRegListaNombre* names = nullptr;
//   TRegListaNombre* last = nullptr;
//   korvalen::detail::read_catalog_texts(korvalen::detail::kImporters.installed,
//                                        korvalen::detail::kEntryName, names, last);
#pragma once

#include "korvalen/foundation/name_list.h"

namespace korvalen::detail {

struct CatalogFiles {
  const wchar_t* catalog;    // every entry the suite knows
  const wchar_t* installed;  // the entries this installation has
};

inline constexpr CatalogFiles kMachines = {L"LISTPOST.ALL", L"LISTPOST.CFG"};
inline constexpr CatalogFiles kImporters = {L"LISTIMPO.ALL", L"LISTIMPO.CFG"};
inline constexpr CatalogFiles kExporters = {L"LISTEXPO.ALL", L"LISTEXPO.CFG"};

// The A record indexes of an entry's fields.
inline constexpr int kMaker = 0;
inline constexpr int kEntryName = 1;
inline constexpr int kFirstCode = 2;
inline constexpr int kSecondCode = 3;

// first and last = a new list of the texts of every A<index> record of the
// file, in file order; empty for a missing file.
void read_catalog_texts(const wchar_t* file, int index, TRegListaNombre*& first,
                        TRegListaNombre*& last);

// Appends a node with the quoted text at the cursor (a text of an
// 80-character record line always fits the name); false when out of memory.
bool append_text(const wchar_t* line, int& cursor, TRegListaNombre*& first, TRegListaNombre*& last);

// Whether a node of the list holds exactly that name.
bool name_listed(const wchar_t* name, const TRegListaNombre* list);

}  // namespace korvalen::detail
