// `korvalen lang`: the languages of the sample installation with the test
// libraries beside them, and the strings of a library named by its path.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "process_support.h"
#include "tool_runner.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::RunTool;
using korvalen::testing::ToolTest;

fs::path Fixture(const std::string& bits, const std::string& library) {
  return fs::path(korvalen::testing::ProgramDirectory()) / "fixtures" / bits / library;
}

TEST_F(ToolTest, LangListsLibrariesStatesAndCharacterSets) {
  fs::copy_file(Fixture("64", "UKVORTAN.DLL"), "installation/UKVORTAN.DLL");
  // A library under another language's name fails its verification.
  fs::copy_file(Fixture("32", "RSVORTAN.DLL"), "installation/SPVORTAN.DLL");
  const auto [status, output] = RunTool("lang list -C installation");
  EXPECT_EQ(status, 0);
  for (const char* line : {"3         UKVORTAN.DLL   verified            0\n",
                           "7         SPVORTAN.DLL   fails verification  0\n",
                           "16        RSVORTAN.DLL   missing             204\n",
                           "202       JPVORTAN.DLL   missing             128\n"}) {
    EXPECT_NE(output.find(line), std::string::npos) << line << output;
  }
}

TEST_F(ToolTest, LangStringsOfALibraryByPath) {
  const std::string rs = Fixture("32", "RSVORTAN.DLL").string();
  EXPECT_EQ(RunTool("lang strings '" + rs + "'"),
            std::make_pair(0, std::string("13051  rstxtvor\n13270  Резка\n25000  У детали нет "
                                          "контура.\n25001  Лист 😀\n")));
  EXPECT_EQ(RunTool("lang strings '" + rs + "' 25001 7"),
            std::make_pair(0, std::string("25001  Лист 😀\n7  (none)\n")));
  EXPECT_NE(RunTool("lang strings installation/param.sys").first, 0);
  EXPECT_NE(RunTool("lang strings no-such.dll").first, 0);
}

}  // namespace
