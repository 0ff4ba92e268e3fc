// File names, name lists, current and application directories, file copies,
// and the guarded deletion of database directory trees built on disk.
#include "korvalen/foundation/file_names.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "korvalen/foundation/primitives.h"
#include "korvalen/foundation/typed_list.h"
#include "temp_dir_test.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class FileNames : public korvalen::testing::TempDirTest {};

// Drive-letter names tell the Windows conventions apart at run time.
bool DriveLetters() {
  wchar_t cwd[512] = {};
  GetCwd(cwd, 512);
  return cwd[0] != 0 && cwd[1] == L':';
}

std::string Narrow(const std::wstring& text) { return fs::path(text).string(); }

// --- names ------------------------------------------------------------------

TEST(DameNombreCompleto, JoinsWithOneBackslash) {
  const struct {
    const wchar_t* directory;
    const wchar_t* name;
    const wchar_t* extension;
    const wchar_t* full;
  } cases[] = {
      {L"C:\\data\\", L"part", L".cfg", L"C:\\data\\part.cfg"},
      {L"C:\\data", L"part", L".cfg", L"C:\\data\\part.cfg"},
      {L"", L"part", L".cfg", L"part.cfg"},
      {nullptr, L"part", L".cfg", L"part.cfg"},
      {L"dir", L"part", L"", L"dir\\part"},
      {L"dir", L"", L".cfg", L"dir\\.cfg"},
      {L"dir", L"part", L"cfg", L"dir\\partcfg"},
      {L"data/", L"part", L".cfg", L"data/\\part.cfg"},  // only a backslash counts
  };
  for (const auto& c : cases) {
    wchar_t full[300];
    DameNombreCompleto(c.directory, c.name, c.extension, full);
    EXPECT_EQ(std::wstring(full), c.full);
  }
}

TEST(DameNombreCompleto, LongNamesAreCutAndTheResultMayBeTheDirectory) {
  const std::wstring directory(300, L'd');
  wchar_t full[400];
  std::wmemset(full, L'#', 400);
  DameNombreCompleto(directory.c_str(), L"part", L".cfg", full);
  EXPECT_EQ(std::wcslen(full), static_cast<std::size_t>(korvalen::kFullNameChars - 1));
  for (int i = korvalen::kFullNameChars; i < 400; ++i) ASSERT_EQ(full[i], L'#');

  wchar_t same[korvalen::kFullNameChars] = L"base";
  DameNombreCompleto(same, L"part", L".cfg", same);
  EXPECT_EQ(std::wstring(same), L"base\\part.cfg");
}

TEST_F(FileNames, ComposedNamesOpenFilesInTheirDirectory) {
  fs::create_directory("sub");
  wchar_t cwd[korvalen::kDirectoryChars];
  DameDirectorioActual(cwd);
  wchar_t sub[korvalen::kFullNameChars];
  DameNombreCompleto(cwd, L"sub", L"", sub);
  wchar_t full[korvalen::kFullNameChars];
  DameNombreCompleto(sub, L"UNIDADES", L".CFG", full);
  FILE* f = fOpen(full, L"wt");
  ASSERT_NE(f, nullptr);
  fPuts(L"A000 1 ;\n", f);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("sub/UNIDADES.CFG"), "A000 1 ;\r\n");
}

TEST(NomFicheroTieneCaracterNoPermitido, TheNineCharacters) {
  for (const wchar_t c : std::wstring(L"*?\\/:\"><|")) {
    const wchar_t name[] = {L'a', c, L'b', 0};
    EXPECT_EQ(NomFicheroTieneCaracterNoPermitido(name), 1) << static_cast<char>(c);
  }
  for (const wchar_t* name : {L"PLATE 01.cfg", L"a-b_c(1);%,.+=[]{}'~", L"\u00D1and\u00FA", L""}) {
    EXPECT_EQ(NomFicheroTieneCaracterNoPermitido(name), 0);
  }
  EXPECT_EQ(NomFicheroTieneCaracterNoPermitido(nullptr), 0);

  wchar_t name[] = L"a*b?c\\d/e:f\"g>h<i|j.k";
  SustituirCaracteresNoPermitidoPor(name, L'_');
  EXPECT_EQ(std::wstring(name), L"a_b_c_d_e_f_g_h_i_j.k");
  EXPECT_EQ(NomFicheroTieneCaracterNoPermitido(name), 0);
}

