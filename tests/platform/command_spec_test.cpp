// Reading values back: what each getter gives and refuses, and that a refusal changes nothing.
#include "platform/parser/command_spec.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

using Spec = UPSpecTypes;

CommandDescriptor commandWith(ParamDescriptor param) {
  CommandDescriptor command("G");
  SubComDescriptor main("", Spec::kKeywords, false, false);
  main.addParamDesc(std::move(param));
  command.addSubComDesc(main);
  return command;
}

/// A command with the one keyword P, given with a value.
class OneValue {
 public:
  OneValue(ParamDescriptor param, const std::string& value)
      : command_(commandWith(std::move(param))),
        parsed_(command_, (value.empty() ? "P" : "P = " + value) + " .") {}

  const ParamObj& operator*() const { return parsed_.param("P"); }
  const ParamObj* operator->() const { return &parsed_.param("P"); }
  const ParsedCommand& parsed() const { return parsed_; }

 private:
  CommandDescriptor command_;
  ParsedCommand parsed_;
};

ParamDescriptor param(Spec::ParamSpec spec, bool required = false,
                      Spec::BracketOptions brackets = Spec::kBracketsRaw) {
  return {"P", spec, required, true, brackets};
}

struct TextCase {
  const char* value;
  const char* token;          ///< getStringToken
  const char* requiredToken;  ///< the same for a required keyword
  const char* generic;        ///< getStringGeneric, null when refused
  const char* any;            ///< getStringOrLiteral, null when refused
  bool quoted;
};

TEST(TextGetters, GiveTheTextOfOneTokenOfTheirKind) {
  const TextCase cases[] = {
      {"doc1", "doc1", "", "doc1", "doc1", false},
      {"12.50", "12.50", "", "12.50", "12.50", false},
      {"'a b'", "a b", "a b", "a b", "a b", true},
      {"''", "", "", "", "", true},
      {"'it''s'", "it's", "it's", "it's", "it's", true},
      {"*", "*", "", nullptr, "*", false},
      {"all", "all", "", nullptr, "all", false},
      {"a b", "", "", nullptr, nullptr, false},
      {"'a' 'b'", "", "", nullptr, nullptr, false},
      {"('a')", "", "", nullptr, nullptr, false},
      {"", "", "", nullptr, nullptr, false},
  };
  for (const TextCase& row : cases) {
    SCOPED_TRACE(row.value);
    const OneValue value(param(Spec::kRawTokens), row.value);
    EXPECT_EQ(value->getStringToken(), row.token);
    std::string text = "untouched";
    EXPECT_EQ(value->getStringGeneric(text), row.generic != nullptr);
    EXPECT_EQ(text, row.generic != nullptr ? row.generic : "untouched");
    text = "untouched";
    bool quoted = !row.quoted;
    EXPECT_EQ(value->getStringOrLiteral(text, quoted), row.any != nullptr);
    EXPECT_EQ(text, row.any != nullptr ? row.any : "untouched");
    EXPECT_EQ(quoted, row.any != nullptr ? row.quoted : !row.quoted);
    text = "untouched";
    EXPECT_EQ(value->getLiteral(text), row.quoted);
    EXPECT_EQ(text, row.quoted ? row.any : "untouched");
  }
}

TEST(TextGetters, OfARequiredKeywordGiveAQuotedTokenOnly) {
  for (const auto& [source, expected] : std::vector<std::pair<const char*, const char*>>{
           {"'a.qxv'", "a.qxv"}, {"a.qxv", ""}, {"12", ""}, {"'a' 'b'", ""}, {"", ""}}) {
    EXPECT_EQ(OneValue(param(Spec::kRawTokens, true), source)->getStringToken(), expected);
  }
}

TEST(TextGetters, GiveUpperCase) {
  EXPECT_EQ(OneValue(param(Spec::kString), "\"Noto Séns\"")->getUpStringToken(), "NOTO SÉNS");
  EXPECT_EQ(OneValue(param(Spec::kString), "f8.2")->getUpStringToken(), "F8.2");
}

