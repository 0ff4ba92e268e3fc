// Reals read by aTof and StrTod: every text must give the very bits the
// runtime's wcstod gives for the same number, whichever way the library
// computes it, and StrTod must stop where wcstod stops.
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

#include "korvalen/foundation/number_functions.h"

namespace {

std::uint64_t Bits(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// Compares one text with wcstod. The texts hold only what both read the same
// way (no "inf", "nan" or hexadecimal, which the library does not accept).
// Where wcstod finds no number at all the library gives +0.0, whatever sign
// a runtime may put on its zero.
void ExpectLikeWcstod(const std::wstring& text) {
  const std::string shown(text.begin(), text.end());
  wchar_t* runtime_end = nullptr;
  const double runtime = std::wcstod(text.c_str(), &runtime_end);
  const double expected = runtime_end == text.c_str() ? 0.0 : runtime;
  wchar_t* end = nullptr;
  const double got = StrTod(text.c_str(), &end);
  EXPECT_EQ(Bits(got), Bits(expected)) << shown << ": " << got << " != " << expected;
  EXPECT_EQ(end - text.c_str(), runtime_end - text.c_str()) << shown;
  EXPECT_EQ(Bits(aTof(text.c_str())), Bits(expected)) << shown;
}

TEST(RealTexts, EdgeCasesGiveTheRuntimeBits) {
  const wchar_t* const cases[] = {
      // clang-format off
      L"0.1", L"0.2", L"0.3", L"99999.999", L"-99999.999", L"1e22", L"1e23", L"1e-22", L"1e-23",
      L"123456789012345678901", L"-0.0", L"-0", L"+0", L"0", L"0e999999", L"-0e-999999",
      L"9007199254740992", L"9007199254740993", L"9007199254740991", L"18014398509481985",
      L"1234567890123456789", L"12345678901234567890", L"0.1234567890123456789",
      L"123456789.123456789", L"4.9e-324", L"2.4703282292062327e-324", L"5e-324",
      L"2.2250738585072014e-308", L"2.2250738585072011e-308", L"1.7976931348623157e308",
      L"1.7976931348623159e308", L"1e309", L"1e-400", L"1e2147483648", L"1e-2147483649",
      L"8.98846567431158e307", L"0.000000000000000000000000000001", L"100000000000000000000000",
      L"1.5e3", L"1.5E+3", L"1.5e-3", L"1e", L"1e+", L"1e-x", L".5", L"5.", L".", L"-.", L"+.5",
      L"-", L"", L"  \t\n12.5mm", L"3.14159265358979323846", L"0.30000000000000004", L"2.5e-1",
      L"0000000000000000000000012.5", L"12.50000000000000000000000000",
      L"1.00000000000000011102230246251565404236316680908203125",
      L"1.00000000000000011102230246251565404236316680908203124",
      L"1.00000000000000011102230246251565404236316680908203126",
      L"7.e5", L"7.e", L"--1", L"+-1", L"1..2", L"1e5e5", L"6.0221e23", L"1e0022", L"1e-0022",
      L"9999999999999999e22", L"9007199254740993e-22", L"123e-20", L"123e-25",
      L"0.00000000000000000000000000000000001e35", L"A12",
      // clang-format on
  };
  for (const wchar_t* text : cases) ExpectLikeWcstod(text);
  // A number longer than any work buffer.
  ExpectLikeWcstod(L"0." + std::wstring(300, L'0') + L"1e300");
  ExpectLikeWcstod(std::wstring(400, L'9') + L".5e-380");
  ExpectLikeWcstod(L"1" + std::wstring(20, L'0') + L"e-20");
}

// Texts that other runtimes read as numbers and the Windows one does not:
// no number, so 0 and the end at the start.
TEST(RealTexts, NoInfinityNanOrHexadecimal) {
  for (const wchar_t* text : {L"inf", L"-INFINITY", L"nan", L"NAN(1)"}) {
    wchar_t* end = nullptr;
    EXPECT_EQ(Bits(StrTod(text, &end)), Bits(0.0)) << text;
    EXPECT_EQ(end, text) << text;
    EXPECT_EQ(Bits(aTof(text)), Bits(0.0)) << text;
  }
  EXPECT_EQ(aTof("0x10"), 0.0);
  EXPECT_EQ(aTof(L"0x1p3"), 0.0);
}

// Random numbers as settings files and programs write them and well beyond:
// any count of digits, the point anywhere, exponents around the exact range.
TEST(RealTexts, GeneratedNumbersGiveTheRuntimeBits) {
  std::mt19937 random(20240611);
  auto pick = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  for (int round = 0; round < 200000; ++round) {
    std::wstring text;
    if (pick(0, 9) == 0) text += L"  ";
    const int sign = pick(0, 3);
    if (sign == 1) text += L'-';
    if (sign == 2) text += L'+';
    const int leading_zeros = pick(0, 6) == 0 ? pick(1, 30) : 0;
    text.append(static_cast<std::size_t>(leading_zeros), L'0');
    const int digits = pick(0, 3) == 0 ? pick(0, 40) : pick(1, 17);
    const int point = pick(-1, digits);
    for (int i = 0; i < digits; ++i) {
      if (i == point) text += L'.';
      text += static_cast<wchar_t>(L'0' + pick(0, 9));
    }
    if (point == digits) text += L'.';
    if (pick(0, 2) == 0) {
      text += pick(0, 1) == 0 ? L'e' : L'E';
      const int exponent_sign = pick(0, 2);
      if (exponent_sign == 1) text += L'-';
      if (exponent_sign == 2) text += L'+';
      text += std::to_wstring(pick(0, 4) == 0 ? pick(0, 400) : pick(0, 30));
    }
    if (pick(0, 4) == 0) text += L" ;";
    ExpectLikeWcstod(text);
    if (::testing::Test::HasFailure()) break;
  }
}

// The settings files' own format: "%1.3f" and "%1.6f" of many values.
TEST(RealTexts, WrittenRealsReadBackLikeWcstod) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> spread(-1e7, 1e7);
  wchar_t text[64];
  for (int i = 0; i < 100000; ++i) {
    const double value = i < 50000 ? i * 0.25 - 1000.0 : spread(random);
    std::swprintf(text, 64, i % 2 == 0 ? L"%1.3f" : L"%1.6f", value);
    ExpectLikeWcstod(text);
    if (::testing::Test::HasFailure()) break;
  }
}

// wcstod rounds in the current rounding direction; so must every path.
TEST(RealTexts, RoundingDirectionIsFollowed) {
  const int modes[] = {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
  const wchar_t* const texts[] = {L"0.1",  L"-0.1",       L"2.675",         L"-2.675",
                                  L"1e-5", L"123456.789", L"-987654.321e3", L"0.3e-7"};
  const int saved = std::fegetround();
  for (int mode : modes) {
    ASSERT_EQ(std::fesetround(mode), 0);
    for (const wchar_t* text : texts) {
      wchar_t* end = nullptr;
      const double expected = std::wcstod(text, &end);
      const double got = aTof(text);
      std::fesetround(saved);
      EXPECT_EQ(Bits(got), Bits(expected)) << mode << " " << std::wstring(text).size();
      std::fesetround(mode);
    }
  }
  std::fesetround(saved);
}

}  // namespace
