// One side of a table's grid: the dimensions that lie in rows, in columns or in layers, nested.
//
// A combination of categories, one per dimension, is a key: the leaves' ranks as the digits of a
// number, the outermost dimension first. Keys compare in the order in which the combinations are
// shown, and dividing one gives what its outer dimensions have in common with its neighbour, which
// is all that spanning labels need. A leaf's rank is its place in the tree and not its number, so
// that a group stands together even when its categories were made between those of another.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// A dimension with what laying it out needs to know about each leaf.
class AxisDimension {
 public:
  /// `index` is the dimension's place in `table`. Throws std::invalid_argument for categories that
  /// do not form a tree or do not number their leaves, and for a shown leaf that is none of them.
  AxisDimension(const PivotTable& table, std::size_t index);

  std::size_t index() const { return index_; }
  int order() const;
  int leafCount() const { return source_->leafCount; }
  /// The one leaf that is shown of a dimension in the layers; -1 for all.
  int shownLeaf() const { return shownLeaf_; }
  /// Levels from the outermost group to the deepest leaf; 0 without leaves.
  int depth() const { return depth_; }
  /// Place of a leaf in the order in which leaves are shown; throws std::invalid_argument.
  std::uint64_t rankOf(int leaf) const;
  /// The category at `level` above or at the leaf of this rank, -1 below it.
  int categoryAt(std::uint64_t rank, int level) const;
  /// The leaf of this rank.
  const PivotCategory& leafAt(std::uint64_t rank) const;

  const PivotCategory& category(int index) const;
  bool isLabelShown() const;
  bool areCategoriesShown() const;
  const CellText& label() const { return source_->label; }

 private:
  const PivotDimension* source_;
  std::size_t index_;
  int depth_ = 0;
  int shownLeaf_ = -1;
  std::vector<std::uint64_t> ranks_;  ///< by leaf
  std::vector<int> paths_;            ///< `depth_` categories per rank
};

/// A label and what it covers along the axis and across it.
struct AxisLabel {
  int start = 0;   ///< first position
  int length = 0;  ///< positions covered
  int levels = 1;  ///< header lines covered
  const CellText* text = nullptr;
  bool isLeaf = false;
  const PivotCategory* category = nullptr;  ///< whose label it is; null for a dimension's own
};

/// One line of an axis' header, in the order of its positions.
struct AxisLine {
  std::size_t dimension = 0;
  bool isDimensionLabel = false;
  std::vector<AxisLabel> labels;
};

class TableAxis {
 public:
  TableAxis(const PivotTable& table, PivotPlace place);

  /// Whether a cell belongs to what is shown of each dimension: all of it, or in the layers its
  /// shown leaf.
  bool shows(const PivotCell& cell) const;
  /// The first combination that is shown.
  std::uint64_t firstShownKey() const;
  /// Points of the column that has `key`: what the leaf of the innermost dimension says.
  int widthOf(std::uint64_t key) const;

  const std::vector<AxisDimension>& dimensions() const { return dimensions_; }
  /// How many combinations there are; 1 without dimensions, 0 when one has no categories.
  std::uint64_t combinations() const { return combinations_; }
  /// Throws std::invalid_argument for a cell that names a category which a dimension has not.
  std::uint64_t keyOf(const PivotCell& cell) const {
    std::uint64_t key = 0;
    for (const Digit& digit : digits_) {
      const auto leaf = static_cast<std::size_t>(cell.at[digit.dimension]);
      if (leaf >= digit.keys.size()) refuseLeaf();
      key += digit.keys[leaf];
    }
    return key;
  }
  /// Rank of the leaf that `key` has in a dimension.
  std::uint64_t rankIn(std::uint64_t key, std::size_t dimension) const;

  /// The header lines over the combinations `keys`, which must ascend, outermost first. Lines of
  /// dimension labels are made only where asked for; with `keepEmpty` a dimension without leaves
  /// still has a line.
  std::vector<AxisLine> header(const std::vector<std::uint64_t>& keys, bool dimensionLabels,
                               bool keepEmpty) const;

 private:
  /// What a dimension's leaves add to a key.
  struct Digit {
    std::size_t dimension;  ///< in the table
    std::vector<std::uint64_t> keys;
  };

  [[noreturn]] static void refuseLeaf();
  AxisLine labelLine(const std::vector<std::uint64_t>& keys, std::size_t dimension) const;
  AxisLine categoryLine(const std::vector<std::uint64_t>& keys, std::size_t dimension,
                        int level) const;

  std::vector<AxisDimension> dimensions_;
  std::vector<std::uint64_t> strides_;  ///< weight of each dimension's rank in a key
  std::vector<Digit> digits_;
  std::uint64_t combinations_ = 1;
};

}  // namespace vornwout
