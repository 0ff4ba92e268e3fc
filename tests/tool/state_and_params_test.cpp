// `korvalen state` and `korvalen params` on a copy of the sample installation:
// what they print, and that they change nothing (the marker and the queue are
// not consumed, no missing file is created).
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "temp_dir_test.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#endif

namespace {

namespace fs = std::filesystem;
using korvalen::testing::ReadBytes;

const fs::path kSample =
    fs::path(__FILE__).parent_path() / ".." / ".." / "samples" / "installation";

struct ToolRun {
  int status = -1;
  std::string output;
};

#if !defined(_WIN32)
fs::path ToolPath() {
  char self[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
  if (n <= 0) return {};
  self[n] = 0;
  return fs::path(self).parent_path().parent_path() / "tools" / "korvalen" / "korvalen";
}

ToolRun RunTool(const std::string& arguments) {
  ToolRun run;
  const std::string command = "'" + ToolPath().string() + "' " + arguments + " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[4096];
  std::size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) run.output.append(buffer, n);
  const int status = pclose(pipe);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}
#else
fs::path ToolPath() { return {}; }
ToolRun RunTool(const std::string&) { return {}; }
#endif

// Every file of a directory tree with its bytes.
std::map<std::string, std::string> Snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(dir)) {
    const std::string name = entry.path().string();
    files[name] = entry.is_regular_file() ? ReadBytes(name) : "(directory)";
  }
  return files;
}

class ToolStateAndParams : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    if (ToolPath().empty() || !fs::exists(ToolPath())) GTEST_SKIP() << "the tool is not built";
    fs::copy(kSample, "installation", fs::copy_options::recursive);
  }
};

TEST_F(ToolStateAndParams, StateOfTheSample) {
  const auto before = Snapshot("installation");
  const ToolRun run = RunTool("state -C installation");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
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
            "  OF-2024-0109             CH-3000x1500-E5-020\n");
  EXPECT_EQ(Snapshot("installation"), before);
  // Twice the same: nothing was consumed.
  EXPECT_EQ(RunTool("state -C installation").output, run.output);
}

TEST_F(ToolStateAndParams, StateOfAnEmptyDirectoryCreatesNothing) {
  fs::create_directory("empty");
  const ToolRun run = RunTool("state -C empty");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("Last work orders            (none: no LISTOFS.SYS)"),
            std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("Parts changed               no"), std::string::npos);
  EXPECT_TRUE(fs::is_empty("empty"));
}

TEST_F(ToolStateAndParams, ParamsOfTheSample) {
  const auto before = Snapshot("installation");
  const ToolRun run = RunTool("params -C installation");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
            "param.sys\n"
            "  Language                    3\n"
            "  Company                     Talleres Ebro Metal S.L.\n"
            "  Project title               Corte y punzonado\n"
            "  WOS title                   on\n"
            "  Server name                 SRVTALLER\\SQLEXPRESS\n"
            "  Database files directory    D:\\Korvalen\\Bases\n"
            "  Shared server directory     \\\\SRVTALLER\\Korvalen\n"
            "  International units         on\n"
            "  Database file backup        D:\\Korvalen\\Copias\\Planta2.bak\n"
            "  Style                       Classic\n"
            "  Double-byte code page       no\n"
            "PEQUENO.SYS\n"
            "  A000                        0\n"
            "  Box file (A001)             CAJPEQU.CAJ\n"
            "  A002                        1\n"
            "SERVPACK.DTS\n"
            "  Version                     3.1\n"
            "  Service pack                4\n"
            "  Further values              0 0 0 0\n");
  EXPECT_EQ(Snapshot("installation"), before);
}

TEST_F(ToolStateAndParams, ParamsWithoutFilesShowTheDefaults) {
  fs::create_directory("empty");
  const ToolRun run = RunTool("params -C empty");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("param.sys (not found: defaults)\n  Language                    3\n"),
            std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("  Server name                 (local)\n"), std::string::npos);
  EXPECT_NE(run.output.find("SERVPACK.DTS (not found)\n"), std::string::npos);
  EXPECT_TRUE(fs::is_empty("empty"));
}

TEST_F(ToolStateAndParams, MissingDirectoryFails) {
  EXPECT_NE(RunTool("state -C no-such-directory").status, 0);
  EXPECT_NE(RunTool("params -C no-such-directory").status, 0);
}

}  // namespace