TEST(EstaEnListaNombre, WithoutRegardToCase) {
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
}

class PairList : public ::testing::Test {
 protected:
  void SetUp() override {
    Add(L"A", L"X");
    Add(L"A", L"Y");
    Add(L"B", L"Z");
    Add(L"b", L"W");
  }
  void TearDown() override { korvalen::detail::free_list(first_, last_); }
  void Add(const wchar_t* one, const wchar_t* two) {
    TRegListaParNombre pair{};
    StrCpy(pair.first, one);
    StrCpy(pair.second, two);
    ASSERT_EQ(korvalen::detail::append(first_, last_, pair), 1);
  }
  std::wstring Other(const wchar_t* name, int direction, int keep) {
    wchar_t result[korvalen::kFullNameChars];
    std::wmemset(result, L'#', korvalen::kFullNameChars);
    DameOtroNombre(first_, name, result, direction, keep);
    for (int i = kNameListChars; i < korvalen::kFullNameChars; ++i) EXPECT_EQ(result[i], L'#');
    return result;
  }
  TRegListaParNombre* first_ = nullptr;
  TRegListaParNombre* last_ = nullptr;
};

TEST_F(PairList, FirstExactMatchInEitherDirection) {
  const struct {
    const wchar_t* name;
    int direction;
    int keep;
    const wchar_t* other;
  } cases[] = {
      // clang-format off
      {L"A", 1, 0, L"X"},  // the earlier of two pairs
      {L"B", 1, 0, L"Z"},
      {L"b", 1, 0, L"W"},  // case matters
      {L"A", 7, 0, L"X"},  // any non-zero direction
      {L"Z", 0, 0, L"B"},
      {L"Y", 0, 0, L"A"},
      {L"W", 0, 1, L"b"},
      {L"A", 0, 0, L""},   // first names are not looked for in this direction
      {L"A", 0, 1, L"A"},
      {L"Q", 1, 1, L"Q"},
      {L"Q", 1, 0, L""},
      {L"x", 0, 0, L""},
      // clang-format on
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Other(c.name, c.direction, c.keep), c.other)
        << Narrow(c.name) << " " << c.direction << " " << c.keep;
  }
}

TEST_F(PairList, KeptNamesAreCutAndTheResultMayBeTheName) {
  const std::wstring long_name(400, L'n');
  EXPECT_EQ(Other(long_name.c_str(), 1, 1), std::wstring(kNameListChars - 1, L'n'));
  wchar_t name[kNameListChars] = L"B";
  DameOtroNombre(first_, name, name, 1, 0);
  EXPECT_EQ(std::wstring(name), L"Z");
  DameOtroNombre(nullptr, name, name, 1, 1);
  EXPECT_EQ(std::wstring(name), L"Z");
}

TEST_F(FileNames, ModifNomDatosBucketsByNameWithoutItsLastTwoCharacters) {
  const struct {
    const wchar_t* name;
    const wchar_t* result;
    const char* bucket;
  } cases[] = {
      {L"AB", L"A\\AB", "A"},
      {L"X", L"0\\X", "0"},
      {L"PLATE01", L"PLATE\\PLATE01", "PLATE"},
      {L"ABC", L"A\\ABC", "A"},
  };
  fs::create_directory("base");
  for (const auto& c : cases) {
    wchar_t result[korvalen::kFullNameChars];
    ModifNomDatos(c.name, result, L"base");
    EXPECT_EQ(std::wstring(result), c.result);
    EXPECT_TRUE(fs::is_directory(fs::path("base") / c.bucket)) << c.bucket;
    ModifNomDatos(c.name, result, L"");
    EXPECT_EQ(std::wstring(result), c.result);
    EXPECT_FALSE(Exists(c.bucket)) << "created without a base directory";
  }
}

