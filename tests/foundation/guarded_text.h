// Test helper for the foundation suite: a wide buffer larger than the capacity
// handed to the function under test, filled beforehand with a guard character,
// so that a test sees both the text written and that nothing went past the
// capacity.
#pragma once

#include <cwchar>
#include <string>

namespace korvalen::testing {

template <int Size>
class GuardedText {
 public:
  GuardedText() { std::wmemset(text_, kGuard, Size); }

  wchar_t* data() { return text_; }
  // The text up to its terminator (all of the buffer when there is none).
  std::wstring str() const {
    const std::wstring all(text_, Size);
    return all.substr(0, all.find(L'\0'));
  }
  // True when nothing from `capacity` on was written.
  bool IntactFrom(int capacity) const {
    for (int i = capacity; i < Size; ++i) {
      if (text_[i] != kGuard) return false;
    }
    return true;
  }

 private:
  static constexpr wchar_t kGuard = L'#';
  wchar_t text_[Size];
};

}  // namespace korvalen::testing
