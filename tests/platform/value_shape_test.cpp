// The shape of values: for every kind, what is accepted and what is said about the rest.
#include "platform/parser/value_shape.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

ParamDescriptor param(UPSpecTypes::ParamSpec spec, const std::vector<std::string>& values = {},
                      UPSpecTypes::BracketOptions brackets = UPSpecTypes::kBracketsRaw) {
  ParamDescriptor made("P", spec, false, true, brackets);
  for (const std::string& value : values) made.addStringValue(value);
  return made;
}

ParamDescriptor rawBracketParam() {
  return param(UPSpecTypes::kRawTokens, {}, UPSpecTypes::kBracketsOptional);
}
ParamDescriptor bracketNumbersParam() {
  return param(UPSpecTypes::kNumberList, {}, UPSpecTypes::kBracketsOptional);
}
ParamDescriptor rawParam() { return param(UPSpecTypes::kRawTokens, {"YES"}); }
ParamDescriptor freeParam() { return param(UPSpecTypes::kDeclaredValue); }
ParamDescriptor declaredParam() { return param(UPSpecTypes::kDeclaredValue, {"YES", "ALL", "5"}); }
ParamDescriptor stringParam() { return param(UPSpecTypes::kString); }
ParamDescriptor listParam() { return param(UPSpecTypes::kDeclaredList, {"BOLD", "ALL"}); }
ParamDescriptor bracketListParam() {
  return param(UPSpecTypes::kDeclaredList, {"BOLD", "ALL"}, UPSpecTypes::kBracketsOptional);
}
ParamDescriptor literalsParam() {
  return param(UPSpecTypes::kLiteralList, {}, UPSpecTypes::kBracketsOptionalList);
}
ParamDescriptor numberParam() { return param(UPSpecTypes::kNumber); }
ParamDescriptor integerParam() { return param(UPSpecTypes::kInteger); }
ParamDescriptor numbersParam() { return param(UPSpecTypes::kNumberList); }
ParamDescriptor qualifiersParam() {
  ParamDescriptor made = param(UPSpecTypes::kQualifiers);
  made.addQualifDesc({"COLLABEL", UPSpecTypes::kString, false, true});
  made.addQualifDesc({"COLPOSITION", UPSpecTypes::kInteger, false, true});
  made.addQualifDesc({"SYSMIS", UPSpecTypes::kNoValue, false, true});
  return made;
}
ParamDescriptor qualifierListsParam() {
  ParamDescriptor made =
      param(UPSpecTypes::kQualifierLists, {}, UPSpecTypes::kBracketsOptionalList);
  made.addQualifDesc({"EXACT", UPSpecTypes::kLiteralList, false, true});
  made.addQualifDesc({"BEGINS", UPSpecTypes::kLiteralList, false, true});
  return made;
}
ParamDescriptor sizeParam() {
  ParamDescriptor made = param(UPSpecTypes::kMeasure);
  made.addQualifDesc({"INCHES", UPSpecTypes::kNumberList, false, true});
  made.addQualifDesc({"POINTS", UPSpecTypes::kRawTokens, false, true});
  return made;
}
ParamDescriptor locationParam() {
  ParamDescriptor made = param(UPSpecTypes::kMeasure, {"LASTROW", "LASTCOLUMN"});
  made.addQualifDesc({"STARTCELL", UPSpecTypes::kString, false, true});
  return made;
}

struct ShapeCase {
  ParamDescriptor (*param)();
  const char* value;
  std::vector<std::string> reports;
};

void PrintTo(const ShapeCase& row, std::ostream* out) { *out << row.value; }

class ValueShape : public testing::TestWithParam<ShapeCase> {};

