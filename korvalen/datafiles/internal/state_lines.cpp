#include "korvalen/datafiles/internal/state_lines.h"

#include "korvalen/foundation/streams.h"

namespace korvalen::detail {

void write_state_line(FILE* file, const wchar_t* value) {
  constexpr int kLineChars = 498;
  if (file == nullptr) return;
  wchar_t work[kLineChars + 1];
  int n = 0;
  if (value != nullptr) {
    for (; n < kLineChars && value[n] != 0 && value[n] != L'\n'; ++n) work[n] = value[n];
  }
  work[n] = 0;
  if (n > 0) fPuts(work, file);
  fPuts(L"\n", file);
}

}  // namespace korvalen::detail
