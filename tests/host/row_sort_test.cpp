#include "host/changes/row_sort.h"

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/changes/change_notes.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/language.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

SortChange byLabel(const std::string& label, bool isAscending = true) {
  SortChange sort;
  sort.label = label;
  sort.isAscending = isAscending;
  return sort;
}

SortChange byPosition(int position, bool isAscending = true) {
  SortChange sort;
  sort.position = position;
  sort.isAscending = isAscending;
  return sort;
}

std::vector<std::string> leafLabels(const PivotDimension& dimension) {
  std::vector<std::string> labels;
  for (const PivotCategory& category : dimension.categories) {
    if (!category.isGroup) labels.push_back(renderText(category.label));
  }
  return labels;
}

/// Every cell with the labels that it stands below: what no change of order may touch.
std::multimap<std::string, std::string> contentOf(const PivotTable& table) {
  std::multimap<std::string, std::string> content;
  for (const PivotCell& cell : table.cells) {
    std::string place;
    for (std::size_t i = 0; i < table.dimensions.size(); ++i) {
      for (const int node : categoryPath(table.dimensions[i], cell.at[i])) {
        place +=
            '/' + renderText(table.dimensions[i].categories[static_cast<std::size_t>(node)].label);
      }
      place += '|';
    }
    content.emplace(place, renderText(cell.value));
  }
  return content;
}

/// A number, a text, or no cell.
using Value = std::variant<std::monostate, double, std::string>;

void addValue(PivotTable& table, std::vector<int> at, const Value& value) {
  if (const auto* number = std::get_if<double>(&value)) {
    addCell(table, std::move(at), numberCell(*number));
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    addCell(table, std::move(at), textCell(*text));
  }
}

/// Rows a, b, c and so on with the values of one column, x.
PivotTable columnOf(const std::vector<Value>& values) {
  PivotTable table;
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < values.size(); ++i) {
    rows.emplace_back(1, static_cast<char>('a' + static_cast<int>(i)));
  }
  table.dimensions = {makeDimension("rows", PivotPlace::kRows, 1, rows),
                      makeDimension("columns", PivotPlace::kColumns, 1, {"x"})};
  for (std::size_t i = 0; i < values.size(); ++i) {
    addValue(table, {static_cast<int>(i), 0}, values[i]);
  }
  return table;
}

std::string sortedRows(PivotTable table, const SortChange& sort) {
  const auto before = contentOf(table);
  sortRows(table, sort);
  EXPECT_EQ(contentOf(table), before);
  std::string rows;
  for (const std::string& label : leafLabels(table.dimensions[0])) rows += label;
  return rows;
}

TEST(RowSort, NumbersThenTextsThenMissingInEitherDirection) {
  static const struct {
    const char* name;
    std::vector<Value> values;
    const char* ascending;
    const char* descending;
  } kCases[] = {
      {"numbers", {3.0, -1.0, 10.0, 2.5}, "bdac", "cadb"},
      {"equal numbers keep their order", {1.0, 0.0, 1.0, 0.0}, "bdac", "acbd"},
      {"zeros are equal", {0.0, -0.0, -1.0}, "cab", "abc"},
      {"texts", {"pear", "apple", "Zoo"}, "bac", "cab"},
      {"small and capital letters", {"b", "A", "a", "B"}, "cbad", "dabc"},
      {"accents", {"z", "é", "e", "f"}, "cbda", "adbc"},
      {"equal texts keep their order", {"b", "a", "b"}, "bac", "acb"},
      {"numbers before texts", {"1", 5.0, "0", 7.0}, "bdca", "dbac"},
      {"no cell", {2.0, Value(), 1.0}, "cab", "acb"},
      {"not finite", {kNaN, 2.0, std::numeric_limits<double>::infinity(), 1.0}, "dbac", "bdac"},
      {"empty text", {"", "a"}, "ba", "ba"},
      {"missing keep their order", {Value(), kNaN, "", 1.0}, "dabc", "dabc"},
      {"all missing", {kNaN, Value(), ""}, "abc", "abc"},
  };
  for (const auto& entry : kCases) {
    SCOPED_TRACE(entry.name);
    const PivotTable table = columnOf(entry.values);
    EXPECT_EQ(sortedRows(table, byLabel("x")), entry.ascending);
    EXPECT_EQ(sortedRows(table, byLabel("x", false)), entry.descending);
  }
}

