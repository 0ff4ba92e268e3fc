// Windows passes a console program's arguments in the ANSI code page, the one
// the library converts 8-bit text with.
#include "../command_line.h"

#include "korvalen/foundation/text_conversion.h"

namespace korvalen::tool {

std::wstring argument_text(const std::string& argument) {
  // A byte never makes more than one wide character.
  std::wstring wide(argument.size() + 1, L'\0');
  CharToTChar(wide.data(), static_cast<int>(wide.size()), argument.c_str());
  wide.resize(std::char_traits<wchar_t>::length(wide.c_str()));
  return wide;
}

}  // namespace korvalen::tool
