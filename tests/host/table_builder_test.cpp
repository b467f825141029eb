#include "host/build/table_builder.h"

#include <chrono>
#include <map>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/support/hostile_size.h"
#include "tests/support/memory_files.h"

namespace vornwout {
namespace {

/// A table of the given dimensions: "region" or "region/city", each a dimension.
TableDescription described(const std::vector<std::string>& rows,
                           const std::vector<std::string>& columns, const std::string& value) {
  TableDescription table;
  table.csv = "a.csv";
  const auto add = [&](const std::string& names, PivotPlace place, const char* member) {
    DimensionDescription& dimension = table.dimensions.emplace_back();
    dimension.place = place;
    dimension.path = {member};
    std::string rest = names;
    for (std::size_t at = 0; at != std::string::npos;) {
      at = rest.find('/');
      dimension.columns.push_back({rest.substr(0, at), {member}});
      if (at != std::string::npos) rest = rest.substr(at + 1);
    }
  };
  for (const std::string& names : rows) add(names, PivotPlace::kRows, "rows");
  for (const std::string& names : columns) add(names, PivotPlace::kColumns, "columns");
  table.values.emplace_back().column = {value, {"value"}};
  return table;
}

std::shared_ptr<const PivotTable> built(const TableDescription& description,
                                        const std::string& csv) {
  MemoryFiles files({{"a.csv", csv}});
  return buildTable(description, files);
}

std::string errorOf(const TableDescription& description, const std::string& csv) {
  try {
    built(description, csv);
  } catch (const BuildError& error) {
    return fmt::format("{}:{}: {}", error.place().line, error.place().column, error.what());
  } catch (const DescriptionError& error) {
    return fmt::format("{}: {}", jsonPointer(error.path()), error.what());
  }
  return "none";
}

/// "North > Kiel, 2024 = 1 (note)" per cell.
std::vector<std::string> cellsOf(const PivotTable& table) {
  std::vector<std::string> cells;
  for (const PivotCell& cell : table.cells) {
    std::string shown;
    for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
      std::string path;
      for (const int node : categoryPath(table.dimensions[d], cell.at[d])) {
        path += (path.empty() ? "" : " > ") +
                table.dimensions[d].categories[static_cast<std::size_t>(node)].label.text;
      }
      shown += (d == 0 ? "" : ", ") + path;
    }
    shown += " = " + renderText(cell.value);
    for (const CellText& note : cell.notes) shown += " (" + note.text + ")";
    cells.push_back(shown);
  }
  return cells;
}

/// The categories in their order, groups with a colon.
std::string categoriesOf(const PivotDimension& dimension) {
  std::string shown;
  int leaf = 0;
  for (const PivotCategory& category : dimension.categories) {
    shown += (shown.empty() ? "" : " ") + category.label.text + (category.isGroup ? ":" : "");
    EXPECT_EQ(category.leaf, category.isGroup ? -1 : leaf++);
  }
  EXPECT_EQ(dimension.leafCount, leaf);
  return shown;
}

const std::string kSales =
    "region,city,year,amount\n"
    "South,Ulm,2024,1.5\n"
    "North,Kiel,2024,2\n"
    "South,Bonn,2023,\n"
    "North,Kiel,2023,4\n";

using Cells = std::vector<std::string>;

TEST(TableBuilder, RowsOfTheFileBecomeCellsAndEmptyValuesNone) {
  const auto table = built(described({"region", "city"}, {"year"}, "amount"), kSales);
  EXPECT_EQ(cellsOf(*table),
            (Cells{"South, Ulm, 2024 = 1.5", "North, Kiel, 2024 = 2", "North, Kiel, 2023 = 4"}));
  ASSERT_EQ(table->dimensions.size(), 3U);
  EXPECT_EQ(table->dimensions[0].label.text, "region");
  EXPECT_EQ(table->dimensions[1].position, (PivotPosition{0, 2, false, false}));
  EXPECT_EQ(table->dimensions[2].position, (PivotPosition{1, 1, false, false}));
  EXPECT_EQ(categoriesOf(table->dimensions[1]), "Ulm Kiel Bonn");
}

TEST(TableBuilder, NestedColumnsAreGroupsThatStandTogether) {
  const auto table = built(described({"region/city"}, {"year"}, "amount"), kSales);
  EXPECT_EQ(table->dimensions[0].label.text, "region / city");
  EXPECT_EQ(categoriesOf(table->dimensions[0]), "South: Ulm Bonn North: Kiel");
  EXPECT_EQ(cellsOf(*table),
            (Cells{"South > Ulm, 2024 = 1.5", "North > Kiel, 2024 = 2", "North > Kiel, 2023 = 4"}));
}

TEST(TableBuilder, CategoriesAreSortedAsAsked) {
  struct Case {
    CategoryOrder order;
    const char* categories;
  };
  const Case cases[] = {{CategoryOrder::kAppearance, "10 b 9 \xC3\x84 a Z"},
                        {CategoryOrder::kLabel, "9 10 a \xC3\x84 b Z"},
                        {CategoryOrder::kNumber, "9 10 b \xC3\x84 a Z"}};
  for (const Case& c : cases) {
    TableDescription description = described({"k"}, {}, "v");
    description.dimensions[0].order = c.order;
    const auto table = built(description, "k,v\n10,1\nb,2\n9,3\n\xC3\x84,4\na,5\nZ,6\n");
    std::string wanted = c.categories;
    // By label digits compare one by one.
    if (c.order == CategoryOrder::kLabel) wanted = "10 9 a \xC3\x84 b Z";
    EXPECT_EQ(categoriesOf(table->dimensions[0]), wanted);
    EXPECT_EQ(cellsOf(*table),
              (Cells{"10 = 1", "b = 2", "9 = 3", "\xC3\x84 = 4", "a = 5", "Z = 6"}));
  }
}

TEST(TableBuilder, SeveralValueColumnsAreADimension) {
  TableDescription description = described({"k"}, {}, "a");
  description.values.emplace_back().column = {"b", {"values", "1"}};
  description.values[0].label = "Mean";
  description.values[0].statistic = StatisticKind::kMean;
  description.values[0].format = parseDisplayFormat("F8.1");
  description.values[1].isText = true;
  description.hasValueDimension = true;
  description.statistic = StatisticKind::kCount;
  const auto table = built(description, "k,a,b\nx,1,one\ny,,two\n");
  EXPECT_EQ(cellsOf(*table), (Cells{"x, Mean = 1.0", "x, b = one", "y, b = two"}));
  const PivotDimension& values = table->dimensions[1];
  EXPECT_EQ(values.label.text, "Statistics");
  EXPECT_EQ(values.place(), PivotPlace::kColumns);
  EXPECT_EQ(values.categories[0].statistic, StatisticKind::kMean);
  EXPECT_EQ(values.categories[1].statistic, StatisticKind::kCount);
  description.valuesPlace = PivotPlace::kRows;
  EXPECT_EQ(built(description, "k,a,b\nx,1,one\n")->dimensions[1].position->index, 2);
  description.values[1].label = "Mean";
  EXPECT_EQ(errorOf(description, "k,a,b\nx,1,one\n"),
            "/values/1: Two value columns are called \"Mean\".");
}

TEST(TableBuilder, FormatOfACategoryComesBeforeThatOfTheTable) {
  TableDescription description = described({"region/city"}, {"year"}, "amount");
  description.format = parseDisplayFormat("F8.2");
  description.dimensions[0].formats = {{"North", *parseDisplayFormat("F8.3")},
                                       {"Ulm", *parseDisplayFormat("F8.4")}};
  description.dimensions[1].formats = {{"2023", *parseDisplayFormat("DOLLAR8.2")}};
  EXPECT_EQ(cellsOf(*built(description, kSales)),
            (Cells{"South > Ulm, 2024 = 1.5000", "North > Kiel, 2024 = 2.000",
                   "North > Kiel, 2023 = $4.00"}));
}

TEST(TableBuilder, StatisticsBelongToCategories) {
  TableDescription description = described({"region/city"}, {"year"}, "amount");
  description.statistic = StatisticKind::kMean;
  description.dimensions[0].statistics = {{"North", StatisticKind::kCount}};
  const auto table = built(description, kSales);
  EXPECT_EQ(table->dimensions[0].categories[0].statistic, StatisticKind::kNone);
  EXPECT_EQ(table->dimensions[0].categories[3].statistic, StatisticKind::kCount);
  EXPECT_EQ(table->dimensions[1].categories[0].statistic, StatisticKind::kMean);
  EXPECT_EQ(table->dimensions[1].categories[1].statistic, StatisticKind::kMean);
}

TEST(TableBuilder, DatesAreReadWhereTheFormatIsOneOfDates) {
  TableDescription description = described({"k"}, {}, "v");
  description.format = parseDisplayFormat("EDATE10");
  EXPECT_EQ(cellsOf(*built(description, "k,v\na,2026-11-20\n")), Cells{"a = 20.11.2026"});
  EXPECT_EQ(errorOf(description, "k,v\na,2026-13-20\n"), "2:3: \"2026-13-20\" is no date.");
  description.format = parseDisplayFormat("TIME8");
  EXPECT_EQ(cellsOf(*built(description, "k,v\na,13:05\n")), Cells{"a = 13:05:00"});
  EXPECT_EQ(errorOf(description, "k,v\na,1305\n"), "2:3: \"1305\" is no time.");
  description.format = parseDisplayFormat("A8");
  EXPECT_EQ(cellsOf(*built(description, "k,v\na,text\n")), Cells{"a = text"});
}

TEST(TableBuilder, EuropeanNumbersAreRead) {
  TableDescription description = described({"k"}, {}, "v");
  description.marks = {',', '.'};
  EXPECT_EQ(cellsOf(*built(description, "k;v\na;1.234,5\n")), Cells{"a = 1234.5"});
}

TEST(TableBuilder, FootnotesReachTheirCells) {
  TableDescription description = described({"region/city"}, {"year"}, "amount");
  description.footnotes = {{"all", {}, {}},
                           {"north", {{"region", "North"}}, {}},
                           {"one", {{"city", "Kiel"}, {"year", "2023"}}, {}},
                           {"dim", {{"region / city", "Ulm"}}, {}}};
  const auto table = built(description, kSales);
  ASSERT_EQ(table->footnotes.size(), 1U);
  EXPECT_EQ(table->footnotes[0].text, "all");
  EXPECT_EQ(cellsOf(*table),
            (Cells{"South > Ulm, 2024 = 1.5 (dim)", "North > Kiel, 2024 = 2 (north)",
                   "North > Kiel, 2023 = 4 (north) (one)"}));
}

TEST(TableBuilder, TextsOfTheTableAreTakenOver) {
  TableDescription description = described({"region"}, {"city", "year"}, "amount");
  description.title = "T";
  description.titleHidden = true;
  description.caption = "C";
  description.subtype = "S";
  description.dimensions[0].label = "L";
  description.dimensions[0].hideLabel = true;
  description.dimensions[0].hideCategories = true;
  const auto table = built(description, kSales);
  EXPECT_EQ(table->title.text + table->caption.text + table->subtype.text, "TCS");
  EXPECT_TRUE(table->titleHidden);
  EXPECT_EQ(table->dimensions[0].label.text, "L");
  EXPECT_EQ(table->dimensions[0].position, (PivotPosition{0, 1, true, true}));
}

TEST(TableBuilder, WhatDoesNotFitIsRefusedAtItsPlace) {
  const TableDescription plain = described({"region"}, {"year"}, "amount");
  struct Case {
    const char* csv;
    const char* error;
  };
  const Case cases[] = {
      {"region,year,amount\na,1,x\n", "2:5: \"x\" is no number."},
      {"region,year,amount\na,1, \n", "2:5: The value is made of blanks only."},
      {"region,year,amount\na,1,inf\n", "2:5: \"inf\" is no number."},
      {"region,year,amount\na,1,1e999\n", "2:5: The number \"1e999\" is too large."},
      {"region,year,amount\na,1,5\nb,1,6\n\na,1,7\n",
       "5:5: The cell a, 1 stands twice, first in line 2, column 5."},
      {"region,year,year,amount\n", "1:13: There are two columns \"year\"."},
      {"year,amount\n", "/rows: a.csv has no column \"region\"."},
      {"region,amount\n", "/columns: a.csv has no column \"year\"."},
      {"region,year\n", "/value: a.csv has no column \"amount\"."},
  };
  for (const Case& c : cases) EXPECT_EQ(errorOf(plain, c.csv), c.error);
  EXPECT_EQ(errorOf(described({"region"}, {"region"}, "amount"), "region,amount\n"),
            "/columns: The column \"region\" is used twice.");
  TableDescription notes = described({"region"}, {"year"}, "amount");
  const std::string csv = "region,year,amount\na,1,5\nb,2,6\n";
  notes.footnotes = {{"n", {{"region", "c"}}, {"footnotes", "0"}}};
  EXPECT_EQ(errorOf(notes, csv), "/footnotes/0/at/region: \"region\" has no category \"c\".");
  notes.footnotes = {{"n", {{"place", "a"}}, {"footnotes", "0"}}};
  EXPECT_EQ(errorOf(notes, csv),
            "/footnotes/0/at/place: The table has no dimension from a column \"place\".");
  notes.footnotes = {{"n", {{"region", "a"}, {"year", "2"}}, {"footnotes", "0"}}};
  EXPECT_EQ(errorOf(notes, csv), "/footnotes/0/at: There is no cell with these labels.");
  notes.footnotes.assign(kMaxFootnotes + 1, {"n", {}, {}});
  EXPECT_EQ(errorOf(notes, csv), "/footnotes: There are more than 1000 footnotes.");
  notes.footnotes.clear();
  notes.dimensions[0].statistics = {{"c", StatisticKind::kMean}};
  EXPECT_EQ(errorOf(notes, csv), "/rows/statistics/c: No category is called \"c\".");
}

TEST(TableBuilder, CellThatStandsTwiceIsFoundInASparseTableToo) {
  std::string csv = "a,b,v\n";
  for (int i = 0; i < 1000; ++i) csv += fmt::format("{},{},{}\n", i, 999 - i, i);
  const TableDescription description = described({"a"}, {"b"}, "v");
  EXPECT_EQ(built(description, csv)->cells.size(), 1000U);
  EXPECT_EQ(errorOf(description, csv + "700,299,0\n"),
            "1002:9: The cell 700, 299 stands twice, first in line 702, column 9.");
}

TEST(TableBuilder, LabelsInAnyOrderFindTheirCategories) {
  // Each label is followed by another one every time, and by one of another group.
  const std::string csv =
      "g,m,y,v\nA,x,1,1\nA,y,1,2\nB,y,1,3\nB,x,1,4\nA,x,2,5\nB,x,2,6\nA,y,2,7\nB,y,2,8\n";
  const auto table = built(described({"g/m"}, {"y"}, "v"), csv);
  EXPECT_EQ(categoriesOf(table->dimensions[0]), "A: x y B: y x");
  EXPECT_EQ(cellsOf(*table),
            (Cells{"A > x, 1 = 1", "A > y, 1 = 2", "B > y, 1 = 3", "B > x, 1 = 4", "A > x, 2 = 5",
                   "B > x, 2 = 6", "A > y, 2 = 7", "B > y, 2 = 8"}));
}

TEST(TableBuilder, ManyCellsKeepTheirPlaces) {
  std::string csv = "a,b,c,v\n";
  for (int i = 0; i < 30000; ++i) {
    csv += fmt::format("{},{},{},{}\n", i % 30, i / 30 % 100, i / 3000, i);
  }
  TableDescription description = described({"a/b"}, {"c"}, "v");
  description.dimensions[0].order = CategoryOrder::kNumber;
  const auto table = built(description, csv);
  ASSERT_EQ(table->cells.size(), 30000U);
  const Cells cells = cellsOf(*table);
  EXPECT_EQ(cells[12345], "15 > 11, 4 = 12345");
  EXPECT_EQ(table->dimensions[0].leafCount, 3000);
  EXPECT_EQ(errorOf(description, csv + "15,11,4,0\n"),
            "30002:9: The cell 15 11, 4 stands twice, first in line 12347, column 9.");
}

double secondsToBuild(int rows) {
  std::string csv = "region,id,v\n";
  for (int i = 0; i < rows; ++i) csv += fmt::format("r{},{},1\n", i / (rows / 10), i);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(built(described({"region", "id"}, {}, "v"), csv)->cells.size(),
            static_cast<std::size_t>(rows));
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(TableBuilderScale, FewRowsOfManyCellsTakeLinearTime) {
  const double few = secondsToBuild(kHostileCount / 5);
  const double many = secondsToBuild(2 * kHostileCount);
  // Ten times the cells; a cost that grew with the rows would make it a hundred times.
  EXPECT_LT(many, 30 * few + 0.5);
}

}  // namespace
}  // namespace vornwout
