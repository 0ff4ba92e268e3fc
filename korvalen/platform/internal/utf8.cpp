#include "korvalen/platform/internal/utf8.h"

#include <cstdint>

namespace korvalen::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool is_surrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

void append_utf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// The length of the sequence a lead byte starts and the bits it carries; 0
// for a byte that cannot start one.
int sequence_length(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;  // 0xC0 and 0xC1 start only overlong forms
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;  // beyond 0xF4 lies past U+10FFFF
  return 0;
}

// The smallest value of a sequence of that length: anything below is an
// overlong form.
constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};

}  // namespace

std::string to_utf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto c = static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(text[i]));
    if constexpr (sizeof(wchar_t) == 2) {
      if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
        const auto low = static_cast<char32_t>(static_cast<char16_t>(text[i + 1]));
        if (low >= 0xDC00 && low <= 0xDFFF) {
          c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
          ++i;
        }
      }
    }
    if (is_surrogate(c) || c > 0x10FFFF) c = kReplacement;
    append_utf8(out, c);
  }
  return out;
}

std::wstring from_utf8(std::string_view text) {
  std::wstring out;
  from_utf8(text, out);
  return out;
}

void from_utf8(std::string_view text, std::wstring& out) {
  // Never more characters than bytes (a surrogate pair takes four bytes):
  // the string is sized once and written through a pointer.
  out.resize(text.size());
  wchar_t* o = out.data();
  std::size_t i = 0;
  while (i < text.size()) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      *o++ = static_cast<wchar_t>(lead);
      ++i;
      continue;
    }
    const int length = sequence_length(lead);
    char32_t c = kReplacement;
    if (length == 0) {
      ++i;
    } else {
      c = lead & (0x7F >> length);
      // A sequence that breaks off is replaced as far as it went; the byte
      // that broke it starts afresh.
      int taken = 1;
      for (; taken < length && i + taken < text.size(); ++taken) {
        const auto next = static_cast<unsigned char>(text[i + taken]);
        if ((next & 0xC0) != 0x80) break;
        c = (c << 6) | (next & 0x3F);
      }
      i += static_cast<std::size_t>(taken);
      if (taken < length || c < kSmallest[length] || is_surrogate(c) || c > 0x10FFFF) {
        c = kReplacement;
      }
    }
    if constexpr (sizeof(wchar_t) == 2) {
      if (c >= 0x10000) {
        *o++ = static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        *o++ = static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        continue;
      }
    }
    *o++ = static_cast<wchar_t>(c);
  }
  out.resize(static_cast<std::size_t>(o - out.data()));
}

}  // namespace korvalen::platform
