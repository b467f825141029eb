#include "host/layout/table_grid.h"

#include <chrono>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

/// The grid as rows of "text" cells, with spans as "text<rows>x<columns>".
std::string drawn(const TableGrid& grid) {
  std::string result;
  for (int row = 0; row < grid.rowCount; ++row) {
    std::string line;
    for (const GridCell& cell : grid.row(row)) {
      EXPECT_EQ(cell.row, row);
      line += (line.empty() ? "" : " ") + std::to_string(cell.column) + ":" + cell.text;
      if (cell.rowSpan != 1 || cell.columnSpan != 1) {
        line += "<" + std::to_string(cell.rowSpan) + "x" + std::to_string(cell.columnSpan) + ">";
      }
    }
    result += line + "\n";
  }
  return result;
}

TableGrid onlyGrid(const PivotTable& table, const LayoutOptions& options = {}) {
  std::vector<TableGrid> grids = layoutTable(table, options);
  EXPECT_EQ(grids.size(), 1u);
  return grids.at(0);
}

PivotTable twoByTwo() {
  PivotTable table;
  table.title = textCell("title");
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, {"r0", "r1"}),
                      makeDimension("C", PivotPlace::kColumns, 1, {"c0", "c1"})};
  addCell(table, {0, 0}, textCell("00"));
  addCell(table, {0, 1}, numberCell(1));
  addCell(table, {1, 1}, numberCell(11.5));
  return table;
}

TEST(TableGrid, RowsAndColumnsHaveLabelsCornerAndData) {
  const TableGrid grid = onlyGrid(twoByTwo());
  EXPECT_EQ(grid.title, "title");
  EXPECT_EQ(grid.headerRows, 2);
  EXPECT_EQ(grid.headerColumns, 1);
  EXPECT_EQ(grid.rowCount, 4);
  EXPECT_EQ(grid.columnCount, 3);
  EXPECT_EQ(drawn(grid),
            "1:C<1x2>\n"
            "0:R 1:c0 2:c1\n"
            "0:r0 1:00 2:1\n"
            "0:r1 2:11.5\n");
  EXPECT_EQ(grid.at(0, 1)->role, CellRole::kColumnLabel);
  EXPECT_EQ(grid.at(1, 0)->role, CellRole::kCorner);
  EXPECT_EQ(grid.at(2, 0)->role, CellRole::kRowLabel);
  EXPECT_EQ(grid.at(2, 1)->role, CellRole::kData);
  EXPECT_EQ(grid.at(3, 1), nullptr);
  EXPECT_EQ(grid.at(4, 0), nullptr);
  EXPECT_EQ(grid.at(-1, 0), nullptr);
}

TEST(TableGrid, NumbersAreRightAndTextsLeft) {
  const TableGrid grid = onlyGrid(twoByTwo());
  EXPECT_EQ(grid.at(2, 1)->alignment, CellAlignment::kLeft);
  EXPECT_FALSE(grid.at(2, 1)->isNumber);
  EXPECT_EQ(grid.at(2, 2)->alignment, CellAlignment::kRight);
  EXPECT_TRUE(grid.at(2, 2)->isNumber);
  EXPECT_EQ(grid.at(1, 1)->alignment, CellAlignment::kLeft) << "above a text";
  EXPECT_EQ(grid.at(1, 2)->alignment, CellAlignment::kRight) << "above numbers only";
  EXPECT_EQ(grid.at(0, 1)->alignment, CellAlignment::kLeft) << "above both";
}

TEST(TableGrid, LabelAboveNumbersAndTextsIsLeft) {
  PivotTable table = twoByTwo();
  table.cells[2].value = textCell("text");
  EXPECT_EQ(onlyGrid(table).at(1, 2)->alignment, CellAlignment::kLeft);
}

TEST(TableGrid, HiddenTitleIsEmpty) {
  PivotTable table = twoByTwo();
  table.titleHidden = true;
  EXPECT_EQ(onlyGrid(table).title, "");
}

TEST(TableGrid, WidthLimitsAreKept) {
  PivotTable table = twoByTwo();
  EXPECT_EQ(onlyGrid(table).minDataColumnWidth, std::nullopt);
  table.minDataColumnWidth = 150;
  table.maxDataColumnWidth = 300;
  EXPECT_EQ(onlyGrid(table).minDataColumnWidth, 150);
  EXPECT_EQ(onlyGrid(table).maxDataColumnWidth, 300);
}

