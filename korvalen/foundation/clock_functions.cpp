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
  if (time == nullptr) {
    if (buffer != nullptr && capacity > 0) buffer[0] = 0;
    return 0;
  }
  std::size_t length = 0;
  // A text that does not fit leaves the buffer empty and the length 0.
  (void)platform::format_time(buffer, capacity, format, *time, length);
  return length;
}
std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const char* format,
                     const std::tm* time) {
  return StrfTime(buffer, capacity, WideArg(format).get(), time);
}

namespace {

// The broken-down time the runtime hands out: one per thread.
thread_local std::tm t_time;

}  // namespace

std::tm* LocalTime(const long long* time) {
  if (time == nullptr || platform::local_time(*time, t_time)) return nullptr;
  return &t_time;
}
std::tm* gmTime(const long long* time) {
  if (time == nullptr || platform::utc_time(*time, t_time)) return nullptr;
  return &t_time;
}
