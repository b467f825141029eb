// Changes a whole table as TABLE of OUTPUT MODIFY asks for; sorting is done in row_sort.h.
//
// The changes are made in an order in which each means what its user sees: rows and columns change
// places first, then the layers are chosen, and then the rows are sorted by a column of the table
// as it now lies and of the layer that it now shows.
#pragma once

#include "host/changes/change_notes.h"
#include "host/changes/modify_request.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// Says what is wrong with a change whatever the table: notes a format that is none, throws
/// ChangeError for a table look that cannot be read.
void checkTableChange(const TableChange& change, ChangeNotes& notes);

/// Returns whether anything changed.
///
/// A new title is a text of its own, shown also where the title was hidden. Transposing exchanges
/// the dimensions of rows and columns, each side in its order; layers stay. A format goes to every
/// data cell that is a number; one that is none is noted and the rest is done. A layer is chosen by
/// its label (the first dimension of this label) or by its position, a category likewise; one that
/// is not there leaves things as they are. The default look is that of defaultTableLook(); a table
/// that was never given one has none. Throws ChangeError for a table that cannot be laid out.
bool changeTable(PivotTable& table, const TableChange& change, ChangeNotes& notes);

}  // namespace vornwout