struct HidingCase {
  const char* name;
  bool rowLabel, rowCategories, columnLabel, columnCategories;
  const char* expected;
};

class HidingTest : public testing::TestWithParam<HidingCase> {};

TEST_P(HidingTest, HiddenPartsTakeNoPlace) {
  PivotTable table = twoByTwo();
  table.dimensions[0].position->hideLabel = GetParam().rowLabel;
  table.dimensions[0].position->hideCategories = GetParam().rowCategories;
  table.dimensions[1].position->hideLabel = GetParam().columnLabel;
  table.dimensions[1].position->hideCategories = GetParam().columnCategories;
  EXPECT_EQ(drawn(onlyGrid(table)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    TableGrid, HidingTest,
    testing::Values(HidingCase{"RowLabel", true, false, false, false,
                               "1:C<1x2>\n1:c0 2:c1\n0:r0 1:00 2:1\n0:r1 2:11.5\n"},
                    HidingCase{"RowCategories", false, true, false, false,
                               "0:C<1x2>\n0:c0 1:c1\n0:00 1:1\n1:11.5\n"},
                    HidingCase{"ColumnLabel", false, false, true, false,
                               "0:R 1:c0 2:c1\n0:r0 1:00 2:1\n0:r1 2:11.5\n"},
                    HidingCase{"ColumnCategories", false, false, false, true,
                               "0:R 1:C<1x2>\n0:r0 1:00 2:1\n0:r1 2:11.5\n"},
                    HidingCase{"AllOfColumns", false, false, true, true,
                               "0:R\n0:r0 1:00 2:1\n0:r1 2:11.5\n"},
                    HidingCase{"Everything", true, true, true, true, "0:00 1:1\n1:11.5\n"}),
    [](const auto& hiding) { return hiding.param.name; });

TEST(TableGrid, WithoutColumnDimensionHasOneUnlabelledDataColumn) {
  PivotTable table;
  table.dimensions = {makeDimension("Name", PivotPlace::kRows, 1, {"0", "1"})};
  addCell(table, {0}, textCell("a"));
  addCell(table, {1}, textCell("b"));
  EXPECT_EQ(drawn(onlyGrid(table)), "0:Name\n0:0 1:a\n0:1 1:b\n");
  table.dimensions[0].position->hideLabel = true;
  EXPECT_EQ(drawn(onlyGrid(table)), "0:0 1:a\n0:1 1:b\n");
}

TEST(TableGrid, WithoutRowDimensionHasOneUnlabelledDataRow) {
  PivotTable table;
  table.dimensions = {makeDimension("", PivotPlace::kColumns, 1, {"a", "b"})};
  addCell(table, {1}, textCell("x"));
  EXPECT_EQ(drawn(onlyGrid(table)), "0:a 1:b\n1:x\n");
}

TEST(TableGrid, WithoutDimensionsHasOneCell) {
  PivotTable table;
  addCell(table, {}, textCell("x"));
  EXPECT_EQ(drawn(onlyGrid(table)), "0:x\n");
}

TEST(TableGrid, DimensionWithoutPositionLiesInRows) {
  PivotTable table;
  table.dimensions = {makeDimension("D", PivotPlace::kRows, 1, {"a"})};
  table.dimensions[0].position.reset();
  addCell(table, {0}, textCell("x"));
  EXPECT_EQ(drawn(onlyGrid(table)), "0:D\n0:a 1:x\n");
}

TEST(TableGrid, GroupsSpanTheirCategoriesAndShortPathsTheRest) {
  PivotTable table;
  PivotDimension rows = makeDimension("R", PivotPlace::kRows, 1, {});
  PivotDimension columns = makeDimension("C", PivotPlace::kColumns, 1, {});
  for (PivotDimension* dimension : {&rows, &columns}) {
    const int group = addGroup(*dimension, "g");
    addLeaf(*dimension, "x", group);
    addLeaf(*dimension, "y", group);
    addLeaf(*dimension, "z");
    addGroup(*dimension, "empty");
  }
  table.dimensions = {rows, columns};
  addCell(table, {2, 2}, textCell("22"));
  EXPECT_EQ(drawn(onlyGrid(table)),
            "2:C<1x3>\n"
            "2:g<1x2> 4:z<2x1>\n"
            "0:R<1x2> 2:x 3:y\n"
            "0:g<2x1> 1:x\n"
            "1:y\n"
            "0:z<1x2> 4:22\n");
}

TEST(TableGrid, NestedDimensionsRepeatTheInnerOne) {
  PivotTable table;
  table.dimensions = {makeDimension("In", PivotPlace::kRows, 2, {"i", "j"}),
                      makeDimension("Out", PivotPlace::kRows, 1, {"o", "p"}),
                      makeDimension("Top", PivotPlace::kColumns, 1, {"t", "u"}),
                      makeDimension("Low", PivotPlace::kColumns, 2, {"l", "m"})};
  addCell(table, {1, 0, 1, 0}, textCell("ojul"));
  EXPECT_EQ(drawn(onlyGrid(table)),
            "2:Top<1x4>\n"
            "2:t<1x2> 4:u<1x2>\n"
            "2:Low<1x2> 4:Low<1x2>\n"
            "0:Out 1:In 2:l 3:m 4:l 5:m\n"
            "0:o<2x1> 1:i\n"
            "1:j 4:ojul\n"
            "0:p<2x1> 1:i\n"
            "1:j\n");
}

TEST(TableGrid, NeighboursWithOneInnerCategoryAreNotMerged) {
  PivotTable table;
  table.dimensions = {makeDimension("", PivotPlace::kRows, 1, {"a", "b"}),
                      makeDimension("", PivotPlace::kRows, 2, {"only"})};
  addCell(table, {0, 0}, textCell("x"));
  EXPECT_EQ(drawn(onlyGrid(table)), "0:a 1:only 2:x\n0:b 1:only\n");
}

TEST(TableGrid, EmptyCategoriesAreKept) {
  PivotTable table = twoByTwo();
  table.cells.clear();
  EXPECT_EQ(drawn(onlyGrid(table)), "1:C<1x2>\n0:R 1:c0 2:c1\n0:r0\n0:r1\n");
}

TEST(TableGrid, DimensionWithoutCategoriesStillShowsItsLabel) {
  PivotTable table;
  table.dimensions = {makeDimension("Key", PivotPlace::kRows, 1, {}),
                      makeDimension("Language", PivotPlace::kColumns, 1, {"de"})};
  const TableGrid grid = onlyGrid(table);
  EXPECT_EQ(drawn(grid), "1:Language\n0:Key 1:de\n");
  EXPECT_EQ(grid.rowCount, 2);
}

TEST(TableGrid, LastOfSeveralCellsAtOnePlaceCounts) {
  PivotTable table = twoByTwo();
  addCell(table, {0, 0}, textCell("new"));
  addCell(table, {0, 0}, textCell("newest"));
  EXPECT_EQ(drawn(onlyGrid(table)), "1:C<1x2>\n0:R 1:c0 2:c1\n0:r0 1:newest 2:1\n0:r1 2:11.5\n");
}

TEST(TableGrid, StyleOfACellIsKept) {
  PivotTable table = twoByTwo();
  table.cells[0].look.edit([&](TextLook& look) { look.textColor = "red"; });
  table.cells[0].look.edit([&](TextLook& look) { look.backgroundColor = "#00ff00"; });
  table.cells[0].look.edit([&](TextLook& look) { look.bold = true; });
  EXPECT_EQ(onlyGrid(table).at(2, 1)->look, table.cells[0].look);
  EXPECT_TRUE(onlyGrid(table).at(2, 2)->look.empty());
}

TextLook sized(double size) {
  TextLook look;
  look.size = size;
  return look;
}

TEST(TableGrid, LabelsLookLikeTheirCategoriesAndCornersLikeNothing) {
  PivotTable table = twoByTwo();
  table.dimensions[0].categories[1].look = sized(8);
  table.dimensions[1].categories[0].look = sized(9);
  const TableGrid grid = onlyGrid(table);
  EXPECT_TRUE(grid.at(0, 1)->look.empty()) << "the label of a dimension";
  EXPECT_TRUE(grid.at(1, 0)->look.empty()) << "the corner";
  EXPECT_EQ(grid.at(1, 1)->look->size, 9);
  EXPECT_TRUE(grid.at(1, 2)->look.empty());
  EXPECT_TRUE(grid.at(2, 0)->look.empty());
  EXPECT_EQ(grid.at(3, 0)->look->size, 8);
}

TEST(TableGrid, LooksOfTextsAndTheSummaryAreKept) {
  PivotTable table = twoByTwo();
  table.summary = "about";
  table.titleLook = sized(1);
  table.captionLook = sized(2);
  table.footnoteLook = sized(3);
  const TableGrid grid = onlyGrid(table);
  EXPECT_EQ(grid.summary, "about");
  EXPECT_EQ(grid.titleLook->size, 1);
  EXPECT_EQ(grid.captionLook->size, 2);
  EXPECT_EQ(grid.footnoteLook->size, 3);
}

TEST(TableGrid, ColumnsHaveTheWidthsOfTheirLeavesInTheOrderShown) {
  PivotTable table = twoByTwo();
  PivotDimension& columns = table.dimensions[1];
  columns.categories[0].width = 50;
  columns.categories[1].width = 70;
  std::swap(columns.categories[0], columns.categories[1]);
  table.dimensions[0].categories[0].width = 90;
  const TableGrid grid = onlyGrid(table);
  EXPECT_EQ(grid.columnWidths, (std::vector<int>{0, 70, 50}));
  EXPECT_EQ(grid.columnWidth(1), 70);
  EXPECT_EQ(grid.columnWidth(3), 0);
  EXPECT_EQ(grid.columnWidth(-1), 0);
  EXPECT_EQ(TableGrid().columnWidth(0), 0);
}

TEST(TableGrid, FootnotesAreMarkedInReadingOrderOncePerText) {
  PivotTable table = twoByTwo();
  table.cells[2].notes = {textCell("late"), textCell("both"), textCell("late")};
  table.cells[0].notes = {textCell("both"), textCell("early")};
  std::swap(table.cells[0], table.cells[2]);
  const TableGrid grid = onlyGrid(table);
  ASSERT_EQ(grid.footnotes.size(), 3u);
  EXPECT_EQ(grid.footnotes[0].mark, "a");
  EXPECT_EQ(grid.footnotes[0].text, "both");
  EXPECT_EQ(grid.footnotes[1].text, "early");
  EXPECT_EQ(grid.footnotes[2].text, "late");
  EXPECT_EQ(grid.at(2, 1)->notes, (std::vector<int>{0, 1}));
  EXPECT_EQ(grid.at(3, 2)->notes, (std::vector<int>{2, 0}));
}

TEST(TableGrid, FootnoteMarksGoOnAfterTheAlphabet) {
  EXPECT_EQ(footnoteMark(0), "a");
  EXPECT_EQ(footnoteMark(25), "z");
  EXPECT_EQ(footnoteMark(26), "aa");
  EXPECT_EQ(footnoteMark(27), "ab");
  EXPECT_EQ(footnoteMark(26 + 26 * 26 - 1), "zz");
  EXPECT_EQ(footnoteMark(26 + 26 * 26), "aaa");
}

PivotTable layered() {
  PivotTable table;
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, {"r0", "r1"}),
                      makeDimension("L2", PivotPlace::kLayers, 2, {"a", "b"}),
                      makeDimension("L1", PivotPlace::kLayers, 1, {"x", "y"})};
  addCell(table, {0, 0, 1}, textCell("ya")).notes = {textCell("n")};
  addCell(table, {1, 1, 0}, textCell("xb")).notes = {textCell("m")};
  return table;
}

