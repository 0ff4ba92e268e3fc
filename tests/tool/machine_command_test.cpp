// `korvalen machine` on a copy of the sample installation and on an empty
// directory: what it prints, and that reading the mosaics, whose writer
// consumes them, changes no file.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tool_runner.h"

namespace {

using korvalen::testing::RunTool;
using korvalen::testing::Snapshot;

class ToolMachine : public korvalen::testing::ToolTest {};

TEST_F(ToolMachine, SampleInstallation) {
  const auto before = Snapshot("installation");
  EXPECT_EQ(
      RunTool("machine -C installation"),
      std::make_pair(0, std::string("CFGSMACH.CFG\n"
                                    "  Launch value                1\n"
                                    "  Keep dimensions             off\n"
                                    "  Dimensions                  1024 x 768\n"
                                    "  Default option file         CFGSMACH.OPC\n"
                                    "  Option file 0               LASER3015.OPC\n"
                                    "  Option file 1               PUNZ1250.OPC\n"
                                    "  Option file 2               PLASMA6020.OPC\n"
                                    "  Option file 3               AGUA4020.OPC\n"
                                    "  Option file in use          PUNZ1250.OPC (selector 1)\n"
                                    "MOSAICOS.CFG\n"
                                    "  Main switch (A000)          on\n"
                                    "  Switches on                 A001 A003 A006 A009 A013\n"
                                    "  Value (A005)                4\n"
                                    "  Real (A011)                 12.500\n"
                                    "  Text (A012)                 Rejilla estandar\n"
                                    "  Mosaics                     4\n"
                                    "     1  RC20        Rejilla cuadrada 20x20\n"
                                    "     2  PR5-8       Perforado redondo R5 paso 8\n"
                                    "     3  HX12        Celosia hexagonal 12\n"
                                    "     4  RT30-6      Ranurado 30x6 al tresbolillo\n"
                                    "MIRSELPR.CFG\n"
                                    "  Punching material (A362)    DC01 Acero laminado en frio\n"
                                    "  A238 A239                   2 1\n"
                                    "  A338 to A342                1.500 0.800 2.000 automatic "
                                    "0.150\n"
                                    "  A348 A349 A350              1 0 3\n"
                                    "  A365                        250\n"
                                    "  A380 A381 A382              1 0 60\n")));
  EXPECT_EQ(Snapshot("installation"), before);
}

TEST_F(ToolMachine, EmptyOrMissingDirectory) {
  const auto [status, output] = RunTool("machine -C empty");
  EXPECT_EQ(status, 0);
  for (const char* shown :
       {"CFGSMACH.CFG (not found: defaults)\n", "  Dimensions                  800 x 600\n",
        "MOSAICOS.CFG (not found)\n  Main switch (A000)          off\n",
        "  Mosaics                     0\nMIRSELPR.CFG (not found)\n"}) {
    EXPECT_NE(output.find(shown), std::string::npos) << shown << "\n" << output;
  }
  EXPECT_TRUE(std::filesystem::is_empty("empty"));
  EXPECT_NE(RunTool("machine -C no-such-directory").first, 0);
}

}  // namespace
