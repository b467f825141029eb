// OUTPUT COMMENT's grammar, and how its values are read and checked.
#include "libvornwout/commands/output_comment_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/parser/grammar_capture.h"
#include "platform/parser/universal_parser.h"
#include "platform/text/encoding.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputCommentGrammar, DeclaresTheCommandsKeywordsAndThoseOfALine) {
  const CommandDescriptor grammar = grammarOf(outcomnt_);
  EXPECT_EQ(grammar.title(), "Output Comment");
  ASSERT_EQ(grammar.subcommands().size(), 2U);
  std::vector<std::string> declared;
  for (const SubComDescriptor& subcommand : grammar.subcommands()) {
    EXPECT_EQ(subcommand.spec(), 1);
    EXPECT_FALSE(subcommand.required());
    EXPECT_EQ(subcommand.repeatable(), subcommand.name() == "LINE");
    for (const ParamDescriptor& param : subcommand.params()) {
      EXPECT_FALSE(param.required());
      EXPECT_TRUE(param.standard());
      EXPECT_EQ(param.brackets(), 0);
      declared.push_back(subcommand.name() + "/" + param.name() + " " +
                         std::to_string(param.spec()));
      if (param.name() == "BOLD") {
        EXPECT_THAT(param.values(), ElementsAre("YES", "NO", "TRUE", "FALSE"));
      }
    }
  }
  EXPECT_THAT(declared,
              ElementsAre("/COLOR 2", "/BGCOLOR 2", "/WIDTH 7", "/BOLD 3", "/TEXT 2", "LINE/TEXT 2",
                          "LINE/COLOR 2", "LINE/BGCOLOR 2", "LINE/BOLD 3"));
}

/// What the two classes made of a command.
struct Read {
  explicit Read(const std::string& text) {
    Tokenizer tokenizer(text);
    TokenizedCommand command;
    EXPECT_TRUE(tokenizer.next(command));
    const SinkRegistration registration(sink);
    const CurrentCommand current(command, 2);
    const ParserMessage messages;
    CommandSpec spec;
    CommandDescriptor descriptor("OUTPUT COMMENT", "Output Comment");
    OutputCommentGlobalData global(descriptor);
    OutputCommentLineData line(descriptor);
    const VORN_TokenSequence tokens(true);
    UniversalParser parser(tokens, spec, descriptor);
    EXPECT_EQ(parser.getCommandSpecifications(), 0) << text;
    globalValid = global.populateSpecification(spec, messages, lines);
    linesValid = line.populateSpecification(spec, messages, lines);
    textColor = global.textColor();
    backgroundColor = global.backgroundColor();
    bold = global.bold();
    width = global.width();
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> all;
    for (const lineInfo& line : lines) all.push_back(line.text);
    return all;
  }

  CommandRun sink;
  bool globalValid = false;
  bool linesValid = false;
  std::vector<lineInfo> lines;
  std::string textColor;
  std::string backgroundColor;
  bool bold = false;
  std::optional<int> width;
};

TEST(OutputCommentData, OfNothingIsNothing) {
  const Read read("OUTPUT COMMENT.");
  EXPECT_TRUE(read.globalValid);
  EXPECT_TRUE(read.linesValid);
  EXPECT_THAT(read.lines, IsEmpty());
  EXPECT_EQ(read.textColor, "");
  EXPECT_EQ(read.backgroundColor, "");
  EXPECT_FALSE(read.bold);
  EXPECT_EQ(read.width, std::nullopt);
}

TEST(OutputCommentData, PutsTheCommandsTextFirstAndLinesInTheirOrder) {
  const Read read(
      "OUTPUT COMMENT COLOR=red TEXT='first' /LINE TEXT='second' COLOR=blue BOLD=YES /LINE "
      "/LINE BGCOLOR=\"#00ff00\" BOLD=NO TEXT=fourth.");
  EXPECT_THAT(read.texts(), ElementsAre("first", "second", "", "fourth"));
  EXPECT_EQ(read.textColor, "red");
  EXPECT_EQ(read.lines[0].textColor, "");
  EXPECT_FALSE(read.lines[0].boldGiven);
  EXPECT_EQ(read.lines[1].textColor, "blue");
  EXPECT_EQ(read.lines[1].backgroundColor, "");
  EXPECT_TRUE(read.lines[1].boldGiven);
  EXPECT_TRUE(read.lines[1].bold);
  EXPECT_FALSE(read.lines[2].boldGiven);
  EXPECT_EQ(read.lines[3].backgroundColor, "#00ff00");
  EXPECT_TRUE(read.lines[3].boldGiven);
  EXPECT_FALSE(read.lines[3].bold);
}

TEST(OutputCommentData, TakesAnEmptyQuotedTextAsGiven) {
  EXPECT_THAT(Read("OUTPUT COMMENT TEXT=''.").texts(), ElementsAre(""));
  EXPECT_THAT(Read("OUTPUT COMMENT COLOR=red /LINE TEXT='a'.").texts(), ElementsAre("a"));
}

