#include "korvalen/settings/material_reference.h"

#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/string_functions.h"

namespace {

constexpr int kPrefixChars = 8;      // "##MATEXP"
constexpr int kRewrittenChars = 14;  // "##MATEXP0000##": already in the long form

}  // namespace

void ReescribeRefMatInt(wchar_t* reference) {
  if (reference == nullptr) return;
  const int length = StrLen(reference);
  if (length >= kRewrittenChars || StrnCmp(reference, L"##MATEXP", kPrefixChars) != 0) return;
  // At most three characters stand between the prefix and the closing two.
  wchar_t digits[kRewrittenChars] = {};
  const int count = length - kPrefixChars - 2;
  for (int i = 0; i < count; ++i) digits[i] = reference[kPrefixChars + i];
  sPrintf(reference, L"##MATEXP%.04d##", aToi(digits));
}
