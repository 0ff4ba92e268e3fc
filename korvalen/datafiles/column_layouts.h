// How each table of the suite's applications shows its columns, kept in
// "CFGSTABS.CFG" (current directory): a list of TRegTWin nodes per table, one
// per column, read from the file's records, given their headings, and stored
// back.
//
// Each table has three record letters; a record's index is the column kind
// and its one field an integer:
//
//   table          creates (position)  width  unit   caller texts  reader / writer
//   parts          T                   U      N      11            ...PieTablas
//   figures        X                   Y      L      3             ...FigTablas
//   sheets         Q                   R      M      3             ...ChpTablas
//   lists          A                   B      C      11            ...LstTablas
//   parts window   E                   F      G      8             ...PieWinTablas
//   sheets window  H                   I      J      3             ...ChpWinTablas
//
// A creating record appends a column (width 10, unit 0); a width or unit
// record sets the first column of its kind read before it, and does nothing
// before its creating record. The sheets table also keeps headings of its
// own per machine type: "S" records of index kind * 100 + type and a quoted
// text (type 0: every machine type).
//
//   TRegTWin* first = nullptr;
//   TRegTWin* last = nullptr;
//   LeerFichCfgFigTablas(0, 1, L"Code", L"Customer", L"Material", first, last);
//   first->width = 14;
//   EscribirFichCfgFigTablas(0, first);  // the records of the file, updated
//   LiberarLista((void**)&first, (void**)&last);
//
// Headings, by column kind ("R n": string resource n of the language module,
// empty while none is loaded; "text n": the reader's caller text n; a kind
// without a heading keeps the one its node has):
//
//   parts          0 R 26100, 1 R 26101, 2-4 text 1-3, 5 R 26102, 6-10 text 4-8,
//                  11 R 26110, 12 R 26111, 13-15 R 26112 + " 1" to " 3",
//                  16-18 R 26105 + " 1" to " 3", 19 R 26106, 20 R 26107,
//                  21 R 26108, 22-24 text 9-11, 25 R 26121, 26 R 26122,
//                  27 R 26123, 28 R 26119
//   figures        0 R 26130, 1 R 26131, 2-4 text 1-3, 5 R 26132, 6 "X", 7 "Y",
//                  8-57 R 26133 + " 1" to " 50", 58 R 26134 + " %"
//   sheets         0 R 26140, 1 R 26141, 2-4 text 1-3, 5 "X", 6 "Y", 7 R 26142,
//                  8 R 26143, 9 R 26144 + " %", 10 "CNC", 11-15 R 26145 to 26149;
//                  then the stored heading of the machine type, or failing
//                  that of type 0, where one is not empty (kinds 9 to 11 keep
//                  theirs)
//   lists          0 R 26150, 1 R 26151, 2-12 text 1-11, 13 R 26152, 14 R 26153,
//                  15 "CNC", 16 R 26154, 17 R 26155 + " %"
//   parts window   0 R 26100, 1 R 26101, 2-9 text 1-8, 10 R 26102, 11 R 26110,
//                  12 R 26111, 13-15 R 26112 + " 1" to " 3", 16-18 R 26105 + " 1"
//                  to " 3", 19 R 26106, 20 R 26107, 21 R 26108, 22 R 26121,
//                  23 R 26122, 24 R 26123, 25 R 26119, 26-37 R 26160 to 26171;
//                  any other kind the empty heading
//   sheets window  0-2 text 1-3
//
// Headings are cut to 40 characters.
#pragma once

#include <cstdint>

#include "korvalen/datafiles/units_and_messages.h"
#include "korvalen/export.h"

inline constexpr int kColumnTitleChars = 41;  // 40 and the terminator
// What DameTextoDeColumna writes at most: the heading, " (", a unit label and
// ")", with the terminator.
inline constexpr int kColumnTextChars = kColumnTitleChars + 3 + kUnitLabelChars - 1;

struct TRegTWin {
  TRegTWin* next;
  TRegTWin* previous;
  wchar_t title[kColumnTitleChars];
  std::int32_t position;  // the column's place among the table's columns
  std::int32_t width;
  std::int32_t kind;            // which column: the heading goes by it
  std::int32_t unit_magnitude;  // 0 none; 1 to 16 a magnitude of TRegUnidades
};

