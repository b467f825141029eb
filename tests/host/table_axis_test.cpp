#include "host/layout/table_axis.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

PivotTable tableOf(std::vector<PivotDimension> dimensions) {
  PivotTable table;
  table.dimensions = std::move(dimensions);
  return table;
}

PivotCell cellAt(std::vector<int> at) {
  PivotCell cell;
  cell.at = std::move(at);
  return cell;
}

TEST(TableAxis, WithoutDimensionsHasOneCombination) {
  const PivotTable table;
  const TableAxis axis(table, PivotPlace::kRows);
  EXPECT_EQ(axis.combinations(), 1u);
  EXPECT_EQ(axis.keyOf(cellAt({})), 0u);
  EXPECT_TRUE(axis.header({0}, true, true).empty());
}

TEST(TableAxis, TakesTheDimensionsOfItsPlaceInTheOrderOfTheirIndex) {
  const PivotTable table = tableOf({makeDimension("inner", PivotPlace::kRows, 2, {"a", "b", "c"}),
                                    makeDimension("columns", PivotPlace::kColumns, 1, {"x"}),
                                    makeDimension("outer", PivotPlace::kRows, 1, {"p", "q"})});
  const TableAxis axis(table, PivotPlace::kRows);
  ASSERT_EQ(axis.dimensions().size(), 2u);
  EXPECT_EQ(axis.dimensions()[0].index(), 2u);
  EXPECT_EQ(axis.dimensions()[1].index(), 0u);
  EXPECT_EQ(axis.combinations(), 6u);
  EXPECT_EQ(axis.keyOf(cellAt({2, 0, 1})), 5u);
  EXPECT_EQ(axis.rankIn(5, 0), 1u);
  EXPECT_EQ(axis.rankIn(5, 1), 2u);
}

TEST(TableAxis, DimensionWithoutCategoriesLeavesNoCombination) {
  const PivotTable table = tableOf({makeDimension("a", PivotPlace::kRows, 1, {"x"}),
                                    makeDimension("b", PivotPlace::kRows, 2, {})});
  EXPECT_EQ(TableAxis(table, PivotPlace::kRows).combinations(), 0u);
}

TEST(TableAxis, GroupsStandTogetherWhateverTheOrderOfCreation) {
  PivotDimension dimension = makeDimension("d", PivotPlace::kRows, 1, {});
  const int first = addGroup(dimension, "first");
  addLeaf(dimension, "1", first);
  const int second = addGroup(dimension, "second");
  addLeaf(dimension, "2", second);
  addLeaf(dimension, "3", first);
  const PivotTable table = tableOf({dimension});
  const TableAxis axis(table, PivotPlace::kRows);
  EXPECT_EQ(axis.keyOf(cellAt({0})), 0u);
  EXPECT_EQ(axis.keyOf(cellAt({2})), 1u);
  EXPECT_EQ(axis.keyOf(cellAt({1})), 2u);
  const std::vector<AxisLine> header = axis.header({0, 1, 2}, false, false);
  ASSERT_EQ(header.size(), 2u);
  ASSERT_EQ(header[0].labels.size(), 2u);
  EXPECT_EQ(header[0].labels[0].text->text, "first");
  EXPECT_EQ(header[0].labels[0].length, 2);
}

TEST(TableAxis, TooManyCombinationsThrow) {
  PivotDimension dimension = makeDimension("d", PivotPlace::kRows, 1, {});
  for (int i = 0; i < 8192; ++i) addLeaf(dimension, "x");
  const PivotTable table = tableOf(std::vector<PivotDimension>(5, dimension));
  EXPECT_THROW(TableAxis(table, PivotPlace::kRows), std::length_error);
}

TEST(TableAxis, BrokenCategoriesThrow) {
  const PivotDimension good = makeDimension("d", PivotPlace::kRows, 1, {"a", "b"});
  std::vector<PivotDimension> broken(7, good);
  broken[0].categories[0].parent = 1;
  broken[1].categories[1].parent = 0;  // a leaf is no group
  broken[2].categories[1].leaf = 0;
  broken[3].categories[1].leaf = 2;
  broken[4].leafCount = 3;
  broken[5].leafCount = 1;
  broken[6].leafCount = -1;
  for (std::size_t i = 0; i < broken.size(); ++i) {
    SCOPED_TRACE(i);
    const PivotTable table = tableOf({broken[i]});
    EXPECT_THROW(TableAxis(table, PivotPlace::kRows), std::invalid_argument);
  }
}

TEST(TableAxis, CellOfAnUnknownCategoryThrows) {
  const PivotTable table = tableOf({makeDimension("d", PivotPlace::kRows, 1, {"a"})});
  const TableAxis axis(table, PivotPlace::kRows);
  EXPECT_THROW(axis.keyOf(cellAt({1})), std::invalid_argument);
  EXPECT_THROW(axis.keyOf(cellAt({-1})), std::invalid_argument);
}

}  // namespace
}  // namespace vornwout
