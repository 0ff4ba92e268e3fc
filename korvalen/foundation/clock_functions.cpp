#include "korvalen/foundation/clock_functions.h"

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/clock.h"

using korvalen::detail::WideArg;
namespace platform = korvalen::platform;

wchar_t* StrDate(wchar_t* buffer) {
  return buffer != nullptr ? platform::date_text(buffer) : buffer;
}
wchar_t* StrTime(wchar_t* buffer) {
  return buffer != nullptr ? platform::time_text(buffer) : buffer;
}

std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                     const std::tm* time) {
  return platform::format_time(buffer, capacity, format, time);
}
std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const char* format,
                     const std::tm* time) {
  return StrfTime(buffer, capacity, WideArg(format).get(), time);
}

std::tm* LocalTime(const long long* time) {
  return time != nullptr ? platform::local_time(*time) : nullptr;
}
std::tm* gmTime(const long long* time) {
  return time != nullptr ? platform::utc_time(*time) : nullptr;
}
