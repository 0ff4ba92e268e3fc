// Rounding and truncation (tie rule, scale thresholds, saturation), duration
// texts, dates and the arithmetic of broken-down times.
#include "korvalen/foundation/time_and_rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "guarded_text.h"

namespace {

using korvalen::testing::GuardedText;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Rounding {
  double x;
  int expected;
};

TEST(Round, HalvesGoDownAndOutOfRangeSaturates) {
  const Rounding cases[] = {
      // clang-format off
      {0.5, 0}, {1.5, 1}, {1.51, 2}, {2.5, 2}, {-2.5, -3}, {-0.5, -1}, {-1.49, -1}, {-0.0, 0},
      {2147483646.5, 2147483646}, {2147483647.0, INT_MAX}, {2147483647.5, INT_MAX},
      {2147483648.0, INT_MAX}, {-2147483647.5, INT_MIN}, {-2147483648.0, INT_MIN},
      {-2147483649.0, INT_MIN}, {1e300, INT_MAX}, {-1e300, INT_MIN}, {kInf, INT_MAX},
      {-kInf, INT_MIN}, {kNaN, 0},
      // clang-format on
  };
  for (const Rounding& c : cases) {
    EXPECT_EQ(Round(c.x), c.expected) << c.x;
    EXPECT_EQ(Roundl(c.x), static_cast<LONG>(c.expected)) << c.x;
  }
}

// The snapping scale is 1000 up to 999999, 100 up to 9999999, 10 up to
// 99999999 and 1 above; negative values always take 1000.
TEST(Trunc, SnapsThenTruncatesWithTheScaleOfEachRange) {
  const Rounding cases[] = {
      // clang-format off
      {2.9996, 3}, {2.9994, 2}, {-7.9999, -8}, {1234567.996, 1234568}, {-0.5, 0}, {-0.0001, 0},
      {5.0, 5},
      {999998.996, 999998}, {999999.0, 999999}, {999999.996, 1000000},     // 1000 | 100
      {9999998.96, 9999998}, {9999999.96, 10000000},                        // 100 | 10
      {99999998.6, 99999998}, {99999999.6, 100000000},                      // 10 | 1
      {123456789.6, 123456790}, {123456789.4, 123456789},
      {-999999.996, -999999}, {-1234567.996, -1234567}, {-99999999.6, -99999999},
      {-5000000.25, -5000000}, {-2147483647.9999, INT_MIN}, {-2147483648.0, INT_MIN},
      {2147483647.4, INT_MAX}, {2147483647.6, INT_MAX}, {3e9, INT_MAX}, {-3e9, INT_MIN},
      {kInf, INT_MAX}, {-kInf, INT_MIN}, {kNaN, 0},
      // clang-format on
  };
  for (const Rounding& c : cases) {
    EXPECT_EQ(Trunc(c.x), c.expected) << std::to_string(c.x);
    EXPECT_EQ(Truncl(c.x), static_cast<LONG>(c.expected)) << std::to_string(c.x);
  }
}

TEST(DameTextoTiempo, HoursMinutesSecondsHundredths) {
  const std::pair<double, const wchar_t*> cases[] = {
      // clang-format off
      {3725.5, L"01:02:05.50"}, {0.0, L"00:00:00.00"}, {90000.0, L"25:00:00.00"},
      {360000.0, L"100:00:00.00"}, {12.34, L"00:00:12.34"},
      // A hair below a whole minute or second counts as it; negative parts as 0.
      {59.999, L"00:01:00.00"}, {0.9996, L"00:00:01.00"}, {0.996, L"00:00:00.99"},
      {-5.0, L"00:00:00.00"}, {kNaN, L"00:00:00.00"},
      // Above 99999999 hours' worth the hours are rounded, and a remainder
      // that comes out negative counts as 0.
      {1e12, L"277777778:00:00.00"}, {-1e300, L"-2147483648:00:00.00"},
      {1e300, L"2147483647:2147483647:2147483647.2147483647"},
      // clang-format on
  };
  for (const auto& [seconds, expected] : cases) {
    GuardedText<64> text;
    DameTextoTiempo(text.data(), seconds);
    EXPECT_EQ(text.str(), expected) << seconds;
    EXPECT_TRUE(text.IntactFrom(korvalen::kDurationTextChars)) << seconds;
  }
}

TEST(FechaACadena, DayFirstTenCharactersOnly) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      // clang-format off
      {L"31/01/2024", L"20240131"}, {L"31-01-2024", L"20240131"}, {L"01.12.1999", L"19991201"},
      {L"1/1/2024", L""}, {L"", L""}, {L"31/01/20245", L""}, {L"ab/cd/efgh", L"efghcdab"},
      {nullptr, L""},
      // clang-format on
  };
  for (const auto& [shown, expected] : cases) {
    GuardedText<16> stored;
    FechaACadena(shown, stored.data());
    EXPECT_EQ(stored.str(), expected) << (shown ? shown : L"(null)");
    EXPECT_TRUE(stored.IntactFrom(korvalen::kStoredDateChars));
  }
}

