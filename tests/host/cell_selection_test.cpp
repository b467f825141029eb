#include "host/changes/cell_selection.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/changes/change_notes.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using Edit = std::function<void(CellsChange&)>;

/// Selected cells by their index, labels by their text, columns by that of their leaf.
std::string drawn(const PivotTable& table, const CellSelection& selection) {
  std::string result;
  const auto add = [&](const std::string& word) { result += (result.empty() ? "" : " ") + word; };
  for (const std::uint32_t cell : selection.cells) add(std::to_string(cell));
  const auto text = [&](const CellSelection::Label& label) {
    return table.dimensions[label.dimension].categories[label.category].label.text;
  };
  for (const CellSelection::Label& label : selection.labels) add(text(label));
  result += selection.columns.empty() ? "" : " |";
  for (const CellSelection::Label& label : selection.columns) add(text(label));
  if (selection.title) add("(title)");
  if (selection.caption) add("(caption)");
  if (selection.footnotes) add("(footnotes)");
  return result;
}

std::string selected(const PivotTable& table, const Edit& edit) {
  CellsChange change;
  edit(change);
  return drawn(table, CellSelector(change).select(table));
}

/// Rows North (a, b) and Total, columns Count and Tests (Sig, Mean): cells 0 to 8 in reading order.
PivotTable simpleTable() {
  PivotTable table;
  table.title = textCell("title");
  PivotDimension rows = makeDimension("Region", PivotPlace::kRows, 1, {});
  const int north = addGroup(rows, "North");
  addLeaf(rows, "a", north);
  addLeaf(rows, "b", north);
  addLeaf(rows, "Total");
  PivotDimension columns = makeDimension("Statistics", PivotPlace::kColumns, 1, {"Count"});
  columns.categories[0].statistic = StatisticKind::kCount;
  const int tests = addGroup(columns, "Tests");
  addLeaf(columns, "Sig", tests);
  columns.categories.back().statistic = StatisticKind::kSignificance;
  addLeaf(columns, "Mean", tests);
  columns.categories.back().statistic = StatisticKind::kMean;
  table.dimensions = {rows, columns};
  const double values[] = {10, 0.5, 3, 20, 0.01, 3, 30, 0, 7};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      addCell(table, {row, column}, numberCell(values[row * 3 + column]));
    }
  }
  return table;
}

/// Columns Year (Y1, Y2) around n and pct, rows a and b, layers A and B; cells 0 to 15 by layer,
/// then in reading order.
PivotTable nestedTable() {
  PivotTable table;
  table.dimensions = {makeDimension("Measure", PivotPlace::kColumns, 2, {"n", "pct"}),
                      makeDimension("Layer", PivotPlace::kLayers, 1, {"A", "B"}),
                      makeDimension("Year", PivotPlace::kColumns, 1, {"Y1", "Y2"}),
                      makeDimension("Row", PivotPlace::kRows, 1, {"a", "b"})};
  table.dimensions[0].categories[1].statistic = StatisticKind::kPercent;
  table.dimensions[1].categories[1].statistic = StatisticKind::kResidual;
  for (int layer = 0; layer < 2; ++layer) {
    for (int row = 0; row < 2; ++row) {
      for (int year = 0; year < 2; ++year) {
        for (int measure = 0; measure < 2; ++measure) {
          addCell(table, {measure, layer, year, row},
                  numberCell(static_cast<double>(table.cells.size())));
        }
      }
    }
  }
  return table;
}

constexpr auto kColumns = CellsChange::Dimension::kColumns;
constexpr auto kRows = CellsChange::Dimension::kRows;

struct SelectionCase {
  const char* name;
  Edit edit;
  const char* expected;
};

void PrintTo(const SelectionCase& c, std::ostream* stream) { *stream << c.name; }

std::string nameOf(const testing::TestParamInfo<SelectionCase>& info) { return info.param.name; }

class SimpleSelectionTest : public testing::TestWithParam<SelectionCase> {};

