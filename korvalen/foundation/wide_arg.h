// Internal: the 1024-character wide copy that each 8-bit argument of an
// exported overload is converted into before the wide form is called.
#pragma once

#include "korvalen/platform/text_codec.h"

namespace korvalen::detail {

constexpr int kWorkChars = 1024;

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

}  // namespace korvalen::detail
