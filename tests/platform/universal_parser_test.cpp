// The parser: the shape of a command, where a value ends, and every error once, with its place.
#include "platform/parser/universal_parser.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/parser/command_names.h"
#include "tests/support/hostile_size.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

ParamDescriptor valueParam(const std::string& name, const std::vector<std::string>& values) {
  ParamDescriptor param(name, UPSpecTypes::kDeclaredValue, false, true);
  for (const std::string& value : values) param.addStringValue(value);
  return param;
}

/// A command with its own keywords, two subcommands (one repeatable) and a group.
CommandDescriptor grammar() {
  CommandDescriptor command("GO");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("NAME", UPSpecTypes::kDeclaredValue, false, true);
  main.addParamDesc("FILE", UPSpecTypes::kRawTokens, false, true);
  main.addParamDesc(valueParam("LOCK", {"YES", "NO", "ALL"}));
  main.addParamDesc("SIZE", UPSpecTypes::kNumber, false, true);
  ParamDescriptor style("STYLE", UPSpecTypes::kDeclaredList, false, true);
  for (const char* value : {"BOLD", "ITALIC", "SIZE"}) style.addStringValue(value);
  main.addParamDesc(style);
  main.addParamDesc("DEBUG", UPSpecTypes::kNoValue, false, true);
  ParamDescriptor sort("SORT", UPSpecTypes::kQualifiers, false, true);
  sort.addQualifDesc({"COLLABEL", UPSpecTypes::kString, false, true});
  main.addParamDesc(sort);
  command.addSubComDesc(main);

  SubComDescriptor line("LINE", UPSpecTypes::kKeywords, false, true);
  line.addParamDesc("TEXT", UPSpecTypes::kRawTokens, false, true);
  command.addSubComDesc(line);
  SubComDescriptor once("ONCE", UPSpecTypes::kKeywords, false, false);
  once.addParamDesc("TEXT", UPSpecTypes::kString, true, true);
  command.addSubComDesc(once);

  GroupComDescriptor group(0, true, "Select command ^1...");
  SubComDescriptor select("SELECT", UPSpecTypes::kKeywordList, true, false);
  for (const char* name : {"ALL", "TABLES", "CHARTS"}) {
    select.addParamDesc(name, UPSpecTypes::kNoValue, false, true);
  }
  ParamDescriptor except("EXCEPT", UPSpecTypes::kDeclaredList, false, true);
  except.setBracketOption(UPSpecTypes::kBracketsOptional);
  except.addStringValue("TABLES");
  except.addStringValue("CHARTS");
  select.addParamDesc(except);
  group.addSubComDesc(select, true);
  SubComDescriptor table("TABLE", UPSpecTypes::kKeywords, false, false);
  table.addParamDesc("FORMAT", UPSpecTypes::kString, false, true);
  group.addSubComDesc(table, false);
  SubComDescriptor cells("CELLS", UPSpecTypes::kKeywords, false, true);
  cells.addParamDesc("FORMAT", UPSpecTypes::kString, false, true);
  group.addSubComDesc(cells, false);
  command.addGroupDesc(group);
  return command;
}

/// A command whose own keyword FILE and subcommand NEEDED are required.
CommandDescriptor strictGrammar() {
  CommandDescriptor command("GO");
  SubComDescriptor main("", UPSpecTypes::kKeywords, true, false);
  main.addParamDesc("FILE", UPSpecTypes::kRawTokens, true, true);
  main.addParamDesc("NAME", UPSpecTypes::kDeclaredValue, false, true);
  command.addSubComDesc(main);
  command.addSubComDesc({"NEEDED", UPSpecTypes::kKeywords, true, false});
  return command;
}

/// A group of which MEMBER is required.
CommandDescriptor strictGroupGrammar() {
  CommandDescriptor command("GO");
  GroupComDescriptor group(0, true, "^1");
  group.addSubComDesc({"LEAD", UPSpecTypes::kKeywords, true, false}, true);
  group.addSubComDesc({"MEMBER", UPSpecTypes::kKeywords, true, false}, false);
  command.addGroupDesc(group);
  return command;
}

CommandDescriptor listGrammar() {
  CommandDescriptor command("GO");
  command.addSubComDesc({"", UPSpecTypes::kTokenList, true, false});
  return command;
}

CommandDescriptor bareGrammar() { return CommandDescriptor("GO"); }

struct ErrorCase {
  const char* name;
  CommandDescriptor (*grammar)();
  std::string arguments;
  std::vector<std::string> reports;
};

void PrintTo(const ErrorCase& row, std::ostream* out) { *out << row.name; }

