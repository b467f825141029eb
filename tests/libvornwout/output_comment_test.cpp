// OUTPUT COMMENT: the table that it writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/command_run.h"
#include "tests/support/table_rows.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> rowsOf(const std::string& text) {
  const CommandRun run(outcomnt_, text, nullptr);
  if (run.tables.size() != 1) return {"tables: " + std::to_string(run.tables.size())};
  return rowsOf(*run.tables[0]);
}

TEST(OutputComment, BuildsItsTableAsTheInterfaceHasIt) {
  const CommandRun run(outcomnt_, "OUTPUT COMMENT TEXT='a'.", nullptr);
  ASSERT_EQ(run.tables.size(), 1U);
  const PivotTable& table = *run.tables[0];
  EXPECT_EQ(table.title.text, "Comment");
  EXPECT_TRUE(table.title.translatable);
  EXPECT_EQ(table.subtype, table.title);
  EXPECT_EQ(table.flag, true);
  EXPECT_TRUE(table.titleHidden);
  ASSERT_EQ(table.dimensions.size(), 1U);
  const PivotDimension& dimension = table.dimensions[0];
  EXPECT_EQ(dimension.label.text, "Comment");
  EXPECT_EQ(dimension.sort, 2);
  EXPECT_EQ(dimension.position, (PivotPosition{0, 1, true, true}));
  ASSERT_EQ(dimension.categories.size(), 1U);
  EXPECT_EQ(dimension.categories[0].label.kind, CellText::Kind::kNumber);
  EXPECT_EQ(dimension.categories[0].label.format.type, BpFormatSpec::Type::kCount);
  ASSERT_EQ(table.cells.size(), 1U);
  EXPECT_FALSE(table.cells[0].value.translatable);
  EXPECT_THAT(run.events, ElementsAre("open Output Comment 2", "flush", "table Comment",
                                      "close Output Comment"));
}

struct RowCase {
  const char* text;
  std::vector<std::string> rows;
};

TEST(OutputComment, WritesOneRowPerLineCountedFromZero) {
  const RowCase cases[] = {
      {"OUTPUT COMMENT TEXT='a'.", {"0: a"}},
      {"OUTPUT COMMENT TEXT='a' /LINE TEXT='b' /LINE TEXT='c'.", {"0: a", "1: b", "2: c"}},
      {"OUTPUT COMMENT /LINE TEXT='b' /LINE TEXT='c'.", {"0: b", "1: c"}},
      {"OUTPUT COMMENT TEXT=''.", {"0: "}},
      {"OUTPUT COMMENT /LINE.", {"0: "}},
      {"OUTPUT COMMENT TEXT='^1'.", {"0: ^1"}},
      {"OUTPUT COMMENT TEXT='it''s'.", {"0: it's"}},
  };
  for (const RowCase& test : cases) EXPECT_EQ(rowsOf(test.text), test.rows) << test.text;
}

TEST(OutputComment, GivesEveryLineItsOwnStyleElseTheCommands) {
  const RowCase cases[] = {
      {"OUTPUT COMMENT TEXT='a' COLOR=red BGCOLOR='#0000ff' BOLD=YES /LINE TEXT='b'.",
       {"0: a [red|#0000ff|bold]", "1: b [red|#0000ff|bold]"}},
      {"OUTPUT COMMENT COLOR=red BGCOLOR=white /LINE TEXT='b' COLOR=BLUE /LINE BGCOLOR=pink.",
       {"0: b [BLUE|white|]", "1:  [red|pink|]"}},
      {"OUTPUT COMMENT BOLD=YES /LINE TEXT='b' BOLD=NO /LINE TEXT='c' /LINE TEXT='d' BOLD=FALSE.",
       {"0: b", "1: c [||bold]", "2: d"}},
      {"OUTPUT COMMENT BOLD=NO /LINE TEXT='b' BOLD=YES /LINE TEXT='c'.", {"0: b [||bold]", "1: c"}},
      {"OUTPUT COMMENT TEXT='a' BOLD=TRUE.", {"0: a [||bold]"}},
      // A colour that is not known leaves the line to the command's.
      {"OUTPUT COMMENT COLOR=red /LINE TEXT='b' COLOR=Red.", {"0: b [red||]"}},
      {"OUTPUT COMMENT COLOR=Red /LINE TEXT='b'.", {"0: b"}},
      {"OUTPUT COMMENT TEXT='a' COLOR='#12345z'.", {"0: a [#12345z||]"}},
  };
  for (const RowCase& test : cases) EXPECT_EQ(rowsOf(test.text), test.rows) << test.text;
}

