// Fills a PivotTable: finds or creates dimensions, groups and categories, and places cells.
//
// Everything asked for again is found in constant time by the hash of what identifies it, because a
// table of string keys in twelve languages asks for each of its 100,000 rows twelve times. The
// index holds numbers only and compares with the table itself, so that no label is stored twice.
//
// Where a cell goes: in the dimension of the category it is set through, that category; in every
// other dimension the category most recently asked for there. A dimension without categories stands
// at the first it will get. Leaves are numbered from 0 in order of creation, so that first category
// is number 0 and nothing has to be completed later, whether the category or the whole dimension
// comes after the cell. A dimension that has none even when the table is finished gets one with an
// empty label, provided there are cells, so that every cell has a full address.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// Numbers by the hash of what they stand for; the caller compares the things themselves.
class HashIndex {
 public:
  /// The number with this hash for which `isWanted(number)` holds, -1 when there is none.
  template <typename Predicate>
  int find(std::size_t hash, Predicate isWanted) const {
    const auto [begin, end] = numbers_.equal_range(hash);
    for (auto it = begin; it != end; ++it) {
      if (isWanted(it->second)) return it->second;
    }
    return -1;
  }
  void add(std::size_t hash, int number) { numbers_.emplace(hash, number); }
  void clear() { numbers_.clear(); }

 private:
  std::unordered_multimap<std::size_t, int> numbers_;
};

/// One table under construction. Dimensions, categories and leaves are the numbers of the table.
class PivotBuilder {
 public:
  PivotBuilder(CellText title, CellText subtype);

  /// The table as it is by now; its properties may be set directly.
  PivotTable& table() { return *table_; }

  /// The dimension with this label; `sort` counts when it is created.
  int dimension(const CellText& label, int sort);
  /// The group with this label below `parent` (-1 for the dimension itself).
  int group(int dimension, int parent, const CellText& label);
  /// The category with this label below `parent`; the dimension now stands at it.
  int category(int dimension, int parent, const CellText& label);

  /// The cell that `category` of `dimension` leads to; an empty one is made where there was none.
  /// The reference is valid until the next call.
  PivotCell& cell(int dimension, int category);

  /// The table as it goes to the sinks; nothing may be added afterwards.
  std::shared_ptr<const PivotTable> finish();

 private:
  struct DimensionState {
    HashIndex nodes;
    int current = 0;  ///< leaf at which the dimension stands
  };

  int node(int dimension, int parent, const CellText& label, bool isGroup);
  int cellAt(const std::vector<int>& at);

  std::shared_ptr<PivotTable> table_;
  std::vector<DimensionState> states_;
  HashIndex dimensions_;
  HashIndex cells_;
  std::vector<int> address_;  ///< of the cell looked for; kept to reuse its memory
};

}  // namespace vornwout
