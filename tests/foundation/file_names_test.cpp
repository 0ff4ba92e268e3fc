// File names, name lists, current and application directories, file copies,
// and the guarded deletion of database directory trees built on disk.
#include "korvalen/foundation/file_names.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "guarded_text.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/string_functions.h"
#include "temp_dir_test.h"

namespace {

namespace fs = std::filesystem;
using korvalen::kDirectoryChars;
using korvalen::kFullNameChars;
using korvalen::testing::Exists;
using korvalen::testing::GuardedText;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

using FileNames = korvalen::testing::TempDirTest;

// Drive-letter names tell the Windows conventions apart at run time.
bool DriveLetters() {
  wchar_t cwd[512] = {};
  GetCwd(cwd, 512);
  return cwd[0] != 0 && cwd[1] == L':';
}

std::wstring CurrentDirectory() {
  wchar_t cwd[kDirectoryChars];
  DameDirectorioActual(cwd);
  return cwd;
}

// --- names ------------------------------------------------------------------

TEST(FullNames, JoinWithOneBackslashCutToTheCapacity) {
  const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
      // clang-format off
      {L"C:\\data\\", L"part", L".cfg", L"C:\\data\\part.cfg"},
      {L"C:\\data", L"part", L".cfg", L"C:\\data\\part.cfg"},
      {L"", L"part", L".cfg", L"part.cfg"},       {nullptr, L"part", L".cfg", L"part.cfg"},
      {L"dir", L"part", L"", L"dir\\part"},      {L"dir", L"", L".cfg", L"dir\\.cfg"},
      {L"dir", L"part", L"cfg", L"dir\\partcfg"},
      {L"data/", L"part", L".cfg", L"data/\\part.cfg"},  // only a backslash counts
      // clang-format on
  };
  for (const auto& [directory, name, extension, expected] : cases) {
    wchar_t full[300];
    DameNombreCompleto(directory, name, extension, full);
    EXPECT_STREQ(full, expected);
  }
  const std::wstring long_directory(300, L'd');
  GuardedText<400> cut;
  DameNombreCompleto(long_directory.c_str(), L"part", L".cfg", cut.data());
  EXPECT_EQ(cut.str(), long_directory.substr(0, kFullNameChars - 1));
  EXPECT_TRUE(cut.IntactFrom(kFullNameChars));
  wchar_t same[kFullNameChars] = L"base";
  DameNombreCompleto(same, L"part", L".cfg", same);
  EXPECT_STREQ(same, L"base\\part.cfg");
}

