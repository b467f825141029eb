#include "platform/pivot/statistic_kind.h"

#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(StatisticKind, EveryKindIsFoundByItsName) {
  struct Case {
    StatisticKind kind;
    const char* name;
  };
  const Case cases[] = {
      {StatisticKind::kNone, ""},
      {StatisticKind::kCorrelation, "correlation"},
      {StatisticKind::kCount, "count"},
      {StatisticKind::kMean, "mean"},
      {StatisticKind::kMedian, "median"},
      {StatisticKind::kPercent, "percent"},
      {StatisticKind::kResidual, "residual"},
      {StatisticKind::kSignificance, "significance"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(statisticKindName(c.kind), c.name);
    EXPECT_EQ(findStatisticKind(c.name), c.kind) << c.name;
  }
}

TEST(StatisticKind, OtherTextsNameNone) {
  for (const char* text : {"Mean", "MEAN", " mean", "mean ", "means", "none", "average"}) {
    EXPECT_FALSE(findStatisticKind(text).has_value()) << text;
  }
}

}  // namespace
}  // namespace vornwout
