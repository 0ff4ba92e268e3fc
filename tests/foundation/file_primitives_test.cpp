// File primitives: exact bytes on disk, text mode, line capacities, names.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "korvalen/foundation/primitives.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;

class FilePrimitives : public korvalen::testing::TempDirTest {};

TEST_F(FilePrimitives, TextModeWritesCrLfAndCodePageBytes) {
  FILE* f = fOpen(L"OUT.SYS", L"wt");
  ASSERT_NE(f, nullptr);
  fPuts(L"A000 5 ;\n", f);
  fPuts(L"\u00D1and\u00FA \u20AC\n", f);
  fPuts(L"cut here:\u4E2Drest\n", f);  // not in the code page: the line ends there
  fPuts("raw 8-bit\n", f);
  EXPECT_EQ(fPrintf(f, L"%s %d\n", L"B001", 12), 8);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("OUT.SYS"),
            "A000 5 ;\r\n\xD1" "and\xFA \x80\r\ncut here:raw 8-bit\r\nB001 12\r\n");
}

TEST_F(FilePrimitives, EmptyFormatWritesNothing) {
  FILE* f = fOpen("EMPTY.SYS", "wt");
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(fPrintf(f, L"%s", L""), 0);
  EXPECT_EQ(fPrintf(f, ""), 0);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("EMPTY.SYS"), "");
}

TEST_F(FilePrimitives, TextModeReadFoldsCrLfOnly) {
  WriteBytes("IN.SYS", std::string("one\r\ntwo\rthree\n\r\r\nlast\r", 24));
  FILE* f = fOpen(L"IN.SYS", L"rt");
  ASSERT_NE(f, nullptr);
  wchar_t line[64];
  std::wstring all;
  while (fGets(line, 64, f) != nullptr) all += std::wstring(line) + L"|";
  std::fclose(f);
  EXPECT_EQ(all, L"one\n|two\rthree\n|\r\n|last\r|");
}

TEST_F(FilePrimitives, CtrlZEndsTextInputButNotBinary) {
  WriteBytes("Z.SYS", std::string("ab\x1A" "cd\n", 6));
  wchar_t line[16];
  FILE* f = fOpen("Z.SYS", "rt");
  ASSERT_NE(f, nullptr);
  ASSERT_NE(fGets(line, 16, f), nullptr);
  EXPECT_EQ(std::wstring(line), L"ab");
  EXPECT_EQ(fGets(line, 16, f), nullptr);
  std::fclose(f);
  f = fOpen("Z.SYS", "rb");
  ASSERT_NE(f, nullptr);
  char raw[16] = {};
  EXPECT_EQ(std::fread(raw, 1, sizeof raw, f), 6u);
  std::fclose(f);
}

TEST_F(FilePrimitives, BinaryModeKeepsBytes) {
  FILE* f = fOpen(L"BIN.DAT", L"wb");
  ASSERT_NE(f, nullptr);
  fPuts(L"a\nb\n", f);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("BIN.DAT"), "a\nb\n");
}

TEST_F(FilePrimitives, AppendModeAddsCrLfLines) {
  WriteBytes("LOG.SYS", "first\r\n");
  FILE* f = fOpen(L"LOG.SYS", L"at");
  ASSERT_NE(f, nullptr);
  fPuts(L"second\n", f);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("LOG.SYS"), "first\r\nsecond\r\n");
}

TEST_F(FilePrimitives, LineCapacities) {
  // A line longer than everything: fGets takes 2n-1 bytes (2047 above 1024)
  // and converts what fits into n characters.
  WriteBytes("LONG.SYS", std::string(5000, 'x') + "\nnext\n");
  struct Case {
    int capacity;
    std::size_t chars;
  };
  for (const Case c : {Case{1024, 1023}, Case{81, 80}, Case{2000, 1999}, Case{1, 0}}) {
    FILE* f = fOpen(L"LONG.SYS", L"rt");
    ASSERT_NE(f, nullptr);
    std::wstring buf(static_cast<std::size_t>(c.capacity) + 8, L'#');
    ASSERT_NE(fGets(buf.data(), c.capacity, f), nullptr);
    EXPECT_EQ(std::wcslen(buf.c_str()), c.chars) << c.capacity;
    EXPECT_EQ(buf[static_cast<std::size_t>(c.capacity)], L'#');  // nothing past the capacity
    const long consumed = std::ftell(f);
    const long expected = c.capacity > 1024 ? 2047 : 2 * c.capacity - 1;
    EXPECT_EQ(consumed, expected) << c.capacity;
    std::fclose(f);
  }
}

