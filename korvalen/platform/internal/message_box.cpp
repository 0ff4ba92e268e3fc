// The portable part of message boxes: null texts and failure values.
#include "korvalen/platform/internal/message_box.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style,
                                 int& answer) {
  answer = 0;
  const std::error_code error = guarded([&] {
    return native::show_message_box(text != nullptr ? text : L"",
                                    caption != nullptr ? caption : L"", style, answer);
  });
  if (error) answer = 0;
  return error;
}

}  // namespace korvalen::platform
