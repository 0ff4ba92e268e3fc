// Test fixture: every test runs in its own fresh temporary working directory,
// because the library works on bare file names in the current directory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace korvalen::testing {

class TempDirTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  const std::filesystem::path& dir() const { return dir_; }

 private:
  std::filesystem::path previous_;
  std::filesystem::path dir_;
};

// Exact bytes of a file in the current directory ("" when it is missing).
std::string ReadBytes(const std::string& name);
void WriteBytes(const std::string& name, const std::string& bytes);
bool Exists(const std::string& name);
// The bytes of CR LF lines as the text-mode writers leave them.
std::string Lines(const std::vector<std::string>& lines);

// The text as UTF-16LE with a byte-order mark: the settings documents' bytes.
std::string Utf16Le(const std::wstring& text);

// True when the tests run as Windows programs under Wine.
bool RunningUnderWine();

}  // namespace korvalen::testing