TEST(ValueComparison, IsWithoutRegardToCaseAndOfOneToken) {
  EXPECT_TRUE(OneValue(param(Spec::kRawTokens), "Yes")->isStringValueCase("yES"));
  EXPECT_TRUE(OneValue(param(Spec::kRawTokens), "'Yes'")->isStringValueCase("YES"));
  EXPECT_TRUE(OneValue(param(Spec::kRawTokens), "all")->isStringValueCase("ALL"));
  EXPECT_FALSE(OneValue(param(Spec::kRawTokens), "YES YES")->isStringValueCase("YES"));
  EXPECT_FALSE(OneValue(param(Spec::kRawTokens), "YESS")->isStringValueCase("YES"));
  EXPECT_FALSE(OneValue(param(Spec::kRawTokens), "")->isStringValueCase(""));
}

TEST(OperatorComparison, IsTrueForOneTokenOfThatCode) {
  const auto is = [](const char* value, int code) {
    return OneValue(param(Spec::kRawTokens), value)->isOperatorValue(code);
  };
  EXPECT_TRUE(is("*", 10));
  EXPECT_TRUE(is("all", 35));
  EXPECT_FALSE(is("*", 35));
  EXPECT_FALSE(is("* *", 10));
  EXPECT_FALSE(is("'*'", 10));
  EXPECT_FALSE(is("a", 0)) << "a word is no operator";
  EXPECT_FALSE(is("'ALL'", 35)) << "not declared, so a text like any other";
  EXPECT_FALSE(is("", 35));
}

TEST(OperatorComparison, TakesTheDeclaredValueAllInQuotes) {
  ParamDescriptor declared = param(Spec::kDeclaredValue);
  declared.addStringValue("ALL");
  declared.addStringValue("VISIBLE");
  EXPECT_TRUE(OneValue(declared, "'all'")->isOperatorValue(35));
  EXPECT_TRUE(OneValue(declared, "ALL")->isOperatorValue(35));
  EXPECT_FALSE(OneValue(declared, "'VISIBLE'")->isOperatorValue(35));
}

TEST(NumberGetter, GivesANumberWithinItsBounds) {
  ParamDescriptor bounded = param(Spec::kNumber);
  bounded.setLowerBoundary(0, kLowerExclusive);
  bounded.setUpperBoundary(200);
  for (const auto& [source, expected] : std::vector<std::pair<const char*, double>>{
           {"200", 200}, {"0.5", 0.5}, {"+7", 7}, {"1e2", 100}, {"7,", 7}}) {
    double value = -99;
    EXPECT_TRUE(OneValue(bounded, source)->getNumberValue(value)) << source;
    EXPECT_EQ(value, expected) << source;
  }
  for (const char* source : {"0", "-1", "200.5", "x", "'5'", "1e999", "*"}) {
    double value = -99;
    EXPECT_FALSE(OneValue(bounded, source)->getNumberValue(value)) << source;
    EXPECT_EQ(value, -99) << source;
  }
}

TEST(IntegerGetter, GivesAnIntegerWithinItsBounds) {
  ParamDescriptor bounded = param(Spec::kInteger);
  bounded.setLowerBoundary(1);
  int value = -99;
  EXPECT_TRUE(OneValue(bounded, "1")->getIntegerValue(value));
  EXPECT_EQ(value, 1);
  for (const char* source : {"0", "1.5", "2.", "1e2", "2147483648", "x", "'5'"}) {
    EXPECT_FALSE(OneValue(bounded, source)->getIntegerValue(value)) << source;
    EXPECT_EQ(value, 1) << source;
  }
}

TEST(NumberGetters, ReportARefusalWhenAsked) {
  const OneValue value(param(Spec::kNumber), "x");
  ASSERT_NE(value.parsed().spec().getSubComObj("")->getParamObj("P"), nullptr);
  double number = 0;
  int integer = 0;
  EXPECT_FALSE(value->getNumberValue(number, "S", value.parsed().messages()));
  EXPECT_FALSE(value->getIntegerValue(integer, "S", value.parsed().messages()));
  EXPECT_THAT(value.parsed().reports(),
              ElementsAre("ParamNeedNumber(P, S)@1:7", "ParamNeedInteger(P, S)@1:7"));
}

