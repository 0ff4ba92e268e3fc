// Material references rewritten to four-digit numbers, and every text that
// must stay as it is.
#include "korvalen/settings/material_reference.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(MaterialReference, RewrittenOrLeftAlone) {
  const struct {
    const wchar_t* before;
    const wchar_t* after;
  } cases[] = {
      {L"##MATEXP7##", L"##MATEXP0007##"},
      {L"##MATEXP12##", L"##MATEXP0012##"},
      {L"##MATEXP123##", L"##MATEXP0123##"},  // 13 characters: the longest rewritten
      {L"##MATEXP##", L"##MATEXP0000##"},
      {L"##MATEXP", L"##MATEXP0000##"},
      {L"##MATEXP5", L"##MATEXP0000##"},  // the last two are taken as the closing "##"
      {L"##MATEXP-7##", L"##MATEXP-0007##"},
      {L"##MATEXP-99##", L"##MATEXP-0099##"},
      {L"##MATEXPab##", L"##MATEXP0000##"},
      {L"##MATEXP1234##", L"##MATEXP1234##"},  // 14 characters: left alone
      {L"##MATEXP12345##", L"##MATEXP12345##"},
      {L"##MATEX7##", L"##MATEX7##"},
      {L"##matexp7##", L"##matexp7##"},
      {L"MATEXP7", L"MATEXP7"},
      {L"", L""},
  };
  for (const auto& c : cases) {
    wchar_t buffer[korvalen::kMaterialReferenceChars + 1 + 4];
    for (wchar_t& ch : buffer) ch = L'#';
    std::wstring(c.before).copy(buffer, std::wstring(c.before).size());
    buffer[std::wstring(c.before).size()] = 0;
    ReescribeRefMatInt(buffer);
    EXPECT_EQ(std::wstring(buffer), c.after) << std::wstring(c.before).size();
    for (int i = korvalen::kMaterialReferenceChars + 1; i < korvalen::kMaterialReferenceChars + 5;
         ++i) {
      EXPECT_EQ(buffer[i], L'#');  // nothing past the stated capacity
    }
  }
  ReescribeRefMatInt(nullptr);
}

}  // namespace
