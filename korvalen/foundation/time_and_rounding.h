// Clock times, durations and dates as the suite shows and stores them, and the
// rounding functions the duration text rests on.
//
// Dates are stored as eight digits "yyyymmdd" and shown in the user's short
// date form; durations are shown as "hh:mm:ss.cc". Broken-down times are the
// C library's struct tm, always local time.
//
//   std::tm start, now, elapsed;
//   DameTiempo(start);
//   ...
//   DameTiempo(now);
//   RestarTiempos(now, start, elapsed);     // the seconds between them
//   wchar_t stored[9], shown[15];
//   DameFechaActual(stored);                // "20240131"
//   CadenaAFecha(stored, shown);            // "31/01/2024" in a day-first locale
#pragma once

#include <ctime>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

namespace korvalen {

// Capacities, with the terminator, of the caller's buffers.
inline constexpr int kStoredDateChars = 9;     // DameFechaActual, FechaACadena: "yyyymmdd"
inline constexpr int kShownDateChars = 15;     // CadenaAFecha: the locale's short date
inline constexpr int kDurationTextChars = 48;  // DameTextoTiempo, whatever the seconds

}  // namespace korvalen

// The current local time.
KORVALEN_API void DameTiempo(std::tm& time);
// Seconds, minutes and hours 0, day 1, month 0, year 0 (1900), weekday 1, day
// of year 0, no summer time.
KORVALEN_API void InicializarTiempo(std::tm& time);

// Sums and differences are taken on calendar seconds (64-bit mktime of the
// local times) and given back as the local time of the resulting number of
// seconds after the epoch: a difference of 90 minutes comes back as the local
// time of 5400 seconds, which SumarTiempos turns back into 5400 seconds. The
// inputs are read, never normalised in place. When an input has no calendar
// time, or the result is before 1970 or after the year 3000 (so a difference
// of a time minus a later one), the result is left unchanged.
KORVALEN_API void SumarTiempos(const std::tm& a, const std::tm& b, std::tm& result);
KORVALEN_API void RestarTiempos(const std::tm& a, const std::tm& b, std::tm& result);
// Moves c on by the period from b to a. Computed on the seconds directly, so
// a period that goes backwards (a before b) moves c back; otherwise the same
// as SumarTiempos(c, RestarTiempos(a, b)).
KORVALEN_API void SumarPeriodoTiempo(const std::tm& a, const std::tm& b, std::tm& c);

// "%02d:%02d:%02d.%02d": hours (not limited to 24), minutes, seconds,
// hundredths, each part taken with Trunc so that a hair below a whole number
// counts as that number. A part that comes out negative counts as 0. The text
// fits in kDurationTextChars whatever the seconds (12 up to 99 hours).
KORVALEN_API void DameTextoTiempo(wchar_t* text, double seconds);

// Today's local date as "yyyymmdd".
KORVALEN_API void DameFechaActual(wchar_t* text);
// "yyyymmdd" to the user's short date ("%x" under the user's time locale; the
// whole locale is set back to "C" afterwards). Empty unless the text has
// exactly 8 characters, or when the month is not 1 to 12, the day not 1 to 31
// or the year not 0 to 9999 (such a date has no short form). At most 14
// characters; a longer short date gives empty text.
KORVALEN_API void CadenaAFecha(const wchar_t* stored, wchar_t* shown);
// A shown date of exactly 10 characters, day first ("31/01/2024", any
// separators), to "yyyymmdd"; empty for any other length.
KORVALEN_API void FechaACadena(const wchar_t* shown, wchar_t* stored);

// Nearest integer; halves go down: 2.5 gives 2, -2.5 gives -3.
//
// Out of range, both functions saturate: at or above 2147483647 the result is
// INT_MAX, at or below -2147483648 it is INT_MIN (the infinities included);
// NaN gives 0. Roundl and Truncl give the same values as a 32-bit LONG.
KORVALEN_API int Round(double x);
KORVALEN_API LONG Roundl(double x);
// Truncation toward zero after snapping |x| to the nearest multiple of 1/f,
// with f = 1000, or 100 above 999999, 10 above 9999999, 1 above 99999999:
// 2.9996 gives 3, 2.9994 gives 2, 1234567.996 gives 1234568. The scale is
// chosen from x itself, so every negative x takes f = 1000 (-1234567.996 gives
// -1234567), and above 99999999 the value is rounded rather than truncated.
// The snapping is done in double precision, so a negative x of any size within
// the int range is truncated correctly.
KORVALEN_API int Trunc(double x);
KORVALEN_API LONG Truncl(double x);
