// Installation settings: every section of "param.sys" with its default and
// its odd rules, the basic-options switch, the database directory tree, the
// packaging file written and read back, and the version digits.
#include "korvalen/settings/system_parameters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class SystemParameters : public korvalen::testing::TempDirTest {};

// "-" for a file's bytes: there is no such file.
void SetFile(const char* name, const std::string& bytes) {
  std::filesystem::remove(name);
  if (bytes != "-") WriteBytes(name, bytes);
}

// Every output of LeerDatosParamSys, as the defaults give them.
struct Params {
  int result = 1, language = 3, units = 1, wos = 1, code_page = 0;
  std::wstring server = L"(local)", files, shared, company, title, backup, style;
  bool operator==(const Params&) const = default;
};

void PrintTo(const Params& p, std::ostream* os) {
  *os << p.result << ' ' << p.language << ' ' << p.units << ' ' << p.wos << ' ' << p.code_page;
  for (const auto* t :
       {&p.server, &p.files, &p.shared, &p.company, &p.title, &p.backup, &p.style}) {
    *os << ' ' << ::testing::PrintToString(*t);
  }
}

// Reads "param.sys" into outputs holding junk and text buffers of 257
// characters, and checks that nothing was written past those.
Params ReadParams() {
  constexpr std::size_t kChars = 257;
  std::vector<std::vector<wchar_t>> t(7, std::vector<wchar_t>(kChars + 8, L'#'));
  Params p{-1, -1, -1, -1, -1, L"", L"", L"", L"", L"", L"", L""};
  int code_page2 = -1;
  p.result =
      LeerDatosParamSys(p.language, t[0].data(), t[1].data(), t[2].data(), p.units, p.code_page,
                        code_page2, t[3].data(), t[4].data(), p.wos, t[5].data(), t[6].data());
  EXPECT_EQ(code_page2, p.code_page);
  for (const auto& b : t) {
    EXPECT_TRUE(std::all_of(b.begin() + kChars, b.end(), [](wchar_t c) { return c == L'#'; }));
  }
  std::wstring* texts[] = {&p.server, &p.files,  &p.shared, &p.company,
                           &p.title,  &p.backup, &p.style};
  for (std::size_t i = 0; i < t.size(); ++i) *texts[i] = t[i].data();
  return p;
}

// What a "param.sys" with every section gives.
const Params kEverySection{
    1,      2, 0, 0, 1, L"SRV\\SQL", L"D:\\B", L"\\\\SRV\\C", L"Aceros", L"Corte", L"D:\\t.bak",
    L"Azul"};

TEST_F(SystemParameters, ParamFileSections) {
  const auto defaults = [](Params&) {};
  const struct {
    std::string file;
    std::function<void(Params&)> change;  // of the defaults
  } cases[] = {
      {"-", [](Params& p) { p.result = 0; }},
      {"", defaults},
      {"; the workshop\r\n[Language]\r\n2\r\n[Company]\r\nAceros\r\n[Project title]\r\nCorte\r\n"
       "[WOS title]\r\n0\r\n[Server name]\r\nSRV\\SQL\r\n[Database files directory]\r\nD:\\B\r\n"
       "[Shared server directory]\r\n\\\\SRV\\C\r\n[International units]\r\n0\r\n"
       "[Database file backup]\r\nD:\\t.bak\r\n[Style]\r\nAzul\r\n[System CodePage]\r\n950\r\n",
       [](Params& p) { p = kEverySection; }},
      {"[Server name]\r\n", defaults},     // a header on the last line keeps its default
      {"[Language] \r\n7\r\n", defaults},  // headers are whole lines
      {std::string(3000, '[') + "\r\n", defaults},
      {"[language]\r\n0\r\n", defaults},
      {"[LANGUAGE]\r\n7\r\n", [](Params& p) { p.language = 7; }},
      // The switches go off only for exactly "0".
      {"[International units]\r\n00\r\n", defaults},
      {"[international UNITS]\r\n0\r\n", [](Params& p) { p.units = 0; }},
      {"[WOS title]\r\n0\r\n[WOS title]\r\n1\r\n", [](Params& p) { p.wos = 0; }},
      {"[System CodePage]\r\n1252\r\n", defaults},
      {"[System CodePage]\r\n0936\r\n", defaults},
      {"[System CodePage]\r\n932\r\n", [](Params& p) { p.code_page = 1; }},
      {"[System CodePage]\r\n936\r\n", [](Params& p) { p.code_page = 1; }},
      {"[System CodePage]\r\n949\r\n", [](Params& p) { p.code_page = 1; }},
      {"[Server name]\r\n\r\n", [](Params& p) { p.server = L""; }},  // an empty value counts
      {"[Server name]\r\nA\r\n[Server name]\r\nB\r\n", [](Params& p) { p.server = L"B"; }},
      {"[Server name]\r\nLAST", [](Params& p) { p.server = L"LAST"; }},
      // The value is the next line, whatever it looks like.
      {"[Company]\r\n[Server name]\r\nX\r\n", [](Params& p) { p.company = L"[Server name]"; }},
      {"[Style]\r\n" + std::string(2000, 's') + "\r\n[Company]\r\n" + std::string(256, 'c') +
           "\r\n",
       [](Params& p) {
         p.style = std::wstring(256, L's');
         p.company = std::wstring(256, L'c');
       }},
  };
  for (const auto& c : cases) {
    SetFile("param.sys", c.file);
    Params expected;
    c.change(expected);
    EXPECT_EQ(ReadParams(), expected) << c.file.substr(0, 60);
  }
}

