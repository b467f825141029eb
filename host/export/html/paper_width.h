// How a table of a page is printed: upright, turned, turned in a smaller type, or cut at the edge.
//
// Only the browser knows fonts and paper; this estimates from the characters of what cannot be
// broken, for the narrower of the usual papers and a wide font, so that what is said to fit does.
#pragma once

#include <vector>

#include "host/layout/table_grid.h"

namespace vornwout {

enum class PaperFit { kUpright, kTurned, kSmall, kCut };

class PaperWidth {
 public:
  /// The grid must outlive it.
  explicit PaperWidth(const TableGrid& grid);

  void add(const GridCell& cell);
  /// Of all cells that were added.
  PaperFit fit() const;

 private:
  double width(double fontSize, double padding) const;

  const TableGrid& grid_;
  std::vector<int> characters_;  ///< by column: of the widest text in the page's size
  std::vector<double> points_;   ///< by column: of the widest text in a size of its own
};

}  // namespace vornwout
