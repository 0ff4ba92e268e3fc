// The queue of sheets to redo: exact bytes after each rewrite (the broader drop
// rule, the extra empty pair of a queue ending with a line end), taking pairs
// out by key, the shared work file, and two programs adding at the same moment.
#include "korvalen/datafiles/sheet_queue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "process_support.h"
#include "state_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::Lines;
using korvalen::testing::NameList;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;
using Clock = std::chrono::steady_clock;

constexpr const char* kQueue = "CHGCHAPA.SYS";
constexpr const char* kWork = "CHGCHAPA.AUX";

class SheetQueue : public korvalen::testing::TempDirTest {};

// "-" for the queue before or after: there is no queue file.
void SetQueue(const std::string& bytes) {
  std::filesystem::remove(kQueue);
  if (bytes != "-") WriteBytes(kQueue, bytes);
}
std::string Queue() { return Exists(kQueue) ? ReadBytes(kQueue) : "-"; }

TEST_F(SheetQueue, AddingRewritesTheQueue) {
  const struct {
    std::string before;
    std::wstring key, sheet;
    std::string after;
  } cases[] = {
      {"-", L"OF1", L"S1", Lines({"OF1", "S1"})},
      // The pass after the last pair reads two empty lines, copied as a pair.
      {Lines({"OF1", "S1"}), L"OF2", L"S2", Lines({"OF1", "S1", "", "", "OF2", "S2"})},
      {"OF1\r\nS1\r\nOF2\r\nS2", L"OF3", L"S3", Lines({"OF1", "S1", "OF2", "S2", "OF3", "S3"})},
      {"", L"OF1", L"S1", Lines({"", "", "OF1", "S1"})},
      // Either half equal drops an old pair; case matters.
      {Lines({"OF1", "S1", "OF2", "S2"}), L"OF1", L"S2", Lines({"", "", "OF1", "S2"})},
      {Lines({"of1", "s1"}), L"OF1", L"S1", Lines({"of1", "s1", "", "", "OF1", "S1"})},
      // An empty key drops the empty pairs, the one after the last pair too.
      {Lines({"", "", "OF1", "S1"}), L"", L"S9", Lines({"OF1", "S1", "", "S9"})},
      // Old lines are cut to 255 and 40 characters; a new value ends at a line
      // feed or at a character outside the code page.
      {Lines({std::string(300, 'k'), std::string(60, 's')}), L"OF\u4E00X", L"S\nT",
       Lines({std::string(255, 'k'), std::string(40, 's'), "", "", "OF", "S"})},
  };
  for (const auto& c : cases) {
    SetQueue(c.before);
    AnadirFicheroRehacerChapas(c.key.c_str(), c.sheet.c_str());
    EXPECT_EQ(Queue(), c.after) << c.before;
    EXPECT_FALSE(Exists(kWork)) << c.before;
  }
}

TEST_F(SheetQueue, TakingOutPairsOfAKey) {
  const struct {
    std::string before;
    std::wstring key;
    std::vector<std::wstring> taken;
    std::string after;
  } cases[] = {
      {Lines({"OF1", "A", "OF2", "B", "OF1", "C"}),
       L"OF1",
       {L"held", L"A", L"C"},
       Lines({"OF2", "B", "", ""})},
      {"OF1\r\nA\r\nOF2\r\nB\r\nOF1\r\nC", L"OF1", {L"held", L"A", L"C"}, Lines({"OF2", "B"})},
      {Lines({"OF1", "A"}), L"OF1", {L"held", L"A"}, Lines({"", ""})},
      // An empty key takes the empty pair after the last one.
      {Lines({"OF1", "A"}), L"", {L"held", L""}, Lines({"OF1", "A"})},
      {"", L"OF1", {L"held"}, Lines({"", ""})},
      // A taken sheet name is cut to 40 characters, a copied one to 255.
      {Lines({"OF1", std::string(60, 'a'), "OF2", std::string(300, 'b')}),
       L"OF1",
       {L"held", std::wstring(40, L'a')},
       Lines({"OF2", std::string(255, 'b'), "", ""})},
      {"-", L"OF1", {L"held"}, "-"},
  };
  for (const auto& c : cases) {
    SetQueue(c.before);
    NameList list;
    list.Add(L"held");  // taken names are appended to what the list holds
    LeerFicheroRehacerChapas(c.key.c_str(), list.first, list.last);
    EXPECT_EQ(list.Names(), c.taken) << c.before;
    EXPECT_EQ(Queue(), c.after) << c.before;
    EXPECT_FALSE(Exists(kWork)) << c.before;
  }
}

