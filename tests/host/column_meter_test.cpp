#include "host/export/text/column_meter.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TextCell cell(int column, int width, int span = 1) {
  TextCell result;
  result.column = column;
  result.columnSpan = span;
  result.width = width;
  return result;
}

struct Case {
  const char* condition;
  std::vector<TextCell> cells;
  std::vector<int> widths;
};

class ColumnMeterTest : public testing::TestWithParam<Case> {};

TEST_P(ColumnMeterTest, MeasuresColumns) {
  ColumnMeter meter(GetParam().widths.size(), 3);
  for (const TextCell& each : GetParam().cells) meter.add({&each, 1});
  EXPECT_EQ(meter.widths(), GetParam().widths);
}

INSTANTIATE_TEST_SUITE_P(
    Contents, ColumnMeterTest,
    testing::Values(Case{"NothingIsOneWide", {}, {1, 1}},
                    Case{"WidestCounts", {cell(0, 3), cell(1, 9), cell(0, 7)}, {7, 9}},
                    Case{"LongOneEndsAtTheLimit", {cell(0, 1'000'000)}, {kWidestTextColumn}},
                    Case{"LabelOverWideColumnsChangesNothing",
                         {cell(0, 10), cell(1, 10), cell(0, 23, 2)},
                         {10, 10}},
                    Case{"LabelOverNarrowColumnsWidensThemEvenly",
                         {cell(0, 10), cell(1, 10), cell(0, 26, 2)},
                         {12, 11}},
                    Case{"LongLabelWidensToItsLimitOnly",
                         {cell(0, 500, 2)},
                         {15, 14}},  // 32 with what stands between the two
                    Case{"LabelsOfBothLevelsWiden", {cell(0, 11, 2), cell(0, 24, 3)}, {7, 7, 4}}),
    [](const testing::TestParamInfo<Case>& test) { return test.param.condition; });

}  // namespace
}  // namespace vornwout
