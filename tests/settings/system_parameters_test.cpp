// Installation settings: every section of "param.sys" with its default and
// its odd rules, the basic-options switch, the database directory tree, the
// packaging file written and read back, and the version digits.
#include "korvalen/settings/system_parameters.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class SystemParameters : public korvalen::testing::TempDirTest {};

// All outputs of LeerDatosParamSys, each text in a buffer of 257 characters
// followed by a canary.
struct Params {
  static constexpr int kChars = 257;
  int language = -1, units = -1, cp1 = -1, cp2 = -1, wos = -1;
  std::vector<wchar_t> server, files, shared, company, title, backup, style;
  int result = -1;

  Params() {
    for (auto* b : {&server, &files, &shared, &company, &title, &backup, &style}) {
      b->assign(kChars + 8, L'#');
    }
  }
  void Read() {
    result = LeerDatosParamSys(language, server.data(), files.data(), shared.data(), units, cp1,
                               cp2, company.data(), title.data(), wos, backup.data(), style.data());
  }
  static std::wstring Text(const std::vector<wchar_t>& b) { return std::wstring(b.data()); }
  bool CanariesIntact() const {
    for (const auto* b : {&server, &files, &shared, &company, &title, &backup, &style}) {
      for (int i = kChars; i < kChars + 8; ++i) {
        if ((*b)[static_cast<std::size_t>(i)] != L'#') return false;
      }
    }
    return true;
  }
};

TEST_F(SystemParameters, EverySection) {
  WriteBytes("param.sys",
             "; installation of the workshop\r\n"
             "[Language]\r\n2\r\n"
             "[Company]\r\nAceros del Norte S.A.\r\n"
             "[Project title]\r\nCorte y punzonado\r\n"
             "[WOS title]\r\n0\r\n"
             "[Server name]\r\nSRVTALLER\\SQLEXPRESS\r\n"
             "[Database files directory]\r\nD:\\Bases\r\n"
             "[Shared server directory]\r\n\\\\SRVTALLER\\Compartido\r\n"
             "[International units]\r\n0\r\n"
             "[Database file backup]\r\nD:\\Copias\\taller.bak\r\n"
             "[Style]\r\nAzul\r\n"
             "[System CodePage]\r\n950\r\n");
  Params p;
  p.Read();
  EXPECT_EQ(p.result, 1);
  EXPECT_EQ(p.language, 2);
  EXPECT_EQ(Params::Text(p.company), L"Aceros del Norte S.A.");
  EXPECT_EQ(Params::Text(p.title), L"Corte y punzonado");
  EXPECT_EQ(p.wos, 0);
  EXPECT_EQ(Params::Text(p.server), L"SRVTALLER\\SQLEXPRESS");
  EXPECT_EQ(Params::Text(p.files), L"D:\\Bases");
  EXPECT_EQ(Params::Text(p.shared), L"\\\\SRVTALLER\\Compartido");
  EXPECT_EQ(p.units, 0);
  EXPECT_EQ(Params::Text(p.backup), L"D:\\Copias\\taller.bak");
  EXPECT_EQ(Params::Text(p.style), L"Azul");
  EXPECT_EQ(p.cp1, 1);
  EXPECT_EQ(p.cp2, 1);
}

void ExpectDefaults(const Params& p) {
  EXPECT_EQ(p.language, 3);
  EXPECT_EQ(Params::Text(p.server), L"(local)");
  EXPECT_EQ(Params::Text(p.files), L"");
  EXPECT_EQ(Params::Text(p.shared), L"");
  EXPECT_EQ(p.units, 1);
  EXPECT_EQ(p.cp1, 0);
  EXPECT_EQ(p.cp2, 0);
  EXPECT_EQ(Params::Text(p.company), L"");
  EXPECT_EQ(Params::Text(p.title), L"");
  EXPECT_EQ(p.wos, 1);
  EXPECT_EQ(Params::Text(p.backup), L"");
  EXPECT_EQ(Params::Text(p.style), L"");
}

TEST_F(SystemParameters, MissingFileGivesTheDefaults) {
  Params p;
  p.Read();
  EXPECT_EQ(p.result, 0);
  ExpectDefaults(p);
}

TEST_F(SystemParameters, EmptyOrDamagedFileGivesTheDefaults) {
  const char nul_in_header[] = "[Server\0name]\r\nX\r\n";
  const std::string files[] = {
      "",
      "[Language]",                      // header on the last line
      "[Server name]\r\n",               // the same, with a line end
      "[Language]\r[Server name]\rX\r",  // carriage returns: one line
      "[Language] \r\n7\r\n",            // not the whole line
      std::string(nul_in_header, sizeof nul_in_header - 1),
      std::string(3000, '[') + "\r\n",
  };
  for (const std::string& bytes : files) {
    WriteBytes("param.sys", bytes);
    Params p;
    p.Read();
    EXPECT_EQ(p.result, 1);
    ExpectDefaults(p);
  }
}

