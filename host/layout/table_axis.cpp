#include "host/layout/table_axis.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "platform/pivot/cell_text.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// Steps on the ways to all leaves of a dimension: far more than one can look at, and 256 MiB.
constexpr std::size_t kMaxPathSteps = std::size_t{64} << 20;
constexpr auto kLargestKey = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

std::size_t at(int index) { return static_cast<std::size_t>(index); }

/// The categories in the order of the tree: a group, then everything in it, then the next.
std::vector<int> treeOrder(const std::vector<PivotCategory>& categories) {
  const auto count = static_cast<int>(categories.size());
  std::vector<int> firstChild(categories.size() + 1, -1);  // the last entry is the dimension's
  std::vector<int> nextSibling(categories.size(), -1);
  const auto slot = [&](int parent) { return parent < 0 ? categories.size() : at(parent); };
  for (int i = count - 1; i >= 0; --i) {
    const int parent = categories[at(i)].parent;
    if (parent >= i || (parent >= 0 && !categories[at(parent)].isGroup)) {
      throw std::invalid_argument(
          localized("a category of the table stands in no group before it"));
    }
    nextSibling[at(i)] = firstChild[slot(parent)];
    firstChild[slot(parent)] = i;
  }
  std::vector<int> order;
  std::vector<int> pending;
  if (firstChild.back() >= 0) pending.push_back(firstChild.back());
  while (!pending.empty()) {
    const int index = pending.back();
    pending.pop_back();
    order.push_back(index);
    if (nextSibling[at(index)] >= 0) pending.push_back(nextSibling[at(index)]);
    if (firstChild[at(index)] >= 0) pending.push_back(firstChild[at(index)]);
  }
  return order;
}

}  // namespace

AxisDimension::AxisDimension(const PivotTable& table, std::size_t index)
    : source_(&table.dimensions[index]), index_(index) {
  const auto& categories = source_->categories;
  if (source_->leafCount < 0 || at(source_->leafCount) > categories.size()) {
    throw std::invalid_argument(
        localized("a dimension of the table counts categories that it has not"));
  }
  std::vector<int> levels(categories.size(), 0);
  for (std::size_t i = 0; i < categories.size(); ++i) {
    const int parent = categories[i].parent;
    if (parent >= 0 && at(parent) < i) levels[i] = levels[at(parent)] + 1;
    if (!categories[i].isGroup) depth_ = std::max(depth_, levels[i] + 1);
  }
  if (at(source_->leafCount) * at(depth_) > kMaxPathSteps) {
    throw std::length_error(
        localized("a dimension has too many categories that are nested deeply"));
  }
  constexpr std::uint64_t kUnset = std::numeric_limits<std::uint64_t>::max();
  ranks_.assign(at(source_->leafCount), kUnset);
  paths_.assign(at(source_->leafCount) * at(depth_), -1);
  std::uint64_t rank = 0;
  for (const int i : treeOrder(categories)) {
    if (categories[at(i)].isGroup) continue;
    const int leaf = categories[at(i)].leaf;
    if (leaf < 0 || leaf >= source_->leafCount || ranks_[at(leaf)] != kUnset) {
      throw std::invalid_argument(localized("a category of the table has no number of its own"));
    }
    ranks_[at(leaf)] = rank;
    for (int ancestor = i; ancestor >= 0; ancestor = categories[at(ancestor)].parent) {
      paths_[rank * at(depth_) + at(levels[at(ancestor)])] = ancestor;
    }
    ++rank;
  }
  if (rank != at(source_->leafCount)) {
    throw std::invalid_argument(
        localized("a dimension of the table counts categories that it has not"));
  }
  if (source_->place() == PivotPlace::kLayers) shownLeaf_ = source_->shownLeaf;
  if (shownLeaf_ < -1 || shownLeaf_ >= source_->leafCount) {
    throw std::invalid_argument(
        localized("a dimension of the table shows a category that it has not"));
  }
}

int AxisDimension::order() const { return source_->position ? source_->position->index : 1; }

std::uint64_t AxisDimension::rankOf(int leaf) const {
  if (leaf < 0 || leaf >= source_->leafCount) {
    throw std::invalid_argument(localized("a cell of the table belongs to no category"));
  }
  return ranks_[at(leaf)];
}

int AxisDimension::categoryAt(std::uint64_t rank, int level) const {
  return paths_[rank * at(depth_) + at(level)];
}

const PivotCategory& AxisDimension::leafAt(std::uint64_t rank) const {
  int level = depth_ - 1;
  while (categoryAt(rank, level) < 0) --level;
  return category(categoryAt(rank, level));
}

const PivotCategory& AxisDimension::category(int index) const {
  return source_->categories[at(index)];
}

bool AxisDimension::isLabelShown() const {
  return !(source_->position && source_->position->hideLabel) && !renderText(label()).empty();
}

bool AxisDimension::areCategoriesShown() const {
  return !(source_->position && source_->position->hideCategories);
}

