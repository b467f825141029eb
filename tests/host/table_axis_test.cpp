#include "host/layout/table_axis.h"

#include <cstdint>
#include <stdexcept>
#include <vector>

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

TEST(TableAxis, LabelsKnowTheCategoryWhoseTheyAre) {
  PivotDimension dimension = makeDimension("d", PivotPlace::kRows, 1, {});
  addLeaf(dimension, "leaf", addGroup(dimension, "group"));
  const PivotTable table = tableOf({dimension});
  const auto header = TableAxis(table, PivotPlace::kRows).header({0}, true, false);
  ASSERT_EQ(header.size(), 3u);
  EXPECT_EQ(header[0].labels.at(0).category, nullptr) << "the dimension's own";
  EXPECT_EQ(header[1].labels.at(0).category, &table.dimensions[0].categories[0]);
  EXPECT_EQ(header[2].labels.at(0).category, &table.dimensions[0].categories[1]);
}

TEST(TableAxis, WidthIsThatOfTheLeafOfTheInnermostDimension) {
  PivotDimension inner = makeDimension("inner", PivotPlace::kColumns, 2, {});
  const int group = addGroup(inner, "group");
  inner.categories[0].width = 1;
  addLeaf(inner, "high");
  inner.categories.back().width = 20;
  addLeaf(inner, "deep", group);
  inner.categories.back().width = 30;
  PivotDimension outer = makeDimension("outer", PivotPlace::kColumns, 1, {"p", "q"});
  outer.categories[0].width = 4;
  const PivotTable table = tableOf({inner, outer});
  const TableAxis axis(table, PivotPlace::kColumns);
  std::vector<int> widths;
  for (std::uint64_t key = 0; key < 4; ++key) widths.push_back(axis.widthOf(key));
  EXPECT_EQ(widths, (std::vector<int>{30, 20, 30, 20}));
  EXPECT_EQ(TableAxis(table, PivotPlace::kRows).widthOf(0), 0);
}

TEST(TableAxis, ShownLeafCountsInTheLayersOnly) {
  for (const PivotPlace place : {PivotPlace::kLayers, PivotPlace::kRows}) {
    PivotDimension dimension = makeDimension("d", place, 1, {"a", "b"});
    dimension.shownLeaf = 1;
    const PivotTable table = tableOf({dimension});
    const TableAxis axis(table, place);
    EXPECT_TRUE(axis.shows(cellAt({1})));
    EXPECT_EQ(axis.shows(cellAt({0})), place != PivotPlace::kLayers);
    EXPECT_EQ(axis.firstShownKey(), place == PivotPlace::kLayers ? 1u : 0u);
  }
  PivotDimension wrong = makeDimension("d", PivotPlace::kLayers, 1, {"a"});
  for (const int leaf : {-2, 1}) {
    wrong.shownLeaf = leaf;
    EXPECT_THROW(TableAxis(tableOf({wrong}), PivotPlace::kLayers), std::invalid_argument) << leaf;
  }
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

TEST(TableAxis, TooManyCategoriesInDeepGroupsThrow) {
  PivotDimension dimension = makeDimension("d", PivotPlace::kRows, 1, {});
  for (int depth = 0; depth < 100; ++depth) {
    PivotCategory group;
    group.isGroup = true;
    group.parent = depth - 1;
    dimension.categories.push_back(group);
  }
  for (int leaf = 0; leaf < 700'000; ++leaf) {
    PivotCategory category;
    category.parent = 99;
    category.leaf = dimension.leafCount++;
    dimension.categories.push_back(category);
  }
  const PivotTable table = tableOf({dimension});
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
