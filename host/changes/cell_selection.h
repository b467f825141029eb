// Which parts of a pivot table TABLECELLS of OUTPUT MODIFY means.
//
// CellSelector::select() goes three steps. First it takes the data cells that SELECT names: by the
// kind of statistic that one of their categories or a group above it has, by the label of a
// category or group that they stand below, by the number of their column or row, or all (BODY).
// SELECTDIMENSION says whether kinds, labels, numbers and HEADERS are those of columns, of rows or
// of both; with both, a kind may be that of a layer, too. Columns and rows are counted from 1 as
// they are shown, one for each combination of categories; of a table so large that combinations
// without cells are not shown, they are counted in each layer.
//
// Where a layer was chosen only its cells are meant: nobody sees the others.
//
// Then conditions narrow these cells (see cell_conditions.h). With a condition HEADERS are the
// labels above and beside those of the named cells that fulfil it, or of any cell where no cells
// are named; title, caption and footnotes fulfil none.
//
// Last, APPLYTO leads from there to whole columns or rows of the same layer, to their data, or to
// their headers. The header of a cell is the label that stands next to the data, that of the
// innermost dimension; but for cells that were selected by a label of that side it is this label
// alone, for what stands nearer is shared with other labels. Labels that are named stand for the
// cells below them, and for themselves only where headers are asked for. HEADERS means all labels,
// and so all columns and rows, but for a condition. Title, caption and footnotes stand in no column
// and are as they are whatever APPLYTO says; a caption or footnotes that a table does not have are
// not selected.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/changes/cell_conditions.h"
#include "host/changes/modify_request.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

struct CellSelection {
  /// A category of a dimension, by their indexes.
  struct Label {
    std::size_t dimension = 0;
    std::size_t category = 0;
    friend bool operator==(const Label&, const Label&) = default;
  };

  std::vector<std::uint32_t> cells;  ///< indexes into PivotTable::cells, ascending
  std::vector<Label> labels;         ///< ascending
  /// Leaves of the innermost column dimension, ascending: the columns that anything selected
  /// stands in or above.
  std::vector<Label> columns;
  bool title = false;
  bool caption = false;
  bool footnotes = false;

  bool empty() const {
    return cells.empty() && labels.empty() && columns.empty() && !title && !caption && !footnotes;
  }
  friend bool operator==(const CellSelection&, const CellSelection&) = default;
};

/// What APPLYTO leads to.
struct ApplyTarget {
  int side = -1;        ///< 0 columns, 1 rows, -1 neither
  bool data = false;    ///< of whole columns or rows
  bool labels = false;  ///< of their headers
};

class CellSelector {
 public:
  /// Keeps a reference to `change`. Throws ChangeError for a condition that cannot be read and an
  /// APPLYTO that does not exist.
  explicit CellSelector(const CellsChange& change);

  /// Costs time in proportion to the cells, the categories and the conditions, with a logarithm
  /// where a table is nearly empty. Throws ChangeError for a table whose cells or categories do not
  /// fit together.
  CellSelection select(const PivotTable& table) const;

 private:
  const CellsChange& change_;
  CellConditions conditions_;
  ApplyTarget target_;
};

}  // namespace vornwout
