#include "host/changes/cell_changes.h"

#include <cmath>
#include <functional>
#include <limits>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/changes/cell_selection.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

/// Columns c0 (a mean) and c1, rows r0 and r1; of the four cells the third is a text.
PivotTable smallTable() {
  PivotTable table;
  table.title = textCell("title");
  table.caption = textCell("caption");
  table.footnotes = {textCell("first")};
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, {"r0", "r1"}),
                      makeDimension("C", PivotPlace::kColumns, 1, {"c0", "c1"})};
  table.dimensions[1].categories[0].statistic = StatisticKind::kMean;
  addCell(table, {0, 0}, numberCell(1));
  addCell(table, {0, 1}, numberCell(2)).notes.push_back(textCell("second"));
  addCell(table, {1, 0}, textCell("none"));
  addCell(table, {1, 1}, numberCell(4));
  return table;
}

CellsChange meansChange() {
  CellsChange change;
  change.mean = true;
  return change;
}

CellsChange everythingChange() {
  CellsChange change;
  change.body = change.headers = change.title = change.caption = change.footnotes = true;
  return change;
}

bool changed(PivotTable& table, const CellsChange& change) {
  ChangeNotes notes;
  const bool result = CellsChanger(change, notes).apply(table);
  EXPECT_TRUE(notes.notes().empty());
  return result;
}

struct LookCase {
  const char* name;
  std::function<void(CellsChange&)> edit;
  TextLook expected;
};

void PrintTo(const LookCase& c, std::ostream* stream) { *stream << c.name; }

std::string lookName(const testing::TestParamInfo<LookCase>& info) { return info.param.name; }

class LookTest : public testing::TestWithParam<LookCase> {};

TEST_P(LookTest, SelectedCellsGetItAndTheOthersDoNot) {
  PivotTable table = smallTable();
  const PivotTable before = table;
  CellsChange change = meansChange();
  GetParam().edit(change);
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.cells[0].look.get(), GetParam().expected);
  EXPECT_EQ(table.cells[2].look.get(), GetParam().expected);
  table.cells[0].look = table.cells[2].look = SharedLook();
  EXPECT_EQ(table, before);
}

INSTANTIATE_TEST_SUITE_P(
    CellChanges, LookTest,
    testing::Values(
        LookCase{"Bold", [](CellsChange& c) { c.bold = true; }, {.bold = true}},
        LookCase{"NotBold", [](CellsChange& c) { c.bold = false; }, {.bold = false}},
        LookCase{"Italic", [](CellsChange& c) { c.italic = true; }, {.italic = true}},
        LookCase{"Underline", [](CellsChange& c) { c.underline = true; }, {.underlined = true}},
        LookCase{"Font", [](CellsChange& c) { c.font = "SERIF"; }, {.font = "SERIF"}},
        LookCase{"Size", [](CellsChange& c) { c.fontSize = 9.5; }, {.size = 9.5}},
        LookCase{
            "TextColor", [](CellsChange& c) { c.textColor = "#ff0000"; }, {.textColor = "#ff0000"}},
        LookCase{"BackgroundColor",
                 [](CellsChange& c) { c.backgroundColor = "#00ff00"; },
                 {.backgroundColor = "#00ff00"}}),
    lookName);

TEST(CellChanges, LookKeepsWhatIsNotChanged) {
  PivotTable table = smallTable();
  table.cells[0].look = TextLook{.textColor = "#123456", .bold = true};
  CellsChange change = meansChange();
  change.italic = true;
  change.bold = false;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.cells[0].look.get(),
            (TextLook{.textColor = "#123456", .bold = false, .italic = true}));
  EXPECT_EQ(table.cells[2].look.get(), (TextLook{.bold = false, .italic = true}));
}

TEST(CellChanges, EveryPartThatIsSelectedGetsTheLook) {
  PivotTable table = smallTable();
  CellsChange change = everythingChange();
  change.bold = true;
  EXPECT_TRUE(changed(table, change));
  const TextLook bold{.bold = true};
  EXPECT_EQ(table.titleLook.get(), bold);
  EXPECT_EQ(table.captionLook.get(), bold);
  EXPECT_EQ(table.footnoteLook.get(), bold);
  for (const PivotDimension& dimension : table.dimensions) {
    for (const PivotCategory& category : dimension.categories) {
      EXPECT_EQ(category.look.get(), bold);
    }
  }
  for (const PivotCell& cell : table.cells) EXPECT_EQ(cell.look.get(), bold);
}

