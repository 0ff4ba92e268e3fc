// Wide-text primitives: code-page conversions (every length and capacity),
// comparisons, tokens, integers and formatting.
#include <gtest/gtest.h>

#include <cwchar>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/foundation/string_resources.h"
#include "korvalen/foundation/text_conversion.h"

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

// Characters 1252 cannot hold are written as the look-alike Windows picks;
// those with none still cut the text. Checked on both systems, since the files
// each writes must match.
TEST(Conversion, WideToAnsiTakesTheBestFitLookAlike) {
  const std::pair<std::wstring, std::string> cases[] = {
      {L"\u0100", "A"},     // A with macron
      {L"\u0151", "o"},     // o with double acute
      {L"\u221E", "8"},     // infinity
      {L"\uFF21", "A"},     // fullwidth A
      {L"\u0110", "\xD0"},  // D with stroke: the look-alike is not ASCII
      {L"\u2248", "\x98"},  // almost equal: into the 0x80-0x9F row
      {L"\u4E2D", ""},      // no look-alike: the text ends
      {L"\u0080", ""},      // a C1 control 1252 has no byte for
      {L"\U00010100", ""},  // beyond UTF-16, though U+0100 has a look-alike
  };
  for (const auto& [wide, fit] : cases) {
    char out[16];
    TCharToChar(out, 16, (L"ab" + wide + L"cd").c_str());
    EXPECT_EQ(std::string(out), fit.empty() ? "ab" : "ab" + fit + "cd")
        << static_cast<unsigned long>(wide[0]);
  }
}

