#include "korvalen/foundation/internal/number_file.h"

#include <cstdio>

#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/streams.h"

namespace korvalen::detail {

void write_number_file(const wchar_t* name, int value) {
  FILE* f = fOpen(name, L"wt");
  if (f == nullptr) return;
  fPrintf(f, L"%d\n", value);
  std::fclose(f);
}

}  // namespace korvalen::detail