TEST(CellChanges, TitleThatIsReplacedIsShown) {
  PivotTable table = smallTable();
  table.titleHidden = true;
  CellsChange change;
  change.title = true;
  change.bold = true;
  EXPECT_TRUE(changed(table, change));
  EXPECT_TRUE(table.titleHidden);
  change.replacement = "New";
  EXPECT_TRUE(changed(table, change));
  EXPECT_FALSE(table.titleHidden);
  table.titleHidden = true;
  EXPECT_TRUE(changed(table, change)) << "the same text again shows it, too";
}

TEST(CellChanges, CellsOfOneLookShareTheNewOne) {
  PivotTable table = smallTable();
  // Equal looks that were read from a file apart from each other, and one that differs.
  for (PivotCell& cell : table.cells) cell.look = TextLook{.bold = true};
  table.cells[2].look = TextLook{.size = 8};
  CellsChange change;
  change.body = true;
  change.italic = true;
  EXPECT_TRUE(changed(table, change));
  std::set<const TextLook*> looks;
  for (const PivotCell& cell : table.cells) looks.insert(&cell.look.get());
  EXPECT_EQ(looks.size(), 2u);
  EXPECT_EQ(table.cells[3].look.get(), (TextLook{.bold = true, .italic = true}));
  EXPECT_EQ(table.cells[2].look.get(), (TextLook{.italic = true, .size = 8}));
}

TEST(CellChanges, LooksOfCellsThatTakeTurnsAreNotMixedUp) {
  PivotTable table;
  const std::vector<std::string> labels(1000, "r");
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, labels)};
  for (int i = 0; i < 1000; ++i) {
    addCell(table, {i}, numberCell(i)).look = TextLook{.size = 1.0 + i % 7};
  }
  CellsChange change;
  change.body = true;
  change.bold = true;
  EXPECT_TRUE(changed(table, change));
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(table.cells[static_cast<std::size_t>(i)].look.get(),
              (TextLook{.bold = true, .size = 1.0 + i % 7}));
  }
}

TEST(CellChanges, WidthIsThatOfTheColumns) {
  PivotTable table = smallTable();
  CellsChange change = meansChange();
  change.columnWidth = 72;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.dimensions[1].categories[0].width, 72);
  EXPECT_EQ(table.dimensions[1].categories[1].width, 0);
  EXPECT_FALSE(changed(table, change));
  change = everythingChange();
  change.columnWidth = 30;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.dimensions[1].categories[1].width, 30);
  EXPECT_EQ(table.dimensions[0].categories[0].width, 0) << "a row";
}

TEST(CellChanges, RevertingComesBeforeTheOtherChanges) {
  PivotTable table = smallTable();
  table.cells[0].look = TextLook{.textColor = "red", .bold = true};
  table.dimensions[1].categories[0].width = 50;
  CellsChange change = meansChange();
  change.revertsToDefault = true;
  change.italic = true;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.cells[0].look.get(), TextLook{.italic = true});
  EXPECT_EQ(table.dimensions[1].categories[0].width, 0);
  EXPECT_FALSE(changed(table, change));
  change.columnWidth = 40;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.dimensions[1].categories[0].width, 40);
  EXPECT_FALSE(changed(table, change));
}

TEST(CellChanges, FormatIsThatOfNumbers) {
  for (const char* format : {"F8.2", "N5", "A8", "DATE11", "pct6.1"}) {
    PivotTable table = smallTable();
    table.dimensions[1].categories[0].label = numberCell(2024);
    CellsChange change = everythingChange();
    change.format = format;
    EXPECT_TRUE(changed(table, change));
    const auto expected = parseDisplayFormat(format);
    ASSERT_TRUE(expected);
    EXPECT_EQ(table.cells[0].value.format.display, expected);
    EXPECT_EQ(table.cells[2].value, textCell("none"));
    EXPECT_EQ(table.dimensions[1].categories[0].label.format.display, expected);
    EXPECT_EQ(table.dimensions[1].categories[1].label, textCell("c1"));
    EXPECT_FALSE(changed(table, change));
  }
}

