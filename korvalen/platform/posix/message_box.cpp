// Message boxes without a windowing system: one "caption: text" entry on
// standard error.
#include "korvalen/platform/internal/message_box.h"

#include <cstdio>
#include <string>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/utf8.h"

namespace korvalen::platform::native {

std::error_code show_message_box(const wchar_t* text, const wchar_t* caption, unsigned /*style*/,
                                 int& answer) {
  std::string entry = to_utf8(caption);
  entry += ": ";
  entry += to_utf8(text);
  entry += '\n';
  if (std::fputs(entry.c_str(), stderr) < 0 || std::fflush(stderr) != 0) return errno_error();
  answer = kMessageBoxAnswerOk;
  return {};
}

}  // namespace korvalen::platform::native