TEST_F(SheetQueue, RoundTrip) {
  AnadirFicheroRehacerChapas(L"OF1", L"CH-01");
  AnadirFicheroRehacerChapas(L"OF2", L"CH-02");
  AnadirFicheroRehacerChapas(L"OF1", L"CH-03");  // drops (OF1, CH-01)
  NameList list;
  LeerFicheroRehacerChapas(L"OF1", list.first, list.last);
  LeerFicheroRehacerChapas(L"OF2", list.first, list.last);
  EXPECT_EQ(list.Names(), (std::vector<std::wstring>{L"CH-03", L"CH-02"}));
}

// --- the shared work file -------------------------------------------------------------

TEST_F(SheetQueue, AWorkFileInTheWayChangesNothing) {
  WriteBytes(kQueue, Lines({"OF1", "A"}));
  std::filesystem::create_directory(kWork);
  AnadirFicheroRehacerChapas(L"OF2", L"B");
  NameList list;
  LeerFicheroRehacerChapas(L"OF1", list.first, list.last);
  EXPECT_EQ(list.first, nullptr);
  EXPECT_EQ(ReadBytes(kQueue), Lines({"OF1", "A"}));
  EXPECT_TRUE(std::filesystem::is_directory(kWork));
}

TEST_F(SheetQueue, AnAbandonedWorkFileIsTakenOver) {
  WriteBytes(kWork, "left by a program that died\r\n");
  const auto start = Clock::now();
  AnadirFicheroRehacerChapas(L"OF1", L"A");
  const auto waited = Clock::now() - start;
  EXPECT_EQ(ReadBytes(kQueue), Lines({"OF1", "A"}));
  EXPECT_FALSE(Exists(kWork));
  EXPECT_GE(waited, std::chrono::seconds(2));
  EXPECT_LT(waited, std::chrono::seconds(9));
}

// --- two programs at once ----------------------------------------------------------------

constexpr int kAdditions = 200;
constexpr const char* kStartFile = "start.flag";

std::string Pair(const char* what, int worker, int i) {
  return "W" + std::to_string(worker) + what + std::to_string(i);
}

// Runs only in the copies that the test below starts.
TEST(SheetQueueWorker, DISABLED_AddPairs) {
  const std::string index = korvalen::testing::Environment("KORVALEN_WORKER");
  if (index.empty()) GTEST_SKIP() << "runs only as a copy started by SheetQueue";
  const int worker = std::stoi(index);
  const auto deadline = Clock::now() + std::chrono::seconds(120);
  while (!Exists(kStartFile) && Clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ASSERT_TRUE(Exists(kStartFile));
  for (int i = 0; i < kAdditions; ++i) {
    const std::string k = Pair("-OF", worker, i), s = Pair("-CH", worker, i);
    AnadirFicheroRehacerChapas(std::wstring(k.begin(), k.end()).c_str(),
                               std::wstring(s.begin(), s.end()).c_str());
  }
}

TEST_F(SheetQueue, TwoProgramsAddingAtOnceLeaveWholePairs) {
  std::thread starter([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(RunningUnderWine() ? 3000 : 200));
    WriteBytes(kStartFile, "go");
  });
  const int succeeded = korvalen::testing::RunTestsInCopies("SheetQueueWorker.*", 2);
  starter.join();
  ASSERT_EQ(succeeded, 2);

  const std::string bytes = ReadBytes(kQueue);
  std::vector<std::string> lines;
  for (std::size_t at = 0, end = 0; at < bytes.size(); at = end + 2) {
    end = bytes.find("\r\n", at);
    ASSERT_NE(end, std::string::npos) << "a line without its end";
    lines.push_back(bytes.substr(at, end - at));
  }
  ASSERT_EQ(lines.size() % 2, 0u);

  // Every pair is whole: an empty pair, or the key and sheet of one addition;
  // each program's pairs come in the order it added them, none missing.
  int next[2] = {0, 0}, empty_pairs = 0;
  for (std::size_t p = 0; p < lines.size(); p += 2) {
    if (lines[p].empty() && lines[p + 1].empty()) {
      ++empty_pairs;
      continue;
    }
    const int worker = lines[p].size() > 1 ? lines[p][1] - '0' : -1;
    ASSERT_TRUE(worker == 0 || worker == 1) << lines[p];
    ASSERT_EQ(lines[p] + " " + lines[p + 1],
              Pair("-OF", worker, next[worker]) + " " + Pair("-CH", worker, next[worker]));
    ++next[worker];
  }
  EXPECT_EQ(next[0], kAdditions);
  EXPECT_EQ(next[1], kAdditions);
  EXPECT_EQ(empty_pairs, 2 * kAdditions - 1);  // each rewrite after the first copies one more
  EXPECT_FALSE(Exists(kWork));
}

}  // namespace