struct SectionCase {
  std::string file;
  int language, units, wos, cp;
  std::wstring server, company;
};

TEST_F(SystemParameters, SectionRules) {
  const SectionCase cases[] = {
      {"[language]\r\n0\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[LANGUAGE]\r\n7\r\n", 7, 1, 1, 0, L"(local)", L""},
      {"[Language]\r\n-5\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[Language]\r\nabc\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[Language]\r\n12 and more\r\n", 12, 1, 1, 0, L"(local)", L""},
      {"[International units]\r\n00\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[International units]\r\n0 \r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[international UNITS]\r\n0\r\n", 3, 0, 1, 0, L"(local)", L""},
      {"[WOS title]\r\n1\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[WOS title]\r\n0\r\n[WOS title]\r\n1\r\n", 3, 1, 0, 0, L"(local)", L""},
      {"[System CodePage]\r\n1252\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[System CodePage]\r\n932\r\n", 3, 1, 1, 1, L"(local)", L""},
      {"[System CodePage]\r\n936\r\n", 3, 1, 1, 1, L"(local)", L""},
      {"[System CodePage]\r\n949\r\n", 3, 1, 1, 1, L"(local)", L""},
      {"[System CodePage]\r\n0936\r\n", 3, 1, 1, 0, L"(local)", L""},
      {"[Server name]\r\n\r\n", 3, 1, 1, 0, L"", L""},  // an empty value counts
      {"[Server name]\r\nA\r\n[Server name]\r\nB\r\n", 3, 1, 1, 0, L"B", L""},
      {"[Server name]\r\nLAST", 3, 1, 1, 0, L"LAST", L""},  // value without line end
      // The value is the next line, whatever it looks like.
      {"[Company]\r\n[Server name]\r\nX\r\n", 3, 1, 1, 0, L"(local)", L"[Server name]"},
      {"noise\r\n[Company]\r\nACME\r\nmore noise\r\n", 3, 1, 1, 0, L"(local)", L"ACME"},
      {"[Company]\nbare line feeds\n", 3, 1, 1, 0, L"(local)", L"bare line feeds"},
  };
  for (const SectionCase& c : cases) {
    WriteBytes("param.sys", c.file);
    Params p;
    p.Read();
    EXPECT_EQ(p.language, c.language) << c.file;
    EXPECT_EQ(p.units, c.units) << c.file;
    EXPECT_EQ(p.wos, c.wos) << c.file;
    EXPECT_EQ(p.cp1, c.cp) << c.file;
    EXPECT_EQ(p.cp2, c.cp) << c.file;
    EXPECT_EQ(Params::Text(p.server), c.server) << c.file;
    EXPECT_EQ(Params::Text(p.company), c.company) << c.file;
  }
}

TEST_F(SystemParameters, LongValuesAreCutTo256) {
  WriteBytes("param.sys", "[Style]\r\n" + std::string(2000, 's') + "\r\n[Company]\r\n" +
                              std::string(256, 'c') + "\r\n");
  Params p;
  p.Read();
  EXPECT_EQ(Params::Text(p.style), std::wstring(256, L's'));
  EXPECT_EQ(Params::Text(p.company), std::wstring(256, L'c'));
  EXPECT_TRUE(p.CanariesIntact());
}

// --- basic options ------------------------------------------------------------------------

TEST_F(SystemParameters, BasicOptionsSwitch) {
  struct Case {
    const char* file;  // nullptr: no file
    int result;
  };
  const std::string long_line = "A301 \"" + std::string(450, 'x') + "\" ;\r\n";
  const std::string with_long = long_line + "A302 ON ;\r\n";
  const Case cases[] = {
      {nullptr, 7},
      {"", 7},
      {"A302 ON ;\r\n", 1},
      {"A302 on ;\r\n", 1},
      {"A302 OFF ;\r\n", 0},
      {"A302 1 ;\r\n", 0},
      {"A302 ;\r\n", 0},
      {"A302 OFF ;\r\nA302 ON ;\r\n", 0},  // the first one only
      {"# A302 ON\r\nB302 ON ;\r\nA303 ON ;\r\n", 7},
      {with_long.c_str(), 1},
  };
  for (const Case& c : cases) {
    std::filesystem::remove("MIRSELPR.CFG");
    if (c.file != nullptr) WriteBytes("MIRSELPR.CFG", c.file);
    int value = 7;
    LeerSiOpcBasicas(value);
    EXPECT_EQ(value, c.result) << (c.file != nullptr ? c.file : "no file");
  }
}

// --- database directories ---------------------------------------------------------------

