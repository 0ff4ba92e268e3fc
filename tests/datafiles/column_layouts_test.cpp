// Table column layouts: columns read in record order, the heading catalogues
// (checked by resource number through the internal mapping), the records
// rewritten in place, the sheets' headings per machine type, and the heading
// with its unit.
#include "korvalen/datafiles/column_layouts.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "korvalen/datafiles/internal/column_titles.h"
#include "state_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Lines;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class ColumnLayouts : public korvalen::testing::TempDirTest {};

struct Columns : korvalen::testing::OwnedList<TRegTWin> {
  void Add(int kind, int position, const wchar_t* title = L"") {
    TRegTWin column{};
    column.kind = kind;
    column.position = position;
    std::wcsncpy(column.title, title, kColumnTitleChars - 1);
    Append(column);
  }
  // "kind:position/width/unit title" per column.
  std::vector<std::wstring> Rows() const {
    std::vector<std::wstring> rows;
    for (const TRegTWin* c = first; c != nullptr; c = c->next) {
      rows.push_back(std::to_wstring(c->kind) + L":" + std::to_wstring(c->position) + L"/" +
                     std::to_wstring(c->width) + L"/" + std::to_wstring(c->unit_magnitude) + L" " +
                     c->title);
    }
    return rows;
  }
};

void ReadParts(int read_file, Columns& c) {
  LeerFichCfgPieTablas(0, read_file, L"t1", L"t2", L"t3", L"t4", L"t5", L"t6", L"t7", L"t8", L"t9",
                       L"t10", L"t11", c.first, c.last);
}

// Width and unit records act only after their creating record; no language
// module is loaded, so resource headings are empty.
TEST_F(ColumnLayouts, ReadingFollowsRecordOrder) {
  WriteBytes("CFGSTABS.CFG",
             Lines({"# parts", "U005 20 ;", "T005 3 ;", "T002 1 ;", "U005 20 ;", "N002 4 ;",
                    "T002 7 ;", "U002 15 ;", "T-01 8 ;", "T100000 9 ;", "X003 5 ;", "", "T024"}));
  Columns c;
  c.Add(22, 0, L"old");
  c.Add(40, 2, L"kept");
  ReadParts(1, c);
  EXPECT_EQ(c.Rows(), (std::vector<std::wstring>{L"22:0/0/0 t9", L"40:2/0/0 kept", L"5:3/20/0 ",
                                                 L"2:1/15/4 t1", L"2:7/10/0 t1", L"-1:8/10/0 ",
                                                 L"100000:9/10/0 ", L"24:0/10/0 t11"}));
  Columns without_file;
  ReadParts(0, without_file);
  EXPECT_EQ(without_file.first, nullptr);
}

// The catalogues by resource number: "R<id>" stands for the resource.
TEST(ColumnTitles, EveryTableByKind) {
  using namespace korvalen::detail;
  const struct {
    const ColumnTable& table;
    int kind;
    std::wstring title;  // "=": the node's own title stays
  } cases[] = {
      {kPartsColumns, 0, L"R26100"},
      {kPartsColumns, 4, L"c3"},
      {kPartsColumns, 13, L"R26112 1"},
      {kPartsColumns, 18, L"R26105 3"},
      {kPartsColumns, 24, L"c11"},
      {kPartsColumns, 28, L"R26119"},
      {kPartsColumns, 29, L"="},
      {kPartsColumns, -1, L"="},
      {kFigureColumns, 7, L"Y"},
      {kFigureColumns, 8, L"R26133 1"},
      {kFigureColumns, 57, L"R26133 50"},
      {kFigureColumns, 58, L"R26134 %"},
      {kFigureColumns, 59, L"="},
      {kSheetColumns, 9, L"R26144 %"},
      {kSheetColumns, 10, L"CNC"},
      {kSheetColumns, 15, L"R26149"},
      {kListColumns, 12, L"c11"},
      {kListColumns, 17, L"R26155 %"},
      {kPartsWindowColumns, 9, L"c8"},
      {kPartsWindowColumns, 25, L"R26119"},
      {kPartsWindowColumns, 37, L"R26171"},
      {kPartsWindowColumns, 38, L""},
      {kPartsWindowColumns, -5, L""},
      {kSheetWindowColumns, 2, L"c3"},
      {kSheetWindowColumns, 3, L"="},
  };
  const wchar_t* texts[11] = {L"c1", L"c2", L"c3", L"c4",  L"c5", L"c6",
                              L"c7", L"c8", L"c9", L"c10", L"c11"};
  for (const auto& c : cases) {
    TRegTWin column{};
    column.kind = c.kind;
    std::wcscpy(column.title, L"own");
    give_titles(c.table, texts, &column, [](unsigned id, wchar_t* buffer) {
      std::wcscpy(buffer, (L"R" + std::to_wstring(id)).c_str());
    });
    EXPECT_EQ(std::wstring(column.title), c.title == L"=" ? L"own" : c.title)
        << static_cast<char>(c.table.creating) << c.kind;
  }
  // Headings are cut to 40 characters.
  TRegTWin column{};
  column.kind = 13;
  give_titles(kPartsColumns, texts, &column, [](unsigned, wchar_t* buffer) {
    std::wcscpy(buffer, std::wstring(45, L'r').c_str());
  });
  EXPECT_EQ(std::wstring(column.title), std::wstring(40, L'r'));
}

