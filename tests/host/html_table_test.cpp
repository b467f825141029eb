#include "host/export/html/html_table.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string htmlOf(const PivotTable& table, const HtmlTableOptions& options = {},
                   bool isPlain = false) {
  std::string out;
  HtmlWriter html(out);
  if (isPlain) html.makePlain();
  TableLayout layout(table);
  GridRows rows(layout, 0);
  writeHtmlTable(html, rows, options);
  return out;
}

int count(const std::string& text, const std::string& part) {
  int found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++found;
  }
  return found;
}

/// Rows "a", "b" by columns "x", "y", the place (b, x) empty.
PivotTable simpleTable() {
  PivotTable table;
  table.title = textCell("Title");
  table.dimensions = {makeDimension("Rows", PivotPlace::kRows, 1, {"a", "b"}),
                      makeDimension("Columns", PivotPlace::kColumns, 1, {"x", "y"})};
  addCell(table, {0, 0}, numberCell(1));
  addCell(table, {0, 1}, numberCell(2));
  addCell(table, {1, 1}, textCell("four"));
  return table;
}

TEST(HtmlTable, LabelsAreHeaderCellsWithAScope) {
  PivotTable table = simpleTable();
  for (PivotDimension& dimension : table.dimensions) dimension.position->hideLabel = true;
  const std::string html = htmlOf(table);
  EXPECT_THAT(html, HasSubstr("<thead>\n<tr><td></td><th class=\"r\" scope=\"col\">x</th>"
                              "<th scope=\"col\">y</th></tr>\n</thead>\n"));
  EXPECT_THAT(html, HasSubstr("<tbody>\n<tr><th scope=\"row\">a</th><td class=\"n\">1</td>"
                              "<td class=\"n\">2</td></tr>\n"
                              "<tr><th scope=\"row\">b</th><td></td><td>four</td></tr>\n</tbody>"));
  EXPECT_THAT(html, Not(HasSubstr("headers="))) << "a scope says enough where nothing is nested";
}

TEST(HtmlTable, NumbersAloneAreKeptFromWrapping) {
  PivotTable table = simpleTable();
  table.dimensions[1].categories[0].label = textCell("Mean\nof amounts");
  TableLook look;
  look.area(LookArea::kData).horizontal = LookHorizontal::kRight;
  table.tableLook = Shared<TableLook>(look);
  const std::string html = htmlOf(table);
  EXPECT_THAT(html, HasSubstr("<th class=\"r\""));
  EXPECT_EQ(count(html, "<td class=\"n\""), 2) << "1 and 2";
  EXPECT_EQ(count(html, "<td class=\"r\""), 1) << "four";
}

/// A row of numbers as they stand.
PivotTable numbersTable(int columns, const std::string& number) {
  PivotTable table;
  const std::vector<std::string> labels(static_cast<std::size_t>(columns), "c");
  table.dimensions = {makeDimension("Rows", PivotPlace::kRows, 1, {"a"}),
                      makeDimension("Columns", PivotPlace::kColumns, 1, labels)};
  for (int i = 0; i < columns; ++i) addCell(table, {0, i}, textCell(number));
  return table;
}

TEST(HtmlTable, PrintedAcrossAndSmallerAndCutByItsWidth) {
  const auto fit = [](int columns, const std::string& number) {
    const std::string html = htmlOf(numbersTable(columns, number));
    if (count(html, "class=\"cut\"") > 0) return "cut";
    if (count(html, "class=\"broad small\"") > 0) return "small";
    return count(html, "class=\"broad\"") > 0 ? "turned" : "upright";
  };
  EXPECT_STREQ(fit(14, "123"), "upright") << "narrow columns";
  EXPECT_STREQ(fit(6, "1,234,567,890.12"), "turned");
  EXPECT_STREQ(fit(9, "1,234,567,890.12"), "small");
  EXPECT_STREQ(fit(12, "1,234,567,890,123.45"), "cut");
  EXPECT_STREQ(fit(40, "12345"), "cut");
  EXPECT_STREQ(fit(5, "a text of words that can be wrapped anywhere"), "turned");
  EXPECT_EQ(count(htmlOf(numbersTable(40, "12345"), {}, true), "hidden"), 0) << "bare";
}

