// Procedures, notes, messages, and the order in which tables are delivered.
#include "platform/pivot/bp_procedure.h"

#include <new>
#include <optional>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/recording_sink.h"

namespace vornwout {
namespace {

using Events = std::vector<std::string>;

BpPivotTable begin(BpProcedure& procedure, const char* title) {
  return procedure.PivotTable(BpString(title, true), BpString("subtype", true));
}

/// Throws at the operation that its flags name.
struct ThrowingSink : OutputSink {
  bool atOpening = false;
  bool atTables = false;
  void procedureOpened(const ProcedureRecord&) override {
    if (atOpening) throw std::bad_alloc();
  }
  void table(const std::shared_ptr<const PivotTable>&) override {
    if (atTables) throw std::bad_alloc();
  }
};

TEST(BpProcedure, TellsEverySinkOfItsOpeningAndClosing) {
  RecordingSink first;
  RecordingSink second;
  {
    const BpProcedure procedure("Output New", 2);
    EXPECT_EQ(first.events, (Events{"open Output New"}));
    EXPECT_EQ(first.procedures.at(0).number, 2);
  }
  EXPECT_EQ(first.events, (Events{"open Output New", "close Output New"}));
  EXPECT_EQ(second.events, first.events);
}

TEST(BpProcedure, ConvertsItsNameFromTheCurrentEncoding) {
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  RecordingSink sink;
  const BpProcedure procedure("\xC4", 2);
  EXPECT_EQ(sink.procedures.at(0).name, "\xC3\x84");
}

TEST(BpProcedure, IsTheCurrentOneUntilItCloses) {
  EXPECT_EQ(BpProcedure::current(), nullptr);
  {
    BpProcedure outer("outer", 2);
    EXPECT_EQ(BpProcedure::current(), &outer);
    {
      BpProcedure inner("inner", 2);
      EXPECT_EQ(BpProcedure::current(), &inner);
    }
    EXPECT_EQ(BpProcedure::current(), &outer);
  }
  EXPECT_EQ(BpProcedure::current(), nullptr);
}

TEST(BpProcedure, NestsWithItsOutputInside) {
  RecordingSink sink;
  {
    BpProcedure outer("outer", 2);
    {
      BpProcedure inner("inner", 2);
      begin(inner, "I");
    }
    begin(outer, "O");
  }
  EXPECT_EQ(sink.events, (Events{"open outer", "open inner", "table I", "close inner", "table O",
                                 "close outer"}));
}

TEST(BpProcedure, CountsWithoutDecimals) {
  const BpProcedure procedure("p", 2);
  EXPECT_EQ(procedure.Count().type, BpFormatSpec::Type::kCount);
}

TEST(BpProcedure, IsClosedForSinksToldBeforeOneThatFailsAtTheOpening) {
  RecordingSink before;
  ThrowingSink failing;
  failing.atOpening = true;
  const SinkRegistration registration(failing);
  RecordingSink behind;
  EXPECT_THROW(BpProcedure("p", 2), std::bad_alloc);
  EXPECT_EQ(before.events, (Events{"open p", "close p"}));
  EXPECT_TRUE(behind.events.empty());
  EXPECT_EQ(BpProcedure::current(), nullptr);
}

TEST(BpProcedure, ClosesWhenAnExceptionPasses) {
  RecordingSink sink;
  try {
    const BpProcedure procedure("p", 2);
    throw std::runtime_error("x");
  } catch (const std::runtime_error&) {
    sink.events.emplace_back("caught");
  }
  EXPECT_EQ(sink.events, (Events{"open p", "close p", "caught"}));
  EXPECT_EQ(BpProcedure::current(), nullptr);
}

TEST(TableOrder, DeliversATableWhenItsHandleIsDestroyed) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  {
    const BpPivotTable table = begin(procedure, "A");
    EXPECT_TRUE(sink.tables.empty());
  }
  EXPECT_EQ(sink.events, (Events{"open p", "table A"}));
}

TEST(TableOrder, LetsATableBegunLaterWaitForTheEarlierOne) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  std::optional<BpPivotTable> a(begin(procedure, "A"));
  begin(procedure, "B");
  begin(procedure, "C");
  EXPECT_TRUE(sink.tables.empty());
  a.reset();
  EXPECT_EQ(sink.events, (Events{"open p", "table A", "table B", "table C"}));
}

