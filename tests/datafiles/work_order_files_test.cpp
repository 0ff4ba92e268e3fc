// State files of the work orders: exact bytes of every writer, the line limits
// of every reader, missing and damaged files, the consumed marker, the ten
// last work orders, and the two helpers beside them.
#include "korvalen/datafiles/work_order_files.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "korvalen/datafiles/message_resources.h"
#include "korvalen/foundation/record_list.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class WorkOrderFiles : public korvalen::testing::TempDirTest {};

std::string Repeat(char c, int n) { return std::string(static_cast<std::size_t>(n), c); }
std::wstring WRepeat(wchar_t c, int n) { return std::wstring(static_cast<std::size_t>(n), c); }

// A buffer filled with a canary, so that a write past `capacity` shows.
struct Guarded {
  explicit Guarded(int capacity) : data(static_cast<std::size_t>(capacity) + 8, L'#') {}
  wchar_t* get() { return data.data(); }
  std::wstring text() const { return std::wstring(data.data()); }
  bool canary_intact(int capacity) const {
    for (std::size_t i = static_cast<std::size_t>(capacity); i < data.size(); ++i) {
      if (data[i] != L'#') return false;
    }
    return true;
  }
  std::vector<wchar_t> data;
};

// --- writers -----------------------------------------------------------------------

struct WriterCase {
  const char* what;
  std::function<void()> write;
  const char* file;
  std::string bytes;
};

TEST_F(WorkOrderFiles, WritersPutCrLfLines) {
  const WriterCase cases[] = {
      {"part list", [] { GenerarFicheroDeLstPieSinOF(L"LP-ROOF 12"); }, "LSPINOOF.SYS",
       "LP-ROOF 12\r\n"},
      {"empty part list", [] { GenerarFicheroDeLstPieSinOF(L""); }, "LSPINOOF.SYS", "\r\n"},
      {"active order", [] { GenerarFicheroDeOFActiva(L"OF-2024-0117", L"Q-88"); }, "ORDENACT.SYS",
       "OF-2024-0117\r\nQ-88\r\n"},
      {"order without quote", [] { GenerarFicheroDeOFActiva(L"OF1", L""); }, "ORDENACT.SYS",
       "OF1\r\n\r\n"},
      {"database", [] { GenerarFicheroDeDirBDActiva(L"D:\\Bases\\Planta 2"); }, "DIRBDACT.SYS",
       "D:\\Bases\\Planta 2\r\n"},
      {"code page", [] { GenerarFicheroDeOFActiva(L"A\u00f1o \u00e9", L"\u20ac5"); },
       "ORDENACT.SYS", "A\xf1o \xe9\r\n\x80\x35\r\n"},
      // A character outside the code page ends the value, never the line.
      {"unconvertible", [] { GenerarFicheroDeOFActiva(L"OF\u4E00X", L"Q"); }, "ORDENACT.SYS",
       "OF\r\nQ\r\n"},
      {"line feed in a value", [] { GenerarFicheroDeOFActiva(L"OF1\nX", L"Q"); }, "ORDENACT.SYS",
       "OF1\r\nQ\r\n"},
  };
  for (const WriterCase& c : cases) {
    WriteBytes(c.file, "old content that is longer than the new one\r\n\r\nmore\r\n");
    c.write();
    EXPECT_EQ(ReadBytes(c.file), c.bytes) << c.what;
  }
}

// --- readers ------------------------------------------------------------------------

