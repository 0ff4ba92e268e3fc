// BSTR: the length-prefixed wide strings in which the XML functions hand out
// attribute values. The caller frees each one with SysFreeString.
//
//   BSTR value = GetAttributeValue(node, L"LanID");
//   const UINT length = SysStringLen(value);
//   SysFreeString(value);
//
// On Windows they are the system's own (oleaut32). Elsewhere the library has
// them, laid out as on Windows: a 32-bit byte count in front of the
// characters and a terminator after them; a null BSTR is the empty text.
#pragma once

#include "korvalen/platform/windows_types.h"

#if defined(_WIN32)
#include <oleauto.h>
#else
#include "korvalen/export.h"

using OLECHAR = wchar_t;
using BSTR = OLECHAR*;

extern "C" {
// A copy of the text (up to its terminator); null for a null text or when no
// memory is left.
KORVALEN_API BSTR SysAllocString(const OLECHAR* text);
// length characters of text (which may hold zeros), or length zeros when text
// is null.
KORVALEN_API BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
KORVALEN_API void SysFreeString(BSTR text);
// The length in characters; 0 for null.
KORVALEN_API UINT SysStringLen(BSTR text);
}
#endif
