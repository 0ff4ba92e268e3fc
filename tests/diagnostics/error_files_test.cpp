// Error reports: the exact bytes of a report file, gathering reports back into
// a list (with and without deleting them), damaged reports, and several
// programs reporting in one directory at the same moment (the test program
// runs copies of itself as those programs).
#include "korvalen/diagnostics/error_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "process_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;

// The record is copied into lists by its size: its layout is part of the
// interface.
static_assert(offsetof(TRegError, code) == 2 * sizeof(void*) && sizeof(TRegError::number2) == 4);
static_assert(sizeof(TRegError::file_name) == 512 * sizeof(wchar_t) &&
              sizeof(TRegError::text1) == 41 * sizeof(wchar_t) &&
              offsetof(TRegError, text5) == offsetof(TRegError, text4) + 256 * sizeof(wchar_t) &&
              offsetof(TRegError, text7) == offsetof(TRegError, text5) + 297 * sizeof(wchar_t));

struct Report {
  int code;
  std::wstring texts[7];
  int number1;
  LONG number2;
  int number3;
};

std::string Narrow(const std::wstring& ascii) { return std::string(ascii.begin(), ascii.end()); }

// The eleven CR LF lines a report file holds on disk (ASCII texts only).
std::string Bytes(const Report& r) {
  std::string out = std::to_string(r.code) + "\r\n";
  for (const std::wstring& t : r.texts) out += "\"" + Narrow(t) + "\"\r\n";
  return out + std::to_string(r.number1) + "\r\n" + std::to_string(r.number2) + "\r\n" +
         std::to_string(r.number3) + "\r\n";
}

// "code|text 1|...|text 7|number 1|number 2|number 3"
std::wstring Fields(const Report& r) {
  std::wstring out = std::to_wstring(r.code);
  for (const std::wstring& t : r.texts) out += L"|" + t;
  return out + L"|" + std::to_wstring(r.number1) + L"|" + std::to_wstring(r.number2) + L"|" +
         std::to_wstring(r.number3);
}
std::wstring Fields(const TRegError& e) {
  return Fields({e.code,
                 {e.text1, e.text2, e.text3, e.text4, e.text5, e.text6, e.text7},
                 e.number1,
                 e.number2,
                 e.number3});
}

void Generate(const Report& r) {
  GeneraError(r.code, r.texts[0].c_str(), r.texts[1].c_str(), r.texts[2].c_str(),
              r.texts[3].c_str(), r.texts[4].c_str(), r.texts[5].c_str(), r.texts[6].c_str(),
              r.number1, r.number2, r.number3);
}

