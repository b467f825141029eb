#include "runner/terminal/outline_printer.h"

#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/display_width.h"

namespace vornwout {
namespace {

DocumentObject object(ObjectType type, const std::string& label,
                      std::vector<DocumentObject> children = {}) {
  DocumentObject result;
  result.type = type;
  result.label = label;
  result.children = std::move(children);
  return result;
}

std::string printed(const DocumentObject& root, const TerminalStyle& style = {}) {
  std::ostringstream out;
  printOutline(out, outlineOf(root), style);
  return out.str();
}

DocumentObject sample() {
  DocumentObject log = object(ObjectType::kLog, "Log");
  log.visible = false;
  DocumentObject table = object(ObjectType::kTable, "Frequencies");
  table.command = "FREQUENCIES";
  table.run = 2;
  table.index = "1.1";
  return object(
      ObjectType::kHeading, "",
      {object(ObjectType::kHeading, "People", {log, object(ObjectType::kHeading, "Deep", {table})}),
       object(ObjectType::kPageTitle, "")});
}

TEST(OutlinePrinter, ObjectsStandInATreeWithWhatTheyAre) {
  EXPECT_EQ(printed(sample()),
            "1 ├─ People                 heading\n"
            "2 │  ├─ Log                 log, hidden\n"
            "3 │  └─ Deep                heading\n"
            "4 │     └─ 1.1 Frequencies  table, FREQUENCIES 2\n"
            "5 └─ (no label)             page-title\n");
}

TEST(OutlinePrinter, PartOfAnOutlineStartsAtTheLeft) {
  const DocumentObject root = sample();
  std::vector<OutlineEntry> entries = outlineOf(root);
  entries = {entries.begin() + 2, entries.begin() + 4};
  std::ostringstream out;
  printOutline(out, entries, TerminalStyle{});
  EXPECT_EQ(out.str(),
            "3 └─ Deep                heading\n"
            "4    └─ 1.1 Frequencies  table, FREQUENCIES 2\n");
}

TEST(OutlinePrinter, LabelsAreCutToTheTerminal) {
  DocumentObject root =
      object(ObjectType::kHeading, "",
             {object(ObjectType::kText, "日本語のとても長いラベルがここに立っています"),
              object(ObjectType::kTable, std::string(100, 'x'))});
  for (int width = 30; width <= 90; ++width) {
    const std::string text = printed(root, TerminalStyle{ColorDepth::kNone, width});
    EXPECT_THAT(text, testing::HasSubstr("xx…  table\n"));
    EXPECT_THAT(text, testing::HasSubstr("  text\n"));
    EXPECT_EQ(text.find("ます") == std::string::npos, width < 56) << text;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(displayWidth(line), width) << line;
  }
}

TEST(OutlinePrinter, LongLabelsAreCutWithoutATerminalToo) {
  DocumentObject root =
      object(ObjectType::kHeading, "",
             {object(ObjectType::kText, std::string(100'000, 'x')),
              object(ObjectType::kHeading, "A", {object(ObjectType::kTable, "B")})});
  EXPECT_EQ(printed(root), "1 ├─ " + std::string(59, 'x') + "…  text\n" + "2 └─ A" +
                               std::string(61, ' ') + "heading\n" + "3    └─ B" +
                               std::string(58, ' ') + "table\n");
}

TEST(OutlinePrinter, LabelsAreSanitized) {
  DocumentObject hostile = object(ObjectType::kText, "a\x1b[2J\nb");
  hostile.command = "C\x1b[31m";
  const std::string text = printed(object(ObjectType::kHeading, "", {hostile}));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("\x1b")));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
}

TEST(OutlinePrinter, HiddenObjectsAreDim) {
  const std::string text = printed(sample(), TerminalStyle{ColorDepth::k256, 0});
  EXPECT_THAT(text, testing::HasSubstr("\x1b[1mPeople\x1b[0m"));
  EXPECT_THAT(text, testing::HasSubstr("\x1b[2mLog\x1b[0m"));
}

TEST(OutlinePrinter, EmptyOutlinePrintsNothing) { EXPECT_EQ(printed(DocumentObject()), ""); }

}  // namespace
}  // namespace vornwout
