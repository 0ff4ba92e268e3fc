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
#include "korvalen/foundation/primitives.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::GuardedBuffer;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class ConfigWriter : public korvalen::testing::TempDirTest {};

std::wstring Blanks(int n) { return std::wstring(static_cast<std::size_t>(n), L' '); }

// --- in-place writers -----------------------------------------------------------

enum class Writer { kStr, kTexto, kForzado, kSwitch, kInt, kLong, kReal, kRealLargo };

struct EditCase {
  std::wstring line;
  int cursor;
  Writer writer;
  std::wstring value;
  std::wstring expected;
  int cursor_after;
};

void Write(Writer writer, wchar_t* line, int& cursor, const std::wstring& value) {
  switch (writer) {
    case Writer::kStr:
      EscribirUnStr(line, cursor, value.c_str());
      break;
    case Writer::kTexto:
      EscribirUnTexto(line, cursor, value.c_str());
      break;
    case Writer::kForzado:
      EscribirUnTextoForzado(line, cursor, value.c_str());
      break;
    case Writer::kSwitch: {
      int v = std::stoi(value);
      EscribirSIoNO(line, cursor, v);
      break;
    }
    case Writer::kInt: {
      int v = std::stoi(value);
      EscribirUnEntero(line, cursor, v);
      break;
    }
    case Writer::kLong: {
      LONG v = std::stoi(value);
      EscribirUnLong(line, cursor, v);
      break;
    }
    case Writer::kReal: {
      double v = std::stod(value);
      EscribirUnReal(line, cursor, v);
      break;
    }
    case Writer::kRealLargo: {
      double v = std::stod(value);
      EscribirUnRealLargo(line, cursor, v);
      break;
    }
  }
}

using W = Writer;

