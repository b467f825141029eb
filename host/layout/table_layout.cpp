#include "host/layout/table_layout.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "platform/adapter/progress_listener.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::size_t kRowsPerReport = 1000;

std::size_t at(int index) { return static_cast<std::size_t>(index); }

bool isNumber(const CellText& text) { return text.kind == CellText::Kind::kNumber; }

/// Whether some dimension of the layers has a shown leaf.
bool choosesLayer(const TableAxis& layers) {
  const std::vector<AxisDimension>& dimensions = layers.dimensions();
  return std::any_of(dimensions.begin(), dimensions.end(),
                     [](const AxisDimension& dimension) { return dimension.shownLeaf() >= 0; });
}

}  // namespace

TableLayout::TableLayout(const PivotTable& table, const LayoutOptions& options)
    : table_(table),
      options_(options),
      rowAxis_(table, PivotPlace::kRows),
      columnAxis_(table, PivotPlace::kColumns),
      layerAxis_(table, PivotPlace::kLayers),
      showsAll_(options.layers == ShownLayers::kAll || !choosesLayer(layerAxis_)) {
  // Most tables are filled in reading order and need no sorting.
  if (!findLayers()) {
    sortCells();
    findLayers();
  }
  if (layers_.empty()) layers_.push_back({layerAxis_.firstShownKey(), 0, 0, {}, {}});
  if (options_.layers == ShownLayers::kFirst) layers_.resize(1);
  for (Layer& layer : layers_) {
    layer.rows = positionsOf(rowAxis_, layer);
    layer.columns = positionsOf(columnAxis_, layer);
    countPlaces(layer.rows.count, layer.columns.count);
  }
}

bool TableLayout::findLayers() {
  layers_.clear();
  std::uint64_t lastRow = 0;
  std::uint64_t lastColumn = 0;
  for (std::size_t i = 0; i < cellCount(); ++i) {
    if (!sorted_ && table_.cells[i].at.size() != table_.dimensions.size()) {
      throw std::invalid_argument(
          localized("a cell of the table does not name one category per dimension"));
    }
    const PivotCell* const cell = cellAt(i);
    if (cell == nullptr) continue;
    const std::uint64_t layer = layerAxis_.keyOf(*cell);
    const std::uint64_t row = rowAxis_.keyOf(*cell);
    const std::uint64_t column = columnAxis_.keyOf(*cell);
    if (layers_.empty() || layers_.back().key != layer) {
      if (!layers_.empty() && layers_.back().key > layer) return false;
      layers_.push_back({layer, i, i, {}, {}});
    } else if (row < lastRow || (row == lastRow && column <= lastColumn)) {
      return false;
    }
    layers_.back().last = i + 1;
    lastRow = row;
    lastColumn = column;
  }
  return true;
}

void TableLayout::sortCells() {
  struct Placed {
    std::uint64_t layer;
    std::uint64_t row;
    std::uint64_t column;
    const PivotCell* cell;
  };
  std::vector<Placed> placed;
  placed.reserve(table_.cells.size());
  for (const PivotCell& cell : table_.cells) {
    if (cell.at.size() != table_.dimensions.size()) {
      throw std::invalid_argument(
          localized("a cell of the table does not name one category per dimension"));
    }
    if (!isShown(cell)) continue;
    placed.push_back(
        {layerAxis_.keyOf(cell), rowAxis_.keyOf(cell), columnAxis_.keyOf(cell), &cell});
  }
  const auto place = [](const Placed& cell) { return std::tie(cell.layer, cell.row, cell.column); };
  std::stable_sort(placed.begin(), placed.end(),
                   [&](const Placed& a, const Placed& b) { return place(a) < place(b); });
  std::vector<const PivotCell*>& cells = sorted_.emplace();
  for (std::size_t i = 0; i < placed.size(); ++i) {
    // Of several cells at one place the last one given is the one that counts.
    const bool isLast = i + 1 == placed.size() || place(placed[i]) != place(placed[i + 1]);
    if (isLast) cells.push_back(placed[i].cell);
  }
}