TEST_P(ValueShape, IsAcceptedOrRefusedOnceWithItsPlace) {
  CommandDescriptor command("G");
  SubComDescriptor subcommand("S", UPSpecTypes::kKeywords, false, false);
  subcommand.addParamDesc(GetParam().param());
  command.addSubComDesc(subcommand);
  // The value begins in column 8.
  const ParsedCommand parsed(command, std::string("/S P=") + GetParam().value + " .");
  EXPECT_THAT(parsed.reports(), ElementsAreArray(GetParam().reports));
}

const ShapeCase kShapeCases[] = {
    {rawParam, "a ( , ) 'b' *", {}},
    {rawParam, "NO", {}},  // its declared values are for help

    {freeParam, "doc1", {}},
    {freeParam, "'a b'", {}},
    {freeParam, "-5", {}},
    {freeParam, "ALL", {"InvalidParamValue(ALL, P, S)@1:8"}},
    {freeParam, "'ALL'", {}},
    {freeParam, "*", {"InvalidParamValue(*, P, S)@1:8"}},
    {freeParam, "a b", {"UnexpectedToken(b, P)@1:10"}},
    {freeParam, "a, b", {"UnexpectedToken(,, P)@1:9"}},
    {freeParam, "(a)", {"InvalidParamValue((, P, S)@1:8"}},
    {freeParam, "==", {"InvalidParamValue(=, P, S)@1:8"}},

    {declaredParam, "yes", {}},
    {declaredParam, "\"Yes\"", {}},
    {declaredParam, "all", {}},
    {declaredParam, "'all'", {}},
    {declaredParam, "5", {}},
    {declaredParam, "YE", {"InvalidParamValue(YE, P, S)@1:8"}},
    {declaredParam, "''", {"InvalidParamValue(, P, S)@1:8"}},
    {declaredParam, "YES YES", {"UnexpectedToken(YES, P)@1:12"}},
    {declaredParam, "MAYBE not", {"InvalidParamValue(MAYBE, P, S)@1:8"}},
    {declaredParam, "[YES]", {"InvalidParamValue([, P, S)@1:8"}},

    {stringParam, "'a b'", {}},
    {stringParam, "F8.2", {}},
    {stringParam, "12", {}},
    {stringParam, "ALL", {}},
    {stringParam, "*", {}},
    {stringParam, "'a' 'b'", {"UnexpectedToken(b, P)@1:12"}},
    {stringParam, "a, b", {"UnexpectedToken(,, P)@1:9"}},

    {listParam, "bold all", {}},
    {listParam, "BOLD, 'BOLD'", {}},
    {listParam, "[BOLD]", {"InvalidParamValue([, P, S)@1:8"}},
    {listParam,
     "BOLD 5 THIN",
     {"InvalidParamValue(5, P, S)@1:13", "InvalidParamValue(THIN, P, S)@1:15"}},
    {listParam, ",,", {"ParamValueRequired(P, S)@1:8"}},
    {bracketListParam, "[BOLD, ALL]", {}},
    {bracketListParam, "BOLD ALL", {}},
    {bracketListParam, "[]", {"ParamValueRequired(P, S)@1:8"}},
    {bracketListParam, "[,]", {"ParamValueRequired(P, S)@1:8"}},
    {bracketListParam, "[BOLD,]", {}},
    {bracketListParam, "(BOLD)", {"InvalidParamValue((, P, S)@1:8"}},
    {bracketListParam, "[BOLD] BOLD", {"UnexpectedToken(BOLD, P)@1:15"}},

    {literalsParam, "'a' 'b'", {}},
    {literalsParam, "['a', \"b\"]", {}},
    {literalsParam, "['a'] ['b']", {"UnexpectedToken([, P)@1:14"}},
    {literalsParam, "[]", {"ParamValueRequired(P, S)@1:8"}},
    {literalsParam, "[,, ]", {"ParamValueRequired(P, S)@1:8"}},
    {literalsParam, ",", {"ParamValueRequired(P, S)@1:8"}},
    {literalsParam, "['']", {}},
    {rawBracketParam, "[]", {}},
    {rawBracketParam, "[,]", {}},
    {rawBracketParam, ",", {"ParamValueRequired(P, S)@1:8"}},
    {bracketNumbersParam, "[]", {}},
    {bracketNumbersParam, "[,]", {}},
    {literalsParam,
     "[a b 'c' d]",
     {"ParamNeedLiteral(a, P, S)@1:9", "ParamNeedLiteral(d, P, S)@1:17"}},
    {literalsParam, "5", {"ParamNeedLiteral(5, P, S)@1:8"}},

    {numberParam, "5", {}},
    {numberParam, "x", {}},
    {numberParam, "1 2", {"UnexpectedToken(2, P)@1:10"}},
    {numberParam, "1, 2", {"UnexpectedToken(2, P)@1:11"}},
    {numberParam, ",", {"ParamValueRequired(P, S)@1:8"}},
    {integerParam, "1.5", {}},
    {integerParam, "AUTOFIT", {}},
    {integerParam, "1 2", {"UnexpectedToken(2, P)@1:10"}},
    {numbersParam, "1 2, 3 x", {}},
    {numbersParam, ",", {"ParamValueRequired(P, S)@1:8"}},

    {qualifiersParam, "COLLABEL('a')", {}},
    {qualifiersParam, "collabel('a'), COLPOSITION(x) SYSMIS", {}},
    {qualifiersParam, "COLLABLE('a')", {"ParamNoSubCom(COLLABLE)@1:8"}},
    {qualifiersParam, "COLLABEL", {"ParenRequired(COLLABEL)@1:8"}},
    {qualifiersParam, "COLLABEL()", {"ParenRequired(COLLABEL)@1:8"}},
    {qualifiersParam, "SYSMIS(3)", {"ParamNoValue(SYSMIS, P)@1:8"}},
    {qualifiersParam, "'a'", {"UnexpectedToken(a, P)@1:8"}},
    {qualifiersParam,
     "FOO(1) BAR COLLABEL",
     {"ParamNoSubCom(FOO)@1:8", "ParamNoSubCom(BAR)@1:15", "ParenRequired(COLLABEL)@1:19"}},
    {qualifierListsParam, "[EXACT('a' 'b') BEGINS('c')]", {}},
    {qualifierListsParam, "[]", {"ParamValueRequired(P, S)@1:8"}},
    {qualifierListsParam, "[,]", {"ParamValueRequired(P, S)@1:8"}},
    {qualifierListsParam, "EXACT('a'), BEGINS('c', 'd')", {}},
    {qualifierListsParam,
     "EXACT(a) BEGINS(c)",
     {"ParamNeedLiteral(a, EXACT, S)@1:14", "ParamNeedLiteral(c, BEGINS, S)@1:24"}},

    {sizeParam, "2 1 INCHES", {}},
    {sizeParam, "INCHES(2 1)", {}},
    {sizeParam, "inches(2, 1)", {}},
    {sizeParam, "PROPORTIONAL 3 POINTS", {}},
    {sizeParam, "2 1", {}},  // its reader tells what happens without a unit
    {sizeParam, "INCHES", {}},
    {sizeParam, "INCHEZ(2 1)", {"ParamNoSubCom(INCHEZ)@1:8"}},
    {sizeParam, "2 INCHS", {"ParamNoSubCom(INCHS)@1:10"}},
    {sizeParam, "2 1 POINT", {"ParamNoSubCom(POINT)@1:12"}},
    {sizeParam, "2 'INCHS'", {}},
    {sizeParam, "5 PROPORTIONAL", {}},  // a value, and its reader tells about the unit
    {sizeParam, "INCHES 2", {"ParenRequired(INCHES)@1:8"}},
    {sizeParam, "points 2 1", {"ParenRequired(POINTS)@1:8"}},
    {sizeParam, "INCHES(2 (1)) 3 x", {"UnexpectedToken(3, INCHES)@1:22"}},
    {locationParam, "LASTROW", {}},
    {locationParam, "'lastcolumn'", {}},
    {locationParam, "STARTCELL('B4')", {}},
    {locationParam, "'B4' STARTCELL", {}},
    {locationParam, "STARTCELL", {"ParenRequired(STARTCELL)@1:8"}},
    {locationParam, "STARTCELL()", {"ParenRequired(STARTCELL)@1:8"}},
    {locationParam, "STARTCELL('A' 'B')", {"UnexpectedToken(B, STARTCELL)@1:22"}},
    {locationParam, "'B4' STARTCEL", {"ParamNoSubCom(STARTCEL)@1:13"}},
    {locationParam, "'B4' HERE", {"ParamNoSubCom(HERE)@1:13"}},
    {locationParam, "'B4' 5", {"InvalidParamValue(B4, P, S)@1:8"}},
    {locationParam, "'B4' LASTROW", {"InvalidParamValue(B4, P, S)@1:8"}},
    {locationParam, "STARTCELL 'B4'", {"ParenRequired(STARTCELL)@1:8"}},
    {locationParam, "FIRSTROW", {"InvalidParamValue(FIRSTROW, P, S)@1:8"}},
    {locationParam, "LASTROW LASTROW", {"UnexpectedToken(LASTROW, P)@1:16"}},
    {locationParam, "5", {"InvalidParamValue(5, P, S)@1:8"}},
};

