// Config record reader: record heads, every field reader with its cursor,
// line capacities and hostile physical lines.
#include "korvalen/config/config_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "guarded_buffer.h"
#include "korvalen/foundation/primitives.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::GuardedBuffer;
using korvalen::testing::WriteBytes;

class ConfigReader : public korvalen::testing::TempDirTest {};

// --- record heads -------------------------------------------------------------

struct HeadCase {
  std::wstring line;
  wchar_t type_before;
  wchar_t type;
  int index;
  int cursor;
};

TEST(ConfigRecordHead, TypeIndexAndCursor) {
  const HeadCase cases[] = {
      {L"A000 5 ;", L'?', L'A', 0, 4}, {L"  B012 1.5 A ;", L'?', L'B', 12, 6},
      {L"A0", L'?', L'A', 0, 2},       {L"A 0 x", L'?', L'A', 0, 3},
      {L"A   7", L'?', L'A', 7, 5},    {L"a7 ;", L'?', L'a', 7, 2},  // letters keep their case
      {L"K001 12", L'?', L'K', 1, 4},  {L"Z-3 ;", L'?', L'Z', -3, 3},
      {L"C", L'?', L'C', 0, 1},        {L"   ", L'Q', L'Q', 0, 4},  // blanks only: the type stays
      {L"", L'Q', L'Q', 0, 1},         {L"\tA000", L'?', L'\t', 0, 5},  // a tab is no blank
      {L"  #12 x", L'?', L'#', 12, 5},
  };
  for (const HeadCase& c : cases) {
    wchar_t type = c.type_before;
    int index = -99;
    int cursor = -99;
    ObtenerTipoIndexCfg(c.line.c_str(), type, index, cursor);
    EXPECT_EQ(type, c.type) << c.line;
    EXPECT_EQ(index, c.index) << c.line;
    EXPECT_EQ(cursor, c.cursor) << c.line;
  }
}

// --- field readers ------------------------------------------------------------

enum class Reader {
  kStr,
  kStrSep,
  kChar,
  kTexto,
  kString,
  kStringSep,
  kSwitch,
  kSwitchInt,
  kShort,
  kInt,
  kIntSep,
  kLong,
  kReal,
};

// Runs one reader on the line and renders what it gives. Text outputs get
// exactly the room their contract asks for (the line's length plus one).
std::wstring Read(Reader reader, const std::wstring& line, int& cursor, char sep) {
  std::vector<wchar_t> text(line.size() + 1, L'#');
  const wchar_t* l = line.c_str();
  switch (reader) {
    case Reader::kStr:
      LeerUnStr(l, cursor, text.data());
      return text.data();
    case Reader::kStrSep:
      LeerUnStrSep(l, cursor, sep, text.data());
      return text.data();
    case Reader::kTexto:
      LeerUnTexto(l, cursor, text.data());
      return text.data();
    case Reader::kString:
      LeerUnString(l, cursor, text.data());
      return text.data();
    case Reader::kStringSep:
      LeerUnStringSep(l, cursor, sep, text.data());
      return text.data();
    case Reader::kChar: {
      wchar_t c = L'#';
      LeerUnChar(l, cursor, c);
      return std::wstring(1, c);
    }
    case Reader::kSwitch: {
      int v = -1;
      LeerSIoNO(l, cursor, v);
      return std::to_wstring(v);
    }
    case Reader::kSwitchInt: {
      int v = -1;
      LeerSIoNOInt(l, cursor, v);
      return std::to_wstring(v);
    }
    case Reader::kShort: {
      short v = -1;
      LeerUnShort(l, cursor, v);
      return std::to_wstring(v);
    }
    case Reader::kInt: {
      int v = -1;
      LeerUnEntero(l, cursor, v);
      return std::to_wstring(v);
    }
    case Reader::kIntSep: {
      int v = -1;
      LeerUnEnteroSep(l, cursor, sep, v);
      return std::to_wstring(v);
    }
    case Reader::kLong: {
      LONG v = -1;
      LeerUnLong(l, cursor, v);
      return std::to_wstring(v);
    }
    case Reader::kReal: {
      double v = -1;
      LeerUnReal(l, cursor, v);
      return std::to_wstring(v);
    }
  }
  return L"?";
}

