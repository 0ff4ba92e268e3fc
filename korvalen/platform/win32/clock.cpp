#include "korvalen/platform/internal/clock.h"

#include <time.h>
#include <wchar.h>

#include <clocale>
#include <cwchar>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

// A broken-down time through one of the runtime's secure conversions; the
// result stays as it was when the runtime refuses the time.
std::error_code broken_down(errno_t (*convert)(std::tm*, const __time64_t*), long long t,
                            std::tm& result) {
  const __time64_t tt = t;
  std::tm converted;
  const errno_t error = convert(&converted, &tt);
  if (error != 0) return std::error_code(error, std::generic_category());
  result = converted;
  return {};
}

}  // namespace

std::error_code local_time(long long t, std::tm& result) {
  return broken_down(_localtime64_s, t, result);
}

std::error_code utc_time(long long t, std::tm& result) {
  return broken_down(_gmtime64_s, t, result);
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
