// Message boxes over Win32.
#include "korvalen/platform/internal/message_box.h"

#include <windows.h>

namespace korvalen::platform {

int show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style) {
  return MessageBoxW(nullptr, text != nullptr ? text : L"", caption, style);
}

}  // namespace korvalen::platform
