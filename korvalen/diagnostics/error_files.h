// Error reports: any program of the suite leaves a report of a processing
// error as a small ".err" file of its own in the current directory; a
// supervising program gathers them all into a list of TRegError records,
// shows them and deletes the files.
//
//   GeneraError(12, L"a", L"b", L"c", L"d", L"e", L"f", L"g", 1, 2, 3);
//   ...
//   TRegError* first = nullptr;
//   TRegError* last = nullptr;
//   DameListaErrores(first, last, 1);  // 1: delete the files once gathered
//   for (TRegError* e = first; e != nullptr; e = e->next) { ... }
//   BorraListaErrores(first, last);
//
// A report holds eleven lines: the code, the seven texts between double
// quotes, then the three numbers. Report names come from DameNombreFic with
// the counter file "CONTERRW.cdr", so programs reporting at the same time
// never overwrite each other's reports.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

namespace korvalen {

// Capacities of the text fields with the terminator; the file name is the one
// the directory search found.
inline constexpr int kErrorFileNameChars = 512;
inline constexpr int kErrorShortTextChars = 41;
inline constexpr int kErrorLongTextChars = 256;

}  // namespace korvalen

// One gathered report: a double record of the record lists, copied into the
// list by its size, so the layout is fixed.
struct TRegError {
  TRegError* next;
  TRegError* previous;
  int code;
  wchar_t file_name[korvalen::kErrorFileNameChars];
  wchar_t text1[korvalen::kErrorShortTextChars];
  wchar_t text2[korvalen::kErrorShortTextChars];
  wchar_t text3[korvalen::kErrorShortTextChars];
  wchar_t text4[korvalen::kErrorLongTextChars];
  wchar_t text5[korvalen::kErrorLongTextChars];
  wchar_t text6[korvalen::kErrorShortTextChars];
  wchar_t text7[korvalen::kErrorShortTextChars];
  int number1;
  LONG number2;
  int number3;
};

// Writes one new report; nothing when no report file can be created. The
// seven texts land in text1 to text7 of the gathered record, and their names
// say how much of them the gatherer keeps: 40 characters of a short text, 253
// of the long one, 78 of the medium one. Texts must not hold a double quote;
// each is written as passed, but cut to 1020 characters so its line still
// fits the line buffer.
KORVALEN_API void GeneraError(int code, const wchar_t* short_text1, const wchar_t* short_text2,
                              const wchar_t* short_text3, const wchar_t* long_text4,
                              const wchar_t* medium_text5, const wchar_t* short_text6,
                              const wchar_t* short_text7, int number1, LONG number2, int number3);

// Sets head and tail to a list of every ".err" file of the current directory,
// in the order the directory gives them. A file that cannot be read still
// gives a record, with code 0, empty texts and zero numbers; missing lines read
// as empty texts and zeros. With delete_files non-zero the files are deleted
// once gathered (the list stays).
KORVALEN_API void DameListaErrores(TRegError*& head, TRegError*& tail, int delete_files);

// Deletes the file named in first and in every record after it; failures are
// ignored.
KORVALEN_API void BorrarFicherosDeErrores(TRegError* first);

// Frees every record; head and tail become null.
KORVALEN_API void BorraListaErrores(TRegError*& head, TRegError*& tail);