TEST(ConfigFieldWriters, EditInPlace) {
  const std::wstring real_line = L"A002 0.000" + Blanks(6) + L";";
  const std::wstring wide_line = L"A000 5" + Blanks(16) + L";";
  const EditCase cases[] = {
      {L"A000 5 ;", 4, W::kInt, L"7", L"A000 7 ;", 6},
      // Longer than the room: over the ';' up to the end of the line.
      {L"A000 5 ;", 4, W::kInt, L"12345", L"A000 123", 8},
      {L"A000 5 ;", 4, W::kInt, L"-3", L"A000 -3;", 7},
      // Every later field is cleared.
      {L"B000 1 2 3 ;", 6, W::kInt, L"9", L"B000 1 9   ;", 8},
      {wide_line, 4, W::kInt, L"-2147483648", L"A000 -2147483648" + Blanks(6) + L";", 16},
      {wide_line, 4, W::kLong, L"-2147483648", L"A000 -2147483648" + Blanks(6) + L";", 16},
      {wide_line, 4, W::kLong, L"2147483647", L"A000 2147483647" + Blanks(7) + L";", 15},
      {L"A000 5 ;", 4, W::kStr, L"x", L"A000 x ;", 6},
      {L"A000 5 ;", 4, W::kStr, L"abcdefgh", L"A000 abc", 8},
      {L"A000 5 6", 4, W::kStr, L"7", L"A000 7  ", 6},
      {L"A000 ;", 5, W::kStr, L"x", L"A000 ;", 6},  // on the ';': no room at all
      {L"A000 5 ;", 12, W::kInt, L"7", L"A000 5 ;", 13},
      {L"A000 5 ;", -2, W::kInt, L"7", L" 7     ;", 2},
      {L"A001 OFF ;", 4, W::kSwitch, L"1", L"A001 ON  ;", 7},
      {L"A001 OFF ;", 4, W::kSwitch, L"5", L"A001 ON  ;", 7},
      {L"A001 OFF ;", 4, W::kSwitch, L"-1", L"A001 ON  ;", 7},
      {L"A001 ON  ;", 4, W::kSwitch, L"0", L"A001 OFF ;", 8},
      {L"A001 \"ab\"     ;", 4, W::kTexto, L"abc", L"A001 \"abc\"    ;", 10},
      // Cut so that the closing quote takes the last position.
      {L"A001 \"ab\"     ;", 4, W::kTexto, L"abcdefghijklmnopqrst", L"A001 \"abcdefgh\"", 15},
      {L"A001 \"ab\" ;", 4, W::kTexto, L"", L"A001 \"\"   ;", 7},
      {L"A001 x", 5, W::kTexto, L"abc", L"A001  ", 6},     // no room: nothing written
      {L"A001 xy", 5, W::kTexto, L"abc", L"A001  \"", 7},  // the closing quote wins
      {L"A001 \"ab\" ;", 4, W::kForzado, L"abcdefgh", L"A001 \"abcdefgh\"", 15},
      {L"A001 \"ab\"     ;", 4, W::kForzado, L"abc", L"A001 \"abc\"    ;", 10},
      {L"A001 \"ab\" ;", 4, W::kForzado, L"abcd", L"A001 \"abcd\"", 11},  // just fits
      {L"A001 \"ab\" ;", 4, W::kForzado, L"abcde", L"A001 \"abcde\"", 12},
      {L"A001 \"ab\" ; tail", 4, W::kForzado, L"abcdefghijklmn", L"A001 \"abcdefghijklmn\"", 21},
      {L"A001", 4, W::kForzado, L"abc", L"A001 \"abc\"", 10},
      {real_line, 4, W::kReal, L"99999.999", L"A002 99999.999  ;", 14},
      {real_line, 4, W::kReal, L"1", L"A002 1.000" + Blanks(6) + L";", 10},
      {real_line, 4, W::kRealLargo, L"1", L"A002 1.000000   ;", 13},
      {real_line, 4, W::kReal, L"12.3456", L"A002 12.346     ;", 11},
      {real_line, 4, W::kReal, L"-2.5", L"A002 -2.500     ;", 11},
      {real_line, 4, W::kRealLargo, L"-0.125", L"A002 -0.125000  ;", 14},
  };
  for (const EditCase& c : cases) {
    std::size_t capacity = c.line.size() + 1;
    if (c.writer == W::kForzado) {
      capacity = std::max(capacity, static_cast<std::size_t>(c.cursor) + c.value.size() + 4);
    }
    GuardedBuffer line(capacity, c.line);
    int cursor = c.cursor;
    Write(c.writer, line.get(), cursor, c.value);
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
    std::wstring text;
    std::wstring expected;
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
    std::wstring line;
    std::string bytes;
  };
  const Case cases[] = {
      {L"A000 5 ;", "A000 5 ;\r\n"},
      {L"", "\r\n"},
      {L"\u00D1and\u00FA \u20AC",
       "\xD1"
       "and\xFA \x80\r\n"},
      // Outside the code page: the line, its line end included, stops there.
      {L"A001 \"x\u4E2Dy\" ;", "A001 \"x"},
      {std::wstring(498, L'a'), std::string(498, 'a') + "\r\n"},
      {std::wstring(499, L'b'), std::string(498, 'b') + "\r\n"},
      {std::wstring(5000, L'c'), std::string(498, 'c') + "\r\n"},
  };
  for (const Case& c : cases) {
    FILE* f = fOpen(L"OUT.CFG", L"wt");
    ASSERT_NE(f, nullptr);
    EscribirLineaEnFichero(f, c.line.c_str());
    std::fclose(f);
    EXPECT_EQ(ReadBytes("OUT.CFG"), c.bytes) << c.line.size();
  }
}

TEST_F(ConfigWriter, UnconvertibleCharacterJoinsTheNextLine) {
  FILE* f = fOpen(L"OUT.CFG", L"wt");
  ASSERT_NE(f, nullptr);
  EscribirLineaEnFichero(f, L"A001 \u4E2D ;");
  EscribirLineaEnFichero(f, L"B000 1 ;");
  std::fclose(f);
  EXPECT_EQ(ReadBytes("OUT.CFG"), "A001 B000 1 ;\r\n");
}

