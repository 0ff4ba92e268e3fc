// Message boxes over Win32.
#include "korvalen/platform/internal/message_box.h"

#include <windows.h>

namespace korvalen::platform::native {

std::error_code show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style,
                                 int& answer) {
  answer = MessageBoxW(nullptr, text, caption, style);
  if (answer != 0) return {};
  return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

}  // namespace korvalen::platform::native
