#include "host/changes/text_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/generated_documents.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TextStyle boldStyle() {
  TextStyle style;
  style.bold = true;
  style.font = "Serif";
  return style;
}

/// A heading without runs, and a list item with a bold run and a link.
TextContent sample() {
  TextContent text;
  text.paragraphs.resize(2);
  text.paragraphs[0].kind = TextParagraph::Kind::kHeading;
  text.paragraphs[0].level = 2;
  text.paragraphs[1].kind = TextParagraph::Kind::kBullet;
  text.paragraphs[1].level = 1;
  text.paragraphs[1].runs = {{"bold", boldStyle(), "https://example.org"}, {"plain", {}, ""}};
  return text;
}

TextContent plain(const std::vector<std::string>& lines, const TextStyle& style) {
  TextContent text;
  for (const std::string& line : lines) {
    text.paragraphs.emplace_back().runs.push_back({line, style, ""});
  }
  return text;
}

/// With a first paragraph of the kind that sample() has.
TextContent heading(TextContent text) {
  text.paragraphs[0].kind = TextParagraph::Kind::kHeading;
  text.paragraphs[0].level = 2;
  return text;
}

bool isAnyFont(const std::string& /*name*/) { return true; }
bool isNoFont(const std::string& /*name*/) { return false; }

TEST(TextChanges, NothingGivenChangesNothing) {
  TextContent text = sample();
  const TextChange change;
  ChangeNotes notes;
  EXPECT_FALSE(TextChanger(change, notes, isNoFont).apply(text));
  EXPECT_EQ(text, sample());
  EXPECT_THAT(notes.notes(), IsEmpty());
}

TEST(TextChanges, NewTextIsOneParagraphPerLineInTheStyleOfTheFirstRun) {
  static const struct {
    const char* text;
    std::vector<std::string> lines;
  } kCases[] = {
      {"one", {"one"}},
      {"one\ntwo", {"one", "two"}},
      {"one\r\ntwo\rthree", {"one", "two", "three"}},
      {"one\n\ntwo", {"one", "", "two"}},
      {"\none", {"", "one"}},
      {"one\n", {"one"}},
      {"one\r\n", {"one"}},
      {"one\n\n", {"one", ""}},
      {"\n", {""}},
      {"", {""}},
  };
  for (const auto& [newText, lines] : kCases) {
    SCOPED_TRACE(newText);
    TextContent text = sample();
    TextChange change;
    change.text = newText;
    ChangeNotes notes;
    EXPECT_TRUE(TextChanger(change, notes, isAnyFont).apply(text));
    EXPECT_EQ(text, heading(plain(lines, boldStyle())));
  }
}

TEST(TextChanges, NewTextOfATextWithoutRunsHasNoStyle) {
  TextContent text;
  TextChange change;
  change.text = "new";
  ChangeNotes notes;
  EXPECT_TRUE(TextChanger(change, notes, isAnyFont).apply(text));
  EXPECT_EQ(text, plain({"new"}, TextStyle()));
}

TEST(TextChanges, EachPropertyGoesToEveryRunAndLeavesTheOthers) {
  const struct {
    const char* name;
    void (*ask)(TextChange&);
    void (*expect)(TextStyle&);
  } cases[] = {
      {"font", [](TextChange& c) { c.font = "Mono"; }, [](TextStyle& s) { s.font = "Mono"; }},
      {"size", [](TextChange& c) { c.fontSize = 9.5; }, [](TextStyle& s) { s.size = 9.5; }},
      {"bold", [](TextChange& c) { c.bold = true; }, [](TextStyle& s) { s.bold = true; }},
      {"not bold", [](TextChange& c) { c.bold = false; }, [](TextStyle& s) { s.bold = false; }},
      {"italic", [](TextChange& c) { c.italic = true; }, [](TextStyle& s) { s.italic = true; }},
      {"underline", [](TextChange& c) { c.underline = true; },
       [](TextStyle& s) { s.underlined = true; }},
      {"colour", [](TextChange& c) { c.color = "#ff0000"; },
       [](TextStyle& s) { s.color = "#ff0000"; }},
  };
  for (const auto& entry : cases) {
    SCOPED_TRACE(entry.name);
    TextChange change;
    entry.ask(change);
    TextContent expected = sample();
    for (TextRun& run : expected.paragraphs[1].runs) entry.expect(run.style);
    TextContent text = sample();
    ChangeNotes notes;
    EXPECT_TRUE(TextChanger(change, notes, isAnyFont).apply(text));
    EXPECT_EQ(text, expected);
    EXPECT_THAT(notes.notes(), IsEmpty());
  }
}

TEST(TextChanges, NewTextAndStyleAreBothChanged) {
  TextContent text = sample();
  TextChange change;
  change.text = "new";
  change.italic = true;
  ChangeNotes notes;
  EXPECT_TRUE(TextChanger(change, notes, isAnyFont).apply(text));
  TextStyle style = boldStyle();
  style.italic = true;
  EXPECT_EQ(text, heading(plain({"new"}, style)));
}

TEST(TextChanges, UnknownFontIsNotedAndTheRestIsDone) {
  TextContent text = sample();
  TextChange change;
  change.font = "Nowhere";
  change.italic = true;
  ChangeNotes notes;
  std::string asked;
  const TextChanger changer(change, notes, [&](const std::string& name) {
    asked = name;
    return false;
  });
  EXPECT_TRUE(changer.apply(text));
  EXPECT_EQ(asked, "Nowhere");
  EXPECT_EQ(text.paragraphs[1].runs[0].style.font, "Serif");
  EXPECT_TRUE(text.paragraphs[1].runs[0].style.italic);
  EXPECT_THAT(notes.notes(), ElementsAre("Invalid font (Nowhere)"));
}

TEST(TextChanges, WithoutACheckEveryFontIsThere) {
  TextContent text = sample();
  TextChange change;
  change.font = "Nowhere";
  ChangeNotes notes;
  EXPECT_TRUE(TextChanger(change, notes, FontCheck()).apply(text));
  EXPECT_EQ(text.paragraphs[1].runs[0].style.font, "Nowhere");
  EXPECT_THAT(notes.notes(), IsEmpty());
}

TEST(TextChanges, SecondTimeOfAnyChangeIsNothing) {
  for (unsigned int seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    DocumentGenerator generator(seed);
    auto text = std::get<TextContent>(generator.content(ObjectType::kText));
    TextChange change;
    if (generator.chance()) change.text = generator.text();
    if (generator.chance()) change.font = "DejaVu Sans";
    if (generator.chance()) change.fontSize = generator.upTo(40) / 2.0;
    if (generator.chance()) change.bold = generator.chance();
    if (generator.chance()) change.italic = generator.chance();
    if (generator.chance()) change.underline = generator.chance();
    if (generator.chance()) change.color = "#102030";
    ChangeNotes notes;
    const TextContent before = text;
    const bool isChanged = TextChanger(change, notes, isAnyFont).apply(text);
    EXPECT_EQ(isChanged, text != before);
    const TextContent once = text;
    EXPECT_FALSE(TextChanger(change, notes, isAnyFont).apply(text));
    EXPECT_EQ(text, once);
  }
}

}  // namespace
}  // namespace vornwout