TEST(CellChanges, FormatAndFontThatCannotBeUsedAreNotedAndTheRestIsDone) {
  PivotTable table = smallTable();
  CellsChange change = meansChange();
  change.format = "Q99";
  change.font = "NOWHERE";
  change.bold = true;
  ChangeNotes notes;
  const FontCheck isFont = [](const std::string& font) { return font == "SERIF"; };
  EXPECT_TRUE(CellsChanger(change, notes, isFont).apply(table));
  EXPECT_EQ(notes.notes(),
            (std::vector<std::string>{"Invalid format (Q99)", "Invalid font (NOWHERE)"}));
  EXPECT_EQ(table.cells[0].look.get(), TextLook{.bold = true});
  EXPECT_EQ(table.cells[0].value, numberCell(1));
  EXPECT_FALSE(CellsChanger(change, notes, isFont).apply(table));
  change.font = "SERIF";
  EXPECT_TRUE(CellsChanger(change, notes, isFont).apply(table));
  EXPECT_EQ(table.cells[0].look->font, "SERIF");
}

TEST(CellChanges, TextReplacesEveryTextAndNumberThatIsSelected) {
  PivotTable table = smallTable();
  table.title.translatable = true;
  CellsChange change = everythingChange();
  change.replacement = "new";
  EXPECT_TRUE(changed(table, change));
  const CellText expected = textCell("new");
  EXPECT_EQ(table.title, expected);
  EXPECT_EQ(table.caption, expected);
  EXPECT_EQ(table.footnotes, std::vector<CellText>{expected});
  EXPECT_EQ(table.cells[1].notes.get(), std::vector<CellText>{expected});
  EXPECT_EQ(table.dimensions[0].categories[1].label, expected);
  EXPECT_EQ(table.dimensions[0].label, textCell("R"));
  for (const PivotCell& cell : table.cells) EXPECT_EQ(cell.value, expected);
  EXPECT_FALSE(changed(table, change));
}

TEST(CellChanges, NumberReplacesANumberAndKeepsItsFormat) {
  PivotTable table = smallTable();
  table.cells[0].value.format.display = parseDisplayFormat("DOLLAR8.2");
  CellsChange change = meansChange();
  change.replacementValue = 7.5;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(renderText(table.cells[0].value), "$7.50");
  EXPECT_EQ(table.cells[2].value, numberCell(7.5));
  EXPECT_FALSE(changed(table, change));
  change.format = "F8.3";
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(renderText(table.cells[0].value), "7.500");
  EXPECT_EQ(renderText(table.cells[2].value), "7.500");
  EXPECT_FALSE(changed(table, change));
}

TEST(CellChanges, MissingNumberAsReplacementIsNoChangeTheSecondTime) {
  PivotTable table = smallTable();
  CellsChange change = meansChange();
  change.replacementValue = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(changed(table, change));
  EXPECT_TRUE(std::isnan(table.cells[0].value.number));
  EXPECT_FALSE(changed(table, change));
}

TEST(CellChanges, EmptyReplacementEmptiesCells) {
  PivotTable table = smallTable();
  CellsChange change = meansChange();
  change.replacementValue = -1;
  EXPECT_TRUE(changed(table, change));
  EXPECT_EQ(table.cells[0].value, CellText());
  EXPECT_EQ(table.cells[2].value, CellText());
  EXPECT_FALSE(changed(table, change));
}

TEST(CellChanges, ReplacementOfASecretIsNone) {
  PivotTable table = smallTable();
  table.cells[0].value.secret = true;
  CellsChange change = meansChange();
  change.replacementValue = 1;
  EXPECT_TRUE(changed(table, change));
  EXPECT_FALSE(table.cells[0].value.secret);
}

TEST(CellChanges, ConditionThatCannotBeReadChangesNothing) {
  PivotTable table = smallTable();
  const PivotTable before = table;
  CellsChange change = everythingChange();
  change.bold = true;
  change.conditions = {"x>1", "x>"};
  ChangeNotes notes;
  EXPECT_THROW(CellsChanger(change, notes).apply(table), ChangeError);
  EXPECT_EQ(table, before);
}

/// Tables and changes of all kinds, small enough that they often meet.
class RandomCase {
 public:
  explicit RandomCase(unsigned seed) : random_(seed) {}

