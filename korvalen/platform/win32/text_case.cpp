#include "korvalen/platform/internal/text_case.h"

#include <cwctype>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

wchar_t to_upper(wchar_t c) { return static_cast<wchar_t>(std::towupper(c)); }
wchar_t to_lower(wchar_t c) { return static_cast<wchar_t>(std::towlower(c)); }
int compare_no_case(const wchar_t* a, const wchar_t* b) { return _wcsicmp(a, b); }

}  // namespace korvalen::platform
