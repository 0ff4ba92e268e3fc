#include "korvalen/datafiles/column_layouts.h"

#include <initializer_list>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/datafiles/internal/column_titles.h"
#include "korvalen/foundation/string_resources.h"
#include "korvalen/platform/internal/bounded_copy.h"

namespace {

using korvalen::detail::ColumnTable;

constexpr const wchar_t* kLayoutFile = L"CFGSTABS.CFG";
constexpr const wchar_t* kLayoutWork = L"AUXCFGT.CFG";
constexpr int kDefaultWidth = 10;

// The sheets table's headings per machine type: "S" records of index
// kind * 100 + type, for kinds 0 to 14.
constexpr wchar_t kStoredHeading = L'S';
constexpr int kMachineTypes = 100;
constexpr int kStoredHeadingKinds = 15;
// Their headings are made by the programs, never stored.
constexpr int kUnstoredKinds[] = {9, 10, 11};
constexpr int kHighMachineTypes = 200;
constexpr int kHighMachineShift = 180;

int MachineTypeOf(int selector) {
  return selector > kHighMachineTypes ? selector - kHighMachineShift : selector;
}

bool StoresHeading(int kind) {
  for (int k : kUnstoredKinds) {
    if (k == kind) return false;
  }
  return true;
}

TRegTWin* FirstOfKind(int kind, TRegTWin* list) {
  TRegTWin* found = nullptr;
  BuscarEnListaCfgTab(kind, list, found);
  return found;
}

void LoadTitle(unsigned id, wchar_t* buffer) { LoadStr(id, buffer); }

// The stored headings of one machine type override the catalogue's, every
// node of their kind taking the record's text when it is not empty.
void ApplyStoredHeadings(int machine_type, TRegTWin* list) {
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kLayoutFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != kStoredHeading || index < 0 || index >= kStoredHeadingKinds * kMachineTypes) {
          return true;
        }
        const int kind = index / kMachineTypes;
        if (index % kMachineTypes != machine_type || !StoresHeading(kind)) return true;
        wchar_t text[korvalen::kCfgLineChars + 1];
        LeerUnTexto(line, cursor, text);
        if (text[0] == 0) return true;
        for (TRegTWin* column : korvalen::detail::each(list)) {
          if (column->kind == kind)
            korvalen::platform::copy_cut(column->title, kColumnTitleChars, text);
        }
        return true;
      });
}

void ReadColumns(const ColumnTable& table, int selector, int read_file,
                 std::initializer_list<const wchar_t*> texts, TRegTWin*& first, TRegTWin*& last) {
  if (read_file != 0) {
    korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
        kLayoutFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
          if (type == table.creating) {
            TRegTWin column{};
            LeerUnEntero(line, cursor, column.position);
            column.width = kDefaultWidth;
            column.kind = index;
            return korvalen::detail::append(first, last, column) != 0;
          }
          if (type == table.width || type == table.unit) {
            if (TRegTWin* column = FirstOfKind(index, first)) {
              LeerUnEntero(line, cursor,
                           type == table.width ? column->width : column->unit_magnitude);
            }
          }
          return true;
        });
  }
  korvalen::detail::give_titles(table, std::span(texts.begin(), texts.size()), first, LoadTitle);
  if (read_file != 0 && table.stored_headings) {
    // Those of type 0 serve every machine type that has none of its own.
    const int machine_type = MachineTypeOf(selector);
    ApplyStoredHeadings(0, first);
    if (machine_type != 0) ApplyStoredHeadings(machine_type, first);
  }
}

void WriteColumns(const ColumnTable& table, int selector, TRegTWin* list) {
  const int machine_type = MachineTypeOf(selector);
  korvalen::detail::rewrite_records<korvalen::kCfgLineChars>(
      kLayoutFile, kLayoutWork, [&](wchar_t* line, wchar_t type, int index, int cursor) {
        if (type == table.creating || type == table.width || type == table.unit) {
          if (const TRegTWin* column = FirstOfKind(index, list)) {
            int value = type == table.creating ? column->position
                        : type == table.width  ? column->width
                                               : column->unit_magnitude;
            EscribirUnEntero(line, cursor, value);
          }
        } else if (table.stored_headings && type == kStoredHeading) {
          const int kind = index / kMachineTypes;
          const int machine = index % kMachineTypes;
          if ((machine == machine_type || machine == 0) && StoresHeading(kind)) {
            if (const TRegTWin* column = FirstOfKind(kind, list)) {
              EscribirUnTexto(line, cursor, column->title);
            }
          }
        }
      });
}

}  // namespace

void LeerFichCfgPieTablas(int selector, int read_file, const wchar_t* text1, const wchar_t* text2,
                          const wchar_t* text3, const wchar_t* text4, const wchar_t* text5,
                          const wchar_t* text6, const wchar_t* text7, const wchar_t* text8,
                          const wchar_t* text9, const wchar_t* text10, const wchar_t* text11,
                          TRegTWin*& first, TRegTWin*& last) {
  ReadColumns(korvalen::detail::kPartsColumns, selector, read_file,
              {text1, text2, text3, text4, text5, text6, text7, text8, text9, text10, text11},
              first, last);
}