TEST(OutputCommentData, ExpandsDateTokensInEveryText) {
  const Read read("OUTPUT COMMENT TEXT='at )TIME' /LINE TEXT='on )SDATE.' /LINE TEXT=')time'.");
  ASSERT_EQ(read.lines.size(), 3U);
  EXPECT_THAT(read.lines[0].text, testing::MatchesRegex("at [0-9]+:[0-9][0-9]:[0-9][0-9]"));
  EXPECT_THAT(read.lines[1].text, testing::MatchesRegex("on [0-9]+/[0-9]+/[0-9]+."));
  EXPECT_EQ(read.lines[2].text, ")time");
}

TEST(OutputCommentData, RefusesATextThatIsNotOneToken) {
  for (const char* text :
       {"OUTPUT COMMENT TEXT.", "OUTPUT COMMENT TEXT='a' 'b'.", "OUTPUT COMMENT TEXT=['a']."}) {
    const Read read(text);
    EXPECT_FALSE(read.globalValid) << text;
    EXPECT_TRUE(read.linesValid) << text;
    EXPECT_THAT(read.sink.parserCalls(), ElementsAre("WrongValueType(TEXT, )")) << text;
  }
  const Read line("OUTPUT COMMENT /LINE TEXT='a' 'b' /LINE TEXT.");
  EXPECT_TRUE(line.globalValid);
  EXPECT_FALSE(line.linesValid);
  EXPECT_THAT(line.sink.parserCalls(),
              ElementsAre("WrongValueType(TEXT, )", "WrongValueType(TEXT, )"));
}

struct WidthCase {
  const char* value;
  int width;            ///< 0 when refused
  const char* message;  ///< of the refusal
};

TEST(OutputCommentData, TakesAWidthFromTenToAThousand) {
  constexpr WidthCase kCases[] = {
      {"10", 10, ""},
      {"1000", 1000, ""},
      {"+200", 200, ""},
      {"9", 0, "ParamValueBreakBdry(9, 10, 1000, WIDTH, )"},
      {"1001", 0, "ParamValueBreakBdry(1001, 10, 1000, WIDTH, )"},
      {"0", 0, "ParamValueBreakBdry(0, 10, 1000, WIDTH, )"},
      {"-5", 0, "ParamValueBreakBdry(-5, 10, 1000, WIDTH, )"},
      {"10.5", 0, "ParamNeedInteger(WIDTH, )"},
      {"1234567", 0, "ParamValueBreakBdry(1234567, 10, 1000, WIDTH, )"},
      {"2147483647", 0, "ParamValueBreakBdry(2147483647, 10, 1000, WIDTH, )"},
      {"2147483648", 0, "ParamValueBreakBdry(2147483648, 10, 1000, WIDTH, )"},
      {"-2147483649", 0, "ParamValueBreakBdry(-2147483649, 10, 1000, WIDTH, )"},
      {"123456789012345678901234567890", 0,
       "ParamValueBreakBdry(123456789012345678901234567890, 10, 1000, WIDTH, )"},
      {"1.5", 0, "ParamNeedInteger(WIDTH, )"},
      {"1E20", 0, "ParamNeedInteger(WIDTH, )"},
      {"wide", 0, "ParamNeedInteger(WIDTH, )"},
      {"'100'", 0, "ParamNeedInteger(WIDTH, )"},
  };
  for (const WidthCase& test : kCases) {
    const Read read(std::string("OUTPUT COMMENT TEXT='a' WIDTH=") + test.value + ".");
    EXPECT_EQ(read.globalValid, test.width != 0) << test.value;
    EXPECT_EQ(read.width.value_or(0), test.width) << test.value;
    if (test.width == 0) {
      EXPECT_THAT(read.sink.parserCalls(), ElementsAre(test.message)) << test.value;
    } else {
      EXPECT_THAT(read.sink.parserCalls(), IsEmpty()) << test.value;
    }
  }
}

TEST(OutputCommentData, TakesEveryWordForBoldWithoutRegardToCase) {
  for (const auto& [value, bold] :
       {std::pair{"YES", true}, std::pair{"yes", true}, std::pair{"TRUE", true},
        std::pair{"'True'", true}, std::pair{"NO", false}, std::pair{"False", false}}) {
    const std::string text = std::string("OUTPUT COMMENT BOLD=") + value;
    EXPECT_EQ(Read(text + ".").bold, bold) << value;
    const Read read("OUTPUT COMMENT /LINE BOLD=" + std::string(value) + ".");
    EXPECT_EQ(read.lines.at(0).bold, bold) << value;
    EXPECT_TRUE(read.lines.at(0).boldGiven) << value;
  }
}

TEST(OutputCommentData, WarnsOfAColourItDoesNotKnowAndGoesOn) {
  const Read read(
      "OUTPUT COMMENT TEXT='a' COLOR=Black BGCOLOR='#zzzzzz' /LINE COLOR=RGB(1 2 3) BGCOLOR.");
  EXPECT_TRUE(read.globalValid);
  EXPECT_TRUE(read.linesValid);
  EXPECT_EQ(read.textColor, "");
  EXPECT_EQ(read.backgroundColor, "");
  EXPECT_EQ(read.lines.at(1).textColor, "");
  EXPECT_THAT(
      read.sink.parserCalls(),
      ElementsAre("IgnoredParamValue(COLOR, , Black)", "IgnoredParamValue(BGCOLOR, , #zzzzzz)",
                  "IgnoredParamValue(COLOR, , RGB(1 2 3))", "IgnoredParamValue(BGCOLOR, , )"));
  for (const ParserMessageRecord& message : read.sink.parserMessages) {
    EXPECT_EQ(message.severity, MessageSeverity::kWarning);
  }
}