TEST_F(SystemParameters, DatabaseDirectoryTree) {
  CrearDirectoriosDB(L"Taller");
  for (const char* sub : {"Taller/General", "Taller/Products", "Taller/Nestings"}) {
    EXPECT_TRUE(std::filesystem::is_directory(sub)) << sub;
  }
  WriteBytes("Taller/General/keep.dat", "x");
  CrearDirectoriosDB(L"Taller");  // existing: nothing changes
  EXPECT_EQ(ReadBytes("Taller/General/keep.dat"), "x");

  CrearDirectoriosDB(L"Otra\\");  // a trailing backslash adds none
  EXPECT_TRUE(std::filesystem::is_directory("Otra/Nestings"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("Otra"),
                          std::filesystem::directory_iterator()),
            3);
}

// --- packaging ------------------------------------------------------------------------------

TEST_F(SystemParameters, PackagingFileBytesAndRoundTrip) {
  EscribirPequeno(5, L"CAJAS\\GRANDE.CAJ", -2);
  EXPECT_EQ(ReadBytes("PEQUENO.SYS"), "A000 5 ;\r\nA001 \"CAJAS\\GRANDE.CAJ\" ;\r\nA002 -2 ;\r\n");
  int first = 0, second = 0;
  wchar_t box[81] = L"";
  LeerPequeno(first, box, second);
  EXPECT_EQ(first, 5);
  EXPECT_STREQ(box, L"CAJAS\\GRANDE.CAJ");
  EXPECT_EQ(second, -2);

  EscribirPequeno(0, L"", 1);
  EXPECT_EQ(ReadBytes("PEQUENO.SYS"), "A000 0 ;\r\nA001 \"\" ;\r\nA002 1 ;\r\n");
  LeerPequeno(first, box, second);
  EXPECT_STREQ(box, L"");
}

TEST_F(SystemParameters, PackagingDefaults) {
  const std::string long_box = "A001 \"" + std::string(200, 'b') + "\" ;\r\nA002 3 ;\r\n";
  const char nul_bytes[] = "A001\0 \"X.CAJ\" ;\r\nA002 3";
  const std::string with_nul(nul_bytes, sizeof nul_bytes - 1);
  struct Case {
    std::string file;  // "-": no file
    int first;
    std::wstring box;
    int second;
  };
  const Case cases[] = {
      {"-", 0, L"CAJPEQU.CAJ", 1},
      {"", 0, L"CAJPEQU.CAJ", 1},
      {"A001 \"OTRA.CAJ\" ;\r\n", 0, L"OTRA.CAJ", 1},
      {"A002 9 ;\r\nA000 4\r\n", 4, L"CAJPEQU.CAJ", 9},
      {"B000 4 ;\r\nA003 7 ;\r\n# A000 8\r\n", 0, L"CAJPEQU.CAJ", 1},
      {"A001 OTRA.CAJ ;\r\n", 0, L"", 1},  // no quotes: no text
      // Records are cut at 80 characters: the text runs to the cut.
      {long_box, 0, std::wstring(74, L'b'), 3},
      {with_nul, 0, L"", 3},  // the NUL ends the record before its text
  };
  for (const Case& c : cases) {
    std::filesystem::remove("PEQUENO.SYS");
    if (c.file != "-") WriteBytes("PEQUENO.SYS", c.file);
    int first = -7, second = -7;
    wchar_t box[81] = L"stale";
    LeerPequeno(first, box, second);
    EXPECT_EQ(first, c.first) << c.file;
    EXPECT_EQ(std::wstring(box), c.box) << c.file;
    EXPECT_EQ(second, c.second) << c.file;
  }
}

// --- version -----------------------------------------------------------------------------------

TEST_F(SystemParameters, VersionDigits) {
  struct Case {
    const char* file;  // nullptr: no file
    int out[7];
  };
  const Case cases[] = {
      {nullptr, {-1, 0, 0, -1, -1, -1, -1}},
      {"312\r\n4\r\n256\r\n7\r\n1999\r\n8\r\n", {3, 1, 4, 5, 7, 9, 8}},
      {"1205\r\n", {12, 0, 0, 0, 0, 0, 0}},
      {"", {0, 0, 0, 0, 0, 0, 0}},
      {"-312\r\n-4\r\n-256\r\n0\r\n5\r\n0", {-3, -1, -4, -5, 0, 0, 0}},
      {"98\r\nx\r\n9\r\n", {0, 9, 0, 0, 0, 0, 0}},
      {"312\r4\r", {3, 1, 0, 0, 0, 0, 0}},  // carriage returns only: one line
      {"3\x1a"
       "12\r\n4\r\n",
       {0, 0, 0, 0, 0, 0, 0}},  // Ctrl-Z ends the text
  };
  for (const Case& c : cases) {
    std::filesystem::remove("SERVPACK.DTS");
    if (c.file != nullptr) WriteBytes("SERVPACK.DTS", c.file);
    int out[7] = {-1, -1, -1, -1, -1, -1, -1};
    DameVersionYServicePack(out[0], out[1], out[2], out[3], out[4], out[5], out[6]);
    for (int i = 0; i < 7; ++i) {
      EXPECT_EQ(out[i], c.out[i]) << (c.file != nullptr ? c.file : "no file") << " out" << i + 1;
    }
  }
}

}  // namespace
