#include "korvalen/foundation/internal/number_file.h"

#include <cstdio>

#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/whole_file.h"

namespace korvalen::detail {

void write_number_file(const wchar_t* name, int value) {
  write_whole_file(name, [&](FILE* f) { fPrintf(f, L"%d\n", value); });
}

}  // namespace korvalen::detail