TEST_F(WorkOrderFiles, ReadersCutToTheirLimits) {
  WriteBytes("LSPINOOF.SYS", Repeat('p', 55) + "\r\nsecond\r\n");
  WriteBytes("ORDENACT.SYS", Repeat('o', 41) + "\r\n" + Repeat('q', 300) + "\r\n");
  WriteBytes("DIRBDACT.SYS", Repeat('d', 1500) + "\r\nnext\r\n");

  Guarded part(41);
  EXPECT_EQ(DamePieDeLstPieSinOF(part.get()), 1);
  EXPECT_EQ(part.text(), WRepeat(L'p', 40));
  EXPECT_TRUE(part.canary_intact(41));
  EXPECT_TRUE(Exists("LSPINOOF.SYS"));  // read, not consumed

  Guarded order(41);
  DameNombreDeOFActiva(order.get());
  EXPECT_EQ(order.text(), WRepeat(L'o', 40));
  EXPECT_TRUE(order.canary_intact(41));

  Guarded name(41), quote(41);
  DameNombreYQuoteDeOFActiva(name.get(), quote.get());
  EXPECT_EQ(name.text(), WRepeat(L'o', 40));
  EXPECT_EQ(quote.text(), WRepeat(L'q', 40));
  EXPECT_TRUE(name.canary_intact(41));
  EXPECT_TRUE(quote.canary_intact(41));

  Guarded dir(257);
  DameNombreDeDirBDActiva(dir.get());
  EXPECT_EQ(dir.text(), WRepeat(L'd', 256));
  EXPECT_TRUE(dir.canary_intact(257));
}

struct OrderFileCase {
  const char* what;
  std::string bytes;
  std::wstring name;
  std::wstring quote;
};

TEST_F(WorkOrderFiles, ActiveOrderFromDamagedFiles) {
  const OrderFileCase cases[] = {
      {"two lines", "OF7\r\nQ7\r\n", L"OF7", L"Q7"},
      {"one line", "OF7\r\n", L"OF7", L""},
      {"no line end", "OF7", L"OF7", L""},
      {"no line end on the quote", "OF7\r\nQ7", L"OF7", L"Q7"},
      {"bare line feeds", "OF7\nQ7\n", L"OF7", L"Q7"},
      {"carriage returns only", "OF7\rQ7\r", L"OF7\rQ7\r", L""},
      {"NUL byte", std::string("OF\0X7\r\nQ7\r\n", 11), L"OF", L"Q7"},
      {"empty file", "", L"", L""},
      {"blank first line", "\r\nQ7\r\n", L"", L"Q7"},
      {"Ctrl-Z ends the text", "OF7\r\n\x1aQ7\r\n", L"OF7", L""},
  };
  for (const OrderFileCase& c : cases) {
    WriteBytes("ORDENACT.SYS", c.bytes);
    wchar_t name[41] = L"stale", quote[41] = L"stale";
    DameNombreYQuoteDeOFActiva(name, quote);
    EXPECT_EQ(std::wstring(name), c.name) << c.what;
    EXPECT_EQ(std::wstring(quote), c.quote) << c.what;
    wchar_t only[41] = L"stale";
    DameNombreDeOFActiva(only);
    EXPECT_EQ(std::wstring(only), c.name) << c.what;
  }
}

TEST_F(WorkOrderFiles, MissingFilesGiveEmptyTexts) {
  wchar_t part[41] = L"stale", name[41] = L"stale", quote[41] = L"stale", dir[257] = L"stale";
  EXPECT_EQ(DamePieDeLstPieSinOF(part), 0);
  DameNombreYQuoteDeOFActiva(name, quote);
  DameNombreDeDirBDActiva(dir);
  EXPECT_STREQ(part, L"");
  EXPECT_STREQ(name, L"");
  EXPECT_STREQ(quote, L"");
  EXPECT_STREQ(dir, L"");
  // Readers create nothing.
  EXPECT_FALSE(Exists("LSPINOOF.SYS"));
  EXPECT_FALSE(Exists("ORDENACT.SYS"));
  EXPECT_FALSE(Exists("DIRBDACT.SYS"));
}