// --- readers -------------------------------------------------------------------
// Append the file's columns to the caller's list (read_file 0: none), then
// give every node of the list its heading. selector is not used, except by
// the sheets reader: there it is the machine type (less 180 above 200) whose
// stored headings apply. A null caller text reads as empty.
KORVALEN_API void LeerFichCfgPieTablas(int selector, int read_file, const wchar_t* text1,
                                       const wchar_t* text2, const wchar_t* text3,
                                       const wchar_t* text4, const wchar_t* text5,
                                       const wchar_t* text6, const wchar_t* text7,
                                       const wchar_t* text8, const wchar_t* text9,
                                       const wchar_t* text10, const wchar_t* text11,
                                       TRegTWin*& first, TRegTWin*& last);
KORVALEN_API void LeerFichCfgFigTablas(int selector, int read_file, const wchar_t* text1,
                                       const wchar_t* text2, const wchar_t* text3, TRegTWin*& first,
                                       TRegTWin*& last);
KORVALEN_API void LeerFichCfgChpTablas(int machine_type, int read_file, const wchar_t* text1,
                                       const wchar_t* text2, const wchar_t* text3, TRegTWin*& first,
                                       TRegTWin*& last);
KORVALEN_API void LeerFichCfgLstTablas(int selector, int read_file, const wchar_t* text1,
                                       const wchar_t* text2, const wchar_t* text3,
                                       const wchar_t* text4, const wchar_t* text5,
                                       const wchar_t* text6, const wchar_t* text7,
                                       const wchar_t* text8, const wchar_t* text9,
                                       const wchar_t* text10, const wchar_t* text11,
                                       TRegTWin*& first, TRegTWin*& last);
KORVALEN_API void LeerFichCfgPieWinTablas(int selector, int read_file, const wchar_t* text1,
                                          const wchar_t* text2, const wchar_t* text3,
                                          const wchar_t* text4, const wchar_t* text5,
                                          const wchar_t* text6, const wchar_t* text7,
                                          const wchar_t* text8, TRegTWin*& first, TRegTWin*& last);
KORVALEN_API void LeerFichCfgChpWinTablas(int selector, int read_file, const wchar_t* text1,
                                          const wchar_t* text2, const wchar_t* text3,
                                          TRegTWin*& first, TRegTWin*& last);

// --- writers -------------------------------------------------------------------
// Rewrite "CFGSTABS.CFG" through "AUXCFGT.CFG": each of the table's records
// whose kind has a node gets that node's position, width or unit; records
// without a node are copied as they are, and nodes without records are not
// added. Blank lines are dropped. A missing file stays missing. selector is
// not used, except by the sheets writer: there it is the machine type (less
// 180 above 200), and each "S" heading of that type or of type 0 whose kind
// has a node, kinds 9 to 11 aside, gets the node's heading.
KORVALEN_API void EscribirFichCfgPieTablas(int selector, TRegTWin* list);
KORVALEN_API void EscribirFichCfgFigTablas(int selector, TRegTWin* list);
KORVALEN_API void EscribirFichCfgChpTablas(int machine_type, TRegTWin* list);
KORVALEN_API void EscribirFichCfgLstTablas(int selector, TRegTWin* list);
KORVALEN_API void EscribirFichCfgPieWinTablas(TRegTWin* list);
KORVALEN_API void EscribirFichCfgChpWinTablas(TRegTWin* list);

// --- lookups -------------------------------------------------------------------
// found = the first node of that kind, or null.
KORVALEN_API void BuscarEnListaCfgTab(int kind, TRegTWin* list, TRegTWin*& found);
// found = the first node at that position, or null.
KORVALEN_API void BuscarColEnListaCfgTab(int position, TRegTWin* list, TRegTWin*& found);

// out (kColumnTextChars) = the column's heading, or, for a unit magnitude k
// of 1 to 16, "heading (label)" with the unit label of magnitude k in units
// (the bare heading when units is null).
KORVALEN_API void DameTextoDeColumna(wchar_t* out, TRegUnidades* units, TRegTWin* column);