struct Step {
  Reader reader;
  std::wstring value;
  int cursor_after;
  char sep = ' ';
};

struct FieldCase {
  std::wstring line;
  int cursor;
  std::vector<Step> steps;
};

using R = Reader;

const std::vector<FieldCase>& FieldCases() {
  static const std::vector<FieldCase> cases = {
      // Missing fields past the end read as empty words; the text reader
      // ends two past the end when it finds no quote.
      {L"A000 5 ;",
       4,
       {{R::kInt, L"5", 6},
        {R::kStr, L";", 8},
        {R::kInt, L"0", 8},
        {R::kChar, L" ", 8},
        {R::kTexto, L"", 10},
        {R::kReal, L"0.000000", 10},
        {R::kString, L"", 10}}},
      {L"  B012 1.5 A ;", 6, {{R::kReal, L"1.500000", 10}, {R::kReal, L"99999.999000", 12}}},
      {L"A001 \"two words\" ;", 4, {{R::kTexto, L"two words", 16}, {R::kStr, L";", 18}}},
      {L"A001 \"two words\" ;", 4, {{R::kStr, L"\"two", 9}, {R::kStr, L"words\"", 16}}},
      {L"A001 \"two words\" ;", 4, {{R::kString, L"two words", 16}, {R::kString, L";", 18}}},
      {L"A001 \"unterminated", 4, {{R::kString, L"unterminated", 19}}},
      {L"A001 \"unterminated", 4, {{R::kTexto, L"unterminated", 19}}},
      {L"A001 abc ;", 4, {{R::kTexto, L"", 12}}},
      // The opening quote is searched for over anything.
      {L"A001 x y\"z\" w", 4, {{R::kTexto, L"z", 11}, {R::kStr, L"w", 13}}},
      {L"A001 \"\" x", 4, {{R::kString, L"", 7}, {R::kStr, L"x", 9}}},
      {L"A000 5", 20, {{R::kTexto, L"", 22}}},
      {L"A000 5", 20, {{R::kStr, L"", 20}, {R::kInt, L"0", 20}, {R::kString, L"", 20}}},
      // Only an upper-case 'A' stands for the unset real.
      {L"A AUTO A12 a 1e2 -2.5x",
       0,
       {{R::kReal, L"99999.999000", 1},
        {R::kReal, L"99999.999000", 6},
        {R::kReal, L"99999.999000", 10},
        {R::kReal, L"0.000000", 12},
        {R::kReal, L"100.000000", 16},
        {R::kReal, L"-2.500000", 22}}},
      {L"on On ON oN SI 1 OFF ONE",
       0,
       {{R::kSwitch, L"1", 2},
        {R::kSwitch, L"1", 5},
        {R::kSwitch, L"1", 8},
        {R::kSwitch, L"1", 11},
        {R::kSwitch, L"0", 14},
        {R::kSwitch, L"0", 16},
        {R::kSwitch, L"0", 20},
        {R::kSwitch, L"0", 24}}},
      {L"0 7 -3 x 0007",
       0,
       {{R::kSwitchInt, L"0", 1},
        {R::kSwitchInt, L"1", 3},
        {R::kSwitchInt, L"1", 6},
        {R::kSwitchInt, L"0", 8},
        {R::kSwitchInt, L"1", 13}}},
      {L"70000 -32769 32767 -5",
       0,
       {{R::kShort, L"4464", 5},
        {R::kShort, L"32767", 12},
        {R::kShort, L"32767", 18},
        {R::kShort, L"-5", 21}}},
      {L"2147483647 -12abc", 0, {{R::kLong, L"2147483647", 10}, {R::kLong, L"-12", 17}}},
      {L"  +42 12abc abc", 0, {{R::kInt, L"42", 5}, {R::kInt, L"12", 11}, {R::kInt, L"0", 15}}},
      // The terminator is an ordinary word.
      {L"A000  ;", 4, {{R::kChar, L";", 7}, {R::kChar, L" ", 7}}},
      {L"A000", 4, {{R::kChar, L" ", 4}}},
      {L"A000 xyz", 4, {{R::kChar, L"x", 8}}},
      // With a separator the blank is an ordinary character.
      {L"1, 2", 0, {{R::kStrSep, L"1", 1, ','}, {R::kStrSep, L" 2", 4, ','}}},
      {L"a,,b", 0, {{R::kStrSep, L"a", 1, ','}, {R::kStrSep, L"b", 4, ','}}},
      {L"10;20;;30",
       0,
       {{R::kIntSep, L"10", 2, ';'}, {R::kIntSep, L"20", 5, ';'}, {R::kIntSep, L"30", 9, ';'}}},
      {L",\"a,b\",c", 0, {{R::kStringSep, L"a,b", 6, ','}, {R::kStringSep, L"c", 8, ','}}},
      {L"a\u00E9b", 0, {{R::kStrSep, L"a", 1, '\xE9'}, {R::kStrSep, L"b", 3, '\xE9'}}},
      // A tab belongs to the word.
      {L"A000 1\t2 ;", 4, {{R::kStr, L"1\t2", 8}}},
      {L"A000 1\t2 ;", 4, {{R::kInt, L"1", 8}}},
      // A record without its terminator, and fields missing at its end.
      {L"K001 12",
       4,
       {{R::kInt, L"12", 7},
        {R::kInt, L"0", 7},
        {R::kReal, L"0.000000", 7},
        {R::kSwitch, L"0", 7},
        {R::kSwitchInt, L"0", 7},
        {R::kChar, L" ", 7},
        {R::kShort, L"0", 7},
        {R::kLong, L"0", 7},
        {R::kString, L"", 7}}},
      {L"A000 5", -3, {{R::kStr, L"A000", 4}}},
  };
  return cases;
}

