// `korvalen text`: UTF-16 and 8-bit files printed as UTF-8, and converted
// both ways with their exact bytes.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tool_runner.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::RunTool;
using korvalen::testing::ToolTest;
using korvalen::testing::Utf16Le;
using korvalen::testing::WriteBytes;

// "Лист 😀", "ñ" as UTF-16LE with CR LF, and as UTF-8.
const std::string kUtf16 = Utf16Le(L"\u041B\u0438\u0441\u0442 \xD83D\xDE00\r\n\u00F1");
const std::string kUtf8 = "\xD0\x9B\xD0\xB8\xD1\x81\xD1\x82 \xF0\x9F\x98\x80\n\xC3\xB1\n";

TEST_F(ToolTest, TextCatPrintsEitherKindAsUtf8) {
  WriteBytes("wide.txt", kUtf16);
  EXPECT_EQ(RunTool("text cat wide.txt"), std::make_pair(0, kUtf8));
  EXPECT_EQ(RunTool("text cat installation/ORDENACT.SYS"),
            std::make_pair(0, std::string("OF-2024-0117\nPRE-2024-088\n")));
  EXPECT_NE(RunTool("text cat missing.txt").first, 0);
}

TEST_F(ToolTest, TextConvertWritesExactBytes) {
  EXPECT_EQ(RunTool("text convert --to utf16 installation/ORDENACT.SYS wide.txt").first, 0);
  EXPECT_EQ(ReadBytes("wide.txt"), Utf16Le(L"OF-2024-0117\r\nPRE-2024-088\r\n"));
  EXPECT_EQ(RunTool("text convert --to ansi wide.txt back.txt").first, 0);
  EXPECT_EQ(ReadBytes("back.txt"), ReadBytes("installation/ORDENACT.SYS"));
  // Cyrillic has no place in the code page: the line is cut, and said to be.
  WriteBytes("in.txt", kUtf16);
  const auto [status, output] = RunTool("text convert --to ansi in.txt cut.txt");
  EXPECT_NE(status, 0);
  EXPECT_NE(output.find("1 line(s)"), std::string::npos) << output;
  EXPECT_EQ(ReadBytes("cut.txt"), "\r\n\xF1\r\n");
  EXPECT_NE(RunTool("text convert --to latin1 in.txt cut.txt").first, 0);
}

}  // namespace
