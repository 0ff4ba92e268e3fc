// `korvalen doctor` on a copy of the sample installation: nothing found in
// the sample, and each fault planted in it found at its file and line, in
// the text report and in the JSON one.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "process_support.h"
#include "tool_runner.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunTool;
using korvalen::testing::ToolTest;
using korvalen::testing::WriteBytes;

std::pair<int, std::string> Doctor(const std::string& arguments) {
  return RunTool("doctor " + arguments);
}

TEST_F(ToolTest, DoctorFindsNothingInTheSample) {
  EXPECT_EQ(Doctor("-C installation"), std::make_pair(0, std::string("No findings\n")));
  const auto [status, output] = Doctor("-C installation --json");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(nlohmann::json::parse(output)["findings"], nlohmann::json::array());
  EXPECT_EQ(Doctor("-C installation --bogus").first, 2);
  EXPECT_EQ(Doctor("-C no-such-directory").first, 1);
}

TEST_F(ToolTest, DoctorFindsEachPlantedFault) {
  enum Plant { kAppend, kWrite, kLibrary };
  const struct {
    Plant plant;
    const char* file;
    std::string bytes;  // for kLibrary, the test library copied under the name
    const char* found_in;
    int line;  // after the sample's lines when appended; 0 for the file
    const char* check;
  } cases[] = {
      {kAppend, "CFGSMACH.CFG", "  # a note\r\n", "CFGSMACH.CFG", 1, "record-syntax"},
      {kAppend, "MOSAICOS.CFG", "A020\t1 ;\r\n", "MOSAICOS.CFG", 1, "record-syntax"},
      {kAppend, "LISTDUCT.CFG", "F004 \"" + std::string(75, 'x') + "\" ;\r\n", "LISTDUCT.CFG", 1,
       "line-length"},
      {kAppend, "ORDENACT.SYS", std::string(41, 'O') + "\r\n", "ORDENACT.SYS", 1, "line-length"},
      {kAppend, "LSIMPEXP.003", "E100 \"Plan\" \"PLN\" ;\r\n", "LSIMPEXP.003", 1, "ignored-record"},
      {kAppend, "LISTPOST.ALL", "A004 \"x\" ;\r\n", "LISTPOST.ALL", 1, "ignored-record"},
      {kAppend, "CFGSTABS.CFG", "U099 12 ;\r\nT099 9 ;\r\n", "CFGSTABS.CFG", 1, "ignored-record"},
      {kWrite, "param.sys", "[Company]\r\nX\r\n[Language]\r\n7\r\n", "param.sys", 4, "param-sys"},
      {kLibrary, "RSVORTAN.DLL", "RSVORTAN.DLL", "Languages.xml", 4, "language-library"},
      {kLibrary, "SPVORTAN.DLL", "RSVORTAN.DLL", "Languages.xml", 5, "language-library"},
      {kAppend, "LISTIMPO.ALL", "A000 \"M\"\r\nA001 \"N\"\r\n", "LISTIMPO.ALL", 1, "catalogue"},
      {kAppend, "LISTEXPO.ALL", "A000 \"M\"\r\nA002 \"C\"\r\nA003 \"C\"\r\n", "LISTEXPO.ALL", 3,
       "catalogue"},
      {kAppend, "LISTEXPO.CFG", "A000 \"M\"\r\nA001 \"XLS\"\r\nA002 \"E\"\r\nA003 \"X\"\r\n",
       "LISTEXPO.CFG", 2, "catalogue"},
      {kAppend, "LISTPOST.CFG", "A000 \"M\"\r\nA001 \"N\"\r\nA002 \"PPLASERPLASMA\"\r\n",
       "LISTPOST.CFG", 3, "catalogue"},
      {kWrite, "AUXMRSID.CFG", "A002 ON ;\r\n", "AUXMRSID.CFG", 0, "work-file"},
      {kWrite, "LISTOFS.SYS.work", "OF\r\n", "LISTOFS.SYS.work", 0, "work-file"},
      {kAppend, "CHGCHAPA.SYS", "OF-2024-0120\r\n", "CHGCHAPA.SYS", 1, "sheet-queue"},
      {kAppend, "CHGCHAPA.SYS", "\r\nOF-2024-0120\r\nCH-1\r\n", "CHGCHAPA.SYS", 2, "sheet-queue"},
      {kWrite, "00000007.err", "12\r\n", "CONTERRW.cdr", 0, "error-counter"},
  };
  const fs::path fixtures = fs::path(korvalen::testing::ProgramDirectory()) / "fixtures" / "64";
  for (const auto& c : cases) {
    fs::remove_all("installation");
    fs::copy(korvalen::testing::SampleInstallation(), "installation", fs::copy_options::recursive);
    const std::string path = "installation/" + std::string(c.file);
    int line = c.line;
    if (c.plant == kLibrary) {
      fs::copy_file(fixtures / c.bytes, path);
    } else if (c.plant == kAppend) {
      const std::string sample = ReadBytes(path);
      line += static_cast<int>(std::count(sample.begin(), sample.end(), '\n'));
      WriteBytes(path, sample + c.bytes);
    } else {
      WriteBytes(path, c.bytes);
    }
    const std::string where =
        std::string(c.found_in) + (line > 0 ? ":" + std::to_string(line) : "") + ": ";
    const auto [status, output] = Doctor("-C installation");
    EXPECT_EQ(status, 1) << c.file << output;
    EXPECT_TRUE(output.find("\n" + where) != std::string::npos || output.rfind(where, 0) == 0)
        << c.file << ": no finding at " << where << "\n"
        << output;

    const auto [json_status, json] = Doctor("-C installation --json");
    EXPECT_EQ(json_status, 1);
    const auto findings = nlohmann::json::parse(json).at("findings");
    EXPECT_TRUE(std::any_of(findings.begin(), findings.end(),
                            [&](const nlohmann::json& f) {
                              return f.at("file") == c.found_in && f.at("check") == c.check &&
                                     (line > 0 ? f.at("line") == line : f.at("line").is_null());
                            }))
        << c.file << "\n"
        << json;
  }
}

}  // namespace
