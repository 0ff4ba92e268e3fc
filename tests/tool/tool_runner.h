// Shared by the tool's tests: running the built tool on a copy of the sample
// installation ("installation") and on an empty directory ("empty"), both in
// the test's own temporary directory.
//
//   class ToolMachine : public korvalen::testing::ToolTest {};
//   TEST_F(ToolMachine, Sample) {
//     const auto [status, output] = RunTool("machine -C installation");
//   }
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include "temp_dir_test.h"

namespace korvalen::testing {

// The tool beside the test programs' folder; none where the test program
// cannot tell where it is (Windows builds, which leave the tool out).
inline std::filesystem::path ToolPath() {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return {};
  return self.parent_path().parent_path() / "tools" / "korvalen" / "korvalen";
}

// The tool's exit status (0 on success) and everything it printed.
inline std::pair<int, std::string> RunTool(const std::string& arguments) {
  const int status =
      std::system(("'" + ToolPath().string() + "' " + arguments + " > out.txt 2>&1").c_str());
  return {status, ReadBytes("out.txt")};
}

// Every file of a directory tree with its bytes.
inline std::map<std::string, std::string> Snapshot(const std::filesystem::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
    const std::string name = entry.path().string();
    files[name] = entry.is_regular_file() ? ReadBytes(name) : "(directory)";
  }
  return files;
}

class ToolTest : public TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    if (ToolPath().empty() || !std::filesystem::exists(ToolPath())) {
      GTEST_SKIP() << "the tool is not built";
    }
    std::filesystem::copy(
        std::filesystem::path(__FILE__).parent_path() / ".." / ".." / "samples" / "installation",
        "installation", std::filesystem::copy_options::recursive);
    std::filesystem::create_directory("empty");
  }
};

}  // namespace korvalen::testing
