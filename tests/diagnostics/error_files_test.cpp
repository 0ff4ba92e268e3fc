// Error reports: the exact bytes of a report file, gathering reports back into
// a list (with and without deleting them), and reports that are damaged.
#include "korvalen/diagnostics/error_files.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>

#include "report_support.h"
#include "temp_dir_test.h"

namespace {

using namespace std::string_literals;
using korvalen::testing::ErrorFileNames;
using korvalen::testing::Exists;
using korvalen::testing::GatheredList;
using korvalen::testing::Generate;
using korvalen::testing::Narrow;
using korvalen::testing::ReadBytes;
using korvalen::testing::Report;
using korvalen::testing::ReportBytes;
using korvalen::testing::WriteBytes;

class ErrorFiles : public korvalen::testing::TempDirTest {};

// The record is copied into lists by its size: its layout is part of the
// interface.
static_assert(offsetof(TRegError, next) == 0);
static_assert(offsetof(TRegError, previous) == sizeof(void*));
static_assert(offsetof(TRegError, code) == 2 * sizeof(void*));
static_assert(sizeof(TRegError::file_name) == 512 * sizeof(wchar_t));
static_assert(sizeof(TRegError::text1) == 41 * sizeof(wchar_t));
static_assert(sizeof(TRegError::text4) == 256 * sizeof(wchar_t));
static_assert(sizeof(TRegError::text5) == 256 * sizeof(wchar_t));
static_assert(sizeof(TRegError::text7) == 41 * sizeof(wchar_t));
static_assert(offsetof(TRegError, text2) == offsetof(TRegError, text1) + 41 * sizeof(wchar_t));
static_assert(offsetof(TRegError, text6) == offsetof(TRegError, text5) + 256 * sizeof(wchar_t));
static_assert(offsetof(TRegError, number1) > offsetof(TRegError, text7));
static_assert(offsetof(TRegError, number2) > offsetof(TRegError, number1));
static_assert(offsetof(TRegError, number3) > offsetof(TRegError, number2));
static_assert(sizeof(TRegError::number2) == 4);

const Report kReports[] = {
    {12, {L"a", L"b", L"c", L"d", L"e", L"f", L"g"}, 1, 2, 3},
    {INT_MIN,
     {L"two words", L"", L"x;y", L"  blanks  ", L"#5", L"-",
      L"0123456789012345678901234567890123456789"},
     INT_MAX,
     -2147483647 - 1,
     -1},
    {0, {L"", L"", L"", L"", L"", L"", L""}, 0, 2147483647, 0},
};

void ExpectRecord(const TRegError& e, const Report& r) {
  EXPECT_EQ(e.code, r.code);
  const wchar_t* fields[] = {e.text1, e.text2, e.text3, e.text4, e.text5, e.text6, e.text7};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(std::wstring(fields[i]), r.texts[i]) << "text " << i + 1;
  EXPECT_EQ(e.number1, r.number1);
  EXPECT_EQ(e.number2, r.number2);
  EXPECT_EQ(e.number3, r.number3);
}

TEST_F(ErrorFiles, EachReportIsANewFileOfElevenLines) {
  int n = 0;
  for (const Report& r : kReports) {
    Generate(r);
    ++n;
    const std::string name = "0000000" + std::to_string(n) + ".err";
    EXPECT_EQ(ReadBytes(name), ReportBytes(r)) << name;
    EXPECT_EQ(ReadBytes("CONTERRW.cdr"), "0000000" + std::to_string(n) + "\r\n");
  }
  EXPECT_EQ(ErrorFileNames().size(), std::size(kReports));
}

TEST_F(ErrorFiles, GatheringGivesBackEveryValueAndTheFileName) {
  for (const Report& r : kReports) Generate(r);
  WriteBytes("notes.txt", "12\r\n");
  GatheredList list;
  DameListaErrores(list.head, list.tail, 0);
  const auto records = list.Records();
  ASSERT_EQ(records.size(), std::size(kReports));
  std::map<std::string, const TRegError*> by_name;
  for (const TRegError* e : records) by_name[Narrow(e->file_name)] = e;
  for (std::size_t i = 0; i < std::size(kReports); ++i) {
    const std::string name = "0000000" + std::to_string(i + 1) + ".err";
    ASSERT_EQ(by_name.count(name), 1u) << name;
    ExpectRecord(*by_name[name], kReports[i]);
  }
  EXPECT_EQ(ErrorFileNames().size(), std::size(kReports));  // nothing deleted
}

TEST_F(ErrorFiles, DeleteFlagRemovesTheReportsButKeepsTheList) {
  for (const Report& r : kReports) Generate(r);
  WriteBytes("UPPER.ERR", "77\r\n");  // names match without regard to case
  WriteBytes("report.err.bak", "1\r\n");
  std::filesystem::create_directory("folder.err");
  GatheredList list;
  DameListaErrores(list.head, list.tail, 1);
  const auto records = list.Records();
  ASSERT_EQ(records.size(), std::size(kReports) + 1);
  bool upper = false;
  for (const TRegError* e : records) {
    if (Narrow(e->file_name) == "UPPER.ERR") upper = e->code == 77;
  }
  EXPECT_TRUE(upper);
  EXPECT_TRUE(ErrorFileNames().empty());
  EXPECT_FALSE(Exists("UPPER.ERR"));
  EXPECT_TRUE(Exists("report.err.bak"));
  EXPECT_TRUE(Exists("folder.err"));
  EXPECT_TRUE(Exists("CONTERRW.cdr"));
}

TEST_F(ErrorFiles, NoReportsGiveAnEmptyListWhateverTheFlag) {
  std::filesystem::create_directory("only-a-folder.err");
  for (int flag : {0, 1}) {
    TRegError stale{};
    GatheredList list;
    list.head = &stale;  // whatever the caller held is not freed, only replaced
    list.tail = &stale;
    DameListaErrores(list.head, list.tail, flag);
    EXPECT_EQ(list.head, nullptr);
    EXPECT_EQ(list.tail, nullptr);
  }
}

TEST_F(ErrorFiles, DeletingFromARecordOnFollowsTheNextLinks) {
  for (const Report& r : kReports) Generate(r);
  GatheredList list;
  DameListaErrores(list.head, list.tail, 0);
  const auto records = list.Records();
  ASSERT_EQ(records.size(), 3u);
  BorrarFicherosDeErrores(records[1]);
  EXPECT_TRUE(Exists(Narrow(records[0]->file_name)));
  EXPECT_FALSE(Exists(Narrow(records[1]->file_name)));
  EXPECT_FALSE(Exists(Narrow(records[2]->file_name)));
  BorrarFicherosDeErrores(records[1]);  // already gone: ignored
  BorrarFicherosDeErrores(nullptr);

  BorraListaErrores(list.head, list.tail);
  EXPECT_EQ(list.head, nullptr);
  EXPECT_EQ(list.tail, nullptr);
  BorraListaErrores(list.head, list.tail);
  EXPECT_EQ(list.head, nullptr);
}

struct DamagedCase {
  const char* what;
  std::string bytes;
  int code;
  std::wstring texts[7];
  int number1;
  LONG number2;
  int number3;
};

TEST_F(ErrorFiles, DamagedReportsReadAsFarAsTheyGo) {
  const std::string x10000(10000, 'x');
  const std::string q10000 = "\"" + x10000 + "\"\r\n";
  const std::wstring x40(40, L'x');
  const std::wstring x254(254, L'x');
  const std::wstring x79(79, L'x');
  const DamagedCase cases[] = {
      {"empty", "", 0, {}, 0, 0, 0},
      {"truncated", "7\r\n\"one\"\r\n\"tw", 7, {L"one", L"tw"}, 0, 0, 0},
      {"numbers missing",
       "3\n\"a\"\n\"b\"\n\"c\"\n\"d\"\n\"e\"\n\"f\"\n\"g\"\n",
       3,
       {L"a", L"b", L"c", L"d", L"e", L"f", L"g"},
       0,
       0,
       0},
      {"NUL bytes",
       "5\0"
       "9\r\n\"a\0b\"\r\n\0\r\n\"c\"\r\n\"d\"\r\n\"e\"\r\n\"f\"\r\n\"g\"\r\n1\0"
       "2\r\n2\r\n3\r\n"s,
       5,
       {L"a", L"", L"c", L"d", L"e", L"f", L"g"},
       1,
       2,
       3},
      {"lines of 10 000 characters",
       "4" + std::string(10000, ' ') + "9\r\n" + q10000 + q10000 + q10000 + q10000 + q10000 +
           q10000 + q10000 + "6" + x10000 + "\r\n" + std::string(10000, '7') + "\r\n-8\r\n",
       4,
       {x40, x40, x40, x254, x79, x40, x40},
       6,
       0,  // 79 digits overflow a LONG: not compared
       -8},
      {"quotes missing", "1\r\nplain\r\n\"open\r\n", 1, {L"", L"open"}, 0, 0, 0},
      {"LF only",
       "2\n\"a\"\n\"b\"\n\"c\"\n\"d\"\n\"e\"\n\"f\"\n\"g\"\n4\n5\n6\n",
       2,
       {L"a", L"b", L"c", L"d", L"e", L"f", L"g"},
       4,
       5,
       6},
  };
  for (const DamagedCase& c : cases) {
    SCOPED_TRACE(c.what);
    WriteBytes("damaged.err", c.bytes);
    GatheredList list;
    DameListaErrores(list.head, list.tail, 1);
    const auto records = list.Records();
    ASSERT_EQ(records.size(), 1u);
    const TRegError& e = *records[0];
    EXPECT_EQ(Narrow(e.file_name), "damaged.err");
    EXPECT_EQ(e.code, c.code);
    const wchar_t* fields[] = {e.text1, e.text2, e.text3, e.text4, e.text5, e.text6, e.text7};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(std::wstring(fields[i]), c.texts[i]) << "text " << i + 1;
    EXPECT_EQ(e.number1, c.number1);
    if (std::string(c.what) != "lines of 10 000 characters") {
      EXPECT_EQ(e.number2, c.number2);
    }
    EXPECT_EQ(e.number3, c.number3);
    EXPECT_FALSE(Exists("damaged.err"));
  }
}

TEST_F(ErrorFiles, LongTextsAreCutToWhatTheirLineAndFieldHold) {
  const std::wstring long_text(2000, L'y');
  const std::wstring text78(78, L'z');
  GeneraError(9, text78.c_str(), L"b", L"c", long_text.c_str(), text78.c_str(), L"f", L"g", 1, 2,
              3);
  const std::string bytes = ReadBytes("00000001.err");
  const std::string expected = "9\r\n\"" + std::string(78, 'z') + "\"\r\n\"b\"\r\n\"c\"\r\n\"" +
                               std::string(1020, 'y') + "\"\r\n\"" + std::string(78, 'z') +
                               "\"\r\n\"f\"\r\n\"g\"\r\n1\r\n2\r\n3\r\n";
  EXPECT_EQ(bytes, expected);
  GatheredList list;
  DameListaErrores(list.head, list.tail, 0);
  const auto records = list.Records();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(std::wstring(records[0]->text1), std::wstring(40, L'z'));
  EXPECT_EQ(std::wstring(records[0]->text4), std::wstring(254, L'y'));
  EXPECT_EQ(std::wstring(records[0]->text5), text78);
  EXPECT_EQ(records[0]->number3, 3);
}

TEST_F(ErrorFiles, ReportThatCannotBeOpenedIsStillListed) {
  std::error_code error;
  std::filesystem::create_symlink("nowhere.txt", "dangling.err", error);
  if (error) GTEST_SKIP() << "no symbolic links here";
  GatheredList list;
  DameListaErrores(list.head, list.tail, 1);
  const auto records = list.Records();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(Narrow(records[0]->file_name), "dangling.err");
  EXPECT_EQ(records[0]->code, 0);
  EXPECT_EQ(records[0]->text1[0], 0);
  EXPECT_EQ(records[0]->number2, 0);
  EXPECT_FALSE(std::filesystem::is_symlink("dangling.err"));
}

TEST_F(ErrorFiles, NoReportWithoutAUsableCounter) {
  std::filesystem::create_directory("CONTERRW.cdr");
  Generate(kReports[0]);
  EXPECT_TRUE(ErrorFileNames().empty());
}

}  // namespace
