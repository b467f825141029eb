// Every operation of ParserMessage: what reaches the sinks, and the text with and without the last
// argument.
#include "platform/message/parser_message.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/parser/command_names.h"
#include "platform/text/encoding.h"
#include "tests/support/hostile_size.h"
#include "tests/support/parsed_command.h"
#include "tests/support/recording_sink.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

struct OperationCase {
  const char* operation;
  std::function<void(const ParserMessage&)> call;
  std::vector<std::string> arguments;
  const char* text;
  MessageSeverity severity = MessageSeverity::kError;
};

void PrintTo(const OperationCase& row, std::ostream* out) { *out << row.text; }

class Operation : public testing::TestWithParam<OperationCase> {};

TEST_P(Operation, SendsOneRecord) {
  RecordingSink sink;
  const ParserMessage messages;
  GetParam().call(messages);
  ASSERT_THAT(sink.parserMessages, SizeIs(1));
  const ParserMessageRecord& record = sink.parserMessages[0];
  EXPECT_EQ(record.operation, GetParam().operation);
  EXPECT_THAT(record.arguments, ElementsAreArray(GetParam().arguments));
  EXPECT_EQ(record.text, GetParam().text);
  EXPECT_EQ(record.severity, GetParam().severity);
  EXPECT_EQ(record.messageTemplate, "");
  EXPECT_EQ(record.place, SourcePlace{});
  EXPECT_EQ(messages.errorCount(), GetParam().severity == MessageSeverity::kError ? 1 : 0);
}

