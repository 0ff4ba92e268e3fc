// The catalogues of the machines (post-processors), importers and exporters
// the suite knows, each beside the subset an installation has installed:
//
//   machines   "LISTPOST.ALL"  installed: "LISTPOST.CFG"
//   importers  "LISTIMPO.ALL"  installed: "LISTIMPO.CFG"
//   exporters  "LISTEXPO.ALL"  installed: "LISTEXPO.CFG"
//
// Each entry is four records in a row: A000 the maker, A001 the entry's name
// (its key), A002 and A003 two short codes; the entry is complete at its
// A003. An entry that lacks a record takes that field from the entry before
// it, and an entry without its A003 is not an entry at all.
//
//   TRegListaNombre *available = nullptr, *available_last = nullptr,
//                   *installed = nullptr, *installed_last = nullptr,
//                   *available_makers = nullptr, *available_makers_last = nullptr,
//                   *installed_makers = nullptr, *installed_makers_last = nullptr;
//   DameLasListasDeMaquinas(available, available_last, installed, installed_last,
//                           available_makers, available_makers_last, installed_makers,
//                           installed_makers_last);
//   ActualizaMaquinasInstal(installed);  // installed stays as it is, in catalogue order
//   LiberarLista((void**)&available, (void**)&available_last);  // and the other three
//
// The files are found by bare name in the current directory. Readers never
// fail: a missing file gives an empty list. Lists come back as new record
// lists (the outputs are set empty first, not freed) that the caller frees
// with LiberarLista.
#pragma once

#include "korvalen/export.h"
#include "korvalen/foundation/name_list.h"

inline constexpr int kMachineMakerChars = 81;  // 80 and the terminator
inline constexpr int kMachineNameChars = 81;
inline constexpr int kMachineCodeChars = 13;  // 12 and the terminator

struct TRegListaMaqFic {
  TRegListaMaqFic* next;
  TRegListaMaqFic* previous;
  wchar_t maker[kMachineMakerChars];
  wchar_t name[kMachineNameChars];
  wchar_t first_code[kMachineCodeChars];
  wchar_t second_code[kMachineCodeChars];
};

// Every entry of the file, in file order, each field cut to its buffer.
// Records of other letters, and A records of other indexes, are skipped.
KORVALEN_API void DameListaMaqDeFichero(const wchar_t* file, TRegListaMaqFic*& first,
                                        TRegListaMaqFic*& last);

// all = the maker of every A000 record in file order, repeats kept; makers =
// the same without repeats (exact comparison), in order of first appearance.
KORVALEN_API void ObtenerListaFabricantes(const wchar_t* file, TRegListaNombre*& all,
                                          TRegListaNombre*& all_last, TRegListaNombre*& makers,
                                          TRegListaNombre*& makers_last);

// available and available_makers: the A001 and A000 texts of the catalogue,
// node k of one beside node k of the other; installed and installed_makers
// the same of the installed file. Then every available name that is
// installed (exact comparison) goes, together with the maker at the same
// place. The lists are paired by place only: a catalogue entry without its
// A000 record shifts every maker after it.
KORVALEN_API void DameLasListasDeMaquinas(
    TRegListaNombre*& available, TRegListaNombre*& available_last, TRegListaNombre*& installed,
    TRegListaNombre*& installed_last, TRegListaNombre*& available_makers,
    TRegListaNombre*& available_makers_last, TRegListaNombre*& installed_makers,
    TRegListaNombre*& installed_makers_last);
KORVALEN_API void DameLasListasDeImportadores(
    TRegListaNombre*& available, TRegListaNombre*& available_last, TRegListaNombre*& installed,
    TRegListaNombre*& installed_last, TRegListaNombre*& available_makers,
    TRegListaNombre*& available_makers_last, TRegListaNombre*& installed_makers,
    TRegListaNombre*& installed_makers_last);
KORVALEN_API void DameLasListasDeExportadores(
    TRegListaNombre*& available, TRegListaNombre*& available_last, TRegListaNombre*& installed,
    TRegListaNombre*& installed_last, TRegListaNombre*& available_makers,
    TRegListaNombre*& available_makers_last, TRegListaNombre*& installed_makers,
    TRegListaNombre*& installed_makers_last);

// Writes the installed file anew (truncated, even for an empty list) with
// every catalogue entry, in catalogue order, whose name is in chosen: four
// lines each, `A000 "maker"`, `A001 "name"`, `A002 "code"`, `A003 "code"`,
// without a terminator. Chosen names the catalogue lacks are dropped.
KORVALEN_API void ActualizaMaquinasInstal(TRegListaNombre* chosen);
KORVALEN_API void ActualizaImportadoresInstal(TRegListaNombre* chosen);
KORVALEN_API void ActualizaExportadoresInstal(TRegListaNombre* chosen);
