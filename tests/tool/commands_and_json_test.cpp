// The tool as a whole: exit statuses and one-line errors, the JSON document
// of every reading command, `cfg get`/`cfg set` on exact bytes, and `errors`
// on reports the library writes.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "korvalen/korvalen.h"
#include "process_support.h"
#include "tool_runner.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunTool;
using korvalen::testing::ToolTest;
using korvalen::testing::WriteBytes;

TEST_F(ToolTest, ExitStatusAndOneLineErrors) {
  GeneraError(12, L"a", L"b", L"c", L"d", L"e", L"f", L"g", 1, 2, 3);
  const struct {
    const char* arguments;
    int status;
    const char* error;  // the whole output, when the command fails
  } cases[] = {
      {"--help", 0, nullptr},
      {"errors show --help", 0, nullptr},
      {"", 2, nullptr},
      {"no-such-command", 2, nullptr},
      {"cfg get -C installation CFGSMACH.CFG", 2, nullptr},
      {"cfg get -C installation CFGSMACH.CFG A4", 2,
       "korvalen: A4: not a record code (a letter and three digits, as A001)\n"},
      {"cfg set -C installation CFGSMACH.CFG A002 1 wide", 2,
       "korvalen: CFGSMACH.CFG: \"wide\" is no integer for 1024\n"},
      {"figures 50", 2, nullptr},
      {"cfg dump -C installation NOSUCH.CFG", 1,
       "korvalen: NOSUCH.CFG: no such file or directory\n"},
      {"cfg set -C installation NOSUCH.CFG A000 1 2", 1,
       "korvalen: NOSUCH.CFG: no such file or directory\n"},
      {"state -C nowhere", 1, "korvalen: nowhere: no such file or directory\n"},
      {"cfg get -C installation CFGSMACH.CFG A999", 1, "korvalen: CFGSMACH.CFG: no record A999\n"},
      {"cfg get -C installation CFGSMACH.CFG A004 3", 1,
       "korvalen: CFGSMACH.CFG: record A004 has no field 3 (it has 2)\n"},
      {"text cat -C installation MISSING.TXT", 1, nullptr},
      {"errors show 2", 1, "korvalen: report 2: no such report (there are 1)\n"},
      {"errors show 1", 0, nullptr},
  };
  for (const auto& c : cases) {
    const auto [status, output] = RunTool(c.arguments);
    EXPECT_EQ(status, c.status) << c.arguments << "\n" << output;
    if (c.error != nullptr) {
      EXPECT_EQ(output, c.error) << c.arguments;
    } else if (c.status == 2) {
      EXPECT_EQ(output.rfind("korvalen: ", 0), 0u) << c.arguments << "\n" << output;
    }
  }
}

TEST_F(ToolTest, EveryReadingCommandGivesOneJsonDocument) {
  fs::copy_file(
      fs::path(korvalen::testing::ProgramDirectory()) / "fixtures" / "64" / "UKVORTAN.DLL",
      "installation/UKVORTAN.DLL");
  fs::current_path("installation");
  GeneraError(12, L"a", L"b", L"c", L"d", L"e", L"f", L"g", 1, 2, 3);
  fs::current_path("..");
  const struct {
    const char* arguments;
    const char* pointer;
    nlohmann::json expected;
  } cases[] = {
      {"cfg dump -C installation CFGSMACH.CFG --json", "/records/4/fields/0", "\"CFGSMACH.OPC\""},
      {"cfg dump -C installation CFGSMACH.CFG --json", "/records/1/code", "A001"},
      {"cfg get -C installation CFGSMACH.CFG A005 1 --json", "/value", "LASER3015.OPC"},
      {"cfg get -C installation CFGSMACH.CFG A002 --json", "/fields/0", "1024"},
      {"state -C installation --json", "/active_work_order", "OF-2024-0117"},
      {"state -C installation --json", "/parts_changed", true},
      {"params -C installation --json", "/servpack_dts/version", "3.1"},
      {"params -C installation --json", "/pequeno_sys/box_file_a001", "CAJPEQU.CAJ"},
      {"settings -C installation --json", "/ivortan_cfg/found", true},
      {"lang list -C installation --json", "/languages/1/language", 3},
      {"lang strings -C installation UKVORTAN.DLL 13270 --json", "/strings/0/text", "Cutting"},
      {"catalog exporters -C installation --json",
       "/installed/entries/1",
       {{"name", "ERP-CSV"}, {"maker", "Jalon Sistemas"}}},
      {"catalog formats IMP -C installation --json", "/language", 3},
      {"figures 0 -C installation --json", "/figures/1/name", "Tramo recto con brida"},
      {"favorites -C installation --json", "/group", 9},
      {"columns parts -C installation --json", "/table", "parts"},
      {"machine -C installation --json", "/cfgsmach_cfg/dimensions", "1024 x 768"},
      {"errors -C installation --json", "/reports/0/code", 12},
      {"errors show 1 -C installation --json", "/text7", "g"},
      {"errors show 1 -C installation --json", "/number2", 2},
      {"text cat -C installation ORDENACT.SYS --json", "/lines/1", "PRE-2024-088"},
  };
  for (const auto& c : cases) {
    const auto [status, output] = RunTool(c.arguments);
    ASSERT_EQ(status, 0) << c.arguments << "\n" << output;
    const auto document = nlohmann::json::parse(output, nullptr, false);
    ASSERT_FALSE(document.is_discarded()) << c.arguments << "\n" << output;
    EXPECT_EQ(document.value(nlohmann::json::json_pointer(c.pointer), nlohmann::json()), c.expected)
        << c.arguments << " " << c.pointer << "\n"
        << output;
  }
}

