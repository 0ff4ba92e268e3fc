// Test helper: a caller's wide buffer of exactly a stated capacity, followed
// by guard characters that the library must never touch.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace korvalen::testing {

class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::size_t capacity, const std::wstring& text = L"")
      : capacity_(capacity), data_(capacity + kGuard, kFill) {
    std::copy(text.begin(), text.end(), data_.begin());
    data_[text.size()] = 0;
  }
  wchar_t* get() { return data_.data(); }
  std::wstring text() const { return data_.data(); }
  bool guard_intact() const {
    return std::all_of(data_.begin() + static_cast<std::ptrdiff_t>(capacity_), data_.end(),
                       [](wchar_t c) { return c == kFill; });
  }

 private:
  static constexpr std::size_t kGuard = 16;
  static constexpr wchar_t kFill = L'~';
  std::size_t capacity_;
  std::vector<wchar_t> data_;
};

}  // namespace korvalen::testing