TEST(ForbiddenCharacters, TheNineAreFoundAndReplaced) {
  for (const wchar_t c : std::wstring(L"*?\\/:\"><|")) {
    const wchar_t name[] = {L'a', c, L'b', 0};
    EXPECT_EQ(NomFicheroTieneCaracterNoPermitido(name), 1) << name;
  }
  for (const wchar_t* name : {L"PLATE 01.cfg", L"a-b_c(1);%,.+=[]{}'~", L"\u00D1and\u00FA", L"",
                              static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(NomFicheroTieneCaracterNoPermitido(name), 0);
  }
  wchar_t name[] = L"a*b?c\\d/e:f\"g>h<i|j.k";
  SustituirCaracteresNoPermitidoPor(name, L'_');
  EXPECT_EQ(std::wstring(name), L"a_b_c_d_e_f_g_h_i_j.k");
}

TEST(NameLists, NamesWithoutRegardToCaseAndPairsExactly) {
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  for (const wchar_t* name : {L"Laser", L"Punch", L"Plate 01"}) {
    TRegListaNombre node{};
    StrCpy(node.name, name);
    ASSERT_EQ(korvalen::detail::append(first, last, node), 1);
  }
  EXPECT_EQ(EstaEnListaNombre(first, L"LASER"), 1);
  EXPECT_EQ(EstaEnListaNombre(first, L"plate 01"), 1);
  EXPECT_EQ(EstaEnListaNombre(first, L"Punc"), 0);
  EXPECT_EQ(EstaEnListaNombre(first, L""), 0);
  EXPECT_EQ(EstaEnListaNombre(nullptr, L"Laser"), 0);
  korvalen::detail::free_list(first, last);

  TRegListaParNombre* pairs = nullptr;
  TRegListaParNombre* pairs_last = nullptr;
  const std::pair<const wchar_t*, const wchar_t*> kPairs[] = {
      {L"A", L"X"}, {L"A", L"Y"}, {L"B", L"Z"}, {L"b", L"W"}};
  for (const auto& [one, two] : kPairs) {
    TRegListaParNombre pair{};
    StrCpy(pair.first, one);
    StrCpy(pair.second, two);
    ASSERT_EQ(korvalen::detail::append(pairs, pairs_last, pair), 1);
  }
  const std::wstring long_name(400, L'n');
  const struct {
    const wchar_t* name;
    int direction;
    int keep;
    std::wstring other;
  } cases[] = {
      // clang-format off
      {L"A", 1, 0, L"X"},  // the earlier of two pairs
      {L"B", 1, 0, L"Z"}, {L"b", 1, 0, L"W"}, {L"A", 7, 0, L"X"}, {L"Z", 0, 0, L"B"},
      {L"Y", 0, 0, L"A"}, {L"W", 0, 1, L"b"},
      {L"A", 0, 0, L""},   // first names are not looked for in this direction
      {L"A", 0, 1, L"A"}, {L"Q", 1, 1, L"Q"}, {L"Q", 1, 0, L""}, {L"x", 0, 0, L""},
      {long_name.c_str(), 1, 1, std::wstring(kNameListChars - 1, L'n')},
      // clang-format on
  };
  for (const auto& c : cases) {
    GuardedText<kFullNameChars> result;
    DameOtroNombre(pairs, c.name, result.data(), c.direction, c.keep);
    EXPECT_EQ(result.str(), c.other) << c.name << " " << c.direction << " " << c.keep;
    EXPECT_TRUE(result.IntactFrom(kNameListChars));
  }
  wchar_t name[kNameListChars] = L"B";
  DameOtroNombre(pairs, name, name, 1, 0);  // the result may be the name itself
  EXPECT_EQ(std::wstring(name), L"Z");
  DameOtroNombre(nullptr, name, name, 1, 1);
  EXPECT_EQ(std::wstring(name), L"Z");
  korvalen::detail::free_list(pairs, pairs_last);
}

TEST_F(FileNames, ModifNomDatosBucketsByNameWithoutItsLastTwoCharacters) {
  const std::tuple<const wchar_t*, const wchar_t*, const char*> cases[] = {
      {L"AB", L"A\\AB", "A"},
      {L"X", L"0\\X", "0"},
      {L"PLATE01", L"PLATE\\PLATE01", "PLATE"},
      {L"ABC", L"A\\ABC", "A"}};
  fs::create_directories("base/PLATE");
  WriteBytes("base/PLATE/KEEP.DAT", "kept");
  for (const auto& [name, expected, bucket] : cases) {
    wchar_t result[kFullNameChars];
    ModifNomDatos(name, result, L"");
    EXPECT_STREQ(result, expected);
    EXPECT_FALSE(Exists(bucket)) << "created without a base directory";
    ModifNomDatos(name, result, L"base");
    EXPECT_STREQ(result, expected);
    EXPECT_TRUE(fs::is_directory(fs::path("base") / bucket)) << bucket;
  }
  EXPECT_EQ(ReadBytes("base/PLATE/KEEP.DAT"), "kept");  // an existing bucket stays as it is

  wchar_t result[kFullNameChars] = L"stale";
  ModifNomDatos(L"", result, L"base");
  EXPECT_EQ(std::wstring(result), L"");
  EXPECT_EQ(std::distance(fs::directory_iterator("base"), fs::directory_iterator()), 3);

  const std::wstring long_name(200, L'L');
  GuardedText<400> cut;
  ModifNomDatos(long_name.c_str(), cut.data(), L"");
  EXPECT_EQ(cut.str(), std::wstring(198, L'L') + L"\\" + std::wstring(60, L'L'));
  EXPECT_TRUE(cut.IntactFrom(kFullNameChars));
}

// --- directories --------------------------------------------------------------

TEST_F(FileNames, CurrentDirectoryWithoutTrailingSeparator) {
  const std::wstring start = CurrentDirectory();
  EXPECT_EQ(fs::path(start), fs::current_path());
  fs::create_directories("ab/deeper");
  CambiarDirectorio(L"ab");  // two characters: "ab\", the same directory
  CambiarDirectorio(L"deeper");
  EXPECT_EQ(fs::current_path(), fs::path(start) / "ab" / "deeper");

  // "C:" alone would stay in the drive's current directory; the root is meant.
  const bool drives = DriveLetters();
  const wchar_t drive[] = {start[0], start[1], 0};
  CambiarDirectorio(drives ? drive : L"/");
  EXPECT_EQ(CurrentDirectory(), drives ? std::wstring(drive) : L"");
  CambiarDirectorio(start.c_str());
  EXPECT_EQ(fs::current_path(), fs::path(start));
}

TEST_F(FileNames, CurrentDirectoryTooLongForItsBufferIsEmpty) {
  const std::wstring here = fs::current_path().wstring();
  std::error_code error;
  for (const int length : {kDirectoryChars - 1, kDirectoryChars}) {
    const int component = length - static_cast<int>(here.size()) - 1;
    ASSERT_GT(component, 0);
    const fs::path dir = fs::path(here) / std::wstring(static_cast<std::size_t>(component), L'x');
    fs::create_directory(dir, error);
    fs::current_path(dir, error);
    if (error) GTEST_SKIP() << "the system refuses a directory of " << length << " characters";
    GuardedText<kDirectoryChars + 8> cwd;
    DameDirectorioActual(cwd.data());
    EXPECT_EQ(cwd.str(), length < kDirectoryChars ? dir.wstring() : L"");
    EXPECT_TRUE(cwd.IntactFrom(kDirectoryChars));
    fs::current_path(here);
  }
}

TEST_F(FileNames, ApplicationDirectoryHoldsTheRunningProgram) {
  wchar_t app[kDirectoryChars];
  DameDirectorioDeApp(app);
  const std::wstring dir = app;
  ASSERT_FALSE(dir.empty());
  EXPECT_EQ(dir.back(), L'\\');
  // The test program itself, not the library (which sits elsewhere on POSIX).
  const fs::path program = fs::path(dir.substr(0, dir.size() - 1)) / L"korvalen_tests_foundation";
  EXPECT_TRUE(fs::exists(program) || fs::exists(fs::path(program).concat(".exe")));
  CambiarDirectorioDeApp();
  EXPECT_EQ(fs::path(CurrentDirectory()), fs::path(dir.substr(0, dir.size() - 1)));
}

TEST_F(FileNames, CopyIsByteForByteAndNeverOntoItself) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes += static_cast<char>(i * 7 % 256);
  bytes += "\r\n\x1A\r\n";
  for (const std::size_t size :
       {bytes.size(), std::size_t{4096}, std::size_t{2048}, std::size_t{1}, std::size_t{0}}) {
    WriteBytes("SOURCE.BIN", bytes.substr(0, size));
    WriteBytes("TARGET.BIN", std::string(9000, 'x'));  // truncated by the copy
    CopiarFichero(L"SOURCE.BIN", L"TARGET.BIN");
    EXPECT_EQ(ReadBytes("TARGET.BIN"), bytes.substr(0, size)) << size;
  }
  CopiarFichero(L"SOURCE.BIN", L"NEW.BIN");
  EXPECT_TRUE(Exists("NEW.BIN"));

  WriteBytes("DATA.BIN", "data");
  CopiarFichero(L"DATA.BIN", L"data.bin");  // the same file: never truncated
  EXPECT_EQ(ReadBytes("DATA.BIN"), "data");
  CopiarFichero(L"", L"DATA.BIN");
  CopiarFichero(L"SOURCE.BIN", L"");
  CopiarFichero(nullptr, L"DATA.BIN");
  CopiarFichero(L"MISSING.BIN", L"DATA.BIN");
  EXPECT_EQ(ReadBytes("DATA.BIN"), "data");
  CopiarFichero(L"MISSING.BIN", L"OTHER.BIN");
  EXPECT_FALSE(Exists("OTHER.BIN"));
}

