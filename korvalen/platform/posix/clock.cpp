#include "korvalen/platform/internal/clock.h"

#include <clocale>
#include <cwchar>

namespace korvalen::platform {
namespace {

// The Windows runtime refuses times before 1970 and after the year 3000.
constexpr long long kLastTime = 32535215999LL;

thread_local std::tm t_time;

}  // namespace

std::tm* local_time(long long t) {
  if (t < 0 || t > kLastTime) return nullptr;
  const std::time_t tt = static_cast<std::time_t>(t);
  return localtime_r(&tt, &t_time);
}

std::tm* utc_time(long long t) {
  if (t < 0 || t > kLastTime) return nullptr;
  const std::time_t tt = static_cast<std::time_t>(t);
  return gmtime_r(&tt, &t_time);
}

// As the Windows runtime's 64-bit mktime: a time outside its range (local
// 1970 to the end of 3000) is -1, and the caller's fields stay as they were.
long long make_time(std::tm* tm) {
  if (tm == nullptr) return -1;
  std::tm normalised = *tm;
  const long long t = static_cast<long long>(std::mktime(&normalised));
  if (t < 0 || t > kLastTime) return -1;
  *tm = normalised;
  return t;
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

std::size_t format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                        const std::tm* tm) {
  if (buffer == nullptr || capacity == 0 || format == nullptr || tm == nullptr) return 0;
  const std::size_t n = std::wcsftime(buffer, capacity, format, tm);
  if (n == 0) buffer[0] = 0;
  return n;
}

void use_user_time_locale() { std::setlocale(LC_TIME, ""); }
void use_c_locale() { std::setlocale(LC_ALL, "C"); }

}  // namespace korvalen::platform