TEST(NumberGetters, ReportNothingWhenTheyGiveAValue) {
  const OneValue value(param(Spec::kNumber), "7");
  double number = 0;
  int integer = 0;
  EXPECT_TRUE(value->getNumberValue(number, "S", value.parsed().messages()));
  EXPECT_TRUE(value->getIntegerValue(integer, "S", value.parsed().messages()));
  EXPECT_EQ(number, 7);
  EXPECT_EQ(integer, 7);
  EXPECT_THAT(value.parsed().reports(), IsEmpty());
}

TEST(NumberListGetter, GivesNumbersOnly) {
  ParamDescriptor bounded = param(Spec::kNumberList);
  bounded.setLowerBoundary(0);
  std::vector<double> values;
  EXPECT_TRUE(OneValue(bounded, "8.5, 11 3")->getNumberList(values));
  EXPECT_THAT(values, ElementsAre(8.5, 11, 3));
  for (const char* source : {"1 x", "1 -2", "'1'", "(1 2)"}) {
    EXPECT_FALSE(OneValue(bounded, source)->getNumberList(values)) << source;
    EXPECT_THAT(values, SizeIs(3)) << source;
  }
}

TEST(StringListGetter, GivesWordsNumbersStringsAndTheReservedWord) {
  ParamDescriptor list = param(Spec::kDeclaredList, false, Spec::kBracketsOptional);
  for (const char* value : {"A", "B", "ALL", "5"}) list.addStringValue(value);
  std::vector<std::string> texts;
  EXPECT_TRUE(OneValue(list, "[a, 'B' all 5]")->getStringList(texts));
  EXPECT_THAT(texts, ElementsAre("a", "B", "all", "5"));
  EXPECT_TRUE(OneValue(list, "[]")->getStringList(texts));
  EXPECT_THAT(texts, IsEmpty());
  texts = {"untouched"};
  EXPECT_FALSE(OneValue(param(Spec::kRawTokens), "a * b")->getStringList(texts));
  EXPECT_THAT(texts, ElementsAre("untouched"));
}

TEST(LiteralListGetter, GivesQuotedStringsOnly) {
  const ParamDescriptor list = param(Spec::kLiteralList, false, Spec::kBracketsOptionalList);
  std::vector<std::string> texts;
  EXPECT_TRUE(OneValue(list, "['a', \"b\" '']")->getLiteralList(texts));
  EXPECT_THAT(texts, ElementsAre("a", "b", ""));
  EXPECT_FALSE(OneValue(list, "'a' b")->getLiteralList(texts));
  EXPECT_THAT(texts, SizeIs(3));
}

struct TokensCase {
  Spec::ParamSpec spec;
  Spec::BracketOptions brackets;
  const char* value;
  std::vector<std::string> tokens;
};

