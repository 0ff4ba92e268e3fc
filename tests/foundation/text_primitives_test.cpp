// Wide-text primitives: code-page conversions (every length and capacity),
// comparisons, tokens, integers and formatting.
#include <gtest/gtest.h>

#include <cwchar>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include "korvalen/foundation/primitives.h"

namespace {

TEST(Conversion, AnsiToWideUsesWindows1252) {
  const std::pair<const char*, std::wstring> cases[] = {
      {"abc", L"abc"},
      {"\x80", L"\u20AC"},            // euro sign
      {"\xF1\xD1", L"\u00F1\u00D1"},  // n with tilde
      {"\x81\x8D", L"\u0081\u008D"},  // undefined bytes keep their value
      {"", L""},
  };
  for (const auto& [bytes, wide] : cases) {
    wchar_t out[16];
    EXPECT_EQ(CharToTChar(out, 16, bytes), static_cast<int>(wide.size()) + 1) << bytes;
    EXPECT_EQ(std::wstring(out), wide);
  }
}

TEST(Conversion, WideToAnsiStopsAtUnconvertibleCharacterAndAtTheCapacity) {
  char out[16];
  TCharToChar(out, 16, L"ab\u4E2Dcd");
  EXPECT_STREQ(out, "ab");
  TCharToChar(out, 16, L"\u20AC\u00E9");
  EXPECT_STREQ(out, "\x80\xE9");
  char narrow[3];
  EXPECT_EQ(TCharToChar(narrow, 3, L"abcdef"), 0);
  EXPECT_STREQ(narrow, "ab");
}

// Texts of every length, plain ASCII and mixed with upper-half bytes, into
// every capacity: each byte converts as it does alone, the cut and the result
// follow the capacity, and nothing is written past it.
TEST(Conversion, AnsiToWideInEveryLengthAndCapacity) {
  std::wstring single(256, L'\0');
  for (int b = 1; b < 256; ++b) {
    const char text[2] = {static_cast<char>(b), 0};
    wchar_t out[2];
    ASSERT_EQ(CharToTChar(out, 2, text), 2) << b;
    single[static_cast<std::size_t>(b)] = out[0];
  }
  std::mt19937 random(11);
  for (int length = 0; length <= 70; ++length) {
    for (int trial = 0; trial < 12; ++trial) {
      // Trial 0 is plain ASCII; the others put upper-half bytes here and there.
      std::string text;
      std::wstring wide;
      for (int i = 0; i < length; ++i) {
        const bool high = trial > 0 && random() % static_cast<unsigned>(trial + 1) == 0;
        const auto b =
            static_cast<unsigned char>(high ? 0x80 + random() % 0x80 : 1 + random() % 0x7F);
        text += static_cast<char>(b);
        wide += single[b];
      }
      EXPECT_EQ(CharToTChar(nullptr, 5, text.c_str()), length + 1);
      for (int capacity = -1; capacity <= length + 2; ++capacity) {
        const auto room = static_cast<std::size_t>(capacity < 0 ? length + 1 : capacity);
        std::wstring out(room + 8, L'~');
        const int result = CharToTChar(out.data(), capacity, text.c_str());
        const int kept = capacity == 0                       ? -1
                         : capacity < 0 || capacity > length ? length
                                                             : capacity - 1;
        EXPECT_EQ(result, kept == length || capacity == 0 ? length + 1 : 0)
            << length << " " << capacity;
        if (kept >= 0) {
          ASSERT_EQ(out.substr(0, static_cast<std::size_t>(kept) + 1),
                    wide.substr(0, static_cast<std::size_t>(kept)) + L'\0')
              << "length " << length << " capacity " << capacity;
        }
        ASSERT_EQ(out.substr(room), std::wstring(8, L'~')) << "written past " << capacity;
      }
    }
  }
}

TEST(Strings, ComparisonsAreOrdinalWithUnitSign) {
  const std::tuple<const wchar_t*, const wchar_t*, int> cases[] = {
      // clang-format off
      {L"abc", L"abd", -1}, {L"b", L"a", 1}, {L"same", L"same", 0}, {L"a", L"ab", -1},
      {L"Z", L"a", -1}, {L"\u00E9", L"z", 1}, {L"", L"", 0}, {L"abcz", L"abca", 1},
      // clang-format on
  };
  for (const auto& [a, b, expected] : cases) EXPECT_EQ(StrCmp(a, b), expected) << a << " " << b;
  EXPECT_EQ(StrCmp("abc", L"abd"), -1);
  EXPECT_EQ(StrCmp(L"b", "a"), 1);
  EXPECT_EQ(StrCmp("x", "x"), 0);
  EXPECT_EQ(StriCmp(L"UNIDADES.CFG", L"unidades.cfg"), 0);
  EXPECT_LT(StriCmp("abc", L"ABD"), 0);
  EXPECT_GT(StriCmp(L"b", "A"), 0);
  EXPECT_EQ(StrnCmp(L"A000 5", L"A000 7", 4), 0);
  EXPECT_LT(StrnCmp("A000 5", "A000 7", 6), 0);
}

TEST(Strings, CopySearchAndChangeInPlace) {
  wchar_t buf[32];
  StrCpy(buf, "settings");
  StrCat(buf, L".cfg");
  StrnCat(buf, ".bak", 2);
  EXPECT_EQ(std::wstring(buf), L"settings.cfg.b");
  EXPECT_EQ(StrLen(buf), 14);
  EXPECT_EQ(StrLen("\xF1"), 1);
  StrnCpy(buf, L"abcdef", 3);
  EXPECT_EQ(std::wstring(buf), L"abctings.cfg.b");

  // The results of the 8-bit forms point into the converted copy.
  EXPECT_STREQ(StrrChr("name.part.cfg", L'.'), L".cfg");
  EXPECT_STREQ(StrStr("A001 \"text\" ;", "\""), L"\"text\" ;");
  EXPECT_EQ(StrChr(L"abc", L'z'), nullptr);
  EXPECT_EQ(StrCspn("A000 5 ;", L" ;"), 4u);

  wchar_t text[] = L"Chapa-01";
  EXPECT_STREQ(StrUpr(text), L"CHAPA-01");
  EXPECT_STREQ(StrLwr(text), L"chapa-01");
  EXPECT_STREQ(StrRev(text), L"10-apahc");
  wchar_t empty[] = L"";
  EXPECT_STREQ(StrRev(empty), L"");
}

TEST(Strings, TokenizerKeepsStateBetweenCalls) {
  wchar_t text[] = L"  one,two;;three ";
  std::wstring tokens;
  for (wchar_t* t = StrTok(text, ",; "); t != nullptr; t = StrTok(nullptr, ",; ")) {
    tokens += std::wstring(t) + L"|";
  }
  EXPECT_EQ(tokens, L"one|two|three|");
  EXPECT_EQ(StrTok(nullptr, L" "), nullptr);
}

TEST(Numbers, IntegersReadSaturatingAndWriteInAnyRadix) {
  const std::pair<const wchar_t*, int> reads[] = {
      // clang-format off
      {L"42", 42}, {L"  -17xyz", -17}, {L"+8", 8}, {L"abc", 0}, {L"", 0}, {L"12.9", 12},
      {L"2147483647", 2147483647}, {L"99999999999", 2147483647},
      {L"-99999999999", -2147483647 - 1},
      // clang-format on
  };
  for (const auto& [text, expected] : reads) {
    EXPECT_EQ(aToi(text), expected) << text;
    EXPECT_EQ(aTol(text), expected) << text;
  }
  EXPECT_EQ(aToi("  33 ;"), 33);
  EXPECT_EQ(strToul(L"0x1F", nullptr, 16), 31u);
  EXPECT_EQ(strToul("777", nullptr, 8), 511u);
  EXPECT_EQ(strToul(L"99999999999", nullptr, 10), 0xFFFFFFFFu);

  const std::tuple<int, int, const wchar_t*> writes[] = {
      // clang-format off
      {0, 10, L"0"}, {-125, 10, L"-125"}, {255, 16, L"ff"}, {5, 2, L"101"}, {-1, 16, L"ffffffff"},
      {2147483647, 10, L"2147483647"}, {-2147483647 - 1, 10, L"-2147483648"},
      // clang-format on
  };
  for (const auto& [value, radix, expected] : writes) {
    wchar_t buf[40];
    EXPECT_STREQ(iToa(value, buf, radix), expected);
    EXPECT_STREQ(lToa(value, buf, radix), expected);
  }
  EXPECT_DOUBLE_EQ(fabs(-3.5), 3.5);
}

TEST(Formatting, WideFormatTakesWideStrings) {
  wchar_t buf[128];
  EXPECT_EQ(sPrintf(buf, L"%s=%d", L"A000", 5), 6);
  EXPECT_STREQ(buf, L"A000=5");
  sPrintf(buf, "%s %c %1.3f", L"text", L'x', 2.5);
  EXPECT_STREQ(buf, L"text x 2.500");
  sPrintf(buf, L"[%5s|%-4s]", L"ab", L"c");
  EXPECT_STREQ(buf, L"[   ab|c   ]");
  sPrintf(buf, L"%S|%hs|%ls|%%", "narrow", "hs", L"ls");
  EXPECT_STREQ(buf, L"narrow|hs|ls|%");
  sPrintf(buf, L"%I64d", 1234567890123LL);
  EXPECT_STREQ(buf, L"1234567890123");

  std::wstring big(5000, L'x');
  std::wstring out(6000, L'?');
  EXPECT_EQ(sPrintf(out.data(), L"<%s>", big.c_str()), 5002);
  EXPECT_EQ(std::wstring(out.c_str()), L"<" + big + L">");
  EXPECT_EQ(out[5003], L'?');  // nothing written past the result
}

TEST(Resources, NoLanguageModuleMeansNoStrings) {
  wchar_t buf[64] = L"previous";
  EXPECT_EQ(LoadStr(26235, buf), 0);
  EXPECT_EQ(buf[0], 0);
}

}  // namespace
