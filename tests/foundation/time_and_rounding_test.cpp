// Rounding and truncation (tie rule, scale thresholds, saturation), duration
// texts, dates and the arithmetic of broken-down times.
#include "korvalen/foundation/time_and_rounding.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <limits>
#include <string>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Rounding {
  double x;
  int expected;
};

TEST(Round, HalvesGoDownAndOutOfRangeSaturates) {
  const Rounding cases[] = {
      {0.5, 0},
      {1.5, 1},
      {1.51, 2},
      {2.5, 2},
      {-2.5, -3},
      {-0.5, -1},
      {-1.49, -1},
      {-0.0, 0},
      {2147483646.5, 2147483646},
      {2147483647.0, INT_MAX},
      {2147483647.5, INT_MAX},
      {2147483648.0, INT_MAX},
      {-2147483647.5, INT_MIN},
      {-2147483648.0, INT_MIN},
      {-2147483649.0, INT_MIN},
      {1e300, INT_MAX},
      {-1e300, INT_MIN},
      {kInf, INT_MAX},
      {-kInf, INT_MIN},
      {kNaN, 0},
  };
  for (const Rounding& c : cases) {
    EXPECT_EQ(Round(c.x), c.expected) << c.x;
    EXPECT_EQ(Roundl(c.x), static_cast<LONG>(c.expected)) << c.x;
  }
}

TEST(Trunc, SnapsThenTruncatesWithTheScaleOfEachRange) {
  const Rounding cases[] = {
      {2.9996, 3},
      {2.9994, 2},
      {-7.9999, -8},
      {1234567.996, 1234568},
      {-0.5, 0},
      {-0.0001, 0},
      {5.0, 5},
      // f = 1000 up to 999999 inclusive: .996 is not snapped.
      {999998.996, 999998},
      {999999.0, 999999},
      // f = 100 above it: .996 snaps up.
      {999999.996, 1000000},
      {9999998.96, 9999998},
      // f = 10 above 9999999: .96 snaps up.
      {9999999.96, 10000000},
      {99999998.6, 99999998},
      // f = 1 above 99999999: plain rounding.
      {99999999.6, 100000000},
      {123456789.6, 123456790},
      {123456789.4, 123456789},
      // Negative values always take f = 1000, whatever their size.
      {-999999.996, -999999},
      {-1234567.996, -1234567},
      {-99999999.6, -99999999},
      {-5000000.25, -5000000},
      {-2147483647.9999, INT_MIN},
      {-2147483648.0, INT_MIN},
      // Beyond the int range.
      {2147483647.4, INT_MAX},
      {2147483647.6, INT_MAX},
      {3e9, INT_MAX},
      {-3e9, INT_MIN},
      {kInf, INT_MAX},
      {-kInf, INT_MIN},
      {kNaN, 0},
  };
  for (const Rounding& c : cases) {
    EXPECT_EQ(Trunc(c.x), c.expected) << std::to_string(c.x);
    EXPECT_EQ(Truncl(c.x), static_cast<LONG>(c.expected)) << std::to_string(c.x);
  }
}

TEST(DameTextoTiempo, HoursMinutesSecondsHundredths) {
  const struct {
    double seconds;
    const wchar_t* text;
  } cases[] = {
      {3725.5, L"01:02:05.50"},
      {0.0, L"00:00:00.00"},
      {90000.0, L"25:00:00.00"},
      {360000.0, L"100:00:00.00"},
      {12.34, L"00:00:12.34"},
      // A hair below a whole minute or second counts as it.
      {59.999, L"00:01:00.00"},
      {0.9996, L"00:00:01.00"},
      {0.996, L"00:00:00.99"},
      // Negative parts count as 0.
      {-5.0, L"00:00:00.00"},
      {kNaN, L"00:00:00.00"},
      // Above 99999999 hours' worth the hours are rounded, and the remainder
      // that comes out negative counts as 0.
      {1e12, L"277777778:00:00.00"},
      {-1e300, L"-2147483648:00:00.00"},
      {1e300, L"2147483647:2147483647:2147483647.2147483647"},
  };
  for (const auto& c : cases) {
    wchar_t text[64];
    std::wmemset(text, L'#', 64);
    DameTextoTiempo(text, c.seconds);
    EXPECT_EQ(std::wstring(text), c.text) << c.seconds;
    for (int i = korvalen::kDurationTextChars; i < 64; ++i) ASSERT_EQ(text[i], L'#') << i;
  }
}

