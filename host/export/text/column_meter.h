// How wide the columns of a table become in a text: as wide as their widest contents, up to a limit
// beyond which a column would push the others out of any reader's sight.
//
// A label over several columns widens them where it is short; a longer one is wrapped over them.
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "host/export/text/text_row.h"

namespace vornwout {

/// Display columns of the widest column; what is longer is wrapped within its cell.
inline constexpr int kWidestTextColumn = 255;
/// Display columns up to which labels over several columns widen them.
inline constexpr int kWidestSpan = 32;

class ColumnMeter {
 public:
  /// `between` display columns stand between the texts of neighbours.
  ColumnMeter(std::size_t columns, int between) : widths_(columns, 1), between_(between) {}

  void add(std::span<const TextCell> cells);

  /// The width of each column, at least 1.
  std::vector<int> widths() const;

 private:
  std::vector<int> widths_;
  int between_;
  std::map<std::pair<int, int>, int> spans_;  ///< by first column and count: the widest label
};

}  // namespace vornwout
