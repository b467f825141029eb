// Builds pivot tables as plain data for the tests of whatever reads them.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/pivot/pivot_table.h"

namespace vornwout {

inline CellText textCell(std::string text) {
  CellText cell;
  cell.text = std::move(text);
  return cell;
}

inline CellText numberCell(double number) {
  CellText cell;
  cell.kind = CellText::Kind::kNumber;
  cell.number = number;
  return cell;
}

inline PivotCategory& addCategory(PivotDimension& dimension, const std::string& label, int parent) {
  PivotCategory& category = dimension.categories.emplace_back();
  category.label = textCell(label);
  category.parent = parent;
  return category;
}

/// Returns the group's index.
inline int addGroup(PivotDimension& dimension, const std::string& label, int parent = -1) {
  addCategory(dimension, label, parent).isGroup = true;
  return static_cast<int>(dimension.categories.size()) - 1;
}

inline void addLeaf(PivotDimension& dimension, const std::string& label, int parent = -1) {
  addCategory(dimension, label, parent).leaf = dimension.leafCount++;
}

inline PivotDimension makeDimension(const std::string& label, PivotPlace place, int index,
                                    const std::vector<std::string>& categories) {
  PivotDimension dimension;
  dimension.label = textCell(label);
  dimension.position = PivotPosition{static_cast<int>(place), index, false, false};
  for (const std::string& category : categories) addLeaf(dimension, category);
  return dimension;
}

inline PivotCell& addCell(PivotTable& table, std::vector<int> at, CellText value) {
  PivotCell cell;
  cell.at = std::move(at);
  cell.value = std::move(value);
  table.cells.push_back(std::move(cell));
  return table.cells.back();
}

}  // namespace vornwout