TEST(HtmlTable, GapIsPartedWhereTheLookDrawsLines) {
  PivotTable table = simpleTable();
  table.dimensions[1] = makeDimension("Columns", PivotPlace::kColumns, 1, {"x", "y", "z"});
  TableLook look;
  table.tableLook = Shared<TableLook>(look);
  const int without = count(htmlOf(table), "<td");
  look.area(LookArea::kData).borders.columns.style = LookLineStyle::kSolid;
  table.cells.resize(2);
  table.tableLook = Shared<TableLook>(look);
  EXPECT_EQ(count(htmlOf(table), "<td colspan"), 0) << without;
}

TEST(HtmlTable, LimitsOfDataColumnsAreSaidOnce) {
  PivotTable table = simpleTable();
  EXPECT_THAT(htmlOf(table), Not(HasSubstr("limited")));
  table.minDataColumnWidth = 36;
  table.maxDataColumnWidth = 200;
  EXPECT_THAT(htmlOf(table),
              HasSubstr("<table class=\"limited\" style=\"--least:36pt;--most:200pt;\">"));
}

TEST(HtmlTable, WithoutCellsSaysSo) {
  PivotTable table;
  table.title = textCell("Title");
  table.dimensions = {makeDimension("Columns", PivotPlace::kColumns, 1, {})};
  EXPECT_THAT(htmlOf(table), HasSubstr("<tbody><tr><td>(empty)</td></tr></tbody>"));
}

TEST(HtmlTable, NestedLabelsAreNamedByTheCellsBelowThem) {
  PivotTable table;
  PivotDimension rows = makeDimension("R", PivotPlace::kRows, 1, {});
  rows.position->hideLabel = true;
  const int north = addGroup(rows, "North");
  addLeaf(rows, "Oslo", north);
  addLeaf(rows, "Bergen", north);
  addLeaf(rows, "South");
  table.dimensions = {rows, makeDimension("C", PivotPlace::kColumns, 1, {"x"})};
  for (int i = 0; i < 3; ++i) addCell(table, {i, 0}, numberCell(i));
  const std::string html = htmlOf(table, {"t7", {}});
  EXPECT_THAT(html, HasSubstr("<th scope=\"col\" id=\"t7h1\">C</th>"));
  EXPECT_THAT(html, HasSubstr("<th class=\"r\" scope=\"col\" id=\"t7h2\">x</th>"));
  EXPECT_THAT(
      html, HasSubstr("<th rowspan=\"2\" class=\"group\" scope=\"rowgroup\" id=\"t7h3\">North</th>"
                      "<th scope=\"row\" id=\"t7h4\">Oslo</th>"
                      "<td class=\"n\" headers=\"t7h3 t7h4 t7h1 t7h2\">0</td></tr>"));
  EXPECT_THAT(html, HasSubstr("<tr><th scope=\"row\" id=\"t7h5\">Bergen</th>"
                              "<td class=\"n\" headers=\"t7h3 t7h5 t7h1 t7h2\">1</td></tr>"));
  EXPECT_THAT(html, HasSubstr("<tr><th colspan=\"2\" scope=\"row\" id=\"t7h6\">South</th>"
                              "<td class=\"n\" headers=\"t7h6 t7h1 t7h2\">2</td></tr>"));
}