TableLayout::Positions TableLayout::positionsOf(const TableAxis& axis, const Layer& layer) const {
  const std::uint64_t layerCount = layers_.size();
  std::uint64_t bound = options_.completeLimit;
  // A single dimension shows every category: the table itself is no smaller.
  if (layerCount == 1 && axis.dimensions().size() <= 1) bound = axis.combinations();
  Positions positions;
  if (axis.combinations() <= bound / layerCount) {
    positions.count = axis.combinations();
  } else {
    std::vector<std::uint64_t>& keys = positions.used.emplace();
    for (std::size_t i = layer.first; i < layer.last; ++i) {
      const PivotCell* const cell = cellAt(i);
      if (cell != nullptr) keys.push_back(axis.keyOf(*cell));
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    positions.count = keys.size();
  }
  if (positions.count > at(std::numeric_limits<int>::max())) {
    throw std::length_error(localized("the table has too many rows or columns"));
  }
  return positions;
}

std::vector<std::uint64_t> TableLayout::Positions::keys() const {
  if (used) return *used;
  std::vector<std::uint64_t> keys(count);
  std::iota(keys.begin(), keys.end(), std::uint64_t{0});
  return keys;
}

std::size_t TableLayout::Positions::indexOf(std::uint64_t key) const {
  if (!used) return key;
  return static_cast<std::size_t>(std::lower_bound(used->begin(), used->end(), key) -
                                  used->begin());
}

std::size_t TableLayout::chosenGrid() const {
  const auto chosen = std::find_if(layers_.begin(), layers_.end(), [&](const Layer& layer) {
    if (layer.first == layer.last) return false;
    return layerAxis_.shows(sorted_ ? *(*sorted_)[layer.first] : table_.cells[layer.first]);
  });
  return chosen == layers_.end() ? 0 : static_cast<std::size_t>(chosen - layers_.begin());
}

void TableLayout::countPlaces(std::uint64_t rows, std::uint64_t columns) {
  constexpr std::uint64_t kMostPlacesPerFilled = 16;
  places_ += rows * columns;
  labels_ += rows + columns;
  if (places_ <= options_.emptyLimit ||
      places_ / kMostPlacesPerFilled <= table_.cells.size() + labels_) {
    return;
  }
  const std::string layers =
      layers_.size() > 1 ? " " + localized("in ^1 layers", layers_.size()) : "";
  throw std::length_error(
      localized("it is too large and nearly empty, with ^1 rows and ^2 columns^3; vornwout show "
                "--json gives its values",
                rows, columns, layers));
}

std::vector<int> GridRows::FootnoteCollector::numbersOf(const std::vector<CellText>& notes) {
  std::vector<int> numbers;
  ++marked_;
  for (const CellText& note : notes) {
    const int index = indexOf(renderText(note));
    if (std::exchange(lastMarked_[at(index)], marked_) != marked_) numbers.push_back(index);
  }
  return numbers;
}

int GridRows::FootnoteCollector::indexOf(const std::string& text) {
  const auto [known, isNew] = indexes_.try_emplace(text, static_cast<int>(footnotes_.size()));
  if (isNew) {
    footnotes_.push_back({footnoteMark(known->second), text});
    lastMarked_.push_back(0);
  }
  return known->second;
}

GridRows::GridRows(const TableLayout& layout, std::size_t index)
    : layout_(layout),
      layer_(layout.layers_.at(index)),
      rowKeys_(layer_.rows.keys()),
      footnotes_(grid_.footnotes),
      nextCell_(layer_.first) {
  rowLines_ = layout_.rowAxis_.header(rowKeys_, false, true);
  nextLabel_.assign(rowLines_.size(), 0);
  describe();
  findNumericColumns();
  GridLooks looks(grid_);
  if (!grid_.tableLook.empty()) looks_.emplace(std::move(looks));
}

std::vector<LayerCaption> GridRows::captions(std::uint64_t layer) const {
  const TableAxis& axis = layout_.layerAxis_;
  std::vector<LayerCaption> result;
  if (axis.combinations() == 0) return result;
  for (std::size_t i = 0; i < axis.dimensions().size(); ++i) {
    const AxisDimension& dimension = axis.dimensions()[i];
    LayerCaption caption;
    if (dimension.isLabelShown()) caption.dimension = renderText(dimension.label());
    if (dimension.areCategoriesShown()) {
      const std::uint64_t rank = axis.rankIn(layer, i);
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

void GridRows::findNumericColumns() {
  constexpr std::uint8_t kHasNumber = 1;
  constexpr std::uint8_t kHasOther = 2;
  std::vector<std::uint8_t> found(layer_.columns.count);
  for (std::size_t i = layer_.first; i < layer_.last; ++i) {
    const PivotCell* const cell = layout_.cellAt(i);
    if (cell == nullptr) continue;
    const std::size_t column = layer_.columns.indexOf(layout_.columnAxis_.keyOf(*cell));
    found[column] |= isNumber(cell->value) ? kHasNumber : kHasOther;
  }
  isNumeric_.resize(found.size());
  for (std::size_t i = 0; i < found.size(); ++i) isNumeric_[i] = found[i] == kHasNumber;
}

void GridRows::describe() {
  const PivotTable& table = layout_.table_;
  const std::vector<std::uint64_t> columnKeys = layer_.columns.keys();
  columnLines_ = layout_.columnAxis_.header(columnKeys, true, false);
  if (!table.titleHidden) grid_.title = renderText(table.title);
  grid_.layers = captions(layer_.key);
  grid_.summary = table.summary;
  grid_.caption = renderText(table.caption);
  grid_.titleLook = table.titleLook;
  grid_.captionLook = table.captionLook;
  grid_.footnoteLook = table.footnoteLook;
  grid_.tableLook = table.tableLook;
  grid_.minDataColumnWidth = table.minDataColumnWidth;
  grid_.maxDataColumnWidth = table.maxDataColumnWidth;
  grid_.headerColumns = static_cast<int>(rowLines_.size());
  grid_.headerRows = static_cast<int>(columnLines_.size());
  const bool hasCornerLabel =
      std::any_of(rowLines_.begin(), rowLines_.end(), [&](const AxisLine& line) {
        return layout_.rowAxis_.dimensions()[line.dimension].isLabelShown();
      });
  if (hasCornerLabel) grid_.headerRows = std::max(1, grid_.headerRows);
  grid_.rowCount = grid_.headerRows + static_cast<int>(rowKeys_.size());
  grid_.columnCount = grid_.headerColumns + static_cast<int>(columnKeys.size());
  grid_.columnWidths.assign(at(grid_.headerColumns), 0);
  for (const std::uint64_t key : columnKeys) {
    grid_.columnWidths.push_back(layout_.columnAxis_.widthOf(key));
  }
  grid_.titleNotes = footnotes_.numbersOf(table.footnotes);

  const auto isCategories = [](const AxisLine& line) { return !line.isDimensionLabel; };
  const auto hasSpans = [](const AxisLine& line) {
    return !line.isDimensionLabel &&
           std::any_of(line.labels.begin(), line.labels.end(),
                       [](const AxisLabel& label) { return label.length > 1; });
  };
  hasNestedLabels_ = rowLines_.size() > 1 ||
                     std::count_if(columnLines_.begin(), columnLines_.end(), isCategories) > 1 ||
                     std::any_of(columnLines_.begin(), columnLines_.end(), hasSpans) ||
                     std::any_of(rowLines_.begin(), rowLines_.end(), hasSpans);
}

/// What a cell had from a row before it is used again, its memory above all.
GridCell& GridRows::addCell(CellRole role, int row, int column) {
  if (count_ == cells_.size()) cells_.emplace_back();
  GridCell& cell = cells_[count_++];
  cell.role = role;
  cell.row = row;
  cell.column = column;
  cell.rowSpan = 1;
  cell.columnSpan = 1;
  cell.alignment = CellAlignment::kLeft;
  if (!cell.look.empty()) cell.look = {};
  cell.notes.clear();
  return cell;
}

GridCell& GridRows::addLabel(CellRole role, int row, int column, const CellText& text) {
  GridCell& cell = addCell(role, row, column);
  cell.text = renderText(text);
  cell.isNumber = isNumber(text);
  if (cell.isNumber) cell.alignment = CellAlignment::kRight;
  return cell;
}

GridCell& GridRows::addLabel(CellRole role, int row, int column, const AxisLabel& label) {
  GridCell& cell = addLabel(role, row, column, *label.text);
  if (label.category != nullptr) cell.look = label.category->look;
  return cell;
}

bool GridRows::next() {
  if (row_ + 1 >= grid_.rowCount) return false;
  ++row_;
  count_ = 0;
  if (row_ < grid_.headerRows) {
    makeHeaderRow();
  } else {
    makeDataRow();
  }
  if (looks_) {
    for (GridCell& cell : takeCells()) looks_->apply(cell);
  }
  return true;
}

void GridRows::addCornerLabels() {
  for (int column = 0; column < grid_.headerColumns; ++column) {
    const std::size_t index = rowLines_[at(column)].dimension;
    const AxisDimension& dimension = layout_.rowAxis_.dimensions()[index];
    const bool isFirst = column == 0 || rowLines_[at(column - 1)].dimension != index;
    if (!isFirst || !dimension.isLabelShown()) continue;
    GridCell& corner = addLabel(CellRole::kCorner, row_, column, dimension.label());
    corner.columnSpan = std::max(1, dimension.depth());
  }
}

void GridRows::makeHeaderRow() {
  // The label of a row dimension stands above the labels of its categories.
  if (row_ == grid_.headerRows - 1) addCornerLabels();
  if (at(row_) >= columnLines_.size()) return;
  for (const AxisLabel& label : columnLines_[at(row_)].labels) {
    GridCell& cell =
        addLabel(CellRole::kColumnLabel, row_, grid_.headerColumns + label.start, label);
    cell.rowSpan = label.levels;
    cell.columnSpan = label.length;
    // A label over one column of numbers stands where the numbers stand.
    const bool isOverNumbers = label.length == 1 && label.isLeaf && isNumeric_[at(label.start)];
    cell.alignment = isOverNumbers ? CellAlignment::kRight : CellAlignment::kLeft;
  }
}

void GridRows::makeDataRow() {
  const std::size_t position = at(row_ - grid_.headerRows);
  for (std::size_t column = 0; column < rowLines_.size(); ++column) {
    const std::vector<AxisLabel>& labels = rowLines_[column].labels;
    std::size_t& next = nextLabel_[column];
    if (next == labels.size() || at(labels[next].start) != position) continue;
    GridCell& cell = addLabel(CellRole::kRowLabel, row_, static_cast<int>(column), labels[next]);
    cell.rowSpan = labels[next].length;
    cell.columnSpan = labels[next].levels;
    ++next;
  }
  if (position % kRowsPerReport == kRowsPerReport - 1) {
    reportWithinStep(nextCell_, layout_.cellCount());
  }
  for (; nextCell_ < layer_.last; ++nextCell_) {
    const PivotCell* const source = layout_.cellAt(nextCell_);
    if (source == nullptr) continue;
    if (layout_.rowAxis_.keyOf(*source) != rowKeys_[position]) break;
    const std::size_t column = layer_.columns.indexOf(layout_.columnAxis_.keyOf(*source));
    GridCell& cell = addCell(CellRole::kData, row_, grid_.headerColumns + static_cast<int>(column));
    cell.text = renderText(source->value);
    cell.isNumber = isNumber(source->value);
    if (cell.isNumber) cell.alignment = CellAlignment::kRight;
    if (!source->look.empty()) cell.look = source->look;
    if (!source->notes.empty()) cell.notes = footnotes_.numbersOf(source->notes);
  }
}

}  // namespace vornwout