// --- whole records ----------------------------------------------------------------

enum class Builder { kTexto, kEntero, kLong, kReal, kBool, kOnOff };

struct BuildCase {
  Builder builder;
  std::wstring head;
  std::wstring value;
  std::wstring expected;
};

void Build(const BuildCase& c, wchar_t* out) {
  switch (c.builder) {
    case Builder::kTexto:
      DameParametroTexto(c.head.c_str(), c.value.c_str(), out);
      break;
    case Builder::kEntero:
      DameParametroEntero(c.head.c_str(), std::stoi(c.value), out);
      break;
    case Builder::kLong:
      DameParametroLong(c.head.c_str(), static_cast<LONG>(std::stoll(c.value)), out);
      break;
    case Builder::kReal:
      DameParametroReal(c.head.c_str(), std::stod(c.value), out);
      break;
    case Builder::kBool:
      DameParametroBool(c.head.c_str(), std::stoi(c.value), out);
      break;
    case Builder::kOnOff:
      DameONOFFConUnInt(c.head.c_str(), std::stoi(c.value), out);
      break;
  }
}

TEST(ConfigRecordBuilders, Records) {
  using B = Builder;
  const std::wstring v68(68, L'v');
  const std::wstring v69(69, L'v');
  const std::wstring v70(70, L'v');
  const BuildCase cases[] = {
      {B::kTexto, L"A001 \"", L"abc", L"A001 \"abc\"" + Blanks(66) + L";"},
      {B::kTexto, L"A000 x", L"abc", L"A000 \"abc\"" + Blanks(66) + L";"},
      {B::kTexto, L"Z000 \"", L"", L"Z000 \"\"" + Blanks(69) + L";"},
      {B::kTexto, L"A001 \"", v68, L"A001 \"" + v68 + L"\" ;"},
      {B::kTexto, L"A001 \"", v69, L"A001 \"" + v69 + L"\";"},
      {B::kTexto, L"A001 \"", v70, L"A001 \"" + v70 + L"\";"},
      {B::kTexto, L"", L"abc", L"\"abc\"" + Blanks(71) + L";"},
      {B::kEntero, L"A000 ", L"5", L"A000 5 ;"},
      {B::kEntero, L"A000 ", L"-12", L"A000 -12 ;"},
      {B::kEntero, L"A000 ", L"-2147483648", L"A000 -2147483648 ;"},
      {B::kLong, L"A000 ", L"2147483647", L"A000 2147483647 ;"},
      {B::kLong, L"A000 ", L"-7", L"A000 -7 ;"},
      {B::kReal, L"A002 ", L"2.5", L"A002 2.500 ;"},
      {B::kReal, L"A002 ", L"99999.999", L"A002 99999.999 ;"},
      {B::kReal, L"A002 ", L"-0.25", L"A002 -0.250 ;"},
      {B::kReal, L"A002 ", L"0", L"A002 0.000 ;"},
      {B::kBool, L"A001 ", L"1", L"A001 ON ;"},
      {B::kBool, L"A001 ", L"0", L"A001 OFF ;"},
      {B::kBool, L"A001 ", L"-7", L"A001 ON ;"},
      {B::kOnOff, L"A001 ", L"1", L"A001 ON ;"},
      {B::kOnOff, L"A001 ", L"0", L"A001 OFF ;"},
  };
  for (const BuildCase& c : cases) {
    GuardedBuffer out(c.expected.size() + 1);
    Build(c, out.get());
    EXPECT_EQ(out.text(), c.expected) << c.head << c.value;
    EXPECT_TRUE(out.guard_intact()) << c.head << c.value;
  }
}