TEST(TokenList, IsWhatReachesTheReader) {
  const TokensCase cases[] = {
      // Raw lists keep brackets and commas, but for those between the numbers of two functions.
      {Spec::kRawTokens, Spec::kBracketsRaw, "['a', 1]", {"[", "a", ",", "1", "]"}},
      {Spec::kRawTokens,
       Spec::kBracketsRaw,
       "('a' 'b', 'c' 'd')",
       {"(", "a", "b", ",", "c", "d", ")"}},
      {Spec::kRawTokens,
       Spec::kBracketsRaw,
       "RGB(255,128,0)",
       {"RGB", "(", "255", "128", "0", ")"}},
      {Spec::kRawTokens,
       Spec::kBracketsRaw,
       "rgb(255 128 0)",
       {"rgb", "(", "255", "128", "0", ")"}},
      {Spec::kRawTokens,
       Spec::kBracketsRaw,
       "RGB(1, -2,x)",
       {"RGB", "(", "1", "-2", ",", "x", ")"}},
      {Spec::kRawTokens, Spec::kBracketsRaw, "RGB(,1,)", {"RGB", "(", ",", "1", ",", ")"}},
      {Spec::kRawTokens,
       Spec::kBracketsRaw,
       "[MEAN, POSITION(1, 2), 'a']",
       {"[", "MEAN", ",", "POSITION", "(", "1", "2", ")", ",", "a", "]"}},
      {Spec::kRawTokens, Spec::kBracketsRaw, "HSV(1,2)", {"HSV", "(", "1", ",", "2", ")"}},
      {Spec::kRawTokens, Spec::kBracketsRaw, "'RGB' (1,2)", {"RGB", "(", "1", ",", "2", ")"}},
      {Spec::kRawTokens, Spec::kBracketsRaw, "(1,2)", {"(", "1", ",", "2", ")"}},
      // Options 1 and 2 take one pair of square brackets and the commas.
      {Spec::kRawTokens, Spec::kBracketsOptional, "['a', 'b' LAST]", {"a", "b", "LAST"}},
      {Spec::kRawTokens, Spec::kBracketsOptionalList, "1, 2", {"1", "2"}},
      {Spec::kRawTokens, Spec::kBracketsOptional, "[[1]]", {"[", "1", "]"}},
      {Spec::kRawTokens, Spec::kBracketsOptional, "[]", {}},
      // Brackets at both ends that are not partners enclose nothing.
      {Spec::kRawTokens, Spec::kBracketsOptional, "['a'] ['b']", {"[", "a", "]", "[", "b", "]"}},
      {Spec::kRawTokens, Spec::kBracketsOptional, "[['a'] ['b']]", {"[", "a", "]", "[", "b", "]"}},
      {Spec::kRawTokens, Spec::kBracketsOptional, "(1)", {"(", "1", ")"}},
      // Commas of lists separate.
      {Spec::kNumberList, Spec::kBracketsRaw, "1, 2", {"1", "2"}},
      {Spec::kNumber, Spec::kBracketsRaw, "1,", {"1"}},
  };
  for (const TokensCase& row : cases) {
    const OneValue value(param(row.spec, false, row.brackets), row.value);
    EXPECT_THAT(value.parsed().tokensOf("P"), ElementsAreArray(row.tokens)) << row.value;
    ASSERT_EQ(value->getTokenListSize(), static_cast<int>(row.tokens.size())) << row.value;
    for (std::size_t i = 0; i < row.tokens.size(); ++i) {
      EXPECT_EQ(value->getTokenObj(static_cast<int>(i)).getString(), row.tokens[i]) << row.value;
    }
    EXPECT_EQ(value->isTokenList(), row.spec == Spec::kRawTokens);
  }
}

TEST(TokenObject, BeyondTheListIsRefused) {
  const OneValue value(param(Spec::kRawTokens, false, Spec::kBracketsOptional), "[a, b]");
  EXPECT_EQ(value->getTokenObj(1).getString(), "b");
  EXPECT_THROW(value->getTokenObj(2), std::out_of_range);
  EXPECT_THROW(value->getTokenObj(-1), std::out_of_range);
  const ParamObj none;
  EXPECT_THROW(none.getTokenObj(0), std::out_of_range);
}

TEST(IntegerText, IsAnIntegerOfWhateverSizeAsWritten) {
  for (const char* source : {"1", "-5", "+007", "123456789012345678901234567890"}) {
    std::string text;
    EXPECT_TRUE(OneValue(param(Spec::kNumber), source)->getIntegerText(text)) << source;
    EXPECT_EQ(text, source);
  }
  for (const char* source : {"1.5", "1E3", "a", "'1'"}) {
    std::string text = "untouched";
    EXPECT_FALSE(OneValue(param(Spec::kNumber), source)->getIntegerText(text)) << source;
    EXPECT_EQ(text, "untouched");
  }
}

