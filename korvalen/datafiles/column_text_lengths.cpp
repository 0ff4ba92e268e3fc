#include "korvalen/datafiles/column_text_lengths.h"

#include <iterator>
#include <span>

namespace {

// clang-format off
constexpr int kTable0[] = {9, 6, 30, 11, 9, 21, 11, 11, 11, 21, 21, 101, 41, 21, 11};
constexpr int kTable1[] = {
    41, 6, 21, 21, 21, 30, 21, 21, 21, 21,   // 0-9
    101, 11, 11, 11, 11, 11, 11, 11, 11, 41,  // 10-19
    21, 11, 11, 41, 41,                       // 20-24
};
constexpr int kTable2[] = {
    41, 41, 6, 6, 6, 11, 11, 11, 11, 11,      // 0-9
    11, 11, 11, 11, 11, 11, 11, 11, 11, 11,   // 10-19
    11, 11, 11, 11, 11, 11, 11, 11, 11, 11,   // 20-29
    11, 11, 11, 11, 11, 21, 21, 21, 21, 21,   // 30-39
    21, 21, 21, 21, 21, 21, 21, 21, 21, 11,   // 40-49
    11, 11, 41, 21, 11, 61, 11, 41, 41,       // 50-58
};
// clang-format on

constexpr std::span<const int> kTables[] = {kTable0, kTable1, kTable2};

}  // namespace

int DameLngMax(int table, int column) {
  if (table < 0 || table >= static_cast<int>(std::size(kTables))) return 0;
  const std::span<const int> lengths = kTables[table];
  if (column < 0 || column >= static_cast<int>(lengths.size())) return 0;
  return lengths[static_cast<std::size_t>(column)];
}
