// A pivot table laid out as a grid of rows and columns, for renderers that must see the whole of it
// before they draw; host/layout/table_layout.h has it row by row.
//
// Looks are those that the table gives its texts; what is not set in one, such as whether labels
// are bold, is the renderer's choice. The grid is sparse: a place that no cell covers is empty, so
// that the cost grows with the labels and the cells and not with their product.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/pivot/pivot_table.h"

namespace vornwout {

enum class CellRole { kCorner, kColumnLabel, kRowLabel, kData };
enum class CellAlignment { kLeft, kRight, kCenter };

/// One cell. It covers `rowSpan` rows and `columnSpan` columns from its place on.
struct GridCell {
  CellRole role = CellRole::kData;
  int row = 0;
  int column = 0;
  int rowSpan = 1;
  int columnSpan = 1;
  std::string text;  ///< UTF-8, without footnote marks
  CellAlignment alignment = CellAlignment::kLeft;
  bool isNumber = false;
  SharedLook look;
  std::vector<int> notes;  ///< indexes into the grid's footnotes
};

struct Footnote {
  std::string mark;  ///< "a" to "z", "aa", "ab", ...
  std::string text;
};

/// What a grid shows of a dimension in the layers.
struct LayerCaption {
  std::string dimension;  ///< empty where the label is hidden
  std::string category;   ///< groups and category from the outermost inward, joined by ", "
};

/// The cells of one row, left to right.
struct GridRow {
  const GridCell* first;
  const GridCell* last;
  const GridCell* begin() const { return first; }
  const GridCell* end() const { return last; }
};

struct TableGrid {
  std::string title;  ///< empty when hidden
  SharedLook titleLook;
  std::string summary;          ///< what the table is about, for who cannot see it
  std::vector<int> titleNotes;  ///< footnotes of the table as a whole, indexes into `footnotes`
  std::string caption;          ///< below the table; empty for none
  SharedLook captionLook;
  std::vector<LayerCaption> layers;
  SharedLook layersLook;
  int rowCount = 0;
  int columnCount = 0;
  int headerRows = 0;                  ///< rows above the data; the label of a row dimension
                                       ///< stands there above its categories
  int headerColumns = 0;               ///< columns before the data
  std::vector<GridCell> cells;         ///< in reading order of their upper left places
  std::vector<std::size_t> rowStarts;  ///< index of each row's first cell, and the end
  std::vector<Footnote> footnotes;
  SharedLook footnoteLook;  ///< of all footnotes
  /// Of places that no cell covers: of the corner, and of data in and out of a band.
  SharedLook emptyCornerLook;
  SharedLook emptyDataLook;
  SharedLook emptyBandLook;
  Shared<TableLook> tableLook;  ///< merged into all the others; its lines and margins are here only
  /// Points by column, 0 for what the column needs; those that are missing at the end need no more.
  std::vector<int> columnWidths;
  std::optional<int> minDataColumnWidth;  ///< points
  std::optional<int> maxDataColumnWidth;  ///< points

  /// The cells whose upper left place is in `row`.
  GridRow row(int row) const;
  /// The look of a place that no cell covers.
  const SharedLook& emptyLookAt(int row, int column) const;
  /// The cell whose upper left place this is, or null.
  const GridCell* at(int row, int column) const;
  /// Points that were given to a column, 0 for none.
  int columnWidth(int column) const;
};

/// Which combinations of the layers' categories are laid out.
enum class ShownLayers {
  kAsChosen,  ///< of a dimension with a shown leaf that one, of the others all
  kAll,       ///< all, whatever leaf is shown
  kFirst,     ///< the first one that is shown
};

struct LayoutOptions {
  ShownLayers layers = ShownLayers::kAsChosen;
  /// Rows and columns that a table may have, all layers together, before combinations of categories
  /// without any cell are left out. Nested dimensions multiply, so this bounds cost and memory.
  std::size_t completeLimit = 1'000'000;
  /// Places for cells that a table may have, all layers together, where most of them are empty: a
  /// small file can name a hundred thousand rows and as many columns. A table that fills a
  /// sixteenth of its places has no limit.
  std::uint64_t emptyLimit = 2'000'000;
};

/// Lays out a table whole: the grids of TableLayout, with its exceptions.
std::vector<TableGrid> layoutTable(const PivotTable& table, const LayoutOptions& options = {});

/// The mark of the footnote with this index: a, b, ..., z, aa, ab, ...
std::string footnoteMark(int index);

}  // namespace vornwout
