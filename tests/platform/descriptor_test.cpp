// The grammar as data: names, replacement, groups and bounds.
#include "platform/parser/descriptor.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vornwout {
namespace {

using testing::ElementsAre;

ParamDescriptor numberParam() { return {"N", UPSpecTypes::kNumber, false, true}; }

template <typename Descriptor>
std::vector<std::string> namesOf(const std::vector<Descriptor>& descriptors) {
  std::vector<std::string> names;
  for (const Descriptor& descriptor : descriptors) names.push_back(descriptor.name());
  return names;
}

TEST(ParamDescriptor, KeepsWhatItWasMadeFrom) {
  ParamDescriptor param("EXCEPT", UPSpecTypes::kDeclaredList, true, false);
  EXPECT_EQ(param.brackets(), UPSpecTypes::kBracketsRaw);
  param.setBracketOption(UPSpecTypes::kBracketsOptional);
  param.addStringValue("TABLES");
  param.addStringValue("CHARTS");
  EXPECT_EQ(param.name(), "EXCEPT");
  EXPECT_EQ(param.spec(), UPSpecTypes::kDeclaredList);
  EXPECT_TRUE(param.required());
  EXPECT_FALSE(param.standard());
  EXPECT_EQ(param.brackets(), UPSpecTypes::kBracketsOptional);
  EXPECT_THAT(param.values(), ElementsAre("TABLES", "CHARTS"));
}

TEST(ParamDescriptor, NumbersOfTheKindsAreThoseOfTheLanguage) {
  EXPECT_THAT((std::vector<int>{
                  UPSpecTypes::kNoValue, UPSpecTypes::kRawTokens, UPSpecTypes::kDeclaredValue,
                  UPSpecTypes::kString, UPSpecTypes::kDeclaredList, UPSpecTypes::kLiteralList,
                  UPSpecTypes::kNumber, UPSpecTypes::kNumberList, UPSpecTypes::kInteger,
                  UPSpecTypes::kQualifiers, UPSpecTypes::kMeasure, UPSpecTypes::kQualifierLists}),
              ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 26, 27, 28));
  EXPECT_THAT((std::vector<int>{UPSpecTypes::kTokenList, UPSpecTypes::kKeywords,
                                UPSpecTypes::kKeywordList}),
              ElementsAre(0, 1, 2));
}

TEST(ParamDescriptor, ValueMayBeMissingForThreeKindsOnly) {
  for (const int spec : {1, 2, 3, 4, 5, 6, 7, 8, 9, 26, 27, 28}) {
    const ParamDescriptor param("P", static_cast<UPSpecTypes::ParamSpec>(spec), false, true);
    EXPECT_EQ(param.valueMayBeMissing(), spec == 1 || spec == 2 || spec == 26) << spec;
  }
}

TEST(ParamDescriptor, QualifierIsFoundWithoutRegardToCase) {
  ParamDescriptor param("SORT", UPSpecTypes::kQualifiers, false, true);
  param.addQualifDesc({"COLLABEL", UPSpecTypes::kString, false, true});
  ASSERT_NE(param.findQualifier("colLabel"), nullptr);
  EXPECT_EQ(param.findQualifier("colLabel")->name(), "COLLABEL");
  EXPECT_EQ(param.findQualifier("COLLABELS"), nullptr);
  EXPECT_EQ(param.findQualifier(""), nullptr);
}