TEST_F(WorkOrderFiles, RoundTrips) {
  GenerarFicheroDeOFActiva(L"OF-2024-0117", L"Q-88 rev B");
  wchar_t name[41], quote[41];
  DameNombreYQuoteDeOFActiva(name, quote);
  EXPECT_STREQ(name, L"OF-2024-0117");
  EXPECT_STREQ(quote, L"Q-88 rev B");

  GenerarFicheroDeDirBDActiva(L"\\\\server\\bases\\Planta 2");
  wchar_t dir[257];
  DameNombreDeDirBDActiva(dir);
  EXPECT_STREQ(dir, L"\\\\server\\bases\\Planta 2");

  GenerarFicheroDeLstPieSinOF(L"Lista \u00e9");
  wchar_t part[41];
  EXPECT_EQ(DamePieDeLstPieSinOF(part), 1);
  EXPECT_STREQ(part, L"Lista \u00e9");
  BorrarFicheroDeLstPieSinOF();
  EXPECT_FALSE(Exists("LSPINOOF.SYS"));
  BorrarFicheroDeLstPieSinOF();  // nothing to remove
  EXPECT_EQ(DamePieDeLstPieSinOF(part), 0);
}

// --- parts-changed marker --------------------------------------------------------------

TEST_F(WorkOrderFiles, PartsChangedMarkerIsSeenOnce) {
  EXPECT_EQ(ExisteFicheroCambioPiezas(), 0);
  CrearFicheroCambioPiezas();
  CrearFicheroCambioPiezas();
  EXPECT_TRUE(Exists("CHGPIEZA.SYS"));
  EXPECT_EQ(ReadBytes("CHGPIEZA.SYS"), "");
  EXPECT_EQ(ExisteFicheroCambioPiezas(), 1);
  EXPECT_FALSE(Exists("CHGPIEZA.SYS"));
  EXPECT_EQ(ExisteFicheroCambioPiezas(), 0);

  // A marker another program left with content is not truncated.
  WriteBytes("CHGPIEZA.SYS", "x");
  CrearFicheroCambioPiezas();
  EXPECT_EQ(ReadBytes("CHGPIEZA.SYS"), "x");
}

// --- last work orders --------------------------------------------------------------------

struct NameList {
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  ~NameList() { LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last)); }
  void Add(const std::wstring& name) {
    TRegListaNombre node{};
    name.copy(node.name, kNameListChars - 1);
    InsertarRegistro(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last), last, &node,
                     static_cast<int>(sizeof node));
  }
  std::vector<std::wstring> Names() const {
    std::vector<std::wstring> out;
    for (const TRegListaNombre* n = first; n != nullptr; n = n->next) out.emplace_back(n->name);
    return out;
  }
};

std::string Lines(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& l : lines) out += l + "\r\n";
  return out;
}

TEST_F(WorkOrderFiles, LastOrdersAlwaysTenLines) {
  struct Case {
    int names;
    std::string bytes;
  };
  const Case cases[] = {
      {0, Lines({"", "", "", "", "", "", "", "", "", ""})},
      {3, Lines({"OF1", "OF2", "OF3", "", "", "", "", "", "", ""})},
      {10, Lines({"OF1", "OF2", "OF3", "OF4", "OF5", "OF6", "OF7", "OF8", "OF9", "OF10"})},
      {12, Lines({"OF1", "OF2", "OF3", "OF4", "OF5", "OF6", "OF7", "OF8", "OF9", "OF10"})},
  };
  for (const Case& c : cases) {
    NameList list;
    for (int i = 1; i <= c.names; ++i) list.Add(L"OF" + std::to_wstring(i));
    GenerarFicheroUltimasOFs(L"ULTIMAS.SYS", list.first);
    EXPECT_EQ(ReadBytes("ULTIMAS.SYS"), c.bytes) << c.names;

    NameList read;
    read.first = reinterpret_cast<TRegListaNombre*>(&read);  // must be reset
    LeerFicheroUltimasOFs(L"ULTIMAS.SYS", read.first, read.last);
    std::vector<std::wstring> expected;
    for (int i = 1; i <= 10; ++i)
      expected.push_back(i <= c.names ? L"OF" + std::to_wstring(i) : L"");
    EXPECT_EQ(read.Names(), expected) << c.names;
    ASSERT_NE(read.last, nullptr);
    EXPECT_EQ(read.last->next, nullptr);
    EXPECT_EQ(read.first->previous, nullptr);
  }
}

