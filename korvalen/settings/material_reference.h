// Internal material references of the form "##MATEXP<number>##": written by
// older programs with as few digits as the number needed, compared by the
// suite with at least four.
//
//   wchar_t reference[16] = L"##MATEXP7##";
//   ReescribeRefMatInt(reference);  // "##MATEXP0007##"
#pragma once

#include "korvalen/export.h"

namespace korvalen {

// Longest rewritten reference ("##MATEXP-0099##"), without the terminator.
inline constexpr int kMaterialReferenceChars = 15;

}  // namespace korvalen

// A text that begins with "##MATEXP" and is shorter than 14 characters is
// rewritten as "##MATEXP%.04d##" with the number between "##MATEXP" and its
// last two characters; any other text stays as it is. The buffer must hold
// kMaterialReferenceChars + 1 characters.
KORVALEN_API void ReescribeRefMatInt(wchar_t* reference);
