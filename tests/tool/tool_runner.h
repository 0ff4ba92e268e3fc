// Running the built korvalen tool from the tool tests: each test works on its
// own copy of the sample installation ("installation") beside an empty
// directory ("empty"), and is skipped where the tool is not built.
//
//   TEST_F(ToolTest, Something) {
//     const auto [status, output] = RunTool("params -C installation");
//   }
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include "temp_dir_test.h"

namespace korvalen::testing {

// The tool's exit status (0 done, 1 failed, 2 wrong command line) and
// everything it printed.
std::pair<int, std::string> RunTool(const std::string& arguments);

// Every entry of a directory tree with its bytes ("(directory)" for folders).
std::map<std::string, std::string> Snapshot(const std::filesystem::path& dir);

// The sample installation of the repository.
std::filesystem::path SampleInstallation();

class ToolTest : public TempDirTest {
 protected:
  void SetUp() override;
};

}  // namespace korvalen::testing