TEST_F(ToolTest, CfgSetChangesOneFieldAndNoOtherByte) {
  const std::string original =
      "# cut table\r\nA000 5 ;\r\nB000 1  22   3   ;\r\nA001 \"ab\"      ;\r\n\r\n"
      "A002 1.500 OFF ;\r\nA000 7 ;\r\nA003 1\r\n";
  const struct {
    const char* arguments;
    const char* before;
    const char* after;
  } cases[] = {
      {"A000 1 6", "A000 5 ;", "A000 6 ;"},
      {"A000 1 -42", "A000 5 ;", "A000 -42 ;"},
      {"B000 2 9", "B000 1  22   3   ;", "B000 1  9    3   ;"},
      {"B000 2 12345", "B000 1  22   3   ;", "B000 1  12345 3   ;"},
      {"A001 1 \"hello world\"", "A001 \"ab\"      ;", "A001 \"hello world\" ;"},
      {"A001 1 x", "A001 \"ab\"      ;", "A001 \"x\"       ;"},
      {"A002 1 2.25", "A002 1.500 OFF ;", "A002 2.250 OFF ;"},
      {"A002 2 on", "A002 1.500 OFF ;", "A002 1.500 ON  ;"},
      {"A003 1 12", "A003 1\r", "A003 12\r"},
  };
  for (const auto& c : cases) {
    WriteBytes("installation/T.CFG", original);
    const auto [status, output] =
        RunTool(std::string("cfg set -C installation T.CFG ") + c.arguments);
    EXPECT_EQ(status, 0) << c.arguments << "\n" << output;
    std::string expected = original;
    expected.replace(expected.find(c.before), std::string(c.before).size(), c.after);
    EXPECT_EQ(ReadBytes("installation/T.CFG"), expected) << c.arguments;
    EXPECT_FALSE(fs::exists("installation/T.AUX"));
  }
  EXPECT_EQ(RunTool("cfg get -C installation T.CFG A003 1"),
            std::make_pair(0, std::string("12\n")));
  // The sample's own file, whose first records have no terminator to give room.
  std::string sample = ReadBytes("installation/CFGSMACH.CFG");
  EXPECT_EQ(RunTool("cfg set -C installation CFGSMACH.CFG A002 1 20480").first, 0);
  EXPECT_EQ(ReadBytes("installation/CFGSMACH.CFG"),
            sample.replace(sample.find("A002 1024\r"), 10, "A002 20480\r"));
}

TEST_F(ToolTest, ErrorsListShowAndClear) {
  GeneraError(12, L"Sheet", L"b", L"c", L"d", L"e", L"f", L"g", 1, 2, 3);
  const auto listed = nlohmann::json::parse(RunTool("errors list --json").second);
  const std::string name = listed["reports"][0]["file_name"];
  EXPECT_TRUE(name.size() == 12 && fs::exists(name)) << name;
  EXPECT_EQ(RunTool("errors list").second, "   1  " + name + "     12  Sheet\n1 error reports\n");
  const auto [shown_status, shown] = RunTool("errors show 1");
  EXPECT_EQ(shown_status, 0);
  for (const char* line :
       {"Code                        12\n", "Text1                       Sheet\n",
        "Text7                       g\n", "Number3                     3\n"}) {
    EXPECT_NE(shown.find(line), std::string::npos) << shown;
  }
  WriteBytes("PLANTED.err", "");
  EXPECT_EQ(RunTool("errors clear"), std::make_pair(0, std::string("deleted 2 error reports\n")));
  EXPECT_FALSE(fs::exists("PLANTED.err"));
  EXPECT_EQ(RunTool("errors"), std::make_pair(0, std::string("0 error reports\n")));
}

}  // namespace
