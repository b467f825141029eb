#include "host/layout/table_grid.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>

#include "host/layout/look_of_grid.h"
#include "host/layout/table_axis.h"
#include "platform/adapter/progress_listener.h"
#include "platform/pivot/cell_text.h"

namespace vornwout {
namespace {

constexpr std::size_t kRowsPerReport = 1000;

std::size_t at(int index) { return static_cast<std::size_t>(index); }

bool isNumber(const CellText& text) { return text.kind == CellText::Kind::kNumber; }

/// A cell with the keys of its place.
struct PlacedCell {
  std::uint64_t layer;
  std::uint64_t row;
  std::uint64_t column;
  const PivotCell* cell;

  bool isBefore(const PlacedCell& other) const {
    if (layer != other.layer) return layer < other.layer;
    return row != other.row ? row < other.row : column < other.column;
  }
  bool isAtPlaceOf(const PlacedCell& other) const {
    return layer == other.layer && row == other.row && column == other.column;
  }
};

using PlacedCells = std::vector<PlacedCell>;

/// Lays out one table; makes one grid per layer.
class Layouter {
 public:
  Layouter(const PivotTable& table, const LayoutOptions& options)
      : table_(table),
        rows_(table, PivotPlace::kRows),
        columns_(table, PivotPlace::kColumns),
        layers_(table, PivotPlace::kLayers),
        options_(options) {}

  std::vector<TableGrid> run();

 private:
  PlacedCells placeCells() const;
  TableGrid makeGrid(std::uint64_t layer, const PlacedCell* first, const PlacedCell* last);
  void countPlaces(std::uint64_t rows, std::uint64_t columns);
  std::vector<LayerCaption> captions(std::uint64_t layer) const;
  void addHeader(TableGrid& grid, const std::vector<AxisLine>& lines,
                 const std::vector<AxisLine>& rowLines, const std::vector<bool>& isNumeric) const;

