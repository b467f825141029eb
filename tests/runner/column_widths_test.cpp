#include "runner/terminal/column_widths.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Widths = std::vector<int>;

TEST(FitColumns, NaturalWidthsWhereTheyFit) {
  EXPECT_EQ(fitColumns({{5, 5, 1}, {10, 8, 1}}, 15), (Widths{5, 10}));
  EXPECT_EQ(fitColumns({}, 10), Widths{});
}

TEST(FitColumns, WidestAreLoweredFirstAndNothingIsWasted) {
  EXPECT_EQ(fitColumns({{5, 1, 1}, {30, 1, 1}, {20, 1, 1}}, 40), (Widths{5, 18, 17}));
}

TEST(FitColumns, NotBelowTheFloorWhileOthersCanGive) {
  EXPECT_EQ(fitColumns({{20, 20, 1}, {30, 8, 1}}, 30), (Widths{20, 10}));
}

TEST(FitColumns, BelowTheFloorWhenNothingElseHelps) {
  EXPECT_EQ(fitColumns({{20, 20, 1}, {30, 8, 1}}, 10), (Widths{5, 5}));
  EXPECT_EQ(fitColumns({{20, 20, 2}, {30, 8, 1}}, 3), (Widths{2, 1}));
}

TEST(FitColumns, LeastWidthsWhenThereIsNoRoomAtAll) {
  EXPECT_EQ(fitColumns({{20, 20, 2}, {30, 8, 1}}, -4), (Widths{2, 1}));
}

std::vector<std::pair<std::size_t, std::size_t>> panels(const std::vector<ColumnNeed>& columns,
                                                        int available) {
  std::vector<std::pair<std::size_t, std::size_t>> result;
  for (const ColumnPanel& panel : splitColumns(columns, available, 2)) {
    result.emplace_back(panel.first, panel.last);
  }
  return result;
}

using Panels = std::vector<std::pair<std::size_t, std::size_t>>;

TEST(SplitColumns, OnePanelWhereAllFloorsFit) {
  EXPECT_EQ(panels({{50, 8, 1}, {50, 8, 1}}, 20), (Panels{{0, 2}}));
  EXPECT_EQ(panels({}, 20), (Panels{{0, 0}}));
}

TEST(SplitColumns, BrokenTablesKeepComfortableColumns) {
  EXPECT_EQ(panels({{50, 8, 1}, {50, 8, 1}, {5, 5, 1}}, 26), (Panels{{0, 1}, {1, 2}, {2, 3}}));
  EXPECT_EQ(panels({{10, 10, 1}, {10, 10, 1}, {10, 10, 1}}, 24), (Panels{{0, 2}, {2, 3}}));
}

TEST(SplitColumns, PanelHasAtLeastOneColumn) {
  EXPECT_EQ(panels({{50, 50, 1}, {50, 50, 1}}, 0), (Panels{{0, 1}, {1, 2}}));
}

}  // namespace
}  // namespace vornwout
