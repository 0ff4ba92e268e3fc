// How the exported functions take their text arguments: a null wide text
// reads as empty where a text is needed (or_empty), and each 8-bit argument
// of an overload is converted into a 1024-character wide copy of its own
// before the wide form is called (WideArg, or WorkCopy where the result
// points into the copy).
//
//   int StrLen(const char* text) { return StrLen(WideArg(text).get()); }
#pragma once

#include "korvalen/platform/internal/text_codec.h"

namespace korvalen::detail {

// The wide work buffer of an 8-bit argument or a formatted text.
constexpr int kWorkChars = 1024;
// The 8-bit side of a 1024-character line.
constexpr int kLineBytes = 2048;

inline const wchar_t* or_empty(const wchar_t* text) { return text != nullptr ? text : L""; }

class WideArg {
 public:
  explicit WideArg(const char* text) : null_(text == nullptr) {
    platform::ansi_to_wide(text, buffer_, kWorkChars);
  }
  WideArg(const WideArg&) = delete;
  WideArg& operator=(const WideArg&) = delete;

  // Null stays null, so the wide form sees what the caller passed.
  const wchar_t* get() const { return null_ ? nullptr : buffer_; }
  wchar_t* data() { return buffer_; }

 private:
  bool null_;
  wchar_t buffer_[kWorkChars];
};

// The converted copy that the pointer results of 8-bit overloads point into.
// Each overload family keeps one per thread (thread_local), so a result stays
// valid until that overload is called again in the same thread.
struct WorkCopy {
  wchar_t text[kWorkChars];
  const wchar_t* from(const char* source) {
    if (source == nullptr) return nullptr;
    platform::ansi_to_wide(source, text, kWorkChars);
    return text;
  }
};

}  // namespace korvalen::detail