TEST(RowSort, TextsWithArgumentsAreSortedAsTheyAreShown) {
  PivotTable table = columnOf({Value(), "m"});
  CellText composite;
  composite.kind = CellText::Kind::kComposite;
  composite.text = "^1";
  composite.arguments = {textCell("z")};
  addCell(table, {0, 0}, composite);
  EXPECT_EQ(sortedRows(table, byLabel("x")), "ba");
  table.cells.back().value.arguments = {textCell("")};
  EXPECT_EQ(sortedRows(table, byLabel("x")), "ba") << "an empty text is missing";
}

TEST(RowSort, TextsAreInTheOrderOfTheCurrentLanguage) {
  const PivotTable table = columnOf({"lz", "ła"});
  EXPECT_EQ(sortedRows(table, byLabel("x")), "ba");
  const ScopedLanguage polish("pl");
  EXPECT_EQ(sortedRows(table, byLabel("x")), "ab");
}

TEST(RowSort, LongTextsAreComparedWhole) {
  const std::string same(2000, 'k');
  EXPECT_EQ(sortedRows(columnOf({same + "b", same + "a"}), byLabel("x")), "ba");
}

/// Rows a to c; columns outer p, q and inner x, y.
PivotTable nestedColumns() {
  PivotTable table;
  table.dimensions = {makeDimension("rows", PivotPlace::kRows, 1, {"a", "b", "c"}),
                      makeDimension("inner", PivotPlace::kColumns, 2, {"x", "y"}),
                      makeDimension("outer", PivotPlace::kColumns, 1, {"p", "q"})};
  //                             px py qx qy
  const int values[3][4] = {{2, 1, 3, 3}, {1, 3, 1, 2}, {3, 2, 2, 1}};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) {
      addCell(table, {row, column % 2, column / 2}, numberCell(values[row][column]));
    }
  }
  return table;
}

TEST(RowSort, ColumnIsNamedByLabelOrCountedAsShown) {
  static const struct {
    const char* name;
    SortChange sort;
    const char* rows;
  } kCases[] = {
      {"position 1", byPosition(1), "bac"},
      {"position 2", byPosition(2), "acb"},
      {"position 3", byPosition(3), "bca"},
      {"position 4", byPosition(4), "cba"},
      {"beyond", byPosition(5), "abc"},
      {"far beyond", byPosition(std::numeric_limits<int>::max()), "abc"},
      {"0", byPosition(0), "abc"},
      {"none", byPosition(-1), "abc"},
      {"inner label: the first column", byLabel("y"), "acb"},
      {"outer label: the first column", byLabel("q"), "bca"},
      {"no label", byLabel("z"), "abc"},
      {"a dimension is no column", byLabel("inner"), "abc"},
      {"a row is no column", byLabel("a"), "abc"},
  };
  for (const auto& entry : kCases) {
    SCOPED_TRACE(entry.name);
    EXPECT_EQ(sortedRows(nestedColumns(), entry.sort), entry.rows);
  }
}

TEST(RowSort, LabelStandsBeforePosition) {
  SortChange sort = byLabel("q");
  sort.position = 4;
  EXPECT_EQ(sortedRows(nestedColumns(), sort), "bca");
}

TEST(RowSort, LabelMeansTheFirstColumnThatHasCells) {
  PivotTable table = nestedColumns();
  std::erase_if(table.cells,
                [](const PivotCell& cell) { return cell.at[1] == 1 && cell.at[2] == 0; });
  EXPECT_EQ(sortedRows(table, byLabel("y")), "cba");
  EXPECT_EQ(sortedRows(table, byPosition(2)), "abc") << "the empty column is shown and counts";
}

TEST(RowSort, GroupLabelMeansTheFirstColumnBelowIt) {
  PivotTable table;
  PivotDimension columns = makeDimension("columns", PivotPlace::kColumns, 1, {"x"});
  const int outer = addGroup(columns, "outer");
  const int inner = addGroup(columns, "inner", outer);
  addLeaf(columns, "y", inner);
  addLeaf(columns, "z", inner);
  addGroup(columns, "empty");
  table.dimensions = {makeDimension("rows", PivotPlace::kRows, 1, {"a", "b", "c"}), columns};
  const int values[3][3] = {{1, 2, 3}, {2, 3, 2}, {3, 1, 1}};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      addCell(table, {row, column}, numberCell(values[row][column]));
    }
  }
  EXPECT_EQ(sortedRows(table, byLabel("inner")), "cab");
  EXPECT_EQ(sortedRows(table, byLabel("outer")), "cab");
  EXPECT_EQ(sortedRows(table, byLabel("z")), "cba");
  EXPECT_EQ(sortedRows(table, byLabel("empty")), "abc");
}