TEST(ConfigFieldReaders, ValuesAndCursors) {
  for (const FieldCase& c : FieldCases()) {
    int cursor = c.cursor;
    for (std::size_t i = 0; i < c.steps.size(); ++i) {
      const Step& step = c.steps[i];
      const std::wstring value = Read(step.reader, c.line, cursor, step.sep);
      EXPECT_EQ(value, step.value) << c.line << " step " << i;
      EXPECT_EQ(cursor, step.cursor_after) << c.line << " step " << i;
    }
  }
}

// Words converted to a value pass through an 80-character buffer: they are cut
// to 79 characters, yet the cursor moves past the whole word.
TEST(ConfigFieldReaders, LongWordsAreCutNotOverflowed) {
  struct Case {
    std::wstring word;
    Reader reader;
    std::wstring value;
  };
  const std::wstring zeros77(77, L'0');
  const Case cases[] = {
      {zeros77 + L"12", R::kInt, L"12"},                  // 79: whole
      {zeros77 + L"012", R::kInt, L"1"},                  // 80: last digit cut
      {std::wstring(4998, L'0') + L"12", R::kInt, L"0"},  // 5000
      {zeros77 + L"12", R::kLong, L"12"},
      {zeros77 + L"012", R::kLong, L"1"},
      {zeros77 + L"012", R::kShort, L"1"},
      {zeros77 + L"012", R::kSwitchInt, L"1"},
      {std::wstring(4998, L'0') + L"12", R::kSwitchInt, L"0"},
      {std::wstring(76, L'0') + L"2.5", R::kReal, L"2.500000"},  // 79
      {std::wstring(77, L'0') + L"2.5", R::kReal, L"2.000000"},  // 80: the 5 is cut
      {L"A" + std::wstring(4999, L'x'), R::kReal, L"99999.999000"},
      {L"ON" + std::wstring(4998, L'x'), R::kSwitch, L"0"},
      {L"z" + std::wstring(4999, L'y'), R::kChar, L"z"},
      {std::wstring(5000, L'w'), R::kStr, std::wstring(5000, L'w')},  // the caller's buffer
      {L"\"" + std::wstring(5000, L'q') + L"\"", R::kString, std::wstring(5000, L'q')},
  };
  for (const Case& c : cases) {
    const std::wstring line = L"A000 " + c.word + L" 7 ;";
    int cursor = 4;
    EXPECT_EQ(Read(c.reader, line, cursor, ' '), c.value) << c.word.size();
    EXPECT_EQ(cursor, static_cast<int>(5 + c.word.size())) << c.word.size();
    int next = -1;
    LeerUnEntero(line.c_str(), cursor, next);
    EXPECT_EQ(next, 7) << c.word.size();
  }
}

