// What several modifiers declare and read in the same way.
#include "libvornwout/modify/modify_values.h"

#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/modify_grammar.h"
#include "tests/support/parsed_command.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A command with one keyword VALUE, or with the keyword given.
ParsedCommand parsed(ParamDescriptor keyword, const std::string& arguments) {
  CommandDescriptor command("PROBE");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc(std::move(keyword));
  command.addSubComDesc(std::move(main));
  return ParsedCommand(std::move(command), arguments);
}

TEST(ModifierKeyword, IsNeverRequired) {
  EXPECT_EQ(describe(modifierKeyword("A", UPSpecTypes::kString)), "A 4 ft 0");
  EXPECT_EQ(describe(modifierKeyword("A", UPSpecTypes::kDeclaredValue, {"X", "Y"})),
            "A 3 ft 0 {X Y}");
  EXPECT_EQ(describe(styleKeyword()), "STYLE 5 ft 0 {REGULAR BOLD ITALIC UNDERLINE}");
  EXPECT_EQ(describe(colorKeyword("C")),
            "C 2 ft 0 {BLACK BLUE CYAN DARKGRAY DARKGREY GRAY GREY GREEN LIGHTGRAY LIGHTGREY "
            "MAGENTA ORANGE PINK RED WHITE YELLOW RGB}");
}

TEST(ReadText, TakesOneTokenAndTellsWhetherItWasQuoted) {
  const struct {
    const char* arguments;
    const char* text;
    bool quoted;
  } cases[] = {{"VALUE='a b'", "a b", true},  {"VALUE=\"\"", "", true},
               {"VALUE=word", "word", false}, {"VALUE=1.50", "1.50", false},
               {"VALUE=*", "*", false},       {"VALUE='a' 'b'", "", false},
               {"VALUE=['a']", "", false},    {"VALUE", "", false}};
  for (const auto& test : cases) {
    const ParsedCommand command =
        parsed(modifierKeyword("VALUE", UPSpecTypes::kRawTokens), test.arguments);
    bool quoted = false;
    EXPECT_EQ(readText(command.param("VALUE"), &quoted), test.text) << test.arguments;
    EXPECT_EQ(quoted, test.quoted) << test.arguments;
    EXPECT_EQ(readText(command.param("VALUE")), test.text) << test.arguments;
  }
}

TEST(ReadExpandedText, IsNothingOnlyWhenTheKeywordIsMissing) {
  const struct {
    const char* arguments;
    std::optional<std::string> text;
  } cases[] = {{"", std::nullopt},
               {"VALUE=''", ""},
               {"VALUE='a & )date'", "a &amp; )date"},
               {"VALUE=a", "a"}};
  for (const auto& test : cases) {
    const ParsedCommand command =
        parsed(modifierKeyword("VALUE", UPSpecTypes::kString), test.arguments);
    const SubComObj* main = command.spec().getSubComObj("");
    if (main == nullptr) {
      EXPECT_FALSE(test.text.has_value());
      continue;
    }
    EXPECT_EQ(readExpandedText(*main, "VALUE"), test.text) << test.arguments;
    EXPECT_EQ(readExpandedText(*main, "OTHER"), std::nullopt) << test.arguments;
  }
}

TEST(FetchFrom, DropsWhatStandsBeforeTheFirstStartTag) {
  const ScratchDirectory directory;
  const struct {
    std::string content;
    std::string fetched;
  } cases[] = {{"<a/>", "<a/>"},
               {"<?xml?> <a x='<a'/><a/>", "<a x='<a'/><a/>"},
               {"<ab/>", "<ab/>"},
               {" <A/> ", " <A/> "},
               {"plain", "plain"},
               {"", ""},
               {std::string("x\0<a\0/>", 8), std::string("<a\0/>", 6)}};
  for (const auto& test : cases) {
    EXPECT_EQ(fetchFrom(directory.write("file", test.content), "<a"), test.fetched) << test.content;
  }
  EXPECT_EQ(fetchFrom(directory.file("missing"), "<a"), "");
  EXPECT_EQ(fetchFrom(directory.path(), "<a"), "");
  EXPECT_EQ(fetchFrom("", "<a"), "");
}