TEST(HtmlTable, FootnotesAreMarkedAndListed) {
  PivotTable table = simpleTable();
  table.footnotes = {textCell("of the table")};
  table.cells[0].notes = {textCell("of a cell"), textCell("of the table")};
  table.caption = textCell("Below.");
  const std::string html = htmlOf(table, {"t1", {}});
  EXPECT_THAT(html, HasSubstr("<caption id=\"t1c\"><span>Title<sup><a href=\"#t1na\" "
                              "aria-label=\"Footnote a\">a</a></sup></span></caption>"));
  EXPECT_THAT(html, HasSubstr(">1<sup><a href=\"#t1nb\" aria-label=\"Footnote b\">b</a>,"
                              "<a href=\"#t1na\" aria-label=\"Footnote a\">a</a></sup></td>"));
  EXPECT_THAT(html, HasSubstr("<p class=\"caption\">Below.</p>\n<dl class=\"notes\">\n"
                              "<div id=\"t1na\"><dt>a</dt><dd>of the table</dd></div>\n"
                              "<div id=\"t1nb\"><dt>b</dt><dd>of a cell</dd></div>\n</dl>"));
}

TEST(HtmlTable, HiddenTitleIsStillSaidToThoseWhoDoNotSee) {
  PivotTable table = simpleTable();
  table.titleHidden = true;
  const std::string named = htmlOf(table, {"t1", "Label"});
  EXPECT_THAT(named,
              HasSubstr("<caption id=\"t1c\"><span class=\"unseen\">Label</span></caption>"));
  EXPECT_THAT(named, HasSubstr("aria-labelledby=\"t1c\""));
  const std::string nameless = htmlOf(table, {"t1", ""});
  EXPECT_THAT(nameless, Not(HasSubstr("<caption")));
  EXPECT_THAT(nameless, HasSubstr("aria-label=\"Table\""));
}

TEST(HtmlTable, LayersAreNamed) {
  PivotTable table = simpleTable();
  EXPECT_EQ(layerHeading(layoutTable(table).at(0)), "");
  table.dimensions.push_back(makeDimension("Sex", PivotPlace::kLayers, 1, {"Male"}));
  table.dimensions.push_back(makeDimension("Age", PivotPlace::kLayers, 2, {"Adult"}));
  table.dimensions.back().position->hideLabel = true;
  table.dimensions.push_back(makeDimension("Year", PivotPlace::kLayers, 3, {"2024"}));
  table.dimensions.back().position->hideCategories = true;
  for (PivotCell& cell : table.cells) cell.at = std::vector<int>{cell.at[0], cell.at[1], 0, 0, 0};
  EXPECT_EQ(layerHeading(layoutTable(table).at(0)), "Sex: Male, Adult, Year");
  EXPECT_THAT(htmlOf(table), HasSubstr("<span class=\"unseen\"> Sex: Male, Adult, Year</span>"));
}

TEST(HtmlTable, OnlyColoursThatAreSomeReachTheStyle) {
  PivotTable table = simpleTable();
  table.cells[0].look.edit([&](TextLook& look) { look.textColor = "red"; });
  table.cells[0].look.edit([&](TextLook& look) { look.bold = true; });
  table.cells[1].look.edit([&](TextLook& look) { look.backgroundColor = "#102030"; });
  table.cells[2].look.edit([&](TextLook& look) { look.textColor = "#fff;background:url(//evil)"; });
  table.cells[2].look.edit([&](TextLook& look) { look.backgroundColor = "x\" onclick=\"y"; });
  const std::string html = htmlOf(table);
  EXPECT_THAT(html, HasSubstr("<td class=\"n ink\" style=\"color:#ff0000;font-weight:bold;\""));
  EXPECT_THAT(html, HasSubstr("style=\"color:#ffffff;background:#102030;\""));
  EXPECT_THAT(html, Not(HasSubstr("evil")));
  EXPECT_THAT(html, Not(HasSubstr("onclick")));
}

