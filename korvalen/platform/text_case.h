// Case folding for comparisons without regard to case (StriCmp, file names).
// Windows uses the runtime's folding; elsewhere ASCII and Latin-1 letters fold.
#pragma once

namespace korvalen::platform {

wchar_t to_upper(wchar_t c);
wchar_t to_lower(wchar_t c);
// <0, 0 or >0, comparing the lower-case forms.
int compare_no_case(const wchar_t* a, const wchar_t* b);

}  // namespace korvalen::platform