TEST_F(FileNames, ModifNomDatosKeepsAnExistingBucketAndCreatesNothingForEmptyNames) {
  fs::create_directories("base/PLATE");
  WriteBytes("base/PLATE/KEEP.DAT", "kept");
  wchar_t result[korvalen::kFullNameChars] = L"stale";
  ModifNomDatos(L"PLATE01", result, L"base");
  EXPECT_EQ(ReadBytes("base/PLATE/KEEP.DAT"), "kept");

  ModifNomDatos(L"", result, L"base");
  EXPECT_EQ(std::wstring(result), L"");
  int entries = 0;
  for (const auto& e : fs::directory_iterator("base")) entries += e.is_directory() ? 1 : 0;
  EXPECT_EQ(entries, 1);

  const std::wstring long_name(200, L'L');
  wchar_t cut[400];
  std::wmemset(cut, L'#', 400);
  ModifNomDatos(long_name.c_str(), cut, L"");
  EXPECT_EQ(std::wcslen(cut), static_cast<std::size_t>(korvalen::kFullNameChars - 1));
  EXPECT_EQ(std::wstring(cut, 199), std::wstring(198, L'L') + L"\\");
  for (int i = korvalen::kFullNameChars; i < 400; ++i) ASSERT_EQ(cut[i], L'#');
}

// --- directories --------------------------------------------------------------

TEST_F(FileNames, CurrentDirectoryWithoutTrailingSeparator) {
  wchar_t cwd[korvalen::kDirectoryChars];
  DameDirectorioActual(cwd);
  EXPECT_EQ(fs::path(cwd), fs::current_path());

  fs::create_directory("ab");
  CambiarDirectorio(L"ab");  // two characters: "ab\"
  EXPECT_EQ(fs::current_path().filename(), "ab");
  fs::create_directory("deeper");
  CambiarDirectorio(L"deeper");
  EXPECT_EQ(fs::current_path().filename(), "deeper");
  CambiarDirectorio(cwd);
  EXPECT_EQ(fs::current_path(), fs::path(cwd));
}

TEST_F(FileNames, RootOfTheDriveComesBackWithoutItsSeparator) {
  wchar_t cwd[korvalen::kDirectoryChars];
  DameDirectorioActual(cwd);
  const bool drives = DriveLetters();
  const wchar_t drive[] = {cwd[0], cwd[1], 0};
  // "C:" alone would stay in the drive's current directory; the root is meant.
  CambiarDirectorio(drives ? drive : L"/");
  wchar_t root[korvalen::kDirectoryChars] = L"stale";
  DameDirectorioActual(root);
  EXPECT_EQ(std::wstring(root), drives ? std::wstring(drive) : L"");
}

TEST_F(FileNames, CurrentDirectoryTooLongForItsBufferIsEmpty) {
  const std::wstring here = fs::current_path().wstring();
  std::error_code error;
  for (const int length : {korvalen::kDirectoryChars - 1, korvalen::kDirectoryChars}) {
    const int component = length - static_cast<int>(here.size()) - 1;
    ASSERT_GT(component, 0);
    const fs::path dir = fs::path(here) / std::wstring(static_cast<std::size_t>(component), L'x');
    fs::create_directory(dir, error);
    fs::current_path(dir, error);
    if (error) GTEST_SKIP() << "the system refuses a directory of " << length << " characters";
    wchar_t cwd[korvalen::kDirectoryChars + 8];
    std::wmemset(cwd, L'#', korvalen::kDirectoryChars + 8);
    DameDirectorioActual(cwd);
    if (length < korvalen::kDirectoryChars) {
      EXPECT_EQ(fs::path(cwd), dir);
    } else {
      EXPECT_EQ(cwd[0], 0);
    }
    for (int i = korvalen::kDirectoryChars; i < korvalen::kDirectoryChars + 8; ++i) {
      ASSERT_EQ(cwd[i], L'#');
    }
    fs::current_path(here);
  }
}

TEST_F(FileNames, ApplicationDirectoryHoldsTheRunningProgram) {
  wchar_t app[korvalen::kDirectoryChars];
  DameDirectorioDeApp(app);
  const std::wstring dir = app;
  ASSERT_FALSE(dir.empty());
  EXPECT_TRUE(dir.back() == L'\\' || dir.back() == L'/');
  // The test program itself, not the library (which sits elsewhere on POSIX).
  const std::wstring program = dir + L"korvalen_tests_foundation";
  EXPECT_TRUE(Exists(Narrow(program)) || Exists(Narrow(program + L".exe")));

  CambiarDirectorioDeApp();
  wchar_t cwd[korvalen::kDirectoryChars];
  DameDirectorioActual(cwd);
  EXPECT_EQ(fs::path(cwd), fs::path(dir.substr(0, dir.size() - 1)));
}

// --- copies -------------------------------------------------------------------

TEST_F(FileNames, CopyIsByteForByteInAnyLength) {
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
}