class CommandErrors : public testing::TestWithParam<ErrorCase> {};

TEST_P(CommandErrors, AreAllReportedOnceWithTheirPlaces) {
  const ParsedCommand parsed(GetParam().grammar(), GetParam().arguments);
  EXPECT_THAT(parsed.reports(), ElementsAreArray(GetParam().reports));
  EXPECT_EQ(parsed.errors(), static_cast<int>(GetParam().reports.size()));
}

const ErrorCase kErrorCases[] = {
    // What is accepted.
    {"NothingAtAll", grammar, ".", {}},
    {"KeywordsInAnyOrderAndCase", grammar, "lock=Yes NaMe=a.", {}},
    {"DeclaredValueInQuotes", grammar, "LOCK=\"no\".", {}},
    {"ReservedWordAsADeclaredValue", grammar, "LOCK=all.", {}},
    {"EqualsSignBehindASubcommand", grammar, "/LINE= TEXT='a'.", {}},
    {"EmptySubcommand", grammar, "/LINE /LINE.", {}},
    {"EmptyGroups", grammar, "/SELECT /SELECT.", {}},
    {"RawKeywordAlone", grammar, "FILE.", {}},
    {"QualifiersKeywordAlone", grammar, "SORT NAME=a.", {}},
    {"ReservedWordAsAKeyword", grammar, "/SELECT ALL.", {}},
    {"MemberOncePerGroup", grammar, "/SELECT /TABLE /SELECT /TABLE.", {}},
    {"RepeatableMember", grammar, "/SELECT /CELLS /CELLS.", {}},
    {"CommandsSubcommandInsideAGroup", grammar, "/SELECT /LINE /TABLE.", {}},
    {"SlashInsideBracketsIsADivision", grammar, "FILE=(a / b) NAME=x.", {}},
    {"KeywordsInsideBracketsAreValues", grammar, "FILE=[NAME = LOCK] NAME=x.", {}},
    {"FreeList", listGrammar, "a = (b / C ] , 'd'.", {}},
    {"EmptyFreeList", listGrammar, ".", {}},
    {"BareCommand", bareGrammar, ".", {}},

    // Names.
    {"UnknownKeyword", grammar, "NAEM=a.", {"UnknownParam(NAEM, )@1:4"}},
    {"UnknownKeywordInASubcommand", grammar, "/LINE TXET='a'.", {"UnknownParam(TXET, LINE)@1:10"}},
    {"UnknownKeywordTakesItsValueWithIt",
     grammar,
     "NAEM=a b (c) NAME=d.",
     {"UnknownParam(NAEM, )@1:4"}},
    {"UnknownKeywordWithoutValue", grammar, "NAEM NAME=d.", {"UnknownParam(NAEM, )@1:4"}},
    {"SeveralUnknownKeywords",
     grammar,
     "NAEM=a LOKC=YES.",
     {"UnknownParam(NAEM, )@1:4", "UnknownParam(LOKC, )@1:11"}},
    {"UnknownKeywordsInAListOfKeywords",
     grammar,
     "/SELECT TABLS CHARTS CHRATS.",
     {"UnknownParam(TABLS, SELECT)@1:12", "UnknownParam(CHRATS, SELECT)@1:25"}},
    {"WordBeforeAnEqualsSignIsAnUnknownKeyword",
     grammar,
     "NAME=a NAEM=b.",
     {"UnknownParam(NAEM, )@1:11"}},
    {"DeclaredValueBeforeAnEqualsSignIsAnUnknownKeyword",
     grammar,
     "STYLE=BOLD ITALIC=1.",
     {"UnknownParam(ITALIC, )@1:15"}},
    {"UnknownSubcommand", grammar, "/LIEN TEXT='a' FOO=1 /LINE.", {"UnknownSubCom(LIEN)@1:5"}},
    {"KeywordWrittenAsASubcommand", grammar, "/NAME=a.", {"UnknownSubCom(NAME)@1:5"}},
    {"SlashWithoutName", grammar, "/ 'x' /LINE.", {"UnknownSubCom()@1:4"}},
    {"SlashAtTheEnd", grammar, "/.", {"UnknownSubCom()@1:4"}},
    {"RunOfSlashes", grammar, "////LINE.", {"UnknownSubCom()@1:4"}},
    {"TokenInABareCommand", bareGrammar, "foo bar.", {"UnexpectedToken(foo, GO)@1:4"}},
    {"SubcommandInABareCommand", bareGrammar, "/X.", {"UnknownSubCom(X)@1:5"}},
    {"StrayToken", grammar, "5 6 NAME=a.", {"UnexpectedToken(5, )@1:4"}},
    {"StrayTokensInAListOfKeywords",
     grammar,
     "/SELECT 5 6 TABLES 'x'.",
     {"UnexpectedToken(5, SELECT)@1:12", "UnexpectedToken(x, SELECT)@1:23"}},
    {"StrayBrackets", grammar, "(NAME=a) NAME=b.", {"UnexpectedToken((, )@1:4"}},

    // Repetition.
    {"KeywordTwice", grammar, "NAME=a name=b.", {"ParamRepeated(NAME, )@1:11"}},
    {"SubcommandTwice", grammar, "/ONCE TEXT=a /ONCE TEXT=b.", {"SubComRepeated(ONCE)@1:18"}},
    {"SubcommandTwiceWithAnErrorInside",
     grammar,
     "/ONCE TEXT=a /ONCE TXET=b TEXT=c.",
     {"SubComRepeated(ONCE)@1:18", "UnknownParam(TXET, ONCE)@1:23"}},
    {"MemberTwiceInAGroup", grammar, "/SELECT /TABLE /TABLE.", {"SubComRepeated(TABLE)@1:20"}},
    {"MemberOutsideAGroup",
     grammar,
     "/TABLE FORMAT=F8 /SELECT.",
     {"SubComNeedsGroup(TABLE, SELECT)@1:5"}},

    // What is missing.
    {"MissingEqualsSign", grammar, "NAME a LOCK=NO.", {"EqualSignRequired(NAME, )@1:4"}},
    {"MissingEqualsSignBehindARawKeyword",
     grammar,
     "FILE 'a' NAME=b.",
     {"EqualSignRequired(FILE, )@1:4"}},
    {"MissingEqualsSignBehindAQualifiersKeyword",
     grammar,
     "SORT COLLABEL('a') NAME=b.",
     {"EqualSignRequired(SORT, )@1:4"}},
    {"MissingEqualsSignBeforeAList",
     grammar,
     "/SELECT ALL EXCEPT TABLES CHARTS.",
     {"EqualSignRequired(EXCEPT, SELECT)@1:16"}},
    {"EveryUnknownWord",
     grammar,
     "FOO BAR baz=1.",
     {"UnknownParam(FOO, )@1:4", "UnknownParam(BAR, )@1:8", "UnknownParam(baz, )@1:12"}},
    {"KeywordAsTheFirstTokenIsTheValue",
     grammar,
     "NAME= LOCK=YES.",
     {"UnexpectedToken(=, NAME)@1:14"}},
    {"MissingValueAtTheEnd", grammar, "LOCK=.", {"ParamValueRequired(LOCK, )@1:4"}},
    {"MissingValueBeforeASubcommand", grammar, "LOCK= /LINE.", {"ParamValueRequired(LOCK, )@1:4"}},
    {"MissingValueBeforeAnUnknownKeyword",
     grammar,
     "LOCK= FOO=1.",
     {"ParamValueRequired(LOCK, )@1:4", "UnknownParam(FOO, )@1:10"}},
    {"MissingEqualsSignAndValue", grammar, "LOCK NAME=a.", {"ParamValueRequired(LOCK, )@1:4"}},
    {"MissingEqualsSignAndValueBeforeAnUnknownKeyword",
     grammar,
     "LOCK FOO=1.",
     {"ParamValueRequired(LOCK, )@1:4", "UnknownParam(FOO, )@1:9"}},
    {"MissingEqualsSignAndValueAtTheEnd", grammar, "LOCK.", {"ParamValueRequired(LOCK, )@1:4"}},
    {"ValueOfAKeywordThatTakesNone", grammar, "DEBUG=YES NAME=a.", {"ParamNoValue(DEBUG, )@1:4"}},
    {"UnknownWordBehindAKeywordThatStandsAlone",
     grammar,
     "DEBUG FOO.",
     {"UnknownParam(FOO, )@1:10"}},
    {"MissingKeywordAndSubcommand",
     strictGrammar,
     "NAME=a.",
     {"ParamRequiredForSubCom(FILE, )@1:1", "SubComRequired(NEEDED)@1:1"}},
    {"MissingKeywordInAnEmptyCommand",
     strictGrammar,
     "/NEEDED.",
     {"ParamRequiredForSubCom(FILE, )@1:1"}},
    {"MissingKeywordInASubcommand", grammar, "/ONCE.", {"ParamRequiredForSubCom(TEXT, ONCE)@1:5"}},
    {"RefusedKeywordIsNotMissing",
     grammar,
     "/ONCE TEXT='a' 'b'.",
     {"UnexpectedToken(b, TEXT)@1:19"}},
    {"MissingMemberOfAGroup",
     strictGroupGrammar,
     "/LEAD /MEMBER\n /LEAD\n /LEAD /MEMBER.",
     {"SubComRequired(MEMBER)@2:3"}},
    {"AbsentGroupNeedsNoMember", strictGroupGrammar, ".", {}},

    // Brackets.
    {"BracketLeftOpen",
     grammar,
     "FILE=('a' NAME=b LOKC=c.",
     {"UnbalancedBracket(()@1:9", "UnknownParam(LOKC, )@1:21"}},
    {"BracketLeftOpenTakesKeywordsWithoutEqualsSigns",
     grammar,
     "FILE=[NAME LOCK NAME=b.",
     {"UnbalancedBracket([)@1:9"}},
    {"BracketLeftOpenTakesUnknownWordsWithEqualsSigns",
     grammar,
     "FILE=[a X=1 NAME=b.",
     {"UnbalancedBracket([)@1:9"}},
    {"BracketsAroundASubcommand",
     grammar,
     "FILE=(a /LINE TEXT=b) /LINE.",
     {"UnbalancedBracket(()@1:9", "UnbalancedBracket())@1:24"}},
    {"BracketLeftOpenBeforeASubcommand",
     grammar,
     "FILE=(a /LINE TXET=1.",
     {"UnbalancedBracket(()@1:9", "UnknownParam(TXET, LINE)@1:18"}},
    {"BracketNeverOpened", grammar, "FILE=a) NAME=b.", {"UnbalancedBracket())@1:10"}},
    {"BracketNeverOpenedWithoutAKeyword", grammar, ") NAME=b.", {"UnbalancedBracket())@1:4"}},
    {"StrayBracketLeftOpen", grammar, "( NAME=b.", {"UnbalancedBracket(()@1:4"}},
    {"BracketsThatCross", grammar, "FILE=[(a] NAME=b.", {"UnbalancedBracket(()@1:10"}},
    {"BracketsOfDifferentKinds", grammar, "FILE=(a] NAME=b.", {"UnbalancedBracket(()@1:9"}},
    {"BracketsLeftOpenInTwoValues",
     grammar,
     "FILE=(a NAME=[b LOCK=NO.",
     {"UnbalancedBracket(()@1:9", "UnbalancedBracket([)@1:17"}},
    {"KeywordBehindAListInBrackets", grammar, "/SELECT ALL EXCEPT=[TABLES] CHARTS.", {}},
    {"BracketsInAnUnknownSubcommand", grammar, "/FOO (/X) /LINE.", {"UnknownSubCom(FOO)@1:5"}},

    // Values.
    {"ValueNotDeclared", grammar, "LOCK=MAYBE.", {"InvalidParamValue(MAYBE, LOCK, )@1:9"}},
    {"SeveralValuesNotDeclared",
     grammar,
     "STYLE=BOLD THIN 'WIDE'.",
     {"InvalidParamValue(THIN, STYLE, )@1:15", "InvalidParamValue(WIDE, STYLE, )@1:20"}},
    {"TwoValuesWhereOneIsTaken", grammar, "NAME=a b c LOCK=NO.", {"UnexpectedToken(b, NAME)@1:11"}},
    {"ReservedWordAsAName", grammar, "NAME=ALL.", {"InvalidParamValue(ALL, NAME, )@1:9"}},
    {"NumbersAreLeftToTheirReader", grammar, "SIZE='x'.", {}},

    // Errors below the level of tokens, and what they take with them.
    {"UnterminatedString",
     grammar,
     "NAME='a\nLOKC=1.",
     {"UnterminatedString(')@1:9", "UnknownParam(LOKC, )@2:1"}},
    {"UnterminatedStringIsNoBadValueAsWell",
     grammar,
     "LOCK='YES NAME=a.",
     {"UnterminatedString(')@1:9"}},
    {"UnterminatedStringIsNoOpenBracketAsWell",
     grammar,
     "FILE=('a) NAME=b.",
     {"UnterminatedString(')@1:10"}},
    {"UnterminatedStringIsNoMissingKeywordAsWell",
     strictGrammar,
     "NAME='a FILE=b /needed.",
     {"UnterminatedString(')@1:9"}},
    {"UnterminatedStringIsNoMissingMemberAsWell",
     strictGroupGrammar,
     "/LEAD 'a.",
     {"UnterminatedString(')@1:10"}},
    {"UnterminatedStringIsNoUnexpectedTokenAsWell",
     bareGrammar,
     "'a.",
     {"UnterminatedString(')@1:4"}},
    {"UnterminatedStringDoesNotHideAnotherValue",
     grammar,
     "NAME='a\nLOCK=MAYBE.",
     {"UnterminatedString(')@1:9", "InvalidParamValue(MAYBE, LOCK, )@2:6"}},
    {"UnterminatedStringsInOneCommand",
     grammar,
     "NAME='a\nFILE=\"b.",
     {"UnterminatedString(')@1:9", "UnterminatedString(\")@2:6"}},
    {"UnterminatedComment",
     grammar,
     "NAME=a /* LOKC=b\nLOKC=c.",
     {"UnterminatedComment()@1:11", "UnknownParam(LOKC, )@2:1"}},
    {"UnterminatedCommentIsNoMissingValueAsWell",
     grammar,
     "LOCK= /* YES\nNAME=a.",
     {"UnterminatedComment()@1:10"}},
    {"NulIsAllThatIsTold", grammar, std::string("NA\0ME=a.", 8), {"NulCharacter()@1:6"}},
    {"NulBehindAnUnterminatedStringIsAllThatIsTold",
     grammar,
     std::string("NAME='a\nX=\0.", 13),
     {"NulCharacter()@2:3"}},
    {"LexicalErrorInAFreeList", listGrammar, "NAME='a.", {"UnterminatedString(')@1:9"}},

    // Several at once, on several lines.
    {"EveryIndependentError",
     grammar,
     "\tNAEM=1 LOCK=MAYBE\n\t/LIEN\n\té=1 /LINE TEXT=(a\n /ONCE /TABLE /SELECT TABLS.",
     {"UnknownParam(NAEM, )@1:5", "InvalidParamValue(MAYBE, LOCK, )@1:17",
      "UnknownSubCom(LIEN)@2:3", "UnbalancedBracket(()@3:17",
      "ParamRequiredForSubCom(TEXT, ONCE)@4:3", "SubComNeedsGroup(TABLE, SELECT)@4:9",
      "UnknownParam(TABLS, SELECT)@4:23"}},
};

