// The look of a table below what its cells and labels say of themselves.
#include "host/layout/look_of_grid.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

CellText plain(const char* text) {
  CellText cell;
  cell.text = text;
  return cell;
}

/// Four rows of one number each; the second label and the third number have looks of their own.
PivotTable makeTable(const TableLook& look) {
  PivotTable table;
  table.title = plain("Title");
  table.caption = plain("Caption");
  table.footnotes = {plain("Note")};
  for (int d = 0; d < 2; ++d) {
    PivotDimension dimension;
    dimension.position = PivotPosition{d, 1, false, false};
    for (int leaf = 0; leaf < (d == 0 ? 4 : 1); ++leaf) {
      PivotCategory category;
      category.label = plain("label");
      category.leaf = dimension.leafCount++;
      dimension.categories.push_back(category);
    }
    table.dimensions.push_back(dimension);
  }
  for (int row = 0; row < 4; ++row) {
    PivotCell cell;
    cell.at = {row, 0};
    cell.value.kind = CellText::Kind::kNumber;
    cell.value.number = row;
    table.cells.push_back(cell);
  }
  table.dimensions[0].categories[1].look.edit([](TextLook& own) { own.bold = false; });
  table.cells[2].look.edit([](TextLook& own) { own.backgroundColor = "#111111"; });
  table.titleLook.edit([](TextLook& own) { own.size = 20; });
  table.tableLook = Shared<TableLook>(look);
  return table;
}

TableGrid gridOf(const TableLook& look) { return layoutTable(makeTable(look)).at(0); }

const GridCell& cellAt(const TableGrid& grid, CellRole role, int number) {
  for (const GridCell& cell : grid.cells) {
    if (cell.role == role && number-- == 0) return cell;
  }
  throw std::out_of_range("no such cell");
}

TEST(LookOfGrid, WithoutATableLookNothingIsAdded) {
  const TableGrid grid = gridOf({});
  EXPECT_TRUE(cellAt(grid, CellRole::kData, 0).look.empty());
  EXPECT_TRUE(grid.captionLook.empty());
  EXPECT_EQ(grid.titleLook->size, 20);
}

TEST(LookOfGrid, AreasGiveWhatCellsLeaveOpen) {
  TableLook look;
  look.background = "#fafafa";
  look.area(LookArea::kRowLabels).text.bold = true;
  look.area(LookArea::kRowLabels).text.backgroundColor = "#eeeeee";
  look.area(LookArea::kData).text.font = "Noto Sans";
  look.area(LookArea::kTitle).text.size = 12;
  look.area(LookArea::kTitle).text.italic = true;
  look.area(LookArea::kFootnotes).text.textColor = "#333333";
  const TableGrid grid = gridOf(look);
  EXPECT_EQ(cellAt(grid, CellRole::kRowLabel, 0).look->bold, true);
  EXPECT_EQ(cellAt(grid, CellRole::kRowLabel, 0).look->backgroundColor, "#eeeeee");
  EXPECT_EQ(cellAt(grid, CellRole::kRowLabel, 1).look->bold, false) << "its own goes before";
  EXPECT_EQ(cellAt(grid, CellRole::kData, 0).look->font, "Noto Sans");
  EXPECT_EQ(cellAt(grid, CellRole::kData, 0).look->backgroundColor, "#fafafa");
  EXPECT_EQ(cellAt(grid, CellRole::kData, 2).look->backgroundColor, "#111111");
  EXPECT_EQ(grid.titleLook->size, 20);
  EXPECT_EQ(grid.titleLook->italic, true);
  EXPECT_EQ(grid.footnoteLook->textColor, "#333333");
  EXPECT_EQ(grid.captionLook->backgroundColor, "#fafafa");
}

TEST(LookOfGrid, EverySecondRowIsBanded) {
  TableLook look;
  look.banding.fill = "#eef3fa";
  for (const bool rowLabels : {false, true}) {
    look.banding.rowLabels = rowLabels;
    const TableGrid grid = gridOf(look);
    for (int row = 0; row < 4; ++row) {
      const std::string expected = row == 2 ? "#111111" : row % 2 == 1 ? "#eef3fa" : "";
      EXPECT_EQ(cellAt(grid, CellRole::kData, row).look->backgroundColor, expected) << row;
      EXPECT_EQ(cellAt(grid, CellRole::kRowLabel, row).look->backgroundColor,
                rowLabels && row % 2 == 1 ? "#eef3fa" : "")
          << row;
    }
  }
}

TEST(LookOfGrid, AlignmentIsTheAreas) {
  struct Case {
    LookHorizontal horizontal;
    CellAlignment expected;
  };
  const Case cases[] = {{LookHorizontal::kByValue, CellAlignment::kRight},
                        {LookHorizontal::kLeft, CellAlignment::kLeft},
                        {LookHorizontal::kCenter, CellAlignment::kCenter},
                        {LookHorizontal::kRight, CellAlignment::kRight}};
  for (const Case& test : cases) {
    TableLook look;
    look.name = "x";
    look.area(LookArea::kData).horizontal = test.horizontal;
    EXPECT_EQ(cellAt(gridOf(look), CellRole::kData, 0).alignment, test.expected);
  }
}

TEST(LookOfGrid, CellsOfOneLookShareTheMergedOne) {
  TableLook look;
  look.area(LookArea::kData).text.bold = true;
  const TableGrid grid = gridOf(look);
  EXPECT_EQ(&cellAt(grid, CellRole::kData, 0).look.get(),
            &cellAt(grid, CellRole::kData, 1).look.get());
}

}  // namespace
}  // namespace vornwout
