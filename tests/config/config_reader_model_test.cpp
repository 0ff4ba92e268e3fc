// The config reader against a plain model of its rules, on random lines and
// files: the reader takes shortcuts (words read as numbers where they stand,
// lines converted in blocks), and none of them may change a value or a cursor.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "guarded_buffer.h"
#include "korvalen/config/config_reader.h"
#include "korvalen/foundation/primitives.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::GuardedBuffer;
using korvalen::testing::WriteBytes;

// --- the model ------------------------------------------------------------------

constexpr wchar_t kQuote = L'"';

struct Field {
  std::wstring text;
  int cursor;
};

int StartOf(int cursor) { return std::max(cursor, 0); }
int LengthOf(const std::wstring& line) { return static_cast<int>(line.size()); }

Field ModelWord(const std::wstring& line, int cursor, wchar_t sep) {
  const int n = LengthOf(line);
  int i = StartOf(cursor);
  std::wstring word;
  while (i < n && line[static_cast<std::size_t>(i)] == sep) ++i;
  for (; i < n && line[static_cast<std::size_t>(i)] != sep; ++i)
    word += line[static_cast<std::size_t>(i)];
  return {word, i};
}

Field ModelQuotedFrom(const std::wstring& line, int i) {
  const int n = LengthOf(line);
  std::wstring text;
  for (; i < n && line[static_cast<std::size_t>(i)] != kQuote; ++i)
    text += line[static_cast<std::size_t>(i)];
  return {text, i + 1};
}

Field ModelTexto(const std::wstring& line, int cursor) {
  const int n = LengthOf(line);
  int i = StartOf(cursor);
  while (i < n && line[static_cast<std::size_t>(i)] != kQuote) ++i;
  return ModelQuotedFrom(line, i + 1);
}

Field ModelString(const std::wstring& line, int cursor, wchar_t sep) {
  const int n = LengthOf(line);
  int i = StartOf(cursor);
  while (i < n && line[static_cast<std::size_t>(i)] == sep) ++i;
  if (i < n && line[static_cast<std::size_t>(i)] == kQuote) return ModelQuotedFrom(line, i + 1);
  return ModelWord(line, i, sep);
}

// Words read as values pass through 80 characters.
std::wstring Cut(const std::wstring& word) { return word.substr(0, 79); }

wchar_t Wide(char c) {
  const char text[2] = {c, 0};
  wchar_t out[2] = {};
  CharToTChar(out, 2, text);
  return out[0];
}

// --- the readers against it -----------------------------------------------------

std::wstring Render(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%a", value);
  return std::wstring(text, text + std::char_traits<char>::length(text));
}

// Runs reader number `which` on the line from the cursor; returns the value
// rendered and the cursor after, for both the library and the model.
struct Outcome {
  std::wstring value;
  int cursor;
  bool operator==(const Outcome&) const = default;
};

constexpr int kReaders = 13;

Outcome RunLibrary(int which, const std::wstring& line, int cursor, char sep) {
  const wchar_t* l = line.c_str();
  std::vector<wchar_t> text(line.size() + 1, L'#');
  int i = 0;
  short s = 0;
  LONG g = 0;
  double r = 0;
  wchar_t c = 0;
  switch (which) {
    case 0:
      LeerUnStr(l, cursor, text.data());
      return {text.data(), cursor};
    case 1:
      LeerUnStrSep(l, cursor, sep, text.data());
      return {text.data(), cursor};
    case 2:
      LeerUnChar(l, cursor, c);
      return {std::wstring(1, c), cursor};
    case 3:
      LeerUnTexto(l, cursor, text.data());
      return {text.data(), cursor};
    case 4:
      LeerUnString(l, cursor, text.data());
      return {text.data(), cursor};
    case 5:
      LeerUnStringSep(l, cursor, sep, text.data());
      return {text.data(), cursor};
    case 6:
      LeerSIoNO(l, cursor, i);
      return {std::to_wstring(i), cursor};
    case 7:
      LeerSIoNOInt(l, cursor, i);
      return {std::to_wstring(i), cursor};
    case 8:
      LeerUnShort(l, cursor, s);
      return {std::to_wstring(s), cursor};
    case 9:
      LeerUnEntero(l, cursor, i);
      return {std::to_wstring(i), cursor};
    case 10:
      LeerUnEnteroSep(l, cursor, sep, i);
      return {std::to_wstring(i), cursor};
    case 11:
      LeerUnLong(l, cursor, g);
      return {std::to_wstring(g), cursor};
    default:
      LeerUnReal(l, cursor, r);
      return {Render(r), cursor};
  }
}

