#include "host/changes/table_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/layout/table_axis.h"
#include "host/looks/table_look_xml.h"
#include "platform/pivot/cell_text.h"
#include "tests/support/generated_documents.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Rows r1, r2; columns c1, c2; layers L (u, v, v) and M (v, w), of which M comes first.
PivotTable sample() {
  PivotTable table;
  table.title = textCell("Title");
  table.dimensions = {makeDimension("R", PivotPlace::kRows, 1, {"r1", "r2"}),
                      makeDimension("C", PivotPlace::kColumns, 1, {"c1", "c2"}),
                      makeDimension("L", PivotPlace::kLayers, 2, {"u", "v", "v"}),
                      makeDimension("M", PivotPlace::kLayers, 1, {"v", "w"})};
  addCell(table, {0, 0, 0, 0}, numberCell(2));
  addCell(table, {0, 1, 0, 0}, textCell("text"));
  addCell(table, {1, 0, 0, 0}, numberCell(1));
  addCell(table, {1, 1, 0, 0}, numberCell(3.25));
  return table;
}

/// Carries out a change, of which the second time must be nothing, and returns the table.
PivotTable changed(const TableChange& change, bool isExpected = true,
                   const PivotTable& table = sample()) {
  PivotTable result = table;
  ChangeNotes notes;
  EXPECT_EQ(TableChanger(change, notes).apply(result), isExpected);
  EXPECT_EQ(result != table, isExpected);
  const PivotTable once = result;
  EXPECT_FALSE(TableChanger(change, notes).apply(result));
  EXPECT_EQ(result, once);
  return result;
}

TEST(TableChanges, NothingGivenChangesNothing) { changed(TableChange(), false); }

TEST(TableChanges, LookIsGivenAndTheDefaultOneIsALook) {
  TableLook look;
  look.name = "Calm";
  look.banding.fill = "#eef3fa";
  look.area(LookArea::kTitle).text.size = 14;
  TableChange change;
  change.look = writeTableLook(look);
  const PivotTable looked = changed(change);
  EXPECT_EQ(looked.tableLook.get(), look);
  TableChange back;
  back.usesDefaultLook = true;
  EXPECT_EQ(changed(back, true, looked).tableLook.get(), defaultTableLook());
  EXPECT_EQ(changed(back).tableLook.get(), defaultTableLook()) << "which is more than no look";
}

TEST(TableChanges, LookThatIsNoneIsRefused) {
  for (const char* xml :
       {"<tableProperties", "<other/>", "<tableProperties version=\"1\"><x/></tableProperties>"}) {
    PivotTable table = sample();
    TableChange change;
    change.look = xml;
    ChangeNotes notes;
    try {
      TableChanger(change, notes).apply(table);
      ADD_FAILURE() << xml;
    } catch (const ChangeError& error) {
      EXPECT_TRUE(std::string(error.what()).starts_with("in the table look, ")) << error.what();
    }
  }
}

TEST(TableChanges, NewTitleIsATextOfItsOwn) {
  PivotTable table = sample();
  table.title.translatable = true;
  table.title.kind = CellText::Kind::kComposite;
  table.title.arguments = {textCell("argument")};
  TableChange change;
  change.title = "New ^1";
  EXPECT_EQ(changed(change, true, table).title, textCell("New ^1"));
  change.title = "Title";
  changed(change, false);
}

TEST(TableChanges, GivenTitleIsShown) {
  PivotTable table = sample();
  table.titleHidden = true;
  TableChange change;
  change.title = "Title";
  const PivotTable result = changed(change, true, table);
  EXPECT_FALSE(result.titleHidden);
  change.title.reset();
  change.summary = "summary";
  EXPECT_TRUE(changed(change, true, table).titleHidden);
}

TEST(TableChanges, SummaryIsSet) {
  TableChange change;
  change.summary = "About";
  EXPECT_EQ(changed(change).summary, "About");
}

TEST(TableChanges, TransposingExchangesRowsAndColumnsAndLeavesLayers) {
  PivotTable table = sample();
  table.dimensions.insert(table.dimensions.begin(),
                          makeDimension("R2", PivotPlace::kRows, 2, {"x"}));
  for (PivotCell& cell : table.cells) cell.at = {0, cell.at[0], cell.at[1], 0, 0};
  table.dimensions[1].position->hideLabel = true;
  const PivotTable before = table;
  TableChange change;
  change.transposes = true;
  ChangeNotes notes;
  EXPECT_TRUE(TableChanger(change, notes).apply(table));
  const TableAxis rows(table, PivotPlace::kRows);
  ASSERT_EQ(rows.dimensions().size(), 1u);
  EXPECT_EQ(rows.dimensions()[0].label().text, "C");
  const TableAxis columns(table, PivotPlace::kColumns);
  ASSERT_EQ(columns.dimensions().size(), 2u);
  EXPECT_EQ(columns.dimensions()[0].label().text, "R");
  EXPECT_FALSE(columns.dimensions()[0].isLabelShown());
  EXPECT_EQ(columns.dimensions()[1].label().text, "R2");
  EXPECT_EQ(TableAxis(table, PivotPlace::kLayers).dimensions().size(), 2u);
  EXPECT_EQ(table.cells, before.cells);
  EXPECT_TRUE(TableChanger(change, notes).apply(table));
  EXPECT_EQ(table, before);
}