TEST(TableGrid, OneGridPerLayerCombinationThatHasCells) {
  const std::vector<TableGrid> grids = layoutTable(layered());
  ASSERT_EQ(grids.size(), 2u);
  EXPECT_EQ(drawn(grids[0]), "0:R\n0:r0\n0:r1 1:xb\n");
  EXPECT_EQ(drawn(grids[1]), "0:R\n0:r0 1:ya\n0:r1\n");
  ASSERT_EQ(grids[0].layers.size(), 2u);
  EXPECT_EQ(grids[0].layers[0].dimension, "L1");
  EXPECT_EQ(grids[0].layers[0].category, "x");
  EXPECT_EQ(grids[0].layers[1].dimension, "L2");
  EXPECT_EQ(grids[0].layers[1].category, "b");
  ASSERT_EQ(grids[1].footnotes.size(), 1u) << "each grid has its own";
  EXPECT_EQ(grids[1].footnotes[0].mark, "a");
}

TEST(TableGrid, FirstLayerOnlyOnRequest) {
  LayoutOptions options;
  options.layers = ShownLayers::kFirst;
  EXPECT_EQ(drawn(onlyGrid(layered(), options)), "0:R\n0:r0\n0:r1 1:xb\n");
}

TEST(TableGrid, OfALayerWithAShownLeafOnlyThatIsShown) {
  PivotTable table = layered();
  for (const int leaf : {0, 1}) {
    table.dimensions[2].shownLeaf = leaf;
    const std::vector<TableGrid> grids = layoutTable(table);
    ASSERT_FALSE(grids.empty());
    for (const TableGrid& grid : grids) {
      EXPECT_EQ(grid.layers.at(0).category, leaf == 0 ? "x" : "y");
    }
  }
  // A leaf without cells is still the one that is shown, and no other one is.
  table.cells.clear();
  addCell(table, {0, 0, 0}, textCell("elsewhere"));
  const TableGrid grid = onlyGrid(table);
  EXPECT_EQ(drawn(grid), "0:R\n0:r0\n0:r1\n");
  EXPECT_EQ(grid.layers.at(0).category, "y");
  EXPECT_EQ(grid.layers.at(1).category, "a");
}

