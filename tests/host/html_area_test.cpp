// The lines and margins of a table's look as style attributes.
#include "host/export/html/html_area.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Two header rows and one header column around three rows and two columns of data.
TableGrid makeGrid(const TableLook& look) {
  TableGrid grid;
  grid.headerRows = 2;
  grid.headerColumns = 1;
  grid.rowCount = 5;
  grid.columnCount = 3;
  grid.tableLook = Shared<TableLook>(look);
  return grid;
}

TEST(HtmlArea, WithoutALookThePagesOwnLinesStay) {
  EXPECT_EQ(areaCss(makeGrid({}), 2, 1, 1, 1), "");
}

TEST(HtmlArea, EdgesOfAnAreaHaveItsOuterLinesAndTheRestTheInnerOnes) {
  TableLook look;
  LookBorders& lines = look.area(LookArea::kData).borders;
  lines.top = {LookLineStyle::kSolid, 2, "#112233"};
  lines.bottom = {LookLineStyle::kDouble, 3, ""};
  lines.rows = {LookLineStyle::kDotted, 0.5, "#445566"};
  lines.left = {LookLineStyle::kDashed, 1, "#778899"};
  const TableGrid grid = makeGrid(look);
  struct Case {
    int row;
    int column;
    int rowSpan;
    const char* top;
    const char* bottom;
    const char* left;
  };
  const Case cases[] = {
      {2, 1, 1, "border-top:2pt solid #112233;", "border-bottom:0.5pt dotted #445566;",
       "border-left:1pt dashed #778899;"},
      {3, 2, 1, "border-top:0.5pt dotted #445566;", "border-bottom:0.5pt dotted #445566;",
       "border-left:0;"},
      {4, 1, 1, "border-top:0.5pt dotted #445566;", "border-bottom:3pt double currentColor;",
       "border-left:1pt dashed #778899;"},
      {2, 1, 3, "border-top:2pt solid #112233;", "border-bottom:3pt double currentColor;",
       "border-left:1pt dashed #778899;"},
  };
  for (const Case& test : cases) {
    const std::string css = areaCss(grid, test.row, test.column, test.rowSpan, 1);
    EXPECT_THAT(css, HasSubstr(test.top)) << test.row;
    EXPECT_THAT(css, HasSubstr(test.bottom)) << test.row;
    EXPECT_THAT(css, HasSubstr(test.left)) << test.row;
    EXPECT_THAT(css, HasSubstr("border-right:0;"));
  }
  EXPECT_THAT(areaCss(grid, 0, 1, 1, 2), Not(HasSubstr("solid")))
      << "labels have lines of their own";
}

TEST(HtmlArea, MarginsAlignmentAndWidthsAreTheAreas) {
  TableLook look;
  look.area(LookArea::kRowLabels).margins = {1, 2.5, 3, 4};
  look.area(LookArea::kRowLabels).vertical = LookVertical::kMiddle;
  look.rowLabelColumns = {50, 200};
  const TableGrid grid = makeGrid(look);
  const std::string label = areaCss(grid, 2, 0, 1, 1);
  EXPECT_THAT(label, HasSubstr("padding:1pt 2.5pt 3pt 4pt;vertical-align:middle;"));
  EXPECT_THAT(label, HasSubstr("min-width:50pt;max-width:200pt;"));
  EXPECT_THAT(areaCss(grid, 2, 1, 1, 1), Not(HasSubstr("width:50pt")));
}

TEST(HtmlArea, WhatStandsAroundTheCellsHasTheBoxOfItsArea) {
  EXPECT_EQ(boxCss(makeGrid({}), LookArea::kTitle), "");
  EXPECT_EQ(footnoteCss(makeGrid({}), false), "");
  for (const LookArea area :
       {LookArea::kTitle, LookArea::kLayers, LookArea::kCaption, LookArea::kFootnotes}) {
    TableLook look;
    look.area(area).horizontal = LookHorizontal::kCenter;
    look.area(area).margins = {1, 2, 3, 4};
    look.area(area).borders.bottom = {LookLineStyle::kSolid, 2, "#112233"};
    look.area(area).borders.rows = {LookLineStyle::kDotted, 1, "#445566"};
    TableGrid grid = makeGrid(look);
    SharedLook& text = area == LookArea::kTitle     ? grid.titleLook
                       : area == LookArea::kLayers  ? grid.layersLook
                       : area == LookArea::kCaption ? grid.captionLook
                                                    : grid.footnoteLook;
    text.edit([](TextLook& own) { own.backgroundColor = "#abcdef"; });
    EXPECT_EQ(boxCss(grid, area),
              "text-align:center;padding:1pt 2pt 3pt 4pt;border-top:0;"
              "border-bottom:2pt solid #112233;border-left:0;border-right:0;background:#abcdef;");
    if (area != LookArea::kFootnotes) continue;
    EXPECT_EQ(footnoteCss(grid, true), "justify-content:center;");
    EXPECT_EQ(footnoteCss(grid, false), "justify-content:center;border-top:1pt dotted #445566;");
  }
}

TEST(HtmlArea, TextsAroundTheCellsStandLeftUnlessTheLookSaysElse) {
  TableLook look;
  look.name = "x";
  EXPECT_THAT(boxCss(makeGrid(look), LookArea::kTitle), HasSubstr("text-align:left;"));
  look.area(LookArea::kTitle).horizontal = LookHorizontal::kRight;
  EXPECT_THAT(boxCss(makeGrid(look), LookArea::kTitle), HasSubstr("text-align:right;"));
}

TEST(HtmlArea, AColourThatIsNoneIsNotWritten) {
  TableLook look;
  look.area(LookArea::kData).borders.top = {LookLineStyle::kSolid, 1, "red;background:url(//evil)"};
  EXPECT_THAT(areaCss(makeGrid(look), 2, 1, 1, 1), HasSubstr("border-top:1pt solid currentColor;"));
}

}  // namespace
}  // namespace vornwout
