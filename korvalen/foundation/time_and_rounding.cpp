#include "korvalen/foundation/time_and_rounding.h"

#include <climits>
#include <cmath>
#include <cwchar>

#include "korvalen/foundation/clock_functions.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/clock.h"

namespace platform = korvalen::platform;

namespace {

// The nearest whole number with halves going down, as a double so that it can
// be scaled further without leaving the int range on the way.
double RoundHalfDown(double x) {
  const double low = std::floor(x);
  const double high = std::ceil(x);
  return std::fabs(x - low) <= std::fabs(x - high) ? low : high;
}

// A whole-numbered double to int, saturating instead of overflowing.
int Saturate(double whole) {
  if (std::isnan(whole)) return 0;
  if (whole >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (whole <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<int>(whole);
}

double TruncToDouble(double x) {
  const double sign = x < 0.0 ? -1.0 : 1.0;
  double scale = 1000.0;
  if (x > 99999999.0) {
    scale = 1.0;
  } else if (x > 9999999.0) {
    scale = 10.0;
  } else if (x > 999999.0) {
    scale = 100.0;
  }
  return sign * std::floor(RoundHalfDown(scale * std::fabs(x)) / scale);
}

// mktime of a copy, so the caller's time is never normalised; -1 when it has
// no calendar time.
long long CalendarSeconds(const std::tm& time) {
  std::tm copy = time;
  long long seconds = -1;
  return platform::make_time(copy, seconds) ? -1 : seconds;
}

// Leaves the result as it was for a time the runtime refuses.
void PutLocalTime(long long seconds, std::tm& result) {
  (void)platform::local_time(seconds, result);
}

void ClearText(wchar_t* text) {
  if (text != nullptr) text[0] = 0;
}

}  // namespace

// --- rounding ---------------------------------------------------------------

int Round(double x) { return Saturate(RoundHalfDown(x)); }
LONG Roundl(double x) { return static_cast<LONG>(Round(x)); }
int Trunc(double x) { return Saturate(TruncToDouble(x)); }
LONG Truncl(double x) { return static_cast<LONG>(Trunc(x)); }

// --- clock times --------------------------------------------------------------

void DameTiempo(std::tm& time) { PutLocalTime(platform::now(), time); }

void InicializarTiempo(std::tm& time) {
  time = std::tm{};
  time.tm_mday = 1;
  time.tm_wday = 1;
}

void SumarTiempos(const std::tm& a, const std::tm& b, std::tm& result) {
  const long long sa = CalendarSeconds(a);
  const long long sb = CalendarSeconds(b);
  if (sa == -1 || sb == -1) return;
  PutLocalTime(sa + sb, result);
}

void RestarTiempos(const std::tm& a, const std::tm& b, std::tm& result) {
  const long long sa = CalendarSeconds(a);
  const long long sb = CalendarSeconds(b);
  if (sa == -1 || sb == -1) return;
  PutLocalTime(sa - sb, result);
}

void SumarPeriodoTiempo(const std::tm& a, const std::tm& b, std::tm& c) {
  // The period is not carried through a broken-down time: one that goes
  // backwards would have none.
  const long long sa = CalendarSeconds(a);
  const long long sb = CalendarSeconds(b);
  const long long sc = CalendarSeconds(c);
  if (sa == -1 || sb == -1 || sc == -1) return;
  PutLocalTime(sc + (sa - sb), c);
}

// --- texts --------------------------------------------------------------------

void DameTextoTiempo(wchar_t* text, double seconds) {
  if (text == nullptr) return;
  // The parts are taken off in double precision: hours times 3600 would
  // overflow an int for long durations.
  const int hours = Trunc(seconds / 3600.0);
  double rest = seconds - hours * 3600.0;
  if (rest < 0.0) rest = 0.0;
  const int minutes = Trunc(rest / 60.0);
  rest -= minutes * 60.0;
  if (rest < 0.0) rest = 0.0;
  const int whole_seconds = Trunc(rest);
  double fraction = rest - whole_seconds;
  if (fraction < 0.0) fraction = 0.0;
  const int hundredths = Trunc(fraction * 100.0);
  std::swprintf(text, korvalen::kDurationTextChars, L"%02d:%02d:%02d.%02d", hours, minutes,
                whole_seconds, hundredths);
}

void DameFechaActual(wchar_t* text) {
  if (text == nullptr) return;
  ClearText(text);
  std::tm local;
  if (!platform::local_time(platform::now(), local)) {
    std::swprintf(text, korvalen::kStoredDateChars, L"%04d%02d%02d", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday);
  }
}

void CadenaAFecha(const wchar_t* stored, wchar_t* shown) {
  if (shown == nullptr) return;
  ClearText(shown);
  if (stored == nullptr || StrLen(stored) != 8) return;
  wchar_t year[5] = {};
  wchar_t month[3] = {};
  wchar_t day[3] = {};
  StrnCpy(year, stored, 4);
  StrnCpy(month, stored + 4, 2);
  StrnCpy(day, stored + 6, 2);
  const int y = aToi(year);
  const int m = aToi(month);
  const int d = aToi(day);
  // The C library's date formatting indexes month names by the month and
  // refuses (or worse) fields out of their ranges.
  if (y < 0 || y > 9999 || m < 1 || m > 12 || d < 1 || d > 31) return;
  std::tm date;
  if (platform::utc_time(platform::now(), date)) return;
  date.tm_year = y - 1900;
  date.tm_mon = m - 1;
  date.tm_mday = d;
  platform::use_user_time_locale();
  StrfTime(shown, korvalen::kShownDateChars, L"%x", &date);
  platform::use_c_locale();
}

void FechaACadena(const wchar_t* shown, wchar_t* stored) {
  if (stored == nullptr) return;
  ClearText(stored);
  if (shown == nullptr || StrLen(shown) != 10) return;
  const int from[8] = {6, 7, 8, 9, 3, 4, 0, 1};
  for (int i = 0; i < 8; ++i) stored[i] = shown[from[i]];
  stored[8] = 0;
}
