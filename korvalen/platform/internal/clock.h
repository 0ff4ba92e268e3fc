// Clock and calendar functions of the C runtime with the Windows conventions:
// 64-bit times, "mm/dd/yy" and "hh:mm:ss" texts, and no broken-down time
// before 1970 or after the year 3000. Calls that can fail follow the
// convention of error.h.
//
//   std::tm local;
//   if (!platform::local_time(platform::now(), local)) { ... }
#pragma once

#include <cstddef>
#include <ctime>
#include <system_error>

namespace korvalen::platform {

// Broken-down local or UTC time; std::errc::invalid_argument for a time
// before 1970 or past the year 3000 (result unchanged).
std::error_code local_time(long long t, std::tm& result);
std::error_code utc_time(long long t, std::tm& result);
// The calendar seconds of a local broken-down time (mktime), normalising its
// fields; std::errc::invalid_argument outside 1970 to 3000, the fields then
// as they were.
std::error_code make_time(std::tm& tm, long long& t);
long long now();

wchar_t* date_text(wchar_t* buffer);  // "mm/dd/yy", 9 characters
wchar_t* time_text(wchar_t* buffer);  // "hh:mm:ss", 9 characters
// wcsftime, setting length; std::errc::value_too_large (buffer empty) when
// the text does not fit or is empty.
std::error_code format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                            const std::tm& tm, std::size_t& length);

// The time locale follows the user's default / goes back to "C".
void use_user_time_locale();
void use_c_locale();

// Each system's implementation, for the portable layer (clock.cpp) only: the
// arguments are checked. Returns what wcsftime returns.
namespace native {
std::size_t format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                        const std::tm& tm);
}  // namespace native

}  // namespace korvalen::platform