TEST(CadenaAFecha, UserShortDateOrEmpty) {
  // The short date of 31 January 2024 under the user's time locale.
  std::tm date{};
  date.tm_year = 124;
  date.tm_mday = 31;
  date.tm_wday = 3;
  date.tm_yday = 30;
  const char* user = std::setlocale(LC_TIME, "");
  const bool c_locale =
      user != nullptr && (std::strcmp(user, "C") == 0 || std::strcmp(user, "POSIX") == 0);
  wchar_t expected[64] = {};
  std::wcsftime(expected, 64, L"%x", &date);
  std::setlocale(LC_ALL, "C");
  ASSERT_NE(expected[0], 0);
  if (c_locale) {
    EXPECT_STREQ(expected, L"01/31/24");
  }
  // Something other than "C" beforehand, to see the whole locale go back.
  for (const char* other : {"C.UTF-8", "C.utf8", ".1252", "English_United States.1252"}) {
    if (std::setlocale(LC_ALL, other) != nullptr) break;
  }
  GuardedText<32> shown;
  CadenaAFecha(L"20240131", shown.data());
  EXPECT_EQ(shown.str(), expected);
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  EXPECT_TRUE(shown.IntactFrom(korvalen::kShownDateChars));

  for (const wchar_t* stored : {L"2024013", L"", L"202401311", L"20241331", L"20240100",
                                L"20240132", L"2024ab31", static_cast<const wchar_t*>(nullptr)}) {
    wchar_t empty[32] = L"stale";
    CadenaAFecha(stored, empty);
    EXPECT_STREQ(empty, L"") << (stored ? stored : L"(null)");
  }
}

std::wstring Digits(std::time_t when) {
  const std::tm t = *std::localtime(&when);
  wchar_t text[16];
  std::swprintf(text, 16, L"%04d%02d%02d", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday);
  return text;
}

TEST(CurrentTime, TodaysDateAndTheLocalTimeNow) {
  const std::time_t before = std::time(nullptr);
  GuardedText<16> today;
  DameFechaActual(today.data());
  std::tm now{};
  DameTiempo(now);
  const std::time_t after = std::time(nullptr);
  EXPECT_TRUE(today.str() == Digits(before) || today.str() == Digits(after)) << today.str();
  EXPECT_TRUE(today.IntactFrom(korvalen::kStoredDateChars));
  const std::time_t t = std::mktime(&now);
  EXPECT_GE(t, before);
  EXPECT_LE(t, after);
}

// Local times in January and February, away from summer-time changes.
std::tm Local(int year, int month, int day, int hour, int minute) {
  std::tm t{};
  t.tm_year = year - 1900;
  t.tm_mon = month - 1;
  t.tm_mday = day;
  t.tm_hour = hour;
  t.tm_min = minute;
  t.tm_isdst = -1;
  std::mktime(&t);
  return t;
}

std::vector<int> Clock(const std::tm& t) {
  return {t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec};
}

TEST(TimeArithmetic, DifferencesAreSecondsAfterTheEpochAndPeriodsMoveATime) {
  const std::tm later = Local(2024, 1, 31, 10, 0);
  const std::tm earlier = Local(2024, 1, 31, 8, 30);
  std::tm difference;
  InicializarTiempo(difference);
  RestarTiempos(later, earlier, difference);
  std::tm copy = difference;
  EXPECT_EQ(std::mktime(&copy), 5400);
  std::tm sum;
  InicializarTiempo(sum);
  SumarTiempos(earlier, difference, sum);
  EXPECT_EQ(Clock(sum), (std::vector<int>{2024, 1, 31, 10, 0, 0}));

  std::tm c = Local(2024, 2, 29, 23, 0);
  SumarPeriodoTiempo(later, earlier, c);
  EXPECT_EQ(Clock(c), (std::vector<int>{2024, 3, 1, 0, 30, 0}));
  c = Local(2024, 2, 29, 23, 0);
  SumarPeriodoTiempo(earlier, later, c);  // a period backwards moves it back
  EXPECT_EQ(Clock(c), (std::vector<int>{2024, 2, 29, 21, 30, 0}));

  // Results before the epoch or past the year 3000 leave the result alone (as
  // cleared: day 1 and weekday 1, the rest 0).
  std::tm result;
  InicializarTiempo(result);
  result.tm_min = 42;
  RestarTiempos(earlier, later, result);
  const std::tm distant = Local(2600, 1, 1, 0, 0);
  SumarTiempos(distant, distant, result);
  EXPECT_EQ(Clock(result), (std::vector<int>{1900, 1, 1, 0, 42, 0}));
  // So do times outside that range given as input: the cleared time, one
  // before the epoch, one after the year 3000.
  std::tm cleared;
  InicializarTiempo(cleared);
  for (const std::tm& outside : {cleared, Local(1969, 12, 31, 0, 0), Local(3005, 1, 1, 0, 0)}) {
    RestarTiempos(later, outside, result);
    RestarTiempos(outside, earlier, result);
    SumarTiempos(outside, difference, result);
    c = Local(2024, 2, 29, 23, 0);
    SumarPeriodoTiempo(later, outside, c);
    EXPECT_EQ(Clock(c), (std::vector<int>{2024, 2, 29, 23, 0, 0}));
  }
  EXPECT_EQ(Clock(result), (std::vector<int>{1900, 1, 1, 0, 42, 0}));
  EXPECT_EQ((std::vector<int>{result.tm_wday, result.tm_yday, result.tm_isdst}),
            (std::vector<int>{1, 0, 0}));
}

}  // namespace
