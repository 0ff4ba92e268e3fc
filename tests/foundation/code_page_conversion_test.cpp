// 8-bit to wide conversion of texts of every length and capacity, plain ASCII
// and mixed with upper-half bytes: each byte converts as it does alone, the
// cut and the result follow the capacity, and nothing is written past it.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "korvalen/foundation/primitives.h"

namespace {

TEST(CodePageConversion, EveryLengthAndCapacity) {
  // Each byte as the code page converts it alone.
  wchar_t single[256] = {};
  for (int b = 1; b < 256; ++b) {
    const char text[2] = {static_cast<char>(b), 0};
    wchar_t out[2] = {L'~', L'~'};
    ASSERT_EQ(CharToTChar(out, 2, text), 2) << b;
    single[b] = out[0];
  }
  constexpr std::size_t kGuard = 8;
  constexpr wchar_t kFill = L'~';
  std::mt19937 random(11);
  auto pick = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  for (int length = 0; length <= 70; ++length) {
    for (int trial = 0; trial < 12; ++trial) {
      // Trial 0 is plain ASCII; the others put upper-half bytes here and there.
      std::string text;
      for (int i = 0; i < length; ++i) {
        const bool high = trial > 0 && pick(0, trial) == 0;
        text += static_cast<char>(high ? pick(0x80, 0xFF) : pick(1, 0x7F));
      }
      const auto size = static_cast<int>(text.size());
      EXPECT_EQ(CharToTChar(nullptr, 5, text.c_str()), size + 1);
      for (int capacity = -1; capacity <= size + 2; ++capacity) {
        const std::size_t room =
            capacity < 0 ? text.size() + 1 : static_cast<std::size_t>(capacity);
        std::vector<wchar_t> out(room + kGuard, kFill);
        const int result = CharToTChar(out.data(), capacity, text.c_str());
        if (capacity == 0) {
          EXPECT_EQ(result, size + 1);
          EXPECT_EQ(out[0], kFill);
          continue;
        }
        const int kept = capacity < 0 || capacity > size ? size : capacity - 1;
        EXPECT_EQ(result, kept == size ? size + 1 : 0) << length << " " << capacity;
        for (int i = 0; i < kept; ++i) {
          ASSERT_EQ(out[static_cast<std::size_t>(i)],
                    single[static_cast<unsigned char>(text[static_cast<std::size_t>(i)])])
              << "length " << length << " capacity " << capacity << " at " << i;
        }
        EXPECT_EQ(out[static_cast<std::size_t>(kept)], 0) << length << " " << capacity;
        for (std::size_t i = room; i < out.size(); ++i) {
          ASSERT_EQ(out[i], kFill) << "written past the capacity " << capacity;
        }
      }
    }
  }
}

}  // namespace