TEST(ConfigFieldReaders, IndexWordIsBoundedToo) {
  const std::wstring line = L"A" + std::wstring(5000, L'0') + L"9 5 ;";
  wchar_t type = L' ';
  int index = -1;
  int cursor = -1;
  ObtenerTipoIndexCfg(line.c_str(), type, index, cursor);
  EXPECT_EQ(type, L'A');
  EXPECT_EQ(index, 0);
  EXPECT_EQ(cursor, 5002);
}

// --- lines from files ---------------------------------------------------------

struct CfgRead {
  std::wstring line;
  wchar_t type;
  int index;
  int cursor;
};

std::vector<CfgRead> ReadAllRecords(const char* name, bool long_lines, int reads) {
  std::vector<CfgRead> out;
  FILE* f = fOpen(name, "rt");
  if (f == nullptr) return out;
  GuardedBuffer line(long_lines ? 501 : 81);
  wchar_t type = L'?';
  int index = -5;
  int cursor = -5;
  for (int i = 0; i < reads; ++i) {
    if (long_lines) {
      LeerLineaLargaDeCfg(f, line.get(), type, index, cursor);
    } else {
      LeerLineaDeCfg(f, line.get(), type, index, cursor);
    }
    EXPECT_TRUE(line.guard_intact()) << i;
    out.push_back({line.text(), type, index, cursor});
  }
  std::fclose(f);
  return out;
}

TEST_F(ConfigReader, ClassifiesCommentsEmptyLinesAndRecords) {
  WriteBytes("T.CFG",
             "A005 5 ;\r\n"
             "    \r\n"
             "\r\n"
             "#A000 5 ;\r\n"
             "  B012 1.5 A ;\r\n"
             "K001 12");
  const std::vector<CfgRead> got = ReadAllRecords("T.CFG", false, 7);
  const std::vector<CfgRead> want = {
      {L"A005 5 ;", L'A', 5, 4},
      {L"    ", L'A', 0, 5},  // blanks only: the type as it was, index 0
      {L"", L' ', 0, 5},      // empty: index and cursor untouched
      {L"#A000 5 ;", L'#', 0, 5},
      {L"  B012 1.5 A ;", L'B', 12, 6},
      {L"K001 12", L'K', 1, 4},
      {L"", L' ', 1, 4},  // end of file reads like an empty line
  };
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(got[i].line, want[i].line) << i;
    EXPECT_EQ(got[i].type, want[i].type) << i;
    EXPECT_EQ(got[i].index, want[i].index) << i;
    EXPECT_EQ(got[i].cursor, want[i].cursor) << i;
  }
}

// The record limits hold exactly; the rest of a longer line is lost and the
// next read takes the next physical line.
TEST_F(ConfigReader, RecordLineLimits) {
  struct Case {
    bool long_lines;
    int length;
    int kept;
  };
  const Case cases[] = {
      {false, 79, 79},   {false, 80, 80},   {false, 81, 80},     {false, 100, 80},
      {false, 1023, 80}, {false, 5000, 80}, {false, 100000, 80}, {true, 80, 80},
      {true, 499, 499},  {true, 500, 500},  {true, 501, 500},    {true, 100000, 500},
  };
  for (const Case& c : cases) {
    std::string head = "C001 ";
    std::string body = head + std::string(static_cast<std::size_t>(c.length) - head.size(), 'x');
    WriteBytes("T.CFG", body + "\r\nD002 7 ;\r\n");
    const std::vector<CfgRead> got = ReadAllRecords("T.CFG", c.long_lines, 3);
    ASSERT_EQ(got.size(), 3u);
    std::wstring expected(body.begin(), body.begin() + c.kept);
    EXPECT_EQ(got[0].line, expected) << c.length;
    EXPECT_EQ(got[0].type, L'C') << c.length;
    EXPECT_EQ(got[1].line, L"D002 7 ;") << c.length;
    EXPECT_EQ(got[1].index, 2) << c.length;
    EXPECT_EQ(got[2].type, L' ') << c.length;
  }
}

