// Puts the look of a table below what its cells and labels say of themselves.
//
// What a grid shows then is the whole of it: a renderer looks at each cell alone. Lines and margins
// stay with the grid's table look, for those that draw lines.
#pragma once

#include <array>
#include <map>
#include <utility>

#include "host/layout/table_grid.h"

namespace vornwout {

/// What `own` says, and what `base` says where it says nothing.
TextLook mergedLook(const TextLook& base, const TextLook& own);

/// The looks that a grid's table gives its cells. Cells that had one look share one still.
class GridLooks {
 public:
  /// Merges the table look into the title, caption, footnotes, layers and empty places of `grid`.
  explicit GridLooks(TableGrid& grid);

  /// Merges it into a cell of that grid: text, fill, band and alignment.
  void apply(GridCell& cell);

 private:
  /// The looks of one area, each made once.
  class AreaLooks {
   public:
    explicit AreaLooks(TextLook base) : base_(std::move(base)), alone_(base_) {}
    SharedLook merged(const SharedLook& own);

   private:
    TextLook base_;
    SharedLook alone_;
    std::map<const TextLook*, std::pair<SharedLook, SharedLook>> made_;
  };

  AreaLooks& looksOf(const GridCell& cell);

  Shared<TableLook> look_;
  int headerRows_;
  bool hasBands_;
  std::array<AreaLooks, 4> areas_;  ///< by CellRole
  AreaLooks bandedData_;
  AreaLooks bandedLabels_;
};

/// Merges the grid's table look into all of it.
void applyTableLook(TableGrid& grid);

}  // namespace vornwout