TEST(RowSort, EmptyColumnsOfATooLargeTableDoNotCount) {
  PivotTable table;
  PivotDimension outer = makeDimension("outer", PivotPlace::kColumns, 1, {});
  for (int i = 0; i < 1100; ++i) addLeaf(outer, std::to_string(i));
  PivotDimension inner = outer;
  inner.position->index = 2;
  table.dimensions = {makeDimension("rows", PivotPlace::kRows, 1, {"a", "b", "c"}), outer, inner};
  const int values[2][3] = {{3, 1, 2}, {2, 3, 1}};
  for (int row = 0; row < 3; ++row) {
    addCell(table, {row, 7, 9}, numberCell(values[0][row]));
    addCell(table, {row, 1000, 3}, numberCell(values[1][row]));
  }
  EXPECT_EQ(sortedRows(table, byPosition(1)), "bca");
  EXPECT_EQ(sortedRows(table, byPosition(2)), "cab");
  EXPECT_EQ(sortedRows(table, byPosition(3)), "abc");
}

TEST(RowSort, TableWithoutColumnDimensionsHasOneColumn) {
  PivotTable table;
  table.dimensions = {makeDimension("rows", PivotPlace::kRows, 1, {"a", "b"})};
  addCell(table, {0}, numberCell(2));
  addCell(table, {1}, numberCell(1));
  EXPECT_EQ(sortedRows(table, byPosition(1)), "ba");
  EXPECT_EQ(sortedRows(table, byPosition(2)), "ab");
}

TEST(RowSort, CategoriesMoveWithinTheirGroupAndGroupsStay) {
  PivotDimension rows = makeDimension("rows", PivotPlace::kRows, 1, {"top"});
  const int first = addGroup(rows, "first");
  addLeaf(rows, "a", first);
  addLeaf(rows, "b", first);
  const int second = addGroup(rows, "second");
  addLeaf(rows, "c", second);
  addLeaf(rows, "d", first);  // made between those of another group
  addLeaf(rows, "e", second);
  addLeaf(rows, "bottom");
  PivotTable table;
  table.dimensions = {rows, makeDimension("columns", PivotPlace::kColumns, 1, {"x"})};
  const double values[] = {9, 3, 2, 8, 1, 7, 0};
  for (int i = 0; i < 7; ++i) addCell(table, {i, 0}, numberCell(values[i]));
  const auto before = contentOf(table);
  EXPECT_TRUE(sortRows(table, byLabel("x")));
  EXPECT_EQ(contentOf(table), before);
  EXPECT_THAT(leafLabels(table.dimensions[0]),
              ElementsAre("bottom", "d", "b", "e", "a", "c", "top"));
  EXPECT_EQ(table.dimensions[0].categories[1].label.text, "first");
  EXPECT_EQ(table.dimensions[0].categories[4].label.text, "second");
}

TEST(RowSort, WhatIsKnownOfACategoryMovesWithIt) {
  PivotTable table = columnOf({2.0, 1.0});
  table.dimensions[0].categories[1].statistic = StatisticKind::kMean;
  table.dimensions[0].categories[1].look.edit([](TextLook& look) { look.bold = true; });
  const PivotCategory moved = table.dimensions[0].categories[1];
  EXPECT_TRUE(sortRows(table, byLabel("x")));
  EXPECT_EQ(table.dimensions[0].categories[0].statistic, moved.statistic);
  EXPECT_EQ(table.dimensions[0].categories[0].look, moved.look);
}

TEST(RowSort, LeavesStayNumberedInTheOrderInWhichTheyStand) {
  PivotTable table = columnOf({3.0, 1.0, 2.0});
  EXPECT_TRUE(sortRows(table, byLabel("x")));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(table.dimensions[0].categories[static_cast<std::size_t>(i)].leaf, i);
  }
  EXPECT_EQ(table.cells[0].at[0], 2);
  EXPECT_EQ(table.cells[1].at[0], 0);
  EXPECT_EQ(table.cells[2].at[0], 1);
}

