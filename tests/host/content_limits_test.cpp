#include "host/store/content_limits.h"

#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/store/content_reader.h"
#include "host/store/store_error.h"
#include "host/store/xml_reader.h"

namespace vornwout {
namespace {

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

std::string refusal(std::string bytes) {
  pugi::xml_document xml;
  parseXml(bytes, xml);
  try {
    readContent(xml.document_element());
    return {};
  } catch (const StoreError& error) {
    return error.what();
  }
}

/// A text of so many bytes that names its argument so often.
CellText growingText(std::size_t uses, const CellText& argument) {
  CellText text;
  text.kind = CellText::Kind::kComposite;
  text.text = repeated("^1", uses);
  text.arguments.edit().push_back(argument);
  return text;
}

CellText plainText(std::size_t size) {
  CellText text;
  text.text = std::string(size, 'x');
  return text;
}

TEST(ContentLimits, GroupsAreNestedSoDeepAtMost) {
  const auto table = [](int groups) {
    std::string xml = "<table><dimension>";
    for (int i = 0; i < groups; ++i) xml += "<group parent=\"" + std::to_string(i - 1) + "\"/>";
    return xml + "<category parent=\"" + std::to_string(groups - 1) + "\"/></dimension></table>";
  };
  EXPECT_EQ(refusal(table(100)), "");
  EXPECT_THAT(refusal(table(101)), testing::HasSubstr("it stands in more than 100 groups"));
  auto deep = std::make_shared<PivotTable>();
  PivotDimension& dimension = deep->dimensions.emplace_back();
  for (int i = 0; i < 102; ++i) {
    PivotCategory& group = dimension.categories.emplace_back();
    group.isGroup = true;
    group.parent = i - 1;
  }
  EXPECT_EQ(excessOf(ObjectContent(TableContent(deep)), ""),
            "holds a category that stands in more than 100 groups");
}

TEST(ContentLimits, WhatIsWrittenIsCountedByTheNamesOfItsElements) {
  constexpr std::size_t kMost = 1'000'000;
  const std::string other = "<text><content/><runs/><notes a=\"1\"></text>";
  for (const char* one : {"<paragraph level=\"1\">", "<run>a</run>", "<run/>", "<footnote>",
                          "<argument/>", "<item/>", "<note>"}) {
    EXPECT_EQ(excessOf({}, other + repeated(one, kMost)), "") << one;
    EXPECT_EQ(excessOf({}, other + repeated(one, kMost) + "<run/>"),
              "holds more than 1,000,000 runs, footnotes and the like");
  }
  EXPECT_EQ(excessOf({}, repeated("<group>", 2 * kMost)), "");
  EXPECT_EQ(excessOf({}, repeated("<group>", 2 * kMost) + "<category value=\"1\"/>"),
            "holds more than 2,000,000 categories");
}

TEST(ContentLimits, DimensionsOfATableAreCounted) {
  auto table = std::make_shared<PivotTable>();
  table->dimensions.resize(1000);
  EXPECT_EQ(excessOf(TableContent(table), ""), "");
  table->dimensions.emplace_back();
  EXPECT_EQ(excessOf(TableContent(table), ""), "holds more than 1,000 dimensions");
}

TEST(ContentLimits, TextsMayGrowOnlySoFarWhereverTheyStand) {
  constexpr std::size_t kMost = std::size_t{16} << 20;
  const std::string excess =
      "holds texts that grow by more than 16 MiB when their arguments are filled in";
  // Every use but the first is growth.
  const CellText most = growingText(17, plainText(kMost / 16));
  const CellText more = growingText(18, plainText(kMost / 16));
  const auto notes = [](const CellText& text) { return NotesContent{{{{}, text}}}; };
  EXPECT_EQ(excessOf(notes(most), ""), "");
  EXPECT_EQ(excessOf(notes(more), ""), excess);
  EXPECT_EQ(excessOf(NotesContent{{{most, {}}, {{}, growingText(2, plainText(1))}}}, ""), excess);
  // A text that is only filled in does not grow, however large it is.
  EXPECT_EQ(excessOf(notes(growingText(1, plainText(2 * kMost))), ""), "");

  using Place = CellText& (*)(PivotTable&);
  const Place places[] = {
      [](PivotTable& t) -> CellText& { return t.title; },
      [](PivotTable& t) -> CellText& { return t.subtype; },
      [](PivotTable& t) -> CellText& { return t.caption; },
      [](PivotTable& t) -> CellText& { return t.footnotes.emplace_back(); },
      [](PivotTable& t) -> CellText& { return t.dimensions.emplace_back().label; },
      [](PivotTable& t) -> CellText& {
        return t.dimensions.emplace_back().categories.emplace_back().label;
      },
      [](PivotTable& t) -> CellText& { return t.cells.emplace_back().value; },
      [](PivotTable& t) -> CellText& { return t.cells.emplace_back().notes.edit().emplace_back(); },
  };
  for (std::size_t i = 0; i < std::size(places); ++i) {
    PivotTable table;
    places[i](table) = more;
    EXPECT_EQ(excessOf(std::make_shared<const PivotTable>(table), ""), excess) << i;
  }
}

TEST(ContentLimits, ArgumentsWithinArgumentsGrowTogether) {
  CellText text = plainText(3);
  for (int depth = 0; depth < 31; ++depth) text = growingText(10, text);
  EXPECT_NE(excessOf(NotesContent{{{text, {}}}}, ""), "");
  // It is made for showing whether the text around it names it or not.
  CellText around;
  around.kind = CellText::Kind::kComposite;
  around.arguments.edit().push_back(growingText(1000, plainText(1'000'000)));
  EXPECT_NE(excessOf(NotesContent{{{around, {}}}}, ""), "");
  around.arguments = {};
  around.sublist.edit().push_back(growingText(1000, plainText(1'000'000)));
  EXPECT_NE(excessOf(NotesContent{{{around, {}}}}, ""), "");
}

TEST(ContentLimits, ATextThatGrowsTooLargeIsRefusedAsItIsRead) {
  std::string title = "lol";
  for (int depth = 0; depth < 10; ++depth) {
    title = "<template>^1^1^1^1^1^1^1^1^1^1</template><argument" +
            std::string(depth == 0 ? "" : " kind='composite'") + ">" + title + "</argument>";
  }
  EXPECT_EQ(refusal("<table><title kind='composite'>" + title + "</title></table>"),
            "table: it holds texts that grow by more than 16 MiB when their arguments are filled "
            "in");
}

TEST(ContentLimits, MoreOfThemThanMemoryShouldHoldAreRefused) {
  constexpr std::size_t kMost = 1'000'000;
  EXPECT_EQ(refusal("<text>" + repeated("<paragraph/>", kMost) + "</text>"), "");
  const std::pair<std::string, std::string> cases[] = {
      {"text", repeated("<paragraph/>", kMost + 1)},
      {"text", "<paragraph>" + repeated("<run/>", kMost) + "</paragraph>"},
      {"table", repeated("<footnote/>", kMost + 1)},
      {"table", "<title kind='composite'>" + repeated("<argument/>", kMost + 1) + "</title>"},
      {"table", "<title kind='composite'>" + repeated("<item/>", kMost + 1) + "</title>"},
      {"notes", repeated("<note/>", kMost + 1)},
  };
  for (const auto& [element, body] : cases) {
    EXPECT_EQ(refusal("<" + element + ">" + body + "</" + element + ">"),
              element + ": it holds more than 1,000,000 runs, footnotes and the like");
  }
  const auto dimension = [](const std::string& body) {
    return "<table><dimension>" + body + "</dimension></table>";
  };
  EXPECT_EQ(refusal(dimension(repeated("<category/>", 2 * kMost + 1))),
            "table: it holds more than 2,000,000 categories");
  EXPECT_EQ(refusal(dimension(repeated("<group/>", 2 * kMost + 1))),
            "table: it holds more than 2,000,000 categories");
  EXPECT_EQ(refusal("<table>" + repeated("<dimension/>", 1001) + "</table>"),
            "table: it holds more than 1,000 dimensions");
  EXPECT_EQ(refusal("<table>" + repeated("<dimension/>", 1000) + "</table>"), "");
}

}  // namespace
}  // namespace vornwout