TEST(WrittenText, IsTheSliceOfTheJob) {
  for (const char* source : {"RGB(1 2,3)", "a  -  'b c'", "(a /* c */ b)", "x", "'a'\n 'b'"}) {
    EXPECT_EQ(OneValue(param(Spec::kRawTokens), source)->writtenText().text(), source);
  }
  EXPECT_EQ(ParamObj().writtenText().text(), "");
}

TEST(WrittenText, HidesWhatIsSecretInIt) {
  const OneValue value(param(Spec::kRawTokens), "RGB( PASSWORD = 's' ,1)");
  EXPECT_EQ(value->writtenText().hidden(), "RGB( PASSWORD = *** ******)");
}

ParamDescriptor sizeParam() {
  ParamDescriptor size = param(Spec::kMeasure);
  ParamDescriptor inches("INCHES", Spec::kNumberList, false, true);
  inches.setLowerBoundary(0);
  size.addQualifDesc(inches);
  size.addQualifDesc({"POINTS", Spec::kNumber, false, true});
  return size;
}

TEST(Measure, IsTheSameEitherWayRound) {
  for (const char* source :
       {"8.5 11 INCHES", "INCHES(8.5 11)", "inches(8.5, 11)", "8.5, 11 Inches"}) {
    SCOPED_TRACE(source);
    const OneValue value(sizeParam(), source);
    std::string text;
    ParamObj unit;
    ASSERT_TRUE(value->getStringAndQual(text, unit));
    EXPECT_EQ(text, "8.5 11");
    EXPECT_EQ(unit.getParamName(), "INCHES");
    EXPECT_THAT(value.parsed().tokensOf("P"), ElementsAre("8.5", "11"));
    std::vector<double> numbers;
    EXPECT_TRUE(unit.getNumberList(numbers));
    EXPECT_THAT(numbers, ElementsAre(8.5, 11));
    std::vector<TokenInfoObj> tokens;
    EXPECT_TRUE(unit.getTokenList(tokens));
    EXPECT_THAT(tokens, SizeIs(2));
  }
}

TEST(Measure, ChecksTheBoundsOfItsUnit) {
  std::string text;
  ParamObj unit;
  std::vector<double> numbers;
  const OneValue value(sizeParam(), "INCHES(-1 2)");
  ASSERT_TRUE(value->getStringAndQual(text, unit));
  EXPECT_FALSE(unit.getNumberList(numbers));
}

TEST(Measure, WithoutUnitGivesItsTextAndFails) {
  const OneValue value(sizeParam(), "2 1");
  std::string text = "untouched";
  ParamObj unit;
  EXPECT_FALSE(value->getStringAndQual(text, unit));
  EXPECT_EQ(text, "2 1");
  EXPECT_EQ(unit.getParamName(), "");
  EXPECT_THAT(value.parsed().tokensOf("P"), ElementsAre("2", "1"));
}

TEST(Measure, WithADeclaredKeywordHasNoUnit) {
  ParamDescriptor location = param(Spec::kMeasure);
  location.addStringValue("LASTROW");
  location.addQualifDesc({"STARTCELL", Spec::kString, false, true});
  std::string text;
  ParamObj unit;
  const OneValue keyword(location, "LASTROW");
  EXPECT_FALSE(keyword->getStringAndQual(text, unit));
  EXPECT_TRUE(keyword->isStringValueCase("lastrow"));
  const OneValue cell(location, "STARTCELL('B4')");
  ASSERT_TRUE(cell->getStringAndQual(text, unit));
  std::string reference;
  EXPECT_TRUE(unit.getLiteral(reference));
  EXPECT_EQ(reference, "B4");
}

ParamDescriptor labelsParam() {
  ParamDescriptor labels = param(Spec::kQualifierLists, false, Spec::kBracketsOptionalList);
  labels.addQualifDesc({"EXACT", Spec::kLiteralList, false, true});
  labels.addQualifDesc({"BEGINS", Spec::kLiteralList, false, true});
  return labels;
}

