#include "korvalen/foundation/string_resources.h"

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/current_resources.h"

int LoadStr(UINT id, wchar_t* buffer) {
  return korvalen::detail::load_string(id, buffer, korvalen::detail::kWorkChars) > 0 ? 1 : 0;
}
