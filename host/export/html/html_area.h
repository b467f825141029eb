// The lines, margins and alignment that a table's look gives its cells and what stands around them,
// as style attributes.
//
// Every line is written out, those that are not there as well: a page has lines of its own. Where
// two cells meet the browser draws the wider line, as looks have it.
#pragma once

#include <string>

#include "host/layout/table_grid.h"

namespace vornwout {

/// The style of what covers these places; empty for a table without a look of its own.
std::string areaCss(const TableGrid& grid, int row, int column, int rowSpan, int columnSpan);

/// The style of what an area beside the cells stands in: the title, the layers, the caption or the
/// footnotes. Empty for a table without a look of its own.
std::string boxCss(const TableGrid& grid, LookArea area);
/// The line above every footnote but the first one, and where on its line it stands.
std::string footnoteCss(const TableGrid& grid, bool isFirst);

}  // namespace vornwout