TEST(FechaACadena, DayFirstTenCharactersOnly) {
  const struct {
    const wchar_t* shown;
    const wchar_t* stored;
  } cases[] = {
      {L"31/01/2024", L"20240131"},
      {L"31-01-2024", L"20240131"},
      {L"01.12.1999", L"19991201"},
      {L"1/1/2024", L""},
      {L"", L""},
      {L"31/01/20245", L""},
      {L"ab/cd/efgh", L"efghcdab"},
  };
  for (const auto& c : cases) {
    wchar_t stored[16];
    std::wmemset(stored, L'#', 16);
    FechaACadena(c.shown, stored);
    EXPECT_EQ(std::wstring(stored), c.stored) << c.shown;
    for (int i = korvalen::kStoredDateChars; i < 16; ++i) ASSERT_EQ(stored[i], L'#');
  }
  wchar_t stored[16] = L"stale";
  FechaACadena(nullptr, stored);
  EXPECT_EQ(stored[0], 0);
}

// The short date of 31 January 2024 under the user's time locale.
std::wstring UserShortDate() {
  std::tm date{};
  date.tm_year = 124;
  date.tm_mon = 0;
  date.tm_mday = 31;
  date.tm_wday = 3;
  date.tm_yday = 30;
  std::setlocale(LC_TIME, "");
  wchar_t text[64] = {};
  std::wcsftime(text, 64, L"%x", &date);
  std::setlocale(LC_ALL, "C");
  return text;
}

TEST(CadenaAFecha, UserShortDateOfAnEightDigitDate) {
  const std::wstring expected = UserShortDate();
  ASSERT_FALSE(expected.empty());
  const char* user = std::setlocale(LC_TIME, "");
  if (user != nullptr && (std::strcmp(user, "C") == 0 || std::strcmp(user, "POSIX") == 0)) {
    EXPECT_EQ(expected, L"01/31/24");
  }
  // Something other than "C" beforehand, to see the whole locale go back.
  for (const char* other : {"C.UTF-8", "C.utf8", ".1252", "English_United States.1252"}) {
    if (std::setlocale(LC_ALL, other) != nullptr) break;
  }
  wchar_t shown[32];
  std::wmemset(shown, L'#', 32);
  CadenaAFecha(L"20240131", shown);
  EXPECT_EQ(std::wstring(shown), expected);
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  for (int i = korvalen::kShownDateChars; i < 32; ++i) ASSERT_EQ(shown[i], L'#');
}

TEST(CadenaAFecha, EmptyForOtherLengthsAndImpossibleFields) {
  for (const wchar_t* stored :
       {L"2024013", L"", L"202401311", L"20241331", L"20240100", L"20240132", L"2024ab31"}) {
    wchar_t shown[32] = L"stale";
    CadenaAFecha(stored, shown);
    EXPECT_EQ(std::wstring(shown), L"") << stored;
  }
  wchar_t shown[32] = L"stale";
  CadenaAFecha(nullptr, shown);
  EXPECT_EQ(shown[0], 0);
}

std::wstring Digits(const std::tm& t) {
  wchar_t text[16];
  std::swprintf(text, 16, L"%04d%02d%02d", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday);
  return text;
}

TEST(DameFechaActual, TodaysLocalDate) {
  const std::time_t before = std::time(nullptr);
  wchar_t text[16];
  std::wmemset(text, L'#', 16);
  DameFechaActual(text);
  const std::time_t after = std::time(nullptr);
  const std::wstring a = Digits(*std::localtime(&before));
  const std::wstring b = Digits(*std::localtime(&after));
  EXPECT_TRUE(text == a || text == b) << "got " << std::string(text, text + std::wcslen(text));
  EXPECT_EQ(std::wcslen(text), 8u);
  EXPECT_EQ(text[9], L'#');
}