const OperationCase kOperationCases[] = {
    {"WrongValueType",
     [](const auto& m) { m.WrongValueType("OUTFILE", "\"a b\""); },
     {"OUTFILE", "\"a b\""},
     "The value of OUTFILE is missing or not of the type that it takes (\"a b\")."},
    {"WrongValueType",
     [](const auto& m) { m.WrongValueType("NAME", ""); },
     {"NAME", ""},
     "The value of NAME is missing, given more than once or not of the type that it takes."},
    {"InvalidParam",
     [](const auto& m) { m.InvalidParam("SIZE", "TABLE"); },
     {"SIZE", "TABLE"},
     "What is written for SIZE in TABLE is not valid."},
    {"InvalidParam",
     [](const auto& m) { m.InvalidParam("SIZE", ""); },
     {"SIZE", ""},
     "SIZE is not valid here."},
    {"InvalidParamValue",
     [](const auto& m) { m.InvalidParamValue("x", "EXCEPT", "SELECT"); },
     {"x", "EXCEPT", "SELECT"},
     "\"x\" is not a valid value for EXCEPT in SELECT."},
    {"InvalidParamValue",
     [](const auto& m) { m.InvalidParamValue("", "EXCEPT", ""); },
     {"", "EXCEPT", ""},
     "\"\" is not a valid value for EXCEPT."},
    {"IgnoredParamValue",
     [](const auto& m) { m.IgnoredParamValue("COLOR", "", "Black"); },
     {"COLOR", "", "Black"},
     "The value \"Black\" of COLOR is not known and is ignored.",
     MessageSeverity::kWarning},
    {"IgnoredParamValue",
     [](const auto& m) { m.IgnoredParamValue("COLOR", "LINE", ""); },
     {"COLOR", "LINE", ""},
     "The value of COLOR is not known and is ignored.",
     MessageSeverity::kWarning},
    {"FileNameInvalid",
     [](const auto& m) { m.FileNameInvalid("a.qtt"); },
     {"a.qtt"},
     "The file \"a.qtt\" does not exist or cannot be read."},
    {"FileNameInvalid",
     [](const auto& m) { m.FileNameInvalid(""); },
     {""},
     "A file name is empty."},
    {"ParamValueBreakBdry",
     [](const auto& m) { m.ParamValueBreakBdry(9.5, 10, 1000, "WIDTH", "LINE"); },
     {"9.5", "10", "1000", "WIDTH", "LINE"},
     "The value 9.5 of WIDTH in LINE lies outside the bounds 10 to 1000."},
    {"ParamValueBreakBdry",
     [](const auto& m) { m.ParamValueBreakBdry(9, 10, 1000, "WIDTH", ""); },
     {"9", "10", "1000", "WIDTH", ""},
     "The value 9 of WIDTH lies outside the bounds 10 to 1000."},
    {"ParamValueBreakBdry",
     [](const auto& m) { m.ParamValueBreakBdry(1234567, -1e6, 0.1, "WIDTH", ""); },
     {"1234567", "-1000000", "0.1", "WIDTH", ""},
     "The value 1234567 of WIDTH lies outside the bounds -1000000 to 0.1."},
    {"ParamValueBreakBdry",
     [](const auto& m) { m.ParamValueBreakBdry(0.30000000000000004, -0.0, 1e300, "WIDTH", ""); },
     {"0.30000000000000004", "0", "1e+300", "WIDTH", ""},
     "The value 0.30000000000000004 of WIDTH lies outside the bounds 0 to 1e+300."},
    {"ParamValueBreakBdry",
     [](const auto& m) {
       m.ParamValueBreakBdry("123456789012345678901234567890", 10, 1000, "WIDTH", "");
     },
     {"123456789012345678901234567890", "10", "1000", "WIDTH", ""},
     "The value 123456789012345678901234567890 of WIDTH lies outside the bounds 10 to 1000."},
    {"ParamRequiredForSubCom",
     [](const auto& m) { m.ParamRequiredForSubCom("SELECT", "CELLS"); },
     {"SELECT", "CELLS"},
     "The keyword SELECT is required in the subcommand CELLS."},
    {"ParamRequiredForSubCom",
     [](const auto& m) { m.ParamRequiredForSubCom("FILE", ""); },
     {"FILE", ""},
     "The keyword FILE is required."},
    {"ParamNoSubCom",
     [](const auto& m) { m.ParamNoSubCom("TIP"); },
     {"TIP"},
     "TIP does not belong here."},
    {"ParamNeedParam",
     [](const auto& m) { m.ParamNeedParam("SHEET", "OPERATION", "MODIFY"); },
     {"SHEET", "OPERATION", "MODIFY"},
     "The keyword SHEET is required when OPERATION is MODIFY."},
    {"ParamNeedParam",
     [](const auto& m) { m.ParamNeedParam("SHEET", "OPERATION", ""); },
     {"SHEET", "OPERATION", ""},
     "The keyword SHEET is required with OPERATION."},
    {"ParamNeedInteger",
     [](const auto& m) { m.ParamNeedInteger("TOP", "CELLS"); },
     {"TOP", "CELLS"},
     "TOP in CELLS needs an integer within its bounds."},
    {"ParamNeedInteger",
     [](const auto& m) { m.ParamNeedInteger("TOP", ""); },
     {"TOP", ""},
     "TOP needs an integer within its bounds."},
    {"ParamNeedIntegerList",
     [](const auto& m) { m.ParamNeedIntegerList("IF"); },
     {"IF"},
     "A list of integers is needed in IF."},
    {"ParamNeedIntegerList",
     [](const auto& m) { m.ParamNeedIntegerList("POSITION", "CELLS"); },
     {"POSITION", "CELLS"},
     "POSITION in CELLS needs a list of integers."},
    {"ParamNeedIntegerList",
     [](const auto& m) { m.ParamNeedIntegerList("POSITION", ""); },
     {"POSITION", ""},
     "A list of integers is needed in POSITION."},
    {"ParamNeedNumber",
     [](const auto& m) { m.ParamNeedNumber("FONTSIZE", "CELLS"); },
     {"FONTSIZE", "CELLS"},
     "FONTSIZE in CELLS needs a number within its bounds."},
    {"ParamNeedNumber",
     [](const auto& m) { m.ParamNeedNumber("FONTSIZE", ""); },
     {"FONTSIZE", ""},
     "FONTSIZE needs a number within its bounds."},
    {"ParamExclusive",
     [](const auto& m) { m.ParamExclusive("A", "B", "SORT"); },
     {"A", "B", "SORT"},
     "A and B exclude each other in SORT."},
    {"ParamExclusive",
     [](const auto& m) { m.ParamExclusive("A", "B", ""); },
     {"A", "B", ""},
     "A and B exclude each other."},
    {"ParenRequired",
     [](const auto& m) { m.ParenRequired("URL"); },
     {"URL"},
     "URL needs its values in parentheses."},
    {"SquareBracketRequired",
     [](const auto& m) { m.SquareBracketRequired("SELECT", "CELLS"); },
     {"SELECT", "CELLS"},
     "SELECT in CELLS needs its values in square brackets."},
    {"SquareBracketRequired",
     [](const auto& m) { m.SquareBracketRequired("SELECT", ""); },
     {"SELECT", ""},
     "SELECT needs its values in square brackets."},
    {"SubComRequired",
     [](const auto& m) {
       m.SubComRequired({"DOC", "PDF"});
     },
     {"DOC", "PDF"},
     "One of these subcommands is required: DOC, PDF."},
    {"SubComRequired",
     [](const auto& m) { m.SubComRequired({"DOC"}); },
     {"DOC"},
     "The subcommand DOC is required."},
};

