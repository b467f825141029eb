#include "host/build/category_tree.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>

#include <unicode/coll.h>

#include "platform/strings/localized.h"

namespace vornwout {
namespace {

std::size_t hashOf(int parent, std::string_view label) {
  const std::size_t hash = std::hash<std::string_view>()(label);
  return hash ^ (static_cast<std::size_t>(parent + 1) * 0x9E3779B97F4A7C15U);
}

/// Sort keys by the rules of the root locale, the same wherever the program runs.
std::vector<std::string> collationKeys(const std::vector<const std::string*>& labels) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Collator> collator(
      icu::Collator::createInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) throw std::runtime_error(localized("ICU gives no collation rules."));
  std::vector<std::string> keys;
  keys.reserve(labels.size());
  std::vector<std::uint8_t> buffer(256);
  for (const std::string* label : labels) {
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(*label);
    auto length = collator->getSortKey(text, buffer.data(), static_cast<int>(buffer.size()));
    if (static_cast<std::size_t>(length) > buffer.size()) {
      buffer.resize(static_cast<std::size_t>(length));
      length = collator->getSortKey(text, buffer.data(), length);
    }
    keys.emplace_back(buffer.begin(), buffer.begin() + length);
  }
  return keys;
}

}  // namespace

int CategoryTree::leafOf(std::span<const std::string_view> labels) {
  int parent = -1;
  for (std::size_t level = 0; level < levels_; ++level) {
    const int last = last_[level];
    const auto is = [&](int node) {
      return node >= 0 && parentOf(node) == parent && labelOf(node) == labels[level];
    };
    if (is(last)) {
      parent = last;
      continue;
    }
    int& follower = last >= 0 ? nodes_[static_cast<std::size_t>(last)].follower : firstFollower_;
    if (!is(follower)) follower = childOf(parent, labels[level], level + 1 == levels_);
    parent = follower;
    last_[level] = parent;
  }
  return nodes_[static_cast<std::size_t>(parent)].leaf;
}

int CategoryTree::childOf(int parent, std::string_view label, bool isLeaf) {
  if (nodes_.size() * 2 >= slots_.size()) grow();
  const std::size_t hash = hashOf(parent, label);
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  for (; slots_[slot] >= 0; slot = (slot + 1) & mask) {
    const Node& node = nodes_[static_cast<std::size_t>(slots_[slot])];
    if (node.hash == hash && node.parent == parent && node.label == label) return slots_[slot];
  }
  const int added = nodeCount();
  slots_[slot] = added;
  nodes_.push_back({std::string(label), parent, isLeaf ? leafCount_ : -1, -1, hash});
  if (isLeaf) {
    leafNodes_.push_back(added);
    ++leafCount_;
  }
  return added;
}

void CategoryTree::grow() {
  slots_.assign(std::max<std::size_t>(64, slots_.size() * 2), -1);
  const std::size_t mask = slots_.size() - 1;
  for (int node = 0; node < nodeCount(); ++node) {
    std::size_t slot = nodes_[static_cast<std::size_t>(node)].hash & mask;
    while (slots_[slot] >= 0) slot = (slot + 1) & mask;
    slots_[slot] = node;
  }
}

std::size_t CategoryTree::levelOf(int node) const {
  std::size_t level = 0;
  while ((node = parentOf(node)) >= 0) ++level;
  return level;
}

std::vector<int> CategoryTree::finish(PivotDimension& dimension, CategoryOrder order,
                                      const std::vector<StatisticKind>& statistics) const {
  const auto count = static_cast<std::size_t>(nodeCount());
  std::vector<int> sequence(count);
  std::iota(sequence.begin(), sequence.end(), 0);
  const auto at = [](int node) { return static_cast<std::size_t>(node); };
  if (order == CategoryOrder::kLabel) {
    std::vector<const std::string*> labels;
    labels.reserve(count);
    for (const Node& node : nodes_) labels.push_back(&node.label);
    const std::vector<std::string> keys = collationKeys(labels);
    std::stable_sort(sequence.begin(), sequence.end(),
                     [&](int a, int b) { return keys[at(a)] < keys[at(b)]; });
  } else if (order == CategoryOrder::kNumber) {
    std::vector<std::optional<double>> numbers;
    numbers.reserve(count);
    for (const Node& node : nodes_) numbers.push_back(readNumber(node.label));
    // What is no number ("Total") stands behind those that are.
    std::stable_sort(sequence.begin(), sequence.end(), [&](int a, int b) {
      const auto& first = numbers[at(a)];
      const auto& second = numbers[at(b)];
      return first && (!second || *first < *second);
    });
  }
  // A chain per group, in the final order; then each group stands before what it holds.
  std::vector<int> firstChild(count + 1, -1);
  std::vector<int> nextSibling(count, -1);
  for (auto node = sequence.rbegin(); node != sequence.rend(); ++node) {
    int& head = firstChild[at(parentOf(*node) + 1)];
    nextSibling[at(*node)] = head;
    head = *node;
  }
  std::vector<int> finalLeaf(at(leafCount_), -1);
  std::vector<int> place(count, -1);
  dimension.categories.clear();
  dimension.categories.reserve(count);
  dimension.leafCount = 0;
  for (int node = firstChild[0]; node >= 0;) {
    const Node& from = nodes_[at(node)];
    place[at(node)] = static_cast<int>(dimension.categories.size());
    PivotCategory& category = dimension.categories.emplace_back();
    category.label.text = from.label;
    category.parent = from.parent < 0 ? -1 : place[at(from.parent)];
    category.isGroup = from.leaf < 0;
    category.statistic = statistics[at(node)];
    if (from.leaf >= 0) {
      category.leaf = dimension.leafCount++;
      finalLeaf[at(from.leaf)] = category.leaf;
    }
    int next = firstChild[at(node) + 1];
    for (int up = node; next < 0 && up >= 0; up = parentOf(up)) next = nextSibling[at(up)];
    node = next;
  }
  return finalLeaf;
}

}  // namespace vornwout
