#include "runner/terminal/table_printer.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

const TerminalStyle kTrueColor{ColorDepth::kTrueColor, 0};

std::string print(const PivotTable& table, const TerminalStyle& style = {}) {
  std::ostringstream out;
  for (const TableGrid& grid : layoutTable(table)) printTable(out, grid, style);
  return out.str();
}

std::string printWithin(const PivotTable& table, int width) {
  return print(table, TerminalStyle{ColorDepth::kNone, width});
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// A table of one column without labels.
PivotTable comment(const std::vector<std::string>& lines) {
  PivotTable table;
  table.title = textCell("Comment");
  table.titleHidden = true;
  PivotDimension dimension = makeDimension("Comment", PivotPlace::kRows, 1, lines);
  dimension.position->hideLabel = dimension.position->hideCategories = true;
  table.dimensions = {dimension};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    addCell(table, {static_cast<int>(i)}, textCell(lines[i]));
  }
  return table;
}

PivotTable matrix(const std::vector<std::string>& rows, const std::vector<std::string>& columns) {
  PivotTable table;
  table.title = textCell("Title");
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, rows),
                      makeDimension("C", PivotPlace::kColumns, 1, columns)};
  return table;
}

TEST(TablePrinter, DrawsTitleFrameAndOneRuleBelowTheHeader) {
  PivotTable table = matrix({"r", "s"}, {"name", "n"});
  addCell(table, {0, 0}, textCell("x"));
  addCell(table, {0, 1}, numberCell(12.5));
  addCell(table, {1, 1}, numberCell(3));
  EXPECT_EQ(print(table),
            "Title\n"
            "┌───┬────────────┐\n"
            "│   │ C          │\n"
            "│ R │ name     n │\n"
            "├───┼────────────┤\n"
            "│ r │ x     12.5 │\n"
            "│ s │          3 │\n"
            "└───┴────────────┘\n");
}

