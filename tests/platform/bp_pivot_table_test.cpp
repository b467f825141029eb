// What the handles of a table build, and where its cells go.
#include "platform/pivot/bp_pivot_table.h"

#include <chrono>
#include <functional>

#include <gtest/gtest.h>

#include "platform/pivot/bp_procedure.h"
#include "platform/text/encoding.h"
#include "tests/support/hostile_size.h"
#include "tests/support/recording_sink.h"

namespace vornwout {
namespace {

BpString label(const std::string& text) { return {text, false}; }

/// The table that `fill` builds.
std::shared_ptr<const PivotTable> built(const std::function<void(BpPivotTable&)>& fill) {
  RecordingSink sink;
  {
    BpProcedure procedure("p", 2);
    BpPivotTable table = procedure.PivotTable(label("T"), label("S"));
    fill(table);
  }
  return sink.tables.at(0);
}

/// The cells as "path,path=value" in their order.
std::vector<std::string> cells(const PivotTable& table) {
  std::vector<std::string> shown;
  for (const PivotCell& cell : table.cells) {
    std::string text;
    EXPECT_EQ(cell.at.size(), table.dimensions.size());
    for (std::size_t i = 0; i < cell.at.size(); ++i) {
      if (i > 0) text += ',';
      const PivotDimension& dimension = table.dimensions[i];
      const std::vector<int> path = categoryPath(dimension, cell.at[i]);
      EXPECT_FALSE(path.empty());
      for (const int node : path) {
        text += '/' + renderText(dimension.categories[static_cast<std::size_t>(node)].label);
      }
    }
    shown.push_back(text + '=' + renderText(cell.value));
  }
  return shown;
}

using Cells = std::vector<std::string>;

TEST(BpPivotTable, KeepsItsPropertiesOnlyWhenSet) {
  const auto plain = built([](BpPivotTable&) {});
  EXPECT_FALSE(plain->titleHidden);
  EXPECT_EQ(plain->minDataColumnWidth, std::nullopt);
  EXPECT_EQ(plain->maxDataColumnWidth, std::nullopt);
  EXPECT_TRUE(plain->dimensions.empty());
  EXPECT_TRUE(plain->cells.empty());

  const auto set = built([](BpPivotTable& table) {
    table.HideTitle();
    table.MinDataColumnWidth(150);
    table.MaxDataColumnWidth(300);
  });
  EXPECT_TRUE(set->titleHidden);
  EXPECT_EQ(set->minDataColumnWidth, 150);
  EXPECT_EQ(set->maxDataColumnWidth, 300);
}

TEST(BpPivotTable, FindsADimensionAgainByItsLabel) {
  const auto table = built([](BpPivotTable& t) {
    t.Dimension(label("Key"), 2).Position(0, 1, false, true);
    for (int i = 0; i < 3; ++i) t.Dimension(label("Language"), 2 + i).Position(1, 1, true, false);
  });
  ASSERT_EQ(table->dimensions.size(), 2U);
  EXPECT_EQ(table->dimensions[0].label.text, "Key");
  EXPECT_EQ(table->dimensions[0].position, (PivotPosition{0, 1, false, true}));
  EXPECT_EQ(table->dimensions[1].label.text, "Language");
  EXPECT_EQ(table->dimensions[1].sort, 2);
  EXPECT_EQ(table->dimensions[1].position, (PivotPosition{1, 1, true, false}));
}

TEST(BpPivotTable, TellsLabelsApartByMoreThanTheirText) {
  const auto table = built([](BpPivotTable& t) {
    t.Dimension(BpString("1", false), 2);
    t.Dimension(BpString("1", true), 2);
    t.Dimension(BpNumber(1, BpFormatSpec{}), 2);
    t.Dimension(BpNumber(1, BpFormatSpec{}), 2);
  });
  EXPECT_EQ(table->dimensions.size(), 3U);
}

TEST(BpPivotTable, HasNoPositionUntilItIsGivenOne) {
  const auto table = built([](BpPivotTable& t) { t.Dimension(label("D"), 2); });
  EXPECT_EQ(table->dimensions.at(0).position, std::nullopt);
}

TEST(BpGroup, NumbersLeavesInTheOrderOfTheirCreation) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension contents = t.Dimension(label("Contents"), 2);
    contents.Category(label("Viewer"));
    BpGroup images = contents.Group(label("Image Files"), true, 2);
    images.Category(label("Root Name"));
    images.Category(label("Format"));
    contents.Category(label("Viewer"));
    contents.Group(label("Image Files"), true, 2).Category(label("Format"));
  });
  const PivotDimension& dimension = table->dimensions.at(0);
  ASSERT_EQ(dimension.categories.size(), 4U);
  EXPECT_EQ(dimension.leafCount, 3);
  const int leaves[] = {0, -1, 1, 2};
  const int parents[] = {-1, -1, 1, 1};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(dimension.categories[i].leaf, leaves[i]) << i;
    EXPECT_EQ(dimension.categories[i].parent, parents[i]) << i;
    EXPECT_EQ(dimension.categories[i].isGroup, leaves[i] < 0) << i;
  }
}

