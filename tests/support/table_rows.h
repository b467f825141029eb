// The rows of a table of one dimension, for the tests of the commands that make such tables.
#pragma once

#include <string>
#include <vector>

#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// One text per cell: "0: text", with the styles and notes that it has behind it, as in
/// "0: text [red|BLUE|bold]" and "0: a (Active output document)".
inline std::vector<std::string> rowsOf(const PivotTable& table) {
  std::vector<std::string> rows;
  for (const PivotCell& cell : table.cells) {
    const PivotDimension& dimension = table.dimensions.at(0);
    const int node = categoryPath(dimension, cell.at[0]).at(0);
    std::string row = renderText(dimension.categories[static_cast<std::size_t>(node)].label);
    row += ": " + renderText(cell.value);
    if (!cell.look.empty()) {
      row += " [" + cell.look->textColor + "|" + cell.look->backgroundColor + "|" +
             (cell.look->bold.value_or(false) ? "bold]" : "]");
    }
    for (const CellText& note : cell.notes) row += " (" + renderText(note) + ")";
    rows.push_back(row);
  }
  return rows;
}

}  // namespace vornwout
