#include "korvalen/platform/internal/clock.h"

#include <clocale>
#include <cwchar>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

// The Windows runtime refuses times before 1970 and after the year 3000.
constexpr long long kLastTime = 32535215999LL;

bool in_range(long long t) { return t >= 0 && t <= kLastTime; }

}  // namespace

std::error_code local_time(long long t, std::tm& result) {
  if (!in_range(t)) return make_error(std::errc::invalid_argument);
  const std::time_t tt = static_cast<std::time_t>(t);
  return localtime_r(&tt, &result) != nullptr ? std::error_code() : errno_error();
}

std::error_code utc_time(long long t, std::tm& result) {
  if (!in_range(t)) return make_error(std::errc::invalid_argument);
  const std::time_t tt = static_cast<std::time_t>(t);
  return gmtime_r(&tt, &result) != nullptr ? std::error_code() : errno_error();
}

std::error_code make_time(std::tm& tm, long long& t) {
  std::tm normalised = tm;
  const long long seconds = static_cast<long long>(std::mktime(&normalised));
  if (!in_range(seconds)) return make_error(std::errc::invalid_argument);
  tm = normalised;
  t = seconds;
  return {};
}

long long now() { return static_cast<long long>(std::time(nullptr)); }

wchar_t* date_text(wchar_t* buffer) {
  std::tm tm{};
  const std::time_t t = std::time(nullptr);
  localtime_r(&t, &tm);
  std::swprintf(buffer, 9, L"%02d/%02d/%02d", tm.tm_mon + 1, tm.tm_mday, tm.tm_year % 100);
  return buffer;
}

wchar_t* time_text(wchar_t* buffer) {
  std::tm tm{};
  const std::time_t t = std::time(nullptr);
  localtime_r(&t, &tm);
  std::swprintf(buffer, 9, L"%02d:%02d:%02d", tm.tm_hour, tm.tm_min, tm.tm_sec);
  return buffer;
}

namespace native {

std::size_t format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                        const std::tm& tm) {
  return std::wcsftime(buffer, capacity, format, &tm);
}

}  // namespace native

void use_user_time_locale() { std::setlocale(LC_TIME, ""); }
void use_c_locale() { std::setlocale(LC_ALL, "C"); }

}  // namespace korvalen::platform