// --- database directories -----------------------------------------------------

// Entries under the current directory: a name ending in '/' is a directory,
// anything else a file holding its own name.
void Build(const std::vector<std::string>& entries) {
  for (const std::string& entry : entries) {
    if (entry.back() == '/') {
      fs::create_directories(entry);
    } else {
      fs::create_directories(fs::path(entry).parent_path());
      WriteBytes(entry, entry);
    }
  }
}

void BuildDatabase(const std::string& root) {
  for (const char* entry : {"General/a.txt", "General/sub/b.txt", "General/empty/", "Nestings/",
                            "Products/p.dat", "Products/q/r.dat", "top.txt"}) {
    Build({root + "/" + entry});
  }
}

// What is under root, in the notation of Build.
std::set<std::string> Tree(const std::string& root) {
  std::set<std::string> entries;
  for (const auto& e : fs::recursive_directory_iterator(root)) {
    entries.insert(fs::relative(e.path(), root).generic_string() + (e.is_directory() ? "/" : ""));
  }
  return entries;
}

TEST_F(FileNames, DatabaseDirectoriesOfAnotherShapeAreOnlyEmptiedWhereTheyFit) {
  const struct {
    const char* what;
    std::vector<std::string> added;  // after `removed` is taken away
    const char* removed;
    std::set<std::string> left;  // by emptying
  } cases[] = {
      // clang-format off
      {"the database shape", {}, nullptr, {}},
      {"a foreign subdirectory", {"dbase/Other/keep.txt"}, nullptr, {"Other/", "Other/keep.txt"}},
      {"an empty foreign subdirectory", {"dbase/Other/"}, nullptr, {"Other/"}},
      {"nesting too deep", {"dbase/General/sub/deeper/keep.txt"}, nullptr,
       {"General/", "General/sub/", "General/sub/deeper/", "General/sub/deeper/keep.txt"}},
      {"an empty directory too deep", {"dbase/Products/q/deeper/"}, nullptr,
       {"Products/", "Products/q/", "Products/q/deeper/"}},
      {"a part missing", {}, "dbase/Nestings", {}},
      {"a part that is a file", {"dbase/Products"}, "dbase/Products", {}},
      // clang-format on
  };
  for (const auto& c : cases) {
    for (const bool deleting : {true, false}) {
      fs::remove_all("dbase");
      BuildDatabase("dbase");
      if (c.removed != nullptr) fs::remove_all(c.removed);
      Build(c.added);
      const std::set<std::string> before = Tree("dbase");
      if (deleting) {
        BorrarDirectorio(L"dbase");
        if (c.added.empty() && c.removed == nullptr) {
          EXPECT_FALSE(Exists("dbase"));
        } else {
          EXPECT_EQ(Tree("dbase"), before) << c.what << ": touched";
        }
      } else {
        EXPECT_EQ(VaciarDirectorio(L"dbase"), c.left.empty() && c.removed == nullptr ? 1 : 0)
            << c.what;
        ASSERT_TRUE(fs::is_directory("dbase")) << c.what;
        EXPECT_EQ(Tree("dbase"), c.left) << c.what;
      }
    }
  }
}

