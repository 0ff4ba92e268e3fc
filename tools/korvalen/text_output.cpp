#include "text_output.h"

#include <cstdint>
#include <cstdio>

namespace korvalen::tool {

std::string to_utf8(const std::wstring& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto c = static_cast<std::uint32_t>(text[i]);
    // UTF-16 surrogate pairs (Windows) become one code point.
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
      const auto low = static_cast<std::uint32_t>(text[i + 1]);
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      }
    }
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
  return out;
}

std::wstring from_utf8(const std::string& text) {
  std::wstring out;
  for (std::size_t i = 0; i < text.size();) {
    const auto b = static_cast<unsigned char>(text[i]);
    int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
    std::uint32_t c = extra == 3 ? b & 0x07 : extra == 2 ? b & 0x0F : extra == 1 ? b & 0x1F : b;
    ++i;
    for (; extra > 0 && i < text.size(); --extra, ++i) {
      c = (c << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    if (sizeof(wchar_t) == 2 && c >= 0x10000) {
      out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      out += static_cast<wchar_t>(c);
    }
  }
  return out;
}

void print(const std::wstring& text) {
  const std::string bytes = to_utf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

void print_field(const std::wstring& label, const std::wstring& value) {
  std::wstring line = L"  " + label;
  if (line.size() < 30) line.resize(30, L' ');
  line += value;
  while (!line.empty() && line.back() == L' ') line.pop_back();
  print(line + L"\n");
}

}  // namespace korvalen::tool