TEST(ConfigRecordBuilders, HugeRealIsWrittenWhole) {
  GuardedBuffer out(400);
  DameParametroReal(L"A002 ", -1e300, out.get());
  const std::wstring text = out.text();
  ASSERT_EQ(text.size(), 5u + 1 + 301 + 4 + 2);
  EXPECT_EQ(text.substr(0, 8), L"A002 -10");
  EXPECT_EQ(text.substr(text.size() - 6), L".000 ;");
  EXPECT_TRUE(out.guard_intact());
}

// --- round trips through the reader -------------------------------------------------

TEST_F(ConfigWriter, BuiltRecordsReadBack) {
  const int ints[] = {0, -1, 42, INT_MAX, INT_MIN};
  const double reals[] = {0.0, 2.5, -1234.125, 1e6, korvalen::kRealNotSet};
  const int switches[] = {0, 1, 5};
  const std::wstring texts[] = {L"", L"two words", L"C:\\CAD\\Parts", std::wstring(69, L'x'),
                                L"\u00E9t\u00E9 \u20AC"};
  FILE* f = fOpen(L"RT.CFG", L"wt");
  ASSERT_NE(f, nullptr);
  wchar_t line[501];
  for (int v : ints) {
    DameParametroEntero(L"A000 ", v, line);
    EscribirLineaEnFichero(f, line);
  }
  for (double v : reals) {
    DameParametroReal(L"B000 ", v, line);
    EscribirLineaEnFichero(f, line);
  }
  for (int v : switches) {
    DameParametroBool(L"C000 ", v, line);
    EscribirLineaEnFichero(f, line);
  }
  for (const std::wstring& v : texts) {
    DameParametroTexto(L"D000 \"", v.c_str(), line);
    EscribirLineaEnFichero(f, line);
  }
  std::fclose(f);

  f = fOpen(L"RT.CFG", L"rt");
  ASSERT_NE(f, nullptr);
  wchar_t type = L' ';
  int index = 0, cursor = 0;
  std::vector<int> got_ints, got_switches;
  std::vector<double> got_reals;
  std::vector<std::wstring> got_texts;
  while (!std::feof(f)) {
    LeerLineaDeCfg(f, line, type, index, cursor);
    if (type == L'A') {
      int v = -99;
      LeerUnEntero(line, cursor, v);
      got_ints.push_back(v);
    } else if (type == L'B') {
      double v = -99;
      LeerUnReal(line, cursor, v);
      got_reals.push_back(v);
    } else if (type == L'C') {
      int v = -99;
      LeerSIoNO(line, cursor, v);
      got_switches.push_back(v);
    } else if (type == L'D') {
      wchar_t text[81];
      LeerUnTexto(line, cursor, text);
      got_texts.push_back(text);
    }
  }
  std::fclose(f);
  EXPECT_EQ(got_ints, std::vector<int>(std::begin(ints), std::end(ints)));
  EXPECT_EQ(got_reals, std::vector<double>(std::begin(reals), std::end(reals)));
  EXPECT_EQ(got_switches, (std::vector<int>{0, 1, 1}));
  EXPECT_EQ(got_texts, std::vector<std::wstring>(std::begin(texts), std::end(texts)));
}

// An edit the way the suite makes one: copy the file line by line to a work
// file, editing one record from its first changed field to its last, and
// dropping blank lines on the way.
TEST_F(ConfigWriter, EditCycleThroughWorkFile) {
  WriteBytes("E.CFG",
             "A000 5 ;\r\n"
             "B000 1 2 3 ;\r\n"
             "# keep\r\n"
             "\r\n"
             "A001 \"old\"" +
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
  EXPECT_EQ(ReadBytes("E.AUX"),
            "A000 5 ;\r\n"
            "B000 1 9 3 ;\r\n"
            "# keep\r\n"
            "A001 \"a longer text\"" +
                std::string(56, ' ') + ";\r\n");
}

}  // namespace
