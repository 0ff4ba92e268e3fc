#include "tool_runner.h"

#include <cstdlib>
#include <system_error>

namespace korvalen::testing {
namespace {

namespace fs = std::filesystem;

// The tool beside the test programs' folder; none where the test program
// cannot tell where it is (Windows builds, which leave the tool out).
fs::path ToolPath() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  if (error) return {};
  return self.parent_path().parent_path() / "tools" / "korvalen" / "korvalen";
}

}  // namespace

std::pair<int, std::string> RunTool(const std::string& arguments) {
  const int status =
      std::system(("'" + ToolPath().string() + "' " + arguments + " > out.txt 2>&1").c_str());
  // POSIX gives the wait status; the exit status is what callers compare.
#ifdef WEXITSTATUS
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadBytes("out.txt")};
#else
  return {status, ReadBytes("out.txt")};
#endif
}

std::map<std::string, std::string> Snapshot(const fs::path& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(dir)) {
    const std::string name = entry.path().string();
    files[name] = entry.is_regular_file() ? ReadBytes(name) : "(directory)";
  }
  return files;
}

fs::path SampleInstallation() {
  return fs::path(__FILE__).parent_path() / ".." / ".." / "samples" / "installation";
}

void ToolTest::SetUp() {
  TempDirTest::SetUp();
  if (ToolPath().empty() || !fs::exists(ToolPath())) GTEST_SKIP() << "the tool is not built";
  fs::copy(SampleInstallation(), "installation", fs::copy_options::recursive);
  fs::create_directory("empty");
}

}  // namespace korvalen::testing