TEST(TableGrid, LayersWithoutCellsMakeOneGridWithoutData) {
  PivotTable table = layered();
  table.cells.clear();
  const TableGrid grid = onlyGrid(table);
  EXPECT_EQ(drawn(grid), "0:R\n0:r0\n0:r1\n");
  EXPECT_EQ(grid.layers.at(0).category, "x");
}

TEST(TableGrid, CaptionsNameGroupsAndLeaveOutWhatIsHidden) {
  PivotTable table;
  PivotDimension first = makeDimension("Label", PivotPlace::kLayers, 1, {});
  addLeaf(first, "leaf", addGroup(first, "group"));
  PivotDimension second = makeDimension("hidden", PivotPlace::kLayers, 2, {"x"});
  second.position->hideLabel = second.position->hideCategories = true;
  table.dimensions = {first, second};
  addCell(table, {0, 0}, textCell("v"));
  const TableGrid grid = onlyGrid(table);
  ASSERT_EQ(grid.layers.size(), 1u);
  EXPECT_EQ(grid.layers[0].dimension, "Label");
  EXPECT_EQ(grid.layers[0].category, "group, leaf");
}

TEST(TableGrid, BeyondTheLimitOnlyCombinationsWithCellsAreShown) {
  PivotTable table;
  table.dimensions = {makeDimension("", PivotPlace::kRows, 1, {"a", "b", "c"}),
                      makeDimension("", PivotPlace::kRows, 2, {"i", "j", "k"})};
  addCell(table, {2, 0}, textCell("ci"));
  addCell(table, {0, 1}, textCell("aj"));
  addCell(table, {0, 2}, textCell("ak"));
  LayoutOptions options;
  options.completeLimit = 9;
  EXPECT_EQ(onlyGrid(table, options).rowCount, 9);
  options.completeLimit = 8;
  EXPECT_EQ(drawn(onlyGrid(table, options)), "0:a<2x1> 1:j 2:aj\n1:k 2:ak\n0:c 1:i 2:ci\n");
}

