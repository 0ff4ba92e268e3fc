// Message boxes without a windowing system: one "caption: text" entry on
// standard error.
#include "korvalen/platform/internal/message_box.h"

#include <cstdio>
#include <string>

#include "korvalen/platform/posix/native_path.h"

namespace korvalen::platform {

int show_message_box(const wchar_t* text, const wchar_t* caption, unsigned /*style*/) {
  try {
    std::string entry = posix::to_utf8(caption != nullptr ? caption : L"");
    entry += ": ";
    entry += posix::to_utf8(text != nullptr ? text : L"");
    entry += '\n';
    std::fputs(entry.c_str(), stderr);
    std::fflush(stderr);
    return kMessageBoxAnswerOk;
  } catch (...) {
    return 0;
  }
}

}  // namespace korvalen::platform
