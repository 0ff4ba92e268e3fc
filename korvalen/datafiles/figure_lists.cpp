#include "korvalen/datafiles/figure_lists.h"

#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/platform/internal/bounded_copy.h"

namespace {

using korvalen::detail::or_empty;
using korvalen::platform::copy_cut;

constexpr int kLineChars = korvalen::kCfgLineChars;
constexpr wchar_t kFavoriteLetter = L'O';
constexpr const wchar_t* kLongNameWork = L"AUXCFGP.CFG";
constexpr wchar_t kLongNameType = L'X';
constexpr int kLongNameIndex = 7;

// Where a group's records are.
struct Group {
  const wchar_t* file = nullptr;  // null: the group has no letter
  const wchar_t* work = nullptr;
  wchar_t letter = 0;
};

constexpr Group kFavorites = {L"LISTDUCT.CFG", L"AUXLDUCT.CFG", kFavoriteLetter};

Group GroupOf(int group) {
  constexpr int kUserGroups = 100;
  constexpr int kLetters = L'Z' - L'F' + 1;
  Group g = {kFavorites.file, kFavorites.work, 0};
  if (group >= kUserGroups) {
    g = {L"DUCTUSER.CFG", L"AUXDUSER.CFG", 0};
    group -= kUserGroups;
  }
  if (group < 0 || group >= kLetters) return {};
  g.letter = static_cast<wchar_t>(L'F' + group);
  return g;
}

// The record of a figure: "<letter><number> \"<name>\" ;", the number with at
// least three digits and the name cut to 265 characters. For a catalogue the
// name also ends at a double quote or a line end, and is cut so that the
// record fits a record line: what is written reads back whole.
constexpr int kRecordChars = kFigureNameChars + 24;

void FigureRecord(wchar_t letter, int number, const wchar_t* name, bool for_catalog,
                  wchar_t (&line)[kRecordChars]) {
  int n = sPrintf(line, L"%c%03d \"", letter, number);
  if (n < 0) n = 0;
  constexpr int kClosing = 3;  // `" ;`
  int room = kFigureNameChars - 1;
  if (for_catalog && kLineChars - n - kClosing < room) room = kLineChars - n - kClosing;
  name = or_empty(name);
  for (int i = 0; i < room && name[i] != 0; ++i) {
    if (for_catalog && (name[i] == L'"' || name[i] == L'\r' || name[i] == L'\n')) break;
    line[n++] = name[i];
  }
  for (const wchar_t* c = L"\" ;"; *c != 0; ++c) line[n++] = *c;
  line[n] = 0;
}

}  // namespace

void LeerFicheroListaFiguras(int group, TRegFig*& head, TRegFig*& tail) {
  head = nullptr;
  tail = nullptr;
  const Group g = GroupOf(group);
  if (g.file == nullptr || !korvalen::detail::file_exists(g.file)) return;
  korvalen::detail::for_each_record<kLineChars>(
      g.file, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != g.letter) return true;
        TRegFig figure{};
        figure.number = index;
        wchar_t name[kLineChars + 1];
        LeerUnTexto(line, cursor, name);
        copy_cut(figure.name, kFigureNameChars, name);
        return korvalen::detail::append(head, tail, figure) != 0;
      });
}

int IsFavorite(int number, const wchar_t* /*name*/) {
  bool found = false;
  korvalen::detail::for_each_record<kLineChars>(
      kFavorites.file, [&](wchar_t*, wchar_t type, int index, int&) {
        found = type == kFavoriteLetter && index == number;
        return !found;
      });
  return found ? 1 : 0;
}

void AddFavorite(int number, const wchar_t* name) {
  if (IsFavorite(number, name)) return;
  wchar_t line[kRecordChars];
  FigureRecord(kFavoriteLetter, number, name, false, line);
  FILE* f = fOpen(kFavorites.file, L"a+");
  if (f == nullptr) return;
  // Kept from the suite's own order of operations: the stream is positioned
  // at byte 2, which append mode overrides, so the record lands at the end.
  std::fseek(f, 2, SEEK_SET);
  EscribirLineaEnFichero(f, line);
  std::fclose(f);
}

void RemoveFavorite(int number, const wchar_t* /*name*/) {
  korvalen::detail::rewrite_records<kLineChars>(
      kFavorites.file, kFavorites.work,
      [&](wchar_t*, wchar_t type, int index, int) {
        return type != kFavoriteLetter || index != number;
      },
      [](FILE*) {}, korvalen::detail::WithoutWorkFile::kLoseFile);
}

void EscribirFicheroListaFiguras(int group, TRegFig* head) {
  const Group g = GroupOf(group);
  if (g.file == nullptr) return;
  const auto write_list = [&](FILE* out) {
    for (const TRegFig* figure : korvalen::detail::each(head)) {
      wchar_t line[kRecordChars];
      FigureRecord(g.letter, figure->number, figure->name, true, line);
      EscribirLineaEnFichero(out, line);
    }
  };
  const bool rewritten = korvalen::detail::rewrite_records<kLineChars>(
      g.file, g.work, [&](wchar_t*, wchar_t type, int, int) { return type != g.letter; },
      write_list);
  if (rewritten || korvalen::detail::file_exists(g.file)) return;
  korvalen::detail::write_whole_file(g.file, write_list);
}

void DameNombreLargo(const wchar_t* file_name, wchar_t* long_name) {
  if (long_name == nullptr) return;
  long_name[0] = 0;
  korvalen::detail::for_each_record<kLineChars>(
      or_empty(file_name), [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != kLongNameType || index != kLongNameIndex) return true;
        LeerUnTexto(line, cursor, long_name);
        return false;
      });
}

void PonNombreLargo(const wchar_t* file_name, const wchar_t* long_name) {
  korvalen::detail::rewrite_records<kLineChars>(
      or_empty(file_name), kLongNameWork, [&](wchar_t* line, wchar_t type, int index, int cursor) {
        if (type == kLongNameType && index == kLongNameIndex) {
          EscribirUnTexto(line, cursor, or_empty(long_name));
        }
      });
}

int EscribirFiguraCfg(const wchar_t* file_name, const wchar_t* long_name) {
  wchar_t cut[kFigureLongNameChars + 1];
  copy_cut(cut, kFigureLongNameChars + 1, or_empty(long_name));
  wchar_t line[kLineChars + 1];
  DameParametroTexto(L"X007 \"", cut, line);
  return korvalen::detail::write_whole_file(file_name,
                                            [&](FILE* out) { EscribirLineaEnFichero(out, line); })
             ? 1
             : 0;
}
