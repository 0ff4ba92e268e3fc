// Config record writer: in-place edits inside the record's width, exact bytes
// of written lines, whole-record builders, and round trips through the reader.
#include "korvalen/config/config_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <string>
#include <vector>

#include "guarded_buffer.h"
#include "korvalen/config/config_reader.h"
#include "korvalen/foundation/streams.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::GuardedBuffer;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class ConfigWriter : public korvalen::testing::TempDirTest {};

std::wstring Blanks(int n) { return std::wstring(static_cast<std::size_t>(n), L' '); }

// --- in-place writers -----------------------------------------------------------

// A writer given its value as text (numbers are parsed from it).
using Writer = void (*)(wchar_t* line, int& cursor, const std::wstring& value);

template <void (*F)(wchar_t*, int&, const wchar_t*)>
void Text(wchar_t* line, int& cursor, const std::wstring& value) {
  F(line, cursor, value.c_str());
}
template <typename T, void (*F)(wchar_t*, int&, T&)>
void Value(wchar_t* line, int& cursor, const std::wstring& value) {
  T v = static_cast<T>(std::stod(value));
  F(line, cursor, v);
}

constexpr Writer kStr = Text<EscribirUnStr>;
constexpr Writer kTexto = Text<EscribirUnTexto>;
constexpr Writer kForzado = Text<EscribirUnTextoForzado>;
constexpr Writer kSwitch = Value<int, EscribirSIoNO>;
constexpr Writer kInt = Value<int, EscribirUnEntero>;
constexpr Writer kLong = Value<LONG, EscribirUnLong>;
constexpr Writer kReal = Value<double, EscribirUnReal>;
constexpr Writer kRealLargo = Value<double, EscribirUnRealLargo>;

TEST(ConfigFieldWriters, EditInPlace) {
  struct Case {
    std::wstring line;
    int cursor;
    Writer writer;
    std::wstring value, expected;
    int cursor_after;
  };
  const std::wstring real_line = L"A002 0.000" + Blanks(6) + L";";
  const std::wstring wide_line = L"A000 5" + Blanks(16) + L";";
  const Case cases[] = {
      {L"A000 5 ;", 4, kInt, L"7", L"A000 7 ;", 6},
      // Longer than the room: over the ';' up to the end of the line.
      {L"A000 5 ;", 4, kInt, L"12345", L"A000 123", 8},
      {L"A000 5 ;", 4, kInt, L"-3", L"A000 -3;", 7},
      // Every later field is cleared.
      {L"B000 1 2 3 ;", 6, kInt, L"9", L"B000 1 9   ;", 8},
      {wide_line, 4, kInt, L"-2147483648", L"A000 -2147483648" + Blanks(6) + L";", 16},
      {wide_line, 4, kLong, L"-2147483648", L"A000 -2147483648" + Blanks(6) + L";", 16},
      {wide_line, 4, kLong, L"2147483647", L"A000 2147483647" + Blanks(7) + L";", 15},
      {L"A000 5 ;", 4, kStr, L"x", L"A000 x ;", 6},
      {L"A000 5 ;", 4, kStr, L"abcdefgh", L"A000 abc", 8},
      {L"A000 5 6", 4, kStr, L"7", L"A000 7  ", 6},
      {L"A000 ;", 5, kStr, L"x", L"A000 ;", 6},  // on the ';': no room at all
      {L"A000 5 ;", 12, kInt, L"7", L"A000 5 ;", 13},
      {L"A000 5 ;", -2, kInt, L"7", L" 7     ;", 2},
      {L"A001 OFF ;", 4, kSwitch, L"5", L"A001 ON  ;", 7},
      {L"A001 OFF ;", 4, kSwitch, L"-1", L"A001 ON  ;", 7},
      {L"A001 ON  ;", 4, kSwitch, L"0", L"A001 OFF ;", 8},
      {L"A001 \"ab\"     ;", 4, kTexto, L"abc", L"A001 \"abc\"    ;", 10},
      // Cut so that the closing quote takes the last position.
      {L"A001 \"ab\"     ;", 4, kTexto, L"abcdefghijklmnopqrst", L"A001 \"abcdefgh\"", 15},
      {L"A001 \"ab\" ;", 4, kTexto, L"", L"A001 \"\"   ;", 7},
      {L"A001 x", 5, kTexto, L"abc", L"A001  ", 6},     // no room: nothing written
      {L"A001 xy", 5, kTexto, L"abc", L"A001  \"", 7},  // the closing quote wins
      // Forced: lengthens the line, the terminator and what follows it gone.
      {L"A001 \"ab\" ;", 4, kForzado, L"abcdefgh", L"A001 \"abcdefgh\"", 15},
      {L"A001 \"ab\"     ;", 4, kForzado, L"abc", L"A001 \"abc\"    ;", 10},
      {L"A001 \"ab\" ;", 4, kForzado, L"abcd", L"A001 \"abcd\"", 11},  // just fits
      {L"A001 \"ab\" ;", 4, kForzado, L"abcde", L"A001 \"abcde\"", 12},
      {L"A001 \"ab\" ; tail", 4, kForzado, L"abcdefghijklmn", L"A001 \"abcdefghijklmn\"", 21},
      {L"A001", 4, kForzado, L"abc", L"A001 \"abc\"", 10},
      // The unset real goes out as its digits (no writer produces the 'A').
      {real_line, 4, kReal, L"99999.999", L"A002 99999.999  ;", 14},
      {real_line, 4, kReal, L"1", L"A002 1.000" + Blanks(6) + L";", 10},
      {real_line, 4, kRealLargo, L"1", L"A002 1.000000   ;", 13},
      {real_line, 4, kReal, L"12.3456", L"A002 12.346     ;", 11},
      {real_line, 4, kRealLargo, L"-0.125", L"A002 -0.125000  ;", 14},
      // Exact halves (binary fractions such as 1/16) round away from zero on
      // every system; a decimal half that a double holds only below the half
      // rounds down.
      {real_line, 4, kReal, L"0.0625", L"A002 0.063" + Blanks(6) + L";", 10},
      {real_line, 4, kReal, L"-0.0625", L"A002 -0.063     ;", 11},
      {real_line, 4, kRealLargo, L"0.0078125", L"A002 0.007813   ;", 13},
      {real_line, 4, kRealLargo, L"-2.5078125", L"A002 -2.507813  ;", 14},
      {real_line, 4, kReal, L"1.0005", L"A002 1.000" + Blanks(6) + L";", 10},
  };
  for (const Case& c : cases) {
    std::size_t capacity = c.line.size() + 1;
    if (c.writer == kForzado) {
      capacity = std::max(capacity, static_cast<std::size_t>(c.cursor) + c.value.size() + 4);
    }
    GuardedBuffer line(capacity, c.line);
    int cursor = c.cursor;
    c.writer(line.get(), cursor, c.value);
    EXPECT_EQ(line.text(), c.expected) << c.line << " <- " << c.value;
    EXPECT_EQ(cursor, c.cursor_after) << c.line << " <- " << c.value;
    EXPECT_TRUE(line.guard_intact()) << c.line << " <- " << c.value;
  }
}