TEST(TableOrder, FollowsTheBeginningWhenLocalsEndInReverse) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  {
    const BpPivotTable a = begin(procedure, "A");
    const BpPivotTable b = begin(procedure, "B");
  }
  EXPECT_EQ(sink.events, (Events{"open p", "table A", "table B"}));
}

TEST(TableOrder, SendsNotesAndMessagesAtOnce) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  std::optional<BpPivotTable> a(begin(procedure, "A"));
  AddNotes(2, BpString("n", true), BpNumber(1, procedure.Count()));
  BpError(BpString("m", true), 2, 3);
  a.reset();
  EXPECT_EQ(sink.events, (Events{"open p", "note n", "message m", "table A"}));
}

TEST(TableOrder, DeliversWhatWaitsWhenTheProcedureCloses) {
  RecordingSink sink;
  std::optional<BpPivotTable> outliving;
  {
    BpProcedure procedure("p", 2);
    outliving.emplace(begin(procedure, "A"));
    begin(procedure, "B");
    begin(procedure, "C");
  }
  EXPECT_EQ(sink.events, (Events{"open p", "table B", "table C", "close p"}));
  outliving.reset();
  EXPECT_EQ(sink.events.back(), "table A");
}

TEST(TableOrder, DeliversOnceWhenTheHandleIsMoved) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  {
    BpPivotTable first = begin(procedure, "A");
    BpDimension rows = first.Dimension(BpString("Rows", true), 2);
    const BpPivotTable second = std::move(first);
    rows.Category(BpString("r", true)).Cell(BpString("v", false));
  }
  ASSERT_EQ(sink.tables.size(), 1U);
  EXPECT_EQ(sink.tables[0]->cells.size(), 1U);
}

TEST(TableOrder, DeliversNothingWhenAnExceptionPasses) {
  RecordingSink sink;
  try {
    BpProcedure procedure("p", 2);
    const BpPivotTable a = begin(procedure, "A");
    const BpPivotTable b = begin(procedure, "B");
    begin(procedure, "C");
    throw std::runtime_error("x");
  } catch (const std::runtime_error&) {
    sink.events.emplace_back("caught");
  }
  EXPECT_EQ(sink.events, (Events{"open p", "close p", "caught"}));
}

TEST(TableOrder, DropsWaitingTablesOfAProcedureThatAnExceptionCloses) {
  RecordingSink sink;
  std::optional<BpPivotTable> outliving;
  try {
    BpProcedure procedure("p", 2);
    outliving.emplace(begin(procedure, "A"));
    begin(procedure, "B");
    throw std::runtime_error("x");
  } catch (const std::runtime_error&) {
    sink.events.emplace_back("caught");
  }
  EXPECT_EQ(sink.events, (Events{"open p", "close p", "caught"}));
}

TEST(TableOrder, DropsWaitingTablesWithTheOneThatAnExceptionDestroys) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  try {
    const BpPivotTable a = begin(procedure, "A");
    begin(procedure, "B");
    throw std::runtime_error("x");
  } catch (const std::runtime_error&) {
    sink.events.emplace_back("caught");
  }
  begin(procedure, "C");
  EXPECT_EQ(sink.events, (Events{"open p", "caught", "table C"}));
}

TEST(TableOrder, DeliversATableThatIsMadeAndFinishedWhileAnExceptionPasses) {
  RecordingSink sink;
  struct Reporter {
    ~Reporter() {
      BpProcedure procedure("cleanup", 2);
      begin(procedure, "A");
    }
  };
  try {
    const Reporter reporter;
    throw std::runtime_error("x");
  } catch (const std::runtime_error&) {
    sink.events.emplace_back("caught");
  }
  EXPECT_EQ(sink.events, (Events{"open cleanup", "table A", "close cleanup", "caught"}));
}

