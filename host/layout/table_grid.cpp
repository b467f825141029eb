#include "host/layout/table_grid.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "host/layout/table_layout.h"

namespace vornwout {

GridRow TableGrid::row(int row) const {
  return {cells.data() + rowStarts.at(static_cast<std::size_t>(row)),
          cells.data() + rowStarts.at(static_cast<std::size_t>(row) + 1)};
}

const SharedLook& TableGrid::emptyLookAt(int row, int column) const {
  if (row < headerRows || column < headerColumns) return emptyCornerLook;
  return (row - headerRows) % 2 == 1 ? emptyBandLook : emptyDataLook;
}

const GridCell* TableGrid::at(int row, int column) const {
  if (row < 0 || row >= rowCount) return nullptr;
  const GridRow cellsOfRow = this->row(row);
  const GridCell* found =
      std::lower_bound(cellsOfRow.begin(), cellsOfRow.end(), column,
                       [](const GridCell& cell, int wanted) { return cell.column < wanted; });
  return found != cellsOfRow.end() && found->column == column ? found : nullptr;
}

int TableGrid::columnWidth(int column) const {
  const auto index = static_cast<std::size_t>(column);
  return index < columnWidths.size() ? columnWidths[index] : 0;
}

std::vector<TableGrid> layoutTable(const PivotTable& table, const LayoutOptions& options) {
  TableLayout layout(table, options);
  std::vector<TableGrid> grids;
  for (std::size_t i = 0; i < layout.gridCount(); ++i) {
    GridRows rows(layout, i);
    std::vector<GridCell> cells;
    std::vector<std::size_t> rowStarts;
    while (rows.next()) {
      rowStarts.push_back(cells.size());
      const std::span<GridCell> row = rows.takeCells();
      cells.insert(cells.end(), std::make_move_iterator(row.begin()),
                   std::make_move_iterator(row.end()));
    }
    rowStarts.push_back(cells.size());
    TableGrid& grid = grids.emplace_back(rows.grid());
    grid.cells = std::move(cells);
    grid.rowStarts = std::move(rowStarts);
  }
  return grids;
}

std::string footnoteMark(int index) {
  std::string mark;
  for (int rest = index; rest >= 0; rest = rest / 26 - 1) {
    mark.insert(mark.begin(), static_cast<char>('a' + rest % 26));
  }
  return mark;
}

}  // namespace vornwout