std::vector<std::wstring> ReadPlainLines(const char* name, const char* mode, int max_length,
                                         int reads, bool* at_end) {
  std::vector<std::wstring> out;
  FILE* f = fOpen(name, mode);
  if (f == nullptr) return out;
  GuardedBuffer line(static_cast<std::size_t>(max_length) + 1);
  for (int i = 0; i < reads; ++i) {
    LeerLineaDeFichero(f, line.get(), max_length);
    EXPECT_TRUE(line.guard_intact()) << i;
    out.push_back(line.text());
  }
  *at_end = std::feof(f) != 0;
  std::fclose(f);
  return out;
}

// A physical line is cut at 1023 characters whatever its length, and the
// whole of it is consumed: the next read always starts on the next line.
TEST_F(ConfigReader, PhysicalLinesOfAnyLength) {
  const int lengths[] = {0,    1,    126,  127,  128,  129,  638,  639,  640,   1022,
                         1023, 1024, 2045, 2046, 2047, 2048, 2049, 4096, 100000};
  for (const char* end : {"\n", "\r\n"}) {
    for (int length : lengths) {
      const std::string body(static_cast<std::size_t>(length), 'x');
      WriteBytes("L.TXT", body + end + "NEXT" + end);
      bool at_end = false;
      const std::vector<std::wstring> got = ReadPlainLines("L.TXT", "rt", 2000, 3, &at_end);
      ASSERT_EQ(got.size(), 3u);
      EXPECT_EQ(got[0], std::wstring(static_cast<std::size_t>(length < 1023 ? length : 1023), L'x'))
          << length;
      EXPECT_EQ(got[1], L"NEXT") << length;
      EXPECT_EQ(got[2], L"") << length;
      EXPECT_TRUE(at_end) << length;
    }
  }
}

TEST_F(ConfigReader, HostileBytes) {
  struct Case {
    std::string bytes;
    std::vector<std::wstring> lines;
  };
  const std::string x1500(1500, 'x');
  const Case cases[] = {
      // A NUL byte ends the line where it stands; the rest of it is skipped.
      {std::string("AB\0CD\nNEXT\n", 11), {L"AB", L"NEXT", L""}},
      {std::string("\0\nNEXT\n", 7), {L"", L"NEXT", L""}},
      {x1500 + std::string("\0", 1) + std::string(3000, 'y') + "\nNEXT\n",
       {std::wstring(1023, L'x'), L"NEXT", L""}},
      {std::string(3000, 'y') + std::string("\0\0\n", 3) + "NEXT",
       {std::wstring(1023, L'y'), L"NEXT", L""}},
      // No line end at the end of the file.
      {"A000 5 ;", {L"A000 5 ;", L"", L""}},
      {x1500, {std::wstring(1023, L'x'), L"", L""}},
      {"", {L"", L"", L""}},
      // Only one line feed is removed, and a lone carriage return stays.
      {"AB\r\r\n\n", {L"AB\r", L"", L""}},
      {"AB\rCD\n", {L"AB\rCD", L"", L""}},
      // Bytes of the upper half, the code page's holes included.
      {"\x80\xE9\x81\x8D\x8F\x90\x9D\xFF\n",
       {L"\u20AC\u00E9\u0081\u008D\u008F\u0090\u009D\u00FF", L"", L""}},
  };
  for (const Case& c : cases) {
    WriteBytes("H.TXT", c.bytes);
    bool at_end = false;
    const std::vector<std::wstring> got = ReadPlainLines("H.TXT", "rt", 1100, 3, &at_end);
    EXPECT_EQ(got, c.lines) << c.bytes.size();
    EXPECT_TRUE(at_end) << c.bytes.size();
  }
}

TEST_F(ConfigReader, MaximumLengthOfPlainLines) {
  WriteBytes("M.TXT", "ABCDEFG\nABCDEFG\nABCDEFG\n");
  FILE* f = fOpen(L"M.TXT", L"rt");
  ASSERT_NE(f, nullptr);
  const int maxima[] = {5, 0, -3};
  const wchar_t* const expected[] = {L"ABCDE", L"", L""};
  for (int i = 0; i < 3; ++i) {
    GuardedBuffer line(maxima[i] < 0 ? 1 : static_cast<std::size_t>(maxima[i]) + 1);
    LeerLineaDeFichero(f, line.get(), maxima[i]);
    EXPECT_EQ(line.text(), expected[i]) << maxima[i];
    EXPECT_TRUE(line.guard_intact()) << maxima[i];
  }
  std::fclose(f);
}