TEST_F(SystemParameters, BasicOptionsSwitch) {
  const struct {
    std::string file;
    int result;
  } cases[] = {
      {"-", 7},
      {"", 7},
      {"A302 ON ;\r\n", 1},
      {"A302 OFF ;\r\n", 0},
      {"A302 OFF ;\r\nA302 ON ;\r\n", 0},  // the first one only
      {"# A302 ON\r\nB302 ON ;\r\nA303 ON ;\r\n", 7},
      {"A301 \"" + std::string(450, 'x') + "\" ;\r\nA302 ON ;\r\n", 1},  // long records
  };
  for (const auto& c : cases) {
    SetFile("MIRSELPR.CFG", c.file);
    int value = 7;
    LeerSiOpcBasicas(value);
    EXPECT_EQ(value, c.result) << c.file;
  }
}

TEST_F(SystemParameters, DatabaseDirectoryTree) {
  CrearDirectoriosDB(L"Taller");
  for (const char* sub : {"Taller/General", "Taller/Products", "Taller/Nestings"}) {
    EXPECT_TRUE(std::filesystem::is_directory(sub)) << sub;
  }
  WriteBytes("Taller/General/keep.dat", "x");
  CrearDirectoriosDB(L"Taller");  // existing: nothing changes
  EXPECT_EQ(ReadBytes("Taller/General/keep.dat"), "x");
  CrearDirectoriosDB(L"Otra\\");  // a trailing backslash adds none
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("Otra"),
                          std::filesystem::directory_iterator()),
            3);
}

TEST_F(SystemParameters, PackagingFileBytesAndRoundTrip) {
  int first = 0, second = 0;
  wchar_t box[81];
  EscribirPequeno(5, L"CAJAS\\GRANDE.CAJ", -2);
  EXPECT_EQ(ReadBytes("PEQUENO.SYS"), "A000 5 ;\r\nA001 \"CAJAS\\GRANDE.CAJ\" ;\r\nA002 -2 ;\r\n");
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
  const struct {
    std::string file;
    int first;
    std::wstring box;
    int second;
  } cases[] = {
      {"-", 0, L"CAJPEQU.CAJ", 1},
      {"A001 \"OTRA.CAJ\" ;\r\n", 0, L"OTRA.CAJ", 1},
      {"A002 9 ;\r\nA000 4\r\n", 4, L"CAJPEQU.CAJ", 9},
      {"B000 4 ;\r\nA003 7 ;\r\n# A000 8\r\n", 0, L"CAJPEQU.CAJ", 1},
      // Records are cut at 80 characters: the text runs to the cut.
      {"A001 \"" + std::string(200, 'b') + "\" ;\r\nA002 3 ;\r\n", 0, std::wstring(74, L'b'), 3},
  };
  for (const auto& c : cases) {
    SetFile("PEQUENO.SYS", c.file);
    int first = -7, second = -7;
    wchar_t box[81] = L"stale";
    LeerPequeno(first, box, second);
    EXPECT_EQ(first, c.first) << c.file;
    EXPECT_EQ(std::wstring(box), c.box) << c.file;
    EXPECT_EQ(second, c.second) << c.file;
  }
}

TEST_F(SystemParameters, VersionDigits) {
  const struct {
    std::string file;
    std::vector<int> out;
  } cases[] = {
      {"-", {-1, 0, 0, -1, -1, -1, -1}},
      {"312\r\n4\r\n256\r\n7\r\n1999\r\n8\r\n", {3, 1, 4, 5, 7, 9, 8}},
      {"1205\r\n", {12, 0, 0, 0, 0, 0, 0}},
      {"", {0, 0, 0, 0, 0, 0, 0}},
      {"-312\r\n-4\r\n-256\r\n0\r\n5\r\n0", {-3, -1, -4, -5, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    SetFile("SERVPACK.DTS", c.file);
    std::vector<int> out(7, -1);
    DameVersionYServicePack(out[0], out[1], out[2], out[3], out[4], out[5], out[6]);
    EXPECT_EQ(out, c.out) << c.file;
  }
}

}  // namespace
