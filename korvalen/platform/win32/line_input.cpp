// The system conversion finds the end of the text by itself, so the known
// length brings nothing here.
#include "korvalen/platform/line_input.h"

#include "korvalen/platform/text_codec.h"

namespace korvalen::platform {

int line_to_wide(const char* bytes, std::size_t /*length*/, wchar_t* dst, int capacity) {
  return ansi_to_wide(bytes, dst, capacity);
}

}  // namespace korvalen::platform