/// Rows outer p, q (in this order) and inner a, b, c; column x.
PivotTable nestedRows(const std::vector<Value>& first, const std::vector<Value>& second) {
  PivotTable table;
  table.dimensions = {makeDimension("inner", PivotPlace::kRows, 2, {"a", "b", "c"}),
                      makeDimension("outer", PivotPlace::kRows, 1, {"p", "q"}),
                      makeDimension("columns", PivotPlace::kColumns, 1, {"x"})};
  for (int i = 0; i < 3; ++i) {
    addValue(table, {i, 0, 0}, first[static_cast<std::size_t>(i)]);
    addValue(table, {i, 1, 0}, second[static_cast<std::size_t>(i)]);
  }
  return table;
}

TEST(RowSort, NestedRowsAreSortedByTheFirstBlockWithAValue) {
  static const struct {
    const char* name;
    std::vector<Value> first;
    std::vector<Value> second;
    const char* rows;
  } kCases[] = {
      {"first block", {2.0, 3.0, 1.0}, {1.0, 2.0, 3.0}, "cab"},
      {"missing in the first block", {2.0, Value(), 1.0}, {1.0, 0.0, 3.0}, "cab"},
      {"no cells in the first block", {Value(), Value(), Value()}, {3.0, 1.0, 2.0}, "bca"},
      {"no values in the first block", {kNaN, "", kNaN}, {3.0, 1.0, 2.0}, "bca"},
  };
  for (const auto& entry : kCases) {
    SCOPED_TRACE(entry.name);
    PivotTable table = nestedRows(entry.first, entry.second);
    EXPECT_EQ(sortedRows(table, byLabel("x")), entry.rows);
    sortRows(table, byLabel("x"));
    EXPECT_THAT(leafLabels(table.dimensions[1]), ElementsAre("p", "q"));
  }
}

TEST(RowSort, LayersAreSortedByTheFirstOneShown) {
  PivotTable table = columnOf({});
  table.dimensions = {makeDimension("rows", PivotPlace::kRows, 1, {"a", "b", "c"}),
                      makeDimension("columns", PivotPlace::kColumns, 1, {"x"}),
                      makeDimension("layer", PivotPlace::kLayers, 1, {"u", "v", "w"})};
  const int values[2][3] = {{2, 3, 1}, {3, 1, 2}};
  for (int row = 0; row < 3; ++row) {
    addCell(table, {row, 0, 1}, numberCell(values[0][row]));
    addCell(table, {row, 0, 2}, numberCell(values[1][row]));
  }
  EXPECT_EQ(sortedRows(table, byLabel("x")), "cab") << "u has no cells";
  EXPECT_EQ(sortedRows(table, byPosition(1)), "cab");
  table.dimensions[2].shownLeaf = 2;
  EXPECT_EQ(sortedRows(table, byLabel("x")), "bca");
  EXPECT_EQ(sortedRows(table, byPosition(1)), "bca");
  table.dimensions[2].shownLeaf = 0;
  EXPECT_EQ(sortedRows(table, byLabel("x")), "abc");
}

TEST(RowSort, TableWithoutRowsOrCellsStays) {
  PivotTable none;
  EXPECT_FALSE(sortRows(none, byPosition(1)));
  PivotTable empty = columnOf({Value(), Value()});
  EXPECT_FALSE(sortRows(empty, byPosition(1)));
  PivotTable columnsOnly;
  columnsOnly.dimensions = {makeDimension("columns", PivotPlace::kColumns, 1, {"x"})};
  addCell(columnsOnly, {0}, numberCell(1));
  EXPECT_FALSE(sortRows(columnsOnly, byPosition(1)));
}

TEST(RowSort, TableThatCannotBeLaidOutIsRefused) {
  std::vector<PivotTable> tables(5, columnOf({2.0, 1.0}));
  tables[0].cells[0].at = {0};
  tables[1].cells[0].at = {2, 0};
  tables[2].cells[0].at = {0, 1};
  tables[3].dimensions[0].categories[0].parent = 1;
  for (int i = 0; i < 5; ++i) {
    PivotDimension huge = makeDimension("d", PivotPlace::kLayers, 1, {});
    for (int leaf = 0; leaf < 8192; ++leaf) addLeaf(huge, "x");
    tables[4].dimensions.push_back(huge);
    for (PivotCell& cell : tables[4].cells) cell.at.push_back(0);
  }
  for (std::size_t i = 0; i < tables.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_THROW(sortRows(tables[i], byPosition(1)), ChangeError);
  }
}

