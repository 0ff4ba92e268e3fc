// Wide-text primitives: conversions, comparisons, numbers and formatting.
#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "korvalen/foundation/primitives.h"

namespace {

TEST(Conversion, AnsiToWideUsesWindows1252) {
  struct Case {
    const char* bytes;
    std::wstring wide;
  };
  const Case cases[] = {
      {"abc", L"abc"},
      {"\x80", L"\u20AC"},         // euro sign
      {"\xF1\xD1", L"\u00F1\u00D1"},  // n with tilde
      {"\x81\x8D", L"\u0081\u008D"},  // undefined bytes keep their value
      {"", L""},
  };
  for (const Case& c : cases) {
    wchar_t out[16];
    EXPECT_EQ(CharToTChar(out, 16, c.bytes), static_cast<int>(c.wide.size()) + 1) << c.bytes;
    EXPECT_EQ(std::wstring(out), c.wide);
  }
}

TEST(Conversion, WideToAnsiStopsAtUnconvertibleCharacter) {
  char out[16];
  TCharToChar(out, 16, L"ab\u4E2Dcd");
  EXPECT_STREQ(out, "ab");
  TCharToChar(out, 16, L"\u20AC\u00E9");
  EXPECT_STREQ(out, "\x80\xE9");
}

TEST(Conversion, CapacityCutsAndTerminates) {
  wchar_t wide[4] = {L'x', L'x', L'x', L'x'};
  EXPECT_EQ(CharToTChar(wide, 4, "abcdef"), 0);
  EXPECT_EQ(std::wstring(wide), L"abc");
  char narrow[3];
  EXPECT_EQ(TCharToChar(narrow, 3, L"abcdef"), 0);
  EXPECT_STREQ(narrow, "ab");
  // -1: the destination is as large as the text needs.
  wchar_t big[32];
  EXPECT_EQ(CharToTChar(big, -1, "hello"), 6);
  EXPECT_EQ(std::wstring(big), L"hello");
}

TEST(Strings, StrCmpIsOrdinalWithUnitSign) {
  struct Case {
    const wchar_t* a;
    const wchar_t* b;
    int expected;
  };
  const Case cases[] = {{L"abc", L"abd", -1}, {L"b", L"a", 1},       {L"same", L"same", 0},
                        {L"a", L"ab", -1},    {L"Z", L"a", -1},      {L"\u00E9", L"z", 1},
                        {L"", L"", 0},        {L"abcz", L"abca", 1}};
  for (const Case& c : cases) {
    EXPECT_EQ(StrCmp(c.a, c.b), c.expected) << static_cast<const void*>(c.a);
  }
  EXPECT_EQ(StrCmp("abc", L"abd"), -1);
  EXPECT_EQ(StrCmp(L"b", "a"), 1);
  EXPECT_EQ(StrCmp("x", "x"), 0);
}

TEST(Strings, CaseInsensitiveAndCountedComparisons) {
  EXPECT_EQ(StriCmp(L"UNIDADES.CFG", L"unidades.cfg"), 0);
  EXPECT_LT(StriCmp("abc", L"ABD"), 0);
  EXPECT_GT(StriCmp(L"b", "A"), 0);
  EXPECT_EQ(StrnCmp(L"A000 5", L"A000 7", 4), 0);
  EXPECT_LT(StrnCmp("A000 5", "A000 7", 6), 0);
}

TEST(Strings, CopyAppendAndLength) {
  wchar_t buf[32];
  StrCpy(buf, "settings");
  EXPECT_EQ(std::wstring(buf), L"settings");
  StrCat(buf, L".cfg");
  StrnCat(buf, ".bak", 2);
  EXPECT_EQ(std::wstring(buf), L"settings.cfg.b");
  EXPECT_EQ(StrLen(buf), 14);
  EXPECT_EQ(StrLen("\xF1"), 1);
  StrnCpy(buf, L"abcdef", 3);
  EXPECT_EQ(std::wstring(buf), L"abctings.cfg.b");
}

TEST(Strings, SearchFunctionsOnEightBitTextPointIntoTheCopy) {
  const wchar_t* dot = StrrChr("name.part.cfg", L'.');
  ASSERT_NE(dot, nullptr);
  EXPECT_EQ(std::wstring(dot), L".cfg");
  const wchar_t* found = StrStr("A001 \"text\" ;", "\"");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(std::wstring(found), L"\"text\" ;");
  EXPECT_EQ(StrChr(L"abc", L'z'), nullptr);
  EXPECT_EQ(StrCspn("A000 5 ;", L" ;"), 4u);
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

TEST(Strings, InPlaceCaseAndReversal) {
  wchar_t text[] = L"Chapa-01";
  EXPECT_EQ(std::wstring(StrUpr(text)), L"CHAPA-01");
  EXPECT_EQ(std::wstring(StrLwr(text)), L"chapa-01");
  EXPECT_EQ(std::wstring(StrRev(text)), L"10-apahc");
  wchar_t empty[] = L"";
  EXPECT_EQ(std::wstring(StrRev(empty)), L"");
}

TEST(Numbers, IntegerTextsReadLikeAtoi) {
  struct Case {
    const wchar_t* text;
    int expected;
  };
  const Case cases[] = {{L"42", 42},          {L"  -17xyz", -17},         {L"+8", 8},
                        {L"abc", 0},          {L"", 0},                   {L"12.9", 12},
                        {L"2147483647", 2147483647}, {L"99999999999", 2147483647},
                        {L"-99999999999", -2147483647 - 1}};
  for (const Case& c : cases) {
    EXPECT_EQ(aToi(c.text), c.expected) << static_cast<const void*>(c.text);
    EXPECT_EQ(aTol(c.text), c.expected);
  }
  EXPECT_EQ(aToi("  33 ;"), 33);
}

TEST(Numbers, RealTextsReadLikeAtof) {
  struct Case {
    const wchar_t* text;
    double expected;
  };
  const Case cases[] = {{L"1.5", 1.5},   {L" -2.25e2x", -225.0}, {L".5", 0.5}, {L"7.", 7.0},
                        {L"1e", 1.0},    {L"inf", 0.0},          {L"nan", 0.0}, {L"0x10", 0.0},
                        {L"A12", 0.0},   {L"", 0.0}};
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(aTof(c.text), c.expected) << static_cast<const void*>(c.text);
  }
  wchar_t* end = nullptr;
  const wchar_t text[] = L"12.5mm";
  EXPECT_DOUBLE_EQ(StrTod(text, &end), 12.5);
  EXPECT_EQ(std::wstring(end), L"mm");
  EXPECT_EQ(strToul(L"0x1F", nullptr, 16), 31u);
  EXPECT_EQ(strToul("777", nullptr, 8), 511u);
  EXPECT_EQ(strToul(L"99999999999", nullptr, 10), 0xFFFFFFFFu);
}

TEST(Numbers, IntegerToText) {
  struct Case {
    int value;
    int radix;
    const wchar_t* expected;
  };
  const Case cases[] = {{0, 10, L"0"},     {-125, 10, L"-125"},         {255, 16, L"ff"},
                        {5, 2, L"101"},    {-1, 16, L"ffffffff"},        {2147483647, 10, L"2147483647"},
                        {-2147483647 - 1, 10, L"-2147483648"}};
  for (const Case& c : cases) {
    wchar_t buf[40];
    EXPECT_EQ(std::wstring(iToa(c.value, buf, c.radix)), c.expected);
    EXPECT_EQ(std::wstring(lToa(c.value, buf, c.radix)), c.expected);
  }
  EXPECT_DOUBLE_EQ(fabs(-3.5), 3.5);
}

TEST(Formatting, WideFormatTakesWideStrings) {
  wchar_t buf[128];
  EXPECT_EQ(sPrintf(buf, L"%s=%d", L"A000", 5), 6);
  EXPECT_EQ(std::wstring(buf), L"A000=5");
  sPrintf(buf, "%s %c %1.3f", L"text", L'x', 2.5);
  EXPECT_EQ(std::wstring(buf), L"text x 2.500");
  sPrintf(buf, L"[%5s|%-4s]", L"ab", L"c");
  EXPECT_EQ(std::wstring(buf), L"[   ab|c   ]");
  sPrintf(buf, L"%S|%hs|%ls|%%", "narrow", "hs", L"ls");
  EXPECT_EQ(std::wstring(buf), L"narrow|hs|ls|%");
  sPrintf(buf, L"%I64d", 1234567890123LL);
  EXPECT_EQ(std::wstring(buf), L"1234567890123");
}

TEST(Formatting, LongResultsReachTheCallersBuffer) {
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
