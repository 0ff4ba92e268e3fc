// Internal: which string resources of the language module the default messages
// and the special messages come from. The loader is a parameter so that the
// mapping can be checked without a language module; the library passes LoadStr.
#pragma once

#include <cstdint>

#include "korvalen/datafiles/units_and_messages.h"

namespace korvalen::detail {

// Where wide characters are UTF-32, whether one takes two UTF-16 units.
inline bool beyond_utf16(std::uint32_t c) { return c > 0xFFFF; }

// The resource a special message (U+00AA, '@', code) stands for; 0 for any
// other text.
inline unsigned special_message_id(const wchar_t* text) {
  constexpr wchar_t kMark = 0x00AA;
  constexpr unsigned kFirstSpecialMessage = 26235;
  if (text == nullptr || text[0] != kMark || text[1] != L'@' || text[2] == 0 || text[3] != 0) {
    return 0;
  }
  // Three UTF-16 units: a character beyond them takes two, as on Windows.
  if (beyond_utf16(static_cast<std::uint32_t>(text[2]))) return 0;
  return kFirstSpecialMessage + static_cast<unsigned>(text[2]);
}

// What one entry of the default messages holds: a string resource, with a
// suffix appended, or a fixed text.
struct DefaultMessage {
  unsigned resource;    // 0: the fixed text
  const wchar_t* text;  // the fixed text, or the suffix of the resource
};

// Entries 0 to 54; an entry neither a resource nor a fixed text stays empty.
// clang-format off
inline constexpr DefaultMessage kDefaultMessages[kDefaultMessageCount] = {
    {13270, L""}, {13271, L""}, {13272, L""}, {13273, L""},       // 0-3
    {13274, L""}, {13275, L""}, {13276, L""}, {13277, L""},       // 4-7
    {13278, L" (%)"}, {13279, L" (%)"}, {13280, L""}, {13272, L""},  // 8-11
    {13281, L""}, {13282, L""}, {13283, L""}, {13284, L""},       // 12-15
    {13288, L""}, {13289, L""}, {13290, L""}, {13291, L""},       // 16-19
    {13292, L""}, {13293, L""}, {13294, L""}, {0, L""},           // 20-23
    {0, L""}, {0, L""}, {0, L""}, {0, L""},                       // 24-27
    {0, L""}, {0, L""}, {0, L""}, {13362, L""},                   // 28-31
    {0, L"X"}, {0, L"Y"}, {0, L""}, {0, L""},                     // 32-35
    {0, L""}, {0, L""}, {0, L""}, {0, L""},                       // 36-39
    {0, L""}, {0, L""}, {0, L""}, {13285, L""},                   // 40-43
    {13286, L""}, {13287, L""}, {0, L""}, {0, L""},               // 44-47
    {0, L""}, {13280, L""}, {13277, L""}, {0, L"X"},              // 48-51
    {0, L"Y"}, {13295, L""}, {13276, L""},                        // 52-54
};
// clang-format on

// Longest text a string resource can deliver through LoadStr, with its
// terminator.
inline constexpr int kResourceTextChars = 1025;

// Fills the table: every entry empty, then the resources (load(id, buffer)
// fills a buffer of kResourceTextChars) and the fixed texts, each cut to the
// entry's 40 characters.
template <typename Loader>
void fill_default_messages(TRegMensDFFab& table, Loader load) {
  for (auto& entry : table.text) entry[0] = 0;
  for (int i = 0; i < kDefaultMessageCount; ++i) {
    const DefaultMessage& m = kDefaultMessages[i];
    wchar_t scratch[kResourceTextChars + 8] = {};
    int n = 0;
    if (m.resource != 0) {
      load(m.resource, scratch);
      scratch[kResourceTextChars - 1] = 0;
      while (scratch[n] != 0) ++n;
    }
    for (const wchar_t* s = m.text; *s != 0 && n < kResourceTextChars + 7; ++s) scratch[n++] = *s;
    scratch[n] = 0;
    int k = 0;
    for (; k < kDefaultMessageChars - 1 && scratch[k] != 0; ++k) table.text[i][k] = scratch[k];
    table.text[i][k] = 0;
  }
}

}  // namespace korvalen::detail