TEST(Bounds, NotDeclaredAllowEverythingButNan) {
  const ParamDescriptor param = numberParam();
  EXPECT_TRUE(param.withinBounds(-1e308));
  EXPECT_TRUE(param.withinBounds(std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(param.withinBounds(std::nan("")));
}

struct BoundsCase {
  LowerBdryOptions lower;
  UpperBdryOptions upper;
  double value;
  bool within;
};

TEST(Bounds, AreInclusiveOrNotAsDeclared) {
  const double below = std::nextafter(1.0, 0.0);
  const double above = std::nextafter(200.0, 300.0);
  const BoundsCase cases[] = {{kLowerInclusive, kUpperInclusive, 1, true},
                              {kLowerInclusive, kUpperInclusive, 200, true},
                              {kLowerInclusive, kUpperInclusive, below, false},
                              {kLowerInclusive, kUpperInclusive, above, false},
                              {kLowerExclusive, kUpperInclusive, 1, false},
                              {kLowerExclusive, kUpperInclusive, 1.5, true},
                              {kLowerInclusive, kUpperExclusive, 200, false},
                              {kLowerInclusive, kUpperExclusive, 199, true},
                              {kLowerInclusive, kUpperInclusive, std::nan(""), false}};
  for (const BoundsCase& row : cases) {
    ParamDescriptor param = numberParam();
    param.setLowerBoundary(1, row.lower);
    param.setUpperBoundary(200, row.upper);
    EXPECT_EQ(param.withinBounds(row.value), row.within) << row.value;
  }
}

TEST(Bounds, OfOptionOneIncludeTheBoundItself) {
  ParamDescriptor param = numberParam();
  param.setLowerBoundary(1.0, static_cast<LowerBdryOptions>(1));
  param.setUpperBoundary(2.0, static_cast<UpperBdryOptions>(1));
  EXPECT_TRUE(param.withinBounds(1));
  EXPECT_TRUE(param.withinBounds(2));
}

TEST(SubComDescriptor, DeclaringAKeywordAgainReplacesItInItsPlace) {
  SubComDescriptor subcommand("X", UPSpecTypes::kKeywords, false, false);
  subcommand.addParamDesc("WIDTH", UPSpecTypes::kMeasure, false, true);
  subcommand.addParamDesc("FONT", UPSpecTypes::kString, false, true);
  ParamDescriptor bounded("width", UPSpecTypes::kMeasure, false, true);
  bounded.setLowerBoundary(1);
  subcommand.addParamDesc(bounded);
  EXPECT_THAT(namesOf(subcommand.params()), ElementsAre("width", "FONT"));
  ASSERT_NE(subcommand.findParam("WIDTH"), nullptr);
  EXPECT_TRUE(subcommand.findParam("WIDTH")->lowerBoundary().has_value());
}

TEST(SubComDescriptor, SettersChangeWhatTheConstructorSaid) {
  SubComDescriptor subcommand("", UPSpecTypes::kKeywords, false, false);
  subcommand.setSubComName("LINE");
  subcommand.setSubComRequired(true);
  subcommand.setSubComRepeatable(true);
  subcommand.allowSubComEmpty(true);
  EXPECT_EQ(subcommand.name(), "LINE");
  EXPECT_TRUE(subcommand.required());
  EXPECT_TRUE(subcommand.repeatable());
  EXPECT_TRUE(subcommand.emptyAllowed());
}

TEST(GroupComDescriptor, IsLedByTheFirstUnlessAnotherLeads) {
  GroupComDescriptor group(0, true, "Select command ^1...");
  EXPECT_EQ(group.leader(), nullptr);
  group.addSubComDesc({"IF", UPSpecTypes::kKeywords, false, false}, false);
  ASSERT_NE(group.leader(), nullptr);
  EXPECT_EQ(group.leader()->name(), "IF");
  group.addSubComDesc({"SELECT", UPSpecTypes::kKeywordList, true, false}, true);
  EXPECT_EQ(group.leader()->name(), "SELECT");
  group.addSubComDesc({"TABLE", UPSpecTypes::kKeywords, false, false}, false);
  EXPECT_EQ(group.leader()->name(), "SELECT");
  EXPECT_EQ(group.findSubCom("table"), &group.subcommands()[2]);
  EXPECT_EQ(group.findSubCom("TABLES"), nullptr);
  EXPECT_EQ(group.message(), "Select command ^1...");
  EXPECT_EQ(group.kind(), 0);
  EXPECT_TRUE(group.repeatable());
}

TEST(CommandDescriptor, DeclaringASubcommandAgainReplacesItInItsPlace) {
  CommandDescriptor command("OUTPUT X", "Output X");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("NAME", UPSpecTypes::kRawTokens, false, true);
  command.addSubComDesc(main);
  command.addSubComDesc({"PDF", UPSpecTypes::kKeywords, false, false});
  main.addParamDesc("PRINT", UPSpecTypes::kDeclaredValue, false, true);
  command.addSubComDesc(main);
  EXPECT_THAT(namesOf(command.subcommands()), ElementsAre("", "PDF"));
  EXPECT_THAT(namesOf(command.findSubCom("")->params()), ElementsAre("NAME", "PRINT"));
  EXPECT_EQ(command.findSubCom("PNG"), nullptr);
  EXPECT_EQ(command.name(), "OUTPUT X");
  EXPECT_EQ(command.title(), "Output X");
}

TEST(CommandDescriptor, WithoutATitleHasAnEmptyOne) {
  EXPECT_EQ(CommandDescriptor("OUTPUT X").title(), "");
}

}  // namespace
}  // namespace vornwout