TEST(BpGroup, TellsEqualLabelsInDifferentPlacesApart) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension d = t.Dimension(label("D"), 2);
    d.Category(label("x")).Cell(label("1"));
    d.Group(label("x"), true, 2).Category(label("x")).Cell(label("2"));
    d.Group(label("y"), true, 2).Category(label("x")).Cell(label("3"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/x=1", "/x/x=2", "/y/x=3"}));
}

TEST(BpCategory, PutsACellOfTheOnlyDimensionAtOneCoordinate) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension d = t.Dimension(label("D"), 2);
    for (int i = 0; i < 3; ++i) {
      d.Category(BpNumber(i, BpFormatSpec{BpFormatSpec::Type::kCount}))
          .Cell(label(std::string(1, static_cast<char>('a' + i))));
    }
  });
  EXPECT_EQ(cells(*table), (Cells{"/0=a", "/1=b", "/2=c"}));
}

TEST(BpCategory, TakesTheOtherDimensionsAtTheCategoryAskedForLast) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension keys = t.Dimension(label("Key"), 2);
    for (const char* language : {"de", "en"}) {
      t.Dimension(label("Language"), 2).Category(label(language));
      for (const char* key : {"k1", "k2"}) {
        keys.Category(label(key)).Cell(label(std::string(language) + key));
      }
    }
    // Asked for again, the first one is the latest.
    t.Dimension(label("Language"), 2).Category(label("de"));
    keys.Category(label("k3")).Cell(label("dek3"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/k1,/de=dek1", "/k2,/de=dek2", "/k1,/en=enk1", "/k2,/en=enk2",
                                  "/k3,/de=dek3"}));
}

