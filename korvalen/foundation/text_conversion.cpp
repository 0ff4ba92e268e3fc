#include "korvalen/foundation/text_conversion.h"

#include "korvalen/platform/internal/text_codec.h"

int CharToTChar(wchar_t* destination, int capacity, const char* source) {
  return korvalen::platform::ansi_to_wide(source, destination, capacity);
}

int TCharToChar(char* destination, int capacity, const wchar_t* source) {
  return korvalen::platform::wide_to_ansi(source, destination, capacity);
}