TEST_P(SimpleSelectionTest, WhatIsMeantIsSelected) {
  EXPECT_EQ(selected(simpleTable(), GetParam().edit), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Select, SimpleSelectionTest,
    testing::Values(
        SelectionCase{"Nothing", [](CellsChange&) {}, ""},
        SelectionCase{"Body", [](CellsChange& c) { c.body = true; },
                      "0 1 2 3 4 5 6 7 8 | Count Sig Mean"},
        SelectionCase{"Kind", [](CellsChange& c) { c.significance = true; }, "1 4 7 | Sig"},
        SelectionCase{"TwoKinds", [](CellsChange& c) { c.count = c.mean = true; },
                      "0 2 3 5 6 8 | Count Mean"},
        SelectionCase{"KindThatIsNotThere", [](CellsChange& c) { c.median = true; }, ""},
        SelectionCase{"KindOfRows", [](CellsChange& c) { c.mean = true, c.dimension = kRows; }, ""},
        SelectionCase{"KindOfColumns",
                      [](CellsChange& c) { c.mean = true, c.dimension = kColumns; },
                      "2 5 8 | Mean"},
        SelectionCase{"RowLabel", [](CellsChange& c) { c.labels = {"Total"}; },
                      "6 7 8 | Count Sig Mean"},
        SelectionCase{"GroupLabel", [](CellsChange& c) { c.labels = {"Tests"}; },
                      "1 2 4 5 7 8 | Sig Mean"},
        SelectionCase{"TwoLabels",
                      [](CellsChange& c) {
                        c.labels = {"b", "Count"};
                      },
                      "0 3 4 5 6 | Count Sig Mean"},
        SelectionCase{"LabelOfTheOtherSide",
                      [](CellsChange& c) { c.labels = {"Total"}, c.dimension = kColumns; }, ""},
        SelectionCase{"LabelThatIsNotThere",
                      [](CellsChange& c) {
                        c.labels = {"total", "Nort"};
                      },
                      ""},
        SelectionCase{"LabelOfTheDimension", [](CellsChange& c) { c.labels = {"Region"}; }, ""},
        SelectionCase{"ColumnPosition",
                      [](CellsChange& c) { c.positions = {2}, c.dimension = kColumns; },
                      "1 4 7 | Sig"},
        SelectionCase{"RowPosition", [](CellsChange& c) { c.positions = {3}, c.dimension = kRows; },
                      "6 7 8 | Count Sig Mean"},
        SelectionCase{"PositionOfBoth", [](CellsChange& c) { c.positions = {1}; },
                      "0 1 2 3 6 | Count Sig Mean"},
        SelectionCase{"PositionsBeyond",
                      [](CellsChange& c) {
                        c.positions = {0, -1, 4, 1000000};
                      },
                      ""},
        SelectionCase{"Headers", [](CellsChange& c) { c.headers = true; },
                      "North a b Total Count Tests Sig Mean | Count Sig Mean"},
        SelectionCase{"HeadersOfRows",
                      [](CellsChange& c) { c.headers = true, c.dimension = kRows; },
                      "North a b Total"},
        SelectionCase{"Title", [](CellsChange& c) { c.title = true; }, "(title)"},
        SelectionCase{"NoCaptionOrFootnotes",
                      [](CellsChange& c) { c.caption = c.footnotes = true; }, ""}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Conditions, SimpleSelectionTest,
    testing::Values(
        SelectionCase{"All", [](CellsChange& c) { c.significance = true, c.conditions = {"all"}; },
                      "1 4 7 | Sig"},
        SelectionCase{"Expression",
                      [](CellsChange& c) { c.significance = true, c.conditions = {"x<0.05"}; },
                      "4 7 | Sig"},
        SelectionCase{"Alternatives",
                      [](CellsChange& c) {
                        c.body = true, c.conditions = {"x=0", "top(1)"};
                      },
                      "6 7 | Count Sig"},
        SelectionCase{"AllAmongOthers",
                      [](CellsChange& c) {
                        c.count = true, c.conditions = {"x=10", "all"};
                      },
                      "0 3 6 | Count"},
        SelectionCase{"Top", [](CellsChange& c) { c.body = true, c.conditions = {"top(2)"}; },
                      "3 6 | Count"},
        SelectionCase{"TopTie", [](CellsChange& c) { c.mean = true, c.conditions = {"TOP(2)"}; },
                      "2 8 | Mean"},
        SelectionCase{"Bottom", [](CellsChange& c) { c.body = true, c.conditions = {"bottom(2)"}; },
                      "4 7 | Sig"},
        SelectionCase{"BottomTie",
                      [](CellsChange& c) { c.mean = true, c.conditions = {"bottom(1)"}; },
                      "2 | Mean"},
        SelectionCase{
            "TopOfMoreThanThereAre",
            [](CellsChange& c) { c.mean = true, c.conditions = {"top(99999999999999999999999)"}; },
            "2 5 8 | Mean"},
        SelectionCase{"NothingIsMissing",
                      [](CellsChange& c) { c.body = true, c.conditions = {"missing"}; }, ""},
        SelectionCase{
            "HeadersOfNoCell",
            [](CellsChange& c) { c.headers = true, c.dimension = kRows, c.conditions = {"x>1e6"}; },
            ""},
        SelectionCase{"HeadersOfAnyCell",
                      [](CellsChange& c) { c.headers = true, c.conditions = {"x=20"}; },
                      "North b Count | Count"},
        SelectionCase{"HeadersOfTheNamedCells",
                      [](CellsChange& c) {
                        c.headers = c.significance = true, c.conditions = {"x<0.05", "x=20"};
                      },
                      "4 7 North b Total Tests Sig | Sig Mean"},
        SelectionCase{
            "HeadersOfNamedCellsThatAreNotThere",
            [](CellsChange& c) { c.headers = true, c.labels = {"None"}, c.conditions = {"x=20"}; },
            ""},
        SelectionCase{
            "ColumnsOfHeadersOfAnyCell",
            [](CellsChange& c) { c.headers = true, c.conditions = {"x=20"}, c.applyTo = "COLUMN"; },
            "0 3 6 Count | Count"},
        SelectionCase{
            "HeadersWithAll",
            [](CellsChange& c) { c.headers = true, c.dimension = kRows, c.conditions = {"all"}; },
            "North a b Total"},
        SelectionCase{"TextsMeetNone",
                      [](CellsChange& c) {
                        c.title = c.caption = c.footnotes = true, c.conditions = {"x<>0"};
                      },
                      ""},
        SelectionCase{"TextsWithAll",
                      [](CellsChange& c) { c.title = true, c.conditions = {"all"}; }, "(title)"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    ApplyTo, SimpleSelectionTest,
    testing::Values(
        SelectionCase{"Cell", [](CellsChange& c) { c.mean = true, c.applyTo = "CELL"; },
                      "2 5 8 | Mean"},
        SelectionCase{
            "Column",
            [](CellsChange& c) { c.body = true, c.conditions = {"x<0.05"}, c.applyTo = "COLUMN"; },
            "1 4 7 Sig | Sig"},
        SelectionCase{"ColumnData",
                      [](CellsChange& c) {
                        c.body = true, c.conditions = {"x=20"}, c.applyTo = "COLUMNDATA";
                      },
                      "0 3 6 | Count"},
        SelectionCase{"ColumnHeader",
                      [](CellsChange& c) {
                        c.body = true, c.conditions = {"x=20"}, c.applyTo = "COLUMNHEADER";
                      },
                      "Count | Count"},
        SelectionCase{
            "Row",
            [](CellsChange& c) { c.body = true, c.conditions = {"x=20"}, c.applyTo = "ROW"; },
            "3 4 5 b | Count Sig Mean"},
        SelectionCase{
            "RowData",
            [](CellsChange& c) { c.body = true, c.conditions = {"x=20"}, c.applyTo = "ROWDATA"; },
            "3 4 5 | Count Sig Mean"},
        SelectionCase{"RowHeader",
                      [](CellsChange& c) {
                        c.significance = true, c.conditions = {"x<0.05"}, c.applyTo = "ROWHEADER";
                      },
                      "b Total"},
        SelectionCase{"HeaderThatIsTheLabel",
                      [](CellsChange& c) { c.labels = {"Tests"}, c.applyTo = "COLUMNHEADER"; },
                      "Tests | Sig Mean"},
        SelectionCase{
            "HeaderThatIsTheLabelAndThatOfACell",
            [](CellsChange& c) { c.labels = {"Tests"}, c.mean = true, c.applyTo = "COLUMNHEADER"; },
            "Tests Mean | Sig Mean"},
        SelectionCase{"HeaderAcrossTheLabel",
                      [](CellsChange& c) {
                        c.labels = {"Sig"}, c.conditions = {"x<0.05"}, c.applyTo = "ROWHEADER";
                      },
                      "b Total"},
        SelectionCase{"HeaderThatIsTheLabelOfACellThatMeetsTheCondition",
                      [](CellsChange& c) {
                        c.labels = {"North", "Total"};
                        c.conditions = {"x=20"}, c.applyTo = "ROWHEADER";
                      },
                      "North"},
        SelectionCase{"ColumnOfALabel",
                      [](CellsChange& c) { c.labels = {"Tests"}, c.applyTo = "COLUMN"; },
                      "1 2 4 5 7 8 Tests | Sig Mean"},
        SelectionCase{"HeaderOfAPosition",
                      [](CellsChange& c) {
                        c.positions = {3}, c.dimension = kColumns, c.applyTo = "COLUMNHEADER";
                      },
                      "Mean | Mean"},
        SelectionCase{"ColumnHeadersOfHeaders",
                      [](CellsChange& c) { c.headers = true, c.applyTo = "COLUMNHEADER"; },
                      "Count Tests Sig Mean | Count Sig Mean"},
        SelectionCase{"RowDataOfHeaders",
                      [](CellsChange& c) { c.headers = true, c.applyTo = "ROWDATA"; },
                      "0 1 2 3 4 5 6 7 8 | Count Sig Mean"},
        SelectionCase{
            "ColumnsOfRowHeaders",
            [](CellsChange& c) { c.headers = true, c.dimension = kRows, c.applyTo = "COLUMN"; },
            ""},
        SelectionCase{"TitleIsInNoColumn",
                      [](CellsChange& c) { c.title = true, c.applyTo = "COLUMNDATA"; }, "(title)"}),
    nameOf);

class NestedSelectionTest : public testing::TestWithParam<SelectionCase> {};

TEST_P(NestedSelectionTest, WhatIsMeantIsSelected) {
  EXPECT_EQ(selected(nestedTable(), GetParam().edit), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    CellSelection, NestedSelectionTest,
    testing::Values(
        SelectionCase{"KindOfTheLayer", [](CellsChange& c) { c.residual = true; },
                      "8 9 10 11 12 13 14 15 | n pct"},
        SelectionCase{"KindOfTheLayerIsNoColumns",
                      [](CellsChange& c) { c.residual = true, c.dimension = kColumns; }, ""},
        SelectionCase{"LabelOfTheLayer", [](CellsChange& c) { c.labels = {"B"}; }, ""},
        SelectionCase{"ColumnPositionCountsCombinations",
                      [](CellsChange& c) { c.positions = {3}, c.dimension = kColumns; },
                      "2 6 10 14 | n"},
        SelectionCase{
            "ColumnIsThatOfTheLayer",
            [](CellsChange& c) { c.body = true, c.conditions = {"x=2"}, c.applyTo = "COLUMNDATA"; },
            "2 6 | n"},
        SelectionCase{
            "RowIsThatOfTheLayer",
            [](CellsChange& c) { c.body = true, c.conditions = {"x=14"}, c.applyTo = "ROW"; },
            "12 13 14 15 b | n pct"},
        SelectionCase{"OuterLabelIsItsOwnHeader",
                      [](CellsChange& c) { c.labels = {"Y2"}, c.applyTo = "COLUMNHEADER"; },
                      "Y2 | n pct"},
        SelectionCase{"HeaderOfACellIsTheInnermost",
                      [](CellsChange& c) { c.percent = true, c.applyTo = "COLUMNHEADER"; },
                      "pct | pct"}),
    nameOf);

TEST(CellSelection, OnlyNumbersMeetConditionsButAll) {
  PivotTable table = simpleTable();
  table.cells[0].value = textCell("10");
  table.cells[3].value = numberCell(std::nan(""));
  const auto counts = [&](const char* condition) {
    return selected(table, [&](CellsChange& c) { c.count = true, c.conditions = {condition}; });
  };
  EXPECT_EQ(counts("x<>0"), "6 | Count");
  EXPECT_EQ(counts("missing"), "3 | Count");
  EXPECT_EQ(counts("top(3)"), "6 | Count");
  EXPECT_EQ(counts("bottom(3)"), "6 | Count");
  EXPECT_EQ(counts("all"), "0 3 6 | Count");
}

TEST(CellSelection, OnlyTheLayerThatIsShownIsMeant) {
  PivotTable table = nestedTable();
  const Edit body = [](CellsChange& change) { change.body = true; };
  const std::string all = selected(table, body);
  for (PivotDimension& dimension : table.dimensions) {
    if (dimension.place() == PivotPlace::kLayers) dimension.shownLeaf = 1;
  }
  const std::string shown = selected(table, body);
  EXPECT_EQ(all.rfind("0 1 2", 0), 0U);
  EXPECT_EQ(shown.rfind("8 9 10", 0), 0U) << shown;
  const Edit headersData = [](CellsChange& change) {
    change.headers = true;
    change.applyTo = "COLUMNDATA";
  };
  EXPECT_EQ(selected(table, headersData).rfind("8 9 10", 0), 0U);
  // The largest of what is seen, not of what is hidden.
  for (PivotCell& cell : table.cells) cell.value.number = cell.at[3] == 0 ? 1000 : cell.at[0];
  CellsChange largest;
  largest.body = true;
  largest.conditions = {"top(1)"};
  const CellSelection top = CellSelector(largest).select(table);
  ASSERT_EQ(top.cells.size(), 1U);
  EXPECT_GE(top.cells[0], 8U);
}

TEST(CellSelection, HeadersWithAConditionAreThoseOfTheLayerThatIsShown) {
  PivotTable table = nestedTable();
  table.dimensions[1].shownLeaf = 1;
  const auto headers = [&](const char* condition) {
    return selected(table, [&](CellsChange& c) { c.headers = true, c.conditions = {condition}; });
  };
  EXPECT_EQ(headers("x=0"), "");
  EXPECT_EQ(headers("x=8"), "n Y1 a | n pct");
}

TEST(CellSelection, LabelThatHoldsTheSignIsTheLongestThatTheTableHas) {
  PivotTable table;
  table.dimensions = {
      makeDimension("Row", PivotPlace::kRows, 1, {"a", "b", "a;b", "a;b;c", "c", "c;", "d"})};
  for (int row = 0; row < 7; ++row) addCell(table, {row}, numberCell(row));
  const auto rows = [&](std::vector<std::string> labels) {
    return selected(table, [&](CellsChange& c) { c.labels = std::move(labels); });
  };
  EXPECT_EQ(rows({"a"}), "0");
  EXPECT_EQ(rows({"a", "b"}), "2");
  EXPECT_EQ(rows({"b", "a"}), "0 1");
  EXPECT_EQ(rows({"a", "b", "c"}), "3");
  EXPECT_EQ(rows({"a", "b", "d"}), "2 6");
  EXPECT_EQ(rows({"a", "b", "d", "a", "b", "c", "c"}), "2 3 4 6");
  EXPECT_EQ(rows({"d", "c", ""}), "5 6");
  EXPECT_EQ(rows({"d", "c"}), "4 6");
  EXPECT_EQ(rows({"x", "a"}), "0");
}

TEST(CellSelection, KindOfAGroupIsThatOfWhatStandsBelow) {
  PivotTable table = simpleTable();
  table.dimensions[1].categories[1].statistic = StatisticKind::kCorrelation;
  EXPECT_EQ(selected(table, [](CellsChange& c) { c.correlation = true; }),
            "1 2 4 5 7 8 | Sig Mean");
}

TEST(CellSelection, LabelThatIsANumberIsComparedAsItIsShown) {
  PivotTable table = simpleTable();
  table.dimensions[1].categories[0].label = numberCell(2024);
  EXPECT_EQ(selected(table, [](CellsChange& c) { c.labels = {"2024"}; }), "0 3 6 | ");
}

TEST(CellSelection, CaptionAndFootnotesThatAreThereAreSelected) {
  const auto texts = [](CellsChange& c) { c.caption = c.footnotes = true; };
  PivotTable table = simpleTable();
  table.caption = textCell("caption");
  EXPECT_EQ(selected(table, texts), "(caption)");
  table.cells[4].notes.push_back(textCell("note"));
  EXPECT_EQ(selected(table, texts), "(caption) (footnotes)");
  table = simpleTable();
  table.footnotes = {textCell("note")};
  EXPECT_EQ(selected(table, texts), "(footnotes)");
}

TEST(CellSelection, PositionsAreInTheOrderThatIsShown) {
  PivotTable table = simpleTable();
  // Made last, but shown within the group that stands first.
  addLeaf(table.dimensions[0], "c", 0);
  addCell(table, {3, 0}, numberCell(1));
  const auto row = [&](int position) {
    return selected(table, [&](CellsChange& c) {
      c.positions = {position}, c.dimension = kRows, c.applyTo = "ROWHEADER";
    });
  };
  EXPECT_EQ(row(2), "b");
  EXPECT_EQ(row(3), "c");
  EXPECT_EQ(row(4), "Total");
}

TEST(CellSelection, HeaderOfAPositionWithoutCellsIsSelectedUnlessThereIsACondition) {
  PivotTable table = simpleTable();
  addLeaf(table.dimensions[1], "Empty");
  CellsChange change;
  change.positions = {4};
  change.dimension = kColumns;
  change.applyTo = "COLUMNHEADER";
  EXPECT_EQ(drawn(table, CellSelector(change).select(table)), "Empty | Empty");
  change.conditions = {"x<0"};
  EXPECT_EQ(drawn(table, CellSelector(change).select(table)), "");
}

TEST(CellSelection, PositionsOfAHugeTableCountWhatHasCellsInEachLayer) {
  PivotTable table;
  std::vector<std::string> many;
  for (int i = 0; i < 2000; ++i) many.push_back(std::to_string(i));
  table.dimensions = {makeDimension("Outer", PivotPlace::kRows, 1, many),
                      makeDimension("Inner", PivotPlace::kRows, 2, many),
                      makeDimension("Layer", PivotPlace::kLayers, 1, {"A", "B"})};
  addCell(table, {1999, 5, 0}, numberCell(0));
  addCell(table, {7, 1999, 0}, numberCell(1));
  addCell(table, {7, 1998, 1}, numberCell(2));
  const auto row = [&](int position) {
    return selected(table, [&](CellsChange& c) { c.positions = {position}, c.dimension = kRows; });
  };
  EXPECT_EQ(row(1), "1 2");
  EXPECT_EQ(row(2), "0");
  EXPECT_EQ(row(3), "");
  EXPECT_EQ(
      selected(table,
               [](CellsChange& c) { c.body = true, c.conditions = {"x=2"}, c.applyTo = "ROW"; }),
      "2 1998");
}

TEST(CellSelection, TableWithoutDimensionsHasOneColumnAndOneRow) {
  PivotTable table;
  addCell(table, {}, numberCell(1));
  EXPECT_EQ(selected(table, [](CellsChange& c) { c.positions = {1}; }), "0");
  EXPECT_EQ(selected(table, [](CellsChange& c) { c.body = true, c.applyTo = "COLUMN"; }), "0");
  EXPECT_EQ(selected(table, [](CellsChange& c) { c.positions = {2}; }), "");
}

struct RefusedCase {
  const char* name;
  std::function<void(PivotTable&, CellsChange&)> edit;
  const char* message;
};

void PrintTo(const RefusedCase& c, std::ostream* stream) { *stream << c.name; }

std::string refusedName(const testing::TestParamInfo<RefusedCase>& info) { return info.param.name; }

class RefusedSelectionTest : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedSelectionTest, ReasonIsSaid) {
  PivotTable table = simpleTable();
  CellsChange change;
  change.body = true;
  GetParam().edit(table, change);
  try {
    CellSelector(change).select(table);
    FAIL() << "selected";
  } catch (const ChangeError& error) {
    EXPECT_STREQ(error.what(), GetParam().message);
  }
}

/// 2^64 combinations of rows.
void makeEndless(PivotTable& table, CellsChange& change) {
  const std::vector<std::string> two = {"0", "1"};
  table = PivotTable();
  for (int i = 0; i < 64; ++i) {
    table.dimensions.push_back(makeDimension("", PivotPlace::kRows, i, two));
  }
  change.positions = {1};
}

INSTANTIATE_TEST_SUITE_P(
    CellSelection, RefusedSelectionTest,
    testing::Values(
        RefusedCase{"Condition", [](PivotTable&, CellsChange& c) { c.conditions = {"x>"}; },
                    "at its end the condition is incomplete: \"x>\""},
        RefusedCase{
            "ConditionOfAnEmptyTable",
            [](PivotTable& pivot, CellsChange& c) { pivot = PivotTable(), c.conditions = {"y"}; },
            "at character 1 the condition is not understood: \"y\""},
        RefusedCase{"TopOfNoNumber",
                    [](PivotTable&, CellsChange& c) { c.conditions = {"top(-1)"}; },
                    "at character 1 the condition is not understood: \"top(-1)\""},
        RefusedCase{"ApplyTo", [](PivotTable&, CellsChange& c) { c.applyTo = "TABLE"; },
                    "cells have no \"TABLE\" to apply a change to"},
        RefusedCase{"TooFewCoordinates",
                    [](PivotTable& pivot, CellsChange&) { pivot.cells[1].at = {0}; },
                    "a cell of a table belongs to no category"},
        RefusedCase{"CoordinateBeyond",
                    [](PivotTable& pivot, CellsChange&) {
                      pivot.cells[1].at = {0, 3};
                    },
                    "a cell of a table belongs to no category"},
        RefusedCase{"NegativeCoordinate",
                    [](PivotTable& pivot, CellsChange&) {
                      pivot.cells[1].at = {-1, 0};
                    },
                    "a cell of a table belongs to no category"},
        RefusedCase{
            "GroupBehindItsCategory",
            [](PivotTable& pivot, CellsChange&) { pivot.dimensions[0].categories[1].parent = 2; },
            "a category of a table stands in no group before it"},
        RefusedCase{
            "TwoLeavesOfOneNumber",
            [](PivotTable& pivot, CellsChange&) { pivot.dimensions[0].categories[1].leaf = 1; },
            "a category of a table has no number of its own"},
        RefusedCase{
            "LeafBeyond",
            [](PivotTable& pivot, CellsChange&) { pivot.dimensions[0].categories[1].leaf = 3; },
            "a category of a table has no number of its own"},
        RefusedCase{"MissingLeaf",
                    [](PivotTable& pivot, CellsChange&) { pivot.dimensions[0].leafCount = 4; },
                    "a dimension of a table counts categories that it has not"},
        RefusedCase{"NegativeLeafCount",
                    [](PivotTable& pivot, CellsChange&) {
                      pivot.cells.clear();
                      pivot.dimensions[0].leafCount = -1;
                    },
                    "a dimension of a table counts categories that it has not"},
        RefusedCase{"TooManyCombinations", makeEndless,
                    "it has too many combinations of categories"}),
    refusedName);

TEST(CellSelection, TopSelectsAsManyNumbersAsAskedForTheFirstOfEqualOnes) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    PivotTable table;
    std::vector<std::string> labels(1 + random() % 40, "r");
    table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, labels)};
    std::vector<std::size_t> numbers;
    for (std::size_t i = 0; i < labels.size(); ++i) {
      const bool isNumber = random() % 4 != 0;
      addCell(table, {static_cast<int>(i)},
              isNumber ? numberCell(static_cast<double>(random() % 5)) : textCell("t"));
      if (isNumber) numbers.push_back(i);
    }
    const std::size_t wanted = 1 + random() % 45;
    for (const bool isTop : {true, false}) {
      std::stable_sort(numbers.begin(), numbers.end(), [&](std::size_t a, std::size_t b) {
        const double left = table.cells[a].value.number;
        const double right = table.cells[b].value.number;
        if (left != right) return isTop ? left > right : left < right;
        return a < b;
      });
      CellsChange change;
      change.body = true;
      change.conditions = {(isTop ? "top(" : "bottom(") + std::to_string(wanted) + ")"};
      const CellSelection selection = CellSelector(change).select(table);
      ASSERT_EQ(selection.cells.size(), std::min(wanted, numbers.size()));
      const std::set<std::size_t> expected(
          numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(selection.cells.size()));
      ASSERT_EQ(std::set<std::size_t>(selection.cells.begin(), selection.cells.end()), expected);
    }
  }
}

}  // namespace
}  // namespace vornwout
