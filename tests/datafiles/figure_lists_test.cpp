// Figure groups by letter and file, favourites (appended at the end, removed
// with the catalogue lost when no work file can be made), long names, and the
// two writers read back by their readers.
#include "korvalen/datafiles/figure_lists.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <filesystem>
#include <string>
#include <vector>

#include "state_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Lines;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class FigureLists : public korvalen::testing::TempDirTest {};

struct Figures : korvalen::testing::OwnedList<TRegFig> {
  void Add(int number, const std::wstring& name) {
    TRegFig figure{};
    figure.number = number;
    name.copy(figure.name, kFigureNameChars - 1);
    Append(figure);
  }
  // "number name" per figure.
  std::vector<std::wstring> Rows() const {
    std::vector<std::wstring> rows;
    for (const TRegFig* f = first; f != nullptr; f = f->next) {
      rows.push_back(std::to_wstring(f->number) + L" " + f->name);
    }
    return rows;
  }
};

std::vector<std::wstring> Group(int group) {
  Figures f;
  LeerFicheroListaFiguras(group, f.first, f.last);
  return f.Rows();
}

using Rows = std::vector<std::wstring>;

TEST_F(FigureLists, GroupsByLetterAndFile) {
  EXPECT_TRUE(Group(2).empty());
  WriteBytes("LISTDUCT.CFG", Lines({"# ducts", "F001 \"Straight\" ;", "H012 \"Elbow 90\" ;",
                                    "O007 \"elbow\" ;", "H003 \"Tee\" ;", "[000 \"odd\" ;"}));
  WriteBytes("DUCTUSER.CFG", Lines({"H500 \"Mine\" ;", "Z001 \"last\" ;"}));
  EXPECT_EQ(Group(2), (Rows{L"12 Elbow 90", L"3 Tee"}));
  EXPECT_EQ(Group(0), (Rows{L"1 Straight"}));
  EXPECT_EQ(Group(9), (Rows{L"7 elbow"}));
  EXPECT_EQ(Group(102), (Rows{L"500 Mine"}));
  EXPECT_EQ(Group(120), (Rows{L"1 last"}));
  for (int group : {-5, 21, 99, 121, 1000}) EXPECT_TRUE(Group(group).empty()) << group;
}

TEST_F(FigureLists, Favourites) {
  EXPECT_EQ(IsFavorite(7, L"elbow"), 0);
  AddFavorite(7, L"elbow");
  AddFavorite(7, L"elbow");
  EXPECT_EQ(ReadBytes("LISTDUCT.CFG"), "O007 \"elbow\" ;\r\n");
  EXPECT_EQ(IsFavorite(7, L"other"), 1);
  // Appended at the end whatever the position asked for; removal keeps
  // comments and drops blank lines.
  WriteBytes("LISTDUCT.CFG",
             Lines({"# ducts", "", "O012 \"a\" ;", "F012 \"b\" ;", "O012 \"c\" ;"}));
  AddFavorite(1234, L"big");
  AddFavorite(-5, L"neg");
  EXPECT_EQ(ReadBytes("LISTDUCT.CFG"),
            Lines({"# ducts", "", "O012 \"a\" ;", "F012 \"b\" ;", "O012 \"c\" ;", "O1234 \"big\" ;",
                   "O-05 \"neg\" ;"}));
  RemoveFavorite(12, L"not used");
  EXPECT_EQ(ReadBytes("LISTDUCT.CFG"),
            Lines({"# ducts", "F012 \"b\" ;", "O1234 \"big\" ;", "O-05 \"neg\" ;"}));
  EXPECT_FALSE(korvalen::testing::Exists("AUXLDUCT.CFG"));
  // No work file: the catalogue is deleted all the same.
  std::filesystem::create_directory("AUXLDUCT.CFG");
  RemoveFavorite(1234, L"");
  EXPECT_FALSE(std::filesystem::is_regular_file("LISTDUCT.CFG"));
}

TEST_F(FigureLists, LongNames) {
  wchar_t name[81] = L"old";
  DameNombreLargo(L"CODO.CFG", name);
  EXPECT_STREQ(name, L"");
  const std::string file = Lines({"# elbow", "X006 \"x\" ;", "X007 \"long\"            ;", "",
                                  "X007 \"second\" ;", "Y007 1 ;"});
  WriteBytes("CODO.CFG", file);
  DameNombreLargo(L"CODO.CFG", name);
  EXPECT_STREQ(name, L"long");
  PonNombreLargo(L"CODO.CFG", L"Elbow 90 wide");
  EXPECT_EQ(ReadBytes("CODO.CFG"), Lines({"# elbow", "X006 \"x\" ;", "X007 \"Elbow 90 wide\"   ;",
                                          "X007 \"Elbow 90\"", "Y007 1 ;"}));
  // A written settings file takes a long name of 70 characters in place.
  EXPECT_EQ(EscribirFiguraCfg(L"NEW.CFG", L"Tee"), 1);
  EXPECT_EQ(ReadBytes("NEW.CFG"), Lines({"X007 \"Tee\"" + std::string(66, ' ') + ";"}));
  const std::wstring full(kFigureLongNameChars, L'n');
  PonNombreLargo(L"NEW.CFG", (full + L"cut").c_str());
  DameNombreLargo(L"NEW.CFG", name);
  EXPECT_EQ(std::wstring(name), full);
  EXPECT_EQ(EscribirFiguraCfg(L"NEW.CFG", (full + L"cut").c_str()), 1);
  DameNombreLargo(L"NEW.CFG", name);
  EXPECT_EQ(std::wstring(name), full);
  EXPECT_EQ(EscribirFiguraCfg(L"no-such-dir/NEW.CFG", L"x"), 0);
}

// The group's records are replaced at the end of the file; names are cut so
// that they read back whole.
TEST_F(FigureLists, CatalogueGroupsWrittenAndReadBack) {
  WriteBytes("LISTDUCT.CFG",
             Lines({"# ducts", "H001 \"old\" ;", "", "F001 \"Straight\" ;", "H002 \"older\" ;"}));
  Figures f;
  f.Add(12, L"Elbow 90");
  f.Add(1000, std::wstring(100, L'e'));
  f.Add(3, L"Tee \"wide\"");
  EscribirFicheroListaFiguras(2, f.first);
  EXPECT_EQ(ReadBytes("LISTDUCT.CFG"),
            Lines({"# ducts", "F001 \"Straight\" ;", "H012 \"Elbow 90\" ;",
                   "H1000 \"" + std::string(70, 'e') + "\" ;", "H003 \"Tee \" ;"}));
  EXPECT_EQ(Group(2), (Rows{L"12 Elbow 90", L"1000 " + std::wstring(70, L'e'), L"3 Tee "}));
  EscribirFicheroListaFiguras(103, f.first->next->next);
  EXPECT_EQ(ReadBytes("DUCTUSER.CFG"), Lines({"I003 \"Tee \" ;"}));
  EscribirFicheroListaFiguras(103, nullptr);
  EXPECT_EQ(ReadBytes("DUCTUSER.CFG"), "");
  EscribirFicheroListaFiguras(-5, f.first);
  EscribirFicheroListaFiguras(121, f.first);
  EXPECT_EQ(ReadBytes("DUCTUSER.CFG"), "");
}

}  // namespace
