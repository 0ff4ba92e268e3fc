// Windows-1252 lines of known length. Settings files are nearly all ASCII, so
// blocks of ASCII bytes are widened without the table.
#include "korvalen/platform/line_input.h"

#include <cstdint>
#include <cstring>

#include "korvalen/platform/text_codec.h"

namespace korvalen::platform {
namespace {

// Only bytes inside the text are read; the last block may overlap the one
// before, which rewrites the same values. The block is copied out first so
// that the compiler need not fear that source and destination overlap, and
// widens it in vector registers.
template <std::size_t kBlock>
bool widen_ascii_block(const unsigned char* bytes, wchar_t* dst) {
  unsigned char block[kBlock];
  std::memcpy(block, bytes, kBlock);
  std::uint64_t high = 0;
  for (std::size_t k = 0; k < kBlock; k += 8) {
    std::uint64_t word;
    std::memcpy(&word, block + k, 8);
    high |= word;
  }
  if ((high & 0x8080808080808080ULL) != 0) return false;
  for (std::size_t k = 0; k < kBlock; ++k) dst[k] = static_cast<wchar_t>(block[k]);
  return true;
}

template <std::size_t kBlock>
bool widen_ascii(const unsigned char* bytes, std::size_t length, wchar_t* dst) {
  std::size_t i = 0;
  for (; i + kBlock <= length; i += kBlock) {
    if (!widen_ascii_block<kBlock>(bytes + i, dst + i)) return false;
  }
  return i == length || widen_ascii_block<kBlock>(bytes + length - kBlock, dst + length - kBlock);
}

}  // namespace

int line_to_wide(const char* bytes, std::size_t length, wchar_t* dst, int capacity) {
  const std::size_t room = capacity < 0 ? SIZE_MAX : static_cast<std::size_t>(capacity) - 1;
  const std::size_t n = length < room ? length : room;
  const auto* text = reinterpret_cast<const unsigned char*>(bytes);
  const bool ascii =
      n >= 16 ? widen_ascii<16>(text, n, dst) : n >= 8 && widen_ascii<8>(text, n, dst);
  if (!ascii) {
    // Only the row 0x80-0x9F differs from Latin-1.
    for (std::size_t i = 0; i < n; ++i) {
      const unsigned char c = text[i];
      dst[i] = c < 0x80 || c >= 0xA0 ? static_cast<wchar_t>(c) : ansi_char_to_wide(c);
    }
  }
  dst[n] = 0;
  return n == length ? static_cast<int>(length) + 1 : 0;
}

}  // namespace korvalen::platform
