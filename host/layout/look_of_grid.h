// Puts the look of a table below what its cells and labels say of themselves.
//
// What a grid shows then is the whole of it: a renderer looks at each cell alone. Lines and margins
// stay with the grid's table look, for those that draw lines.
#pragma once

#include "host/layout/table_grid.h"

namespace vornwout {

/// What `own` says, and what `base` says where it says nothing.
TextLook mergedLook(const TextLook& base, const TextLook& own);

/// Merges the grid's table look into its cells, title, caption and footnotes: texts, fills, bands
/// and alignment. Cells that had one look still share one.
void applyTableLook(TableGrid& grid);

}  // namespace vornwout