// A real too long for the 80-character value buffer is cut, not overflowed.
TEST(ConfigFieldWriters, HugeRealIsCutToItsBuffer) {
  const std::wstring original = L"A002 " + Blanks(200) + L";";
  GuardedBuffer line(original.size() + 1, original);
  int cursor = 4;
  double value = 1e100;
  EscribirUnReal(line.get(), cursor, value);
  EXPECT_EQ(cursor, 5 + 79);
  const std::wstring text = line.text();
  EXPECT_EQ(text.substr(0, 21), L"A002 1000000000000000");
  EXPECT_EQ(text.substr(84), Blanks(121) + L";");
  EXPECT_TRUE(line.guard_intact());
}

TEST(ConfigFieldWriters, TextIntoSeparateDestination) {
  const std::wstring long_source = L"A001 " + std::wstring(95, L'x');
  const std::wstring t30(30, L't');
  struct Case {
    std::wstring source;
    int cursor;
    std::wstring text, expected;
    int cursor_after;
  };
  const Case cases[] = {
      {L"A001 \"ab\"     ;", 4, L"abc", L"A001 \"abc\"    ;", 10},
      {L"A001 \"ab\" ;", 4, L"abcd", L"A001 \"abcd\"", 11},
      // Does not fit: the source up to the cursor, then the quoted text.
      {L"A001 x ;", 4, L"abcdefgh", L"A001 \"abcdefgh\"", 4},
      {L"A001", 4, L"abc", L"A001\"abc\"", 4},
      // The prefix passes through 80 characters: 79 survive.
      {long_source, 77, t30, long_source.substr(0, 78) + L"\"" + t30 + L"\"", 77},
      {long_source, 78, t30, long_source.substr(0, 79) + L"\"" + t30 + L"\"", 78},
      {long_source, 79, t30, long_source.substr(0, 79) + L"\"" + t30 + L"\"", 79},
      {long_source, 90, t30, long_source.substr(0, 79) + L"\"" + t30 + L"\"", 90},
  };
  for (const Case& c : cases) {
    GuardedBuffer destination(std::max(c.source.size() + 1, 79 + c.text.size() + 3), L"stale");
    int cursor = c.cursor;
    EscribirUnTextoLargo(c.source.c_str(), destination.get(), cursor, c.text.c_str());
    EXPECT_EQ(destination.text(), c.expected) << c.source << " @" << c.cursor;
    EXPECT_EQ(cursor, c.cursor_after) << c.source << " @" << c.cursor;
    EXPECT_TRUE(destination.guard_intact());
  }
}

