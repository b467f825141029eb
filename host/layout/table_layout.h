// Lays a pivot table out row by row, once for every renderer.
//
// TableLayout puts the cells in order and says how many grids there are, one for each combination
// of the layers' categories; GridRows gives the rows of one. A row lives until the next one is
// asked for, so what a layout needs grows with the labels and not with the cells, unless the cells
// do not stand in reading order.
//
// Dimensions of rows and columns are nested by their index, labels span what they stand for, cells
// are marked with their footnotes, and looks and alignment are settled. What a renderer has left to
// do is to measure and to draw. Rows are sparse: a place that no cell covers is empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/layout/look_of_grid.h"
#include "host/layout/table_axis.h"
#include "host/layout/table_grid.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

class TableLayout {
 public:
  /// The table must outlive the layout. Throws std::invalid_argument when a cell or category refers
  /// to something that the table has not, and std::length_error when the dimensions of one place
  /// have 2^63 combinations or more, or the table is too large to be shown.
  explicit TableLayout(const PivotTable& table, const LayoutOptions& options = {});

  /// One for each combination of the layers' categories that has cells, in the order of the
  /// categories; one without data for a table without cells. Of a layer dimension with a shown leaf
  /// only that leaf counts, unless all layers are asked for.
  std::size_t gridCount() const { return layers_.size(); }
  /// The first grid of the layer that the table has chosen; 0 where none of it has cells.
  std::size_t chosenGrid() const;

 private:
  friend class GridRows;

  /// The positions of an axis: all combinations, or those that have cells when all were too many.
  struct Positions {
    std::size_t count = 0;
    std::optional<std::vector<std::uint64_t>> used;

    std::vector<std::uint64_t> keys() const;
    std::size_t indexOf(std::uint64_t key) const;
  };
  /// The cells of one grid: a range of what cellAt() counts.
  struct Layer {
    std::uint64_t key;
    std::size_t first;
    std::size_t last;
    Positions rows;
    Positions columns;
  };

  bool isShown(const PivotCell& cell) const { return showsAll_ || layerAxis_.shows(cell); }
  /// Finds the layers; false where the cells do not stand in order.
  bool findLayers();
  void sortCells();
  Positions positionsOf(const TableAxis& axis, const Layer& layer) const;
  /// How many places cellAt() counts.
  std::size_t cellCount() const { return sorted_ ? sorted_->size() : table_.cells.size(); }
  /// Null for a cell that is not shown.
  const PivotCell* cellAt(std::size_t index) const {
    if (sorted_) return (*sorted_)[index];
    const PivotCell& cell = table_.cells[index];
    return isShown(cell) ? &cell : nullptr;
  }
  /// Refuses a table that is too large and nearly empty.
  void countPlaces(std::uint64_t rows, std::uint64_t columns);

  const PivotTable& table_;
  LayoutOptions options_;
  TableAxis rowAxis_;
  TableAxis columnAxis_;
  TableAxis layerAxis_;
  /// Only where the cells stand in disorder.
  std::optional<std::vector<const PivotCell*>> sorted_;
  std::vector<Layer> layers_;
  bool showsAll_;             ///< no leaf is chosen, or all are asked for whatever is
  std::uint64_t places_ = 0;  ///< for cells, in the grids so far
  std::uint64_t labels_ = 0;
};

class GridRows {
 public:
  /// The layout must outlive it.
  GridRows(const TableLayout& layout, std::size_t index);

  /// Everything but the cells, known before the first row; only the footnotes of the cells come as
  /// their rows do.
  const TableGrid& grid() const { return grid_; }
  /// Whether some label stands in or over others, so that its place alone does not tell what it is
  /// about. Labels of dimensions do not count: they stand over everything.
  bool hasNestedLabels() const { return hasNestedLabels_; }

  /// Goes on to the next row, the header's rows first; false behind the last one.
  bool next();
  /// Index of the row that next() has reached.
  int row() const { return row_; }
  /// Its cells, from left to right.
  std::span<const GridCell> cells() const { return {cells_.data(), count_}; }
  /// Gives the cells of the row away.
  std::span<GridCell> takeCells() { return {cells_.data(), count_}; }

 private:
  /// Numbers the footnotes of a grid, equal texts with one mark.
  class FootnoteCollector {
   public:
    explicit FootnoteCollector(std::vector<Footnote>& footnotes) : footnotes_(footnotes) {}
    /// The numbers of what marks one text; a mark stands once behind what it marks.
    std::vector<int> numbersOf(const std::vector<CellText>& notes);

   private:
    int indexOf(const std::string& text);

    std::vector<Footnote>& footnotes_;
    std::unordered_map<std::string, int> indexes_;
    std::size_t marked_ = 0;               ///< texts so far
    std::vector<std::size_t> lastMarked_;  ///< by footnote: the last text that has its mark
  };

  std::vector<LayerCaption> captions(std::uint64_t layer) const;
  void findNumericColumns();
  void describe();
  GridCell& addCell(CellRole role, int row, int column);
  GridCell& addLabel(CellRole role, int row, int column, const CellText& text);
  GridCell& addLabel(CellRole role, int row, int column, const AxisLabel& label);
  void makeHeaderRow();
  void addCornerLabels();
  void makeDataRow();

  const TableLayout& layout_;
  const TableLayout::Layer& layer_;
  std::vector<std::uint64_t> rowKeys_;
  std::vector<AxisLine> columnLines_;
  std::vector<AxisLine> rowLines_;
  std::vector<bool> isNumeric_;  ///< by data column: it has cells and all of them are numbers
  bool hasNestedLabels_ = false;
  TableGrid grid_;
  FootnoteCollector footnotes_;
  std::optional<GridLooks> looks_;  ///< nothing for a table without a look of its own
  int row_ = -1;
  std::size_t nextCell_;                ///< as TableLayout::cellAt() counts
  std::vector<std::size_t> nextLabel_;  ///< by header column
  std::vector<GridCell> cells_;  ///< of the row, and what rows before it left to be used again
  std::size_t count_ = 0;
};

}  // namespace vornwout
