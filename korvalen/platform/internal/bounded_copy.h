// Copying text into a caller's fixed-capacity buffer, cut to fit and always
// terminated: how the library hands a text it built out into the buffers of
// its interface.
//
//   wchar_t name[260];
//   korvalen::platform::copy_cut(name, 260, built);  // at most 259 characters
#pragma once

#include <cstddef>
#include <string_view>

namespace korvalen::platform {

// Nothing happens for a null buffer or a capacity below 1.
inline void copy_cut(wchar_t* out, int capacity, std::wstring_view text) {
  if (out == nullptr || capacity <= 0) return;
  const std::size_t n = text.size() < static_cast<std::size_t>(capacity - 1)
                            ? text.size()
                            : static_cast<std::size_t>(capacity - 1);
  text.copy(out, n);
  out[n] = 0;
}

}  // namespace korvalen::platform
