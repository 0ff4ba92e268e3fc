// Walking a folder's files or subfolders with a TDtsFile: what is found, what
// is skipped, and the handle once a search has run out.
#include "korvalen/diagnostics/directory_iteration.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "report_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Narrow;
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
    std::filesystem::create_directory("only-folders");
    std::filesystem::create_directory("only-folders/x");
    std::filesystem::create_directory("only-folders/y.txt");
  }
};

enum class Kind { kFiles, kFolders };

// Everything one search gives, checking the handle when it ends.
std::set<std::string> Walk(Kind kind, const wchar_t* pattern) {
  std::set<std::string> found;
  TDtsFile search;
  search.handle = 12345;  // whatever the record held before
  const bool files = kind == Kind::kFiles;
  int more = files ? DamePrimerFichero(pattern, search) : DamePrimerSubdirectorio(pattern, search);
  while (more != 0) {
    EXPECT_NE(search.handle, -1);
    EXPECT_EQ((search.data.attrib & _A_SUBDIR) != 0, !files) << Narrow(search.data.name);
    found.insert(Narrow(search.data.name));
    more = files ? DameSiguienteFichero(search) : DameSiguienteSubdirectorio(search);
  }
  EXPECT_EQ(search.handle, -1);
  // An ended search stays ended.
  EXPECT_EQ(files ? DameSiguienteFichero(search) : DameSiguienteSubdirectorio(search), 0);
  EXPECT_EQ(search.handle, -1);
  return found;
}

struct WalkCase {
  Kind kind;
  const wchar_t* pattern;
  std::set<std::string> found;
};

TEST_F(DirectoryIteration, FilesAndFoldersApart) {
  const WalkCase cases[] = {
      {Kind::kFiles, L"*.txt", {"a.txt", "B.TXT"}},
      {Kind::kFiles, L"*", {"a.txt", "B.TXT", "c.dat"}},
      {Kind::kFiles, L"?.*", {"a.txt", "B.TXT", "c.dat"}},
      {Kind::kFiles, L"c.dat", {"c.dat"}},
      {Kind::kFiles, L"sub\\*.txt", {"inner.txt"}},
      {Kind::kFiles, L"only-folders\\*", {}},
      {Kind::kFiles, L"*.none", {}},
      {Kind::kFiles, L"missing\\*", {}},
      {Kind::kFolders, L"*", {"folder.txt", "sub", "only-folders"}},
      {Kind::kFolders, L"*.txt", {"folder.txt"}},
      {Kind::kFolders, L"only-folders\\*", {"x", "y.txt"}},
      {Kind::kFolders, L"sub\\*", {}},
      {Kind::kFolders, L"*.none", {}},
  };
  for (const WalkCase& c : cases) {
    EXPECT_EQ(Walk(c.kind, c.pattern), c.found) << Narrow(c.pattern);
  }
}

TEST_F(DirectoryIteration, NoMatchGivesNoSearch) {
  TDtsFile search;
  search.handle = 7;
  EXPECT_EQ(DamePrimerFichero(L"*.none", search), 0);
  EXPECT_EQ(search.handle, -1);
  search.handle = 7;
  EXPECT_EQ(DamePrimerSubdirectorio(L"a.txt", search), 0);
  EXPECT_EQ(search.handle, -1);
  search.handle = 7;
  EXPECT_EQ(DamePrimerFichero(nullptr, search), 0);
  EXPECT_EQ(search.handle, -1);
}

TEST_F(DirectoryIteration, SizeOfTheFirstMatchingFile) {
  const struct {
    const wchar_t* path;
    LONG size;
  } cases[] = {
      {L"c.dat", 1234}, {L"*.dat", 1234}, {L"B.txt", 2},           {L"sub\\inner.txt", 3},
      {L"*.none", 0},   {L"sub", 0},      {L"only-folders\\*", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(DameTallaDeFich(c.path), c.size) << Narrow(c.path);
}

}  // namespace
