// State files of the work orders: exact bytes of every writer, the capacity of
// every reader, the consumed marker, the ten last work orders (and the fixed
// name written when their file is missing), and the two helpers beside them.
#include "korvalen/datafiles/work_order_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "korvalen/datafiles/internal/message_resources.h"
#include "state_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::Lines;
using korvalen::testing::NameList;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class WorkOrderFiles : public korvalen::testing::TempDirTest {};

TEST_F(WorkOrderFiles, WritersPutCrLfLines) {
  const struct {
    std::function<void()> write;
    const char* file;
    std::string bytes;
  } cases[] = {
      {[] { GenerarFicheroDeLstPieSinOF(L"LP-ROOF 12"); }, "LSPINOOF.SYS", "LP-ROOF 12\r\n"},
      {[] { GenerarFicheroDeLstPieSinOF(L""); }, "LSPINOOF.SYS", "\r\n"},
      {[] { GenerarFicheroDeOFActiva(L"OF-7", L"Q-88"); }, "ORDENACT.SYS", "OF-7\r\nQ-88\r\n"},
      {[] { GenerarFicheroDeOFActiva(L"OF1", L""); }, "ORDENACT.SYS", "OF1\r\n\r\n"},
      {[] { GenerarFicheroDeDirBDActiva(L"D:\\Bases\\P 2"); }, "DIRBDACT.SYS",
       "D:\\Bases\\P 2\r\n"},
      {[] { GenerarFicheroDeOFActiva(L"A\u00f1o \u00e9", L"\u20ac5"); }, "ORDENACT.SYS",
       "A\xf1o \xe9\r\n\x80\x35\r\n"},
      // A character outside the code page, or a line feed, ends the value, never the line.
      {[] { GenerarFicheroDeOFActiva(L"OF\u4E00X", L"Q\nX"); }, "ORDENACT.SYS", "OF\r\nQ\r\n"},
  };
  for (const auto& c : cases) {
    WriteBytes(c.file, "old content that is longer than the new one\r\n\r\nmore\r\n");
    c.write();
    EXPECT_EQ(ReadBytes(c.file), c.bytes) << c.file;
  }
}

void Part(wchar_t* b) { EXPECT_EQ(DamePieDeLstPieSinOF(b), Exists("LSPINOOF.SYS") ? 1 : 0); }
void Name(wchar_t* b) {
  wchar_t quote[41];
  DameNombreYQuoteDeOFActiva(b, quote);
}
void Quote(wchar_t* b) {
  wchar_t name[41];
  DameNombreYQuoteDeOFActiva(name, b);
}

// Each reader empties its buffer, cuts to its capacity, writes nothing past
// it, and neither creates nor consumes its file.
TEST_F(WorkOrderFiles, ReadersKeepToTheirCapacity) {
  const std::string order = std::string(41, 'o') + "\r\n" + std::string(300, 'q') + "\r\n";
  const struct {
    const char* file;
    std::string bytes;  // "-": no file
    void (*read)(wchar_t*);
    int capacity;
    std::wstring text;
  } cases[] = {
      {"LSPINOOF.SYS", std::string(55, 'p') + "\r\nsecond\r\n", Part, 41, std::wstring(40, L'p')},
      {"LSPINOOF.SYS", "-", Part, 41, L""},
      {"ORDENACT.SYS", order, DameNombreDeOFActiva, 41, std::wstring(40, L'o')},
      {"ORDENACT.SYS", order, Name, 41, std::wstring(40, L'o')},
      {"ORDENACT.SYS", order, Quote, 41, std::wstring(40, L'q')},
      {"ORDENACT.SYS", "OF7\r\n", Quote, 41, L""},
      {"ORDENACT.SYS", "OF7\r\nQ7", Quote, 41, L"Q7"},
      {"ORDENACT.SYS", "\r\nQ7\r\n", Quote, 41, L"Q7"},
      {"ORDENACT.SYS", "-", Quote, 41, L""},
      {"DIRBDACT.SYS", std::string(1500, 'd') + "\r\nnext\r\n", DameNombreDeDirBDActiva, 257,
       std::wstring(256, L'd')},
      {"DIRBDACT.SYS", "-", DameNombreDeDirBDActiva, 257, L""},
  };
  for (const auto& c : cases) {
    std::filesystem::remove(c.file);
    if (c.bytes != "-") WriteBytes(c.file, c.bytes);
    std::vector<wchar_t> buffer(static_cast<std::size_t>(c.capacity) + 8, L'#');
    std::wstring(L"stale").copy(buffer.data(), 6);
    c.read(buffer.data());
    EXPECT_EQ(std::wstring(buffer.data()), c.text) << c.bytes;
    EXPECT_EQ(std::wstring(buffer.begin() + c.capacity, buffer.end()), L"########") << c.file;
    EXPECT_EQ(Exists(c.file), c.bytes != "-") << c.file;
  }
}