INSTANTIATE_TEST_SUITE_P(ParserMessage, Operation, testing::ValuesIn(kOperationCases));

TEST(GenericOperations, SendTheirTemplateTheirArgumentsAndTheFilledText) {
  RecordingSink sink;
  const ParserMessage messages;
  messages.GenericError("Value ^1 breaks ^2 or ^3 for ^4...", "5", "0", "200PERCENTSIZE");
  messages.GenericWarning("^1 was specified, but \"^2\" is ^1.", std::string("A"), "b^1");
  messages.GenericError("No argument");
  ASSERT_THAT(sink.parserMessages, SizeIs(3));
  EXPECT_EQ(sink.parserMessages[0].operation, "GenericError");
  EXPECT_EQ(sink.parserMessages[0].severity, MessageSeverity::kError);
  EXPECT_EQ(sink.parserMessages[0].messageTemplate, "Value ^1 breaks ^2 or ^3 for ^4...");
  EXPECT_THAT(sink.parserMessages[0].arguments, ElementsAre("5", "0", "200PERCENTSIZE"));
  EXPECT_EQ(sink.parserMessages[0].text, "Value 5 breaks 0 or 200PERCENTSIZE for ...");
  EXPECT_EQ(sink.parserMessages[1].operation, "GenericWarning");
  EXPECT_EQ(sink.parserMessages[1].severity, MessageSeverity::kWarning);
  EXPECT_EQ(sink.parserMessages[1].text, "A was specified, but \"b^1\" is A.");
  EXPECT_THAT(sink.parserMessages[2].arguments, IsEmpty());
  EXPECT_EQ(sink.parserMessages[2].text, "No argument");
  EXPECT_EQ(messages.errorCount(), 2);
}

TEST(Messages, AreConvertedFromTheCurrentEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  RecordingSink sink;
  const ParserMessage messages;
  messages.ParenRequired("\x95\x5C");
  messages.GenericError("\x95\x5C: ^1", "\xFF");
  messages.report(MessageKey::kUnknownSubCom, {"X"}, std::nullopt, "表?");
  EXPECT_EQ(sink.parserMessages[0].text, "表 needs its values in parentheses.");
  EXPECT_EQ(sink.parserMessages[1].messageTemplate, "表: ^1");
  EXPECT_EQ(sink.parserMessages[1].text, "表: \xEF\xBF\xBD");
  EXPECT_EQ(sink.parserMessages[2].text, "There is no subcommand X in this command. 表?");
}

