// Translating a CNC program character by character for a control that needs
// other characters than the suite writes. The translation file holds config
// records: "A012 "text" ;" gives entry 12 its character (the text's first),
// "B012 "text" ;" its replacement (the text's first character, or none:
// the written line then ends at that character). An entry without a 'B'
// record keeps its character; a 'B' record before or without its 'A' is
// ignored, and of two entries with one index the first takes the 'B'.
//
//   CambiarCnc(L"CNCTRAD.CFG", L"PIEZA.CNC", L"PIEZA.OUT");
//
//   TRegListaCaract* first = nullptr;
//   TRegListaCaract* last = nullptr;
//   CargarListaConfig(L"CNCTRAD.CFG", first, last);
//   ...
//   LiberarLista((void**)&first, (void**)&last);
#pragma once

#include "korvalen/export.h"

// One entry of a translation list, a double record: 24 bytes on 32-bit
// Windows, 32 on 64-bit Windows, 48 on 64-bit Linux (wchar_t is 4 bytes
// there). Only the first character of each text is used.
struct TRegListaCaract {
  TRegListaCaract* next;
  TRegListaCaract* previous;
  int index;
  wchar_t character[3];
  wchar_t replacement[3];
};

// Reads the translation file into a new list at head/tail (the list they held
// is not freed). An empty name or a file that does not open leaves them as
// they were.
KORVALEN_API void CargarListaConfig(const wchar_t* file_name, TRegListaCaract*& head,
                                    TRegListaCaract*& tail);

// Writes the input file translated into the output file, line by line (lines
// of at most 255 characters, longer ones cut; CR LF line ends). Characters
// that no entry carries pass unchanged. When either file does not open,
// nothing is written.
KORVALEN_API void CambiarCnc(const wchar_t* translation_file, const wchar_t* input_file,
                             const wchar_t* output_file);
