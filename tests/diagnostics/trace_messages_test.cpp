// Traces: the exact bytes a trace file gains with each value (the empty line
// the copy leaves, lines cut to 80), and the texts the message boxes show.
#include "korvalen/diagnostics/trace_messages.h"

#include <gtest/gtest.h>

#include <climits>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>

#include "process_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class TraceFile : public korvalen::testing::TempDirTest {};

// The copy loop also writes the empty line its last read gives, so a new entry
// follows an empty line whenever the old content ended with a line end.
TEST_F(TraceFile, EachValueRewritesTheFile) {
  const struct {
    std::string before;  // "-": no trace file yet
    std::string after;
  } cases[] = {
      {"-", "b = 2\r\n"},
      {"a = 1", "a = 1\r\nb = 2\r\n"},
      {"a = 1\r\n", "a = 1\r\n\r\nb = 2\r\n"},
      {"a = 1\r\n\r\nc = 3\r\n", "a = 1\r\n\r\nc = 3\r\n\r\nb = 2\r\n"},
      {"", "\r\nb = 2\r\n"},  // an empty file reads as one empty line
      {"a\r\n\x1A"
       "ignored\r\n",
       "a\r\n\r\nb = 2\r\n"},  // Ctrl-Z ends a text file
      {std::string(100, 'q') + "\r\n" + std::string(5000, 'r') + "\r\nshort\r\n",
       std::string(80, 'q') + "\r\n" + std::string(80, 'r') + "\r\nshort\r\n\r\nb = 2\r\n"},
  };
  for (const auto& c : cases) {
    std::filesystem::remove("trace.txt");
    if (c.before != "-") WriteBytes("trace.txt", c.before);
    ChivatoFicEntero(L"trace.txt", 2, L"b");
    EXPECT_EQ(ReadBytes("trace.txt"), c.after) << c.before.substr(0, 20);
    EXPECT_FALSE(Exists("AUXCHIVA.DAT"));
  }
}

TEST_F(TraceFile, ValuesOfEachType) {
  const std::wstring long_name(600, L'n');
  const struct {
    std::function<void()> trace;
    std::string line;
  } cases[] = {
      {[] { ChivatoFicTexto(L"t.txt", L"", L"empty"); }, "empty = "},
      {[] { ChivatoFicChar(L"t.txt", L'x', L"c"); }, "c = x"},
      {[] { ChivatoFicBool(L"t.txt", 5, L"b"); }, "b = TRUE"},
      {[] { ChivatoFicBool(L"t.txt", 0, L"b"); }, "b = FALSE"},
      {[] { ChivatoFicShort(L"t.txt", -32768, L"s"); }, "s = -32768"},
      {[] { ChivatoFicEntero(L"t.txt", INT_MAX, L"i"); }, "i = 2147483647"},
      {[] { ChivatoFicLong(L"t.txt", -2147483647 - 1, L"l"); }, "l = -2147483648"},
      {[] { ChivatoFicReal(L"t.txt", 2.5, L"r"); }, "r = 2.500"},
      {[] { ChivatoFicReal(L"t.txt", 1e6 / 3, L"r"); }, "r = 333333.333"},
      {[] { ChivatoFicReal(L"t.txt", -0.25, L"r"); }, "r = -0.250"},
      {[] { ChivatoFicReal(L"t.txt", 0.0625, L"r"); }, "r = 0.063"},
      {[&long_name] { ChivatoFicTexto(L"t.txt", L"v", long_name.c_str()); }, std::string(498, 'n')},
  };
  for (const auto& c : cases) {
    std::filesystem::remove("t.txt");
    c.trace();
    EXPECT_EQ(ReadBytes("t.txt"), c.line + "\r\n");
  }
  std::filesystem::create_directory("logs");
  ChivatoFicReal(L"logs\\trace.txt", 1.0, L"x");
  EXPECT_EQ(ReadBytes("logs/trace.txt"), "x = 1.000\r\n");
}

TEST_F(TraceFile, WithoutAWorkFileTheTraceGivesWayToWhatTheWorkNameHolds) {
  WriteBytes("trace.txt", "a = 1\r\n");
  std::filesystem::create_directory("AUXCHIVA.DAT");  // cannot be opened for writing
  WriteBytes("AUXCHIVA.DAT/inside", "x");
  ChivatoFicEntero(L"trace.txt", 2, L"b");
  EXPECT_EQ(ReadBytes("trace.txt/inside"), "x");
  EXPECT_FALSE(Exists("AUXCHIVA.DAT"));
}

TEST(TraceMessage, ShowsCaptionAndValue) {
  if (korvalen::testing::MessageBoxesAreWindows()) {
    GTEST_SKIP() << "message boxes here are windows that wait for a user";
  }
  std::tm time{};
  time.tm_hour = 14;
  time.tm_min = 5;
  time.tm_sec = 9;
  const std::wstring long_text(5000, L't');
  const struct {
    std::function<void()> show;
    std::string shown;
  } cases[] = {
      {[] { ChivatoMsgTexto(L"hello world", L"Caption"); }, "Caption: hello world"},
      {[] { ChivatoMsgChar(L'z', L"c"); }, "c: z"},
      {[] { ChivatoMsgBool(-1, L"b"); }, "b: TRUE"},
      {[] { ChivatoMsgBool(0, L"b"); }, "b: FALSE"},
      {[] { ChivatoMsgShort(-7, L"s"); }, "s: -7"},
      {[] { ChivatoMsgEntero(42, L"i"); }, "i: 42"},
      {[] { ChivatoMsgLong(-2147483647 - 1, L"l"); }, "l: -2147483648"},
      {[] { ChivatoMsgReal(2.5, L"r"); }, "r: 2.500000"},
      {[] { ChivatoMsgReal(-0.0078125, L"r"); }, "r: -0.007813"},
      {[&time] { ChivatoTiempo(L"start", time); }, "Tiempo: start -> 14:05:09."},
      // A text too long for the message is cut, never overrun.
      {[&] { ChivatoTiempo(long_text.c_str(), time); }, "Tiempo: " + std::string(1023, 't')},
  };
  for (const auto& c : cases) {
    ::testing::internal::CaptureStderr();
    c.show();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), c.shown + "\n");
  }
}

}  // namespace