TEST_F(FileNames, CopyDoesNothingForEmptySameOrMissingNames) {
  WriteBytes("DATA.BIN", "data");
  WriteBytes("OTHER.BIN", "other");
  CopiarFichero(L"DATA.BIN", L"data.bin");  // the same file: never truncated
  EXPECT_EQ(ReadBytes("DATA.BIN"), "data");
  CopiarFichero(L"", L"OTHER.BIN");
  CopiarFichero(L"DATA.BIN", L"");
  CopiarFichero(nullptr, L"OTHER.BIN");
  CopiarFichero(L"MISSING.BIN", L"OTHER.BIN");
  EXPECT_EQ(ReadBytes("OTHER.BIN"), "other");
  CopiarFichero(L"MISSING.BIN", L"NEW.BIN");
  EXPECT_FALSE(Exists("NEW.BIN"));
}

// --- database directories -----------------------------------------------------

// Builds entries under the current directory: a name ending in '/' is a
// directory, anything else a file holding its own name.
void Build(std::initializer_list<const char*> entries) {
  for (const std::string entry : entries) {
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
    Build({(root + "/" + entry).c_str()});
  }
}

int CountEntries(const std::string& root) {
  int n = 0;
  for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
       ++it) {
    ++n;
  }
  return n;
}

TEST_F(FileNames, DatabaseDirectoryOfTheRightShapeIsDeleted) {
  BuildDatabase("dbase");
  BuildDatabase("other db");
  Build({"dbase2/general/x.txt", "dbase2/NESTINGS/", "dbase2/products/"});
  BorrarDirectorio(L"dbase");
  EXPECT_FALSE(Exists("dbase"));
  BorrarDirectorio(L"dbase2");  // the parts' names without regard to case
  EXPECT_FALSE(Exists("dbase2"));

  wchar_t cwd[korvalen::kDirectoryChars];
  DameDirectorioActual(cwd);
  wchar_t full[korvalen::kFullNameChars];
  DameNombreCompleto(cwd, L"other db", L"", full);
  BorrarDirectorio(full);
  EXPECT_FALSE(Exists("other db"));
}

TEST_F(FileNames, EmptyingKeepsTheDirectoryItself) {
  BuildDatabase("dbase");
  EXPECT_EQ(VaciarDirectorio(L"dbase"), 1);
  EXPECT_TRUE(fs::is_directory("dbase"));
  EXPECT_TRUE(fs::is_empty("dbase"));
}

TEST_F(FileNames, DirectoriesOfAnotherShapeAreNeverTouched) {
  const struct {
    const char* what;
    const char* added;    // an entry built beside the database
    const char* removed;  // a part taken away
  } cases[] = {
      {"a foreign subdirectory", "dbase/Other/keep.txt", nullptr},
      {"an empty foreign subdirectory", "dbase/Other/", nullptr},
      {"nesting too deep", "dbase/General/sub/deeper/keep.txt", nullptr},
      {"an empty directory too deep", "dbase/Products/q/deeper/", nullptr},
      {"a part missing", nullptr, "dbase/Nestings"},
  };
  for (const auto& c : cases) {
    fs::remove_all("dbase");
    BuildDatabase("dbase");
    if (c.added != nullptr) Build({c.added});
    if (c.removed != nullptr) fs::remove_all(c.removed);
    const int before = CountEntries("dbase");
    BorrarDirectorio(L"dbase");
    EXPECT_EQ(CountEntries("dbase"), before) << c.what;
    EXPECT_TRUE(Exists("dbase/top.txt")) << c.what;
  }
}

TEST_F(FileNames, EmptyingLeavesWhatDoesNotFitAndSaysSo) {
  BuildDatabase("dbase");
  Build({"dbase/Other/keep.txt", "dbase/General/sub/deeper/keep.txt"});
  EXPECT_EQ(VaciarDirectorio(L"dbase"), 0);
  EXPECT_EQ(ReadBytes("dbase/Other/keep.txt"), "dbase/Other/keep.txt");
  EXPECT_TRUE(Exists("dbase/General/sub/deeper/keep.txt"));
  EXPECT_FALSE(Exists("dbase/General/sub/b.txt"));
  EXPECT_FALSE(Exists("dbase/General/a.txt"));
  EXPECT_FALSE(Exists("dbase/Products"));
  EXPECT_FALSE(Exists("dbase/Nestings"));
  EXPECT_FALSE(Exists("dbase/top.txt"));

  fs::remove_all("dbase");
  BuildDatabase("dbase");
  fs::remove_all("dbase/Products");
  EXPECT_EQ(VaciarDirectorio(L"dbase"), 0);
  EXPECT_TRUE(fs::is_empty("dbase"));
}

