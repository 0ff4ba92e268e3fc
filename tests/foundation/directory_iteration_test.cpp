// Walking a folder's files or subfolders with a TDtsFile: what is found, what
// is skipped, and the handle once a search has run out.
#include "korvalen/foundation/directory_iteration.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::WriteBytes;

class DirectoryIteration : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    WriteBytes("a.txt", "1");
    WriteBytes("B.TXT", "22");
    WriteBytes("c.dat", std::string(1234, 'c'));
    std::filesystem::create_directory("folder.txt");
    std::filesystem::create_directory("sub");
    WriteBytes("sub/inner.txt", "333");
    std::filesystem::create_directories("only-folders/x");
    std::filesystem::create_directory("only-folders/y.txt");
  }
};

// Everything one search gives, checking the handle on the way and once the
// search has ended (also when nothing matched at all).
std::set<std::wstring> Walk(bool files, const wchar_t* pattern) {
  std::set<std::wstring> found;
  TDtsFile search;
  search.handle = 12345;  // whatever the record held before
  int more = files ? DamePrimerFichero(pattern, search) : DamePrimerSubdirectorio(pattern, search);
  for (; more != 0;
       more = files ? DameSiguienteFichero(search) : DameSiguienteSubdirectorio(search)) {
    EXPECT_NE(search.handle, -1);
    EXPECT_EQ((search.data.attrib & _A_SUBDIR) != 0, !files) << search.data.name;
    found.insert(search.data.name);
  }
  EXPECT_EQ(search.handle, -1);
  // An ended search stays ended.
  EXPECT_EQ(files ? DameSiguienteFichero(search) : DameSiguienteSubdirectorio(search), 0);
  EXPECT_EQ(search.handle, -1);
  return found;
}

TEST_F(DirectoryIteration, FilesAndFoldersApart) {
  constexpr bool kFiles = true, kFolders = false;
  const struct {
    bool files;
    const wchar_t* pattern;
    std::set<std::wstring> found;
  } cases[] = {
      {kFiles, L"*.txt", {L"a.txt", L"B.TXT"}},
      {kFiles, L"*", {L"a.txt", L"B.TXT", L"c.dat"}},
      {kFiles, L"?.*", {L"a.txt", L"B.TXT", L"c.dat"}},
      {kFiles, L"c.dat", {L"c.dat"}},
      {kFiles, L"sub\\*.txt", {L"inner.txt"}},
      {kFiles, L"only-folders\\*", {}},
      {kFiles, L"*.none", {}},
      {kFiles, L"missing\\*", {}},
      {kFiles, nullptr, {}},
      {kFolders, L"*", {L"folder.txt", L"sub", L"only-folders"}},
      {kFolders, L"*.txt", {L"folder.txt"}},
      {kFolders, L"only-folders\\*", {L"x", L"y.txt"}},
      {kFolders, L"sub\\*", {}},
      {kFolders, L"a.txt", {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Walk(c.files, c.pattern), c.found) << (c.pattern != nullptr ? c.pattern : L"null");
  }
}

TEST_F(DirectoryIteration, SizeOfTheFirstMatchingFile) {
  const struct {
    const wchar_t* path;
    LONG size;
  } cases[] = {
      {L"c.dat", 1234}, {L"*.dat", 1234}, {L"B.txt", 2},           {L"sub\\inner.txt", 3},
      {L"*.none", 0},   {L"sub", 0},      {L"only-folders\\*", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(DameTallaDeFich(c.path), c.size) << c.path;
}

}  // namespace
