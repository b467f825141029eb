// A layout row by row: the order of cells does not matter, and what is known before the rows.
#include "host/layout/table_layout.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/generated_documents.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

std::string drawn(const GridCell& cell) {
  std::string notes;
  for (const int note : cell.notes) notes += "," + std::to_string(note);
  return std::to_string(cell.row) + "," + std::to_string(cell.column) + "," +
         std::to_string(cell.rowSpan) + "x" + std::to_string(cell.columnSpan) + ":" + cell.text +
         notes;
}

/// All rows of all grids, or why there are none.
std::vector<std::string> drawn(const PivotTable& table, const LayoutOptions& options = {}) {
  std::vector<std::string> lines;
  try {
    TableLayout layout(table, options);
    for (std::size_t i = 0; i < layout.gridCount(); ++i) {
      GridRows rows(layout, i);
      std::string line = "grid";
      for (const LayerCaption& layer : rows.grid().layers) line += " " + layer.category;
      lines.push_back(line);
      while (rows.next()) {
        for (const GridCell& cell : rows.cells()) lines.push_back(drawn(cell));
      }
    }
  } catch (const std::logic_error& error) {
    lines.emplace_back(error.what());
  }
  return lines;
}

bool hasTwoAtOnePlace(const PivotTable& table) {
  for (const PivotCell& a : table.cells) {
    const auto same = std::count_if(table.cells.begin(), table.cells.end(),
                                    [&](const PivotCell& b) { return a.at == b.at; });
    if (same > 1) return true;
  }
  return false;
}

TEST(TableLayout, OrderOfTheCellsDoesNotMatter) {
  int compared = 0;
  for (unsigned int seed = 0; seed < 300; ++seed) {
    DocumentGenerator generator(seed);
    const ObjectContent content = generator.content(ObjectType::kTable);
    const auto* made = std::get_if<TableContent>(&content);
    if (made == nullptr || hasTwoAtOnePlace(**made)) continue;
    PivotTable table = **made;
    const std::vector<std::string> expected = drawn(table);
    std::mt19937 random(seed);
    std::shuffle(table.cells.begin(), table.cells.end(), random);
    EXPECT_EQ(drawn(table), expected) << seed;
    ++compared;
  }
  EXPECT_GT(compared, 100);
}

/// Two layers with a value each, of which the second is chosen.
PivotTable layeredTable() {
  PivotTable table;
  table.dimensions.push_back(makeDimension("Year", PivotPlace::kLayers, 1, {"2023", "2024"}));
  table.dimensions.push_back(makeDimension("Region", PivotPlace::kRows, 1, {"North"}));
  addCell(table, {0, 0}, numberCell(1));
  addCell(table, {1, 0}, numberCell(2));
  table.dimensions[0].shownLeaf = 1;
  return table;
}

TEST(TableLayout, LayersAreTheChosenOneTheFirstOrAll) {
  const PivotTable table = layeredTable();
  const auto layers = [&](ShownLayers shown) {
    LayoutOptions options;
    options.layers = shown;
    std::string names;
    for (const std::string& line : drawn(table, options)) {
      if (line.starts_with("grid")) names += line.substr(4);
    }
    return names;
  };
  EXPECT_EQ(layers(ShownLayers::kAsChosen), " 2024");
  EXPECT_EQ(layers(ShownLayers::kFirst), " 2024");
  EXPECT_EQ(layers(ShownLayers::kAll), " 2023 2024");
}

TEST(TableLayout, LabelsAreNestedWhereTheyStandInOrOverOthers) {
  const auto isNested = [](const PivotTable& table) {
    TableLayout layout(table);
    return GridRows(layout, 0).hasNestedLabels();
  };
  PivotTable table;
  table.dimensions.push_back(makeDimension("Region", PivotPlace::kRows, 1, {"North", "South"}));
  table.dimensions.push_back(makeDimension("Year", PivotPlace::kColumns, 1, {"2023", "2024"}));
  EXPECT_FALSE(isNested(table)) << "the label of a dimension stands over everything";
  PivotTable twoInRows = table;
  twoInRows.dimensions.push_back(makeDimension("City", PivotPlace::kRows, 2, {"Kiel", "Ulm"}));
  EXPECT_TRUE(isNested(twoInRows));
  PivotTable twoInColumns = table;
  twoInColumns.dimensions.push_back(
      makeDimension("Statistic", PivotPlace::kColumns, 2, {"Mean", "Count"}));
  EXPECT_TRUE(isNested(twoInColumns));
}

TEST(TableLayout, WhatARowHadIsGoneInTheNext) {
  PivotTable table;
  table.dimensions.push_back(makeDimension("Region", PivotPlace::kRows, 1, {"North", "South"}));
  addCell(table, {0}, numberCell(1)).notes.push_back(textCell("a note"));
  addCell(table, {1}, textCell("text"));
  TableLayout layout(table);
  GridRows rows(layout, 0);
  for (int i = 0; i < rows.grid().headerRows + 2; ++i) ASSERT_TRUE(rows.next());
  ASSERT_EQ(rows.cells().size(), 2U);
  const GridCell& cell = rows.cells()[1];
  EXPECT_EQ(cell.text, "text");
  EXPECT_TRUE(cell.notes.empty());
  EXPECT_FALSE(cell.isNumber);
  EXPECT_EQ(cell.alignment, CellAlignment::kLeft);
  EXPECT_FALSE(rows.next());
}

}  // namespace
}  // namespace vornwout
