#include "platform/pivot/pivot_builder.h"

#include <functional>
#include <span>
#include <utility>

namespace vornwout {
namespace {

std::size_t mix(std::size_t seed, std::size_t value) {
  return seed ^ (value + 0x9e3779b97f4a7c15U + (seed << 6U) + (seed >> 2U));
}

std::size_t hashOf(const CellText& label) {
  std::size_t hash =
      mix(static_cast<std::size_t>(label.kind), std::hash<std::string>{}(label.text));
  hash = mix(hash, std::hash<double>{}(label.number));
  for (const CellText& argument : label.arguments) hash = mix(hash, hashOf(argument));
  for (const CellText& name : label.sublist) hash = mix(hash, hashOf(name));
  return hash;
}

std::size_t hashOf(std::span<const int> address) {
  std::size_t hash = address.size();
  for (const int leaf : address) hash = mix(hash, std::hash<int>{}(leaf));
  return hash;
}

template <typename Container>
auto& at(Container& container, int index) {
  return container[static_cast<std::size_t>(index)];
}

}  // namespace

PivotBuilder::PivotBuilder(CellText title, CellText subtype)
    : table_(std::make_shared<PivotTable>()) {
  table_->title = std::move(title);
  table_->subtype = std::move(subtype);
}

int PivotBuilder::dimension(const CellText& label, int sort) {
  const std::size_t hash = hashOf(label);
  const int known =
      dimensions_.find(hash, [&](int i) { return at(table_->dimensions, i).label == label; });
  if (known >= 0) return known;

  const auto number = static_cast<int>(table_->dimensions.size());
  PivotDimension& created = table_->dimensions.emplace_back();
  created.label = label;
  created.sort = sort;
  states_.emplace_back();
  dimensions_.add(hash, number);
  if (!table_->cells.empty()) {
    cells_.clear();
    for (std::size_t i = 0; i < table_->cells.size(); ++i) {
      PivotCell& cell = table_->cells[i];
      cell.at.push_back(0);
      cells_.add(hashOf(cell.at), static_cast<int>(i));
    }
  }
  return number;
}

int PivotBuilder::group(int dimension, int parent, const CellText& label) {
  return node(dimension, parent, label, true);
}

int PivotBuilder::category(int dimension, int parent, const CellText& label) {
  const int number = node(dimension, parent, label, false);
  at(states_, dimension).current = at(at(table_->dimensions, dimension).categories, number).leaf;
  return number;
}

int PivotBuilder::node(int dimension, int parent, const CellText& label, bool isGroup) {
  PivotDimension& owner = at(table_->dimensions, dimension);
  HashIndex& nodes = at(states_, dimension).nodes;
  std::size_t hash = mix(hashOf(label), std::hash<int>{}(parent));
  hash = mix(hash, isGroup ? 1 : 0);
  const int known = nodes.find(hash, [&](int i) {
    const PivotCategory& category = at(owner.categories, i);
    return category.parent == parent && category.isGroup == isGroup && category.label == label;
  });
  if (known >= 0) return known;

  const auto number = static_cast<int>(owner.categories.size());
  PivotCategory& created = owner.categories.emplace_back();
  created.label = label;
  created.parent = parent;
  created.isGroup = isGroup;
  if (!isGroup) created.leaf = owner.leafCount++;
  nodes.add(hash, number);
  return number;
}

PivotCell& PivotBuilder::cell(int dimension, int category) {
  address_.clear();
  for (const DimensionState& state : states_) address_.push_back(state.current);
  at(address_, dimension) = at(at(table_->dimensions, dimension).categories, category).leaf;
  return at(table_->cells, cellAt(address_));
}

int PivotBuilder::cellAt(const std::vector<int>& address) {
  const std::size_t hash = hashOf(address);
  const int known = cells_.find(hash, [&](int i) { return at(table_->cells, i).at == address; });
  if (known >= 0) return known;
  const auto number = static_cast<int>(table_->cells.size());
  table_->cells.emplace_back().at = address;
  cells_.add(hash, number);
  return number;
}

std::shared_ptr<const PivotTable> PivotBuilder::finish() {
  if (!table_->cells.empty()) {
    for (std::size_t i = 0; i < table_->dimensions.size(); ++i) {
      if (table_->dimensions[i].leafCount == 0) category(static_cast<int>(i), -1, CellText{});
    }
  }
  return std::exchange(table_, nullptr);
}

}  // namespace vornwout