TEST(HtmlTable, LooksAreStylesOfWhatTheyAreAbout) {
  PivotTable table = simpleTable();
  table.caption = textCell("Below.");
  table.footnotes = {textCell("note")};
  table.titleLook.edit([](TextLook& look) { look.bold = false; });
  table.captionLook.edit([](TextLook& look) { look.italic = true; });
  table.footnoteLook.edit([](TextLook& look) { look.textColor = "red"; });
  table.dimensions[0].categories[0].look.edit([](TextLook& look) {
    look.bold = false;
    look.underlined = true;
  });
  table.dimensions[1].categories[1].look.edit([](TextLook& look) { look.size = 14.5; });
  table.cells[0].look.edit([](TextLook& look) { look.font = "Noto Sans"; });
  const std::string html = htmlOf(table);
  EXPECT_THAT(html, HasSubstr("<span style=\"font-weight:normal;\">Title<sup>"));
  EXPECT_THAT(html,
              HasSubstr("<p class=\"caption\"><span style=\"font-style:italic;\">Below.</span>"
                        "</p>"));
  EXPECT_THAT(html, HasSubstr("<dd><span class=\"ink\" style=\"color:#ff0000;\">note</span></dd>"));
  EXPECT_THAT(html, HasSubstr("<th style=\"font-weight:normal;text-decoration:underline;\" "
                              "scope=\"row\">a</th>"));
  EXPECT_THAT(html, HasSubstr("style=\"font-size:14.5pt;\" scope=\"col\">y</th>"));
  EXPECT_THAT(html, HasSubstr("<td class=\"n\" style=\"font-family:&#39;Noto Sans&#39;;\""));
}

TEST(HtmlTable, TitleLayersCaptionAndFootnotesStandInTheBoxesOfTheirAreas) {
  PivotTable table = simpleTable();
  table.caption = textCell("Below.");
  table.footnotes = {textCell("note")};
  TableLook look;
  for (const LookArea area :
       {LookArea::kTitle, LookArea::kLayers, LookArea::kCaption, LookArea::kFootnotes}) {
    look.area(area).horizontal = LookHorizontal::kRight;
    look.area(area).margins.top = static_cast<double>(area) + 1;
  }
  look.area(LookArea::kLayers).text.bold = true;
  table.tableLook = Shared<TableLook>(look);
  table.dimensions.push_back(makeDimension("Sex", PivotPlace::kLayers, 1, {"Male"}));
  for (PivotCell& cell : table.cells) cell.at = std::vector<int>{cell.at[0], cell.at[1], 0};
  const std::string html = htmlOf(table);
  EXPECT_THAT(html, HasSubstr("<caption id=\"tc\" style=\"text-align:right;padding:1pt "));
  EXPECT_THAT(html, HasSubstr("<p class=\"caption\" style=\"text-align:right;padding:7pt "));
  EXPECT_THAT(html, HasSubstr("<dl class=\"notes\" style=\"text-align:right;padding:8pt "));
  EXPECT_THAT(html, HasSubstr("id=\"tna\" style=\"justify-content:flex-end;\""));
  std::string heading;
  HtmlWriter writer(heading);
  writeLayerHeading(writer, layoutTable(table).at(0), 3);
  EXPECT_THAT(heading, HasSubstr("<h3 class=\"layer\" style=\"text-align:right;padding:2pt "));
  EXPECT_THAT(heading, HasSubstr("<span style=\"font-weight:bold;\">Sex: Male</span></h3>"));
  table.titleHidden = true;
  EXPECT_THAT(htmlOf(table, {"t", "Label"}), HasSubstr("<caption id=\"tc\"><span"))
      << "what is not seen has no box";
}

