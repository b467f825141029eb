#include "runner/terminal/content_printer.h"

#include <memory>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/pivot_tables.h"

namespace vornwout {
namespace {

using testing::HasSubstr;

struct Printed {
  std::string text;
  bool isWhole;
};

Printed print(const ObjectContent& content, ObjectType type = ObjectType::kOther,
              const std::string& label = {}, const TerminalStyle& style = {},
              const std::string& file = "a.qxv") {
  DocumentObject object;
  object.type = type;
  object.label = label;
  std::ostringstream out;
  const bool isWhole = printContent(out, object, content, {file, 7}, style);
  return {out.str(), isWhole};
}

MediaContent media(const char* type, std::string bytes) {
  return {type, std::make_shared<const std::string>(std::move(bytes))};
}

TEST(ContentPrinter, EachLayerOfATableIsShown) {
  auto table = std::make_shared<PivotTable>();
  table->title = textCell("T");
  table->caption = textCell("Caption");
  table->footnotes = {textCell("whole")};
  table->dimensions = {makeDimension("L", PivotPlace::kLayers, 1, {"x", "y"})};
  addCell(*table, {0}, numberCell(1)).notes = {textCell("cell")};
  addCell(*table, {1}, numberCell(2));
  const Printed printed = print(table);
  EXPECT_TRUE(printed.isWhole);
  EXPECT_EQ(printed.text,
            "T [a]\nL: x\n┌───────┐\n│ 1 [b] │\n└───────┘\nCaption\n[a] whole\n[b] cell\n\n"
            "T [a]\nL: y\n┌───┐\n│ 2 │\n└───┘\nCaption\n[a] whole\n");
}

TEST(ContentPrinter, TableThatCannotBeLaidOutSaysSo) {
  auto broken = std::make_shared<PivotTable>();
  addCell(*broken, {1}, textCell("x"));
  const Printed printed = print(broken);
  EXPECT_FALSE(printed.isWhole);
  EXPECT_THAT(printed.text, testing::StartsWith("This table cannot be shown: a cell of the table"));
}

TEST(ContentPrinter, LogsNotesAndMessagesAreWrapped) {
  const TerminalStyle narrow{ColorDepth::kNone, 24};
  EXPECT_EQ(print(LogContent{"A B.\n  C"}).text, "A B.\n  C\n");
  EXPECT_EQ(print(NotesContent{{{textCell("Created"), textCell("a b c d e f g h i")},
                                {textCell("By"), numberCell(2)}}},
                  ObjectType::kNotes, "", narrow)
                .text,
            "Created  a b c d e f g h\n         i\nBy       2\n");
  EXPECT_EQ(print(MessageContent{MessageSeverity::kWarning, "one two three", {}},
                  ObjectType::kWarning, "", narrow)
                .text,
            "Warning: one two three\n");
  EXPECT_EQ(print(MessageContent{MessageSeverity::kError, "e", {}}).text, "Error: e\n");
  EXPECT_EQ(print(MessageContent{MessageSeverity::kInformation, "i", {}}).text, "Information: i\n");
  EXPECT_EQ(print(std::monostate()).text, "");
}

TEST(ContentPrinter, ChartsAndModelsTellWhatTheyAreAndHowTheyAreHad) {
  EXPECT_EQ(print(media("image/svg+xml", "<svg width='576pt' height='324pt'/>"), ObjectType::kChart,
                  "Trend")
                .text,
            "Chart: Trend (SVG, 576 × 324 points, 35 bytes)\n"
            "  vornwout show a.qxv --object 7 --raw > chart.svg\n");
  std::string png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\3\x20\0\0\2\x58", 24);
  EXPECT_THAT(print(media("image/png", png), ObjectType::kChart).text,
              HasSubstr("Chart: PNG, 800 × 600 pixels, 24 bytes\n"));
  EXPECT_EQ(print(media("application/xml", "<m/>"), ObjectType::kModel, "M").text,
            "Model: M (application/xml, 4 bytes)\n"
            "  vornwout show a.qxv --object 7 --raw > model.xml\n");
  EXPECT_THAT(print(media("a/b", ""), ObjectType::kModel).text, HasSubstr("> model.bin"));
}

TEST(ContentPrinter, FileIsWrittenAsAShellTakesIt) {
  const MediaContent chart = media("image/svg+xml", "<svg/>");
  const struct {
    const char* file;
    const char* written;
  } cases[] = {{"a b.qxv", "show 'a b.qxv' "},
               {"it's.qxv", "show 'it'\\''s.qxv' "},
               {"-x.qxv", "show ./-x.qxv "},
               {"$(x).qxv", "show '$(x).qxv' "}};
  for (const auto& c : cases) {
    EXPECT_THAT(print(chart, ObjectType::kChart, "", {}, c.file).text, HasSubstr(c.written));
  }
}

TEST(ContentPrinter, NothingMovesTheCursor) {
  const std::string hostile = "a\x1b[2J\x07\rb";
  for (const ObjectContent& content : std::vector<ObjectContent>{
           LogContent{hostile}, NotesContent{{{textCell(hostile), textCell(hostile)}}},
           MessageContent{MessageSeverity::kError, hostile, {}}, media(hostile.c_str(), hostile)}) {
    const std::string text = print(content, ObjectType::kChart, hostile, {}, hostile).text;
    EXPECT_EQ(text.find_first_of("\x1b\x07\r"), std::string::npos);
  }
}

TEST(ContentPrinter, MediaHaveTheExtensionOfTheirType) {
  EXPECT_EQ(mediaExtension("image/svg+xml"), "svg");
  EXPECT_EQ(mediaExtension("image/png"), "png");
  EXPECT_EQ(mediaExtension("../../x"), "bin");
}

}  // namespace
}  // namespace vornwout