TEST(ReadColor, ReportsUnderTheNameThatItIsGiven) {
  const struct {
    const char* arguments;
    bool accepted;
    int red;
    int green;
    int blue;
  } cases[] = {{"C=ORANGE", true, 255, 200, 0},
               {"C=RGB(0 255 0)", true, 0, 255, 0},
               {"C=GREY", false, -1, -1, -1},
               {"C", false, -1, -1, -1},
               // What was read of a colour out of bounds stays; nothing of it is sent.
               {"C=RGB(1 2 256)", false, 1, 2, 256}};
  for (const auto& test : cases) {
    const ParsedCommand command = parsed(colorKeyword("C"), test.arguments);
    RgbColor color;
    EXPECT_EQ(
        readColor(*command.spec().getSubComObj(""), "C", "SOME NAME", command.messages(), color),
        test.accepted)
        << test.arguments;
    EXPECT_THAT((std::vector<int>{color.red, color.green, color.blue}),
                ElementsAre(test.red, test.green, test.blue))
        << test.arguments;
    if (test.accepted) {
      EXPECT_THAT(command.records, IsEmpty()) << test.arguments;
      continue;
    }
    ASSERT_EQ(command.records.size(), 1U) << test.arguments;
    EXPECT_EQ(command.records[0].operation, "GenericError");
    EXPECT_EQ(command.records[0].text, "Subcommand SOME NAME: Not a recognized RGB color");
  }
}

TEST(ReadColor, LeavesAColourThatWasNotGiven) {
  const ParsedCommand command = parsed(colorKeyword("C"), "C=RED");
  RgbColor color;
  EXPECT_TRUE(readColor(*command.spec().getSubComObj(""), "D", "X", command.messages(), color));
  EXPECT_EQ(color.red, -1);
  EXPECT_THAT(command.records, IsEmpty());
}

/// "B" for bold asked for, "b" for bold asked to be off, "-" for neither; so for each part.
std::string written(const FontStyle& style) {
  const auto part = [](bool specified, bool on, char letter) {
    if (!specified) return '-';
    return on ? letter : static_cast<char>(letter - 'A' + 'a');
  };
  return {part(style.regularSpecified, style.regular, 'R'),
          part(style.boldSpecified, style.bold, 'B'),
          part(style.italicSpecified, style.italic, 'I'),
          part(style.underlineSpecified, style.underline, 'U')};
}

TEST(ReadStyle, GoesThroughTheListInItsOrder) {
  const struct {
    const char* list;
    const char* style;
  } cases[] = {{"REGULAR", "Rbiu"},
               {"BOLD", "-B--"},
               {"ITALIC", "--I-"},
               {"UNDERLINE", "---U"},
               {"bold underline", "-B-U"},
               {"BOLD REGULAR", "Rbiu"},
               {"REGULAR BOLD", "RBiu"},
               {"ITALIC, REGULAR, 'ITALIC'", "RbIu"},
               {"REGULAR BOLD ITALIC UNDERLINE", "RBIU"}};
  for (const auto& test : cases) {
    const ParsedCommand command = parsed(styleKeyword(), std::string("STYLE=") + test.list);
    EXPECT_EQ(command.errors(), 0) << test.list;
    FontStyle style;
    EXPECT_TRUE(readStyle(*command.spec().getSubComObj(""), style)) << test.list;
    EXPECT_EQ(written(style), test.style) << test.list;
  }
}

TEST(PointsOfUnit, KnowsThreeUnitsByTheirKeywords) {
  const struct {
    const char* unit;
    std::optional<double> points;
  } cases[] = {
      {"CENTIMETERS", 28.3464567}, {"INCHES", 72.0},       {"POINTS", 1.0},   {"inches", 72.0},
      {"PERCENT", std::nullopt},   {"INCH", std::nullopt}, {"", std::nullopt}};
  for (const auto& test : cases) EXPECT_EQ(pointsOfUnit(test.unit), test.points) << test.unit;
}

}  // namespace
}  // namespace vornwout
