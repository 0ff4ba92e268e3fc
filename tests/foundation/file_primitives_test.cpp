// File primitives: exact bytes on disk, text mode, line capacities, names.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "guarded_text.h"
#include "korvalen/foundation/clock_functions.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/path_functions.h"
#include "korvalen/foundation/streams.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::GuardedText;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

using FilePrimitives = korvalen::testing::TempDirTest;

TEST_F(FilePrimitives, WritingGivesCrLfAndCodePageBytes) {
  FILE* f = fOpen(L"OUT.SYS", L"wt");
  ASSERT_NE(f, nullptr);
  fPuts(L"A000 5 ;\n", f);
  fPuts(L"\u00D1and\u00FA \u20AC\n", f);
  // Not in the code page but with a look-alike: written as it.
  fPuts(L"A001 \"Bart\u00F3k \u0100\u0151\" ;\n", f);
  fPuts(L"cut here:\u4E2Drest\n", f);  // not in the code page: the line ends there
  fPuts("raw 8-bit\n", f);
  EXPECT_EQ(fPrintf(f, L"%s %d\n", L"B001", 12), 8);
  EXPECT_EQ(fPrintf(f, L"%s", L""), 0);
  EXPECT_EQ(fPrintf(f, ""), 0);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("OUT.SYS"),
            "A000 5 ;\r\n\xD1"
            "and\xFA \x80\r\nA001 \"Bart\xF3k Ao\" ;\r\ncut here:raw 8-bit\r\nB001 12\r\n");

  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"wt", "old", "a\r\nb\r\n"},
      {"wb", "", "a\nb\n"},
      {"at", "first\r\n", "first\r\na\r\nb\r\n"}};
  for (const auto& [mode, before, after] : cases) {
    WriteBytes("MODE.SYS", before);
    f = fOpen("MODE.SYS", mode);
    ASSERT_NE(f, nullptr);
    fPuts(L"a\nb\n", f);
    std::fclose(f);
    EXPECT_EQ(ReadBytes("MODE.SYS"), after) << mode;
  }
}

// An 8-bit argument goes to disk as the code page's byte it came as; a line
// that does not fit the 1023 characters is not written at all.
TEST_F(FilePrimitives, PrintingEightBitArgumentsWritesTheirBytes) {
  FILE* f = fOpen(L"PRINT.SYS", L"wt");
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(fPrintf(f, L"A001 \"%S\" ;\n", "Mu\xF1oz"), 15);
  EXPECT_EQ(fPrintf(f, L"%-4hs|%C|%s|%5.1f\n", "\xA3", '\xE9', L"\u00D1", 2.5), 15);
  EXPECT_EQ(fPrintf(f, "%S\n", std::string(1022, '\xFC').c_str()), 1023);
  EXPECT_EQ(fPrintf(f, L"%S\n", std::string(1023, '\xFC').c_str()), -1);
  EXPECT_EQ(fPrintf(f, L"%S", ""), 0);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("PRINT.SYS"), "A001 \"Mu\xF1oz\" ;\r\n\xA3   |\xE9|\xD1|  2.5\r\n" +
                                        std::string(1022, '\xFC') + "\r\n");
}

TEST_F(FilePrimitives, ReadingFoldsOnlyCrLfAndStopsAtCtrlZInTextMode) {
  using namespace std::string_literals;
  const std::tuple<std::string, const char*, std::wstring> cases[] = {
      // clang-format off
      {"one\r\ntwo\rthree\n\r\r\nlast\r", "rt", L"one\n|two\rthree\n|\r\n|last\r|"},
      {"ab\x1A" "cd\n", "rt", L"ab|"},
      {"ab\x1A" "cd\r\n", "rb", L"ab\x1A" L"cd\r\n|"},
      {"ab\0cd\nef\n"s, "rt", L"ab|ef\n|"},  // a NUL byte ends the line
      // clang-format on
  };
  for (const auto& [bytes, mode, lines] : cases) {
    WriteBytes("IN.SYS", bytes);
    FILE* f = fOpen(L"IN.SYS", mode);
    ASSERT_NE(f, nullptr);
    wchar_t line[64];
    std::wstring all;
    while (fGets(line, 64, f) != nullptr) all += std::wstring(line) + L"|";
    std::fclose(f);
    EXPECT_EQ(all, lines) << mode;
  }
}

TEST_F(FilePrimitives, LineCapacities) {
  // A line longer than everything: fGets takes 2n-1 bytes (2047 above 1024)
  // and converts what fits into n characters.
  WriteBytes("LONG.SYS", std::string(5000, 'x') + "\nnext\n");
  for (const int capacity : {1024, 81, 2000, 1}) {
    FILE* f = fOpen(L"LONG.SYS", L"rt");
    ASSERT_NE(f, nullptr);
    GuardedText<2008> line;
    ASSERT_NE(fGets(line.data(), capacity, f), nullptr);
    EXPECT_EQ(line.str(), std::wstring(static_cast<std::size_t>(capacity - 1), L'x'));
    EXPECT_TRUE(line.IntactFrom(capacity)) << capacity;
    EXPECT_EQ(std::ftell(f), capacity > 1024 ? 2047 : 2 * capacity - 1) << capacity;
    std::fclose(f);
  }
}