TEST(HtmlTable, GivenWidthsAreThoseOfTheColumns) {
  PivotTable table = simpleTable();
  EXPECT_THAT(htmlOf(table), Not(HasSubstr("<col")));
  table.dimensions[1].categories[0].width = 72;
  EXPECT_THAT(htmlOf(table), HasSubstr("</caption>\n<colgroup><col><col style=\"width:72pt;\">"
                                       "</colgroup>\n<thead>"));
  table.dimensions[1].categories[1].width = 72;
  EXPECT_THAT(htmlOf(table), HasSubstr("<colgroup><col><col span=\"2\" style=\"width:72pt;\">"
                                       "</colgroup>"));
  PivotTable wide = simpleTable();
  wide.dimensions[1] =
      makeDimension("Columns", PivotPlace::kColumns, 1, std::vector<std::string>(2499, "x"));
  wide.dimensions[1].categories.back().width = 9;
  EXPECT_THAT(htmlOf(wide), HasSubstr("<colgroup><col span=\"1000\"><col span=\"1000\">"
                                      "<col span=\"499\"><col style=\"width:9pt;\"></colgroup>"));
}

TEST(HtmlTable, SummaryDescribesTheTableToThoseWhoDoNotSee) {
  PivotTable table = simpleTable();
  EXPECT_THAT(htmlOf(table), Not(HasSubstr("aria-describedby")));
  table.summary = "More <b> than a.";
  const std::string html = htmlOf(table, {"t1", {}});
  EXPECT_THAT(html, HasSubstr("<p class=\"unseen\" id=\"t1s\">More &lt;b&gt; than a.</p>\n"
                              "<table aria-describedby=\"t1s\">"));
}

TEST(HtmlTable, GapIsOneCellHoweverWide) {
  PivotTable table;
  std::vector<std::string> names;
  for (int i = 0; i < 2500; ++i) names.push_back(std::to_string(i));
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, {"a"}),
                      makeDimension("C", PivotPlace::kColumns, 1, names)};
  addCell(table, {0, 2499}, numberCell(1));
  const std::string html = htmlOf(table);
  const std::string body = html.substr(html.find("<tbody>"));
  EXPECT_EQ(count(body, "<td"), 4) << "2499 empty places in three cells, and the one with a value";
  EXPECT_EQ(count(body, "colspan=\"1000\""), 2);
  EXPECT_EQ(count(body, "colspan=\"499\""), 1);
  // A label over more columns than a browser counts is said again.
  EXPECT_EQ(count(html, ">C</th>"), 3);
}

TEST(HtmlTable, TableWithoutAnythingIsStillATable) {
  const std::string html = htmlOf(PivotTable());
  EXPECT_THAT(html, HasSubstr("<table>"));
  EXPECT_THAT(html, HasSubstr("</table>"));
}

TEST(HtmlTable, WithoutNotesThereAreNeitherCaptionNorMarks) {
  PivotTable table = simpleTable();
  table.caption = textCell("Below.");
  table.footnotes = {textCell("of all")};
  table.cells[0].notes.push_back(textCell("of one"));
  HtmlTableOptions options;
  EXPECT_THAT(htmlOf(table, options), HasSubstr("Below."));
  EXPECT_THAT(htmlOf(table, options), HasSubstr("<sup>"));
  options.withNotes = false;
  EXPECT_THAT(htmlOf(table, options), Not(HasSubstr("Below.")));
  EXPECT_THAT(htmlOf(table, options), Not(HasSubstr("<sup>")));
  EXPECT_THAT(htmlOf(table, options), Not(HasSubstr("of one")));
}

TEST(HtmlTable, PlainOneHasNoStylesAndNothingThatOnlyStylesHide) {
  PivotTable table = simpleTable();
  table.summary = "what it is about";
  table.titleHidden = true;
  table.tableLook = Shared<TableLook>(TableLook());
  table.cells[0].look.edit([](TextLook& look) { look.bold = true; });
  const std::string html = htmlOf(table, {"t", "Label"}, true);
  EXPECT_THAT(html, Not(HasSubstr("style=")));
  EXPECT_THAT(html, Not(HasSubstr("class=")));
  EXPECT_THAT(html, Not(HasSubstr("what it is about")));
  EXPECT_THAT(html, Not(HasSubstr("Label")));
  EXPECT_THAT(html, HasSubstr("<td>1</td>"));
}

}  // namespace
}  // namespace vornwout
