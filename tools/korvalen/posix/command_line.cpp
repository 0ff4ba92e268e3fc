// POSIX passes arguments as the locale's bytes, UTF-8 on the systems the suite
// is installed on.
#include "../command_line.h"

#include "korvalen/platform/internal/utf8.h"

namespace korvalen::tool {

std::wstring argument_text(const std::string& argument) { return platform::from_utf8(argument); }

}  // namespace korvalen::tool
