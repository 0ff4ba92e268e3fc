// `korvalen state`, `korvalen params` and `korvalen cfg dump` on a copy of the
// sample installation and on an empty directory: what they print, and that
// they change nothing (the marker and the queue are not consumed, no missing
// file is created).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "korvalen/korvalen.h"
#include "tool_runner.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::RunTool;
using korvalen::testing::Snapshot;

class ToolStateAndParams : public korvalen::testing::ToolTest {};

TEST_F(ToolStateAndParams, OutputOfTheSample) {
  const auto before = Snapshot("installation");
  const std::pair<int, std::string> state = {
      0,
      "Active work order           OF-2024-0117\n"
      "Quote                       PRE-2024-088\n"
      "Active database directory   D:\\Korvalen\\Bases\\Planta2\n"
      "Part list without order     LP-CARENADOS-07\n"
      "Parts changed               yes (CHGPIEZA.SYS waits to be seen)\n"
      "Last work orders\n"
      "   1  OF-2024-0117\n"
      "   2  OF-2024-0112\n"
      "   3  OF-2024-0109\n"
      "   4  OF-2024-0098\n"
      "   5  OF-2024-0085\n"
      "Sheets to redo              3 (and 2 empty)\n"
      "  OF-2024-0112             CH-3000x1500-E3-004\n"
      "  OF-2024-0117             CH-2500x1250-E2-011\n"
      "  OF-2024-0109             CH-3000x1500-E5-020\n"};
  // Twice the same: nothing was consumed.
  EXPECT_EQ(RunTool("state -C installation"), state);
  EXPECT_EQ(RunTool("state -C installation"), state);
  EXPECT_EQ(RunTool("params -C installation"),
            std::make_pair(0, std::string("param.sys\n"
                                          "  Language                    3\n"
                                          "  Company                     Talleres Ebro Metal S.L.\n"
                                          "  Project title               Corte y punzonado\n"
                                          "  WOS title                   on\n"
                                          "  Server name                 SRVTALLER\\SQLEXPRESS\n"
                                          "  Database files directory    D:\\Korvalen\\Bases\n"
                                          "  Shared server directory     \\\\SRVTALLER\\Korvalen\n"
                                          "  International units         on\n"
                                          "  Database file backup        "
                                          "D:\\Korvalen\\Copias\\Planta2.bak\n"
                                          "  Style                       Classic\n"
                                          "  Double-byte code page       no\n"
                                          "PEQUENO.SYS\n"
                                          "  A000                        0\n"
                                          "  Box file (A001)             CAJPEQU.CAJ\n"
                                          "  A002                        1\n"
                                          "SERVPACK.DTS\n"
                                          "  Version                     3.1\n"
                                          "  Service pack                4\n"
                                          "  Further values              0 0 0 0\n")));
  EXPECT_EQ(Snapshot("installation"), before);
}

TEST_F(ToolStateAndParams, EmptyOrMissingDirectory) {
  const struct {
    const char* arguments;
    bool succeeds;
    const char* shown;
  } cases[] = {
      {"state -C empty", true, "Last work orders            (none: no LISTOFS.SYS)\n"},
      {"state -C empty", true, "Parts changed               no\n"},
      {"params -C empty", true,
       "param.sys (not found: defaults)\n  Language                    3\n"},
      {"params -C empty", true, "  Server name                 (local)\n"},
      {"params -C empty", true, "SERVPACK.DTS (not found)\n"},
      {"state -C no-such-directory", false, "no-such-directory"},
      {"params -C no-such-directory", false, "no-such-directory"},
      // Comments are no records, also where blanks stand before their mark
      // or a blank line follows one; the blank line after a record is A000.
      {"cfg dump indented.cfg", true,
       "   2  A001  5  ;\n   5  A002  7  ;\n   6  A000\n3 records\n"},
  };
  {
    FILE* f = fOpen(L"indented.cfg", L"wt");
    ASSERT_NE(f, nullptr);
    fPuts(L"# the cut table\n A001 5 ;\n   # indented note\n   \nA002 7 ;\n   \n", f);
    std::fclose(f);
  }
  for (const auto& c : cases) {
    const auto [status, output] = RunTool(c.arguments);
    EXPECT_EQ(status == 0, c.succeeds) << c.arguments;
    EXPECT_NE(output.find(c.shown), std::string::npos) << c.arguments << "\n" << output;
  }
  EXPECT_TRUE(fs::is_empty("empty"));
}

}  // namespace