TEST(Messages, HideWhatIsSecretAndCarryItForWhoMaySeeIt) {
  const TokenizedText text("GO PASSWORD='s3cret'.");
  const CurrentCommand current(text.command(), 1);
  RecordingSink sink;
  const ParserMessage messages;
  const MessageArgument secret =
      MessageArgument::ofToken(text.command(), text.command().tokens()[3]);
  messages.InvalidParamValue(secret, "s3cret", "");
  messages.GenericError("^1 and ^2", secret, "x");
  ASSERT_THAT(sink.parserMessages, SizeIs(2));
  const ParserMessageRecord& named = sink.parserMessages[0];
  EXPECT_THAT(named.arguments, ElementsAre("***", "s3cret", "")) << "a name is never hidden";
  EXPECT_EQ(named.text, "\"***\" is not a valid value for s3cret.");
  EXPECT_EQ(named.briefText(), named.text);
  ASSERT_TRUE(named.uncovered);
  EXPECT_THAT(named.uncovered->arguments, ElementsAre("s3cret", "s3cret", ""));
  EXPECT_EQ(named.uncovered->text, "\"s3cret\" is not a valid value for s3cret.");
  EXPECT_EQ(sink.parserMessages[1].text, "*** and x");
  ASSERT_TRUE(sink.parserMessages[1].uncovered);
  EXPECT_EQ(sink.parserMessages[1].uncovered->text, "s3cret and x");
}

TEST(Messages, CarryNothingUncoveredWhereNothingIsSecret) {
  RecordingSink sink;
  const ParserMessage messages;
  messages.WrongValueType("NAME", "a");
  ASSERT_THAT(sink.parserMessages, SizeIs(1));
  EXPECT_FALSE(sink.parserMessages[0].uncovered);
}

TEST(Messages, HaveATextWithLongArgumentsShortened) {
  RecordingSink sink;
  const ParserMessage messages;
  const std::string name(100, 'a');
  const std::string shortName = std::string(28, 'a') + " … 44 characters … " + std::string(28, 'a');
  messages.ParenRequired(name);
  messages.SubComRequired({name, "B"});
  messages.report(MessageKey::kUnknownSubCom, {name}, std::nullopt, "A hint.");
  ASSERT_THAT(sink.parserMessages, SizeIs(3));
  EXPECT_EQ(sink.parserMessages[0].text, name + " needs its values in parentheses.");
  EXPECT_EQ(sink.parserMessages[0].briefText(), shortName + " needs its values in parentheses.");
  EXPECT_THAT(sink.parserMessages[0].arguments, ElementsAre(name));
  EXPECT_EQ(sink.parserMessages[1].briefText(),
            "One of these subcommands is required: " + shortName + ", B.");
  EXPECT_EQ(sink.parserMessages[2].briefText(),
            "There is no subcommand " + shortName + " in this command. A hint.");
}