  const PivotTable& table_;
  TableAxis rows_;
  TableAxis columns_;
  TableAxis layers_;
  LayoutOptions options_;
  std::uint64_t layerCount_ = 1;
  std::uint64_t places_ = 0;  ///< for cells, in the grids so far
  std::uint64_t labels_ = 0;
  std::uint64_t laidOut_ = 0;  ///< cells
};

/// The positions of an axis: all combinations, or those that have cells when all were too many.
std::vector<std::uint64_t> positionsOf(const TableAxis& axis, std::uint64_t layerCount,
                                       std::size_t limit, std::vector<std::uint64_t> used) {
  std::uint64_t bound = limit;
  // A single dimension shows every category: the table itself is no smaller.
  if (layerCount == 1 && axis.dimensions().size() <= 1) bound = axis.combinations();
  if (axis.combinations() <= bound / layerCount) {
    used.resize(axis.combinations());
    std::iota(used.begin(), used.end(), std::uint64_t{0});
  } else {
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
  }
  if (used.size() > at(std::numeric_limits<int>::max())) {
    throw std::length_error("the table has too many rows or columns");
  }
  return used;
}

PlacedCells Layouter::placeCells() const {
  PlacedCells cells;
  cells.reserve(table_.cells.size());
  for (const PivotCell& cell : table_.cells) {
    if (cell.at.size() != table_.dimensions.size()) {
      throw std::invalid_argument("a cell of the table does not name one category per dimension");
    }
    if (!layers_.shows(cell)) continue;
    cells.push_back({layers_.keyOf(cell), rows_.keyOf(cell), columns_.keyOf(cell), &cell});
  }
  const auto isBefore = [](const PlacedCell& left, const PlacedCell& right) {
    return left.isBefore(right);
  };
  // Most tables are filled in reading order and need no sorting.
  if (!std::is_sorted(cells.begin(), cells.end(), isBefore)) {
    std::stable_sort(cells.begin(), cells.end(), isBefore);
  }
  // Of several cells at one place the last one given is the one that counts.
  const auto kept = std::unique(
      cells.rbegin(), cells.rend(),
      [](const PlacedCell& left, const PlacedCell& right) { return left.isAtPlaceOf(right); });
  cells.erase(cells.begin(), kept.base());
  return cells;
}

std::vector<TableGrid> Layouter::run() {
  const PlacedCells cells = placeCells();
  std::vector<TableGrid> grids;
  if (cells.empty()) {
    grids.push_back(makeGrid(layers_.firstShownKey(), nullptr, nullptr));
    return grids;
  }
  const PlacedCell* const end = cells.data() + cells.size();
  for (std::size_t i = 1; i < cells.size(); ++i) {
    if (cells[i].layer != cells[i - 1].layer) ++layerCount_;
  }
  if (options_.firstLayerOnly) layerCount_ = 1;
  for (const PlacedCell* first = cells.data(); first != end;) {
    const PlacedCell* last = std::find_if(
        first, end, [&](const PlacedCell& cell) { return cell.layer != first->layer; });
    grids.push_back(makeGrid(first->layer, first, last));
    if (options_.firstLayerOnly) break;
    first = last;
  }
  return grids;
}

std::vector<LayerCaption> Layouter::captions(std::uint64_t layer) const {
  std::vector<LayerCaption> result;
  if (layers_.combinations() == 0) return result;
  for (std::size_t i = 0; i < layers_.dimensions().size(); ++i) {
    const AxisDimension& dimension = layers_.dimensions()[i];
    LayerCaption caption;
    if (dimension.isLabelShown()) caption.dimension = renderText(dimension.label());
    if (dimension.areCategoriesShown()) {
      const std::uint64_t rank = layers_.rankIn(layer, i);
      for (int level = 0; level < dimension.depth(); ++level) {
        const int index = dimension.categoryAt(rank, level);
        if (index < 0) break;
        if (!caption.category.empty()) caption.category += ", ";
        caption.category += renderText(dimension.category(index).label);
      }
    }
    if (!caption.dimension.empty() || !caption.category.empty()) result.push_back(caption);
  }
  return result;
}

GridCell makeLabel(CellRole role, int row, int column, const CellText& text) {
  GridCell cell;
  cell.role = role;
  cell.row = row;
  cell.column = column;
  cell.text = renderText(text);
  cell.isNumber = isNumber(text);
  if (cell.isNumber) cell.alignment = CellAlignment::kRight;
  return cell;
}

GridCell makeLabel(CellRole role, int row, int column, const AxisLabel& label) {
  GridCell cell = makeLabel(role, row, column, *label.text);
  if (label.category != nullptr) cell.look = label.category->look;
  return cell;
}

/// Numbers the footnotes of a grid, equal texts with one mark.
class FootnoteCollector {
 public:
  explicit FootnoteCollector(std::vector<Footnote>& footnotes) : footnotes_(footnotes) {}

  /// The numbers of what marks one text; a mark stands once behind what it marks.
  std::vector<int> numbersOf(const std::vector<CellText>& notes) {
    std::vector<int> numbers;
    ++marked_;
    for (const CellText& note : notes) {
      const int index = indexOf(renderText(note));
      if (std::exchange(lastMarked_[at(index)], marked_) != marked_) numbers.push_back(index);
    }
    return numbers;
  }

 private:
  int indexOf(const std::string& text) {
    const auto [known, isNew] = indexes_.try_emplace(text, static_cast<int>(footnotes_.size()));
    if (isNew) {
      footnotes_.push_back({footnoteMark(known->second), text});
      lastMarked_.push_back(0);
    }
    return known->second;
  }

