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

inline PivotDimension makeDimension(const std::string& label, PivotPlace place, int index,
                                    const std::vector<std::string>& categories) {
  PivotDimension dimension;
  dimension.label = textCell(label);
  dimension.position = PivotPosition{static_cast<int>(place), index, false, false};
  for (const std::string& category : categories) {
    dimension.categories.push_back({textCell(category), -1, false, dimension.leafCount++});
  }
  return dimension;
}

inline int addGroup(PivotDimension& dimension, const std::string& label, int parent = -1) {
  dimension.categories.push_back({textCell(label), parent, true, -1});
  return static_cast<int>(dimension.categories.size()) - 1;
}

inline void addLeaf(PivotDimension& dimension, const std::string& label, int parent = -1) {
  dimension.categories.push_back({textCell(label), parent, false, dimension.leafCount++});
}

inline PivotCell& addCell(PivotTable& table, std::vector<int> at, CellText value) {
  PivotCell cell;
  cell.at = std::move(at);
  cell.value = std::move(value);
  table.cells.push_back(std::move(cell));
  return table.cells.back();
}

}  // namespace vornwout