// --- line output ------------------------------------------------------------------

TEST_F(ConfigWriter, LineBytesOnDisk) {
  struct Case {
    std::vector<std::wstring> lines;
    std::string bytes;
  };
  const Case cases[] = {
      {{L"A000 5 ;", L""}, "A000 5 ;\r\n\r\n"},
      {{L"\u00D1and\u00FA \u20AC"},
       "\xD1"
       "and\xFA \x80\r\n"},
      // Outside the code page: the line, its line end included, stops there,
      // so the next line joins it.
      {{L"A001 \"x\u4E2Dy\" ;"}, "A001 \"x"},
      {{L"A001 \u4E2D ;", L"B000 1 ;"}, "A001 B000 1 ;\r\n"},
      // The work line holds 498 characters and the line end.
      {{std::wstring(498, L'a')}, std::string(498, 'a') + "\r\n"},
      {{std::wstring(499, L'b')}, std::string(498, 'b') + "\r\n"},
      {{std::wstring(5000, L'c')}, std::string(498, 'c') + "\r\n"},
  };
  for (const Case& c : cases) {
    FILE* f = fOpen(L"OUT.CFG", L"wt");
    ASSERT_NE(f, nullptr);
    for (const std::wstring& line : c.lines) EscribirLineaEnFichero(f, line.c_str());
    std::fclose(f);
    EXPECT_EQ(ReadBytes("OUT.CFG"), c.bytes) << c.lines[0].size();
  }
}

// --- whole records ----------------------------------------------------------------

// A builder given its value as text (numbers are parsed from it).
using Builder = void (*)(const wchar_t* head, const std::wstring& value, wchar_t* out);

void BuildText(const wchar_t* head, const std::wstring& value, wchar_t* out) {
  DameParametroTexto(head, value.c_str(), out);
}
template <typename T, void (*F)(const wchar_t*, T, wchar_t*)>
void Build(const wchar_t* head, const std::wstring& value, wchar_t* out) {
  F(head, static_cast<T>(std::stod(value)), out);
}

TEST(ConfigRecordBuilders, Records) {
  const Builder text = BuildText;
  const Builder integer = Build<int, DameParametroEntero>;
  const Builder long_int = Build<LONG, DameParametroLong>;
  const Builder real = Build<double, DameParametroReal>;
  const Builder boolean = Build<int, DameParametroBool>;
  const Builder on_off = Build<int, DameONOFFConUnInt>;
  struct Case {
    Builder builder;
    const wchar_t* head;
    std::wstring value, expected;
  };
  const std::wstring v68(68, L'v'), v69(69, L'v'), v70(70, L'v');
  const Case cases[] = {
      // Texts are filled with blanks to put the ';' in column 77.
      {text, L"A001 \"", L"abc", L"A001 \"abc\"" + Blanks(66) + L";"},
      {text, L"A000 x", L"abc", L"A000 \"abc\"" + Blanks(66) + L";"},
      {text, L"Z000 \"", L"", L"Z000 \"\"" + Blanks(69) + L";"},
      {text, L"A001 \"", v68, L"A001 \"" + v68 + L"\" ;"},
      {text, L"A001 \"", v69, L"A001 \"" + v69 + L"\";"},
      {text, L"A001 \"", v70, L"A001 \"" + v70 + L"\";"},
      {text, L"", L"abc", L"\"abc\"" + Blanks(71) + L";"},
      {integer, L"A000 ", L"5", L"A000 5 ;"},
      {integer, L"A000 ", L"-2147483648", L"A000 -2147483648 ;"},
      {long_int, L"A000 ", L"2147483647", L"A000 2147483647 ;"},
      {long_int, L"A000 ", L"-7", L"A000 -7 ;"},
      {real, L"A002 ", L"2.5", L"A002 2.500 ;"},
      {real, L"A002 ", L"99999.999", L"A002 99999.999 ;"},
      {real, L"A002 ", L"-0.25", L"A002 -0.250 ;"},
      {real, L"A002 ", L"2.0625", L"A002 2.063 ;"},
      {real, L"A002 ", L"-1048576.5625", L"A002 -1048576.563 ;"},
      {boolean, L"A001 ", L"0", L"A001 OFF ;"},
      {boolean, L"A001 ", L"-7", L"A001 ON ;"},
      {on_off, L"A001 ", L"1", L"A001 ON ;"},
      {on_off, L"A001 ", L"0", L"A001 OFF ;"},
  };
  for (const Case& c : cases) {
    GuardedBuffer out(c.expected.size() + 1);
    c.builder(c.head, c.value, out.get());
    EXPECT_EQ(out.text(), c.expected) << c.head << c.value;
    EXPECT_TRUE(out.guard_intact()) << c.head << c.value;
  }
  // A real of 300 digits is written whole: its buffer holds any double.
  GuardedBuffer out(400);
  DameParametroReal(L"A002 ", -1e300, out.get());
  const std::wstring huge = out.text();
  ASSERT_EQ(huge.size(), 5u + 1 + 301 + 4 + 2);
  EXPECT_EQ(huge.substr(0, 8), L"A002 -10");
  EXPECT_EQ(huge.substr(huge.size() - 6), L".000 ;");
  EXPECT_TRUE(out.guard_intact());
}

