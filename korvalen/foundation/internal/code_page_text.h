// A whole text converted between wide characters and the 8-bit code page,
// of any length, into storage of its own: a fixed buffer inside the object
// for short texts (128 units), the heap for longer ones. The 8-bit side
// first reserves 4 bytes per character, the most any code page takes, and
// asks the exact size when that was not enough. Conversion follows
// text_codec.h (a character the code page cannot hold ends the 8-bit text).
// An allocation failure throws std::bad_alloc.
//
//   const CodePageText<char> bytes(L"A000 5 ;");  // bytes.get(): "A000 5 ;"
//   const CodePageText<wchar_t> wide(bytes.get());
#pragma once

#include <climits>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <memory>
#include <system_error>
#include <type_traits>

#include "korvalen/platform/internal/text_codec.h"

namespace korvalen::detail {

// Char is the side converted to: char (from wide text) or wchar_t (from
// 8-bit text).
template <typename Char>
class CodePageText {
 public:
  using Source = std::conditional_t<std::is_same_v<Char, char>, wchar_t, char>;

  explicit CodePageText(const Source* text) {
    if (text == nullptr) text = empty_source();
    const std::size_t length = source_length(text);
    constexpr std::size_t kPerChar = std::is_same_v<Char, char> ? 4 : 1;
    if (length < (INT_MAX / kPerChar) - 1 &&
        convert(text, static_cast<int>((length + 1) * kPerChar))) {
      return;
    }
    // The first reserve was short (or the text too long for it): the exact
    // size, asked of the code page.
    if (!convert(text, convert_into(text, nullptr, 0))) {
      throw std::system_error(std::make_error_code(std::errc::invalid_argument));
    }
  }
  CodePageText(const CodePageText&) = delete;
  CodePageText& operator=(const CodePageText&) = delete;

  const Char* get() const { return text_; }

 private:
  static constexpr int kInline = 128;

  static const Source* empty_source() {
    if constexpr (std::is_same_v<Source, char>) {
      return "";
    } else {
      return L"";
    }
  }
  static std::size_t source_length(const Source* text) {
    if constexpr (std::is_same_v<Source, char>) {
      return std::strlen(text);
    } else {
      return std::wcslen(text);
    }
  }
  static int convert_into(const Source* text, Char* out, int capacity) {
    if constexpr (std::is_same_v<Char, char>) {
      return platform::wide_to_ansi(text, out, capacity);
    } else {
      return platform::ansi_to_wide(text, out, capacity);
    }
  }

  // Converts into a buffer of capacity units; false when it did not fit.
  bool convert(const Source* text, int capacity) {
    if (capacity <= 0) return false;
    if (capacity <= kInline) {
      text_ = inline_;
    } else {
      heap_.reset(new Char[static_cast<std::size_t>(capacity)]);
      text_ = heap_.get();
    }
    return convert_into(text, text_, capacity) != 0;
  }

  Char inline_[kInline];
  std::unique_ptr<Char[]> heap_;
  Char* text_ = inline_;
};

}  // namespace korvalen::detail