Outcome RunModel(int which, const std::wstring& line, int cursor, char sep) {
  const wchar_t blank = L' ';
  const wchar_t wide_sep = Wide(sep);
  const Field w = ModelWord(line, cursor, which == 1 || which == 10 ? wide_sep : blank);
  const std::wstring cut = Cut(w.text);
  switch (which) {
    case 0:
    case 1:
      return {w.text, w.cursor};
    case 2:
      return {std::wstring(1, cut.empty() ? blank : cut[0]), w.cursor};
    case 3: {
      const Field t = ModelTexto(line, cursor);
      return {t.text, t.cursor};
    }
    case 4:
    case 5: {
      const Field t = ModelString(line, cursor, which == 5 ? wide_sep : blank);
      return {t.text, t.cursor};
    }
    case 6:
      return {StriCmp(cut.c_str(), L"ON") == 0 ? L"1" : L"0", w.cursor};
    case 7:
      return {aToi(cut.c_str()) != 0 ? L"1" : L"0", w.cursor};
    case 8:
      return {std::to_wstring(static_cast<short>(aToi(cut.c_str()))), w.cursor};
    case 9:
    case 10:
    case 11:
      return {std::to_wstring(aToi(cut.c_str())), w.cursor};
    default:
      return {Render(!cut.empty() && cut[0] == L'A' ? 99999.999 : aTof(cut.c_str())), w.cursor};
  }
}

// Characters that make fields, numbers and switches, with the blank controls
// that the number readers skip but the word readers keep.
const std::wstring kAlphabet =
    L"      \"\"AAaa0123456789..ee--++\t\v\rOoNn,;x\u00E9\u00D3\u00F3\u0147";

std::wstring RandomLine(std::mt19937& random) {
  auto pick = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  std::wstring line;
  const int parts = pick(0, 12);
  for (int p = 0; p < parts; ++p) {
    if (pick(0, 15) == 0) {
      // A word too long for the value buffer, or right at its limit.
      const int length = pick(0, 1) == 0 ? pick(77, 82) : pick(83, 300);
      line.append(static_cast<std::size_t>(length - 2), L'0');
      line += L"12";
    } else {
      const int length = pick(1, 8);
      for (int i = 0; i < length; ++i) {
        line +=
            kAlphabet[static_cast<std::size_t>(pick(0, static_cast<int>(kAlphabet.size()) - 1))];
      }
    }
    line += L' ';
  }
  return line;
}

TEST(ConfigReaderModel, FieldReadersOnRandomLines) {
  std::mt19937 random(4242);
  const char separators[] = {' ', ',', ';', '5', '.', 'e', '"', '\xE9'};
  for (int round = 0; round < 20000; ++round) {
    const std::wstring line = RandomLine(random);
    const int n = LengthOf(line);
    const int cursor = std::uniform_int_distribution<int>(-3, n + 20)(random);
    const char sep = separators[random() % sizeof separators];
    for (int which = 0; which < kReaders; ++which) {
      const Outcome got = RunLibrary(which, line, cursor, sep);
      const Outcome want = RunModel(which, line, cursor, sep);
      ASSERT_EQ(got.value, want.value)
          << "reader " << which << " cursor " << cursor << " sep " << sep << " line size " << n;
      ASSERT_EQ(got.cursor, want.cursor)
          << "reader " << which << " cursor " << cursor << " sep " << sep << " line size " << n;
    }
    // The record head, whatever stands at the start.
    wchar_t type = L'?';
    int index = -1;
    int head_cursor = -1;
    ObtenerTipoIndexCfg(line.c_str(), type, index, head_cursor);
    int i = 0;
    while (i < n && line[static_cast<std::size_t>(i)] == L' ') ++i;
    const Field word = ModelWord(line, i + 1, L' ');
    ASSERT_EQ(type, i < n ? line[static_cast<std::size_t>(i)] : L'?');
    ASSERT_EQ(index, aToi(Cut(word.text).c_str()));
    ASSERT_EQ(head_cursor, word.cursor);
  }
}

// --- lines from files -----------------------------------------------------------

class ConfigReaderFiles : public korvalen::testing::TempDirTest {};