TEST(BpCategory, StaysItselfWhenOthersOfItsDimensionWereAskedForSince) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension rows = t.Dimension(label("R"), 2);
    BpDimension columns = t.Dimension(label("C"), 2);
    BpCategory a = rows.Category(label("a"));
    BpCategory b = rows.Category(label("b"));
    BpCategory x = columns.Category(label("x"));
    a.Cell(label("1"));
    b.Cell(label("2"));
    // Using a's handle did not ask for it: the rows still stand at b.
    a.Cell(label("3"));
    x.Cell(label("4"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/a,/x=3", "/b,/x=4"}));
}

TEST(BpCategory, GoesToTheFirstCategoryOfADimensionThatHasNoneYet) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension rows = t.Dimension(label("R"), 2);
    BpDimension columns = t.Dimension(label("C"), 2);
    rows.Category(label("a")).Cell(label("1"));
    columns.Category(label("x"));
    columns.Category(label("y"));
    rows.Category(label("a")).Cell(label("2"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/a,/x=1", "/a,/y=2"}));
}

TEST(BpCategory, GoesToTheFirstCategoryOfADimensionMadeLater) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension rows = t.Dimension(label("R"), 2);
    rows.Category(label("a")).Cell(label("1"));
    rows.Category(label("b")).Cell(label("2"));
    BpDimension columns = t.Dimension(label("C"), 2);
    columns.Category(label("x"));
    rows.Category(label("a")).Cell(label("3"));  // the very place of the first
    columns.Category(label("y"));
    rows.Category(label("b")).Cell(label("4"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/a,/x=3", "/b,/x=2", "/b,/y=4"}));
}

TEST(BpCategory, GetsAnUnlabelledCategoryWhereADimensionNeverHasOne) {
  const auto table = built([](BpPivotTable& t) {
    t.Dimension(label("Empty"), 2);
    t.Dimension(label("R"), 2).Category(label("a")).Cell(label("1"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/,/a=1"}));
}

TEST(BpCategory, LeavesAnEmptyDimensionAloneWhereThereAreNoCells) {
  const auto table = built([](BpPivotTable& t) {
    t.Dimension(label("Key"), 2);
    t.Dimension(label("Language"), 2).Category(label("de"));
  });
  EXPECT_TRUE(table->dimensions.at(0).categories.empty());
  EXPECT_TRUE(table->cells.empty());
}

TEST(BpCategory, ReplacesTheValueOfACellSetTwiceAndKeepsItsStyle) {
  const auto table = built([](BpPivotTable& t) {
    BpCategory a = t.Dimension(label("R"), 2).Category(label("a"));
    a.Cell(label("old"));
    a.Bold();
    a.Cell(label("new"));
  });
  EXPECT_EQ(cells(*table), (Cells{"/a=new"}));
  EXPECT_EQ(table->cells[0].look->bold, true);
}

TEST(BpCategory, StylesAndAnnotatesTheCell) {
  const auto table = built([](BpPivotTable& t) {
    BpDimension rows = t.Dimension(label("R"), 2);
    BpCategory a = rows.Category(label("a"));
    a.TextColor("red");  // may come before the value
    a.Cell(label("1"));
    a.BackgroundColor("#00ff00");
    a.Bold();
    a.CellNote(BpAnnotation(BpString("first", true)));
    a.CellNote(BpAnnotation(BpString("second", true).Replicate()));
    rows.Category(label("b")).Cell(label("2"));
  });
  ASSERT_EQ(table->cells.size(), 2U);
  const PivotCell& styled = table->cells[0];
  EXPECT_EQ(styled.look->textColor, "red");
  EXPECT_EQ(styled.look->backgroundColor, "#00ff00");
  EXPECT_EQ(styled.look->bold, true);
  ASSERT_EQ(styled.notes.size(), 2U);
  EXPECT_EQ(styled.notes[0].text, "first");
  EXPECT_EQ(styled.notes[1].text, "second");
  const PivotCell& plain = table->cells[1];
  EXPECT_TRUE(plain.look.empty() && plain.notes.empty());
}

TEST(BpCategory, ConvertsColoursFromTheCurrentEncoding) {
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  const auto table = built([](BpPivotTable& t) {
    BpCategory a = t.Dimension(label("R"), 2).Category(label("a"));
    a.TextColor("\xE4");
    a.BackgroundColor("\xF6");
  });
  EXPECT_EQ(table->cells.at(0).look->textColor, "\xC3\xA4");
  EXPECT_EQ(table->cells.at(0).look->backgroundColor, "\xC3\xB6");
}

double secondsToBuild(int rows) {
  const auto start = std::chrono::steady_clock::now();
  const auto table = built([rows](BpPivotTable& t) {
    BpDimension keys = t.Dimension(label("Key"), 2);
    for (const char* language : {"de", "en", "fr"}) {
      t.Dimension(label("Language"), 2).Category(label(language));
      for (int i = 0; i < rows; ++i) {
        keys.Category(label("key number " + std::to_string(i))).Cell(label("text"));
      }
    }
  });
  EXPECT_EQ(table->dimensions[0].leafCount, rows);
  EXPECT_EQ(table->cells.size(), static_cast<std::size_t>(rows) * 3);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(BpPivotTableScale, BuildsManyRepeatedCategoriesInLinearTime) {
  const double small = secondsToBuild(kHostileCount / 10);
  const double large = secondsToBuild(kHostileCount);
  // Ten times the rows: a quadratic search would take a hundred times as long, and minutes.
  EXPECT_LT(large, 40 * small + 0.5);
  EXPECT_LT(large, 20);
}

TEST(BpPivotTableScale, BuildsManyGroupsInLinearTime) {
  constexpr int kGroups = kHostileCount;
  const auto start = std::chrono::steady_clock::now();
  const auto table = built([](BpPivotTable& t) {
    BpDimension d = t.Dimension(label("D"), 2);
    for (int i = 0; i < kGroups; ++i) {
      d.Group(label(std::to_string(i)), true, 2).Category(label("only")).Cell(label("v"));
    }
  });
  for (int leaf = 0; leaf < kGroups; ++leaf) {
    ASSERT_EQ(categoryPath(table->dimensions[0], leaf), (std::vector<int>{2 * leaf, 2 * leaf + 1}));
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_LT(seconds.count(), 20);
}

}  // namespace
}  // namespace vornwout
