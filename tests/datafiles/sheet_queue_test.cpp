// The queue of sheets to redo: exact bytes after each rewrite (the broader drop
// rule, the extra empty pair of a queue ending with a line end), taking pairs
// out by key, line limits, the shared work file, and two programs adding
// pairs at the same moment.
#include "korvalen/datafiles/sheet_queue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "korvalen/foundation/record_list.h"
#include "temp_dir_test.h"
#include "process_support.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;

constexpr const char* kQueue = "CHGCHAPA.SYS";
constexpr const char* kWork = "CHGCHAPA.AUX";

class SheetQueue : public korvalen::testing::TempDirTest {};

std::string Lines(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& l : lines) out += l + "\r\n";
  return out;
}

struct NameList {
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  ~NameList() { LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last)); }
  std::vector<std::wstring> Names() const {
    std::vector<std::wstring> out;
    for (const TRegListaNombre* n = first; n != nullptr; n = n->next) out.emplace_back(n->name);
    return out;
  }
};

// --- adding ------------------------------------------------------------------------

struct AddCase {
  const char* what;
  std::string before;  // "-": no queue
  std::wstring key;
  std::wstring sheet;
  std::string after;
};

TEST_F(SheetQueue, AddingRewritesTheQueue) {
  const AddCase cases[] = {
      {"first pair", "-", L"OF1", L"S1", Lines({"OF1", "S1"})},
      // The pass after the last pair reads two empty lines, copied as a pair.
      {"second pair", Lines({"OF1", "S1"}), L"OF2", L"S2",
       Lines({"OF1", "S1", "", "", "OF2", "S2"})},
      {"without a final line end", "OF1\r\nS1\r\nOF2\r\nS2", L"OF3", L"S3",
       Lines({"OF1", "S1", "OF2", "S2", "OF3", "S3"})},
      // Either half equal drops an old pair.
      {"same key or same sheet", Lines({"OF1", "S1", "OF2", "S2"}), L"OF1", L"S2",
       Lines({"", "", "OF1", "S2"})},
      {"same pair", Lines({"OF1", "S1"}), L"OF1", L"S1", Lines({"", "", "OF1", "S1"})},
      {"empty queue file", "", L"OF1", L"S1", Lines({"", "", "OF1", "S1"})},
      // An empty key drops the empty pairs, the one after the last pair too.
      {"empty key", Lines({"", "", "OF1", "S1"}), L"", L"S9", Lines({"OF1", "S1", "", "S9"})},
      {"case matters", Lines({"of1", "s1"}), L"OF1", L"S1",
       Lines({"of1", "s1", "", "", "OF1", "S1"})},
      {"carriage returns only", "OF1\rS1\r", L"OF2", L"S2", Lines({"OF1\rS1\r", "", "OF2", "S2"})},
      {"NUL byte", std::string("OF\0X\r\nS1", 8), L"OF2", L"S2", Lines({"OF", "S1", "OF2", "S2"})},
  };
  for (const AddCase& c : cases) {
    std::filesystem::remove(kQueue);
    if (c.before != "-") WriteBytes(kQueue, c.before);
    AnadirFicheroRehacerChapas(c.key.c_str(), c.sheet.c_str());
    EXPECT_EQ(ReadBytes(kQueue), c.after) << c.what;
    EXPECT_FALSE(Exists(kWork)) << c.what;
  }
}

TEST_F(SheetQueue, AddingCutsOldLinesToTheirLimits) {
  const std::string key(300, 'k');
  const std::string sheet(60, 's');
  WriteBytes(kQueue, Lines({key, sheet}));
  AnadirFicheroRehacerChapas(L"OF2", L"S2");
  EXPECT_EQ(ReadBytes(kQueue),
            Lines({std::string(255, 'k'), std::string(40, 's'), "", "", "OF2", "S2"}));
}

TEST_F(SheetQueue, ValuesNeverRunIntoTheNextLine) {
  AnadirFicheroRehacerChapas(L"OF\u4E00X", L"S\nT");
  EXPECT_EQ(ReadBytes(kQueue), Lines({"OF", "S"}));
}

// --- taking out --------------------------------------------------------------------

struct TakeCase {
  const char* what;
  std::string before;
  std::wstring key;
  std::vector<std::wstring> taken;
  std::string after;
};

TEST_F(SheetQueue, TakingOutPairsOfAKey) {
  const TakeCase cases[] = {
      {"two of three",
       Lines({"OF1", "A", "OF2", "B", "OF1", "C"}),
       L"OF1",
       {L"A", L"C"},
       Lines({"OF2", "B", "", ""})},
      {"without a final line end",
       "OF1\r\nA\r\nOF2\r\nB\r\nOF1\r\nC",
       L"OF1",
       {L"A", L"C"},
       Lines({"OF2", "B"})},
      {"none of the key", Lines({"OF2", "B"}), L"OF1", {}, Lines({"OF2", "B", "", ""})},
      {"all", Lines({"OF1", "A"}), L"OF1", {L"A"}, Lines({"", ""})},
      // An empty key takes the empty pair after the last one.
      {"empty key", Lines({"OF1", "A"}), L"", {L""}, Lines({"OF1", "A"})},
      {"empty file", "", L"OF1", {}, Lines({"", ""})},
      {"sheet names cut to 40",
       Lines({"OF1", std::string(60, 'a'), "OF2", std::string(60, 'b')}),
       L"OF1",
       {std::wstring(40, L'a')},
       Lines({"OF2", std::string(60, 'b'), "", ""})},
  };
  for (const TakeCase& c : cases) {
    WriteBytes(kQueue, c.before);
    NameList list;
    LeerFicheroRehacerChapas(c.key.c_str(), list.first, list.last);
    EXPECT_EQ(list.Names(), c.taken) << c.what;
    EXPECT_EQ(ReadBytes(kQueue), c.after) << c.what;
    EXPECT_FALSE(Exists(kWork)) << c.what;
  }
}