TEST_F(FilePrimitives, NamesAreFoundWithoutRegardToCaseAndBackslashSeparates) {
  WriteBytes("iVortan.prd", "data\r\n");
  FILE* f = fOpen(L"IVORTAN.PRD", L"rt");
  ASSERT_NE(f, nullptr);
  std::fclose(f);
  EXPECT_EQ(Access(L"ivortan.PRD", 0), 0);
  EXPECT_NE(Access(L"missing.cfg", 0), 0);
  f = fOpen("IVORTAN.PRD", "wt");  // rewrites the same file
  ASSERT_NE(f, nullptr);
  fPuts(L"new\n", f);
  std::fclose(f);
  EXPECT_EQ(ReadBytes("iVortan.prd"), "new\r\n");

  ASSERT_EQ(mkDir(L"General"), 0);
  ASSERT_EQ(mkDir("General\\Sub"), 0);
  f = fOpen(L"general\\SUB\\part.cfg", L"wt");
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

// Matches come by name without regard to case, as NTFS lists them, whatever
// order they were made in.
TEST_F(FilePrimitives, FindWalksMatchingEntries) {
  WriteBytes("Zz.err", "");
  WriteBytes("mm.err", "");
  WriteBytes("a1.err", std::string(1234, 'x'));
  WriteBytes("B2.ERR", "");
  WriteBytes("c3.txt", "");
  ASSERT_EQ(mkDir(L"sub.err"), 0);
  _wfinddata64i32_t data;
  std::vector<std::wstring> names;
  intptr_t h = FindFirst(L"*.err", &data);
  ASSERT_NE(h, -1);
  do {
    const std::wstring name = data.name;
    names.push_back(name);
    EXPECT_EQ((data.attrib & _A_SUBDIR) != 0, name == L"sub.err") << name;
    if (name == L"a1.err") {
      EXPECT_EQ(data.size, 1234u);
    }
  } while (FindNext(h, &data) == 0);
  EXPECT_EQ(names,
            (std::vector<std::wstring>{L"a1.err", L"B2.ERR", L"mm.err", L"sub.err", L"Zz.err"}));
  h = FindFirst("A1.ERR", &data);
  ASSERT_NE(h, -1);
  EXPECT_EQ(FindNext(h, &data), -1);
  EXPECT_EQ(FindFirst("*.none", &data), -1);
}

TEST_F(FilePrimitives, WorkingDirectoryAndSearchPath) {
  wchar_t start[260], now[260];
  ASSERT_NE(GetCwd(start, 260), nullptr);
  ASSERT_EQ(mkDir(L"inner"), 0);
  ASSERT_EQ(chDir(L"inner"), 0);
  ASSERT_NE(GetCwd(now, 260), nullptr);
  EXPECT_EQ(std::wstring(now), std::wstring(start) + now[std::wcslen(start)] + L"inner");
  EXPECT_EQ(chDir(".."), 0);
  EXPECT_EQ(GetCwd(now, 2), nullptr);  // too small: fails rather than cuts

  wchar_t result[MAX_PATH];
  WriteBytes("here.txt", "");
  SearchEnv(L"here.txt", L"PATH", result);
  EXPECT_NE(std::wstring(result).find(L"here.txt"), std::wstring::npos);
  SearchEnv("no-such-file.xyz", "PATH", result);
  EXPECT_EQ(result[0], 0);
}

TEST_F(FilePrimitives, ReadOnlyFilesRefuseWriting) {
  WriteBytes("RO.CFG", "x");
  ASSERT_EQ(chMod(L"RO.CFG", _S_IREAD), 0);
  if (Access(L"RO.CFG", 2) == 0) GTEST_SKIP() << "running with rights that ignore read-only";
  EXPECT_EQ(Access(L"RO.CFG", 4), 0);
  EXPECT_EQ(chMod("RO.CFG", _S_IREAD | _S_IWRITE), 0);
  EXPECT_EQ(Access(L"RO.CFG", 2), 0);
}

TEST(PathParts, SplitAndMakePath) {
  const std::pair<const wchar_t*, std::wstring> cases[] = {
      // drive|dir|fname|ext
      {L"C:\\data\\part.cfg", L"C:|\\data\\|part|.cfg"},
      {L"part.tar.gz", L"||part.tar|.gz"},
      {L"dir.x/file", L"|dir.x/|file|"},
      {L".cfg", L"|||.cfg"},
      {L"D:", L"D:|||"}};
  for (const auto& [path, parts] : cases) {
    wchar_t drive[3], dir[256], fname[256], ext[256];
    SplitPath(path, drive, dir, fname, ext);
    EXPECT_EQ(std::wstring(drive) + L"|" + dir + L"|" + fname + L"|" + ext, parts);
  }
  wchar_t path[260];
  MakePath(path, L"C", L"\\data", L"part", L"cfg");
  EXPECT_EQ(std::wstring(path), L"C:\\data\\part.cfg");
  MakePath(path, L"", L"dir/", "name", ".ext");
  EXPECT_EQ(std::wstring(path), L"dir/name.ext");
}

TEST(Clock, DateAndTimeTexts) {
  wchar_t date[16], time[16];
  EXPECT_EQ(std::wcslen(StrDate(date)), 8u);
  EXPECT_EQ(date[2], L'/');
  EXPECT_EQ(std::wcslen(StrTime(time)), 8u);
  EXPECT_EQ(time[5], L':');
  const long long epoch_year = 86400LL * 365;  // 1 January 1971
  std::tm* tm = gmTime(&epoch_year);
  ASSERT_NE(tm, nullptr);
  wchar_t text[32];
  EXPECT_EQ(StrfTime(text, 32, "%Y-%m-%d", tm), 10u);
  EXPECT_EQ(std::wstring(text), L"1971-01-01");
  const long long negative = -1;
  EXPECT_EQ(LocalTime(&negative), nullptr);
  EXPECT_NE(LocalTime(&epoch_year), nullptr);
}

}  // namespace
