// Debugging traces: show a value at once in a message box (ChivatoMsg...), or
// append it as a "name = value" line to a trace file (ChivatoFic...).
//
//   ChivatoMsgEntero(count, L"count");           // box: caption "count", text "42"
//   ChivatoFicReal(L"trace.txt", 2.5, L"width");  // trace.txt gains "width = 2.500"
//
// A trace file is rewritten through the work file "AUXCHIVA.DAT" of the
// current directory on every value, its lines cut to 80 characters. The copy
// leaves an empty line before each new entry when the old content ended with a
// line feed, so entries come out separated by empty lines. Two processes
// tracing in one directory share that work file: traces are for debugging one
// program at a time.
#pragma once

#include <ctime>

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// Message box without owner, OK button only: caption, and the value as text.
KORVALEN_API void ChivatoMsgTexto(const wchar_t* text, const wchar_t* caption);
KORVALEN_API void ChivatoMsgChar(wchar_t value, const wchar_t* caption);
KORVALEN_API void ChivatoMsgBool(int value, const wchar_t* caption);  // "TRUE" / "FALSE"
KORVALEN_API void ChivatoMsgShort(short value, const wchar_t* caption);
KORVALEN_API void ChivatoMsgEntero(int value, const wchar_t* caption);
KORVALEN_API void ChivatoMsgLong(LONG value, const wchar_t* caption);
KORVALEN_API void ChivatoMsgReal(double value, const wchar_t* caption);  // "%f"
// Caption "Tiempo", text "<text> -> hh:mm:ss." from the clock time of `time`.
KORVALEN_API void ChivatoTiempo(const wchar_t* text, std::tm& time);

// Append "name = value" to the trace file.
KORVALEN_API void ChivatoFicTexto(const wchar_t* file, const wchar_t* value, const wchar_t* name);
KORVALEN_API void ChivatoFicChar(const wchar_t* file, wchar_t value, const wchar_t* name);
KORVALEN_API void ChivatoFicBool(const wchar_t* file, int value, const wchar_t* name);
KORVALEN_API void ChivatoFicShort(const wchar_t* file, short value, const wchar_t* name);
KORVALEN_API void ChivatoFicEntero(const wchar_t* file, int value, const wchar_t* name);
KORVALEN_API void ChivatoFicLong(const wchar_t* file, LONG value, const wchar_t* name);
KORVALEN_API void ChivatoFicReal(const wchar_t* file, double value,
                                 const wchar_t* name);  // "%1.3f"
