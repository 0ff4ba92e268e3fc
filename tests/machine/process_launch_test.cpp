// Starting programs: how a command line reaches the started program's
// arguments, the exit codes a wait gives, the second try with the whole line
// as the program's name, the 100 ms look at a waited-for program, and the
// one-number files (launch mode, published help windows).
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "korvalen/korvalen.h"
#include "program_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::FileLines;
using korvalen::testing::HelperCommand;
using Clock = std::chrono::steady_clock;

class ProcessLaunchTest : public korvalen::testing::TempDirTest {};

// What the started program sees of the words after the program name, as a
// Windows program reads its command line.
TEST_F(ProcessLaunchTest, CommandLineReachesTheProgramAsWindowsSplitsIt) {
  const struct {
    const char* words;
    std::vector<std::string> args;
  } cases[] = {
      {"one  two", {"one", "two"}},
      {"x\ty", {"x", "y"}},
      {"\"two words\" x", {"two words", "x"}},
      {"back\\slash \\\\server\\share", {"back\\slash", "\\\\server\\share"}},
      {"\\\"quoted\\\"", {"\"quoted\""}},
      {"a\\\\\"b c\"", {"a\\b c"}},  // 2n backslashes, quote: n, and the quote groups
      {"a\\\\\\\"b", {"a\\\"b"}},    // 2n+1: n and a literal quote
      {"\"dir\\\\\" next", {"dir\\", "next"}},
      {"\"a\"\"b\"", {"a\"b"}},      // a doubled quote inside gives one and ends the group
      {"\"\"\"a\"\"\"", {"\"a\""}},  // every third quote of a run is literal
      {"\"\" end", {"", "end"}},     // an empty argument
      {"\"open to the end", {"open to the end"}},
  };
  for (const auto& c : cases) {
    std::filesystem::remove("args.txt");
    int code = -1;
    ASSERT_EQ(LanzarProcesoEjecutable(
                  HelperCommand(std::string("--args args.txt ") + c.words).c_str(), 1, code),
              1)
        << c.words;
    EXPECT_EQ(code, 0) << c.words;
    EXPECT_EQ(FileLines("args.txt"), c.args) << c.words;
  }
}

TEST_F(ProcessLaunchTest, WaitGivesTheExitCodeAsWindowsReportsIt) {
  const struct {
    const char* options;
    int code;
  } cases[] = {{"", 42},
               {"--class C --no-window --life 0 --exit 7", 7},
               {"--class C --no-window --life 0 --exit 255", 255},
               {"--class C --no-window --abort", 3}};  // abort() ends a Windows program with 3
  for (const auto& c : cases) {
    int code = -1;
    EXPECT_EQ(LanzarProcesoEjecutable(HelperCommand(c.options).c_str(), 1, code), 1) << c.options;
    EXPECT_EQ(code, c.code) << c.options;
  }
}

TEST_F(ProcessLaunchTest, WholeLineIsTriedAsTheProgramName) {
  // Unquoted, the name stops at its blank; the second try takes it whole.
  const std::string helper = korvalen::testing::HelperPath();
  const std::filesystem::path copy =
      dir() / (std::string("my helper") + std::filesystem::path(helper).extension().string());
  std::filesystem::copy_file(helper, copy);
  const std::filesystem::path library =
      std::filesystem::path(helper).parent_path() / "KORVALEN.DLL";
  if (std::filesystem::exists(library)) std::filesystem::copy_file(library, dir() / "KORVALEN.DLL");
  const std::string line = copy.string();
  int code = -1;
  EXPECT_EQ(LanzarProcesoEjecutable(std::wstring(line.begin(), line.end()).c_str(), 1, code), 1);
  EXPECT_EQ(code, 42);

  code = -1;
  EXPECT_EQ(LanzarProcesoEjecutable(L"no-such-program-here --x", 1, code), 0);
  EXPECT_EQ(LanzarProcesoEjecutable(L"", 1, code), 0);
}

TEST_F(ProcessLaunchTest, WaitLooksEveryHundredMilliseconds) {
  // A program that ends at once is still seen only at the first look after it.
  int code = -1;
  const auto start = Clock::now();
  ASSERT_EQ(LanzarProcesoEjecutable(HelperCommand("").c_str(), 1, code), 1);
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(100));
  EXPECT_EQ(code, 42);
}

TEST_F(ProcessLaunchTest, NumberFilesAreOneLine) {
  EscribirModoLanza(7);
  PonerHandleAyudaVortanPr(reinterpret_cast<HWND>(static_cast<std::intptr_t>(-2)));
  PonerHandleAyudaDrawNest(reinterpret_cast<HWND>(static_cast<std::intptr_t>(0x10054)));
  PonerHandleAyudaProcesos(nullptr);
  EXPECT_EQ(korvalen::testing::ReadBytes("MODOEXE.SYS"), "7\r\n");
  EXPECT_EQ(korvalen::testing::ReadBytes("VORTHELP.SYS"), "-2\r\n");
  EXPECT_EQ(korvalen::testing::ReadBytes("DRAWHELP.SYS"), "65620\r\n");
  EXPECT_EQ(korvalen::testing::ReadBytes("PROCHELP.SYS"), "0\r\n");
  EscribirModoLanza(-1);
  EXPECT_EQ(korvalen::testing::ReadBytes("MODOEXE.SYS"), "-1\r\n");
}

}  // namespace