TEST_F(FileNames, ShortOrRootNamesAreRefused) {
  BuildDatabase("abc");
  BuildDatabase("abcd");
  const int before = CountEntries("abc");
  BorrarDirectorio(L"abc");
  EXPECT_EQ(CountEntries("abc"), before);
  BorrarDirectorio(L"abcd");  // the same tree under a longer name goes
  EXPECT_FALSE(Exists("abcd"));

  if (!DriveLetters()) {
    // Here "C:\" is a directory named "C:" in the current one.
    BuildDatabase("C:");
    BorrarDirectorio(L"C:\\");
    EXPECT_EQ(CountEntries("C:"), before);
  }
  BorrarDirectorio(L"C:\\");
  BorrarDirectorio(L"\\");
  BorrarDirectorio(L"");
  BorrarDirectorio(nullptr);
  EXPECT_EQ(VaciarDirectorio(L""), 0);
  EXPECT_EQ(VaciarDirectorio(nullptr), 0);
  EXPECT_TRUE(fs::is_directory("abc/General"));
}

TEST_F(FileNames, MissingDirectoriesAreLeftAlone) {
  EXPECT_EQ(VaciarDirectorio(L"gone"), 0);
  BorrarDirectorio(L"gone");
  EXPECT_FALSE(Exists("gone"));
  // A part that is a file: not a part, so only a file directly in the directory.
  BuildDatabase("dbase");
  fs::remove_all("dbase/Products");
  WriteBytes("dbase/Products", "a file");
  BorrarDirectorio(L"dbase");
  EXPECT_EQ(ReadBytes("dbase/Products"), "a file");
  EXPECT_EQ(VaciarDirectorio(L"dbase"), 0);
  EXPECT_TRUE(fs::is_empty("dbase"));
}

// Symbolic links need rights that Windows programs usually lack.
bool MakeLink(const fs::path& target, const fs::path& link, bool directory) {
  std::error_code error;
  if (directory) {
    fs::create_directory_symlink(target, link, error);
  } else {
    fs::create_symlink(target, link, error);
  }
  return !error;
}

TEST_F(FileNames, LinksAreRemovedAsLinksAndTheirTargetsSurvive) {
  if (DriveLetters()) GTEST_SKIP() << "symbolic links are tested on POSIX";
  Build({"outside/keep.txt", "outside/inner/keep2.txt"});
  BuildDatabase("dbase");
  const fs::path outside = fs::absolute("outside");
  ASSERT_TRUE(MakeLink(outside, "dbase/General/to_outside", true));
  ASSERT_TRUE(MakeLink(outside / "keep.txt", "dbase/General/sub/to_file", false));
  ASSERT_TRUE(MakeLink(outside / "inner", "dbase/Products/to_inner", true));
  ASSERT_TRUE(MakeLink(outside, "dbase/to_outside", true));
  ASSERT_TRUE(MakeLink("nowhere", "dbase/Nestings/dangling", false));

  BorrarDirectorio(L"dbase");
  EXPECT_FALSE(Exists("dbase"));
  EXPECT_EQ(ReadBytes("outside/keep.txt"), "outside/keep.txt");
  EXPECT_EQ(ReadBytes("outside/inner/keep2.txt"), "outside/inner/keep2.txt");
}

TEST_F(FileNames, APartThatIsALinkIsNeverEntered) {
  if (DriveLetters()) GTEST_SKIP() << "symbolic links are tested on POSIX";
  Build({"outside/keep.txt", "outside/sub/keep2.txt"});
  BuildDatabase("dbase");
  fs::remove_all("dbase/General");
  ASSERT_TRUE(MakeLink(fs::absolute("outside"), "dbase/General", true));

  BorrarDirectorio(L"dbase");
  EXPECT_TRUE(fs::is_symlink("dbase/General"));
  EXPECT_EQ(VaciarDirectorio(L"dbase"), 0);
  EXPECT_FALSE(fs::is_symlink("dbase/General"));
  EXPECT_EQ(ReadBytes("outside/keep.txt"), "outside/keep.txt");
  EXPECT_EQ(ReadBytes("outside/sub/keep2.txt"), "outside/sub/keep2.txt");
}

}  // namespace
