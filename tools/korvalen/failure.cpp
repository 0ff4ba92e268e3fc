#include "failure.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cwctype>
#include <system_error>

#include "text_output.h"

namespace korvalen::tool {

void fail(const std::wstring& subject, const std::wstring& cause, int status) {
  print_error(subject + L": " + cause);
  throw CLI::RuntimeError(status);
}

void fail_errno(const std::wstring& subject, const std::wstring& fallback) {
  const int error = errno;
  if (error == 0) fail(subject, fallback);
  const std::string message = std::generic_category().message(error);
  std::wstring cause(message.begin(), message.end());
  if (!cause.empty()) cause[0] = static_cast<wchar_t>(std::towlower(cause[0]));
  fail(subject, cause);
}

}  // namespace korvalen::tool
