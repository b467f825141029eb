// A finished pivot table as plain data: dimensions of nested categories, and sparse cells.
//
// Every dimension lies in rows, columns or layers. Its categories form a tree below an unlabelled
// root; the leaves, in the order in which they were made, are what cells refer to. All texts are
// UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/pivot/cell_coordinates.h"
#include "platform/pivot/cell_text.h"
#include "platform/pivot/statistic_kind.h"
#include "platform/pivot/table_look.h"
#include "platform/pivot/text_look.h"

namespace vornwout {

/// Where a dimension lies.
enum class PivotPlace { kRows = 0, kColumns = 1, kLayers = 2 };

/// A dimension's position, as BpDimension::Position was given it.
struct PivotPosition {
  int place = 0;                ///< a PivotPlace
  int index = 1;                ///< order within the place, from 1, outermost first
  bool hideLabel = false;       ///< the dimension's own label is not shown
  bool hideCategories = false;  ///< the labels of its categories are not shown
  friend bool operator==(const PivotPosition&, const PivotPosition&) = default;
};

/// A node of a dimension's category tree: a group, or a category (a leaf).
struct PivotCategory {
  CellText label;
  int parent = -1;  ///< index of the group it stands in, -1 for the dimension itself
  bool isGroup = false;
  int leaf = -1;                                   ///< number of the leaf, from 0; -1 for a group
  StatisticKind statistic = StatisticKind::kNone;  ///< of the values that stand below it
  SharedLook look;                                 ///< of the label
  int width = 0;  ///< points of the columns that stand below a leaf, 0 for what they need
  friend bool operator==(const PivotCategory&, const PivotCategory&) = default;
};

struct PivotDimension {
  CellText label;
  int sort = 0;
  std::optional<PivotPosition> position;
  std::vector<PivotCategory> categories;  ///< groups and leaves in order of creation
  int leafCount = 0;
  int shownLeaf = -1;  ///< of a dimension in the layers: the one leaf that is shown, -1 for all

  PivotPlace place() const;
  friend bool operator==(const PivotDimension&, const PivotDimension&) = default;
};

struct PivotCell {
  CellCoordinates at;  ///< one leaf number per dimension, in the order of the dimensions
  CellText value;
  Rare<std::vector<CellText>> notes;  ///< footnotes
  SharedLook look;
  friend bool operator==(const PivotCell&, const PivotCell&) = default;
};

struct PivotTable {
  CellText title;
  CellText subtype;
  CellText caption;     ///< below the table; empty for none
  std::string summary;  ///< what the table is about, for who cannot see it
  SharedLook titleLook;
  SharedLook captionLook;
  SharedLook footnoteLook;  ///< of all footnotes
  Shared<TableLook>
      tableLook;  ///< of the whole; what cells and labels say of themselves goes before
  std::vector<CellText> footnotes;  ///< of the table as a whole, before those of its cells
  std::optional<bool> flag;         ///< third argument of BpHeading::PivotTable
  bool titleHidden = false;
  std::optional<int> minDataColumnWidth;  ///< points
  std::optional<int> maxDataColumnWidth;  ///< points
  std::vector<PivotDimension> dimensions;
  std::vector<PivotCell> cells;
  friend bool operator==(const PivotTable&, const PivotTable&) = default;
};

/// Indexes into `dimension.categories` from the outermost group to the leaf `leaf`.
std::vector<int> categoryPath(const PivotDimension& dimension, int leaf);

}  // namespace vornwout
