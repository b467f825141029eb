// The lines, margins and alignment that a table's look gives its cells, as style attributes.
//
// Every line is written out, those that are not there as well: a page has lines of its own. Where
// two cells meet the browser draws the wider line, as looks have it.
#pragma once

#include <string>

#include "host/layout/table_grid.h"

namespace vornwout {

/// The style of what covers these places; empty for a table without a look of its own.
std::string areaCss(const TableGrid& grid, int row, int column, int rowSpan, int columnSpan);

}  // namespace vornwout
