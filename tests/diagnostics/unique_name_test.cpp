// The unique-name generator: what the counter file holds before and after,
// names that files left behind already hold, and a counter held by someone
// else. Callers in several programs at once are in the error-report tests.
#include "korvalen/diagnostics/unique_name.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "process_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::ExclusiveHold;
using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;
using Clock = std::chrono::steady_clock;

class UniqueName : public korvalen::testing::TempDirTest {};

// The next base name for the counter "CNT.cdr", or "" when there is none.
std::string Next(const wchar_t* counter = L"CNT.cdr", const wchar_t* extension = L".err") {
  wchar_t base[korvalen::kUniqueNameChars + 1] = L"junk";
  const int result = DameNombreFic(counter, extension, base);
  EXPECT_EQ(result, base[0] != 0 ? 1 : 0) << "result " << result;
  const std::wstring name(base);
  return std::string(name.begin(), name.end());
}

TEST_F(UniqueName, NextNameFollowsTheCounter) {
  const struct {
    const char* counter;  // null: no counter file
    const char* name;
  } cases[] = {
      {nullptr, "00000001"},         {"00000041\r\n", "00000042"},
      {"00000041", "00000042"},      {"00000041\r\nrest\r\n", "00000042"},
      {"99999999\r\n", "00000001"},  {"", "00000001"},
      {"0000004x\r\n", "00000001"},  {"41\r\n", "00000001"},
      {"000000041\r\n", "00000001"}, {"00000041 \r\n", "00000001"},
  };
  for (const auto& c : cases) {
    const std::string context = c.counter != nullptr ? c.counter : "no counter";
    std::filesystem::remove("CNT.cdr");
    if (c.counter != nullptr) WriteBytes("CNT.cdr", c.counter);
    EXPECT_EQ(Next(L"CNT.cdr", L".tst"), c.name) << context;
    const std::string file = std::string(c.name) + ".tst";
    EXPECT_TRUE(Exists(file)) << context;  // reserved by an empty file
    EXPECT_EQ(ReadBytes(file), "") << context;
    EXPECT_EQ(ReadBytes("CNT.cdr").substr(0, 10), std::string(c.name) + "\r\n") << context;
    std::filesystem::remove(file);
  }
}

TEST_F(UniqueName, NamesThatFilesHoldAreSkippedNeverOverwritten) {
  WriteBytes("CNT.cdr", "00000041\r\n");
  WriteBytes("00000042.err", "old report\r\n");
  WriteBytes("00000043.ERR", "old report in capitals\r\n");
  std::filesystem::create_directory("00000044.err");
  EXPECT_EQ(Next(), "00000045");
  EXPECT_EQ(ReadBytes("00000042.err"), "old report\r\n");
  EXPECT_EQ(ReadBytes("00000043.ERR"), "old report in capitals\r\n");
  EXPECT_EQ(ReadBytes("CNT.cdr"), "00000045\r\n");
  // A name the counter hands out after wrapping round is checked the same way.
  WriteBytes("CNT.cdr", "99999999\r\n");
  WriteBytes("00000001.err", "older still\r\n");
  EXPECT_EQ(Next(L"CNT.cdr", L"err"), "00000002");  // the dot is added
  EXPECT_TRUE(Exists("00000002.err"));
  EXPECT_EQ(ReadBytes("00000001.err"), "older still\r\n");
}

TEST_F(UniqueName, NamesGoBesideTheCounterFile) {
  std::filesystem::create_directory("reports");
  EXPECT_EQ(Next(L"reports\\CNT.cdr"), "00000001");
  EXPECT_TRUE(Exists("reports/00000001.err"));
  EXPECT_TRUE(Exists("reports/CNT.cdr"));
  EXPECT_FALSE(Exists("00000001.err"));
}

TEST_F(UniqueName, UnusableCounterFailsAtOnce) {
  std::filesystem::create_directory("CNT.cdr");
  const auto start = Clock::now();
  EXPECT_EQ(Next(), "");
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(1));
  for (const wchar_t* counter :
       {L"", static_cast<const wchar_t*>(nullptr), L"missing-folder/CNT.cdr"}) {
    EXPECT_EQ(Next(counter), "");
  }
}

// Held for a moment, the counter is waited for; held for good, it is given
// up in bounded time and left as it was.
TEST_F(UniqueName, HeldCounter) {
  for (const bool released : {false, true}) {
    WriteBytes("CNT.cdr", "00000007\r\n");
    ExclusiveHold hold("CNT.cdr");
    ASSERT_TRUE(hold.held());
    std::thread release([&hold, released] {
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      if (released) hold.Release();
    });
    const auto start = Clock::now();
    EXPECT_EQ(Next(), released ? "00000008" : "");
    const auto waited = Clock::now() - start;
    release.join();
    hold.Release();
    EXPECT_GE(waited, released ? std::chrono::milliseconds(250) : std::chrono::seconds(4));
    EXPECT_LT(waited, released ? std::chrono::seconds(3) : std::chrono::seconds(20));
    EXPECT_EQ(ReadBytes("CNT.cdr"), released ? "00000008\r\n" : "00000007\r\n");
    EXPECT_EQ(Exists("00000008.err"), released);
  }
}

}  // namespace
