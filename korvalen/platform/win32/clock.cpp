#include "korvalen/platform/internal/clock.h"

#include <time.h>
#include <wchar.h>

#include <clocale>
#include <cwchar>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

std::error_code errno_result(errno_t error) {
  return error == 0 ? std::error_code() : std::error_code(error, std::generic_category());
}

}  // namespace

std::error_code local_time(long long t, std::tm& result) {
  const __time64_t tt = t;
  std::tm converted;
  const std::error_code error = errno_result(_localtime64_s(&converted, &tt));
  if (!error) result = converted;
  return error;
}

std::error_code utc_time(long long t, std::tm& result) {
  const __time64_t tt = t;
  std::tm converted;
  const std::error_code error = errno_result(_gmtime64_s(&converted, &tt));
  if (!error) result = converted;
  return error;
}

std::error_code make_time(std::tm& tm, long long& t) {
  const __time64_t seconds = _mktime64(&tm);
  if (seconds == -1) return make_error(std::errc::invalid_argument);
  t = seconds;
  return {};
}

long long now() { return _time64(nullptr); }

wchar_t* date_text(wchar_t* buffer) { return _wstrdate(buffer); }
wchar_t* time_text(wchar_t* buffer) { return _wstrtime(buffer); }

namespace native {

std::size_t format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                        const std::tm& tm) {
  return wcsftime(buffer, capacity, format, &tm);
}

}  // namespace native

void use_user_time_locale() { _wsetlocale(LC_TIME, L""); }
void use_c_locale() { _wsetlocale(LC_ALL, L"C"); }

}  // namespace korvalen::platform
