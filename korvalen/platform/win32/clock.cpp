#include "korvalen/platform/internal/clock.h"

#include <time.h>
#include <wchar.h>

#include <clocale>
#include <cwchar>

namespace korvalen::platform {
namespace {
thread_local std::tm t_time;
}

std::tm* local_time(long long t) {
  const __time64_t tt = t;
  return _localtime64_s(&t_time, &tt) == 0 ? &t_time : nullptr;
}

std::tm* utc_time(long long t) {
  const __time64_t tt = t;
  return _gmtime64_s(&t_time, &tt) == 0 ? &t_time : nullptr;
}

long long make_time(std::tm* tm) { return _mktime64(tm); }
long long now() { return _time64(nullptr); }

wchar_t* date_text(wchar_t* buffer) { return _wstrdate(buffer); }
wchar_t* time_text(wchar_t* buffer) { return _wstrtime(buffer); }

std::size_t format_time(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                        const std::tm* tm) {
  if (buffer == nullptr || capacity == 0 || format == nullptr || tm == nullptr) return 0;
  const std::size_t n = wcsftime(buffer, capacity, format, tm);
  if (n == 0) buffer[0] = 0;
  return n;
}

void use_user_time_locale() { _wsetlocale(LC_TIME, L""); }
void use_c_locale() { _wsetlocale(LC_ALL, L"C"); }

}  // namespace korvalen::platform
