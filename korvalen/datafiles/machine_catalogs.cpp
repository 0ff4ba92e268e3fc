#include "korvalen/datafiles/machine_catalogs.h"

#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/datafiles/internal/catalog_files.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/platform/internal/bounded_copy.h"

namespace {

using korvalen::detail::CatalogFiles;
using korvalen::detail::name_listed;
using korvalen::detail::read_catalog_texts;
using korvalen::platform::copy_cut;

template <int kChars>
void SetField(wchar_t (&field)[kChars], const wchar_t* text) {
  copy_cut(field, kChars, text);
}

void TakeLists(const CatalogFiles& files, TRegListaNombre*& available,
               TRegListaNombre*& available_last, TRegListaNombre*& installed,
               TRegListaNombre*& installed_last, TRegListaNombre*& available_makers,
               TRegListaNombre*& available_makers_last, TRegListaNombre*& installed_makers,
               TRegListaNombre*& installed_makers_last) {
  using korvalen::detail::kEntryName;
  using korvalen::detail::kMaker;
  read_catalog_texts(files.catalog, kEntryName, available, available_last);
  read_catalog_texts(files.catalog, kMaker, available_makers, available_makers_last);
  read_catalog_texts(files.installed, kEntryName, installed, installed_last);
  read_catalog_texts(files.installed, kMaker, installed_makers, installed_makers_last);
  TRegListaNombre* name = available;
  TRegListaNombre* maker = available_makers;
  while (name != nullptr && maker != nullptr) {
    TRegListaNombre* const next_name = name->next;
    TRegListaNombre* const next_maker = maker->next;
    if (name_listed(name->name, installed)) {
      korvalen::detail::remove(available, available_last, name);
      korvalen::detail::remove(available_makers, available_makers_last, maker);
    }
    name = next_name;
    maker = next_maker;
  }
}

// One line of an installed entry: the record code, a blank and the quoted
// field, with no terminator.
void WriteField(FILE* out, int index, const wchar_t* text) {
  wchar_t line[kMachineMakerChars + 8];
  sPrintf(line, L"A%03d \"%s\"", index, text);
  EscribirLineaEnFichero(out, line);
}

void RewriteInstalled(const CatalogFiles& files, TRegListaNombre* chosen) {
  TRegListaMaqFic* first = nullptr;
  TRegListaMaqFic* last = nullptr;
  DameListaMaqDeFichero(files.catalog, first, last);
  korvalen::detail::write_whole_file(files.installed, [&](FILE* out) {
    for (const TRegListaMaqFic* e : korvalen::detail::each(first)) {
      if (!name_listed(e->name, chosen)) continue;
      WriteField(out, korvalen::detail::kMaker, e->maker);
      WriteField(out, korvalen::detail::kEntryName, e->name);
      WriteField(out, korvalen::detail::kFirstCode, e->first_code);
      WriteField(out, korvalen::detail::kSecondCode, e->second_code);
    }
  });
  korvalen::detail::free_list(first, last);
}

}  // namespace

void DameListaMaqDeFichero(const wchar_t* file, TRegListaMaqFic*& first, TRegListaMaqFic*& last) {
  first = nullptr;
  last = nullptr;
  // The entry being built keeps its fields from one entry to the next.
  TRegListaMaqFic entry{};
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      korvalen::detail::or_empty(file), [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'A' || index < korvalen::detail::kMaker ||
            index > korvalen::detail::kSecondCode) {
          return true;
        }
        wchar_t text[korvalen::kCfgLineChars + 1];
        LeerUnTexto(line, cursor, text);
        switch (index) {
          case korvalen::detail::kMaker:
            SetField(entry.maker, text);
            break;
          case korvalen::detail::kEntryName:
            SetField(entry.name, text);
            break;
          case korvalen::detail::kFirstCode:
            SetField(entry.first_code, text);
            break;
          default:
            SetField(entry.second_code, text);
            return korvalen::detail::append(first, last, entry) != 0;
        }
        return true;
      });
}

void ObtenerListaFabricantes(const wchar_t* file, TRegListaNombre*& all, TRegListaNombre*& all_last,
                             TRegListaNombre*& makers, TRegListaNombre*& makers_last) {
  read_catalog_texts(file, korvalen::detail::kMaker, all, all_last);
  makers = nullptr;
  makers_last = nullptr;
  for (const TRegListaNombre* n : korvalen::detail::each(all)) {
    if (!name_listed(n->name, makers)) korvalen::detail::append(makers, makers_last, *n);
  }
}

void DameLasListasDeMaquinas(TRegListaNombre*& available, TRegListaNombre*& available_last,
                             TRegListaNombre*& installed, TRegListaNombre*& installed_last,
                             TRegListaNombre*& available_makers,
                             TRegListaNombre*& available_makers_last,
                             TRegListaNombre*& installed_makers,
                             TRegListaNombre*& installed_makers_last) {
  TakeLists(korvalen::detail::kMachines, available, available_last, installed, installed_last,
            available_makers, available_makers_last, installed_makers, installed_makers_last);
}

void DameLasListasDeImportadores(TRegListaNombre*& available, TRegListaNombre*& available_last,
                                 TRegListaNombre*& installed, TRegListaNombre*& installed_last,
                                 TRegListaNombre*& available_makers,
                                 TRegListaNombre*& available_makers_last,
                                 TRegListaNombre*& installed_makers,
                                 TRegListaNombre*& installed_makers_last) {
  TakeLists(korvalen::detail::kImporters, available, available_last, installed, installed_last,
            available_makers, available_makers_last, installed_makers, installed_makers_last);
}

void DameLasListasDeExportadores(TRegListaNombre*& available, TRegListaNombre*& available_last,
                                 TRegListaNombre*& installed, TRegListaNombre*& installed_last,
                                 TRegListaNombre*& available_makers,
                                 TRegListaNombre*& available_makers_last,
                                 TRegListaNombre*& installed_makers,
                                 TRegListaNombre*& installed_makers_last) {
  TakeLists(korvalen::detail::kExporters, available, available_last, installed, installed_last,
            available_makers, available_makers_last, installed_makers, installed_makers_last);
}

void ActualizaMaquinasInstal(TRegListaNombre* chosen) {
  RewriteInstalled(korvalen::detail::kMachines, chosen);
}

void ActualizaImportadoresInstal(TRegListaNombre* chosen) {
  RewriteInstalled(korvalen::detail::kImporters, chosen);
}

void ActualizaExportadoresInstal(TRegListaNombre* chosen) {
  RewriteInstalled(korvalen::detail::kExporters, chosen);
}