TEST(TableOrder, LetsAFailureOfDeliveryOutOfTheHandle) {
  static_assert(!std::is_nothrow_destructible_v<BpPivotTable>);
  static_assert(!std::is_nothrow_destructible_v<BpProcedure>);
  ThrowingSink failing;
  failing.atTables = true;
  const SinkRegistration registration(failing);
  RecordingSink sink;
  EXPECT_THROW(
      {
        BpProcedure procedure("p", 2);
        const BpPivotTable a = begin(procedure, "A");
      },
      std::bad_alloc);
  EXPECT_EQ(sink.events, (Events{"open p", "close p"}));
}

TEST(TableOrder, ClosesTheProcedureWhenItsDeliveryFails) {
  ThrowingSink failing;
  failing.atTables = true;
  const SinkRegistration registration(failing);
  RecordingSink sink;
  std::optional<BpPivotTable> open;
  EXPECT_THROW(
      {
        BpProcedure procedure("p", 2);
        open.emplace(begin(procedure, "A"));
        begin(procedure, "B");
      },
      std::bad_alloc);
  EXPECT_EQ(sink.events, (Events{"open p", "close p"}));
  EXPECT_EQ(BpProcedure::current(), nullptr);
  failing.atTables = false;
}

TEST(TableOrder, GoesOnBehindATableWhoseDeliveryFailed) {
  ThrowingSink failing;
  failing.atTables = true;
  const SinkRegistration registration(failing);
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  EXPECT_THROW(begin(procedure, "A"), std::bad_alloc);
  failing.atTables = false;
  begin(procedure, "B");
  EXPECT_EQ(sink.events, (Events{"open p", "table B"}));
}

TEST(PivotTable, CarriesTitleSubtypeAndFlag) {
  RecordingSink sink;
  BpProcedure procedure("p", 2);
  procedure.PivotTable(BpString("T", true), BpString("S", false));
  procedure.PivotTable(BpString("T", true), BpString("S", true), true);
  procedure.PivotTable(BpString("T", true), BpString("S", true), false);
  ASSERT_EQ(sink.tables.size(), 3U);
  EXPECT_EQ(sink.tables[0]->title.text, "T");
  EXPECT_TRUE(sink.tables[0]->title.translatable);
  EXPECT_EQ(sink.tables[0]->subtype.text, "S");
  EXPECT_FALSE(sink.tables[0]->subtype.translatable);
  EXPECT_EQ(sink.tables[0]->flag, std::nullopt);
  EXPECT_EQ(sink.tables[1]->flag, std::optional(true));
  EXPECT_EQ(sink.tables[2]->flag, std::optional(false));
}

TEST(AddNotes, WorksWithoutAProcedure) {
  RecordingSink sink;
  AddNotes(2, BpString("Image File Count", true), BpNumber(4, BpFormatSpec{}));
  ASSERT_EQ(sink.notes.size(), 1U);
  EXPECT_EQ(sink.notes[0].number, 2);
  EXPECT_EQ(sink.notes[0].label.text, "Image File Count");
  EXPECT_EQ(sink.notes[0].value.number, 4);
}

TEST(BpError, PassesShowAndLevelAsGiven) {
  RecordingSink sink;
  BpComposite message("Output name ^1 is too long.", true);
  message.Add(BpString("n", false)).Finish();
  BpError(message, 2, 7);
  ASSERT_EQ(sink.messages.size(), 1U);
  EXPECT_EQ(renderText(sink.messages[0].message), "Output name n is too long.");
  EXPECT_EQ(sink.messages[0].show, 2);
  EXPECT_EQ(sink.messages[0].level, 7);
}

}  // namespace
}  // namespace vornwout