TEST_F(SheetQueue, TakenNamesAreAppendedToTheCallersList) {
  NameList list;
  WriteBytes(kQueue, Lines({"OF1", "A"}));
  LeerFicheroRehacerChapas(L"OF1", list.first, list.last);
  WriteBytes(kQueue, Lines({"OF1", "B"}));
  LeerFicheroRehacerChapas(L"OF1", list.first, list.last);
  EXPECT_EQ(list.Names(), (std::vector<std::wstring>{L"A", L"B"}));
  EXPECT_EQ(list.last->previous, list.first);
}

TEST_F(SheetQueue, NoQueueNothingHappens) {
  NameList list;
  LeerFicheroRehacerChapas(L"OF1", list.first, list.last);
  EXPECT_EQ(list.first, nullptr);
  EXPECT_FALSE(Exists(kQueue));
  EXPECT_FALSE(Exists(kWork));
}

TEST_F(SheetQueue, RoundTrip) {
  AnadirFicheroRehacerChapas(L"OF1", L"CH-01");
  AnadirFicheroRehacerChapas(L"OF2", L"CH-02");
  AnadirFicheroRehacerChapas(L"OF1", L"CH-03");  // drops (OF1, CH-01)
  NameList list;
  LeerFicheroRehacerChapas(L"OF1", list.first, list.last);
  EXPECT_EQ(list.Names(), (std::vector<std::wstring>{L"CH-03"}));
  NameList rest;
  LeerFicheroRehacerChapas(L"OF2", rest.first, rest.last);
  EXPECT_EQ(rest.Names(), (std::vector<std::wstring>{L"CH-02"}));
}

// --- the shared work file -----------------------------------------------------------

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
  const auto start = std::chrono::steady_clock::now();
  AnadirFicheroRehacerChapas(L"OF1", L"A");
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(ReadBytes(kQueue), Lines({"OF1", "A"}));
  EXPECT_FALSE(Exists(kWork));
  EXPECT_GE(waited, std::chrono::seconds(2));
  EXPECT_LT(waited, std::chrono::seconds(9));
}

TEST_F(SheetQueue, WaitsWhileAnotherProgramHoldsTheWorkFile) {
  WriteBytes(kQueue, Lines({"OF1", "A"}));
  WriteBytes(kWork, "");
  // The holder finishes its rewrite after a moment.
  std::thread holder([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    WriteBytes(kWork, Lines({"OF1", "A", "OF9", "Z"}));
    std::filesystem::rename(kWork, kQueue);
  });
  AnadirFicheroRehacerChapas(L"OF2", L"B");
  holder.join();
  EXPECT_EQ(ReadBytes(kQueue), Lines({"OF1", "A", "OF9", "Z", "", "", "OF2", "B"}));
}

// --- two programs at once -------------------------------------------------------------

constexpr int kAdditions = 200;
constexpr const char* kStartFile = "start.flag";

std::string Key(int worker, int i) {
  return "W" + std::to_string(worker) + "-OF" + std::to_string(i);
}
std::string Sheet(int worker, int i) {
  return "W" + std::to_string(worker) + "-CH" + std::to_string(i);
}

// Runs only in the copies that the test below starts.
TEST(SheetQueueWorker, DISABLED_AddPairs) {
  const std::string index = korvalen::testing::Environment("KORVALEN_WORKER");
  if (index.empty()) GTEST_SKIP() << "runs only as a copy started by SheetQueue";
  const int worker = std::stoi(index);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  while (!Exists(kStartFile) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ASSERT_TRUE(Exists(kStartFile));
  for (int i = 0; i < kAdditions; ++i) {
    const std::string k = Key(worker, i), s = Sheet(worker, i);
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
  ASSERT_GE(bytes.size(), 2u);
  ASSERT_EQ(bytes.substr(bytes.size() - 2), "\r\n");
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = bytes.find("\r\n", at);
    ASSERT_NE(end, std::string::npos);
    lines.push_back(bytes.substr(at, end - at));
    at = end + 2;
  }
  ASSERT_EQ(lines.size() % 2, 0u);

  // Every pair is whole: an empty pair, or the key and sheet of one addition;
  // each program's pairs stay in the order it added them.
  std::set<std::pair<int, int>> seen;
  int last_of[2] = {-1, -1};
  int empty_pairs = 0;
  for (std::size_t p = 0; p < lines.size(); p += 2) {
    const std::string& key = lines[p];
    const std::string& sheet = lines[p + 1];
    if (key.empty() && sheet.empty()) {
      ++empty_pairs;
      continue;
    }
    int worker = -1, i = -1;
    ASSERT_EQ(std::sscanf(key.c_str(), "W%d-OF%d", &worker, &i), 2) << key;
    ASSERT_TRUE(worker == 0 || worker == 1) << key;
    EXPECT_EQ(key, Key(worker, i));
    EXPECT_EQ(sheet, Sheet(worker, i)) << key;
    EXPECT_TRUE(seen.insert({worker, i}).second) << key;
    EXPECT_GT(i, last_of[worker]) << key;
    last_of[worker] = i;
  }
  const int pairs = static_cast<int>(seen.size());
  // Each rewrite after the first copies one more empty pair.
  EXPECT_EQ(empty_pairs, pairs - 1);
  // The work file keeps the programs apart, so no addition is lost.
  EXPECT_EQ(pairs, 2 * kAdditions);
  EXPECT_FALSE(Exists(kWork));
}

}  // namespace
