// Clock and calendar functions of the C runtime with the Windows conventions:
// 64-bit times, "mm/dd/yy" and "hh:mm:ss" texts, null for times before 1970.
#pragma once

#include <cstddef>
#include <ctime>

namespace korvalen::platform {

// Broken-down local or UTC time into a per-thread buffer; null when the time
// is negative or past the year 3000.
std::tm* local_time(long long t);
std::tm* utc_time(long long t);
// The calendar seconds of a local broken-down time (mktime), normalising it.
long long make_time(std::tm* tm);
long long now();

wchar_t* date_text(wchar_t* buffer);  // "mm/dd/yy"
wchar_t* time_text(wchar_t* buffer);  // "hh:mm:ss"
std::size_t format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                        const std::tm* tm);

// The time locale follows the user's default / goes back to "C".
void use_user_time_locale();
void use_c_locale();

}  // namespace korvalen::platform
