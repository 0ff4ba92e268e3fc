// The unique-name generator: what the counter file holds before and after,
// names that files left behind already hold, a counter held by someone else,
// and callers in several threads at once.
#include "korvalen/diagnostics/unique_name.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "process_support.h"
#include "report_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::ExclusiveHold;
using korvalen::testing::Exists;
using korvalen::testing::Narrow;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;
using Clock = std::chrono::steady_clock;

class UniqueName : public korvalen::testing::TempDirTest {};

struct CounterCase {
  const char* what;
  const char* counter;  // null: no counter file
  const char* name;
};

TEST_F(UniqueName, NextNameFollowsTheCounter) {
  const CounterCase cases[] = {
      {"no counter yet", nullptr, "00000001"},
      {"last name", "00000041\r\n", "00000042"},
      {"without line end", "00000041", "00000042"},
      {"more lines", "00000041\r\nrest\r\n", "00000042"},
      {"last of all", "99999999\r\n", "00000001"},
      {"empty", "", "00000001"},
      {"damaged", "0000004x\r\n", "00000001"},
      {"too short", "41\r\n", "00000001"},
      {"too long", "000000041\r\n", "00000001"},
      {"blank after", "00000041 \r\n", "00000001"},
  };
  for (const CounterCase& c : cases) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove("CNT.cdr");
    if (c.counter != nullptr) WriteBytes("CNT.cdr", c.counter);
    wchar_t base[korvalen::kUniqueNameChars + 1];
    ASSERT_EQ(DameNombreFic(L"CNT.cdr", L".tst", base), 1);
    EXPECT_EQ(Narrow(base), c.name);
    const std::string file = std::string(c.name) + ".tst";
    EXPECT_TRUE(Exists(file));
    EXPECT_EQ(ReadBytes(file), "");
    EXPECT_EQ(ReadBytes("CNT.cdr").substr(0, 10), std::string(c.name) + "\r\n");
    std::filesystem::remove(file);
  }
}

TEST_F(UniqueName, NamesThatFilesHoldAreSkippedNeverOverwritten) {
  WriteBytes("CNT.cdr", "00000041\r\n");
  WriteBytes("00000042.err", "old report\r\n");
  WriteBytes("00000043.ERR", "old report in capitals\r\n");
  std::filesystem::create_directory("00000044.err");
  wchar_t base[korvalen::kUniqueNameChars + 1];
  ASSERT_EQ(DameNombreFic(L"CNT.cdr", L".err", base), 1);
  EXPECT_EQ(Narrow(base), "00000045");
  EXPECT_EQ(ReadBytes("00000042.err"), "old report\r\n");
  EXPECT_EQ(ReadBytes("00000043.ERR"), "old report in capitals\r\n");
  EXPECT_EQ(ReadBytes("CNT.cdr"), "00000045\r\n");
  // A name the counter hands out after wrapping round is checked the same way.
  WriteBytes("CNT.cdr", "99999999\r\n");
  WriteBytes("00000001.err", "older still\r\n");
  ASSERT_EQ(DameNombreFic(L"CNT.cdr", L"err", base), 1);  // the dot is added
  EXPECT_EQ(Narrow(base), "00000002");
  EXPECT_TRUE(Exists("00000002.err"));
  EXPECT_EQ(ReadBytes("00000001.err"), "older still\r\n");
}

TEST_F(UniqueName, NamesGoBesideTheCounterFile) {
  std::filesystem::create_directory("reports");
  wchar_t base[korvalen::kUniqueNameChars + 1];
  ASSERT_EQ(DameNombreFic(L"reports\\CNT.cdr", L".err", base), 1);
  EXPECT_EQ(Narrow(base), "00000001");
  EXPECT_TRUE(Exists("reports/00000001.err"));
  EXPECT_TRUE(Exists("reports/CNT.cdr"));
  EXPECT_FALSE(Exists("00000001.err"));
}

TEST_F(UniqueName, UnusableCounterFailsAtOnce) {
  std::filesystem::create_directory("CNT.cdr");
  wchar_t base[korvalen::kUniqueNameChars + 1] = L"junk";
  const auto start = Clock::now();
  EXPECT_EQ(DameNombreFic(L"CNT.cdr", L".err", base), 0);
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(1));
  EXPECT_EQ(base[0], 0);
  EXPECT_EQ(DameNombreFic(L"", L".err", base), 0);
  EXPECT_EQ(DameNombreFic(nullptr, L".err", base), 0);
  EXPECT_EQ(DameNombreFic(L"missing-folder/CNT.cdr", L".err", base), 0);
}

TEST_F(UniqueName, HeldCounterIsWaitedForThenTaken) {
  WriteBytes("CNT.cdr", "00000007\r\n");
  ExclusiveHold hold("CNT.cdr");
  ASSERT_TRUE(hold.held());
  std::thread release([&hold] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    hold.Release();
  });
  wchar_t base[korvalen::kUniqueNameChars + 1];
  const auto start = Clock::now();
  const int result = DameNombreFic(L"CNT.cdr", L".err", base);
  const auto waited = Clock::now() - start;
  release.join();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(Narrow(base), "00000008");
  EXPECT_GE(waited, std::chrono::milliseconds(250));
  EXPECT_LT(waited, std::chrono::seconds(3));
}

TEST_F(UniqueName, CounterHeldForeverIsGivenUpInBoundedTime) {
  WriteBytes("CNT.cdr", "00000007\r\n");
  ExclusiveHold hold("CNT.cdr");
  ASSERT_TRUE(hold.held());
  wchar_t base[korvalen::kUniqueNameChars + 1];
  const auto start = Clock::now();
  EXPECT_EQ(DameNombreFic(L"CNT.cdr", L".err", base), 0);
  const auto waited = Clock::now() - start;
  EXPECT_GE(waited, std::chrono::seconds(4));
  EXPECT_LT(waited, std::chrono::seconds(20));
  EXPECT_EQ(base[0], 0);
  hold.Release();
  EXPECT_EQ(ReadBytes("CNT.cdr"), "00000007\r\n");
  EXPECT_FALSE(Exists("00000008.err"));
}

TEST_F(UniqueName, ThreadsOfOneProcessNeverShareAName) {
  constexpr int kThreads = 4;
  constexpr int kCalls = 60;
  std::vector<std::vector<std::string>> names(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &names] {
      for (int i = 0; i < kCalls; ++i) {
        wchar_t base[korvalen::kUniqueNameChars + 1];
        if (DameNombreFic(L"CNT.cdr", L".tst", base) == 1) names[t].push_back(Narrow(base));
      }
    });
  }
  for (std::thread& t : threads) t.join();
  std::set<std::string> all;
  for (const auto& list : names) {
    EXPECT_EQ(list.size(), static_cast<std::size_t>(kCalls));
    all.insert(list.begin(), list.end());
  }
  // Every number from 1 up, each once, and the counter on the last.
  ASSERT_EQ(all.size(), static_cast<std::size_t>(kThreads * kCalls));
  EXPECT_EQ(*all.begin(), "00000001");
  EXPECT_EQ(*all.rbegin(), "00000240");
  EXPECT_EQ(ReadBytes("CNT.cdr"), "00000240\r\n");
}

}  // namespace
