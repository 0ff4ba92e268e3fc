#include "korvalen/settings/internal/long_text_field.h"

#include <cstdlib>

#include "korvalen/config/config_writer.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/string_functions.h"

namespace korvalen::detail {

void write_long_text_field(FILE* out, wchar_t* line, int cursor, const wchar_t* text) {
  text = or_empty(text);
  const int length = StrLen(text);
  if (length + cursor + 4 > StrLen(line)) {
    // The head (cursor + 1 characters at most), two quotes, the text and the
    // terminator.
    const std::size_t chars = static_cast<std::size_t>(length) + cursor + 4;
    if (auto* rebuilt = static_cast<wchar_t*>(std::malloc(chars * sizeof(wchar_t)))) {
      EscribirUnTextoLargo(line, rebuilt, cursor, text);
      EscribirLineaEnFichero(out, rebuilt);
      std::free(rebuilt);
      return;
    }
  }
  EscribirUnTexto(line, cursor, text);
  EscribirLineaEnFichero(out, line);
}

}  // namespace korvalen::detail