TEST_F(WorkOrderFiles, RoundTripsAndRemoval) {
  wchar_t name[41], quote[41], part[41];
  GenerarFicheroDeOFActiva(L"OF-2024-0117 \u00e9", L"Q-88 rev B");
  DameNombreYQuoteDeOFActiva(name, quote);
  EXPECT_STREQ(name, L"OF-2024-0117 \u00e9");
  EXPECT_STREQ(quote, L"Q-88 rev B");
  GenerarFicheroDeLstPieSinOF(L"Lista \u00e9");
  EXPECT_EQ(DamePieDeLstPieSinOF(part), 1);
  EXPECT_STREQ(part, L"Lista \u00e9");
  BorrarFicheroDeLstPieSinOF();
  EXPECT_FALSE(Exists("LSPINOOF.SYS"));
  BorrarFicheroDeLstPieSinOF();  // nothing to remove
}

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

TEST_F(WorkOrderFiles, LastOrdersAlwaysTenLines) {
  for (int names : {0, 3, 10, 12}) {
    NameList list, read;
    std::vector<std::string> lines(10);
    for (int i = 1; i <= names; ++i) list.Add(L"OF" + std::to_wstring(i));
    for (int i = 1; i <= names && i <= 10; ++i) lines[i - 1] = "OF" + std::to_string(i);
    GenerarFicheroUltimasOFs(L"ULTIMAS.SYS", list.first);
    EXPECT_EQ(ReadBytes("ULTIMAS.SYS"), Lines(lines)) << names;
    read.first = reinterpret_cast<TRegListaNombre*>(&read);  // must be reset
    LeerFicheroUltimasOFs(L"ULTIMAS.SYS", read.first, read.last);
    std::vector<std::wstring> expected;
    for (const std::string& l : lines) expected.emplace_back(l.begin(), l.end());
    EXPECT_EQ(read.Names(), expected) << names;
  }
}

TEST_F(WorkOrderFiles, LastOrdersFromShortLongAndMissingFiles) {
  WriteBytes("LISTOFS.SYS", std::string(100, 'a') + "\r\nOF2\r\n\r\nOF4");
  NameList read;
  LeerFicheroUltimasOFs(L"LISTOFS.SYS", read.first, read.last);
  EXPECT_EQ(read.Names(), (std::vector<std::wstring>{std::wstring(81, L'a'), L"OF2", L"", L"OF4",
                                                     L"", L"", L"", L"", L"", L""}));

  // A missing file gives ten empty names and writes the default file, always
  // under that name, over whatever it held.
  NameList missing;
  LeerFicheroUltimasOFs(L"OTRAS.SYS", missing.first, missing.last);
  EXPECT_EQ(missing.Names(), std::vector<std::wstring>(10, L""));
  EXPECT_FALSE(Exists("OTRAS.SYS"));
  EXPECT_EQ(ReadBytes("LISTOFS.SYS"), Lines(std::vector<std::string>(10, "")));
}

// The resource a text stands for (0: none), and what it becomes without a
// language module: an empty text for a special message, else unchanged.
TEST(SpecialMessages, OnlyTheThreeCharacterMark) {
  const wchar_t a = 0xAA;
  const struct {
    std::wstring text;
    unsigned id;
  } cases[] = {
      {{a, L'@', wchar_t{5}}, 26240},
      {{a, L'@', wchar_t{1}}, 26236},
      {{a, L'@', L'A'}, 26300},
      {{a, L'@'}, 0},
      {{a, L'@', L'A', L'B'}, 0},
      {{L'a', L'@', wchar_t{5}}, 0},
      {{a, L'#', wchar_t{5}}, 0},
      {L"", 0},
      // Beyond UTF-16 a character is two units, so the text is not three.
      {std::wstring{a, L'@'} + L"\U0001F600", 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(korvalen::detail::special_message_id(c.text.c_str()), c.id) << c.text.size();
    std::vector<wchar_t> buffer(c.text.begin(), c.text.end());
    buffer.resize(64, 0);
    DameMensajeEspecial(buffer.data());
    EXPECT_EQ(std::wstring(buffer.data()), c.id != 0 ? L"" : c.text) << c.text.size();
  }
}

TEST(StripDirectory, LastComponent) {
  const struct {
    std::wstring path, result;
  } cases[] = {
      {L"C:\\dir\\file.txt", L"file.txt"},
      {L"C:\\dir\\", L""},
      {L"file.txt", L"file.txt"},
      {L"\\file.txt", L"\\file.txt"},    // its only backslash first
      {L"a\\file.txt", L"a\\file.txt"},  // second
      {L"ab\\c", L"c"},
      {L"C:/dir/file.txt", L"C:/dir/file.txt"},  // only backslashes count
      {L"\\", L"\\"},
      {L"", L""},
  };
  for (const auto& c : cases) {
    std::vector<wchar_t> buffer(c.path.begin(), c.path.end());
    buffer.push_back(0);
    QuitarDirectorioAlFichero(buffer.data());
    EXPECT_EQ(std::wstring(buffer.data()), c.result) << c.path;
  }
}

}  // namespace