TEST_F(FilePrimitives, NulByteEndsTheConvertedLine) {
  WriteBytes("ZEROS.SYS", std::string("ab\0cd\nef\n", 9));
  FILE* f = fOpen(L"ZEROS.SYS", L"rt");
  ASSERT_NE(f, nullptr);
  wchar_t line[16];
  ASSERT_NE(fGets(line, 16, f), nullptr);
  EXPECT_EQ(std::wstring(line), L"ab");
  ASSERT_NE(fGets(line, 16, f), nullptr);
  EXPECT_EQ(std::wstring(line), L"ef\n");
  std::fclose(f);
}

TEST_F(FilePrimitives, NamesAreFoundWithoutRegardToCase) {
  WriteBytes("iVortan.prd", "data\r\n");
  FILE* f = fOpen(L"IVORTAN.PRD", L"rt");
  ASSERT_NE(f, nullptr);
  std::fclose(f);
  EXPECT_EQ(Access(L"ivortan.PRD", 0), 0);
  // Writing under another case rewrites the same file.
  f = fOpen("IVORTAN.PRD", "wt");
  ASSERT_NE(f, nullptr);
  fPuts(L"new\n", f);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("iVortan.prd"), "new\r\n");
  EXPECT_NE(Access(L"missing.cfg", 0), 0);
}

TEST_F(FilePrimitives, BackslashIsASeparator) {
  ASSERT_EQ(mkDir(L"General"), 0);
  ASSERT_EQ(mkDir("General\\Sub"), 0);
  FILE* f = fOpen(L"general\\SUB\\part.cfg", L"wt");
  ASSERT_NE(f, nullptr);
  std::fclose(f);
  EXPECT_TRUE(Exists("General/Sub/part.cfg"));
  EXPECT_EQ(Remove(L"General\\Sub\\part.cfg"), 0);
  EXPECT_EQ(rmDir(L"General\\Sub"), 0);
  EXPECT_EQ(rmDir("General"), 0);
}

TEST_F(FilePrimitives, RenameRefusesAnExistingTarget) {
  WriteBytes("WORK.TMP", "work");
  WriteBytes("TARGET.CFG", "old");
  EXPECT_NE(Rename(L"WORK.TMP", L"TARGET.CFG"), 0);
  EXPECT_EQ(ReadBytes("TARGET.CFG"), "old");
  EXPECT_EQ(Remove("TARGET.CFG"), 0);
  EXPECT_EQ(Rename("WORK.TMP", L"TARGET.CFG"), 0);
  EXPECT_EQ(ReadBytes("TARGET.CFG"), "work");
  EXPECT_FALSE(Exists("WORK.TMP"));
  EXPECT_NE(Remove(L"WORK.TMP"), 0);
}

TEST_F(FilePrimitives, FindWalksMatchingEntries) {
  WriteBytes("a1.err", "");
  WriteBytes("B2.ERR", "");
  WriteBytes("c3.txt", "");
  ASSERT_EQ(mkDir(L"sub.err"), 0);
  _wfinddata64i32_t data;
  std::set<std::wstring> names;
  bool saw_subdir = false;
  intptr_t h = FindFirst(L"*.err", &data);
  ASSERT_NE(h, -1);
  do {
    names.insert(data.name);
    if (std::wstring(data.name) == L"sub.err") saw_subdir = (data.attrib & _A_SUBDIR) != 0;
  } while (FindNext(h, &data) == 0);
  EXPECT_EQ(names, (std::set<std::wstring>{L"a1.err", L"B2.ERR", L"sub.err"}));
  EXPECT_TRUE(saw_subdir);
  EXPECT_EQ(FindFirst("*.none", &data), -1);
}

TEST_F(FilePrimitives, FindReportsSize) {
  WriteBytes("size.dat", std::string(1234, 'x'));
  _wfinddata64i32_t data;
  const intptr_t h = FindFirst("SIZE.DAT", &data);
  ASSERT_NE(h, -1);
  EXPECT_EQ(data.size, 1234u);
  EXPECT_EQ(data.attrib & _A_SUBDIR, 0u);
  EXPECT_EQ(FindNext(h, &data), -1);
}

