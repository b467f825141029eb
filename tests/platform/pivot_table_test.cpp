// The data model of a finished table.
#include "platform/pivot/pivot_table.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

PivotCategory node(int parent, int leaf) {
  PivotCategory category;
  category.parent = parent;
  category.isGroup = leaf < 0;
  category.leaf = leaf;
  return category;
}

PivotDimension dimensionOf(std::vector<PivotCategory> categories) {
  PivotDimension dimension;
  for (const PivotCategory& category : categories) dimension.leafCount += category.isGroup ? 0 : 1;
  dimension.categories = std::move(categories);
  return dimension;
}

TEST(PivotDimensionPlace, FollowsThePosition) {
  struct Case {
    std::optional<PivotPosition> position;
    PivotPlace place;
  };
  const Case cases[] = {
      {std::nullopt, PivotPlace::kRows},
      {PivotPosition{0, 1, false, false}, PivotPlace::kRows},
      {PivotPosition{1, 1, false, false}, PivotPlace::kColumns},
      {PivotPosition{2, 1, false, false}, PivotPlace::kLayers},
      {PivotPosition{3, 1, false, false}, PivotPlace::kRows},
      {PivotPosition{-1, 1, false, false}, PivotPlace::kRows},
  };
  for (const Case& c : cases) {
    PivotDimension dimension;
    dimension.position = c.position;
    EXPECT_EQ(dimension.place(), c.place);
  }
}

TEST(CategoryPath, LeadsFromTheOutermostGroupToTheLeaf) {
  // a, G1{ b, G2{ c } }, d
  const PivotDimension dimension =
      dimensionOf({node(-1, 0), node(-1, -1), node(1, 1), node(1, -1), node(3, 2), node(-1, 3)});
  EXPECT_EQ(categoryPath(dimension, 0), (std::vector<int>{0}));
  EXPECT_EQ(categoryPath(dimension, 1), (std::vector<int>{1, 2}));
  EXPECT_EQ(categoryPath(dimension, 2), (std::vector<int>{1, 3, 4}));
  EXPECT_EQ(categoryPath(dimension, 3), (std::vector<int>{5}));
}

TEST(CategoryPath, IsEmptyForALeafThatIsNotThere) {
  const PivotDimension dimension = dimensionOf({node(-1, 0), node(-1, -1)});
  for (const int leaf : {-1, 1, 2, 1000})
    EXPECT_TRUE(categoryPath(dimension, leaf).empty()) << leaf;
  EXPECT_TRUE(categoryPath(PivotDimension(), 0).empty());
}

TEST(CategoryPath, IsEmptyForGroupsInARing) {
  EXPECT_TRUE(categoryPath(dimensionOf({node(0, 0)}), 0).empty());
  EXPECT_TRUE(categoryPath(dimensionOf({node(1, -1), node(0, 0)}), 0).empty());
}

// Every arrangement of groups and leaves up to nine nodes, against a plain search.
TEST(CategoryPath, FindsEveryLeafInEveryArrangement) {
  for (int size = 1; size <= 9; ++size) {
    for (unsigned kinds = 0; kinds < 1U << static_cast<unsigned>(size); ++kinds) {
      std::vector<PivotCategory> categories;
      std::vector<int> positions;
      int lastGroup = -1;
      for (int i = 0; i < size; ++i) {
        const bool isGroup = ((kinds >> static_cast<unsigned>(i)) & 1U) != 0;
        categories.push_back(node(lastGroup, isGroup ? -1 : static_cast<int>(positions.size())));
        if (isGroup) {
          lastGroup = i;
        } else {
          positions.push_back(i);
        }
      }
      const PivotDimension dimension = dimensionOf(categories);
      for (std::size_t leaf = 0; leaf < positions.size(); ++leaf) {
        const std::vector<int> path = categoryPath(dimension, static_cast<int>(leaf));
        ASSERT_FALSE(path.empty()) << size << ' ' << kinds << ' ' << leaf;
        ASSERT_EQ(path.back(), positions[leaf]) << size << ' ' << kinds << ' ' << leaf;
      }
      EXPECT_TRUE(categoryPath(dimension, dimension.leafCount).empty());
    }
  }
}

}  // namespace
}  // namespace vornwout