// Physical lines as text mode gives them: CR LF folded, split at the line feed.
std::vector<std::string> PhysicalLines(const std::string& raw) {
  std::string text;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\r' && i + 1 < raw.size() && raw[i + 1] == '\n') continue;
    text += raw[i];
  }
  std::vector<std::string> lines;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find('\n', from)) != std::string::npos; from = at + 1) {
    lines.push_back(text.substr(from, at - from));
  }
  if (from < text.size()) lines.push_back(text.substr(from));
  return lines;
}

// A line as the readers deliver it: up to its first NUL byte, each byte
// converted as the code page converts it alone, cut to the limit.
std::wstring Delivered(const std::string& bytes, int max_length) {
  std::wstring out;
  for (char b : bytes) {
    if (b == 0) break;
    out += Wide(b);
  }
  const auto limit = static_cast<std::size_t>(std::clamp(max_length, 0, 1023));
  return out.substr(0, limit);
}

std::string RandomBytes(std::mt19937& random) {
  auto pick = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  // Lengths around the conversion blocks and the reader's pieces.
  const int lengths[] = {0,  1,  7,  8,  9,   15,  16,  17,  31,  32,
                         33, 79, 80, 81, 126, 127, 128, 638, 639, 2100};
  const int length = pick(0, 3) == 0 ? pick(0, 200) : lengths[pick(0, 19)];
  std::string bytes;
  const int kind = pick(0, 3);
  for (int i = 0; i < length; ++i) {
    int b = pick(0x20, 0x7E);
    if (kind == 1 && pick(0, 10) == 0) b = pick(0x80, 0xFF);
    if (kind == 2 && pick(0, 40) == 0) b = pick(0, 2) == 0 ? 0 : '\r';
    bytes += static_cast<char>(b);
  }
  return bytes;
}

TEST_F(ConfigReaderFiles, LinesOfRandomBytes) {
  std::mt19937 random(99);
  const int maxima[] = {0, 5, 80, 500, 1023, 1100};
  for (int round = 0; round < 60; ++round) {
    std::string raw;
    const int count = std::uniform_int_distribution<int>(1, 40)(random);
    for (int i = 0; i < count; ++i)
      raw += RandomBytes(random) + (random() % 3 == 0 ? "\n" : "\r\n");
    if (random() % 2 == 0) raw += RandomBytes(random);  // a last line without its line end
    WriteBytes("R.TXT", raw);
    const std::vector<std::string> lines = PhysicalLines(raw);
    const int max_length = maxima[random() % 6];

    FILE* f = fOpen("R.TXT", "rt");
    ASSERT_NE(f, nullptr);
    GuardedBuffer line(static_cast<std::size_t>(std::max(max_length, 0)) + 1);
    for (std::size_t i = 0; i <= lines.size(); ++i) {
      LeerLineaDeFichero(f, line.get(), max_length);
      const std::wstring want = i < lines.size() ? Delivered(lines[i], max_length) : L"";
      ASSERT_EQ(line.text(), want) << "round " << round << " line " << i << " max " << max_length;
      ASSERT_TRUE(line.guard_intact());
    }
    EXPECT_TRUE(std::feof(f));
    std::fclose(f);

    // The record reader: the same lines at 80 characters, classified.
    f = fOpen("R.TXT", "rt");
    ASSERT_NE(f, nullptr);
    GuardedBuffer record(81);
    wchar_t type = L'?';
    int index = -1;
    int cursor = -1;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const wchar_t type_before = type;
      const int index_before = index;
      const int cursor_before = cursor;
      LeerLineaDeCfg(f, record.get(), type, index, cursor);
      const std::wstring want = Delivered(lines[i], 80);
      ASSERT_EQ(record.text(), want) << "round " << round << " line " << i;
      ASSERT_TRUE(record.guard_intact());
      if (want.empty() || want[0] == L'#') {
        EXPECT_EQ(type, want.empty() ? L' ' : L'#');
        EXPECT_EQ(index, index_before);
        EXPECT_EQ(cursor, cursor_before);
      } else {
        wchar_t head_type = type_before;
        int head_index = 0;
        int head_cursor = 0;
        ObtenerTipoIndexCfg(want.c_str(), head_type, head_index, head_cursor);
        EXPECT_EQ(type, head_type);
        EXPECT_EQ(index, head_index);
        EXPECT_EQ(cursor, head_cursor);
      }
    }
    std::fclose(f);
  }
}

}  // namespace
