// Windows-1252 lines of known length. Settings files are nearly all ASCII, so
// on x86 blocks of 16 ASCII bytes are widened in vector registers without the
// table; elsewhere every byte takes the table's path.
#include "korvalen/platform/internal/line_conversion.h"

#include <cstdint>

#include "korvalen/platform/internal/text_codec.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korvalen::platform {
namespace {

static_assert(sizeof(wchar_t) == 4, "POSIX wide characters are UTF-32");

#if defined(__SSE2__)

constexpr std::size_t kBlock = 16;

// Widens bytes[0, 16) when they are all ASCII; false, with nothing written,
// otherwise.
bool widen_ascii_block(const unsigned char* bytes, wchar_t* dst) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  if (_mm_movemask_epi8(block) != 0) return false;  // a byte from 0x80
  const __m128i low = _mm_unpacklo_epi8(block, zero);
  const __m128i high = _mm_unpackhi_epi8(block, zero);
  auto* out = reinterpret_cast<__m128i*>(dst);
  _mm_storeu_si128(out, _mm_unpacklo_epi16(low, zero));
  _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(low, zero));
  _mm_storeu_si128(out + 2, _mm_unpacklo_epi16(high, zero));
  _mm_storeu_si128(out + 3, _mm_unpackhi_epi16(high, zero));
  return true;
}

// Widens the first n bytes (at least one block) in blocks, the last one
// overlapping the one before, which rewrites the same values. Returns how many
// bytes were widened: n, or fewer where a block held something else.
std::size_t widen_ascii(const unsigned char* bytes, std::size_t n, wchar_t* dst) {
  if (n < kBlock) return 0;
  std::size_t i = 0;
  for (; i + kBlock <= n; i += kBlock) {
    if (!widen_ascii_block(bytes + i, dst + i)) return i;
  }
  if (i == n || widen_ascii_block(bytes + n - kBlock, dst + n - kBlock)) return n;
  return i;
}

#else

std::size_t widen_ascii(const unsigned char* /*bytes*/, std::size_t /*n*/, wchar_t* /*dst*/) {
  return 0;
}

#endif

}  // namespace

int line_to_wide(const char* bytes, std::size_t length, wchar_t* dst, int capacity) {
  const std::size_t room = capacity < 0 ? SIZE_MAX : static_cast<std::size_t>(capacity) - 1;
  const std::size_t n = length < room ? length : room;
  const auto* text = reinterpret_cast<const unsigned char*>(bytes);
  for (std::size_t i = widen_ascii(text, n, dst); i < n; ++i) {
    const unsigned char c = text[i];
    // Only the row 0x80-0x9F differs from Latin-1.
    dst[i] = c < 0x80 || c >= 0xA0 ? static_cast<wchar_t>(c) : ansi_char_to_wide(c);
  }
  dst[n] = 0;
  return n == length ? static_cast<int>(length) + 1 : 0;
}

}  // namespace korvalen::platform
