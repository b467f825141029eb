// The categories of one dimension while a table is read: labels of columns, numbered as they come.
//
// Entry points: leafOf() for each row of the file, finish() for the dimension in the order that was
// asked for. A node is found by its group and its label through a table of hashes; the node of the
// row before is tried first, and then the one that came behind it the last time, since rows come
// sorted more often than not.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/build/table_description.h"

namespace vornwout {

class CategoryTree {
 public:
  /// `levels` is how many columns nest.
  explicit CategoryTree(std::size_t levels) : levels_(levels), last_(levels, -1) {}

  /// Number of the leaf with these labels, outermost first; a new one where there is none yet.
  int leafOf(std::span<const std::string_view> labels);

  int leafCount() const { return leafCount_; }
  std::size_t levels() const { return levels_; }
  /// The node of a leaf.
  int nodeOfLeaf(int leaf) const { return leafNodes_[static_cast<std::size_t>(leaf)]; }
  int parentOf(int node) const { return nodes_[static_cast<std::size_t>(node)].parent; }
  const std::string& labelOf(int node) const {
    return nodes_[static_cast<std::size_t>(node)].label;
  }
  int nodeCount() const { return static_cast<int>(nodes_.size()); }
  /// The level of a node, 0 for the outermost.
  std::size_t levelOf(int node) const;

  /// Fills in the categories and returns the final number of every leaf, by the number that
  /// leafOf() gave.
  std::vector<int> finish(PivotDimension& dimension, CategoryOrder order,
                          const std::vector<StatisticKind>& statistics) const;

 private:
  struct Node {
    std::string label;
    int parent = -1;
    int leaf = -1;
    int follower = -1;  ///< the node of the row behind the last row that had this one
    std::size_t hash = 0;
  };

  int childOf(int parent, std::string_view label, bool isLeaf);
  void grow();

  std::size_t levels_;
  std::deque<Node> nodes_;
  std::vector<int> leafNodes_;
  std::vector<int> slots_;  ///< nodes by hash, -1 where there is none
  std::vector<int> last_;   ///< the node of the row before, by level
  int firstFollower_ = -1;  ///< of no node, where reading starts
  int leafCount_ = 0;
};

}  // namespace vornwout
