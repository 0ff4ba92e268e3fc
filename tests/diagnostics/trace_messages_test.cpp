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

TEST_F(TraceFile, FirstValueMakesTheFile) {
  ChivatoFicEntero(L"trace.txt", 42, L"count");
  EXPECT_EQ(ReadBytes("trace.txt"), "count = 42\r\n");
  EXPECT_FALSE(Exists("AUXCHIVA.DAT"));
}

TEST_F(TraceFile, EachNewValueFollowsAnEmptyLine) {
  ChivatoFicEntero(L"trace.txt", 42, L"count");
  ChivatoFicTexto(L"trace.txt", L"two words", L"name");
  EXPECT_EQ(ReadBytes("trace.txt"), "count = 42\r\n\r\nname = two words\r\n");
  ChivatoFicBool(L"trace.txt", 0, L"done");
  EXPECT_EQ(ReadBytes("trace.txt"), "count = 42\r\n\r\nname = two words\r\n\r\ndone = FALSE\r\n");
  EXPECT_FALSE(Exists("AUXCHIVA.DAT"));
}

TEST_F(TraceFile, WhatTheOldContentEndedWith) {
  const struct {
    const char* before;
    const char* after;
  } cases[] = {
      {"a = 1", "a = 1\r\nb = 2\r\n"},        // no line feed: no empty line
      {"", "\r\nb = 2\r\n"},                  // an empty file reads as one empty line
      {"a = 1\n", "a = 1\r\n\r\nb = 2\r\n"},  // LF alone counts as a line end
      {"a = 1\r\n\r\n", "a = 1\r\n\r\n\r\nb = 2\r\n"},
      {"a\r\n\x1A"
       "ignored\r\n",
       "a\r\n\r\nb = 2\r\n"},  // Ctrl-Z ends a text file
  };
  for (const auto& c : cases) {
    WriteBytes("trace.txt", c.before);
    ChivatoFicEntero(L"trace.txt", 2, L"b");
    EXPECT_EQ(ReadBytes("trace.txt"), c.after) << c.before;
  }
}

TEST_F(TraceFile, OldLinesAreCutTo80Characters) {
  const std::string line100(100, 'q');
  const std::string line5000(5000, 'r');
  WriteBytes("trace.txt", line100 + "\r\n" + line5000 + "\r\nshort\r\n");
  ChivatoFicEntero(L"trace.txt", 1, L"n");
  EXPECT_EQ(ReadBytes("trace.txt"),
            std::string(80, 'q') + "\r\n" + std::string(80, 'r') + "\r\nshort\r\n\r\nn = 1\r\n");
}

TEST_F(TraceFile, ValuesOfEachType) {
  const struct {
    std::function<void()> trace;
    const char* line;
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
  };
  for (const auto& c : cases) {
    std::filesystem::remove("t.txt");
    c.trace();
    EXPECT_EQ(ReadBytes("t.txt"), std::string(c.line) + "\r\n");
  }
}

TEST_F(TraceFile, LongEntriesAndPaths) {
  const std::wstring name(600, L'n');
  ChivatoFicTexto(L"t.txt", L"v", name.c_str());
  EXPECT_EQ(ReadBytes("t.txt"), std::string(498, 'n') + "\r\n");

  std::filesystem::create_directory("logs");
  ChivatoFicReal(L"logs\\trace.txt", 1.0, L"x");
  EXPECT_EQ(ReadBytes("logs/trace.txt"), "x = 1.000\r\n");
  EXPECT_FALSE(Exists("AUXCHIVA.DAT"));
}

TEST_F(TraceFile, WithoutAWorkFileTheTraceGivesWayToWhatTheWorkNameHolds) {
  WriteBytes("trace.txt", "a = 1\r\n");
  std::filesystem::create_directory("AUXCHIVA.DAT");  // cannot be opened for writing
  WriteBytes("AUXCHIVA.DAT/inside", "x");
  ChivatoFicEntero(L"trace.txt", 2, L"b");
  EXPECT_TRUE(std::filesystem::is_directory("trace.txt"));
  EXPECT_EQ(ReadBytes("trace.txt/inside"), "x");
  EXPECT_FALSE(Exists("AUXCHIVA.DAT"));
}

class TraceMessage : public ::testing::Test {
 protected:
  void SetUp() override {
    if (korvalen::testing::MessageBoxesAreWindows()) {
      GTEST_SKIP() << "message boxes here are windows that wait for a user";
    }
  }
};

TEST_F(TraceMessage, ShowsCaptionAndValue) {
  std::tm time{};
  time.tm_hour = 14;
  time.tm_min = 5;
  time.tm_sec = 9;
  const struct {
    std::function<void()> show;
    const char* shown;
  } cases[] = {
      {[] { ChivatoMsgTexto(L"hello world", L"Caption"); }, "Caption: hello world\n"},
      {[] { ChivatoMsgChar(L'z', L"c"); }, "c: z\n"},
      {[] { ChivatoMsgBool(-1, L"b"); }, "b: TRUE\n"},
      {[] { ChivatoMsgBool(0, L"b"); }, "b: FALSE\n"},
      {[] { ChivatoMsgShort(-7, L"s"); }, "s: -7\n"},
      {[] { ChivatoMsgEntero(42, L"i"); }, "i: 42\n"},
      {[] { ChivatoMsgLong(-2147483647 - 1, L"l"); }, "l: -2147483648\n"},
      {[] { ChivatoMsgReal(2.5, L"r"); }, "r: 2.500000\n"},
      {[&time] { ChivatoTiempo(L"start", time); }, "Tiempo: start -> 14:05:09.\n"},
  };
  for (const auto& c : cases) {
    ::testing::internal::CaptureStderr();
    c.show();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), c.shown);
  }
}

TEST_F(TraceMessage, LongTimeTextIsCutNotOverrun) {
  std::tm time{};
  const std::wstring text(5000, L't');
  ::testing::internal::CaptureStderr();
  ChivatoTiempo(text.c_str(), time);
  const std::string shown = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(shown, "Tiempo: " + std::string(1023, 't') + "\n");
}

}  // namespace