TEST_F(WorkOrderFiles, LastOrdersFromShortLongAndDamagedFiles) {
  WriteBytes("LISTOFS.SYS",
             Repeat('a', 100) + "\r\nOF2\r\n" + std::string("O\0F3\r\n", 6) + "\r\nOF5");
  NameList read;
  LeerFicheroUltimasOFs(L"LISTOFS.SYS", read.first, read.last);
  const std::vector<std::wstring> expected = {
      WRepeat(L'a', 81), L"OF2", L"O", L"", L"OF5", L"", L"", L"", L"", L""};
  EXPECT_EQ(read.Names(), expected);
}

TEST_F(WorkOrderFiles, MissingLastOrdersFileCreatesTheDefaultOne) {
  NameList read;
  LeerFicheroUltimasOFs(L"OTRAS.SYS", read.first, read.last);
  EXPECT_EQ(read.Names(), std::vector<std::wstring>(10, L""));
  EXPECT_FALSE(Exists("OTRAS.SYS"));
  EXPECT_EQ(ReadBytes("LISTOFS.SYS"), Lines(std::vector<std::string>(10, "")));

  // An existing default file is replaced by the empty one as well.
  WriteBytes("LISTOFS.SYS", "OF1\r\n");
  NameList again;
  LeerFicheroUltimasOFs(L"OTRAS.SYS", again.first, again.last);
  EXPECT_EQ(ReadBytes("LISTOFS.SYS"), Lines(std::vector<std::string>(10, "")));
}

// --- helpers -----------------------------------------------------------------------------------

TEST(SpecialMessages, ResourceOfTheCode) {
  struct Case {
    std::wstring text;
    unsigned id;
  };
  const Case cases[] = {
      {std::wstring{wchar_t{0xAA}, L'@', wchar_t{5}}, 26240},
      {std::wstring{wchar_t{0xAA}, L'@', wchar_t{1}}, 26236},
      {std::wstring{wchar_t{0xAA}, L'@', L'A'}, 26235 + 65},
      {std::wstring{wchar_t{0xAA}, L'@'}, 0},              // two characters
      {std::wstring{wchar_t{0xAA}, L'@', L'A', L'B'}, 0},  // four
      {std::wstring{L'a', L'@', wchar_t{5}}, 0},           // not U+00AA
      {std::wstring{wchar_t{0xAA}, L'#', wchar_t{5}}, 0},  // not '@'
      {L"", 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(korvalen::detail::special_message_id(c.text.c_str()), c.id);
  }
}

TEST(SpecialMessages, WithoutLanguageModule) {
  wchar_t special[64] = {0xAA, L'@', 5, 0};
  DameMensajeEspecial(special);
  EXPECT_STREQ(special, L"");  // no such resource: empty

  wchar_t two[64] = {0xAA, L'@', 0};
  DameMensajeEspecial(two);
  EXPECT_EQ(std::wstring(two), (std::wstring{wchar_t{0xAA}, L'@'}));

  wchar_t other[64] = L"x@\x05";
  DameMensajeEspecial(other);
  EXPECT_STREQ(other, L"x@\x05");
}

TEST(StripDirectory, LastComponent) {
  struct Case {
    std::wstring path;
    std::wstring result;
  };
  const Case cases[] = {
      {L"C:\\dir\\file.txt", L"file.txt"},
      {L"C:\\dir\\", L""},
      {L"file.txt", L"file.txt"},
      {L"\\file.txt", L"\\file.txt"},    // its only backslash first
      {L"a\\file.txt", L"a\\file.txt"},  // second
      {L"ab\\c", L"c"},
      {L"ab\\", L""},
      {L"\\\\server\\share\\x.cfg", L"x.cfg"},
      {L"C:/dir/file.txt", L"C:/dir/file.txt"},  // only backslashes count
      {L"\\", L"\\"},
      {L"", L""},
  };
  for (const Case& c : cases) {
    std::vector<wchar_t> buffer(c.path.begin(), c.path.end());
    buffer.push_back(0);
    QuitarDirectorioAlFichero(buffer.data());
    EXPECT_EQ(std::wstring(buffer.data()), c.result) << c.path;
  }
}

}  // namespace