// Names of the ".err" files of the current directory, sorted.
std::vector<std::string> ErrorFileNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    if (entry.is_regular_file() && entry.path().extension() == ".err") {
      names.push_back(entry.path().filename().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

// A gathered list that frees itself; Gather() maps each file name to its
// record's fields, after checking that next, previous and tail agree.
struct GatheredList {
  TRegError* head = nullptr;
  TRegError* tail = nullptr;
  ~GatheredList() { BorraListaErrores(head, tail); }
  std::vector<TRegError*> Records() const {
    std::vector<TRegError*> records;
    for (TRegError* e = head; e != nullptr; e = e->next) {
      EXPECT_EQ(e->previous, records.empty() ? nullptr : records.back());
      records.push_back(e);
    }
    EXPECT_EQ(tail, records.empty() ? nullptr : records.back());
    return records;
  }
  std::map<std::string, std::wstring> Gather(int delete_files) {
    DameListaErrores(head, tail, delete_files);
    std::map<std::string, std::wstring> found;
    for (const TRegError* e : Records()) found[Narrow(e->file_name)] = Fields(*e);
    return found;
  }
};

class ErrorFiles : public korvalen::testing::TempDirTest {};

const Report kReports[] = {
    {12, {L"a", L"b", L"c", L"d", L"e", L"f", L"g"}, 1, 2, 3},
    {INT_MIN,
     {L"two words", L"", L"x;y", L"  blanks  ", L"#5", L"-", std::wstring(40, L'4')},
     INT_MAX,
     -2147483647 - 1,
     -1},
    {0, {L"", L"", L"", L"", L"", L"", L""}, 0, 2147483647, 0},
};

// Each report is a new file of eleven lines, named by the counter; gathering
// gives back every value and the file's name, and deletes the files on request.
TEST_F(ErrorFiles, ReportsWrittenThenGathered) {
  std::filesystem::create_directory("folder.err");
  WriteBytes("notes.txt", "12\r\n");
  for (int flag : {0, 1}) {  // no reports: an empty list, whatever the flag
    TRegError stale{};
    GatheredList list;
    list.head = list.tail = &stale;  // what the caller held is replaced, not freed
    DameListaErrores(list.head, list.tail, flag);
    EXPECT_EQ(list.head, nullptr);
    EXPECT_EQ(list.tail, nullptr);
  }
  for (int n = 1; n <= 3; ++n) {
    Generate(kReports[n - 1]);
    const std::string name = "0000000" + std::to_string(n);
    EXPECT_EQ(ReadBytes(name + ".err"), Bytes(kReports[n - 1])) << name;
    EXPECT_EQ(ReadBytes("CONTERRW.cdr"), name + "\r\n");
  }
  EXPECT_EQ(ReadBytes("00000001.err"),
            "12\r\n\"a\"\r\n\"b\"\r\n\"c\"\r\n\"d\"\r\n\"e\"\r\n\"f\"\r\n\"g\"\r\n1\r\n2\r\n3\r\n");
  WriteBytes("UPPER.ERR", "77\r\n");  // names match without regard to case
  WriteBytes("report.err.bak", "1\r\n");
  const std::map<std::string, std::wstring> expected = {{"00000001.err", Fields(kReports[0])},
                                                        {"00000002.err", Fields(kReports[1])},
                                                        {"00000003.err", Fields(kReports[2])},
                                                        {"UPPER.ERR", L"77||||||||0|0|0"}};
  for (int flag : {0, 1}) {
    GatheredList list;
    EXPECT_EQ(list.Gather(flag), expected) << flag;  // the list stays when the files go
    EXPECT_EQ(ErrorFileNames().size(), flag != 0 ? 0u : 3u);
  }
  EXPECT_FALSE(Exists("UPPER.ERR"));
  for (const char* other : {"report.err.bak", "notes.txt", "folder.err", "CONTERRW.cdr"}) {
    EXPECT_TRUE(Exists(other)) << other;
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
  for (int twice = 0; twice < 2; ++twice) {
    BorraListaErrores(list.head, list.tail);
    EXPECT_EQ(list.head, nullptr);
    EXPECT_EQ(list.tail, nullptr);
  }
}

TEST_F(ErrorFiles, DamagedReportsReadAsFarAsTheyGo) {
  using namespace std::string_literals;
  const std::string q10000 = "\"" + std::string(10000, 'x') + "\"\r\n";
  const std::wstring x40(40, L'x');
  const struct {
    std::string bytes;
    std::wstring fields;
  } cases[] = {
      {"", L"0||||||||0|0|0"},
      {"7\r\n\"one\"\r\n\"tw", L"7|one|tw||||||0|0|0"},
      {"3\n\"a\"\n\"b\"\n\"c\"\n\"d\"\n\"e\"\n\"f\"\n\"g\"\n", L"3|a|b|c|d|e|f|g|0|0|0"},
      {"5\0"
       "9\r\n\"a\0b\"\r\n\0\r\n\"c\"\r\n\"d\"\r\n\"e\"\r\n\"f\"\r\n\"g\"\r\n1\0"
       "2\r\n2\r\n3\r\n"s,
       L"5|a||c|d|e|f|g|1|2|3"},
      // Text 4 is read from a line of 255 characters, the others from 80.
      {"4" + std::string(10000, ' ') + "9\r\n" + q10000 + q10000 + q10000 + q10000 + q10000 +
           q10000 + q10000 + "6" + std::string(10000, 'x') + "\r\n2" + std::string(10000, ' ') +
           "7\r\n-8\r\n",
       L"4|" + x40 + L"|" + x40 + L"|" + x40 + L"|" + std::wstring(254, L'x') + L"|" +
           std::wstring(79, L'x') + L"|" + x40 + L"|" + x40 + L"|6|2|-8"},
      {"1\r\nplain\r\n\"open\r\n", L"1||open||||||0|0|0"},
  };
  for (const auto& c : cases) {
    WriteBytes("damaged.err", c.bytes);
    GatheredList list;
    EXPECT_EQ(list.Gather(1), (std::map<std::string, std::wstring>{{"damaged.err", c.fields}}));
    EXPECT_FALSE(Exists("damaged.err"));
  }
}

TEST_F(ErrorFiles, LongTextsAreCutToWhatTheirLineAndFieldHold) {
  const std::wstring text78(78, L'z');
  GeneraError(9, text78.c_str(), L"b", L"c", std::wstring(2000, L'y').c_str(), text78.c_str(), L"f",
              L"g", 1, 2, 3);
  EXPECT_EQ(ReadBytes("00000001.err"), "9\r\n\"" + std::string(78, 'z') +
                                           "\"\r\n\"b\"\r\n\"c\"\r\n\"" + std::string(1020, 'y') +
                                           "\"\r\n\"" + std::string(78, 'z') +
                                           "\"\r\n\"f\"\r\n\"g\"\r\n1\r\n2\r\n3\r\n");
  GatheredList list;
  EXPECT_EQ(list.Gather(0),
            (std::map<std::string, std::wstring>{
                {"00000001.err", std::wstring(L"9|") + std::wstring(40, L'z') + L"|b|c|" +
                                     std::wstring(254, L'y') + L"|" + text78 + L"|f|g|1|2|3"}}));
}

TEST_F(ErrorFiles, ReportThatCannotBeOpenedIsStillListed) {
  std::error_code error;
  std::filesystem::create_symlink("nowhere.txt", "dangling.err", error);
  if (error) GTEST_SKIP() << "no symbolic links here";
  GatheredList list;
  EXPECT_EQ(list.Gather(1),
            (std::map<std::string, std::wstring>{{"dangling.err", L"0||||||||0|0|0"}}));
  EXPECT_FALSE(std::filesystem::is_symlink("dangling.err"));
}

TEST_F(ErrorFiles, NoReportWithoutAUsableCounter) {
  std::filesystem::create_directory("CONTERRW.cdr");
  Generate(kReports[0]);
  EXPECT_TRUE(ErrorFileNames().empty());
}

// --- several programs at once ---------------------------------------------------------------

constexpr const char* kCallsVariable = "KORVALEN_REPORT_CALLS";
constexpr const char* kStartFile = "start.flag";

// All values derive from the pair, so a report overwritten by another shows
// up as a missing pair.
Report WorkerReport(int worker, int call) {
  const std::wstring w = std::to_wstring(worker);
  const std::wstring c = std::to_wstring(call);
  return {1000 + worker,
          {L"worker " + w, L"call " + c, L"third", L"text four of worker " + w + L" call " + c,
           L"five", L"six " + c, L"seven " + w},
          worker,
          call,
          worker * 100000 + call};
}

// Runs only in the copies started below (KORVALEN_WORKER set).
TEST(ConcurrentReportsWorker, DISABLED_WriteReports) {
  const std::string worker = korvalen::testing::Environment("KORVALEN_WORKER");
  if (worker.empty()) GTEST_SKIP() << "runs only as a copy started by ConcurrentReports";
  const int calls = std::stoi(korvalen::testing::Environment(kCallsVariable));
  // All copies wait for the start file, so they write at the same time.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  while (!Exists(kStartFile) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  ASSERT_TRUE(Exists(kStartFile));
  for (int call = 0; call < calls; ++call) Generate(WorkerReport(std::stoi(worker), call));
}

class ConcurrentReports : public korvalen::testing::TempDirTest {};

TEST_F(ConcurrentReports, EveryReportGetsAFileOfItsOwn) {
  // Each Windows process started under Wine costs about a second.
  const int workers = RunningUnderWine() ? 4 : 8;
  const int calls = RunningUnderWine() ? 25 : 250;
  const int total = workers * calls;
  korvalen::testing::SetEnvironment(kCallsVariable, std::to_string(calls));
  std::thread starter([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(RunningUnderWine() ? 4000 : 300));
    WriteBytes(kStartFile, "go");
  });
  const int succeeded = korvalen::testing::RunTestsInCopies("ConcurrentReportsWorker.*", workers);
  starter.join();
  ASSERT_EQ(succeeded, workers);

  // Nothing was skipped or handed out twice: exactly the names 1 to total.
  const auto files = ErrorFileNames();
  char last[16];
  std::snprintf(last, sizeof last, "%08d", total);
  ASSERT_EQ(files.size(), static_cast<std::size_t>(total));
  EXPECT_EQ(files.front(), "00000001.err");
  EXPECT_EQ(files.back(), std::string(last) + ".err");
  EXPECT_EQ(ReadBytes("CONTERRW.cdr"), std::string(last) + "\r\n");

  // Every report whole, in a file of its own.
  GatheredList list;
  DameListaErrores(list.head, list.tail, 0);
  std::set<std::pair<int, LONG>> seen;
  for (const TRegError* e : list.Records()) {
    ASSERT_TRUE(e->number1 >= 0 && e->number1 < workers && e->number2 >= 0 && e->number2 < calls)
        << Narrow(e->file_name);
    const Report expected = WorkerReport(e->number1, e->number2);
    ASSERT_EQ(Fields(*e), Fields(expected)) << Narrow(e->file_name);
    ASSERT_EQ(ReadBytes(Narrow(e->file_name)), Bytes(expected));
    seen.insert({e->number1, e->number2});
  }
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(total));
}

}  // namespace
