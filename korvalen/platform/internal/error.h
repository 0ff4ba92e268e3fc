// The error convention of the platform layer. A call that can fail returns a
// std::error_code, empty on success; what it produces comes through its
// out-parameters, which are left in a documented state on failure. Causes a
// caller acts on are std::errc values on every system (a Windows error is
// translated where callers must tell it apart); any other cause keeps the
// system's own code (errno with std::generic_category, a Windows error with
// std::system_category). Calls that cannot fail return their value.
//
//   FILE* file = nullptr;
//   if (const std::error_code error = platform::open_file(name, L"rt", -1, file)) {
//     return to_runtime_result(error);  // -1, errno set
//   }
//
// The portable part of each concern (platform/internal/*.cpp) checks the
// arguments and runs the system's implementation through `guarded`, so that
// the backends need not do either.
#pragma once

#include <cerrno>
#include <new>
#include <system_error>

namespace korvalen::platform {

inline std::error_code make_error(std::errc cause) { return std::make_error_code(cause); }

// The cause a C runtime call left in errno.
inline std::error_code errno_error() { return std::error_code(errno, std::generic_category()); }

// Runs one system call of a backend: an exception becomes a failed call. The
// backends throw nothing but allocation failures.
template <typename Call>
std::error_code guarded(Call call) noexcept {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return make_error(std::errc::not_enough_memory);
  } catch (...) {
    return make_error(std::errc::io_error);
  }
}

// The C runtime's way of reporting a result: 0, or -1 with errno set to the
// cause where it has one.
inline int to_runtime_result(const std::error_code& error) {
  if (!error) return 0;
  if (error.category() == std::generic_category()) errno = error.value();
  return -1;
}

}  // namespace korvalen::platform