TEST(TablePrinter, TextThatNobodyReadsToItsEndIsCut) {
  const std::string text = print(comment({std::string(70'000, 'x')}));
  EXPECT_EQ(std::count(text.begin(), text.end(), 'x'), 64 << 10);
  EXPECT_THAT(text, HasSubstr("x… "));
}

TEST(TablePrinter, WithoutHeaderThereIsNoRule) {
  EXPECT_EQ(print(comment({"a", "bc"})), "┌────┐\n│ a  │\n│ bc │\n└────┘\n");
}

TEST(TablePrinter, MinimumWidthPadsAndMaximumWidthWraps) {
  PivotTable table = comment({"ab"});
  table.minDataColumnWidth = 47;  // seven columns and a bit
  EXPECT_EQ(print(table), "┌─────────┐\n│ ab      │\n└─────────┘\n");
  table = comment({"one two three"});
  table.maxDataColumnWidth = 48;
  EXPECT_EQ(print(table), "┌──────────┐\n│ one two  │\n│ three    │\n└──────────┘\n");
}

TEST(TablePrinter, ContradictingLimitsGiveTheMaximum) {
  PivotTable table = comment({"abc"});
  table.minDataColumnWidth = 60;
  table.maxDataColumnWidth = 12;
  EXPECT_EQ(print(table), "┌────┐\n│ ab │\n│ c  │\n└────┘\n");
}

TEST(TablePrinter, LimitsBelowOneColumnGiveOne) {
  for (const int points : {5, 0, -100}) {
    PivotTable table = comment({"ab"});
    table.maxDataColumnWidth = points;
    EXPECT_EQ(print(table), "┌───┐\n│ a │\n│ b │\n└───┘\n") << points;
  }
}

TEST(TablePrinter, LimitsDoNotTouchRowLabels) {
  PivotTable table = matrix({"a rather long label"}, {"c"});
  table.dimensions[1].position->hideLabel = true;
  table.minDataColumnWidth = table.maxDataColumnWidth = 18;
  addCell(table, {0, 0}, textCell("x"));
  EXPECT_THAT(print(table), HasSubstr("│ a rather long label │ x   │\n"));
}

TEST(TablePrinter, ExplicitLineEndsBreakLines) {
  EXPECT_EQ(print(comment({"a\nbc\r\nd"})), "┌────┐\n│ a  │\n│ bc │\n│ d  │\n└────┘\n");
}

TEST(TablePrinter, WideAndCombiningCharactersStayAligned) {
  const PivotTable table = comment({"日本語", "e\u0301a\u0308", "👩\u200d👩\u200d👧 x", "plain"});
  const std::vector<std::string> lines = linesOf(print(table));
  ASSERT_EQ(lines.size(), 6u);
  for (const std::string& line : lines) EXPECT_EQ(displayWidth(line), 10) << line;
  EXPECT_EQ(lines[1], "│ 日本語 │");
  EXPECT_EQ(lines[2], "│ e\u0301a\u0308     │");
}

TEST(TablePrinter, ColumnOfWideCharactersIsNeverNarrowerThanOne) {
  PivotTable table = comment({"日本"});
  table.maxDataColumnWidth = 6;
  EXPECT_EQ(print(table), "┌────┐\n│ 日 │\n│ 本 │\n└────┘\n");
}

TEST(TablePrinter, HostileTextsAreHarmless) {
  PivotTable table = comment({"a\x1b[31mb\x07", "\xff\xfe"});
  table.titleHidden = false;
  table.title = textCell("t\x1b]0;x\x07");
  addCell(table, {0},
          textCell("\x9b"
                   "1m"))
      .notes = {textCell("n\x1b[0m")};
  const std::string printed = print(table);
  for (const char c : printed) {
    EXPECT_FALSE((c >= 0 && c < 32 && c != '\n') || c == 127) << static_cast<int>(c);
  }
  EXPECT_THAT(printed, HasSubstr("t\uFFFD]0;x\uFFFD\n"));
}

TEST(TablePrinter, SpanningLabelsStandOverTheirColumns) {
  PivotTable table;
  table.titleHidden = true;
  table.dimensions = {makeDimension("", PivotPlace::kColumns, 1, {"2024", "2025"}),
                      makeDimension("", PivotPlace::kColumns, 2, {"ab", "cd"})};
  addCell(table, {0, 0}, textCell("1"));
  EXPECT_EQ(print(table),
            "┌────────────────┐\n"
            "│ 2024    2025   │\n"
            "│ ab  cd  ab  cd │\n"
            "├────────────────┤\n"
            "│ 1              │\n"
            "└────────────────┘\n");
}

TEST(TablePrinter, SpanningLabelWidensItsColumns) {
  PivotTable table = matrix({"r"}, {"a", "b"});
  table.dimensions[1].label = textCell("Language");
  EXPECT_THAT(print(table), HasSubstr("│   │ Language │\n│ R │ a    b   │\n"));
}

TEST(TablePrinter, GroupLabelFlowsThroughItsRows) {
  PivotTable table;
  table.titleHidden = true;
  PivotDimension rows = makeDimension("", PivotPlace::kRows, 1, {});
  const int group = addGroup(rows, "one\ntwo\nthree");
  addLeaf(rows, "a", group);
  addLeaf(rows, "b", group);
  addLeaf(rows, "c");
  table.dimensions = {rows};
  addCell(table, {0}, textCell("x"));
  addCell(table, {1}, textCell("y"));
  addCell(table, {2}, textCell("z"));
  EXPECT_EQ(print(table),
            "┌──────────┬───┐\n"
            "│ one    a │ x │\n"
            "│ two    b │ y │\n"
            "│ three    │   │\n"
            "│ c        │ z │\n"
            "└──────────┴───┘\n");
}

TEST(TablePrinter, FootnotesAreMarkedAndListed) {
  PivotTable table = comment({"a", ""});
  table.cells[0].notes = {textCell("first"), textCell("second")};
  table.cells[1].notes = {textCell("second")};
  EXPECT_EQ(print(table),
            "┌─────────┐\n│ a [a,b] │\n│ [b]     │\n└─────────┘\n[a] first\n[b] second\n");
}

TEST(TablePrinter, LayerStandsBelowTheTitle) {
  PivotTable table = comment({"a"});
  table.titleHidden = false;
  table.dimensions.push_back(makeDimension("Layer", PivotPlace::kLayers, 1, {"x"}));
  table.cells[0].at.push_back(0);
  EXPECT_EQ(print(table), "Comment\nLayer: x\n┌───┐\n│ a │\n└───┘\n");
}

TEST(TablePrinter, TableWithoutRowsSaysThatItIsEmpty) {
  PivotTable table = comment({});
  EXPECT_EQ(print(table), "(empty)\n");
}

TEST(TablePrinter, TableWithoutDataRowsKeepsItsHeader) {
  EXPECT_EQ(print(matrix({}, {"de"})),
            "Title\n┌───┬────┐\n│   │ C  │\n│ R │ de │\n├───┼────┤\n└───┴────┘\n");
}

TEST(TablePrinter, NoLineIsWiderThanTheTerminal) {
  PivotTable table = matrix({"a label that is rather long", "b"},
                            {"first of the columns", "second", "third", "fourth"});
  table.title = textCell("A title that is too long for a narrow terminal, and then some");
  for (int i = 0; i < 4; ++i) {
    addCell(table, {0, i}, i == 1 ? numberCell(123456) : textCell("some words 日本語日本語 more"));
    table.cells.back().notes = {textCell("a note that goes on and on and on until it has to wrap")};
  }
  for (int width = 12; width <= 130; ++width) {
    for (const std::string& line : linesOf(printWithin(table, width))) {
      ASSERT_LE(displayWidth(line), width) << width << ": " << line;
    }
  }
}

TEST(TablePrinter, WidestTextsShrinkFirstAndNumbersStayWhole) {
  PivotTable table = matrix({"r"}, {"n", "short", "long"});
  table.dimensions[1].position->hideLabel = true;
  addCell(table, {0, 0}, numberCell(123456));
  addCell(table, {0, 1}, textCell("abc"));
  addCell(table, {0, 2}, textCell("words that have to be wrapped somewhere"));
  EXPECT_EQ(printWithin(table, 40),
            "Title\n"
            "┌───┬──────────────────────────────────┐\n"
            "│ R │      n  short  long              │\n"
            "├───┼──────────────────────────────────┤\n"
            "│ r │ 123456  abc    words that have   │\n"
            "│   │                to be wrapped     │\n"
            "│   │                somewhere         │\n"
            "└───┴──────────────────────────────────┘\n");
}

TEST(TablePrinter, MinimumWidthGivesWayToTheTerminal) {
  PivotTable table = comment({"ab"});
  table.minDataColumnWidth = 6000;
  EXPECT_EQ(displayWidth(linesOf(printWithin(table, 30))[0]), 30);
}

TEST(TablePrinter, TooWideATableIsBrokenIntoPanelsThatRepeatTheLabels) {
  PivotTable table = matrix({"row"}, {"a", "b", "c"});
  table.titleHidden = true;
  for (int i = 0; i < 3; ++i) addCell(table, {0, i}, numberCell(100000 + i));
  EXPECT_EQ(printWithin(table, 26),
            "┌─────┬────────────────┐\n"
            "│     │ C              │\n"
            "│ R   │      a       b │\n"
            "├─────┼────────────────┤\n"
            "│ row │ 100000  100001 │\n"
            "└─────┴────────────────┘\n"
            "\n"
            "┌─────┬────────┐\n"
            "│     │ C      │\n"
            "│ R   │      c │\n"
            "├─────┼────────┤\n"
            "│ row │ 100002 │\n"
            "└─────┴────────┘\n");
}

TEST(TablePrinter, OfManyPanelsThoseWithoutValuesAreLeftOut) {
  const auto printed = [](int columns, std::vector<int> filled) {
    std::vector<std::string> names;
    for (int i = 0; i < columns; ++i) names.push_back("column " + std::to_string(i) + ".");
    PivotTable table = matrix({"row"}, names);
    for (const int column : filled) addCell(table, {0, column}, numberCell(column));
    return printWithin(table, 24);  // one column to a panel
  };
  const std::string few = printed(10, {4});
  for (const char* name : {"column 0.", "column 4.", "column 9."}) {
    EXPECT_THAT(few, HasSubstr(name));
  }
  EXPECT_THAT(few, Not(HasSubstr("not shown")));
  const std::string many = printed(30, {4, 29});
  for (const char* name : {"column 0.", "column 4.", "column 29."}) {
    EXPECT_THAT(many, HasSubstr(name));
  }
  EXPECT_THAT(many, Not(HasSubstr("column 5.")));
  EXPECT_THAT(many, testing::EndsWith("(27 columns without\nvalues are not shown.)\n"));
  EXPECT_THAT(printed(30, {}), HasSubstr("column 0."));
}

TEST(TablePrinter, AbsurdlyNarrowTerminalLosesNothing) {
  PivotTable table = matrix({"r"}, {"a", "b"});
  addCell(table, {0, 0}, textCell("xyz"));
  for (int width = 1; width < 12; ++width) {
    const std::string printed = printWithin(table, width);
    for (const char* part : {"x", "y", "z", "r", "a", "b"}) {
      EXPECT_THAT(printed, HasSubstr(part)) << width;
    }
  }
}

TEST(TablePrinter, PlainOutputHasNoSequences) {
  PivotTable table = comment({"a"});
  table.cells[0].look.edit([&](TextLook& look) { look.bold = true; });
  table.cells[0].look.edit([&](TextLook& look) { look.textColor = look.backgroundColor = "red"; });
  EXPECT_THAT(print(table), Not(HasSubstr("\x1b")));
}

TEST(TablePrinter, BackgroundFillsTheCellsWholeWidthOnEveryLine) {
  PivotTable table = comment({"one two", "x"});
  table.maxDataColumnWidth = 24;
  table.cells[0].look.edit([&](TextLook& look) { look.textColor = "#102030"; });
  table.cells[0].look.edit([&](TextLook& look) { look.backgroundColor = "yellow"; });
  table.cells[0].look.edit([&](TextLook& look) { look.bold = true; });
  const std::string codes = "\x1b[1;38;2;16;32;48;48;2;255;255;0m";
  const std::string printed = print(table, kTrueColor);
  EXPECT_THAT(printed, HasSubstr(codes + " one  \x1b[0m"));
  EXPECT_THAT(printed, HasSubstr(codes + " two  \x1b[0m"));
  EXPECT_THAT(printed, HasSubstr("\x1b[0m x    \x1b[2m")) << "the next row is plain";
}

TEST(TablePrinter, BackgroundAloneGetsAReadableTextColour) {
  PivotTable table = comment({"x", "y"});
  table.cells[0].look.edit([&](TextLook& look) { look.backgroundColor = "yellow"; });
  table.cells[1].look.edit([&](TextLook& look) { look.backgroundColor = "blue"; });
  const std::string printed = print(table, kTrueColor);
  EXPECT_THAT(printed, HasSubstr("\x1b[38;2;0;0;0;48;2;255;255;0m x \x1b[0m"));
  EXPECT_THAT(printed, HasSubstr("\x1b[38;2;255;255;255;48;2;0;0;255m y \x1b[0m"));
}

TEST(TablePrinter, ValueWithoutAColourColoursNothing) {
  PivotTable table = comment({"x"});
  table.cells[0].look.edit(
      [&](TextLook& look) { look.textColor = look.backgroundColor = "#12345z"; });
  EXPECT_THAT(print(table, kTrueColor), HasSubstr("\x1b[0m x \x1b[2m"));
}

TEST(TablePrinter, NearestPaletteColourWithoutTrueColour) {
  PivotTable table = comment({"x"});
  table.cells[0].look.edit([&](TextLook& look) { look.textColor = "red"; });
  EXPECT_THAT(print(table, TerminalStyle{ColorDepth::k256, 0}),
              HasSubstr("\x1b[38;5;196m x \x1b[0m"));
}

TEST(TablePrinter, TitleIsBold) {
  PivotTable table = comment({"x"});
  table.titleHidden = false;
  EXPECT_THAT(print(table, kTrueColor), testing::StartsWith("\x1b[1mComment\x1b[0m\n"));
}

TEST(TablePrinter, LooksOfLabelsAndTextsAreShownWhereColoursAre) {
  PivotTable table = matrix({"r"}, {"c"});
  table.caption = textCell("caption");
  table.footnotes = {textCell("note")};
  addCell(table, {0, 0}, textCell("x")).look.edit([](TextLook& look) { look.italic = true; });
  table.dimensions[0].categories[0].look.edit([](TextLook& look) { look.underlined = true; });
  table.dimensions[1].categories[0].look.edit(
      [](TextLook& look) { look.bold = look.italic = look.underlined = true; });
  EXPECT_THAT(print(table, kTrueColor), HasSubstr("\x1b[2m[a] note\x1b[0m\n"));
  table.titleLook.edit([](TextLook& look) {
    look.bold = false;
    look.underlined = true;
  });
  table.captionLook.edit([](TextLook& look) { look.bold = true; });
  table.footnoteLook.edit([](TextLook& look) { look.italic = true; });
  const std::string printed = print(table, kTrueColor);
  EXPECT_THAT(printed, testing::StartsWith("\x1b[4mTitle [a]\x1b[0m\n"));
  EXPECT_THAT(printed, HasSubstr("\x1b[1;3;4m c \x1b[0m"));
  EXPECT_THAT(printed, HasSubstr("\x1b[4m r \x1b[0m"));
  EXPECT_THAT(printed, HasSubstr("\x1b[3m x \x1b[0m"));
  EXPECT_THAT(printed, HasSubstr("\x1b[1mcaption\x1b[0m\n"));
  EXPECT_THAT(printed, HasSubstr("\x1b[3m[a] note\x1b[0m\n"));
  EXPECT_THAT(print(table), Not(HasSubstr("\x1b")));
  table.titleLook.edit([](TextLook& look) { look = {}; });
  table.titleLook.edit([](TextLook& look) { look.italic = true; });
  EXPECT_THAT(print(table, kTrueColor), testing::StartsWith("\x1b[1;3mTitle")) << "still bold";
}

TEST(TablePrinter, LayersHaveTheirLook) {
  PivotTable table = matrix({"r"}, {"c"});
  table.dimensions.push_back(makeDimension("Sex", PivotPlace::kLayers, 1, {"Male"}));
  addCell(table, {0, 0, 0}, textCell("x"));
  EXPECT_THAT(print(table, kTrueColor), HasSubstr("\nSex: Male\n"));
  TableLook look;
  look.area(LookArea::kLayers).text.italic = true;
  table.tableLook = Shared<TableLook>(look);
  EXPECT_THAT(print(table, kTrueColor), HasSubstr("\x1b[3mSex: Male\x1b[0m\n"));
}

TEST(TablePrinter, GivenWidthOfAColumnComesBeforeTheLimits) {
  PivotTable table = matrix({"r"}, {"c", "d"});
  addCell(table, {0, 0}, textCell("one two"));
  addCell(table, {0, 1}, textCell("y"));
  table.minDataColumnWidth = table.maxDataColumnWidth = 18;
  table.dimensions[1].categories[0].width = 30;
  EXPECT_THAT(print(table), HasSubstr("│ r │ one    y   │\n│   │ two        │\n"));
  table.dimensions[1].categories[0].width = 60;
  EXPECT_THAT(print(table), HasSubstr("│ r │ one two     y   │\n"));
  table.dimensions[1].categories[0].width = 1;
  EXPECT_THAT(print(table), HasSubstr("│ r │ o  y   │\n"));
}

TEST(TablePrinter, CaptionAndNotesOfTheTableStandBelowIt) {
  PivotTable table = matrix({"r"}, {"c"});
  addCell(table, {0, 0}, textCell("x")).notes = {textCell("cell")};
  table.caption = textCell("caption\x1b");
  table.footnotes = {textCell("whole")};
  const std::string printed = print(table);
  EXPECT_THAT(printed, testing::StartsWith("Title [a]\n"));
  EXPECT_THAT(printed, testing::EndsWith("┘\ncaption\uFFFD\n[a] whole\n[b] cell\n"));
  table.titleHidden = true;
  EXPECT_THAT(print(table), testing::StartsWith("┌"));
}

}  // namespace
}  // namespace vornwout