TEST(TableChanges, DimensionWithoutAPlaceLiesInRows) {
  PivotTable table = sample();
  table.dimensions[0].position.reset();
  TableChange change;
  change.transposes = true;
  ChangeNotes notes;
  EXPECT_TRUE(TableChanger(change, notes).apply(table));
  EXPECT_EQ(table.dimensions[0].place(), PivotPlace::kColumns);
  EXPECT_EQ(table.dimensions[0].position->index, 1);
  EXPECT_TRUE(TableChanger(change, notes).apply(table));
  EXPECT_EQ(table.dimensions[0].place(), PivotPlace::kRows);
}

TEST(TableChanges, NothingToTransposeIsNothingChanged) {
  PivotTable table;
  table.dimensions = {makeDimension("L", PivotPlace::kLayers, 1, {"u"})};
  TableChange change;
  change.transposes = true;
  changed(change, false, table);
}

TEST(TableChanges, TransposingAnyPlacedTableTwiceIsNothing) {
  for (unsigned int seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    DocumentGenerator generator(seed);
    PivotTable table = generator.table();
    for (PivotDimension& dimension : table.dimensions) {
      dimension.position = PivotPosition{generator.upTo(2), 1 + generator.upTo(2),
                                         generator.chance(), generator.chance()};
    }
    TableChange change;
    change.transposes = true;
    ChangeNotes notes;
    const PivotTable before = table;
    const bool isChanged = TableChanger(change, notes).apply(table);
    EXPECT_EQ(isChanged, table != before);
    EXPECT_EQ(TableChanger(change, notes).apply(table), isChanged);
    EXPECT_EQ(table, before);
  }
}

TEST(TableChanges, RowsAreSortedByTheColumnsAfterTransposing) {
  TableChange change;
  change.sort.emplace();
  change.sort->label = "c1";
  EXPECT_EQ(changed(change).dimensions[0].categories[0].label.text, "r2");
  change.transposes = true;
  change.sort->label = "r1";
  change.sort->isAscending = false;
  PivotTable table = sample();
  table.cells[1].value = numberCell(7);
  ChangeNotes notes;
  EXPECT_TRUE(TableChanger(change, notes).apply(table));
  EXPECT_EQ(table.dimensions[1].categories[0].label.text, "c2");
  EXPECT_EQ(table.dimensions[0].categories[0].label.text, "r1");
}

TEST(TableChanges, RowsAreSortedByTheLayerThatIsChosen) {
  PivotTable table = sample();
  addCell(table, {0, 1, 1, 0}, numberCell(5));
  addCell(table, {1, 1, 1, 0}, numberCell(4));
  TableChange change;
  change.sort.emplace();
  change.sort->label = "c2";
  change.layers.push_back({"L", 0, "v", 0});
  EXPECT_EQ(changed(change, true, table).dimensions[0].categories[0].label.text, "r2");
  change.layers.clear();
  changed(change, true, table);
}

TEST(TableChanges, FormatGoesToEveryNumber) {
  TableChange change;
  change.format = "COMMA8.2";
  const PivotTable result = changed(change);
  EXPECT_EQ(renderText(result.cells[0].value), "2.00");
  EXPECT_EQ(renderText(result.cells[3].value), "3.25");
  EXPECT_EQ(result.cells[1], sample().cells[1]);
}

TEST(TableChanges, InvalidFormatIsNotedAndTheRestIsDone) {
  TableChange change;
  change.format = "F99";
  change.summary = "About";
  PivotTable table = sample();
  ChangeNotes notes;
  EXPECT_TRUE(TableChanger(change, notes).apply(table));
  EXPECT_THAT(notes.notes(), ElementsAre("Invalid format (F99)"));
  PivotTable expected = sample();
  expected.summary = "About";
  EXPECT_EQ(table, expected);
}