  bool flip() { return pick(2) == 0; }
  int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  /// Without any look or width.
  PivotTable table() {
    PivotTable table;
    table.title = textCell("title");
    if (flip()) table.caption = textCell("caption");
    if (flip()) table.footnotes = {textCell("note")};
    const int dimensions = 1 + pick(4);
    for (int d = 0; d < dimensions; ++d) {
      PivotDimension dimension =
          makeDimension("d", static_cast<PivotPlace>(pick(3)), 1 + pick(2), {});
      for (int i = 1 + pick(4); i > 0; --i) {
        int parent = -1;
        if (!dimension.categories.empty() && flip()) {
          parent = pick(static_cast<int>(dimension.categories.size()));
          if (!dimension.categories[static_cast<std::size_t>(parent)].isGroup) parent = -1;
        }
        if (pick(3) == 0) {
          addGroup(dimension, label(), parent);
        } else {
          addLeaf(dimension, label(), parent);
        }
        dimension.categories.back().statistic = static_cast<StatisticKind>(pick(8));
      }
      if (dimension.leafCount == 0) addLeaf(dimension, label());
      table.dimensions.push_back(dimension);
    }
    for (int i = pick(20); i > 0; --i) {
      std::vector<int> at;
      for (const PivotDimension& dimension : table.dimensions) {
        at.push_back(pick(dimension.leafCount));
      }
      PivotCell& cell = addCell(table, at, flip() ? numberCell(pick(5)) : textCell(label()));
      if (pick(4) == 0) cell.notes.push_back(textCell("note"));
    }
    return table;
  }

  CellsChange selection() {
    CellsChange change;
    for (bool* flag : {&change.correlation, &change.count, &change.mean, &change.median,
                       &change.percent, &change.residual, &change.significance, &change.body,
                       &change.headers, &change.footnotes, &change.title, &change.caption}) {
      *flag = pick(6) == 0;
    }
    if (flip()) change.labels.push_back(label());
    if (flip()) change.positions.push_back(1 + pick(4));
    change.dimension = static_cast<CellsChange::Dimension>(pick(3));
    const char* const conditions[] = {"all", "missing", "x>1", "notx=2"};
    if (flip()) change.conditions.emplace_back(conditions[pick(4)]);
    const char* const targets[] = {"",           "CELL",    "COLUMN",       "ROW",
                                   "COLUMNDATA", "ROWDATA", "COLUMNHEADER", "ROWHEADER"};
    change.applyTo = targets[pick(8)];
    return change;
  }

  void addLooks(CellsChange& change) {
    if (flip()) change.bold = flip();
    if (flip()) change.italic = flip();
    if (flip()) change.underline = flip();
    if (flip()) change.columnWidth = 1 + pick(3);
    if (flip()) change.fontSize = 1 + pick(3);
    if (flip()) change.textColor = "#000001";
    if (flip()) change.backgroundColor = "#000002";
    if (flip()) change.font = "FONT";
  }

  void addValues(CellsChange& change) {
    if (flip()) change.format = "F8.2";
    if (pick(3) == 0) {
      change.replacement = "replaced";
    } else if (flip()) {
      change.replacementValue = pick(4) - 1;
    }
  }

 private:
  std::string label() { return std::string(1, static_cast<char>('a' + pick(4))); }

  std::mt19937 random_;
};

TEST(CellChanges, ChangeOfNothingSelectedIsNone) {
  int empty = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    RandomCase random(seed);
    PivotTable table = random.table();
    const PivotTable before = table;
    CellsChange change = random.selection();
    random.addLooks(change);
    random.addValues(change);
    change.revertsToDefault = random.flip();
    const bool isEmpty = CellSelector(change).select(table).empty();
    const bool isOther = changed(table, change);
    ASSERT_EQ(isOther, table != before) << seed;
    if (!isEmpty) continue;
    ++empty;
    ASSERT_FALSE(isOther) << seed;
  }
  EXPECT_GT(empty, 100);
}

TEST(CellChanges, SecondTimeNothingChanges) {
  int different = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    RandomCase random(seed);
    PivotTable table = random.table();
    CellsChange first = random.selection();
    random.addLooks(first);
    changed(table, first);
    CellsChange change = random.selection();
    random.addLooks(change);
    random.addValues(change);
    change.revertsToDefault = random.flip();
    if (changed(table, change)) ++different;
    const PivotTable before = table;
    ASSERT_FALSE(changed(table, change)) << seed;
    ASSERT_EQ(table, before) << seed;
  }
  EXPECT_GT(different, 1000);
}

TEST(CellChanges, RevertingGivesBackTheFirstState) {
  for (unsigned seed = 0; seed < 3000; ++seed) {
    RandomCase random(seed);
    PivotTable table = random.table();
    const PivotTable before = table;
    CellsChange change = random.selection();
    CellsChange revert = change;
    revert.revertsToDefault = true;
    random.addLooks(change);
    const bool isOther = changed(table, change);
    ASSERT_EQ(changed(table, revert), isOther) << seed;
    ASSERT_EQ(table, before) << seed;
  }
}

}  // namespace
}  // namespace vornwout