TEST(Qualifiers, AreGivenEachWithItsValue) {
  const ParamDescriptor labels = labelsParam();
  const OneValue value(labels, "[exact('a', 'b') BEGINS('c')]");
  std::vector<ParamObj> qualifiers;
  ASSERT_TRUE(value->getStringQualList(labels, value.parsed().messages(), qualifiers));
  ASSERT_THAT(qualifiers, SizeIs(2));
  EXPECT_EQ(qualifiers[0].getParamName(), "EXACT");
  EXPECT_EQ(qualifiers[1].getParamName(), "BEGINS");
  std::vector<std::string> texts;
  EXPECT_TRUE(qualifiers[0].getLiteralList(texts));
  EXPECT_THAT(texts, ElementsAre("a", "b"));
  EXPECT_EQ(qualifiers[1].place(), (SourcePlace{1, 31}));
}

TEST(Qualifiers, OfAKeywordAloneAreNone) {
  ParamDescriptor sort = param(Spec::kQualifiers);
  sort.addQualifDesc({"COLLABEL", Spec::kString, false, true});
  const OneValue value(sort, "");
  std::vector<ParamObj> qualifiers;
  EXPECT_TRUE(value->getStringQualList(sort, value.parsed().messages(), qualifiers));
  EXPECT_THAT(qualifiers, IsEmpty());
  EXPECT_THAT(value.parsed().reports(), IsEmpty());
}

TEST(Qualifiers, NotDeclaredAreReportedAndTheOthersGiven) {
  ParamDescriptor raw = param(Spec::kRawTokens);
  raw.addQualifDesc({"TOP", Spec::kInteger, false, true});
  const OneValue value(raw, "TIP(1), TOP(2)");
  ASSERT_NE(value.parsed().spec().getSubComObj("")->getParamObj("P"), nullptr);
  std::vector<ParamObj> qualifiers;
  EXPECT_FALSE(value->getStringQualList(raw, value.parsed().messages(), qualifiers));
  EXPECT_THAT(value.parsed().reports(), ElementsAre("ParamNoSubCom(TIP)@1:7"));
  ASSERT_THAT(qualifiers, SizeIs(1));
  const OneValue second(raw, "TOP(2) TIP(1)");
  EXPECT_FALSE(second->getStringQualList(raw, second.parsed().messages(), qualifiers));
  EXPECT_THAT(second.parsed().reports(), ElementsAre("ParamNoSubCom(TIP)@1:14"));
  ASSERT_THAT(qualifiers, SizeIs(1));
  int number = 0;
  EXPECT_TRUE(qualifiers[0].getIntegerValue(number));
  EXPECT_EQ(number, 2);
}

TEST(NoParameter, HasNoNameNoTokensAndNoValue) {
  const ParamObj none;
  std::string text = "untouched";
  bool quoted = false;
  double number = -99;
  std::vector<TokenInfoObj> tokens;
  ParamObj unit;
  EXPECT_EQ(none.getParamName(), "");
  EXPECT_EQ(none.getStringToken(), "");
  EXPECT_FALSE(none.getStringGeneric(text));
  EXPECT_FALSE(none.getStringOrLiteral(text, quoted));
  EXPECT_FALSE(none.getNumberValue(number));
  EXPECT_FALSE(none.isStringValueCase(""));
  EXPECT_FALSE(none.isOperatorValue(10));
  EXPECT_FALSE(none.isTokenList());
  EXPECT_FALSE(none.getTokenList(tokens));
  EXPECT_FALSE(none.getStringAndQual(text, unit));
  EXPECT_EQ(none.getTokenListSize(), 0);
  EXPECT_EQ(none.place(), SourcePlace{});
  EXPECT_EQ(text, "untouched");
}

TEST(SourceTextOfAValue, IsItsTokensAsWrittenWithSingleBlanks) {
  EXPECT_EQ(OneValue(param(Spec::kRawTokens), "[ 'it''s'/*c*/,-1.50\n]")->sourceText(),
            "[ 'it''s' , -1.50 ]");
}

TEST(PlaceOfAValue, IsItsFirstTokenOrItsKeyword) {
  EXPECT_EQ(OneValue(param(Spec::kRawTokens), "a b")->place(), (SourcePlace{1, 7}));
  EXPECT_EQ(OneValue(param(Spec::kRawTokens), "")->place(), (SourcePlace{1, 3}));
}

