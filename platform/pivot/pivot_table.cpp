#include "platform/pivot/pivot_table.h"

#include <algorithm>

namespace vornwout {
namespace {

/// Index of the category that is leaf number `leaf`, -1 when there is none.
///
/// Leaves are numbered in the order in which they stand, so halving finds one: a group in the
/// middle has no number and gives way to the next leaf behind it.
int nodeOfLeaf(const PivotDimension& dimension, int leaf) {
  const auto& categories = dimension.categories;
  const auto count = static_cast<int>(categories.size());
  if (leaf < 0 || leaf >= count) return -1;
  const auto leafAt = [&](int index) { return categories[static_cast<std::size_t>(index)].leaf; };
  int low = leaf;  // at least `leaf` other leaves stand before it
  int high = count;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    int next = middle;
    while (next < high && leafAt(next) < 0) ++next;
    if (next == high || leafAt(next) > leaf) {
      high = middle;
    } else if (leafAt(next) == leaf) {
      return next;
    } else {
      low = next + 1;
    }
  }
  return -1;
}

}  // namespace

PivotPlace PivotDimension::place() const {
  if (!position) return PivotPlace::kRows;
  switch (position->place) {
    case static_cast<int>(PivotPlace::kColumns):
      return PivotPlace::kColumns;
    case static_cast<int>(PivotPlace::kLayers):
      return PivotPlace::kLayers;
    default:
      return PivotPlace::kRows;
  }
}

std::vector<int> categoryPath(const PivotDimension& dimension, int leaf) {
  const int node = nodeOfLeaf(dimension, leaf);
  std::vector<int> path;
  for (int index = node; index >= 0;) {
    path.push_back(index);
    const int parent = dimension.categories[static_cast<std::size_t>(index)].parent;
    // A group stands before what it holds; anything else could be a ring.
    if (parent >= index) return {};
    index = parent;
  }
  std::reverse(path.begin(), path.end());
  return path;
}

}  // namespace vornwout