TEST(OutputCommentData, TakesOnlyOneTokenForAColour) {
  for (const char* color : {"#1 2345", "# 12345", "#'1234'", "#12-345"}) {
    const Read read("OUTPUT COMMENT TEXT='a' COLOR=" + std::string(color) + ".");
    EXPECT_EQ(read.textColor, "") << color;
    EXPECT_THAT(read.sink.parserCalls(),
                ElementsAre("IgnoredParamValue(COLOR, , " + std::string(color) + ")"));
  }
  EXPECT_EQ(Read("OUTPUT COMMENT TEXT='a' COLOR='#1 2345'.").textColor, "#1 2345");
}

TEST(OutputCommentData, ReportsItsValuesInTheirSettledOrder) {
  const Read read(
      "OUTPUT COMMENT BGCOLOR=x COLOR=y WIDTH=1 TEXT=a b /LINE BGCOLOR=x COLOR=y TEXT=a b.");
  EXPECT_THAT(read.sink.parserCalls(),
              ElementsAre("WrongValueType(TEXT, )", "ParamValueBreakBdry(1, 10, 1000, WIDTH, )",
                          "IgnoredParamValue(COLOR, , y)", "IgnoredParamValue(BGCOLOR, , x)",
                          "WrongValueType(TEXT, )", "IgnoredParamValue(COLOR, , y)",
                          "IgnoredParamValue(BGCOLOR, , x)"));
}

TEST(IsCommentColor, TakesTheTwentySixNamesExactly) {
  constexpr const char* kNames[] = {
      "black",    "BLACK",   "blue",   "BLUE",   "cyan",  "CYAN",       "DARK_GRAY",
      "darkGray", "gray",    "GRAY",   "green",  "GREEN", "LIGHT_GRAY", "lightGray",
      "magenta",  "MAGENTA", "orange", "ORANGE", "pink",  "PINK",       "red",
      "RED",      "white",   "WHITE",  "yellow", "YELLOW"};
  static_assert(std::size(kNames) == 26);
  for (const char* name : kNames) {
    EXPECT_TRUE(isCommentColor(name)) << name;
    std::string changed = name;
    changed[0] = static_cast<char>(changed[0] ^ 0x20);
    EXPECT_FALSE(isCommentColor(changed)) << changed;
    EXPECT_FALSE(isCommentColor(std::string(name) + " ")) << name;
  }
  for (const char* name :
       {"", "Black", "darkgray", "DARKGRAY", "dark_gray", "LightGray", "grey", "brown"}) {
    EXPECT_FALSE(isCommentColor(name)) << name;
  }
}

TEST(IsCommentColor, KeepsTheLenientTestOfOneHexadecimalDigitInSix) {
  for (const char* value :
       {"#123456", "#abcdef", "#ABCDEF", "#12345z", "#zzzzz0", "#0zzzzz", "#zzfzzz", "#zzzzzA"}) {
    EXPECT_TRUE(isCommentColor(value)) << value;
  }
  for (const char* value : {"#zzzzzz", "#gGhHxX", "#12345", "#1234567", "1234567", "##zzzzz", "#",
                            " #12345", "#      "}) {
    EXPECT_FALSE(isCommentColor(value)) << value;
  }
}

TEST(IsCommentColor, KeepsEveryHexadecimalDigitInEveryPlaceAsTheOneThatSuffices) {
  const auto colorWith = [](char only, std::size_t place) {
    std::string value = "#zzzzzz";
    value[1 + place] = only;
    return value;
  };
  for (std::size_t place = 0; place < 6; ++place) {
    for (const char digit : std::string_view("0123456789abcdefABCDEF")) {
      EXPECT_TRUE(isCommentColor(colorWith(digit, place))) << colorWith(digit, place);
    }
    // The neighbours of the digits in the character set.
    for (const char other : std::string_view("Gg/:@`")) {
      EXPECT_FALSE(isCommentColor(colorWith(other, place))) << colorWith(other, place);
    }
  }
}

TEST(IsCommentColor, CountsCharactersAndLooksInsideNone) {
  EXPECT_TRUE(isCommentColor("#1\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4"));
  EXPECT_FALSE(isCommentColor("#12\xC3\xA4\xC3\xA4"));
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_FALSE(isCommentColor("#\x83\x41\x83\x41\x83\x41"));
  EXPECT_FALSE(isCommentColor("#\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41"));
  EXPECT_TRUE(isCommentColor("#\x83\x41\x83\x41\x83\x41\x83\x41\x83\x41\x41"));
}

}  // namespace
}  // namespace vornwout
