// The handles by which a command builds a pivot table.
//
// BpHeading::PivotTable begins a table and returns a BpPivotTable, which owns it: when that handle
// is destroyed the table is finished and goes to the output sinks, unless a table begun earlier is
// still open (table_queue.h) or an exception is passing. Dimensions, groups and categories are
// light values that point into the table and are valid while its handle lives, wherever that is
// moved to. Which cell a category leads to is told in pivot_builder.h.
#pragma once

#include <memory>
#include <string>

#include "platform/pivot/bp_cell_text.h"

namespace vornwout {

class PivotBuilder;
class TableQueue;

/// A category, and through it the cell at which the table stands.
class BpCategory {
 public:
  /// Sets the cell's value, in place of one that it has.
  void Cell(const BpCellText& value);
  /// Adds a footnote to the cell.
  void CellNote(const BpAnnotation& note);
  /// Colours are names or "#rrggbb"; they are kept as given.
  void TextColor(const std::string& color);
  void BackgroundColor(const std::string& color);
  void Bold();

 private:
  friend class BpGroup;
  BpCategory(PivotBuilder& builder, int dimension, int node)
      : builder_(&builder), dimension_(dimension), node_(node) {}

  PivotBuilder* builder_;
  int dimension_;
  int node_;
};

/// A group of categories; a dimension is the outermost one.
class BpGroup {
 public:
  /// The group with this label in this one, made when it is asked for first. The flag (the label is
  /// shown) and the sort order are taken as the interface has them; groups are always shown, in the
  /// order in which they were made.
  BpGroup Group(const BpCellText& label, bool showLabel, int sort);
  /// The category with this label in this group, made when it is asked for first.
  BpCategory Category(const BpCellText& label);

 protected:
  friend class BpPivotTable;
  BpGroup(PivotBuilder& builder, int dimension, int node)
      : builder_(&builder), dimension_(dimension), node_(node) {}

  PivotBuilder* builder_;
  int dimension_;
  int node_;  ///< -1 for the dimension itself
};

/// A dimension of a table.
class BpDimension : public BpGroup {
 public:
  /// Rows (0), columns (1) or layers (2).
  using Place = int;

  /// Puts the dimension into a place, as number `index` from 1. The flags hide the dimension's own
  /// label and the labels of its categories.
  void Position(Place place, int index, bool hideLabel, bool hideCategories);

 private:
  friend class BpPivotTable;
  BpDimension(PivotBuilder& builder, int dimension) : BpGroup(builder, dimension, -1) {}
};

/// A table under construction.
///
/// The destructor delivers, and what it calls may throw: it is noexcept(false). A container or
/// smart pointer of tables therefore needs care, for their destructors are not; a local or a member
/// of a local is how the handle is meant. It never throws while an exception is passing: such a
/// table and the ones waiting in its procedure are dropped.
class BpPivotTable {
 public:
  BpPivotTable(std::shared_ptr<TableQueue> queue, std::unique_ptr<PivotBuilder> builder);
  BpPivotTable(BpPivotTable&& other) noexcept;
  BpPivotTable& operator=(BpPivotTable&&) = delete;  // would have to finish a table on the way
  ~BpPivotTable() noexcept(false);

  /// Bounds of a data column's width, in points.
  void MinDataColumnWidth(int width);
  void MaxDataColumnWidth(int width);
  void HideTitle();
  /// How a dimension's categories are ordered; 0 keeps the order in which they were made.
  using Sort = int;
  /// The dimension with this label, made when it is asked for first; `sort` counts only then.
  BpDimension Dimension(const BpCellText& label, Sort sort);

 private:
  std::shared_ptr<TableQueue> queue_;      // shared: the handle may outlive its procedure
  std::unique_ptr<PivotBuilder> builder_;  ///< null when moved from
  int ticket_;
  int exceptions_;  ///< in flight when the table was begun
};

}  // namespace vornwout