TEST_F(FilePrimitives, WorkingDirectoryRoundTrip) {
  wchar_t start[260];
  ASSERT_NE(GetCwd(start, 260), nullptr);
  ASSERT_EQ(mkDir(L"inner"), 0);
  ASSERT_EQ(chDir(L"inner"), 0);
  wchar_t now[260];
  ASSERT_NE(GetCwd(now, 260), nullptr);
  EXPECT_EQ(std::wstring(now).substr(0, std::wcslen(start)), std::wstring(start));
  EXPECT_EQ(chDir(".."), 0);
  EXPECT_EQ(GetCwd(now, 2), nullptr);  // too small: fails rather than cuts
}

TEST_F(FilePrimitives, ReadOnlyFilesRefuseWriting) {
  WriteBytes("RO.CFG", "x");
  ASSERT_EQ(chMod(L"RO.CFG", _S_IREAD), 0);
  if (Access(L"RO.CFG", 2) == 0) GTEST_SKIP() << "running with rights that ignore read-only";
  EXPECT_EQ(Access(L"RO.CFG", 4), 0);
  EXPECT_EQ(chMod("RO.CFG", _S_IREAD | _S_IWRITE), 0);
  EXPECT_EQ(Access(L"RO.CFG", 2), 0);
}

TEST_F(FilePrimitives, SearchEnvFindsFilesInListedDirectories) {
  wchar_t result[MAX_PATH];
  WriteBytes("here.txt", "");
  SearchEnv(L"here.txt", L"PATH", result);
  EXPECT_NE(std::wstring(result).find(L"here.txt"), std::wstring::npos);
  SearchEnv("no-such-file.xyz", "PATH", result);
  EXPECT_EQ(result[0], 0);
}

TEST(PathParts, SplitAndMakePath) {
  struct Case {
    const wchar_t* path;
    const wchar_t* drive;
    const wchar_t* dir;
    const wchar_t* fname;
    const wchar_t* ext;
  };
  const Case cases[] = {
      {L"C:\\data\\part.cfg", L"C:", L"\\data\\", L"part", L".cfg"},
      {L"part.tar.gz", L"", L"", L"part.tar", L".gz"},
      {L"dir.x/file", L"", L"dir.x/", L"file", L""},
      {L".cfg", L"", L"", L"", L".cfg"},
      {L"D:", L"D:", L"", L"", L""},
  };
  for (const Case& c : cases) {
    wchar_t drive[3], dir[256], fname[256], ext[256];
    SplitPath(c.path, drive, dir, fname, ext);
    EXPECT_EQ(std::wstring(drive), c.drive) << static_cast<const void*>(c.path);
    EXPECT_EQ(std::wstring(dir), c.dir);
    EXPECT_EQ(std::wstring(fname), c.fname);
    EXPECT_EQ(std::wstring(ext), c.ext);
  }
  wchar_t path[260];
  MakePath(path, L"C", L"\\data", L"part", L"cfg");
  EXPECT_EQ(std::wstring(path), L"C:\\data\\part.cfg");
  MakePath(path, L"", L"dir/", "name", ".ext");
  EXPECT_EQ(std::wstring(path), L"dir/name.ext");
  wchar_t drive[3], dir[256], fname[256], ext[256];
  SplitPath("E:\\x\\y.z", drive, dir, fname, ext);
  EXPECT_EQ(std::wstring(fname) + ext, L"y.z");
}

TEST(Clock, DateAndTimeTexts) {
  wchar_t date[16], time[16];
  EXPECT_EQ(std::wcslen(StrDate(date)), 8u);
  EXPECT_EQ(date[2], L'/');
  EXPECT_EQ(std::wcslen(StrTime(time)), 8u);
  EXPECT_EQ(time[5], L':');
  const long long epoch_day = 86400LL * 365;  // 1 January 1971
  std::tm* tm = gmTime(&epoch_day);
  ASSERT_NE(tm, nullptr);
  EXPECT_EQ(tm->tm_year, 71);
  wchar_t text[32];
  EXPECT_EQ(StrfTime(text, 32, "%Y-%m-%d", tm), 10u);
  EXPECT_EQ(std::wstring(text), L"1971-01-01");
  const long long negative = -1;
  EXPECT_EQ(LocalTime(&negative), nullptr);
  EXPECT_NE(LocalTime(&epoch_day), nullptr);
  (void)RunningUnderWine;
}

}  // namespace
