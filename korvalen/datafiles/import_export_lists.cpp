#include "korvalen/datafiles/import_export_lists.h"

#include <cstdio>
#include <string>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/datafiles/internal/catalog_files.h"
#include "korvalen/foundation/file_names.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/settings/language_resources.h"

namespace {

using korvalen::kCfgLineChars;
using korvalen::detail::append_text;
using korvalen::detail::or_empty;

constexpr const wchar_t* kWorkFile = L"LSIMPEXP.AUX";

struct Kind {
  const wchar_t* text;
  wchar_t letter;
  const wchar_t* installed;  // whose entries follow the file's, if any
};

constexpr Kind kKinds[] = {
    {L"IMP", L'A', korvalen::detail::kImporters.installed},
    {L"EXP", L'B', korvalen::detail::kExporters.installed},
    {L"LST", L'C', nullptr},
    {L"CFG", L'D', nullptr},
};

const Kind* KindOf(const wchar_t* text) {
  if (text == nullptr) return nullptr;
  for (const Kind& kind : kKinds) {
    if (StrCmp(kind.text, text) == 0) return &kind;
  }
  return nullptr;
}

struct LanguageFile {
  explicit LanguageFile(int language) { DameFicheroDeIdioma(L"LSIMPEXP", language, name); }
  wchar_t name[32];  // "LSIMPEXP." and any int
};

}  // namespace

void DameListasImpExp(int language, const wchar_t* kind, void* /*reserved*/,
                      TRegListaNombre*& names, TRegListaNombre*& names_last,
                      TRegListaNombre*& texts, TRegListaNombre*& texts_last) {
  // Not CambiarDirectorioDeApp: reading a list has no business setting up
  // the thread's COM apartment.
  wchar_t directory[korvalen::kDirectoryChars];
  DameDirectorioDeApp(directory);
  if (directory[0] != 0) CambiarDirectorio(directory);
  DameListasImpExpDeDirActual(language, kind, names, names_last, texts, texts_last);
}

void DameListasImpExpDeDirActual(int language, const wchar_t* kind_text, TRegListaNombre*& names,
                                 TRegListaNombre*& names_last, TRegListaNombre*& texts,
                                 TRegListaNombre*& texts_last) {
  names = names_last = texts = texts_last = nullptr;
  const Kind* kind = KindOf(kind_text);
  if (kind == nullptr) return;
  const LanguageFile file(language);
  korvalen::detail::for_each_record<kCfgLineChars>(
      file.name, [&](wchar_t* line, wchar_t type, int, int& cursor) {
        return type != kind->letter || (append_text(line, cursor, names, names_last) &&
                                        append_text(line, cursor, texts, texts_last));
      });
  if (kind->installed == nullptr) return;
  korvalen::detail::for_each_record<kCfgLineChars>(
      kind->installed, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'A') return true;
        if (index == korvalen::detail::kEntryName) {
          return append_text(line, cursor, names, names_last);
        }
        if (index == korvalen::detail::kFirstCode) {
          return append_text(line, cursor, texts, texts_last);
        }
        return true;
      });
}

void MeterLsImpExpNuevo(int language, const wchar_t* kind_text, const wchar_t* name,
                        const wchar_t* text) {
  const Kind* kind = KindOf(kind_text);
  if (kind == nullptr) return;
  try {
    const std::wstring line = std::wstring(1, kind->letter) + L"100 \"" + or_empty(name) +
                              L"\" \"" + or_empty(text) + L"\" ;";
    const auto write_line = [&](FILE* out) { EscribirLineaEnFichero(out, line.c_str()); };
    const LanguageFile file(language);
    if (korvalen::detail::rewrite_records<kCfgLineChars>(
            file.name, kWorkFile, [](wchar_t*, wchar_t, int, int) {}, write_line)) {
      return;
    }
    // A file that exists but does not open is left alone.
    if (korvalen::detail::file_exists(file.name)) return;
    korvalen::detail::WorkFile out(kWorkFile);
    if (out.stream() == nullptr) return;
    write_line(out.stream());
    out.Replace(file.name);
  } catch (...) {
  }
}

void BorrarEnLsImpExp(int language, const wchar_t* kind_text, const TRegListaNombre* names) {
  const Kind* kind = KindOf(kind_text);
  if (kind == nullptr) return;
  const LanguageFile file(language);
  korvalen::detail::rewrite_records<kCfgLineChars>(
      file.name, kWorkFile, [&](wchar_t* line, wchar_t type, int, int cursor) {
        if (type != kind->letter) return true;
        wchar_t first[kCfgLineChars + 1];
        LeerUnTexto(line, cursor, first);
        return !korvalen::detail::name_listed(first, names);
      });
}
