#include "host/export/text/column_meter.h"

#include <algorithm>

namespace vornwout {

void ColumnMeter::add(std::span<const TextCell> cells) {
  for (const TextCell& cell : cells) {
    int& widest = cell.columnSpan == 1 ? widths_[static_cast<std::size_t>(cell.column)]
                                       : spans_[{cell.column, cell.columnSpan}];
    widest = std::max(widest, std::min(cell.width, kWidestTextColumn));
  }
}

std::vector<int> ColumnMeter::widths() const {
  std::vector<int> widths = widths_;
  for (const auto& [place, widest] : spans_) {
    const auto first = static_cast<std::size_t>(place.first);
    int missing = std::min(widest, kWidestSpan) + between_;
    for (int i = 0; i < place.second && missing > 0; ++i) {
      missing -= widths[first + static_cast<std::size_t>(i)] + between_;
    }
    // Evenly, what cannot be divided to the first ones.
    for (int left = place.second; left > 0 && missing > 0; --left) {
      const int share = (missing + left - 1) / left;
      widths[first + static_cast<std::size_t>(place.second - left)] += share;
      missing -= share;
    }
  }
  return widths;
}

}  // namespace vornwout