// --- round trips through the reader -------------------------------------------------

TEST_F(ConfigWriter, BuiltRecordsReadBack) {
  const int ints[] = {0, -1, 42, INT_MAX, INT_MIN};
  const double reals[] = {0.0, 2.5, -1234.125, 1e6, korvalen::kRealNotSet};
  const std::wstring texts[] = {L"", L"two words", L"C:\\CAD\\Parts", std::wstring(69, L'x'),
                                L"\u00E9t\u00E9 \u20AC"};
  FILE* f = fOpen(L"RT.CFG", L"wt");
  ASSERT_NE(f, nullptr);
  wchar_t line[501];
  const auto put = [&](auto build, const wchar_t* head, auto value) {
    build(head, value, line);
    EscribirLineaEnFichero(f, line);
  };
  for (int v : ints) put(DameParametroEntero, L"A000 ", v);
  for (double v : reals) put(DameParametroReal, L"B000 ", v);
  for (int v : {0, 1, 5}) put(DameParametroBool, L"C000 ", v);
  for (const std::wstring& v : texts) put(DameParametroTexto, L"D000 \"", v.c_str());
  std::fclose(f);

  f = fOpen(L"RT.CFG", L"rt");
  ASSERT_NE(f, nullptr);
  wchar_t type = L' ';
  int index = 0, cursor = 0;
  const auto read = [&](wchar_t want, auto reader, auto value) {
    LeerLineaDeCfg(f, line, type, index, cursor);
    EXPECT_EQ(type, want);
    reader(line, cursor, value);
    return value;
  };
  const auto text = [](const wchar_t* l, int& c, std::wstring& out) {
    wchar_t t[81] = L"?";
    LeerUnTexto(l, c, t);
    out = t;
  };
  for (int v : ints) EXPECT_EQ(read(L'A', LeerUnEntero, -99), v);
  for (double v : reals) EXPECT_EQ(read(L'B', LeerUnReal, -99.0), v);
  for (int v : {0, 1, 1}) EXPECT_EQ(read(L'C', LeerSIoNO, -99), v);
  for (const std::wstring& v : texts) EXPECT_EQ(read(L'D', text, std::wstring(L"?")), v);
  LeerLineaDeCfg(f, line, type, index, cursor);  // past the last record
  EXPECT_EQ(type, L' ');
  EXPECT_TRUE(std::feof(f));
  std::fclose(f);
}

// An edit the way the suite makes one: copy the file line by line to a work
// file, editing one record from its first changed field to its last, and
// dropping blank lines on the way.
TEST_F(ConfigWriter, EditCycleThroughWorkFile) {
  WriteBytes("E.CFG", "A000 5 ;\r\nB000 1 2 3 ;\r\n# keep\r\n\r\nA001 \"old\"" +
                          std::string(66, ' ') + ";\r\n");
  FILE* in = fOpen(L"E.CFG", L"rt");
  FILE* out = fOpen(L"E.AUX", L"wt");
  ASSERT_NE(in, nullptr);
  ASSERT_NE(out, nullptr);
  wchar_t line[81];
  wchar_t type = L' ';
  int index = 0, cursor = 0;
  while (!std::feof(in)) {
    LeerLineaDeCfg(in, line, type, index, cursor);
    if (type == L' ') continue;
    if (type == L'B' && index == 0) {
      int first = 0, second = 9, third = 0;
      LeerUnEntero(line, cursor, first);
      int keep = cursor;
      LeerUnEntero(line, keep, third);  // the second, read to get past it
      LeerUnEntero(line, keep, third);
      EscribirUnEntero(line, cursor, second);
      EscribirUnEntero(line, cursor, third);
    }
    if (type == L'A' && index == 1) EscribirUnTexto(line, cursor, L"a longer text");
    EscribirLineaEnFichero(out, line);
  }
  std::fclose(in);
  std::fclose(out);
  EXPECT_EQ(ReadBytes("E.AUX"), "A000 5 ;\r\nB000 1 9 3 ;\r\n# keep\r\nA001 \"a longer text\"" +
                                    std::string(56, ' ') + ";\r\n");
}

}  // namespace