TEST(RowSort, CellOfAnUnknownRowInAnotherLayerIsRefused) {
  PivotTable table = columnOf({2.0, 1.0});
  table.dimensions.push_back(makeDimension("layer", PivotPlace::kLayers, 1, {"u", "v"}));
  for (PivotCell& cell : table.cells) cell.at.push_back(0);
  addCell(table, {7, 0, 1}, numberCell(1));
  EXPECT_THROW(sortRows(table, byPosition(1)), ChangeError);
}

/// A table of any form; labels are unique within a dimension.
PivotTable anyTable(std::mt19937& random) {
  const auto upTo = [&](int last) {
    return static_cast<int>(random() % (static_cast<unsigned int>(last) + 1));
  };
  PivotTable table;
  const int dimensions = 1 + upTo(4);
  for (int d = 0; d < dimensions; ++d) {
    PivotDimension dimension =
        makeDimension("d", static_cast<PivotPlace>(upTo(5) % 3), 1 + upTo(2), {});
    std::vector<int> groups = {-1};
    for (int i = 1 + upTo(6); i > 0; --i) {
      const int parent =
          groups[static_cast<std::size_t>(upTo(static_cast<int>(groups.size()) - 1))];
      const std::string label = std::to_string(dimension.categories.size());
      if (upTo(3) == 0) {
        groups.push_back(addGroup(dimension, label, parent));
      } else {
        addLeaf(dimension, label, parent);
      }
    }
    if (dimension.leafCount == 0) addLeaf(dimension, "only");
    if (dimension.place() == PivotPlace::kLayers && upTo(2) == 0) dimension.shownLeaf = 0;
    table.dimensions.push_back(std::move(dimension));
  }
  std::map<std::vector<int>, bool> places;
  for (int i = upTo(60); i > 0; --i) {
    std::vector<int> at;
    for (const PivotDimension& dimension : table.dimensions) {
      at.push_back(upTo(dimension.leafCount - 1));
    }
    if (!places.emplace(at, true).second) continue;
    const int kind = upTo(5);
    addCell(table, at,
            kind == 0   ? textCell(std::string(1, static_cast<char>('a' + upTo(3))))
            : kind == 1 ? numberCell(std::numeric_limits<double>::infinity())
                        : numberCell(upTo(4)));
  }
  return table;
}

TEST(RowSort, AnyTableIsPermutedOnceAndKeepsItsContent) {
  std::mt19937 random(7);
  int moved = 0;
  for (int i = 0; i < 3000; ++i) {
    SCOPED_TRACE(i);
    const PivotTable before = anyTable(random);
    const bool isAscending = random() % 2 == 0;
    const SortChange sort = random() % 2 == 0
                                ? byPosition(static_cast<int>(random() % 6), isAscending)
                                : byLabel(std::to_string(random() % 6), isAscending);
    PivotTable once = before;
    const bool changed = sortRows(once, sort);
    moved += changed ? 1 : 0;
    EXPECT_EQ(changed, once != before);
    EXPECT_EQ(contentOf(once), contentOf(before));
    for (std::size_t d = 0; d < before.dimensions.size(); ++d) {
      EXPECT_THAT(leafLabels(once.dimensions[d]),
                  testing::UnorderedElementsAreArray(leafLabels(before.dimensions[d])));
    }
    PivotTable twice = once;
    EXPECT_FALSE(sortRows(twice, sort));
    EXPECT_EQ(twice, once);
  }
  EXPECT_GT(moved, 200);
}

TEST(RowSort, RowsWithEqualValuesKeepTheirOrder) {
  std::mt19937 random(8);
  for (int i = 0; i < 200; ++i) {
    PivotTable table;
    PivotDimension rows = makeDimension("rows", PivotPlace::kRows, 1, {});
    std::vector<std::pair<int, int>> expected;
    for (int row = 0; row < 30; ++row) {
      addLeaf(rows, std::to_string(row));
      expected.emplace_back(static_cast<int>(random() % 4), row);
    }
    table.dimensions = {rows};
    for (const auto& [value, row] : expected) addCell(table, {row}, numberCell(value));
    const bool isAscending = random() % 2 == 0;
    sortRows(table, byPosition(1, isAscending));
    for (auto& [value, row] : expected) value = isAscending ? value : -value;
    std::sort(expected.begin(), expected.end());
    std::vector<std::string> labels;
    for (const auto& [value, row] : expected) labels.push_back(std::to_string(row));
    EXPECT_THAT(leafLabels(table.dimensions[0]), ElementsAreArray(labels));
  }
}

}  // namespace
}  // namespace vornwout
