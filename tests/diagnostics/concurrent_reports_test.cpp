// Several programs reporting errors in one directory at the same moment: every
// report must end up in a file of its own, whole. The test program runs copies
// of itself as those programs.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include "korvalen/diagnostics/error_files.h"
#include "process_support.h"
#include "report_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Environment;
using korvalen::testing::ErrorFileNames;
using korvalen::testing::Exists;
using korvalen::testing::GatheredList;
using korvalen::testing::Narrow;
using korvalen::testing::ReadBytes;
using korvalen::testing::Report;
using korvalen::testing::ReportBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;

constexpr const char* kCallsVariable = "KORVALEN_REPORT_CALLS";
constexpr const char* kStartFile = "start.flag";

// What worker `worker` reports on its call `call`: all values derive from the
// pair, so a report overwritten by another shows up as a missing pair.
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
  const std::string worker = Environment("KORVALEN_WORKER");
  if (worker.empty()) GTEST_SKIP() << "runs only as a copy started by ConcurrentReports";
  const int calls = std::stoi(Environment(kCallsVariable));
  // All copies wait for the start file, so they write at the same time.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  while (!Exists(kStartFile) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  ASSERT_TRUE(Exists(kStartFile));
  for (int call = 0; call < calls; ++call) {
    korvalen::testing::Generate(WorkerReport(std::stoi(worker), call));
  }
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

  const auto files = ErrorFileNames();
  ASSERT_EQ(files.size(), static_cast<std::size_t>(total));
  // Nothing was skipped or handed out twice: exactly the names 1 to total.
  char last[16];
  std::snprintf(last, sizeof last, "%08d", total);
  EXPECT_EQ(files.front(), "00000001.err");
  EXPECT_EQ(files.back(), std::string(last) + ".err");
  EXPECT_EQ(ReadBytes("CONTERRW.cdr"), std::string(last) + "\r\n");

  GatheredList list;
  DameListaErrores(list.head, list.tail, 0);
  const auto records = list.Records();
  ASSERT_EQ(records.size(), static_cast<std::size_t>(total));
  std::set<std::pair<int, int>> seen;
  int whole = 0;
  for (const TRegError* e : records) {
    const Report expected = WorkerReport(e->number1, e->number2);
    seen.insert({e->number1, static_cast<int>(e->number2)});
    if (ReadBytes(Narrow(e->file_name)) == ReportBytes(expected) && e->code == expected.code &&
        e->number3 == expected.number3 && std::wstring(e->text4) == expected.texts[3]) {
      ++whole;
    }
  }
  EXPECT_EQ(whole, total);
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(total));
  EXPECT_EQ(seen.begin()->first, 0);
  EXPECT_EQ(seen.rbegin()->first, workers - 1);
}

}  // namespace