TEST(OutputComment, MakesTheColumnAsWideAsAsked) {
  const struct {
    const char* text;
    int min;
    int max;
  } cases[] = {{"OUTPUT COMMENT TEXT='a'.", 100, 200},
               {"OUTPUT COMMENT TEXT='a' WIDTH=10.", 10, 10},
               {"OUTPUT COMMENT TEXT='a' WIDTH=150.", 150, 150},
               {"OUTPUT COMMENT TEXT='a' WIDTH=1000.", 1000, 1000}};
  for (const auto& test : cases) {
    const CommandRun run(outcomnt_, test.text, nullptr);
    ASSERT_EQ(run.tables.size(), 1U) << test.text;
    EXPECT_EQ(run.tables[0]->minDataColumnWidth, test.min) << test.text;
    EXPECT_EQ(run.tables[0]->maxDataColumnWidth, test.max) << test.text;
  }
}

TEST(OutputComment, WritesNothingAfterAnError) {
  for (const char* text :
       {"OUTPUT COMMENT TEXT='a' WIDTH=9.", "OUTPUT COMMENT TEXT='a' WIDTH=1001.",
        "OUTPUT COMMENT TEXT='a' WIDTH=ten.", "OUTPUT COMMENT TEXT='a' 'b'.",
        "OUTPUT COMMENT TEXT='a' /LINE TEXT.", "OUTPUT COMMENT TEXT='a' BOLD=MAYBE.",
        "OUTPUT COMMENT TEXT='a' /LINES TEXT='b'.", "OUTPUT COMMENT TEXT='a"}) {
    const CommandRun run(outcomnt_, text, nullptr);
    EXPECT_EQ(run.parserMessages.size(), 1U) << text;
    EXPECT_THAT(run.tables, IsEmpty()) << text;
    EXPECT_THAT(run.outputMessages, IsEmpty()) << text;
  }
}

TEST(OutputComment, WarnsOfACommentWithoutText) {
  for (const char* text : {"OUTPUT COMMENT.", "OUTPUT COMMENT COLOR=red WIDTH=50."}) {
    const CommandRun run(outcomnt_, text, nullptr);
    ASSERT_EQ(run.parserMessages.size(), 1U) << text;
    EXPECT_EQ(run.parserMessages[0].operation, "GenericWarning");
    EXPECT_EQ(run.parserMessages[0].severity, MessageSeverity::kWarning);
    EXPECT_EQ(run.parserMessages[0].place, (SourcePlace{1, 1}));
    EXPECT_THAT(run.tables, IsEmpty());
  }
}

TEST(OutputComment, AsksTheOutputControllerForNothing) {
  FakeHost host;
  const CommandRun run(outcomnt_, "OUTPUT COMMENT TEXT='a'.", &host);
  EXPECT_THAT(host.requests, IsEmpty());
  host.hasController = false;
  const CommandRun without(outcomnt_, "OUTPUT COMMENT TEXT='a'.", &host);
  EXPECT_EQ(without.events, run.events);
}

TEST(OutputComment, TakesItsTextsInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(rowsOf("OUTPUT COMMENT TEXT='\x83\x5C'."),
            (std::vector<std::string>{"0: \xE3\x82\xBD"}));
}

}  // namespace
}  // namespace vornwout