TEST_F(FileNames, DatabaseDirectoryNamesShortRootOrMissingAreRefused) {
  BuildDatabase("abc");
  BuildDatabase("abcd");
  Build({"dbase2/general/x.txt", "dbase2/NESTINGS/", "dbase2/products/"});
  BuildDatabase("other db");
  const std::set<std::string> before = Tree("abc");
  BorrarDirectorio(L"abc");
  EXPECT_EQ(Tree("abc"), before);
  BorrarDirectorio(L"abcd");  // the same tree under a longer name goes
  EXPECT_FALSE(Exists("abcd"));
  BorrarDirectorio(L"dbase2");  // the parts' names without regard to case
  EXPECT_FALSE(Exists("dbase2"));
  wchar_t full[kFullNameChars];
  DameNombreCompleto(CurrentDirectory().c_str(), L"other db", L"", full);
  BorrarDirectorio(full);
  EXPECT_FALSE(Exists("other db"));

  if (!DriveLetters()) {
    // Here "C:\" is a directory named "C:" in the current one.
    BuildDatabase("C:");
    BorrarDirectorio(L"C:\\");
    EXPECT_EQ(Tree("C:"), before);
  }
  const wchar_t* const kNone = nullptr;
  for (const wchar_t* name : {L"C:\\", L"\\", L"", L"gone", kNone}) BorrarDirectorio(name);
  // Never emptied on a real drive root: that would delete the files in it.
  for (const wchar_t* name : {L"", L"gone", kNone}) EXPECT_EQ(VaciarDirectorio(name), 0);
  EXPECT_EQ(Tree("abc"), before);
}

TEST_F(FileNames, LinksAreRemovedAsLinksAndNeverEntered) {
  // Symbolic links need rights that Windows programs usually lack.
  if (DriveLetters()) GTEST_SKIP() << "symbolic links are tested on POSIX";
  Build({"outside/keep.txt", "outside/inner/keep2.txt"});
  const std::set<std::string> outside = Tree("outside");
  BuildDatabase("dbase");
  const fs::path target = fs::absolute("outside");
  fs::create_symlink(target, "dbase/General/to_outside");
  fs::create_symlink(target / "keep.txt", "dbase/General/sub/to_file");
  fs::create_symlink(target / "inner", "dbase/Products/to_inner");
  fs::create_symlink(target, "dbase/to_outside");
  fs::create_symlink("nowhere", "dbase/Nestings/dangling");
  BorrarDirectorio(L"dbase");
  EXPECT_FALSE(Exists("dbase"));
  EXPECT_EQ(Tree("outside"), outside);
  EXPECT_EQ(ReadBytes("outside/inner/keep2.txt"), "outside/inner/keep2.txt");

  // A part that is itself a link is not a part.
  BuildDatabase("dbase");
  fs::remove_all("dbase/General");
  fs::create_symlink(target, "dbase/General");
  BorrarDirectorio(L"dbase");
  EXPECT_TRUE(fs::is_symlink("dbase/General"));
  EXPECT_EQ(VaciarDirectorio(L"dbase"), 0);
  EXPECT_FALSE(fs::is_symlink("dbase/General"));
  EXPECT_EQ(Tree("outside"), outside);
}

}  // namespace