TEST_F(ConfigReader, BinaryModeKeepsTheCarriageReturn) {
  WriteBytes("B.TXT", "AB\r\nCD\r\n");
  bool at_end = false;
  EXPECT_EQ(ReadPlainLines("B.TXT", "rb", 80, 3, &at_end),
            (std::vector<std::wstring>{L"AB\r", L"CD\r", L""}));
}

TEST_F(ConfigReader, NumbersOnePerLine) {
  WriteBytes("N.TXT", "12\r\n  -7 x\r\n\r\nabc\r\n" + std::string(100, '1') + "\r\n");
  FILE* f = fOpen(L"N.TXT", L"rt");
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(LeerEnteroDeFichero(f), 12);
  EXPECT_EQ(LeerEnteroDeFichero(f), -7);
  EXPECT_EQ(LeerEnteroDeFichero(f), 0);
  EXPECT_EQ(LeerEnteroDeFichero(f), 0);
  LeerEnteroDeFichero(f);  // whatever 80 digits give; the next read is past the line
  EXPECT_EQ(LeerEnteroDeFichero(f), 0);
  EXPECT_TRUE(std::feof(f));
  std::fclose(f);

  WriteBytes("R.TXT", "1.25\r\nA\r\nAUTO 3\r\n A\r\na1\r\n\r\n-2e1\r\n");
  f = fOpen(L"R.TXT", L"rt");
  ASSERT_NE(f, nullptr);
  const double expected[] = {1.25, 99999.999, 99999.999, 0.0, 0.0, 0.0, -20.0, 0.0};
  for (double e : expected) EXPECT_EQ(LeerRealDeFichero(f), e);
  std::fclose(f);
  EXPECT_EQ(korvalen::kRealNotSet, 99999.999);
}

TEST_F(ConfigReader, MissingFileGivesDefaults) {
  EXPECT_EQ(LeerEnteroDeFichero(nullptr), 0);
  EXPECT_EQ(LeerRealDeFichero(nullptr), 0.0);
  wchar_t line[81] = L"stale";
  wchar_t type = L'A';
  int index = 3;
  int cursor = 4;
  LeerLineaDeCfg(nullptr, line, type, index, cursor);
  EXPECT_EQ(std::wstring(line), L"");
  EXPECT_EQ(type, L' ');
}

// How the suite reads a settings file: dispatch on type and index, read the
// known fields in order, ignore comments and empty lines.
TEST_F(ConfigReader, ReadingLoopOfASettingsFile) {
  WriteBytes("S.CFG",
             "# settings\r\n"
             "A000 12 ;\r\n"
             "A001 \"C:\\CAD\\Parts\"                                            ;\r\n"
             "\r\n"
             "A002 ON ;\r\n"
             "B000 1   2   3   4   5   6   1.500000   A \r\n"
             "Z999 unknown record ;\r\n");
  FILE* f = fOpen(L"S.CFG", L"rt");
  ASSERT_NE(f, nullptr);
  int count = 0, on = 0, records = 0;
  wchar_t path[81] = L"";
  int b[6] = {};
  double reals[2] = {};
  wchar_t line[81];
  wchar_t type = L' ';
  int index = 0, cursor = 0;
  while (!std::feof(f)) {
    LeerLineaDeCfg(f, line, type, index, cursor);
    if (type == L'#' || type == L' ') continue;
    ++records;
    if (type == L'A' && index == 0) LeerUnEntero(line, cursor, count);
    if (type == L'A' && index == 1) LeerUnTexto(line, cursor, path);
    if (type == L'A' && index == 2) LeerSIoNO(line, cursor, on);
    if (type == L'B' && index == 0) {
      for (int& v : b) LeerUnEntero(line, cursor, v);
      for (double& r : reals) LeerUnReal(line, cursor, r);
    }
  }
  std::fclose(f);
  EXPECT_EQ(records, 5);
  EXPECT_EQ(count, 12);
  EXPECT_EQ(std::wstring(path), L"C:\\CAD\\Parts");
  EXPECT_EQ(on, 1);
  EXPECT_EQ(b[0], 1);
  EXPECT_EQ(b[5], 6);
  EXPECT_EQ(reals[0], 1.5);
  EXPECT_EQ(reals[1], korvalen::kRealNotSet);
}

}  // namespace