TEST(Messages, AboutManySecretsAreMadeInLinearTime) {
  std::string source = "GO";
  for (int i = 0; i < kHostileCount; ++i) source += " PASSWORD='s'";
  const TokenizedText text(source);
  const CurrentCommand current(text.command(), 1);
  RecordingSink sink;
  const ParserMessage messages;
  const auto start = std::chrono::steady_clock::now();
  for (const Token& token : text.command().tokens()) {
    messages.InvalidParamValue(MessageArgument::ofToken(text.command(), token), "A", "");
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(sink.parserMessages.back().text, "\"***\" is not a valid value for A.");
}

TEST(MessagePlace, IsThatOfWhatWasReadLastUnlessOneIsNamed) {
  const TokenizedText text("GO\n NAME=a.");
  CurrentCommand current(text.command(), 1);
  RecordingSink sink;
  const ParserMessage messages;
  messages.WrongValueType("NAME", "");
  current.noteRead(&text.command().tokens()[3]);
  messages.WrongValueType("NAME", "");
  messages.GenericWarning("x");
  messages.report(MessageKey::kUnknownParam, {"NAME", ""}, SourceSpot{{7, 8}, 3, 4}, "A hint.");
  ASSERT_THAT(sink.parserMessages, SizeIs(4));
  EXPECT_EQ(sink.parserMessages[0].place, (SourcePlace{1, 1}));
  EXPECT_EQ(sink.parserMessages[1].place, (SourcePlace{2, 7}));
  EXPECT_EQ(sink.parserMessages[2].place, (SourcePlace{2, 7}));
  EXPECT_EQ(sink.parserMessages[1].offset, 9U);
  EXPECT_EQ(sink.parserMessages[1].length, 1U);
  EXPECT_EQ(sink.parserMessages[3].place, (SourcePlace{7, 8}));
  EXPECT_EQ(sink.parserMessages[3].offset, 3U);
  EXPECT_EQ(sink.parserMessages[3].length, 4U);
  EXPECT_EQ(sink.parserMessages[3].text, "There is no keyword NAME in this command. A hint.");
}

TEST(MessageRemedy, IsThatOfTheRowAndTheKeywordUnlessAHintTakesItsPlace) {
  RecordingSink sink;
  const ParserMessage messages;
  messages.ParenRequired("URL");
  messages.WrongValueType("NAME", "");
  messages.WrongValueType("TEXT", "");
  messages.GenericError("Text.");
  messages.report(MessageKey::kInvalidParamValue, {"*", "NAME", ""}, std::nullopt, "A hint.");
  ASSERT_THAT(sink.parserMessages, SizeIs(5));
  EXPECT_EQ(sink.parserMessages[0].remedy, "Put the values between ( and ).");
  EXPECT_TRUE(sink.parserMessages[1].remedy.starts_with("A document name is one word"));
  EXPECT_EQ(sink.parserMessages[2].remedy, "A text of several words stands in quotes.");
  EXPECT_EQ(sink.parserMessages[3].remedy, "");
  EXPECT_EQ(sink.parserMessages[4].remedy, "");
}

TEST(WrongValueType, SaysWhenAnotherCommandSeemsToStandInTheValue) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  const TokenizedText text("GO TEXT='a'\n\tOUTPUT NEW.");
  const CurrentCommand current(text.command(), 1);
  RecordingSink sink;
  const ParserMessage messages;
  messages.WrongValueType("TEXT", "");
  messages.ParamNoSubCom("X");
  EXPECT_TRUE(sink.parserMessages[0].text.ends_with(
      " Line 2 begins a command: does the one before it lack its period?"));
  EXPECT_EQ(sink.parserMessages[1].text, "X does not belong here.");
}

TEST(WrongValueType, InALongCommandLooksForAnotherCommandOnce) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  std::string source = "GO";
  while (source.size() < kHostileSize) source += "\na";
  const TokenizedText text(source);
  const CurrentCommand current(text.command(), 1);
  const ParserMessage messages;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 20'000; ++i) messages.WrongValueType("TEXT", "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(messages.errorCount(), 20'000);
}

TEST(Messages, ReachEverySinkAndNoneThatIsSuspended) {
  RecordingSink first;
  RecordingSink second;
  const ParserMessage messages;
  messages.ParenRequired("A");
  {
    const SinkSuspension suspended;
    messages.ParenRequired("B");
  }
  EXPECT_THAT(first.parserMessages, SizeIs(1));
  EXPECT_THAT(second.parserMessages, SizeIs(1));
}

TEST(CurrentParserMessage, IsTheInnermostThatLives) {
  EXPECT_EQ(ParserMessage::current(), nullptr);
  ParserMessage outer;
  outer.SetCommandName("OUTPUT NEW");
  outer.SetProcedureTitle("Output New");
  {
    const ParserMessage inner;
    EXPECT_EQ(ParserMessage::current(), &inner);
    EXPECT_EQ(inner.commandName(), "");
  }
  EXPECT_EQ(ParserMessage::current(), &outer);
  EXPECT_EQ(outer.commandName(), "OUTPUT NEW");
  EXPECT_EQ(outer.procedureTitle(), "Output New");
}

}  // namespace
}  // namespace vornwout