TEST(TableChanges, LayerIsChosenByLabelOrPosition) {
  constexpr int kNothing = -1;
  static const struct {
    const char* name;
    LayerChoice choice;
    int shownInL;
    int shownInM;
  } kCases[] = {
      {"label and label", {"M", 0, "w", 0}, kNothing, 1},
      {"first category of the label", {"L", 0, "v", 0}, 1, kNothing},
      {"label and position", {"L", 0, std::nullopt, 3}, 2, kNothing},
      {"label and last", {"L", 0, std::nullopt, 0}, 2, kNothing},
      {"position and label", {std::nullopt, 1, "w", 0}, kNothing, 1},
      {"position and position", {std::nullopt, 2, std::nullopt, 1}, 0, kNothing},
      {"all and label", {std::nullopt, 0, "v", 0}, 1, 0},
      {"all and a label of one", {std::nullopt, 0, "w", 0}, kNothing, 1},
      {"all and position", {std::nullopt, 0, std::nullopt, 3}, 2, kNothing},
      {"all and last", {std::nullopt, 0, std::nullopt, 0}, 2, 1},
      {"no such layer", {"N", 0, "v", 0}, kNothing, kNothing},
      {"rows are no layer", {"R", 0, "r1", 0}, kNothing, kNothing},
      {"no such category", {"L", 0, "x", 0}, kNothing, kNothing},
      {"layer beyond", {std::nullopt, 3, "v", 0}, kNothing, kNothing},
      {"category beyond", {"L", 0, std::nullopt, 4}, kNothing, kNothing},
      {"empty layer label", {std::nullopt, -1, "v", 0}, kNothing, kNothing},
      {"empty category label", {"L", 0, std::nullopt, -1}, kNothing, kNothing},
  };
  for (const auto& entry : kCases) {
    SCOPED_TRACE(entry.name);
    TableChange change;
    change.layers = {entry.choice};
    const bool isExpected = entry.shownInL != kNothing || entry.shownInM != kNothing;
    const PivotTable result = changed(change, isExpected);
    EXPECT_EQ(result.dimensions[2].shownLeaf, entry.shownInL);
    EXPECT_EQ(result.dimensions[3].shownLeaf, entry.shownInM);
    EXPECT_EQ(result.dimensions[0].shownLeaf, kNothing);
  }
}

TEST(TableChanges, LaterChoiceOfALayerStands) {
  TableChange change;
  change.layers = {{std::nullopt, 0, std::nullopt, 0}, {"L", 0, "u", 0}};
  const PivotTable result = changed(change);
  EXPECT_EQ(result.dimensions[2].shownLeaf, 0);
  EXPECT_EQ(result.dimensions[3].shownLeaf, 1);
}

TEST(TableChanges, CategoriesOfALayerAreCountedAsTheyAreShown) {
  PivotDimension layer = makeDimension("L", PivotPlace::kLayers, 1, {});
  const int first = addGroup(layer, "first");
  addLeaf(layer, "a", first);
  const int second = addGroup(layer, "second");
  addLeaf(layer, "b", second);
  addLeaf(layer, "b", first);
  PivotTable table;
  table.dimensions = {layer};
  TableChange change;
  change.layers = {{"L", 0, std::nullopt, 2}};
  EXPECT_EQ(changed(change, true, table).dimensions[0].shownLeaf, 2);
  change.layers = {{"L", 0, std::nullopt, 0}};
  EXPECT_EQ(changed(change, true, table).dimensions[0].shownLeaf, 1);
  change.layers = {{"L", 0, "b", 0}};
  EXPECT_EQ(changed(change, true, table).dimensions[0].shownLeaf, 2);
  change.layers = {{"L", 0, "second", 0}};
  changed(change, false, table);
}

TEST(TableChanges, LayerWithoutCategoriesStays) {
  PivotTable table;
  table.dimensions = {makeDimension("L", PivotPlace::kLayers, 1, {})};
  TableChange change;
  change.layers = {{std::nullopt, 0, std::nullopt, 0}};
  changed(change, false, table);
}

TEST(TableChanges, LayerWhoseCategoriesFormNoTreeIsRefused) {
  PivotTable table = sample();
  table.dimensions[2].categories[0].parent = 2;
  TableChange change;
  change.layers = {{"L", 0, "u", 0}};
  ChangeNotes notes;
  EXPECT_THROW(TableChanger(change, notes).apply(table), ChangeError);
}

TEST(TableChanges, SecondTimeOfAnyOtherChangeIsNothing) {
  for (unsigned int seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE(seed);
    DocumentGenerator generator(seed);
    PivotTable table = generator.table();
    TableChange change;
    if (generator.chance()) change.title = generator.text();
    if (generator.chance()) change.summary = generator.text();
    if (generator.chance()) change.format = generator.chance() ? "F8.2" : "F99";
    if (generator.chance()) {
      change.sort.emplace();
      change.sort->position = generator.upTo(4);
      change.sort->isAscending = generator.chance();
    }
    for (int i = generator.upTo(2); i > 0; --i) {
      LayerChoice choice;
      choice.layerPosition = generator.upTo(2);
      choice.categoryPosition = generator.upTo(4);
      change.layers.push_back(choice);
    }
    ChangeNotes notes;
    TableChanger(change, notes).apply(table);
    const PivotTable once = table;
    EXPECT_FALSE(TableChanger(change, notes).apply(table));
    EXPECT_EQ(table, once);
  }
}

}  // namespace
}  // namespace vornwout