TEST(TableGrid, SingleDimensionShowsEveryCategoryWhateverTheLimit) {
  LayoutOptions options;
  options.completeLimit = 1;
  EXPECT_EQ(onlyGrid(twoByTwo(), options).rowCount, 4);
}

TEST(TableGrid, CellsThatDoNotFitThrow) {
  PivotTable table = twoByTwo();
  addCell(table, {0}, textCell("x"));
  EXPECT_THROW(layoutTable(table), std::invalid_argument);
  table.cells.back().at = {0, 2};
  EXPECT_THROW(layoutTable(table), std::invalid_argument);
}

TEST(TableGrid, HundredThousandRowsAreLaidOutInLinearTime) {
  const auto secondsFor = [](int rows) {
    PivotTable table;
    PivotDimension keys = makeDimension("Key", PivotPlace::kRows, 1, {});
    for (int i = 0; i < rows; ++i) addLeaf(keys, "k");
    table.dimensions = {keys, makeDimension("L", PivotPlace::kColumns, 1, {"de", "en"})};
    for (int language = 0; language < 2; ++language) {
      for (int i = 0; i < rows; ++i) addCell(table, {i, language}, textCell("v"));
    }
    const auto start = std::chrono::steady_clock::now();
    const TableGrid grid = onlyGrid(table);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(grid.rowCount, rows + 2);
    EXPECT_EQ(grid.at(rows + 1, 2)->text, "v");
    return elapsed.count();
  };
  // A product of rows and rows would take minutes; the bound leaves room for slow builds.
  EXPECT_LT(secondsFor(100'000), 10.0);
}

TEST(TableGrid, FootnotesAreCollectedInLinearTime) {
  PivotTable table = twoByTwo();
  for (int i = 0; i < 400'000; ++i) table.footnotes.push_back(textCell(std::to_string(i)));
  table.cells[0].notes = table.footnotes;
  const auto start = std::chrono::steady_clock::now();
  const TableGrid grid = onlyGrid(table);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(grid.titleNotes.size(), 400'000U);
  EXPECT_EQ(grid.at(2, 1)->notes, grid.titleNotes);
  // A look at every note before would take four times as long; the bound leaves room for slow
  // builds.
  EXPECT_LT(elapsed.count(), 5.0);
}

PivotTable nearlyEmpty(int rows, int columns, int layers) {
  PivotTable table;
  table.dimensions = {
      makeDimension("R", PivotPlace::kRows, 1, std::vector<std::string>(rows)),
      makeDimension("C", PivotPlace::kColumns, 1, std::vector<std::string>(columns)),
      makeDimension("L", PivotPlace::kLayers, 1, std::vector<std::string>(layers))};
  for (int layer = 0; layer < layers; ++layer) addCell(table, {0, 0, layer}, numberCell(1));
  return table;
}

TEST(TableGrid, TableThatIsNearlyEmptyMayNotHaveTooManyPlaces) {
  const auto refusal = [](const PivotTable& table, std::uint64_t limit) -> std::string {
    LayoutOptions options;
    options.emptyLimit = limit;
    try {
      layoutTable(table, options);
      return {};
    } catch (const std::length_error& error) {
      return error.what();
    }
  };
  const std::string help = "; vornwout show --json gives its values";
  EXPECT_EQ(refusal(nearlyEmpty(100, 200, 1), 20'000), "");
  EXPECT_EQ(refusal(nearlyEmpty(100, 201, 1), 20'000),
            "it is too large and nearly empty, with 100 rows and 201 columns" + help);
  EXPECT_EQ(refusal(nearlyEmpty(100'000, 100'000, 1), LayoutOptions().emptyLimit),
            "it is too large and nearly empty, with 100000 rows and 100000 columns" + help);
  // All layers count together.
  EXPECT_EQ(refusal(nearlyEmpty(100, 100, 2), 20'000), "");
  EXPECT_EQ(refusal(nearlyEmpty(100, 100, 3), 20'000),
            "it is too large and nearly empty, with 100 rows and 100 columns in 3 layers" + help);
  // What the table holds itself, labels or cells, may be shown however much it is.
  EXPECT_EQ(refusal(nearlyEmpty(20'001, 1, 1), 20'000), "");
  PivotTable filled = nearlyEmpty(100, 201, 1);
  for (int i = 0; i < 13; ++i) {
    for (int row = 0; row < 100; ++row) addCell(filled, {row, i, 0}, numberCell(1));
  }
  EXPECT_EQ(refusal(filled, 20'000), "");
}

TEST(TableGrid, NotesOfTheTableComeBeforeThoseOfItsCellsAndTheCaptionGoesAlong) {
  PivotTable table = twoByTwo();
  table.caption = textCell("below");
  table.footnotes = {textCell("whole"), textCell("both"), textCell("whole")};
  table.cells[0].notes = {textCell("cell"), textCell("both")};
  const TableGrid grid = onlyGrid(table);
  EXPECT_EQ(grid.caption, "below");
  EXPECT_EQ(grid.titleNotes, (std::vector<int>{0, 1}));
  ASSERT_EQ(grid.footnotes.size(), 3U);
  EXPECT_EQ(grid.footnotes[0].text, "whole");
  EXPECT_EQ(grid.footnotes[1].text, "both");
  EXPECT_EQ(grid.footnotes[2].mark, "c");
  EXPECT_EQ(grid.footnotes[2].text, "cell");
}

}  // namespace
}  // namespace vornwout
