// The edge of the exported dialog members: nothing thrown inside reaches the
// caller, who carries on with the dialog as it was.
//
//   void CDlgCutPrgrs::AddCounter(int phase) {
//     korvalen::detail::at_edge([&] { Progress().AddCounter(phase, nullptr); });
//   }
#pragma once

namespace korvalen::detail {

template <typename Call>
void at_edge(Call call) noexcept {
  try {
    call();
  } catch (...) {
  }
}

}  // namespace korvalen::detail
