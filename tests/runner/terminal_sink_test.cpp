#include "runner/terminal/terminal_sink.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"
#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

class TerminalSinkTest : public testing::Test {
 protected:
  void addTable(const std::string& text) {
    auto table = std::make_shared<PivotTable>();
    table->titleHidden = true;
    addCell(*table, {}, textCell(text));
    sink_.table(table);
  }
  void open(const std::string& name) { sink_.procedureOpened({name, 2}); }
  void close() { sink_.procedureClosed({"", 2}); }

  /// What was printed since the last call, each table's frame as "<text>".
  std::string printed() {
    std::string result;
    std::istringstream in(out_.str());
    out_.str({});
    for (std::string line; std::getline(in, line);) {
      if (line.find("┌") == 0 || line.find("└") == 0) continue;
      const std::string bar = "│";
      if (line.find(bar) == 0) {
        line = "<" + line.substr(bar.size() + 1, line.size() - 2 * bar.size() - 2) + ">";
      }
      result += line + "\n";
    }
    return result;
  }

  std::ostringstream out_;
  std::optional<std::string> document_;
  TerminalSink sink_{out_, TerminalStyle{ColorDepth::kNone, 20}, [this] { return document_; }};
};

TEST_F(TerminalSinkTest, TablesStandBelowTheirProceduresHeading) {
  open("Output Comment");
  addTable("a");
  addTable("b");
  close();
  EXPECT_EQ(printed(), "Output Comment\n\n<a>\n\n<b>\n");
  open("Output Comment");
  addTable("c");
  close();
  EXPECT_EQ(printed(), "\nOutput Comment\n\n<c>\n");
}

TEST_F(TerminalSinkTest, ProcedureWithoutTablesShowsNothing) {
  open("Output New");
  close();
  EXPECT_EQ(printed(), "");
}

TEST_F(TerminalSinkTest, TableOutsideProceduresHasNoHeading) {
  addTable("a");
  EXPECT_EQ(printed(), "<a>\n");
}

TEST_F(TerminalSinkTest, HeadingComesAgainAfterANestedProcedure) {
  open("Outer");
  addTable("1");
  open("Inner");
  addTable("2");
  close();
  addTable("3");
  close();
  EXPECT_EQ(printed(), "Outer\n\n<1>\n\nInner\n\n<2>\n\nOuter\n\n<3>\n");
}

TEST_F(TerminalSinkTest, TableThatCannotBeLaidOutSaysSo) {
  auto broken = std::make_shared<PivotTable>();
  addCell(*broken, {1}, textCell("x"));
  sink_.table(broken);
  EXPECT_THAT(printed(), testing::StartsWith("This table cannot be\n"));
}

TEST_F(TerminalSinkTest, EachLayerIsShown) {
  auto table = std::make_shared<PivotTable>();
  table->titleHidden = true;
  table->dimensions = {makeDimension("L", PivotPlace::kLayers, 1, {"x", "y"})};
  addCell(*table, {0}, textCell("1"));
  addCell(*table, {1}, textCell("2"));
  sink_.table(table);
  EXPECT_EQ(printed(), "L: x\n<1>\n\nL: y\n<2>\n");
}

TEST_F(TerminalSinkTest, RuleNamesTheDocumentWhereItChanges) {
  open("P");
  addTable("1");
  document_ = "売上";
  addTable("2");
  addTable("3");
  document_ = "b";
  addTable("4");
  document_.reset();
  addTable("5");
  EXPECT_EQ(printed(),
            "P\n\n<1>\n\n"
            "── 売上 ────────────\n\nP\n\n<2>\n\n<3>\n\n"
            "── b ───────────────\n\nP\n\n<4>\n\n"
            "────────────────────\n\nP\n\n<5>\n");
}

TEST_F(TerminalSinkTest, LongDocumentNameIsCutToTheTerminal) {
  document_ = std::string(64, 'x');
  addTable("1");
  const std::string shown = printed();
  const std::string rule = shown.substr(0, shown.find('\n'));
  EXPECT_EQ(displayWidth(rule), 20);
  EXPECT_THAT(rule, testing::HasSubstr("xxx…"));
}

TEST_F(TerminalSinkTest, NamesAreSanitized) {
  document_ = "a\x1b[2J";
  open("p\x1b[31m");
  addTable("1");
  EXPECT_THAT(printed(), testing::Not(testing::HasSubstr("\x1b")));
}

TEST(TerminalSink, WorksWithoutALabelCallbackAndStylesHeadings) {
  std::ostringstream out;
  TerminalSink sink(out, TerminalStyle{ColorDepth::k256, 0}, nullptr);
  sink.procedureClosed({"never opened", 2});
  sink.procedureOpened({"Output Display", 2});
  auto table = std::make_shared<PivotTable>();
  addCell(*table, {}, textCell("x"));
  sink.table(table);
  EXPECT_THAT(out.str(), testing::StartsWith("\x1b[1;2mOutput Display\x1b[0m\n\n"));
}

}  // namespace
}  // namespace vornwout