TEST(DameTiempo, CurrentLocalTime) {
  const std::time_t before = std::time(nullptr);
  std::tm now{};
  DameTiempo(now);
  const std::time_t after = std::time(nullptr);
  std::tm copy = now;
  const std::time_t t = std::mktime(&copy);
  EXPECT_GE(t, before);
  EXPECT_LE(t, after);
}

TEST(InicializarTiempo, ClearsEveryMember) {
  std::tm t;
  std::memset(&t, 0x5A, sizeof t);
  InicializarTiempo(t);
  EXPECT_EQ(t.tm_sec, 0);
  EXPECT_EQ(t.tm_min, 0);
  EXPECT_EQ(t.tm_hour, 0);
  EXPECT_EQ(t.tm_mday, 1);
  EXPECT_EQ(t.tm_mon, 0);
  EXPECT_EQ(t.tm_year, 0);
  EXPECT_EQ(t.tm_wday, 1);
  EXPECT_EQ(t.tm_yday, 0);
  EXPECT_EQ(t.tm_isdst, 0);
}

// Local times in January and February, away from summer-time changes.
std::tm Local(int year, int month, int day, int hour, int minute, int second) {
  std::tm t{};
  t.tm_year = year - 1900;
  t.tm_mon = month - 1;
  t.tm_mday = day;
  t.tm_hour = hour;
  t.tm_min = minute;
  t.tm_sec = second;
  t.tm_isdst = -1;
  std::tm normalised = t;
  std::mktime(&normalised);
  return normalised;
}

void ExpectClock(const std::tm& t, int year, int month, int day, int hour, int minute, int second) {
  EXPECT_EQ(t.tm_year + 1900, year);
  EXPECT_EQ(t.tm_mon + 1, month);
  EXPECT_EQ(t.tm_mday, day);
  EXPECT_EQ(t.tm_hour, hour);
  EXPECT_EQ(t.tm_min, minute);
  EXPECT_EQ(t.tm_sec, second);
}

TEST(TimeArithmetic, DifferenceIsCarriedAsSecondsAfterTheEpoch) {
  const std::tm later = Local(2024, 1, 31, 10, 0, 0);
  const std::tm earlier = Local(2024, 1, 31, 8, 30, 0);
  std::tm difference;
  InicializarTiempo(difference);
  RestarTiempos(later, earlier, difference);
  std::tm copy = difference;
  EXPECT_EQ(std::mktime(&copy), 5400);

  std::tm sum;
  InicializarTiempo(sum);
  SumarTiempos(earlier, difference, sum);
  ExpectClock(sum, 2024, 1, 31, 10, 0, 0);
}

TEST(TimeArithmetic, PeriodMovesATimeOnOrBack) {
  const std::tm later = Local(2024, 1, 31, 10, 0, 0);
  const std::tm earlier = Local(2024, 1, 31, 8, 30, 0);
  std::tm c = Local(2024, 2, 29, 23, 0, 0);
  SumarPeriodoTiempo(later, earlier, c);
  ExpectClock(c, 2024, 3, 1, 0, 30, 0);
  c = Local(2024, 2, 29, 23, 0, 0);
  SumarPeriodoTiempo(earlier, later, c);
  ExpectClock(c, 2024, 2, 29, 21, 30, 0);
}

TEST(TimeArithmetic, ResultsWithoutALocalTimeLeaveTheResultAlone) {
  const std::tm later = Local(2024, 1, 31, 10, 0, 0);
  const std::tm earlier = Local(2024, 1, 31, 8, 30, 0);
  const std::tm distant = Local(2600, 1, 1, 0, 0, 0);
  std::tm result;
  InicializarTiempo(result);
  result.tm_min = 42;
  RestarTiempos(earlier, later, result);  // before the epoch
  EXPECT_EQ(result.tm_min, 42);
  EXPECT_EQ(result.tm_year, 0);
  SumarTiempos(distant, distant, result);  // past the year 3000
  EXPECT_EQ(result.tm_min, 42);
  EXPECT_EQ(result.tm_year, 0);
}

}  // namespace
