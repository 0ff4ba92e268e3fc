// Message boxes over POSIX: a GTK message dialog when the toolkit's module is
// there (a display is), else one "caption: text" entry on standard error.
#include "korvalen/platform/internal/message_box.h"

#include <cstdio>
#include <string>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/gtk_module.h"

namespace korvalen::platform::native {

std::error_code show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style,
                                 int& answer) {
  if (const KorvalenGtkApi* gtk = gtk_module()) {
    answer = gtk->message_box(to_utf8(text).c_str(), to_utf8(caption).c_str(), style);
    return {};
  }
  std::string entry = to_utf8(caption);
  entry += ": ";
  entry += to_utf8(text);
  entry += '\n';
  if (std::fputs(entry.c_str(), stderr) < 0 || std::fflush(stderr) != 0) return errno_error();
  answer = kMessageBoxAnswerOk;
  return {};
}

}  // namespace korvalen::platform::native
