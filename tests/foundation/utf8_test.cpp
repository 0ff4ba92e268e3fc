// The UTF-8 codec shared by the POSIX file names and the tool's input and
// output: valid text round-trips, and nothing malformed passes either way.
#include "korvalen/platform/internal/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using korvalen::platform::from_utf8;
using korvalen::platform::to_utf8;

// U+1F600 as the wide text of this system: a surrogate pair where wchar_t is
// UTF-16.
std::wstring Supplementary() {
  if constexpr (sizeof(wchar_t) == 2) return std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)};
  return std::wstring(1, static_cast<wchar_t>(0x1F600));
}

TEST(Utf8, ValidTextRoundTrips) {
  const std::wstring text = L"A\u00F1\u20AC" + Supplementary() + L"z";
  const std::string bytes = "A\xC3\xB1\xE2\x82\xAC\xF0\x9F\x98\x80z";
  EXPECT_EQ(to_utf8(text), bytes);
  EXPECT_EQ(from_utf8(bytes), text);
}

TEST(Utf8, MalformedBytesBecomeReplacementCharacters) {
  const struct {
    const char* what;
    std::string bytes;
    std::wstring text;
  } cases[] = {
      {"stray continuation", "a\x80z", L"a\uFFFDz"},
      {"lead without continuation", "a\xC3z", L"a\uFFFDz"},
      {"cut at the end", "a\xE2\x82", L"a\uFFFD"},
      {"overlong slash", "\xC0\xAF", L"\uFFFD\uFFFD"},
      {"overlong three bytes", "\xE0\x80\xAF", L"\uFFFD"},
      {"encoded surrogate", "\xED\xA0\x80", L"\uFFFD"},
      {"past U+10FFFF", "\xF4\x90\x80\x80", L"\uFFFD"},
      {"invalid lead", "\xFF", L"\uFFFD"},
  };
  for (const auto& c : cases) EXPECT_EQ(from_utf8(c.bytes), c.text) << c.what;
}

TEST(Utf8, LoneSurrogatesAreNotWritten) {
  const std::wstring lone_high(1, static_cast<wchar_t>(0xD83D));
  const std::wstring lone_low(1, static_cast<wchar_t>(0xDE00));
  EXPECT_EQ(to_utf8(L"a" + lone_high + L"b"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(to_utf8(lone_low + lone_high), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
