// Changes a whole table as TABLE of OUTPUT MODIFY asks for; sorting is done in row_sort.h.
//
// The changes are made in an order in which each means what its user sees: rows and columns change
// places first, then the layers are chosen, and then the rows are sorted by a column of the table
// as it now lies and of the layer that it now shows.
#pragma once

#include <optional>

#include "host/changes/change_notes.h"
#include "host/changes/modify_request.h"
#include "platform/pivot/display_format.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

class TableChanger {
 public:
  /// Keeps a reference to `change`. A format that is none is noted, the rest will be done. Throws
  /// ChangeError for a table look that cannot be read.
  TableChanger(const TableChange& change, ChangeNotes& notes);

  /// Returns whether anything changed.
  ///
  /// A new title is a text of its own, shown also where the title was hidden. Transposing exchanges
  /// the dimensions of rows and columns, each side in its order; layers stay. A format goes to
  /// every data cell that is a number. A layer is chosen by its label (the first dimension of this
  /// label) or by its position, a category likewise; one that is not there leaves things as they
  /// are. The default look is that of defaultTableLook(); a table that was never given one has
  /// none. Throws ChangeError for a table that cannot be laid out.
  bool apply(PivotTable& table) const;

 private:
  const TableChange& change_;
  std::optional<DisplayFormat> format_;
  std::optional<Shared<TableLook>> look_;
};

}  // namespace vornwout
