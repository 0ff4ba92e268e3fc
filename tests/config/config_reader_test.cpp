// Config record reader: record heads, every field reader with its cursor,
// line capacities and hostile physical lines.
#include "korvalen/config/config_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "guarded_buffer.h"
#include "korvalen/foundation/streams.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::GuardedBuffer;
using korvalen::testing::WriteBytes;

class ConfigReader : public korvalen::testing::TempDirTest {};

TEST(ConfigRecordHead, TypeIndexAndCursor) {
  struct Case {
    std::wstring line;
    wchar_t type_before, type;
    int index, cursor;
  };
  const Case cases[] = {
      {L"A000 5 ;", L'?', L'A', 0, 4},
      {L"  B012 1.5 A ;", L'?', L'B', 12, 6},
      {L"A0", L'?', L'A', 0, 2},
      {L"A 0 x", L'?', L'A', 0, 3},
      {L"A   7", L'?', L'A', 7, 5},
      {L"a7 ;", L'?', L'a', 7, 2},  // letters keep their case
      {L"K001 12", L'?', L'K', 1, 4},
      {L"Z-3 ;", L'?', L'Z', -3, 3},
      {L"C", L'?', L'C', 0, 1},
      {L"   ", L'Q', L'Q', 0, 4},  // blanks only: the type stays
      {L"", L'Q', L'Q', 0, 1},
      {L"\tA000", L'?', L'\t', 0, 5},  // a tab is no blank
      {L"A\v 5 ;", L'?', L'A', 0, 2},  // the index word is "\v", not the 5 behind it
      {L"  #12 x", L'?', L'#', 12, 5},
      // The index word passes through 80 characters; the cursor goes past all of it.
      {L"A" + std::wstring(5000, L'0') + L"9 5 ;", L'?', L'A', 0, 5002}};
  for (const Case& c : cases) {
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

// A reader run on a line, its value rendered as text. Text outputs get exactly
// the room their contract asks for (the line's length plus one); values start
// out as something no reader gives for the lines below.
using Reader = std::wstring (*)(const std::wstring& line, int& cursor, char sep);

std::wstring Render(wchar_t value) { return std::wstring(1, value); }
std::wstring Render(double value) {
  wchar_t text[64];
  std::swprintf(text, 64, L"%.12g", value);
  return text;
}
template <typename T>
std::wstring Render(T value) {
  return std::to_wstring(value);
}

template <void (*F)(const wchar_t*, int&, wchar_t*)>
std::wstring Text(const std::wstring& line, int& cursor, char) {
  std::vector<wchar_t> out(line.size() + 1, L'#');
  F(line.c_str(), cursor, out.data());
  return out.data();
}
template <void (*F)(const wchar_t*, int&, char, wchar_t*)>
std::wstring TextSep(const std::wstring& line, int& cursor, char sep) {
  std::vector<wchar_t> out(line.size() + 1, L'#');
  F(line.c_str(), cursor, sep, out.data());
  return out.data();
}
template <typename T, void (*F)(const wchar_t*, int&, T&)>
std::wstring Value(const std::wstring& line, int& cursor, char) {
  T value = static_cast<T>(-1);
  F(line.c_str(), cursor, value);
  return Render(value);
}
std::wstring IntSep(const std::wstring& line, int& cursor, char sep) {
  int value = -1;
  LeerUnEnteroSep(line.c_str(), cursor, sep, value);
  return Render(value);
}

constexpr Reader kStr = Text<LeerUnStr>;
constexpr Reader kTexto = Text<LeerUnTexto>;
constexpr Reader kString = Text<LeerUnString>;
constexpr Reader kStrSep = TextSep<LeerUnStrSep>;
constexpr Reader kStringSep = TextSep<LeerUnStringSep>;
constexpr Reader kIntSep = IntSep;
constexpr Reader kChar = Value<wchar_t, LeerUnChar>;
constexpr Reader kSwitch = Value<int, LeerSIoNO>;
constexpr Reader kSwitchInt = Value<int, LeerSIoNOInt>;
constexpr Reader kShort = Value<short, LeerUnShort>;
constexpr Reader kInt = Value<int, LeerUnEntero>;
constexpr Reader kLong = Value<LONG, LeerUnLong>;
constexpr Reader kReal = Value<double, LeerUnReal>;

TEST(ConfigFieldReaders, ValuesAndCursors) {
  struct Case {
    std::wstring line;
    int cursor;
    std::vector<Reader> readers;  // one per step, or one for every step
    std::vector<std::wstring> values;
    std::vector<int> cursors;  // after each step
    char sep = ' ';
  };
  const Case cases[] = {
      // Past the end fields read as empty words; the text reader ends two past
      // the end when it finds no quote.
      {L"A000 5 ;",
       4,
       {kInt, kStr, kInt, kChar, kTexto, kReal, kString},
       {L"5", L";", L"0", L" ", L"", L"0", L""},
       {6, 8, 8, 8, 10, 10, 10}},
      {L"  B012 1.5 A ;", 6, {kReal}, {L"1.5", L"99999.999"}, {10, 12}},
      // Several blanks between fields and no terminator.
      {L"B000 1   2   1.500000   A ",
       4,
       {kInt, kInt, kReal, kReal},
       {L"1", L"2", L"1.5", L"99999.999"},
       {6, 10, 21, 25}},
      {L"A001 \"two words\" ;", 4, {kTexto, kStr}, {L"two words", L";"}, {16, 18}},
      {L"A001 \"two words\" ;", 4, {kStr}, {L"\"two", L"words\""}, {9, 16}},
      {L"A001 \"two words\" ;", 4, {kString}, {L"two words", L";"}, {16, 18}},
      {L"A001 \"unterminated", 4, {kString}, {L"unterminated"}, {19}},
      {L"A001 \"unterminated", 4, {kTexto}, {L"unterminated"}, {19}},
      {L"A001 abc ;", 4, {kTexto}, {L""}, {12}},
      // The opening quote is searched for over anything.
      {L"A001 x y\"z\" w", 4, {kTexto, kStr}, {L"z", L"w"}, {11, 13}},
      {L"A001 \"\" x", 4, {kString, kStr}, {L"", L"x"}, {7, 9}},
      {L"A000 5", 20, {kTexto}, {L""}, {22}},
      {L"A000 5", 20, {kStr, kInt, kString}, {L"", L"0", L""}, {20, 20, 20}},
      {L"A000 5", -3, {kStr}, {L"A000"}, {4}},
      // Only an upper-case 'A' stands for the unset real.
      {L"A AUTO A12 a 1e2 -2.5x",
       0,
       {kReal},
       {L"99999.999", L"99999.999", L"99999.999", L"0", L"100", L"-2.5"},
       {1, 6, 10, 12, 16, 22}},
      {L"on On ON oN SI 1 OFF ONE",
       0,
       {kSwitch},
       {L"1", L"1", L"1", L"1", L"0", L"0", L"0", L"0"},
       {2, 5, 8, 11, 14, 16, 20, 24}},
      {L"0 7 -3 x 0007", 0, {kSwitchInt}, {L"0", L"1", L"1", L"0", L"1"}, {1, 3, 6, 8, 13}},
      {L"70000 -32769 32767 -5",
       0,
       {kShort},
       {L"4464", L"32767", L"32767", L"-5"},
       {5, 12, 18, 21}},
      {L"2147483647 -12abc", 0, {kLong}, {L"2147483647", L"-12"}, {10, 17}},
      {L"  +42 12abc abc", 0, {kInt}, {L"42", L"12", L"0"}, {5, 11, 15}},
      // A word of control characters reads as 0, whatever number follows it.
      {L"\v 12 \t 7 \r 3",
       0,
       {kInt, kInt, kReal, kReal, kShort},
       {L"0", L"12", L"0", L"7", L"0"},
       {1, 4, 6, 8, 10}},
      // The terminator is an ordinary word.
      {L"A000  ;", 4, {kChar}, {L";", L" "}, {7, 7}},
      {L"A000", 4, {kChar}, {L" "}, {4}},
      {L"A000 xyz", 4, {kChar}, {L"x"}, {8}},
      // With a separator the blank is an ordinary character.
      {L"1, 2", 0, {kStrSep}, {L"1", L" 2"}, {1, 4}, ','},
      {L"a,,b", 0, {kStrSep}, {L"a", L"b"}, {1, 4}, ','},
      {L"10;20;;30", 0, {kIntSep}, {L"10", L"20", L"30"}, {2, 5, 9}, ';'},
      {L"1525 9", 0, {kIntSep}, {L"1", L"2", L"9"}, {1, 3, 6}, '5'},
      {L",\"a,b\",c", 0, {kStringSep}, {L"a,b", L"c"}, {6, 8}, ','},
      {L"a\u00E9b", 0, {kStrSep}, {L"a", L"b"}, {1, 3}, '\xE9'},
      // A tab belongs to the word.
      {L"A000 1\t2 ;", 4, {kStr}, {L"1\t2"}, {8}},
      {L"A000 1\t2 ;", 4, {kInt}, {L"1"}, {8}},
      // A record without its terminator, and fields missing at its end.
      {L"K001 12",
       4,
       {kInt, kReal, kSwitch, kSwitchInt, kLong, kString},
       {L"12", L"0", L"0", L"0", L"0", L""},
       {7, 7, 7, 7, 7, 7}},
  };
  for (const Case& c : cases) {
    ASSERT_EQ(c.values.size(), c.cursors.size()) << c.line;
    int cursor = c.cursor;
    for (std::size_t i = 0; i < c.values.size(); ++i) {
      const Reader reader = c.readers.size() == 1 ? c.readers[0] : c.readers.at(i);
      EXPECT_EQ(reader(c.line, cursor, c.sep), c.values[i]) << c.line << " step " << i;
      EXPECT_EQ(cursor, c.cursors[i]) << c.line << " step " << i;
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
      {zeros77 + L"12", kInt, L"12"},                  // 79: whole
      {zeros77 + L"012", kInt, L"1"},                  // 80: last digit cut
      {std::wstring(4998, L'0') + L"12", kInt, L"0"},  // 5000
      {zeros77 + L"012", kShort, L"1"},
      {std::wstring(76, L'0') + L"2.5", kReal, L"2.5"},  // 79
      {std::wstring(77, L'0') + L"2.5", kReal, L"2"},    // 80: the 5 is cut
      {L"A" + std::wstring(4999, L'x'), kReal, L"99999.999"},
      {L"ON" + std::wstring(4998, L'x'), kSwitch, L"0"},
      {L"z" + std::wstring(4999, L'y'), kChar, L"z"},
      {std::wstring(5000, L'w'), kStr, std::wstring(5000, L'w')},  // the caller's buffer
      {L"\"" + std::wstring(5000, L'q') + L"\"", kString, std::wstring(5000, L'q')},
  };
  for (const Case& c : cases) {
    const std::wstring line = L"A000 " + c.word + L" 7 ;";
    int cursor = 4;
    EXPECT_EQ(c.reader(line, cursor, ' '), c.value) << c.word.size();
    EXPECT_EQ(cursor, static_cast<int>(5 + c.word.size())) << c.word.size();
    EXPECT_EQ(kInt(line, cursor, ' '), L"7") << c.word.size();
  }
}

// --- lines from files ---------------------------------------------------------

struct CfgRead {
  std::wstring line;
  wchar_t type;
  int index;
  int cursor;
};

std::vector<CfgRead> ReadRecords(const char* name, bool long_lines, int reads) {
  std::vector<CfgRead> out;
  FILE* f = fOpen(name, "rt");
  if (f == nullptr) return out;
  GuardedBuffer line(long_lines ? 501 : 81);
  wchar_t type = L'?';
  int index = -5;
  int cursor = -5;
  for (int i = 0; i < reads; ++i) {
    (long_lines ? LeerLineaLargaDeCfg : LeerLineaDeCfg)(f, line.get(), type, index, cursor);
    EXPECT_TRUE(line.guard_intact()) << i;
    out.push_back({line.text(), type, index, cursor});
  }
  std::fclose(f);
  return out;
}

TEST_F(ConfigReader, ClassifiesCommentsEmptyLinesAndRecords) {
  WriteBytes("T.CFG", "A005 5 ;\r\n#A000 5 ;\r\n    \r\n\r\n  B012 1.5 A ;\r\nK001 12");
  const std::vector<CfgRead> got = ReadRecords("T.CFG", false, 7);
  const std::vector<CfgRead> want = {
      {L"A005 5 ;", L'A', 5, 4},
      {L"#A000 5 ;", L'#', 5, 4},  // a comment: index and cursor untouched
      {L"    ", L'#', 0, 5},       // blanks only: the type as it was, index 0
      {L"", L' ', 0, 5},           // empty: index and cursor untouched
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
    int length, kept;
  };
  const Case cases[] = {
      {false, 79, 79},   {false, 80, 80},   {false, 81, 80},     {false, 100, 80},
      {false, 1023, 80}, {false, 5000, 80}, {false, 100000, 80}, {true, 80, 80},
      {true, 499, 499},  {true, 500, 500},  {true, 501, 500},    {true, 100000, 500},
  };
  for (const Case& c : cases) {
    const std::string body = "C001 " + std::string(static_cast<std::size_t>(c.length) - 5, 'x');
    WriteBytes("T.CFG", body + "\r\nD002 7 ;\r\n");
    const std::vector<CfgRead> got = ReadRecords("T.CFG", c.long_lines, 3);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0].line, std::wstring(body.begin(), body.begin() + c.kept)) << c.length;
    EXPECT_EQ(got[0].type, L'C') << c.length;
    EXPECT_EQ(got[1].line, L"D002 7 ;") << c.length;
    EXPECT_EQ(got[1].index, 2) << c.length;
    EXPECT_EQ(got[2].type, L' ') << c.length;
  }
}

// Three reads of plain lines; the file must be at its end after them.
std::vector<std::wstring> ReadThreeLines(const char* mode, int max_length) {
  std::vector<std::wstring> out;
  FILE* f = fOpen("L.TXT", mode);
  if (f == nullptr) return out;
  GuardedBuffer line(max_length < 0 ? 1 : static_cast<std::size_t>(max_length) + 1);
  for (int i = 0; i < 3; ++i) {
    LeerLineaDeFichero(f, line.get(), max_length);
    EXPECT_TRUE(line.guard_intact()) << i;
    out.push_back(line.text());
  }
  EXPECT_TRUE(std::feof(f));
  std::fclose(f);
  return out;
}

// A physical line is cut at 1023 characters whatever its length (around the
// sizes in which it is taken from the stream), and the whole of it is
// consumed: the next read always starts on the next line.
TEST_F(ConfigReader, PhysicalLinesOfAnyLength) {
  const int lengths[] = {0,    1,    126,  127,  128,  129,  638,  639,  640,   1022,
                         1023, 1024, 2045, 2046, 2047, 2048, 2049, 4096, 100000};
  for (const char* end : {"\n", "\r\n"}) {
    for (int length : lengths) {
      WriteBytes("L.TXT", std::string(static_cast<std::size_t>(length), 'x') + end + "NEXT" + end);
      const std::wstring first(static_cast<std::size_t>(std::min(length, 1023)), L'x');
      EXPECT_EQ(ReadThreeLines("rt", 2000), (std::vector<std::wstring>{first, L"NEXT", L""}))
          << length;
    }
  }
}

TEST_F(ConfigReader, HostileBytesAndShortLimits) {
  struct Case {
    std::string bytes;
    std::vector<std::wstring> lines;
    const char* mode = "rt";
    int max_length = 1100;
  };
  const std::string x1500(1500, 'x');
  const Case cases[] = {
      // A NUL byte ends the line where it stands; the rest of it is skipped.
      {std::string("AB\0CD\nNEXT\n", 11), {L"AB", L"NEXT", L""}},
      {std::string("\0\nNEXT\n", 7), {L"", L"NEXT", L""}},
      {std::string("AB\0", 3) + std::string(300, 'z') + "\nNEXT\n", {L"AB", L"NEXT", L""}},
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
      // Binary mode keeps the carriage return of CR LF.
      {"AB\r\nCD\r\n", {L"AB\r", L"CD\r", L""}, "rb"},
      // Bytes of the upper half, the code page's holes included.
      {"\x80\xE9\x81\x8D\x8F\x90\x9D\xFF\n",
       {L"\u20AC\u00E9\u0081\u008D\u008F\u0090\u009D\u00FF", L"", L""}},
      // The caller's limit, with nothing at all for 0 or less.
      {"ABCDEFG\nABCDEFG\n", {L"ABCDE", L"ABCDE", L""}, "rt", 5},
      {"ABCDEFG\nABCDEFG\n", {L"", L"", L""}, "rt", 0},
      {"ABCDEFG\nABCDEFG\n", {L"", L"", L""}, "rt", -3},
  };
  for (const Case& c : cases) {
    WriteBytes("L.TXT", c.bytes);
    EXPECT_EQ(ReadThreeLines(c.mode, c.max_length), c.lines) << c.bytes.size();
  }
}

// Lines are taken from the stream's buffer when they lie whole in it, and
// through stdio when they do not: across refills, longer than the buffer,
// with odd bytes at every offset of the conversion's blocks, with the
// stream's buffer set by the caller, or with none.
TEST_F(ConfigReader, LinesAcrossTheStreamBuffer) {
  std::string raw;
  std::vector<std::wstring> want;
  unsigned seed = 12345;
  const auto next = [&seed](unsigned range) {
    seed = seed * 1103515245u + 12345u;
    return (seed >> 8) % range;
  };
  while (raw.size() < 300000) {
    const std::size_t length = next(10) == 0 ? 900 + next(2500) : next(140);
    std::string bytes;
    for (std::size_t k = 0; k < length; ++k)
      bytes += static_cast<char>('a' + (k + raw.size()) % 26);
    // An odd byte somewhere in one line of three: a NUL ends the text there.
    const char odd[] = {'\xE9', '\x80', '\0'};
    if (length > 0 && next(3) == 0) bytes[next(static_cast<unsigned>(length))] = odd[next(3)];
    std::wstring text;
    for (char c : bytes) {
      if (c == '\0' || text.size() == 1023) break;
      text += c == '\x80' ? L'\u20AC' : static_cast<wchar_t>(static_cast<unsigned char>(c));
    }
    raw += bytes + (next(2) == 0 ? "\r\n" : "\n");
    want.push_back(text);
  }
  want.push_back(L"");  // the read that meets the end of the file
  WriteBytes("B.TXT", raw);

  for (const int buffer : {0, 1000, 4096, -1}) {
    FILE* f = fOpen("B.TXT", "rt");
    ASSERT_NE(f, nullptr);
    std::vector<char> storage(buffer > 0 ? static_cast<std::size_t>(buffer) : 1);
    if (buffer > 0) std::setvbuf(f, storage.data(), _IOFBF, storage.size());
    if (buffer < 0) std::setvbuf(f, nullptr, _IONBF, 0);
    std::vector<std::wstring> got;
    GuardedBuffer line(1101);
    while (!std::feof(f) && got.size() <= want.size()) {
      LeerLineaDeFichero(f, line.get(), 1100);
      got.push_back(line.text());
    }
    EXPECT_TRUE(line.guard_intact());
    std::fclose(f);
    ASSERT_EQ(got.size(), want.size()) << buffer;
    for (std::size_t i = 0; i < want.size(); ++i) {
      ASSERT_EQ(got[i], want[i]) << "line " << i << ", stream buffer " << buffer;
    }
  }
}

// Reading lines leaves the stream where stdio expects it, and takes back what
// stdio pushed back.
TEST_F(ConfigReader, LinesBetweenOtherStdioCalls) {
  WriteBytes("S.TXT", "AAA\r\nBBB\r\nCCC\r\nDDD\r\n");
  FILE* f = fOpen("S.TXT", "rt");
  ASSERT_NE(f, nullptr);
  wchar_t line[81];
  LeerLineaDeFichero(f, line, 80);
  EXPECT_STREQ(line, L"AAA");
  EXPECT_EQ(std::fgetc(f), 'B');
  std::ungetc('B', f);
  LeerLineaDeFichero(f, line, 80);
  EXPECT_STREQ(line, L"BBB");
  EXPECT_EQ(std::fgetc(f), 'C');
  std::ungetc('X', f);  // not the byte read: stdio keeps it apart
  LeerLineaDeFichero(f, line, 80);
  EXPECT_STREQ(line, L"XCC");
  char first[2];
  ASSERT_NE(std::fgets(first, sizeof first, f), nullptr);
  EXPECT_STREQ(first, "D");
  LeerLineaDeFichero(f, line, 80);
  EXPECT_STREQ(line, L"DD");
  EXPECT_FALSE(std::feof(f));
  LeerLineaDeFichero(f, line, 80);
  EXPECT_STREQ(line, L"");
  EXPECT_TRUE(std::feof(f));
  std::fclose(f);
}

// Threads sharing one stream each take whole lines, and every line once.
TEST_F(ConfigReader, ThreadsSharingAStream) {
  constexpr int kLines = 40000;
  std::string raw;
  char text[32];
  for (int i = 0; i < kLines; ++i) {
    std::snprintf(text, sizeof text, "A%03d %d ;\r\n", i % 1000, i);
    raw += text;
  }
  WriteBytes("T.CFG", raw);
  FILE* f = fOpen("T.CFG", "rt");
  ASSERT_NE(f, nullptr);
  std::vector<int> seen[2];
  const auto reader = [f](std::vector<int>& numbers) {
    wchar_t line[81];
    wchar_t type = L' ';
    int index = 0, cursor = 0, number = 0;
    while (!std::feof(f)) {
      LeerLineaDeCfg(f, line, type, index, cursor);
      if (type != L'A') continue;
      LeerUnEntero(line, cursor, number);
      numbers.push_back(number % 1000 == index ? number : -1);
    }
  };
  std::thread other(reader, std::ref(seen[1]));
  reader(seen[0]);
  other.join();
  std::fclose(f);
  std::vector<int> all(seen[0]);
  all.insert(all.end(), seen[1].begin(), seen[1].end());
  std::sort(all.begin(), all.end());
  ASSERT_EQ(all.size(), static_cast<std::size_t>(kLines));
  for (int i = 0; i < kLines; ++i) ASSERT_EQ(all[static_cast<std::size_t>(i)], i);
}

TEST_F(ConfigReader, NumbersOnePerLine) {
  WriteBytes("N.TXT", "12\r\n  -7 x\r\n\r\nabc\r\n" + std::string(100, '1') + "\r\n");
  FILE* f = fOpen(L"N.TXT", L"rt");
  ASSERT_NE(f, nullptr);
  for (int e : {12, -7, 0, 0}) EXPECT_EQ(LeerEnteroDeFichero(f), e);
  LeerEnteroDeFichero(f);  // whatever 80 digits give; the next read is past the line
  EXPECT_EQ(LeerEnteroDeFichero(f), 0);
  EXPECT_TRUE(std::feof(f));
  std::fclose(f);

  WriteBytes("R.TXT", "1.25\r\nA\r\nAUTO 3\r\n A\r\na1\r\n\r\n-2e1\r\n");
  f = fOpen(L"R.TXT", L"rt");
  ASSERT_NE(f, nullptr);
  for (double e : {1.25, 99999.999, 99999.999, 0.0, 0.0, 0.0, -20.0, 0.0}) {
    EXPECT_EQ(LeerRealDeFichero(f), e);
  }
  std::fclose(f);

  // A file that did not open reads as an empty one.
  EXPECT_EQ(LeerEnteroDeFichero(nullptr), 0);
  EXPECT_EQ(LeerRealDeFichero(nullptr), 0.0);
  wchar_t line[81] = L"stale";
  wchar_t type = L'A';
  int index = 3, cursor = 4;
  LeerLineaDeCfg(nullptr, line, type, index, cursor);
  EXPECT_EQ(std::wstring(line), L"");
  EXPECT_EQ(type, L' ');
}

}  // namespace
