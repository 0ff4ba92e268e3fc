// The texts of errors as the user sees them: an error number turned into the
// text of the current language library, COM errors and the warning of a
// database running out of space, each shown in a message box.
//
//   wchar_t text[1024] = L"25001";
//   int number = 0;
//   if (ConvertirTextoError(text, number)) { /* text is the language's text */ }
//   try { ... } catch (_com_error& e) { TratarErrorCom(new _com_error(e)); }
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/com_error.h"

// A text of exactly five digits whose number is at least 25000 and has a
// string in the current language library becomes that string (the buffer
// must hold it): 1, with number set to it. Otherwise 0, number 0 and the
// text as it was.
KORVALEN_API int ConvertirTextoError(wchar_t* text, int& number);

// Shows the error's message (through ConvertirTextoError) under the caption
// "SYSTEM COM ERROR", then deletes the error: it must come from new.
KORVALEN_API void TratarErrorCom(_com_error* error);

// Shows the low-space warning: the language's strings 24565 to 24568 on
// four lines, the last followed by ':', the free megabytes ("%.2f") and
// " MB.", under the caption "Warning".
KORVALEN_API void TratarMensajePocoEspacioBD(double free_megabytes);