void LeerFichCfgFigTablas(int selector, int read_file, const wchar_t* text1, const wchar_t* text2,
                          const wchar_t* text3, TRegTWin*& first, TRegTWin*& last) {
  ReadColumns(korvalen::detail::kFigureColumns, selector, read_file, {text1, text2, text3}, first,
              last);
}

void LeerFichCfgChpTablas(int machine_type, int read_file, const wchar_t* text1,
                          const wchar_t* text2, const wchar_t* text3, TRegTWin*& first,
                          TRegTWin*& last) {
  ReadColumns(korvalen::detail::kSheetColumns, machine_type, read_file, {text1, text2, text3},
              first, last);
}

void LeerFichCfgLstTablas(int selector, int read_file, const wchar_t* text1, const wchar_t* text2,
                          const wchar_t* text3, const wchar_t* text4, const wchar_t* text5,
                          const wchar_t* text6, const wchar_t* text7, const wchar_t* text8,
                          const wchar_t* text9, const wchar_t* text10, const wchar_t* text11,
                          TRegTWin*& first, TRegTWin*& last) {
  ReadColumns(korvalen::detail::kListColumns, selector, read_file,
              {text1, text2, text3, text4, text5, text6, text7, text8, text9, text10, text11},
              first, last);
}

void LeerFichCfgPieWinTablas(int selector, int read_file, const wchar_t* text1,
                             const wchar_t* text2, const wchar_t* text3, const wchar_t* text4,
                             const wchar_t* text5, const wchar_t* text6, const wchar_t* text7,
                             const wchar_t* text8, TRegTWin*& first, TRegTWin*& last) {
  ReadColumns(korvalen::detail::kPartsWindowColumns, selector, read_file,
              {text1, text2, text3, text4, text5, text6, text7, text8}, first, last);
}

void LeerFichCfgChpWinTablas(int selector, int read_file, const wchar_t* text1,
                             const wchar_t* text2, const wchar_t* text3, TRegTWin*& first,
                             TRegTWin*& last) {
  ReadColumns(korvalen::detail::kSheetWindowColumns, selector, read_file, {text1, text2, text3},
              first, last);
}

void EscribirFichCfgPieTablas(int selector, TRegTWin* list) {
  WriteColumns(korvalen::detail::kPartsColumns, selector, list);
}

void EscribirFichCfgFigTablas(int selector, TRegTWin* list) {
  WriteColumns(korvalen::detail::kFigureColumns, selector, list);
}

void EscribirFichCfgChpTablas(int machine_type, TRegTWin* list) {
  WriteColumns(korvalen::detail::kSheetColumns, machine_type, list);
}

void EscribirFichCfgLstTablas(int selector, TRegTWin* list) {
  WriteColumns(korvalen::detail::kListColumns, selector, list);
}

void EscribirFichCfgPieWinTablas(TRegTWin* list) {
  WriteColumns(korvalen::detail::kPartsWindowColumns, 0, list);
}

void EscribirFichCfgChpWinTablas(TRegTWin* list) {
  WriteColumns(korvalen::detail::kSheetWindowColumns, 0, list);
}

void BuscarEnListaCfgTab(int kind, TRegTWin* list, TRegTWin*& found) {
  found = nullptr;
  for (TRegTWin* column : korvalen::detail::each(list)) {
    if (column->kind == kind) {
      found = column;
      return;
    }
  }
}

void BuscarColEnListaCfgTab(int position, TRegTWin* list, TRegTWin*& found) {
  found = nullptr;
  for (TRegTWin* column : korvalen::detail::each(list)) {
    if (column->position == position) {
      found = column;
      return;
    }
  }
}

void DameTextoDeColumna(wchar_t* out, TRegUnidades* units, TRegTWin* column) {
  if (out == nullptr) return;
  out[0] = 0;
  if (column == nullptr) return;
  // Magnitudes 17 and 18 are never shown as a column's unit.
  constexpr int kShownMagnitudes = 16;
  const int k = column->unit_magnitude;
  // Each text is read no further than its buffer, terminated or not.
  struct Part {
    const wchar_t* text;
    int room;
  } parts[4] = {{column->title, kColumnTitleChars - 1}, {L"", 0}, {L"", 0}, {L"", 0}};
  if (k >= 1 && k <= kShownMagnitudes && units != nullptr) {
    parts[1] = {L" (", 2};
    parts[2] = {units->unit_label[k - 1], kUnitLabelChars - 1};
    parts[3] = {L")", 1};
  }
  int n = 0;
  for (const Part& part : parts) {
    for (int i = 0; i < part.room && part.text[i] != 0; ++i) out[n++] = part.text[i];
  }
  out[n] = 0;
}
