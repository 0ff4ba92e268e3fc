// `korvalen catalog`, `figures`, `favorites` and `columns` on a copy of the
// sample installation: what they print, the installed file rewritten byte for
// byte as the catalogue has it, a refused name leaving every file as it was,
// and the formats of the installation's language.
#include <gtest/gtest.h>

#include <string>

#include "tool_runner.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::RunTool;
using korvalen::testing::Snapshot;

class ToolCatalogs : public korvalen::testing::ToolTest {};

TEST_F(ToolCatalogs, ShowInstallAndRemove) {
  const auto before = Snapshot("installation");
  EXPECT_EQ(RunTool("catalog exporters -C installation"),
            std::make_pair(0, std::string("Exporters installed (LISTEXPO.CFG): 2\n"
                                          "  DXF                    Ebro Soft\n"
                                          "  ERP-CSV                Jalon Sistemas\n"
                                          "Exporters available (LISTEXPO.ALL): 1\n"
                                          "  PDF                    Ebro Soft\n")));
  // Installing what is installed rewrites the sample's own bytes.
  EXPECT_EQ(RunTool("catalog install machines LASER3015 -C installation").first, 0);
  EXPECT_EQ(Snapshot("installation"), before);
  const auto [refused, message] =
      RunTool("catalog install machines LASER4020 NOPE -C installation");
  EXPECT_NE(refused, 0);
  EXPECT_NE(message.find("LISTPOST.ALL: no entry \"NOPE\""), std::string::npos) << message;
  EXPECT_EQ(Snapshot("installation"), before);

  EXPECT_EQ(RunTool("catalog install machines OXICORTE8 -C installation"),
            std::make_pair(0, std::string("installed: OXICORTE8\n")));
  EXPECT_EQ(RunTool("catalog remove machines LASER3015 PUNZ1250 AGUA4020 -C installation").first,
            0);
  EXPECT_EQ(ReadBytes("installation/LISTPOST.CFG"),
            "A000 \"Cortes del Jalon\"\r\nA001 \"PLASMA6020\"\r\nA002 \"PPPLASMA\"\r\n"
            "A003 \"PLA\"\r\nA000 \"Cortes del Jalon\"\r\nA001 \"OXICORTE8\"\r\n"
            "A002 \"PPOXI\"\r\nA003 \"OXI\"\r\n");
  EXPECT_NE(RunTool("catalog install gadgets X -C installation").first, 0);
}

TEST_F(ToolCatalogs, FormatsOfALanguage) {
  EXPECT_EQ(RunTool("catalog formats IMP -C installation"),
            std::make_pair(0, std::string("Import formats of language 3 (LSIMPEXP.003; then "
                                          "LISTIMPO.CFG): 4\n"
                                          "  Parts list (CSV)       IMPLPCSV\n"
                                          "  Sheet stock (CSV)      IMPSTCSV\n"
                                          "  DXF                    IMPDXF\n"
                                          "  IGES                   IMPIGES\n")));
  EXPECT_EQ(RunTool("catalog formats CFG --language 7 -C installation"),
            std::make_pair(0, std::string("Configuration formats of language 7 (LSIMPEXP.007, "
                                          "no such file): 0\n")));
  EXPECT_NE(RunTool("catalog formats imp -C installation").first, 0);
}

TEST_F(ToolCatalogs, FiguresFavouritesAndColumns) {
  EXPECT_EQ(RunTool("figures 100 -C installation"),
            std::make_pair(0, std::string("Group 100 (F records of DUCTUSER.CFG): 2\n"
                                          "      1  Plenum de impulsion\n"
                                          "      2  Caja de registro\n")));
  EXPECT_NE(RunTool("figures 30 -C installation").first, 0);
  EXPECT_EQ(RunTool("favorites add 20 \"Te recta\" -C installation").first, 0);
  EXPECT_EQ(RunTool("favorites -C installation remove 10"),
            std::make_pair(0, std::string("removed: figure 10\n")));
  EXPECT_EQ(RunTool("favorites -C installation"),
            std::make_pair(0, std::string("Favourites (O records of LISTDUCT.CFG): 2\n"
                                          "     31  Reduccion excentrica\n"
                                          "     20  Te recta\n")));
  // Headings of the language module stay empty: none is loaded here.
  EXPECT_EQ(RunTool("columns sheets-window -C installation"),
            std::make_pair(0, std::string("CFGSTABS.CFG, sheets-window table: 3 columns\n"
                                          "  position  kind  width  unit  heading\n"
                                          "         0     0     20     0  <text 1>\n"
                                          "         1     1     12     0  <text 2>\n"
                                          "         2     2     12     0  <text 3>\n")));
  const auto [status, sheets] = RunTool("columns sheets -C installation");
  EXPECT_EQ(status, 0);
  EXPECT_NE(sheets.find("         1     1     20     0  Material\n"), std::string::npos) << sheets;
  EXPECT_EQ(RunTool("columns parts -C empty"),
            std::make_pair(0, std::string("CFGSTABS.CFG (not found), parts table: 0 columns\n")));
}

}  // namespace
