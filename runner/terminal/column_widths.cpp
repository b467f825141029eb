#include "runner/terminal/column_widths.h"

#include <algorithm>
#include <cstdint>

namespace vornwout {
namespace {

/// How narrow a column may get in a table that is broken anyway, where the next panel has room.
constexpr int kComfortableWidth = 20;

int lowered(int natural, int lowest, int level) {
  return std::min(natural, std::max(lowest, level));
}

/// Lowers the widest columns to the highest common level that fits, and gives what is left over to
/// the first of them; false when the lowest widths do not fit.
bool lowerWidest(const std::vector<ColumnNeed>& columns, int ColumnNeed::*lowest, int available,
                 std::vector<int>& widths) {
  const auto total = [&](int level) {
    std::int64_t sum = 0;
    for (const ColumnNeed& column : columns) sum += lowered(column.natural, column.*lowest, level);
    return sum;
  };
  if (total(0) > available) return false;
  int low = 0;
  int high = 1;
  for (const ColumnNeed& column : columns) high = std::max(high, column.natural);
  while (low < high) {
    const int middle = low + (high - low + 1) / 2;
    if (total(middle) <= available) {
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  std::int64_t rest = available - total(low);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    widths[i] = lowered(columns[i].natural, columns[i].*lowest, low);
    if (rest > 0 && widths[i] == low && widths[i] < columns[i].natural) {
      ++widths[i];
      --rest;
    }
  }
  return true;
}

}  // namespace

std::vector<int> fitColumns(const std::vector<ColumnNeed>& columns, int available) {
  std::vector<int> widths(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) widths[i] = columns[i].least;
  if (!lowerWidest(columns, &ColumnNeed::floor, available, widths)) {
    lowerWidest(columns, &ColumnNeed::least, available, widths);
  }
  return widths;
}

std::vector<ColumnPanel> splitColumns(const std::vector<ColumnNeed>& columns, int available,
                                      int extra) {
  std::int64_t floors = 0;
  for (const ColumnNeed& column : columns) floors += column.floor + extra;
  if (floors <= available) return {{0, columns.size()}};
  std::vector<ColumnPanel> panels;
  std::int64_t used = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int need = std::max(columns[i].floor, std::min(columns[i].natural, kComfortableWidth));
    if (panels.empty() || used + need + extra > available) {
      panels.push_back({i, i});
      used = 0;
    }
    used += need + extra;
    panels.back().last = i + 1;
  }
  return panels;
}

}  // namespace vornwout
