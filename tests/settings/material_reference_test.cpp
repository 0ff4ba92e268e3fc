// Material references rewritten to four-digit numbers, and every text that
// must stay as it is.
#include "korvalen/settings/material_reference.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(MaterialReference, RewrittenOrLeftAlone) {
  const struct {
    std::wstring before, after;
  } cases[] = {
      {L"##MATEXP7##", L"##MATEXP0007##"},
      {L"##MATEXP123##", L"##MATEXP0123##"},  // 13 characters: the longest rewritten
      {L"##MATEXP##", L"##MATEXP0000##"},
      {L"##MATEXP", L"##MATEXP0000##"},
      {L"##MATEXP5", L"##MATEXP0000##"},  // the last two are taken as the closing "##"
      {L"##MATEXP-7##", L"##MATEXP-0007##"},
      {L"##MATEXPab##", L"##MATEXP0000##"},
      {L"##MATEXP1234##", L"##MATEXP1234##"},  // 14 characters: left alone
      {L"##MATEXP123-##", L"##MATEXP123-##"},
      {L"##MATEXP12345##", L"##MATEXP12345##"},
      {L"##MATEX7##", L"##MATEX7##"},
      {L"##matexp7##", L"##matexp7##"},
      {L"", L""},
  };
  constexpr std::size_t kCapacity = korvalen::kMaterialReferenceChars + 1;
  for (const auto& c : cases) {
    std::vector<wchar_t> buffer(kCapacity + 4, L'#');
    buffer[c.before.copy(buffer.data(), c.before.size())] = 0;
    ReescribeRefMatInt(buffer.data());
    EXPECT_EQ(std::wstring(buffer.data()), c.after) << c.before;
    // Nothing past the stated capacity.
    EXPECT_EQ(std::wstring(buffer.begin() + kCapacity, buffer.end()), L"####") << c.before;
  }
  ReescribeRefMatInt(nullptr);
}

}  // namespace