TEST(SubcommandLookup, IsWithoutRegardToCaseAndFirstWhereRepeated) {
  CommandDescriptor command("G");
  SubComDescriptor line("LINE", Spec::kKeywords, false, true);
  line.addParamDesc("TEXT", Spec::kRawTokens, false, true);
  command.addSubComDesc(line);
  const ParsedCommand parsed(command, "/line text=1 /LINE TEXT=2.");
  ASSERT_NE(parsed.spec().getSubComObj("Line"), nullptr);
  EXPECT_EQ(parsed.spec().getSubComObj("Line")->getParamObj("Text")->getStringToken(), "1");
  EXPECT_EQ(parsed.spec().getSubComObj("Line")->getParamObj("TEXTS"), nullptr);
  EXPECT_EQ(parsed.spec().getSubComObj("Line")->exportParamObj(), nullptr) << "no free list";
  std::vector<const SubComObj*> all;
  ASSERT_TRUE(parsed.spec().getGlobalGroupObj().getSubComObj("LINE", all));
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_EQ(all[1]->getParamObj("TEXT")->getStringToken(), "2");
  EXPECT_FALSE(parsed.spec().getSubComObj("LINES", all));
  EXPECT_THAT(all, IsEmpty());
}

TEST(SubcommandName, IsTheTokenInTheCommand) {
  CommandDescriptor command("G");
  SubComDescriptor main("", Spec::kKeywords, false, false);
  main.addParamDesc("P", Spec::kString, false, true);
  command.addSubComDesc(main);
  command.addSubComDesc(SubComDescriptor("S", Spec::kKeywords, false, true));
  GroupComDescriptor group(0, true, "");
  group.addSubComDesc(SubComDescriptor("LEAD", Spec::kKeywords, true, false), true);
  group.addSubComDesc(SubComDescriptor("T", Spec::kKeywords, false, true), false);
  command.addGroupDesc(group);
  const ParsedCommand parsed(command, "P=a /s /S /LEAD /T /T.");
  EXPECT_THAT(parsed.reports(), IsEmpty());
  const auto columnsOf = [&](const std::vector<const SubComObj*>& subcommands) {
    std::vector<int> columns;
    for (const SubComObj* subcommand : subcommands) {
      const Token* name = subcommand->nameToken();
      columns.push_back(name == nullptr ? 0
                                        : static_cast<int>(parsed.command().place(*name).column));
    }
    return columns;
  };
  EXPECT_EQ(parsed.spec().getSubComObj("")->nameToken(), nullptr);
  std::vector<const SubComObj*> found;
  parsed.spec().getSubComObj("S", found);
  EXPECT_THAT(columnsOf(found), ElementsAre(8, 11));
  std::vector<const GroupComObj*> groups;
  parsed.spec().getGroupObj(groups, "LEAD");
  ASSERT_THAT(groups, SizeIs(1));
  groups[0]->getSubComObj("T", found);
  EXPECT_THAT(columnsOf(found), ElementsAre(20, 23));
}

TEST(GroupLookup, FindsTheGroupsOfOneLeader) {
  CommandDescriptor command("G");
  GroupComDescriptor group(0, true, "^1");
  group.addSubComDesc({"SELECT", Spec::kKeywordList, true, false}, true);
  command.addGroupDesc(group);
  std::vector<const GroupComObj*> groups = {nullptr};
  const ParsedCommand none(command, ".");
  EXPECT_FALSE(none.spec().getGroupObj(groups, "SELECT"));
  EXPECT_THAT(groups, IsEmpty());
  const ParsedCommand two(command, "/SELECT /SELECT.");
  EXPECT_TRUE(two.spec().getGroupObj(groups, "Select"));
  EXPECT_THAT(groups, SizeIs(2));
  EXPECT_FALSE(two.spec().getGroupObj(groups, "OTHER"));
}

}  // namespace
}  // namespace vornwout