INSTANTIATE_TEST_SUITE_P(Kinds, ValueShape, testing::ValuesIn(kShapeCases));

TEST(IsDeclaredValue, TakesWordsQuotedTextsAndTheReservedWordInAnyCase) {
  const TokenizedText text("yes 'YES' all 'aLL' NO * =");
  const ParamDescriptor descriptor = declaredParam();
  std::vector<bool> declared;
  for (const Token& token : text.command().tokens()) {
    declared.push_back(isDeclaredValue(text.command(), descriptor, token));
  }
  EXPECT_THAT(declared, ElementsAre(true, true, true, true, false, false, false));
}

TEST(IsDeclaredValue, OfAnOperatorIsFalseEvenWhenItsTextIsDeclared) {
  const TokenizedText text("A *");
  EXPECT_FALSE(isDeclaredValue(text.command(), param(UPSpecTypes::kDeclaredValue, {"*"}),
                               text.command().tokens()[1]));
}

TEST(ValueShape, MisspeltUnitIsNamedWithTheOneThatIsMeant) {
  CommandDescriptor command("G");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc(sizeParam());
  command.addSubComDesc(main);
  const ParsedCommand parsed(command, "P=2 INCHS.");
  ASSERT_EQ(parsed.records.size(), 1U);
  EXPECT_EQ(parsed.records[0].text, "INCHS does not belong here. Did you mean INCHES?");
}

TEST(Suggestion, IsTheClosestCandidateOrNothing) {
  const std::vector<std::string_view> candidates = {"NAME", "MINIMIZED", "TYPE"};
  EXPECT_EQ(suggestion("NAEM", candidates), "Did you mean NAME?") << "neighbours swapped";
  EXPECT_EQ(suggestion("nam", candidates), "Did you mean NAME?") << "a letter left out";
  EXPECT_EQ(suggestion("NAMES", candidates), "Did you mean NAME?") << "a letter too many";
  EXPECT_EQ(suggestion("MINIMISED", candidates), "Did you mean MINIMIZED?");
  EXPECT_EQ(suggestion("MINMISD", candidates), "") << "two letters left out";
  EXPECT_EQ(suggestion("XYZZY", candidates), "");
  EXPECT_EQ(suggestion("", candidates), "");
  EXPECT_EQ(suggestion("NAME", {}), "");
  EXPECT_EQ(suggestion(std::string(65, 'A'), {std::string_view("A")}), "");
}

}  // namespace
}  // namespace vornwout
