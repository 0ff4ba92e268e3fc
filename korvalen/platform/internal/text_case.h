// The C runtime's case folding, behind StriCmp, StrUpr and StrLwr. The library
// keeps the runtime in its "C" locale (it sets it back after formatting a
// date), where the Windows runtime folds only the ASCII letters; POSIX does
// the same, so that "\u00E9" and "\u00C9" differ on both. File names fold as
// the file system does, which is the platform's own business.
#pragma once

namespace korvalen::platform {

wchar_t to_upper(wchar_t c);
wchar_t to_lower(wchar_t c);
// <0, 0 or >0, comparing the lower-case forms.
int compare_no_case(const wchar_t* a, const wchar_t* b);

}  // namespace korvalen::platform