TableAxis::TableAxis(const PivotTable& table, PivotPlace place) {
  for (std::size_t i = 0; i < table.dimensions.size(); ++i) {
    if (table.dimensions[i].place() == place) dimensions_.emplace_back(table, i);
  }
  std::stable_sort(dimensions_.begin(), dimensions_.end(),
                   [](const AxisDimension& left, const AxisDimension& right) {
                     return left.order() < right.order();
                   });
  strides_.resize(dimensions_.size());
  for (std::size_t i = dimensions_.size(); i-- > 0;) {
    strides_[i] = combinations_;
    const auto leaves = static_cast<std::uint64_t>(dimensions_[i].leafCount());
    if (leaves != 0 && combinations_ > kLargestKey / leaves) {
      throw std::length_error(
          localized("the table's dimensions have too many combinations of categories"));
    }
    combinations_ *= leaves;
  }
  for (std::size_t i = 0; i < dimensions_.size(); ++i) {
    Digit& digit = digits_.emplace_back(Digit{dimensions_[i].index(), {}});
    for (int leaf = 0; leaf < dimensions_[i].leafCount(); ++leaf) {
      digit.keys.push_back(strides_[i] * dimensions_[i].rankOf(leaf));
    }
  }
}

void TableAxis::refuseLeaf() {
  throw std::invalid_argument(localized("a cell of the table belongs to no category"));
}

std::uint64_t TableAxis::rankIn(std::uint64_t key, std::size_t dimension) const {
  return key / strides_[dimension] % static_cast<std::uint64_t>(dimensions_[dimension].leafCount());
}

bool TableAxis::shows(const PivotCell& cell) const {
  return std::all_of(dimensions_.begin(), dimensions_.end(), [&](const AxisDimension& dimension) {
    return dimension.shownLeaf() < 0 || cell.at[dimension.index()] == dimension.shownLeaf();
  });
}

std::uint64_t TableAxis::firstShownKey() const {
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < dimensions_.size(); ++i) {
    const int leaf = dimensions_[i].shownLeaf();
    if (leaf >= 0) key += strides_[i] * dimensions_[i].rankOf(leaf);
  }
  return key;
}

int TableAxis::widthOf(std::uint64_t key) const {
  if (dimensions_.empty()) return 0;
  const AxisDimension& innermost = dimensions_.back();
  const std::uint64_t rank = rankIn(key, dimensions_.size() - 1);
  return innermost.leafAt(rank).width;
}

std::vector<AxisLine> TableAxis::header(const std::vector<std::uint64_t>& keys,
                                        bool dimensionLabels, bool keepEmpty) const {
  std::vector<AxisLine> lines;
  for (std::size_t i = 0; i < dimensions_.size(); ++i) {
    const AxisDimension& dimension = dimensions_[i];
    if (dimensionLabels && dimension.isLabelShown()) lines.push_back(labelLine(keys, i));
    if (!dimension.areCategoriesShown()) continue;
    for (int level = 0; level < dimension.depth(); ++level) {
      lines.push_back(categoryLine(keys, i, level));
    }
    if (dimension.depth() == 0 && keepEmpty) lines.push_back({i, false, {}});
  }
  return lines;
}

AxisLine TableAxis::labelLine(const std::vector<std::uint64_t>& keys, std::size_t dimension) const {
  AxisLine line{dimension, true, {}};
  const std::uint64_t outerStride =
      strides_[dimension] * static_cast<std::uint64_t>(dimensions_[dimension].leafCount());
  std::uint64_t previous = 0;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::uint64_t outer = keys[i] / outerStride;
    if (i == 0 || outer != previous) {
      line.labels.push_back(
          {static_cast<int>(i), 0, 1, &dimensions_[dimension].label(), false, nullptr});
    }
    ++line.labels.back().length;
    previous = outer;
  }
  return line;
}

AxisLine TableAxis::categoryLine(const std::vector<std::uint64_t>& keys, std::size_t dimension,
                                 int level) const {
  const AxisDimension& axis = dimensions_[dimension];
  AxisLine line{dimension, false, {}};
  const std::uint64_t outerStride =
      strides_[dimension] * static_cast<std::uint64_t>(axis.leafCount());
  std::uint64_t previousOuter = 0;
  int previousCategory = -1;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::uint64_t outer = keys[i] / outerStride;
    const int index = axis.categoryAt(rankIn(keys[i], dimension), level);
    // Below a leaf that stands higher than others its own label goes on.
    if (index >= 0) {
      if (i == 0 || outer != previousOuter || index != previousCategory) {
        const PivotCategory& category = axis.category(index);
        const int levels = category.isGroup ? 1 : axis.depth() - level;
        line.labels.push_back(
            {static_cast<int>(i), 0, levels, &category.label, !category.isGroup, &category});
      }
      ++line.labels.back().length;
    }
    previousOuter = outer;
    previousCategory = index;
  }
  return line;
}

}  // namespace vornwout
