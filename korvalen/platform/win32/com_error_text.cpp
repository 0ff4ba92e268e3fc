#include "korvalen/platform/internal/com_error_text.h"

#include "korvalen/platform/internal/text_codec.h"

namespace korvalen::platform {
namespace {

// The message is TCHAR text: wide or in the ANSI code page, as the headers
// were set when the library was built.
[[maybe_unused]] std::wstring wide(const wchar_t* message) { return message != nullptr ? message : L""; }

[[maybe_unused]] std::wstring wide(const char* message) {
  if (message == nullptr) return {};
  const int needed = ansi_to_wide(message, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(needed), L'\0');
  ansi_to_wide(message, text.data(), needed);
  text.resize(text.size() - 1);
  return text;
}

}  // namespace

std::wstring com_error_message(const _com_error& error) { return wide(error.ErrorMessage()); }

}  // namespace korvalen::platform