INSTANTIATE_TEST_SUITE_P(UniversalParser, CommandErrors, testing::ValuesIn(kErrorCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct ValueCase {
  const char* arguments;
  const char* keyword;
  std::vector<std::string> tokens;
};

TEST(ValueExtent, RunsToTheNextKeywordOrSubcommandOutsideBrackets) {
  const ValueCase cases[] = {
      {"FILE=a b c NAME=d.", "FILE", {"a", "b", "c"}},
      {"FILE=a b /LINE.", "FILE", {"a", "b"}},
      {"FILE=a b.", "FILE", {"a", "b"}},
      {"FILE=NAME LOCK=NO.", "FILE", {"NAME"}},
      {"NAME=LOCK LOCK=NO.", "NAME", {"LOCK"}},
      {"FILE='a' NAME=LOCK.", "FILE", {"a"}},
      {"FILE='NAME' 'LOCK' NAME=x.", "FILE", {"NAME", "LOCK"}},
      {"FILE=[NAME 'x' (LOCK=1)] NAME=x.",
       "FILE",
       {"[", "NAME", "x", "(", "LOCK", "=", "1", ")", "]"}},
      {"FILE=(a /b) DEBUG.", "FILE", {"(", "a", "/", "b", ")"}},
      {"FILE=a, b DEBUG.", "FILE", {"a", ",", "b"}},
      {"STYLE=BOLD SIZE ITALIC SIZE=3.", "STYLE", {"BOLD", "SIZE", "ITALIC"}},
      {"STYLE=SIZE, BOLD NAME=x.", "STYLE", {"SIZE", "BOLD"}},
      {"FILE NAME=a.", "FILE", {}},
  };
  for (const ValueCase& row : cases) {
    const ParsedCommand parsed(grammar(), row.arguments);
    EXPECT_THAT(parsed.reports(), IsEmpty()) << row.arguments;
    EXPECT_THAT(parsed.tokensOf(row.keyword), ElementsAreArray(row.tokens)) << row.arguments;
  }
}

TEST(ParsedSpec, HasNoSubcommandThatWasNotGiven) {
  const ParsedCommand parsed(grammar(), ".");
  EXPECT_EQ(parsed.spec().getSubComObj(""), nullptr);
  EXPECT_EQ(parsed.spec().getSubComObj("LINE"), nullptr);
  EXPECT_THAT(parsed.spec().groups(), IsEmpty());
}

TEST(ParsedSpec, KeepsGroupsApartAndTheCommandsOwnSubcommandsOutOfThem) {
  const ParsedCommand parsed(
      grammar(), "/LINE TEXT=1 /SELECT TABLES /LINE TEXT=2 /CELLS /CELLS /SELECT CHARTS /TABLE.");
  std::vector<const GroupComObj*> groups;
  ASSERT_TRUE(parsed.spec().getGroupObj(groups, "select"));
  ASSERT_THAT(groups, SizeIs(2));
  std::vector<const SubComObj*> found;
  EXPECT_TRUE(groups[0]->getSubComObj("CELLS", found));
  EXPECT_THAT(found, SizeIs(2));
  EXPECT_EQ(groups[0]->getSubComObj("TABLE"), nullptr);
  EXPECT_EQ(groups[0]->getSubComObj("LINE"), nullptr);
  ASSERT_NE(groups[1]->getSubComObj("TABLE"), nullptr);
  EXPECT_FALSE(groups[1]->getSubComObj("CELLS", found));
  EXPECT_THAT(found, IsEmpty());
  EXPECT_NE(groups[0]->getSubComObj("SELECT")->getParamObj("TABLES"), nullptr);
  EXPECT_EQ(groups[0]->getSubComObj("SELECT")->getParamObj("CHARTS"), nullptr);
  EXPECT_TRUE(parsed.spec().getSubComObj("LINE", found));
  EXPECT_THAT(found, SizeIs(2));
}

TEST(ParsedSpec, OfAFreeListIsTheRestOfTheCommand) {
  const ParsedCommand parsed(listGrammar(), "a = b / c.");
  const ParamObj* list = parsed.spec().getSubComObj("")->exportParamObj();
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(list->isTokenList());
  EXPECT_EQ(list->getTokenListSize(), 5);
}

TEST(ParsedSpec, OfAnEmptyFreeListIsAnEmptyList) {
  const ParsedCommand parsed(listGrammar(), ".");
  const ParamObj* list = parsed.spec().getSubComObj("")->exportParamObj();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->getTokenListSize(), 0);
}

TEST(ParsedSpec, OfANamedFreeListIsTheRestOfTheCommand) {
  CommandDescriptor command("GO");
  command.addSubComDesc({"SCRIPT", UPSpecTypes::kTokenList, false, false});
  const ParsedCommand parsed(command, "/SCRIPT = a /SCRIPT b (.");
  EXPECT_THAT(parsed.reports(), IsEmpty());
  const SubComObj* script = parsed.spec().getSubComObj("SCRIPT");
  ASSERT_NE(script, nullptr);
  EXPECT_EQ(script->exportParamObj()->sourceText(), "a / SCRIPT b (");
}

TEST(ParserHints, NameWhatIsClosestOrSaysWhatIsMeant) {
  const std::pair<const char*, const char*> cases[] = {
      {"NAEM=a.", "Did you mean NAME?"},
      {"/LIEN.", "Did you mean LINE?"},
      {"/NAME=a.", "It is a keyword of the command: write it without the slash."},
      {"LOCK=MAYBE.", "It must be one of YES, NO, ALL."},
      {"NAME=ALL.", "ALL is a reserved word; write it in quotes."},
      {"NAME=*.", "A word, a number or a quoted text is needed."},
      {"FILE=/tmp/x.", "A value that holds a slash must stand in quotes."},
  };
  for (const auto& [arguments, hint] : cases) {
    const ParsedCommand parsed(grammar(), arguments);
    ASSERT_FALSE(parsed.records.empty()) << arguments;
    EXPECT_THAT(parsed.records[0].text, HasSubstr(hint)) << arguments;
  }
}

TEST(ParserHints, NameQualifiersBesideValues) {
  CommandDescriptor command("GO");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  ParamDescriptor place("PLACE", UPSpecTypes::kMeasure, false, true);
  for (const char* value : {"FIRST", "LAST"}) place.addStringValue(value);
  place.addQualifDesc({"CELL", UPSpecTypes::kString, false, true});
  main.addParamDesc(place);
  command.addSubComDesc(main);
  const ParsedCommand parsed(command, "PLACE='B4'.");
  ASSERT_FALSE(parsed.records.empty());
  EXPECT_THAT(parsed.records[0].text, HasSubstr("It must be one of FIRST, LAST, CELL(...)."));
}

TEST(ParserHints, AreLeftOutWhereNothingIsClose) {
  const ParsedCommand parsed(grammar(), "XYZZY=a.");
  EXPECT_EQ(parsed.records.at(0).text, "There is no keyword XYZZY in this command.");
}

struct PeriodCase {
  const char* name;
  CommandDescriptor (*grammar)();
  std::string arguments;
  std::vector<std::string> reports;
  bool isHinted = true;
};

void PrintTo(const PeriodCase& row, std::ostream* out) { *out << row.name; }

class ForgottenPeriod : public testing::TestWithParam<PeriodCase> {};

TEST_P(ForgottenPeriod, IsTheLastThingThatIsTold) {
  const ScopedCommandNames names({"GO", "OUTPUT NEW", "OUTPUT CLOSE"});
  const ParsedCommand parsed(GetParam().grammar(), GetParam().arguments);
  EXPECT_THAT(parsed.reports(), ElementsAreArray(GetParam().reports));
  EXPECT_EQ(parsed.errors(), static_cast<int>(GetParam().reports.size()));
  ASSERT_FALSE(parsed.records.empty());
  const std::string hint = "Does the command before it lack its period?";
  EXPECT_EQ(parsed.records.back().text.ends_with(hint), GetParam().isHinted)
      << parsed.records.back().text;
}

const PeriodCase kPeriodCases[] = {
    {"BehindAValue",
     grammar,
     "NAME=a\noutput new NAME=b FOO=1 /FOO.",
     {"UnexpectedToken(output, NAME)@2:1"}},
    {"BehindTheName", bareGrammar, "\n OUTPUT NEW.", {"UnexpectedToken(OUTPUT, GO)@2:2"}},
    {"BehindAKeywordThatStandsAlone", grammar, "DEBUG\nGO NAME=b.", {"UnknownParam(GO, )@2:1"}},
    {"BehindARawValueThatTakesItAlong",
     grammar,
     "FILE='a'\nOUTPUT CLOSE FOO=1 BAR=2.",
     {"UnexpectedToken(OUTPUT, )@2:1"}},
    {"BehindOtherMistakes",
     grammar,
     "NAEM=a LOKC=1\nNAME=b\nOUTPUT NEW NAME=b.",
     {"UnknownParam(NAEM, )@1:4", "UnknownParam(LOKC, )@1:11",
      "UnexpectedToken(OUTPUT, NAME)@3:1"}},
    {"WithSomethingRequiredMissing",
     strictGrammar,
     "NAME=a\nOUTPUT NEW NAME=b.",
     {"UnexpectedToken(OUTPUT, NAME)@2:1"}},
    {"InALineOfItsOwnOnly",
     grammar,
     "NAME=a OUTPUT NEW NAME=b.",
     {"UnexpectedToken(OUTPUT, NAME)@1:11", "ParamRepeated(NAME, )@1:22"},
     false},
    {"OfNoKnownCommand",
     grammar,
     "NAME=a\nOUTPUT NEWS NAME=b.",
     {"UnexpectedToken(OUTPUT, NAME)@2:1", "ParamRepeated(NAME, )@2:13"},
     false},
};

INSTANTIATE_TEST_SUITE_P(UniversalParser, ForgottenPeriod, testing::ValuesIn(kPeriodCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ForgottenPeriods, NeedNamesOfCommands) {
  const ParsedCommand parsed(bareGrammar(), "\nOUTPUT NEW.");
  EXPECT_EQ(parsed.records.at(0).text, "\"OUTPUT\" is not expected behind GO.");
}

TEST(ForgottenPeriods, AreNoMistakeOfTheParserWhereAValueMayTakeTheWords) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  const ParsedCommand parsed(grammar(), "FILE='a'\nOUTPUT NEW.");
  EXPECT_THAT(parsed.reports(), IsEmpty());
}

TEST(ParserMessages, CarryTheBytesTheyAreAbout) {
  const ParsedCommand parsed(grammar(), "NAME='x' /LIEN\n FILE='open.");
  std::vector<std::string> about;
  for (const ParserMessageRecord& record : parsed.records) {
    about.emplace_back(parsed.command().jobText().substr(record.offset, record.length));
  }
  EXPECT_THAT(about, ElementsAre("'open", "LIEN"));
}

/// Counts what reaches it, without keeping it.
class CountingSink : public OutputSink {
 public:
  void parserMessage(const ParserMessageRecord& record) override {
    ++count;
    operation = record.operation;
  }
  int count = 0;
  std::string operation;

 private:
  SinkRegistration registration_{*this};
};

TEST(ParserWithoutMessagesOfTheCommand, ReportsInTheSameWay) {
  CountingSink sink;
  const TokenizedText text("GO FOO=1.");
  const CurrentCommand current(text.command(), 1);
  const VORN_TokenSequence tokens(true);
  const CommandDescriptor command = bareGrammar();
  CommandSpec spec;
  ASSERT_EQ(ParserMessage::current(), nullptr);
  EXPECT_EQ(UniversalParser(tokens, spec, command).getCommandSpecifications(), 1);
  EXPECT_EQ(sink.operation, "UnexpectedToken");
  EXPECT_EQ(ParserMessage::current(), nullptr);
}

TEST(ParserWithoutACommand, FindsNothingAndReportsNothing) {
  CountingSink sink;
  const VORN_TokenSequence tokens(true);
  const CommandDescriptor command = strictGrammar();
  CommandSpec spec;
  EXPECT_EQ(UniversalParser(tokens, spec, command).getCommandSpecifications(), 0);
  EXPECT_EQ(sink.count, 0);
}

struct HostileCase {
  const char* name;
  CommandDescriptor (*grammar)();
  std::string begin;
  std::string piece;
  int atLeast;  ///< errors
};

void PrintTo(const HostileCase& row, std::ostream* out) { *out << row.name; }

class HostileCommand : public testing::TestWithParam<HostileCase> {};

TEST_P(HostileCommand, IsParsedInLinearTime) {
  const HostileCase& row = GetParam();
  const auto timed = [&](std::size_t size) {
    std::string text = "GO " + row.begin;
    while (text.size() < size) text += row.piece;
    const TokenizedText tokenized(text);
    CountingSink sink;
    const CurrentCommand current(tokenized.command(), 1);
    const VORN_TokenSequence tokens(true);
    const CommandDescriptor command = row.grammar();
    CommandSpec spec;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(UniversalParser(tokens, spec, command).getCommandSpecifications(), sink.count);
    EXPECT_GE(sink.count, row.atLeast);
    return std::chrono::steady_clock::now() - start;
  };
  const auto small = timed(kHostileSize / 16);
  const auto large = timed(kHostileSize);
  // Sixteen times the text; quadratic time would take 256 times as long.
  EXPECT_LT(large, small * 80 + std::chrono::seconds(2));
}

const HostileCase kHostileCases[] = {
    {"OpenParentheses", grammar, "FILE=", "(", 1},
    {"OpenBracketsOfBothKinds", grammar, "", "([", 1},
    {"ClosingBrackets", grammar, "FILE=", ")", 1},
    {"BracketsThatCross", grammar, "FILE=", "([)]", 1},
    {"OpenedThenClosedWrongly", grammar, "FILE=" + std::string(kHostileSize / 32, '('), "]", 1},
    {"BalancedBrackets", grammar, "FILE=", "() ", 0},
    {"KeywordsWithOpenBrackets", grammar, "", "FILE=( ", 1},
    {"BracketsBeforeSubcommands", grammar, "", "/LINE TEXT=( ", 1},
    {"DivisionsInABracket", grammar, "FILE=(", "/ a ", 1},
    {"Slashes", grammar, "", "/ ", 1},
    {"UnknownSubcommandsWithBrackets", grammar, "", "/FOO ( ", 1},
    {"EqualsSigns", grammar, "NAME", "= ", 1},
    {"Commas", grammar, "STYLE=", ",", 1},
    {"RepeatedKeyword", grammar, "", "NAME=a ", 1},
    {"RepeatedSubcommand", grammar, "", "/ONCE ", 1},
    {"MembersOutsideAGroup", grammar, "", "/TABLE ", 1},
    {"UnknownKeywords", grammar, "", "X=1 ", 1},
    {"UnknownKeywordsInAList", grammar, "/SELECT ", "XYZZY ", 1},
    {"LongList", grammar, "STYLE=", "BOLD,", 0},
    {"WrongList", grammar, "STYLE=", "THIN ", 1},
    {"Groups", grammar, "", "/SELECT ALL /CELLS FORMAT=F8 ", 0},
    {"GroupsWithoutAMember", strictGroupGrammar, "", "/LEAD ", 1},
    {"OpenStrings", grammar, "", "FILE=('a\n", 1},
    {"OpenStringsAndMissingKeywords", grammar, "", "/ONCE\n'b\n", 1},
    {"OpenComments", grammar, "", "NAME= /*\n", 1},
    {"LongWord", grammar, "", "a", 1},
    {"FreeList", listGrammar, "", "( / ", 0},
};

INSTANTIATE_TEST_SUITE_P(UniversalParser, HostileCommand, testing::ValuesIn(kHostileCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace vornwout
