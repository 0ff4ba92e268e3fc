// Windows-1252 in both directions. The five bytes the code page leaves
// undefined map to the C1 controls of the same value, as Windows maps them.
// Wide to 8-bit also takes the best-fit look-alikes that Windows writes for
// characters 1252 cannot hold, so that both systems write the same bytes.
#include "korvalen/platform/internal/text_codec.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "korvalen/platform/internal/line_conversion.h"
#include "korvalen/platform/posix/best_fit_1252.h"

namespace korvalen::platform {
namespace {

constexpr char16_t kHighHalf[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The look-up below is a binary search.
static_assert(std::is_sorted(std::begin(detail::kBestFit1252), std::end(detail::kBestFit1252),
                             [](const detail::BestFit& a, const detail::BestFit& b) {
                               return a.wide < b.wide;
                             }));

}  // namespace

wchar_t ansi_char_to_wide(unsigned char c) {
  if (c >= 0x80 && c < 0xA0) return static_cast<wchar_t>(kHighHalf[c - 0x80]);
  return static_cast<wchar_t>(c);
}

char wide_char_to_ansi(wchar_t c) {
  const auto u = static_cast<std::uint32_t>(c);
  if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) return static_cast<char>(u);
  for (int i = 0; i < 32; ++i) {
    if (kHighHalf[i] == u) return static_cast<char>(0x80 + i);
  }
  // Windows text is UTF-16: nothing beyond it has a best fit.
  if (u > 0xFFFF) return 0;
  const auto* const end = std::end(detail::kBestFit1252);
  const auto* const fit = std::lower_bound(
      std::begin(detail::kBestFit1252), end, u,
      [](const detail::BestFit& pair, std::uint32_t key) { return pair.wide < key; });
  return fit != end && fit->wide == u ? static_cast<char>(fit->byte) : 0;
}

int ansi_to_wide(const char* src, wchar_t* dst, int capacity) {
  if (src == nullptr) src = "";
  if (capacity == 0 || dst == nullptr) return static_cast<int>(std::strlen(src)) + 1;
  // Only what fits is looked at: a cut text reports 0 whatever its length.
  const std::size_t room = capacity < 0 ? SIZE_MAX : static_cast<std::size_t>(capacity) - 1;
  const std::size_t length = strnlen(src, room);
  const int result = line_to_wide(src, length, dst, capacity);
  return src[length] == 0 ? result : 0;
}

int wide_to_ansi(const wchar_t* src, char* dst, int capacity) {
  if (src == nullptr) src = L"";
  int needed = 1;
  for (const wchar_t* p = src; *p != 0; ++p) ++needed;
  if (capacity == 0 || dst == nullptr) return needed;
  if (capacity < 0) capacity = needed;
  int i = 0;
  for (; i < capacity - 1 && src[i] != 0; ++i) dst[i] = wide_char_to_ansi(src[i]);
  dst[i] = 0;
  return needed <= capacity ? needed : 0;
}

}  // namespace korvalen::platform