// Every character of the Basic Multilingual Plane alone: the bytes both systems
// write are pinned by one digest, so the Linux and Windows runs check each other.
TEST(Conversion, WideToAnsiOfEveryCharacterIsTheSameOnBothSystems) {
  unsigned digest = 2166136261u;  // 32-bit FNV-1a
  int converted = 0;
  for (unsigned u = 1; u <= 0xFFFF; ++u) {
    if (u >= 0xD800 && u <= 0xDFFF) continue;
    const wchar_t text[2] = {static_cast<wchar_t>(u), 0};
    char out[2] = {'~', '~'};
    ASSERT_EQ(TCharToChar(out, 2, text), 2) << u;
    if (out[0] != 0) ++converted;
    digest = (digest ^ static_cast<unsigned char>(out[0])) * 16777619u;
  }
  EXPECT_EQ(converted, 255 + 441);  // the round trips and the look-alikes
  EXPECT_EQ(digest, 2045823108u);
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
  // Only ASCII letters fold, as in the runtime's "C" locale, which the library
  // keeps: accented letters stay as they are, and differ from their capitals.
  wchar_t accented[] = L"\u00E9t\u00C9\u00FF";
  EXPECT_STREQ(StrUpr(accented), L"\u00E9T\u00C9\u00FF");
  EXPECT_STREQ(StrLwr(accented), L"\u00E9t\u00C9\u00FF");
  EXPECT_NE(StriCmp(L"\u00E9", L"\u00C9"), 0);
  EXPECT_EQ(StriCmp(L"A\u00E9", L"a\u00E9"), 0);
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

// sPrintf's result as text, or what it returned when that is not the length.
template <typename... Args>
std::wstring Printed(const wchar_t* format, Args... args) {
  wchar_t buf[256];
  const int n = sPrintf(buf, format, args...);
  if (n < 0 || static_cast<std::size_t>(n) != std::wcslen(buf)) {
    return L"<returned " + std::to_wstring(n) + L">";
  }
  return buf;
}

// 8-bit arguments are code-page text, padded and cut as Windows does it,
// the 0x80-0x9F row included (the runtime's own "C" locale would give 0x80 as
// U+0080).
TEST(Formatting, EightBitArgumentsAreCodePageText) {
  const char* const null_text = nullptr;
  int written = -1;
  const std::pair<std::wstring, std::wstring> cases[] = {
      // clang-format off
      {Printed(L"[%S]", "caf\xE9"), L"[caf\u00E9]"},
      {Printed(L"%hs|%S", "Mu\xF1oz", "\xA3 5"), L"Mu\u00F1oz|\u00A3 5"},
      {Printed(L"%S", "\xA0\xBF\xFF"), L"\u00A0\u00BF\u00FF"},
      {Printed(L"%S|%hc", "\x80\x9F\x81", '\x8C'), L"\u20AC\u0178\u0081|\u0152"},
      {Printed(L"%-8S|%6hs|", "\xE9t\xE9", "\xF1"), L"\u00E9t\u00E9     |     \u00F1|"},
      {Printed(L"%.3hs|%.0S|%.9S|", "\xE9\xE9\xE9\xE9\xE9", "x", "ab"), L"\u00E9\u00E9\u00E9||ab|"},
      {Printed(L"%C%hc%3C|%-3hc|", '\xE9', 'a', '\xB0', '\xF1'), L"\u00E9a  \u00B0|\u00F1  |"},
      {Printed(L"%05S|%-05S|%03C", "ab", "ab", 'x'), L"000ab|ab   |00x"},
      {Printed(L"%S|%.3S|%hs", null_text, null_text, "z"), L"(null)|(nu|z"},
      // wide and 8-bit text, numbers and "%%" in one format
      {Printed(L"%d %I64d %5.2f %s %S %%", -7, 1234567890123LL, 3.14159, L"w\u00E9", "n\xE9"),
       L"-7 1234567890123  3.14 w\u00E9 n\u00E9 %"},
      {Printed(L"%ls %ws %c %lc %S", L"a", L"b", L'\u20AC', L'\u00F1', "\xE4"),
       L"a b \u20AC \u00F1 \u00E4"},
      {Printed(L"%x %X %#o %u %+d %I32d %ld %Iu %hd %S", 255, 255, 8, 4000000000u, 5, -1, -5L,
               std::size_t{123456}, 70000, ""), L"ff FF 010 4000000000 +5 -1 -5 123456 4464 "},
      {Printed(L"%08.3f|%-6d|%S", -2.5, 42, "\xE9"), L"-002.500|42    |\u00E9"},
      // widths and precisions taken from the arguments, negative ones too
      {Printed(L"[%*S][%-*S][%*S]", 5, "\xE9", 4, "ab", -3, "x"), L"[    \u00E9][ab  ][x  ]"},
      {Printed(L"%.*S|%.*S|%*.*d|%S", 2, "\xF1\xF1\xF1", -1, "abc", 6, 3, 7, "\xE9"),
       L"\u00F1\u00F1|abc|   007|\u00E9"},
      // "%n" prints nothing; a conversion Windows does not know prints its letter
      {Printed(L"ab%n%S", &written, "\xE9"), L"ab\u00E9"},
      {Printed(L"%y%S%", "\xE9"), L"y\u00E9"},
      // clang-format on
  };
  for (const auto& [printed, expected] : cases) EXPECT_EQ(printed, expected);

  // Longer than the first try's buffer: the whole text all the same, and
  // nothing past it.
  const std::string big(5000, '\xE9');
  std::wstring out(6000, L'?');
  EXPECT_EQ(sPrintf(out.data(), L"<%S>", big.c_str()), 5002);
  EXPECT_EQ(std::wstring(out.c_str()), L"<" + std::wstring(5000, L'\u00E9') + L">");
  EXPECT_EQ(out[5003], L'?');
  EXPECT_EQ(sPrintf(out.data(), "%hs|%s", "\xE9", L"w"), 3);
  EXPECT_STREQ(out.c_str(), L"\u00E9|w");
}

TEST(Resources, NoLanguageModuleMeansNoStrings) {
  wchar_t buf[64] = L"previous";
  EXPECT_EQ(LoadStr(26235, buf), 0);
  EXPECT_EQ(buf[0], 0);
}

}  // namespace
