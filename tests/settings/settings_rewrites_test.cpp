// In-place rewrites of the identification settings and of the process file:
// exact bytes after each rewrite (edited records, copied lines, dropped blank
// lines), the rebuilt long text record, and what happens when the work file
// cannot be created.
#include "korvalen/settings/settings_rewrites.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "settings_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::Lines;
using korvalen::testing::ReadBytes;
using korvalen::testing::TextRecord;
using korvalen::testing::WriteBytes;

class SettingsRewrites : public korvalen::testing::TempDirTest {};

// --- identification settings --------------------------------------------------------

// A002 and A003 edited in place, other lines copied, blank ones dropped. A
// text that does not fit its record rebuilds the record at the length it
// needs, without the terminator; each text reads back whole.
TEST_F(SettingsRewrites, IdentificationRecordsEditedInPlace) {
  const struct {
    std::string line;
    std::wstring text;
    std::string result;
  } cases[] = {
      {TextRecord("A003", "ab"), L"Planta 2", TextRecord("A003", "Planta 2")},
      {"A003 \"abcd\" ;", L"vwxyz", "A003 \"vwxyz\";"},
      {"A003 \"abcd\" ;", L"uvwxyz", "A003 \"uvwxyz\""},  // one character over
      {"A003 \"ab\" ;", std::wstring(30, L't'), "A003 \"" + std::string(30, 't') + "\""},
      {"A003 \"ab\" ;", std::wstring(400, L'l'), "A003 \"" + std::string(400, 'l') + "\""},
  };
  const std::string a001 = TextRecord("A001", "Taller Norte");
  for (const auto& c : cases) {
    WriteBytes(
        "MIRSELID.CFG",
        Lines({"# identification", "", a001, "A002 OFF ;", "   ", c.line, "B000 5 ;"}) + "\r\n");
    EscribirCfgMirselId(1, c.text.c_str());
    EXPECT_EQ(ReadBytes("MIRSELID.CFG"),
              Lines({"# identification", a001, "A002 ON  ;", c.result, "B000 5 ;"}))
        << c.line;
    EXPECT_FALSE(Exists("AUXMRSID.CFG"));
    int flag = 0;
    wchar_t text[501] = L"";
    LeerCfgMirselId(flag, text);
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(std::wstring(text), c.text) << c.line;
  }
}

TEST_F(SettingsRewrites, IdentificationWithoutFileRecordsOrWorkFile) {
  int flag = 7;
  wchar_t text[501] = L"stale";
  LeerCfgMirselId(flag, text);
  EXPECT_EQ(flag, 7);
  EscribirCfgMirselId(1, L"x");
  EXPECT_FALSE(Exists("MIRSELID.CFG"));
  EXPECT_FALSE(Exists("AUXMRSID.CFG"));
  WriteBytes("MIRSELID.CFG", "# nothing\r\nB003 \"b\" ;\r\n\r\nA002 ON ;\r\nA002 OFF ;\r\n");
  LeerCfgMirselId(flag, text);
  EXPECT_EQ(flag, 0);  // the last record wins
  EXPECT_STREQ(text, L"stale");

  const std::string before = Lines({"A002 OFF ;", TextRecord("A003", "ab")});
  WriteBytes("MIRSELID.CFG", before);
  std::filesystem::create_directory("AUXMRSID.CFG");
  EscribirCfgMirselId(1, L"x");
  EXPECT_EQ(ReadBytes("MIRSELID.CFG"), before);
}

// --- process file ---------------------------------------------------------------------------

TEST_F(SettingsRewrites, ProcessFileRecordsEditedInPlace) {
  const std::string long_record = TextRecord("K105", std::string(90, 'k'));
  WriteBytes(
      "MIRSELIN.CNI",
      Lines({"# process file of the machines", "A000 3     ;", TextRecord("A001", "one"),
             TextRecord("A002", "two"), TextRecord("A003", "keep"), TextRecord("A005", "five"), "",
             "R000 OFF ;", TextRecord("R001", "r one"), TextRecord("R005", "r five"),
             TextRecord("R008", "r eight"), "Z000 ON ;", long_record, "  "}));
  int a0 = 12, r0 = 1, unused = 99;
  const std::wstring too_long(100, L'n');
  ActualizaMirselinCNI(a0, too_long.c_str(), L"Laser 3", L"ignored", r0, L"Nueva uno", L"Nueva dos",
                       L"Nueva cinco", unused);
  EXPECT_EQ(ReadBytes("MIRSELIN.CNI"),
            Lines({"# process file of the machines", "A000 12    ;",
                   TextRecord("A001", "Nueva uno"), TextRecord("A002", "Nueva dos"),
                   TextRecord("A003", "keep"), TextRecord("A005", "Nueva cinco"), "R000 ON  ;",
                   "R001 \"" + std::string(70, 'n') + "\"", TextRecord("R005", "Laser 3"),
                   TextRecord("R008", "Laser 3"), "Z000 ON ;",
                   // Records are 80 characters; the rest of a longer line is dropped.
                   long_record.substr(0, 80)}));
  EXPECT_FALSE(Exists("AUXMRSIN.AUX"));
  EXPECT_EQ(unused, 99);
}

TEST_F(SettingsRewrites, ProcessFileMissingOrLostWithoutAWorkFile) {
  int a0 = 12, r0 = 1, unused = 0;
  ActualizaMirselinCNI(a0, L"", L"", L"", r0, L"x", L"", L"", unused);
  EXPECT_FALSE(Exists("MIRSELIN.CNI"));
  EXPECT_FALSE(Exists("AUXMRSIN.AUX"));
  // The process file is removed even though no work file can take its place;
  // what stood in the work file's way is renamed onto it.
  WriteBytes("MIRSELIN.CNI", Lines({"A000 3 ;", TextRecord("A001", "one")}));
  std::filesystem::create_directory("AUXMRSIN.AUX");
  ActualizaMirselinCNI(a0, L"", L"", L"", r0, L"x", L"", L"", unused);
  EXPECT_TRUE(std::filesystem::is_directory("MIRSELIN.CNI"));
  EXPECT_FALSE(Exists("AUXMRSIN.AUX"));
}

}  // namespace
