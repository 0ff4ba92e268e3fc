// The formats of a language file: the four kinds, the installed entries after
// them, lines cut at 80, both rewrites byte for byte, the application directory.
#include "korvalen/datafiles/import_export_lists.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <filesystem>
#include <tuple>

#include "korvalen/foundation/file_names.h"
#include "state_file_support.h"
#include "temp_dir_test.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::Lines;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;
using Names = std::vector<std::wstring>;

class ImportExportLists : public korvalen::testing::TempDirTest {};

// "name=text" for each pair of nodes.
Names Formats(int language, const wchar_t* kind) {
  korvalen::testing::NameList names, texts;
  DameListasImpExpDeDirActual(language, kind, names.first, names.last, texts.first, texts.last);
  Names n = names.Names();
  const Names t = texts.Names();
  EXPECT_EQ(n.size(), t.size());
  for (std::size_t i = 0; i < n.size() && i < t.size(); ++i) n[i] += L"=" + t[i];
  return n;
}

TEST_F(ImportExportLists, KindsReadTheirLettersThenTheInstalledEntries) {
  WriteBytes(
      "LSIMPEXP.007",
      Lines({"# A100 \"comment\" \"x\" ;", "A100 \"Parts\" \"IMPP\" ;", "B007 \"Report\" \"E\" ;",
             "C100 \"Sheets\" \"LSTC\" ;", "D100 \"short\" ;", "A999 \"Stock\" \"IMPS\" ;",
             "a100 \"lower\" \"x\" ;", "B100 \"" + std::string(90, 'x') + "\" \"t\" ;"}));
  WriteBytes("LISTIMPO.CFG", Lines({"A000 \"Ebro\"", "A001 \"DXF\"", "A002 \"IMPDXF\""}));
  WriteBytes("LISTEXPO.CFG", Lines({"A001 \"PDF\"", "A002 \"EXPPDF\""}));
  const std::tuple<int, const wchar_t*, Names> cases[] = {
      {7, L"IMP", {L"Parts=IMPP", L"Stock=IMPS", L"DXF=IMPDXF"}},
      {7, L"EXP", {L"Report=E", std::wstring(74, L'x') + L"=", L"PDF=EXPPDF"}},  // cut at 80
      {7, L"LST", {L"Sheets=LSTC"}},
      {7, L"CFG", {L"short="}},
      {7, L"imp", {}},
      {7, nullptr, {}},
      {3, L"IMP", {L"DXF=IMPDXF"}}};
  for (const auto& [language, kind, formats] : cases) {
    EXPECT_EQ(Formats(language, kind), formats) << language << " " << (kind ? kind : L"");
  }

  // The reader moves to the application directory for good.
  wchar_t app[korvalen::kDirectoryChars];
  DameDirectorioDeApp(app);
  const fs::path dir = std::wstring(app).substr(0, std::wcslen(app) - 1);  // without its '\'
  WriteBytes((dir / "LSIMPEXP.990").string(), Lines({"C100 \"Here\" \"H\" ;"}));
  korvalen::testing::NameList names, texts;
  DameListasImpExp(990, L"LST", nullptr, names.first, names.last, texts.first, texts.last);
  fs::remove(dir / "LSIMPEXP.990");
  EXPECT_EQ(names.Names(), Names{L"Here"});
  EXPECT_EQ(fs::current_path(), dir);
}

TEST_F(ImportExportLists, RewritesDropBlankLinesAndCutAt80) {
  const std::string kept = "C100 \"" + std::string(90, 'c') + "\" \"t\" ;";
  WriteBytes("LSIMPEXP.012", "# formats\r\n\r\nA100 \"Parts\" \"IMPP\" ;\r\n   \r\n" + kept +
                                 "\r\nA005 \"Stock\" \"S\" ;\r\nB100 \"Parts\" \"E\" ;\r\n");
  MeterLsImpExpNuevo(12, L"CFG", L"Two words", L"");
  EXPECT_EQ(
      ReadBytes("LSIMPEXP.012"),
      Lines({"# formats", "A100 \"Parts\" \"IMPP\" ;", kept.substr(0, 80), "A005 \"Stock\" \"S\" ;",
             "B100 \"Parts\" \"E\" ;", "D100 \"Two words\" \"\" ;"}));
  EXPECT_EQ(Formats(12, L"CFG"), Names{L"Two words="});
  korvalen::testing::NameList names;
  for (const wchar_t* n : {L"Stock", L"Parts", L"Two words"}) names.Add(n);
  BorrarEnLsImpExp(12, L"IMP", names.first);  // only A records go
  EXPECT_EQ(ReadBytes("LSIMPEXP.012"),
            Lines({"# formats", kept.substr(0, 80), "B100 \"Parts\" \"E\" ;",
                   "D100 \"Two words\" \"\" ;"}));
  BorrarEnLsImpExp(3, L"IMP", names.first);
  EXPECT_FALSE(fs::exists("LSIMPEXP.003"));

  // A missing file gets the new line alone: its first 498 characters.
  MeterLsImpExpNuevo(3, L"LST", std::wstring(1000, L'n').c_str(), L"t");
  EXPECT_EQ(ReadBytes("LSIMPEXP.003"), "C100 \"" + std::string(492, 'n') + "\r\n");
  fs::remove("LSIMPEXP.003");
  fs::create_directory("LSIMPEXP.AUX");  // no work file: nothing written
  MeterLsImpExpNuevo(3, L"LST", L"n", L"t");
  EXPECT_FALSE(fs::exists("LSIMPEXP.003"));
}

}  // namespace
