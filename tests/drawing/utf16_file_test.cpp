// Text files that may be UTF-16: the mark and its byte order, both line
// readers with their deliberate differences (read both from the stream's
// buffer and a block at a time, in binary and text mode), the exact bytes
// written, and the 8-bit files of the file stand-ins underneath.
#include "korvalen/drawing/utf16_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;
using Lines = std::vector<std::wstring>;
using namespace std::string_literals;

class Utf16FileTest : public korvalen::testing::TempDirTest {};

// UTF-16 units as bytes, little-endian unless told.
std::string Units(const std::u16string& units, bool big_endian = false) {
  std::string bytes;
  for (const char16_t u : units) {
    const char low = static_cast<char>(u & 0xFF), high = static_cast<char>(u >> 8);
    bytes += big_endian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}
const std::string kMark = "\xFF\xFE";

std::wstring Wide(const std::u16string& units) { return std::wstring(units.begin(), units.end()); }

// Every line the file gives through one of the two readers; the buffer
// reader gets `capacity` characters and must leave the rest alone.
Lines ReadAll(UINT flags, bool buffer_form, UINT capacity = 100) {
  CUTF16File file;
  EXPECT_TRUE(file.Open(L"in.txt", CFile::modeRead | flags));
  Lines lines;
  for (int guard = 0; guard < 100; ++guard) {
    if (!buffer_form) {
      CString line;
      if (!file.ReadString(line)) break;
      lines.emplace_back(static_cast<const wchar_t*>(line), line.GetLength());
      continue;
    }
    std::vector<wchar_t> buffer(capacity + 8, L'#');
    const wchar_t* read = file.ReadString(buffer.data(), capacity);
    EXPECT_EQ(std::wstring(buffer.data() + capacity, 8), L"########");
    if (read == nullptr) break;
    lines.emplace_back(read);
  }
  return lines;
}

TEST_F(Utf16FileTest, ReadsBothOverloadsAsTheSuiteDoes) {
  const struct {
    const char* what;
    std::string bytes;
    Lines lines, buffer_lines;
  } cases[] = {
      {"CR LF", kMark + Units(u"A\r\nB"s), {L"A", L"B"}, {L"A\r"}},
      {"a single LF takes the next unit", kMark + Units(u"A\nBC"s), {L"A", L"C"}, {L"A\n", L"C"}},
      {"LF LF is one line end", kMark + Units(u"A\n\nB"s), {L"A", L"B"}, {L"A\n"}},
      {"the buffer form skips a unit after a pair",
       kMark + Units(u"AB\r\nCD\r\nEF"s),
       {L"AB", L"CD", L"EF"},
       {L"AB\r", L"D\r", L"F"}},
      {"big-endian", "\xFE\xFF" + Units(u"A\r\nB"s, true), {L"A", L"B"}, {L"A\r"}},
      {"an odd last byte", kMark + Units(u"A\r\nB"s) + "x", {L"A", L"B"}, {L"A\r"}},
      {"units as they are",
       kMark + Units(u"\xD83D\xDE00\xDC00\0z\r\n"s),
       {Wide(u"\xD83D\xDE00\xDC00\0z"s)},
       {Wide(u"\xD83D\xDE00\xDC00"s)}},
      {"a mark alone", kMark, {}, {}},
      {"one byte", "Z", {L"Z"}, {L"Z"}},
      {"empty", "", {}, {}},
  };
  for (const auto& c : cases) {
    WriteBytes("in.txt", c.bytes);
    // Binary files are read from the stream's buffer where it shows them,
    // text-mode ones a block at a time: the same lines either way.
    for (const UINT type : {UINT{CFile::typeBinary}, UINT{CFile::typeText}}) {
      EXPECT_EQ(ReadAll(type, false), c.lines) << c.what << " " << type;
      EXPECT_EQ(ReadAll(type, true), c.buffer_lines) << c.what << " " << type;
    }
  }
}

TEST_F(Utf16FileTest, LongLinesAndTinyBuffers) {
  const std::u16string line(1000000, u'x');
  WriteBytes("in.txt", kMark + Units(line + u"\r\nend"));
  EXPECT_EQ(ReadAll(CFile::typeBinary, false), (Lines{std::wstring(1000000, L'x'), L"end"}));
  const Lines pieces = ReadAll(CFile::typeBinary, true);
  ASSERT_FALSE(pieces.empty());
  EXPECT_EQ(pieces.front(), std::wstring(99, L'x'));
  // A buffer of 1 character is given back untouched.
  CUTF16File file(L"in.txt", CFile::modeRead | CFile::typeBinary);
  wchar_t one[2] = {L'#', L'#'};
  EXPECT_EQ(file.ReadString(one, 1), one);
  EXPECT_EQ(one[0], L'#');
}

TEST_F(Utf16FileTest, SeekRestartsFromTheStream) {
  WriteBytes("in.txt", kMark + Units(u"AB\nCD\r\nEF"s));
  CUTF16File file(L"in.txt", CFile::modeRead | CFile::typeBinary);
  EXPECT_EQ(file.IsUnicodeFile(), 1);
  CString line;
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_EQ(line, L"AB");  // C taken with the LF
  EXPECT_EQ(file.Seek(2, CFile::begin), 2);
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_EQ(line, L"AB");
  EXPECT_EQ(file.Seek(8, CFile::begin), 8);
  ASSERT_TRUE(file.ReadString(line));
  EXPECT_EQ(line, L"CD");
  EXPECT_EQ(file.GetPosition(), 16u);  // just after the pair
}

TEST_F(Utf16FileTest, MarkDetectionDependsOnTheOpen) {
  WriteBytes("in.txt", kMark + Units(u"A"s));
  {
    CUTF16File file;
    ASSERT_TRUE(file.Open(L"in.txt", CFile::modeWrite | CFile::typeBinary));
    EXPECT_EQ(file.IsUnicodeFile(), 0);  // never looked at
  }
  WriteBytes("plain.txt", "abc");
  CUTF16File file;
  ASSERT_TRUE(file.Open(L"in.txt", CFile::modeRead | CFile::typeBinary));
  ASSERT_TRUE(file.Open(L"plain.txt", CFile::modeRead | CFile::typeBinary));
  EXPECT_EQ(file.IsUnicodeFile(), 1);  // the flag found stays with the object
  CFileException error;
  EXPECT_FALSE(file.Open(L"missing.txt", CFile::modeRead, &error));
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
  EXPECT_EQ(error.m_strFileName, L"missing.txt");
  try {
    CUTF16File missing(L"missing.txt", CFile::modeRead);
    ADD_FAILURE() << "opened a missing file";
  } catch (CFileException* e) {
    EXPECT_EQ(e->m_cause, CFileException::fileNotFound);
    e->Delete();
  }
}

TEST_F(Utf16FileTest, WritesExactBytes) {
  {
    CUTF16File file(L"out.txt", CFile::modeCreate | CFile::modeWrite | CFile::typeBinary);
    file.WriteString(L"A\r\n", 1);
    file.WriteString(L"\U0001F600", 1);  // one character or a pair: the same units
    file.WriteString(L"\u00F1\n", 0);    // 8-bit, binary: no CR added
  }
  EXPECT_EQ(ReadBytes("out.txt"), kMark + Units(u"A\r\n\xD83D\xDE00"s) + "\xF1\n");
  {
    // Appending: the file stands at its end, so no second mark.
    CUTF16File file(L"out.txt", CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite |
                                    CFile::typeBinary);
    file.WriteString(L"B", 1);
  }
  EXPECT_EQ(ReadBytes("out.txt"), kMark + Units(u"A\r\n\xD83D\xDE00"s) + "\xF1\n" + Units(u"B"s));
  {
    CUTF16File file(L"text.txt", CFile::modeCreate | CFile::modeWrite);
    file.WriteString(L"A\u00F1o\n", 0);  // text mode: CR LF
    file.WriteString(L"x\u0416y\n", 7);  // not in the code page: the text ends there
    file.WriteString(L"\n", 0);
  }
  EXPECT_EQ(ReadBytes("text.txt"), "A\xF1o\r\nx\r\n");
}

TEST_F(Utf16FileTest, EightBitFilesThroughTheTextStream) {
  WriteBytes("in.txt", std::string("ab\0cd\r\nlast", 11));
  EXPECT_EQ(ReadAll(CFile::typeText, false), (Lines{L"ab", L"last"}));
  EXPECT_EQ(ReadAll(CFile::typeBinary, false), (Lines{L"ab", L"last"}));
  WriteBytes("in.txt", "abcdef\r\ng");
  EXPECT_EQ(ReadAll(CFile::typeText, true, 4), (Lines{L"abc", L"def", L"\n", L"g"}));
  EXPECT_EQ(ReadAll(CFile::typeBinary, false), (Lines{L"abcdef\r", L"g"}));

  CStdioFile file(L"in.txt", CFile::modeReadWrite | CFile::typeBinary);
  EXPECT_EQ(file.GetLength(), 9u);
  char bytes[4] = {};
  EXPECT_EQ(file.Read(bytes, 3), 3u);
  EXPECT_EQ(std::string(bytes), "abc");
  EXPECT_EQ(file.Seek(-1, CFile::end), 8);
  file.Write("XY", 2);
  EXPECT_EQ(file.GetPosition(), 10u);
  file.Close();
  EXPECT_EQ(ReadBytes("in.txt"), "abcdef\r\nXY");
  CFileException error;
  EXPECT_FALSE(file.Open(L"missing.txt", CFile::modeWrite, &error));  // no create: must exist
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
}

}  // namespace
