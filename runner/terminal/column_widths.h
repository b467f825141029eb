// How wide the columns of a table become on a terminal, and which columns stand beside each other.
//
// Every column says how wide it would like to be and how narrow it can get before it is hard to
// read. fitColumns() lowers the widest columns first, to one common level, so that narrow columns
// stay whole; splitColumns() decides where a table that is too wide even so is broken into panels.
#pragma once

#include <cstddef>
#include <vector>

namespace vornwout {

struct ColumnNeed {
  int natural = 1;  ///< what it would like
  int floor = 1;    ///< below this it is hard to read; at most `natural`
  int least = 1;    ///< below this it cannot be drawn: 2 where a character may take two columns
};

/// Widths of columns that share `available` terminal columns: their natural widths where those fit,
/// otherwise the widest are lowered, first not below `floor`, then not below `least`. When even
/// that is too much, every column gets `least`.
std::vector<int> fitColumns(const std::vector<ColumnNeed>& columns, int available);

/// Columns [first, last) of a table that are shown beside each other.
struct ColumnPanel {
  std::size_t first;
  std::size_t last;
};

/// Breaks columns into panels of at most `available` terminal columns, at least one column each;
/// `extra` is what a column takes besides its width. One panel where all floors fit.
std::vector<ColumnPanel> splitColumns(const std::vector<ColumnNeed>& columns, int available,
                                      int extra);

}  // namespace vornwout
