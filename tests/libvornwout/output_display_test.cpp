// OUTPUT DISPLAY: the table of open documents.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/message/parser_message.h"
#include "platform/parser/grammar_capture.h"
#include "platform/text/encoding.h"
#include "tests/support/command_run.h"
#include "tests/support/table_rows.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputDisplay, DeclaresNothing) {
  const CommandDescriptor grammar = grammarOf(outdisp_);
  EXPECT_THAT(grammar.subcommands(), IsEmpty());
  EXPECT_THAT(grammar.groups(), IsEmpty());
}

TEST(OutputDisplay, AsksForTheListWithNoNameAndMinimizedNotApplicable) {
  FakeHost host;
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_FALSE(host.requests[0].longForm);
  EXPECT_EQ(static_cast<int>(host.requests[0].command), 2);
  EXPECT_EQ(host.requests[0].name, "");
  EXPECT_EQ(host.requests[0].text, "");
  EXPECT_EQ(static_cast<int>(host.requests[0].minimized), 2);
}

TEST(OutputDisplay, ListsEveryDocumentByTheControllersIndexKeptFromZero) {
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"report", false});
  host.answer.addDocument(OutputDocumentItem{"draft", true});
  host.answer.addDocument(OutputDocumentItem{"", false});
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  EXPECT_THAT(rowsOf(*run.tables[0]),
              ElementsAre("0: report", "1: draft (Active output document)", "2: (unnamed)"));
  EXPECT_THAT(run.events, ElementsAre("open Output Display 2", "flush", "table Output Document",
                                      "close Output Display"));
}

TEST(OutputDisplay, ShowsASingleUnnamedActiveDocument) {
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"", true});
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  EXPECT_THAT(rowsOf(*run.tables[0]), ElementsAre("0: (unnamed) (Active output document)"));
}

TEST(OutputDisplay, NamesAreTheUsersTextsAndAllElseIsTheSystems) {
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"report", true});
  host.answer.addDocument(OutputDocumentItem{"", false});
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  const PivotTable& table = *run.tables[0];
  EXPECT_TRUE(table.title.translatable);
  EXPECT_TRUE(table.subtype.translatable);
  EXPECT_TRUE(table.dimensions[0].label.translatable);
  EXPECT_FALSE(table.cells[0].value.translatable) << "a name";
  EXPECT_TRUE(table.cells[0].notes[0].translatable);
  EXPECT_TRUE(table.cells[1].value.translatable) << "(unnamed) is no name";
}

TEST(OutputDisplay, SkipsGapsButNotTheirNumbers) {
  FakeHost host;
  host.answer.addDocument(std::nullopt);
  host.answer.addDocument(OutputDocumentItem{"a", false});
  host.answer.addDocument(std::nullopt);
  host.answer.addDocument(OutputDocumentItem{"b", true});
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  EXPECT_THAT(rowsOf(*run.tables[0]), ElementsAre("1: a", "3: b (Active output document)"));
}

TEST(OutputDisplay, MakesATableWithoutRowsOfNothingButGaps) {
  FakeHost host;
  host.answer.addDocument(std::nullopt);
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  EXPECT_THAT(run.tables[0]->cells, IsEmpty());
  EXPECT_THAT(run.outputMessages, IsEmpty());
}

TEST(OutputDisplay, BuildsItsTableAsTheInterfaceHasIt) {
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"a", true});
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  const PivotTable& table = *run.tables[0];
  EXPECT_EQ(table.title.text, "Output Document");
  EXPECT_TRUE(table.title.translatable);
  EXPECT_EQ(table.subtype, table.title);
  EXPECT_EQ(table.flag, false);
  EXPECT_FALSE(table.titleHidden);
  EXPECT_EQ(table.minDataColumnWidth, 150);
  EXPECT_EQ(table.maxDataColumnWidth, 300);
  ASSERT_EQ(table.dimensions.size(), 1U);
  const PivotDimension& dimension = table.dimensions[0];
  EXPECT_EQ(dimension.label.text, "Name");
  EXPECT_TRUE(dimension.label.translatable);
  EXPECT_EQ(dimension.sort, 2);
  EXPECT_EQ(dimension.position, (PivotPosition{0, 1, true, true}));
  ASSERT_EQ(dimension.categories.size(), 1U);
  EXPECT_EQ(dimension.categories[0].label.kind, CellText::Kind::kNumber);
  EXPECT_EQ(dimension.categories[0].label.format.type, BpFormatSpec::Type::kCount);
  ASSERT_EQ(table.cells.size(), 1U);
  EXPECT_FALSE(table.cells[0].value.translatable);
  ASSERT_EQ(table.cells[0].notes.size(), 1U);
  EXPECT_TRUE(table.cells[0].notes[0].translatable);
}

TEST(OutputDisplay, WarnsWithoutATableWhenNothingIsOpen) {
  FakeHost host;
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  EXPECT_THAT(run.outputTexts(), ElementsAre("No output documents are open. (2)"));
  EXPECT_EQ(run.outputMessages[0].message.kind, CellText::Kind::kString);
  EXPECT_THAT(run.tables, IsEmpty());
}

TEST(OutputDisplay, ReportsAFailureWithoutATable) {
  FakeHost host;
  host.succeeds = false;
  host.answer.addDocument(OutputDocumentItem{"a", true});
  host.answer.setError(3, "The list is locked by ^1.", "x");
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  EXPECT_THAT(run.outputTexts(), ElementsAre("The list is locked by x. (3)"));
  EXPECT_THAT(run.tables, IsEmpty());
}

TEST(OutputDisplay, MakesNoParserMessageOfItsOwn) {
  FakeHost host;
  bool messages = true;
  host.whenAsked = [&] { messages = ParserMessage::current() != nullptr; };
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  EXPECT_FALSE(messages);
}

TEST(OutputDisplay, LeavesWhatFollowsItsNameToTheParser) {
  FakeHost host;
  for (const char* text : {"OUTPUT DISPLAY a.", "OUTPUT DISPLAY NAME=a.", "OUTPUT DISPLAY /NAME=a.",
                           "OUTPUT DISPLAY ALL.", "OUTPUT DISPLAY 'a"}) {
    const CommandRun run(outdisp_, text, &host);
    EXPECT_FALSE(run.parserMessages.empty()) << text;
  }
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST(OutputDisplay, ShowsNamesOfTheCurrentEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"\x83\x5C", false});
  const CommandRun run(outdisp_, "OUTPUT DISPLAY.", &host);
  ASSERT_EQ(run.tables.size(), 1U);
  EXPECT_THAT(rowsOf(*run.tables[0]), ElementsAre("0: \xE3\x82\xBD"));
}

}  // namespace
}  // namespace vornwout
