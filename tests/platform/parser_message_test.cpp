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

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

class MessageSink : public OutputSink {
 public:
  void parserMessage(const ParserMessageRecord& record) override { records.push_back(record); }
  std::vector<ParserMessageRecord> records;

 private:
  SinkRegistration registration_{*this};
};

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
  MessageSink sink;
  const ParserMessage messages;
  GetParam().call(messages);
  ASSERT_THAT(sink.records, SizeIs(1));
  const ParserMessageRecord& record = sink.records[0];
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
  MessageSink sink;
  const ParserMessage messages;
  messages.GenericError("Value ^1 breaks ^2 or ^3 for ^4...", "5", "0", "200PERCENTSIZE");
  messages.GenericWarning("^1 was specified, but \"^2\" is ^1.", std::string("A"), "b^1");
  messages.GenericError("No argument");
  ASSERT_THAT(sink.records, SizeIs(3));
  EXPECT_EQ(sink.records[0].operation, "GenericError");
  EXPECT_EQ(sink.records[0].severity, MessageSeverity::kError);
  EXPECT_EQ(sink.records[0].messageTemplate, "Value ^1 breaks ^2 or ^3 for ^4...");
  EXPECT_THAT(sink.records[0].arguments, ElementsAre("5", "0", "200PERCENTSIZE"));
  EXPECT_EQ(sink.records[0].text, "Value 5 breaks 0 or 200PERCENTSIZE for ...");
  EXPECT_EQ(sink.records[1].operation, "GenericWarning");
  EXPECT_EQ(sink.records[1].severity, MessageSeverity::kWarning);
  EXPECT_EQ(sink.records[1].text, "A was specified, but \"b^1\" is A.");
  EXPECT_THAT(sink.records[2].arguments, IsEmpty());
  EXPECT_EQ(sink.records[2].text, "No argument");
  EXPECT_EQ(messages.errorCount(), 2);
}

TEST(Messages, AreConvertedFromTheCurrentEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  MessageSink sink;
  const ParserMessage messages;
  messages.ParenRequired("\x95\x5C");
  messages.GenericError("\x95\x5C: ^1", "\xFF");
  messages.report(MessageKey::kUnknownSubCom, {"X"}, std::nullopt, "\x95\x5C?");
  EXPECT_EQ(sink.records[0].text, "表 needs its values in parentheses.");
  EXPECT_EQ(sink.records[1].messageTemplate, "表: ^1");
  EXPECT_EQ(sink.records[1].text, "表: \xEF\xBF\xBD");
  EXPECT_EQ(sink.records[2].text, "There is no subcommand X in this command. 表?");
}

TEST(MessagePlace, IsThatOfWhatWasReadLastUnlessOneIsNamed) {
  const TokenizedText text("GO\n NAME=a.");
  CurrentCommand current(text.command(), 1);
  MessageSink sink;
  const ParserMessage messages;
  messages.WrongValueType("NAME", "");
  current.noteRead(&text.command().tokens()[3]);
  messages.WrongValueType("NAME", "");
  messages.GenericWarning("x");
  messages.report(MessageKey::kUnknownParam, {"NAME", ""}, SourceSpot{{7, 8}, 3, 4}, "A hint.");
  ASSERT_THAT(sink.records, SizeIs(4));
  EXPECT_EQ(sink.records[0].place, (SourcePlace{1, 1}));
  EXPECT_EQ(sink.records[1].place, (SourcePlace{2, 7}));
  EXPECT_EQ(sink.records[2].place, (SourcePlace{2, 7}));
  EXPECT_EQ(sink.records[1].offset, 9U);
  EXPECT_EQ(sink.records[1].length, 1U);
  EXPECT_EQ(sink.records[3].place, (SourcePlace{7, 8}));
  EXPECT_EQ(sink.records[3].offset, 3U);
  EXPECT_EQ(sink.records[3].length, 4U);
  EXPECT_EQ(sink.records[3].text, "There is no keyword NAME in this command. A hint.");
}

TEST(MessageRemedy, IsThatOfTheRowAndTheKeywordUnlessAHintTakesItsPlace) {
  MessageSink sink;
  const ParserMessage messages;
  messages.ParenRequired("URL");
  messages.WrongValueType("NAME", "");
  messages.WrongValueType("TEXT", "");
  messages.GenericError("Text.");
  messages.report(MessageKey::kInvalidParamValue, {"*", "NAME", ""}, std::nullopt, "A hint.");
  ASSERT_THAT(sink.records, SizeIs(5));
  EXPECT_EQ(sink.records[0].remedy, "Put the values between ( and ).");
  EXPECT_TRUE(sink.records[1].remedy.starts_with("A document name is one word"));
  EXPECT_EQ(sink.records[2].remedy, "A text of several words stands in quotes.");
  EXPECT_EQ(sink.records[3].remedy, "");
  EXPECT_EQ(sink.records[4].remedy, "");
}

TEST(WrongValueType, SaysWhenAnotherCommandSeemsToStandInTheValue) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  const TokenizedText text("GO TEXT='a'\n\tOUTPUT NEW.");
  const CurrentCommand current(text.command(), 1);
  MessageSink sink;
  const ParserMessage messages;
  messages.WrongValueType("TEXT", "");
  messages.ParamNoSubCom("X");
  EXPECT_TRUE(sink.records[0].text.ends_with(
      " Line 2 begins a command: does the one before it lack its period?"));
  EXPECT_EQ(sink.records[1].text, "X does not belong here.");
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
  MessageSink first;
  MessageSink second;
  const ParserMessage messages;
  messages.ParenRequired("A");
  {
    const SinkSuspension suspended;
    messages.ParenRequired("B");
  }
  EXPECT_THAT(first.records, SizeIs(1));
  EXPECT_THAT(second.records, SizeIs(1));
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