  std::vector<Footnote>& footnotes_;
  std::unordered_map<std::string, int> indexes_;
  std::size_t marked_ = 0;               ///< texts so far
  std::vector<std::size_t> lastMarked_;  ///< by footnote: the last text that has its mark
};

GridCell makeData(const PivotCell& source, int row, int column, FootnoteCollector& footnotes) {
  GridCell cell;
  cell.row = row;
  cell.column = column;
  cell.text = renderText(source.value);
  cell.isNumber = isNumber(source.value);
  if (cell.isNumber) cell.alignment = CellAlignment::kRight;
  cell.look = source.look;
  if (!source.notes.empty()) cell.notes = footnotes.numbersOf(source.notes);
  return cell;
}

int indexOfKey(const std::vector<std::uint64_t>& keys, std::uint64_t key) {
  return static_cast<int>(std::lower_bound(keys.begin(), keys.end(), key) - keys.begin());
}

/// For each column, whether it has cells and all of them are numbers.
std::vector<bool> numericColumns(const PlacedCell* first, const PlacedCell* last,
                                 const std::vector<std::uint64_t>& columnKeys) {
  std::vector<bool> hasNumber(columnKeys.size());
  std::vector<bool> hasOther(columnKeys.size());
  for (const PlacedCell* cell = first; cell != last; ++cell) {
    const std::size_t column = at(indexOfKey(columnKeys, cell->column));
    (isNumber(cell->cell->value) ? hasNumber : hasOther)[column] = true;
  }
  for (std::size_t i = 0; i < hasNumber.size(); ++i) {
    if (hasOther[i]) hasNumber[i] = false;
  }
  return hasNumber;
}

void Layouter::addHeader(TableGrid& grid, const std::vector<AxisLine>& lines,
                         const std::vector<AxisLine>& rowLines,
                         const std::vector<bool>& isNumeric) const {
  for (int row = 0; row < grid.headerRows; ++row) {
    grid.rowStarts.push_back(grid.cells.size());
    if (row == grid.headerRows - 1) {
      // The label of a row dimension stands above the labels of its categories.
      for (int column = 0; column < grid.headerColumns; ++column) {
        const std::size_t index = rowLines[at(column)].dimension;
        const AxisDimension& dimension = rows_.dimensions()[index];
        const bool isFirst = column == 0 || rowLines[at(column - 1)].dimension != index;
        if (!isFirst || !dimension.isLabelShown()) continue;
        GridCell corner = makeLabel(CellRole::kCorner, row, column, dimension.label());
        corner.columnSpan = std::max(1, dimension.depth());
        grid.cells.push_back(std::move(corner));
      }
    }
    if (at(row) >= lines.size()) continue;
    for (const AxisLabel& label : lines[at(row)].labels) {
      GridCell cell =
          makeLabel(CellRole::kColumnLabel, row, grid.headerColumns + label.start, label);
      cell.rowSpan = label.levels;
      cell.columnSpan = label.length;
      // A label over one column of numbers stands where the numbers stand.
      const bool isOverNumbers = label.length == 1 && label.isLeaf && isNumeric[at(label.start)];
      cell.alignment = isOverNumbers ? CellAlignment::kRight : CellAlignment::kLeft;
      grid.cells.push_back(std::move(cell));
    }
  }
}

void Layouter::countPlaces(std::uint64_t rows, std::uint64_t columns) {
  constexpr std::uint64_t kMostPlacesPerFilled = 16;
  places_ += rows * columns;
  labels_ += rows + columns;
  if (places_ <= options_.emptyLimit ||
      places_ / kMostPlacesPerFilled <= table_.cells.size() + labels_) {
    return;
  }
  const std::string layers = layerCount_ > 1 ? fmt::format(" in {} layers", layerCount_) : "";
  throw std::length_error(
      fmt::format("it is too large and nearly empty, with {} rows and {} columns{}; vornwout show "
                  "--json gives its values",
                  rows, columns, layers));
}

TableGrid Layouter::makeGrid(std::uint64_t layer, const PlacedCell* first, const PlacedCell* last) {
  const PlacedCell* const begin = first;
  std::vector<std::uint64_t> usedRows;
  std::vector<std::uint64_t> usedColumns;
  for (const PlacedCell* cell = first; cell != last; ++cell) {
    usedRows.push_back(cell->row);
    usedColumns.push_back(cell->column);
  }
  const auto rowKeys = positionsOf(rows_, layerCount_, options_.completeLimit, std::move(usedRows));
  const auto columnKeys =
      positionsOf(columns_, layerCount_, options_.completeLimit, std::move(usedColumns));
  countPlaces(rowKeys.size(), columnKeys.size());
  const std::vector<AxisLine> columnLines = columns_.header(columnKeys, true, false);
  const std::vector<AxisLine> rowLines = rows_.header(rowKeys, false, true);

  TableGrid grid;
  if (!table_.titleHidden) grid.title = renderText(table_.title);
  grid.layers = captions(layer);
  grid.summary = table_.summary;
  grid.titleLook = table_.titleLook;
  grid.captionLook = table_.captionLook;
  grid.footnoteLook = table_.footnoteLook;
  grid.tableLook = table_.tableLook;
  grid.minDataColumnWidth = table_.minDataColumnWidth;
  grid.maxDataColumnWidth = table_.maxDataColumnWidth;
  grid.headerColumns = static_cast<int>(rowLines.size());
  grid.headerRows = static_cast<int>(columnLines.size());
  const bool hasCornerLabel = std::any_of(
      rowLines.begin(), rowLines.end(),
      [&](const AxisLine& line) { return rows_.dimensions()[line.dimension].isLabelShown(); });
  if (hasCornerLabel) grid.headerRows = std::max(1, grid.headerRows);
  grid.rowCount = grid.headerRows + static_cast<int>(rowKeys.size());
  grid.columnCount = grid.headerColumns + static_cast<int>(columnKeys.size());
  grid.columnWidths.assign(at(grid.headerColumns), 0);
  for (const std::uint64_t key : columnKeys) grid.columnWidths.push_back(columns_.widthOf(key));
  addHeader(grid, columnLines, rowLines, numericColumns(first, last, columnKeys));

  grid.caption = renderText(table_.caption);
  FootnoteCollector footnotes(grid.footnotes);
  grid.titleNotes = footnotes.numbersOf(table_.footnotes);
  std::vector<std::size_t> nextLabel(rowLines.size(), 0);
  for (std::size_t i = 0; i < rowKeys.size(); ++i) {
    grid.rowStarts.push_back(grid.cells.size());
    const int row = grid.headerRows + static_cast<int>(i);
    for (std::size_t column = 0; column < rowLines.size(); ++column) {
      const std::vector<AxisLabel>& labels = rowLines[column].labels;
      std::size_t& next = nextLabel[column];
      if (next == labels.size() || at(labels[next].start) != i) continue;
      GridCell cell = makeLabel(CellRole::kRowLabel, row, static_cast<int>(column), labels[next]);
      cell.rowSpan = labels[next].length;
      cell.columnSpan = labels[next].levels;
      grid.cells.push_back(std::move(cell));
      ++next;
    }
    if (i % kRowsPerReport == kRowsPerReport - 1) {
      reportWithinStep(laidOut_ + static_cast<std::uint64_t>(first - begin), table_.cells.size());
    }
    for (; first != last && first->row == rowKeys[i]; ++first) {
      const int column = grid.headerColumns + indexOfKey(columnKeys, first->column);
      grid.cells.push_back(makeData(*first->cell, row, column, footnotes));
    }
  }
  grid.rowStarts.push_back(grid.cells.size());
  applyTableLook(grid);
  laidOut_ += static_cast<std::uint64_t>(last - begin);
  return grid;
}

}  // namespace

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
  return Layouter(table, options).run();
}

std::string footnoteMark(int index) {
  std::string mark;
  for (int rest = index; rest >= 0; rest = rest / 26 - 1) {
    mark.insert(mark.begin(), static_cast<char>('a' + rest % 26));
  }
  return mark;
}

}  // namespace vornwout