// Only existing records change, each within its width; the other tables',
// comments and records without a node stay; blank lines go.
TEST_F(ColumnLayouts, WritersUpdateRecordsInPlace) {
  const std::string file = Lines({"# layout", "T005 3 ;", "U005 20   ;", "N005 0 ;", "", "T006 4 ;",
                                  "   ", "X005 3 ;", "Q005 2 ;"});
  WriteBytes("CFGSTABS.CFG", file);
  Columns c;
  c.Add(5, 11);
  c.first->width = 123;
  c.first->unit_magnitude = 2;
  c.Add(7, 12);
  EscribirFichCfgPieTablas(0, c.first);
  EXPECT_EQ(ReadBytes("CFGSTABS.CFG"), Lines({"# layout", "T005 11;", "U005 123  ;", "N005 2 ;",
                                              "T006 4 ;", "X005 3 ;", "Q005 2 ;"}));
  EscribirFichCfgFigTablas(0, c.first);
  EXPECT_EQ(ReadBytes("CFGSTABS.CFG"), Lines({"# layout", "T005 11;", "U005 123  ;", "N005 2 ;",
                                              "T006 4 ;", "X005 11;", "Q005 2 ;"}));
  EXPECT_FALSE(korvalen::testing::Exists("AUXCFGT.CFG"));
  std::remove("CFGSTABS.CFG");
  EscribirFichCfgChpWinTablas(c.first);
  EXPECT_FALSE(korvalen::testing::Exists("CFGSTABS.CFG"));
}

// Headings of the machine type (less 180 above 200) or of type 0 are stored;
// kinds 9 to 11 never; reading them back, the machine's own win.
TEST_F(ColumnLayouts, SheetHeadingsPerMachineType) {
  WriteBytes("CFGSTABS.CFG", Lines({"Q000 0 ;", "Q009 1 ;", "Q005 2 ;", "S000 \"all types\"    ;",
                                    "S023 \"type 23\"      ;", "S024 \"type 24\"      ;",
                                    "S900 \"usage\"        ;", "S523 \"\"       ;"}));
  Columns c;
  LeerFichCfgChpTablas(203, 1, L"a", L"b", L"c", c.first, c.last);
  EXPECT_EQ(c.Rows(),
            (std::vector<std::wstring>{L"0:0/10/0 type 23", L"9:1/10/0  %", L"5:2/10/0 X"}));
  c.first->next->next->title[0] = L'W';
  EscribirFichCfgChpTablas(203, c.first);
  EXPECT_EQ(ReadBytes("CFGSTABS.CFG"),
            Lines({"Q000 0 ;", "Q009 1 ;", "Q005 2 ;", "S000 \"type 23\"      ;",
                   "S023 \"type 23\"      ;", "S024 \"type 24\"      ;", "S900 \"usage\"        ;",
                   "S523 \"W\"      ;"}));
  Columns type_24;
  LeerFichCfgChpTablas(24, 1, L"a", L"b", L"c", type_24.first, type_24.last);
  EXPECT_EQ(std::wstring(type_24.first->title), L"type 24");
}

TEST_F(ColumnLayouts, LookupsAndHeadingWithUnit) {
  Columns c;
  c.Add(3, 5, std::wstring(40, L't').c_str());
  c.Add(3, 6, L"Length");
  TRegTWin* found = nullptr;
  BuscarColEnListaCfgTab(6, c.first, found);
  EXPECT_EQ(found, c.last);
  TRegUnidades* units = nullptr;
  ASSERT_TRUE(DamePunUnidades(units));
  std::wcscpy(units->unit_label[2], L"mm");
  std::wcscpy(units->unit_label[15], std::wstring(10, L'u').c_str());
  const struct {
    TRegTWin* column;
    int unit;
    TRegUnidades* units;
    std::wstring text;
  } cases[] = {
      {c.last, 0, units, L"Length"},
      {c.last, 17, units, L"Length"},
      {c.last, 3, units, L"Length (mm)"},
      {c.last, 3, nullptr, L"Length"},
      {c.first, 16, units, std::wstring(40, L't') + L" (" + std::wstring(10, L'u') + L")"},
  };
  for (const auto& k : cases) {
    k.column->unit_magnitude = k.unit;
    wchar_t out[kColumnTextChars];
    DameTextoDeColumna(out, k.units, k.column);
    EXPECT_EQ(std::wstring(out), k.text) << k.unit;
  }
  LiberaPunUnidades(units);
}

}  // namespace
