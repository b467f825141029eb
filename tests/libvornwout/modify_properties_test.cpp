// OUTPUT MODIFY /OBJECTPROPERTIES: its grammar, what it writes, what it refuses, and what it only
// reports.
#include "libvornwout/modify/modify_properties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/text/encoding.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

struct PropertyCase {
  std::string text;  // behind "/OBJECTPROPERTIES "
  std::string attributes;
};

void expectAttributes(const std::vector<PropertyCase>& cases) {
  for (const PropertyCase& test : cases) {
    EXPECT_EQ(elementOf("/OBJECTPROPERTIES " + test.text),
              "<objectProperties" + test.attributes + "/>")
        << test.text;
  }
}

const std::string kInvalidSize = "InvalidParam(SIZE, OBJECTPROPERTIES)";
const std::string kWidth = "Value for WIDTH must be a positive number";
const std::string kHeight = "Value for HEIGHT must be a positive number";

/// The messages as calls, a general one as its text.
std::vector<std::string> messagesOf(const CommandRun& run) {
  std::vector<std::string> messages = run.parserCalls();
  for (std::size_t i = 0; i < messages.size(); ++i) {
    const ParserMessageRecord& record = run.parserMessages[i];
    if (record.operation == "GenericError") messages[i] = record.text;
  }
  return messages;
}

TEST(ModifyProperties, DeclaresItsGrammar) {
  EXPECT_THAT(
      modifyGrammarOf("OBJECTPROPERTIES"),
      ElementsAre("OBJECTPROPERTIES 1 ff", "VISIBLE 3 ft 0 {ASIS YES NO}", "OUTLINELABEL 4 ft 0",
                  "SIZE 27 ft 0 (PERCENT 2 ft 0) (CENTIMETERS 2 ft 0) (INCHES 2 ft 0) "
                  "(POINTS 2 ft 0)"));
}

TEST(ModifyProperties, WritesVisibilityAndLabel) {
  expectAttributes({
      {"", ""},
      {"VISIBLE=ASIS", " visible=\"asis\""},
      {"VISIBLE=yes", " visible=\"yes\""},
      {"VISIBLE='No'", " visible=\"no\""},
      {"OUTLINELABEL='Means'", " label=\"Means\""},
      {"OUTLINELABEL=Means", " label=\"Means\""},
      {"OUTLINELABEL=''", ""},
      {"OUTLINELABEL='<a> & \"b\" ''c'''",
       " label=\"&lt;a&gt; &amp; &quot;b&quot; &apos;c&apos;\""},
      {"SIZE=1 2 POINTS OUTLINELABEL='l' VISIBLE=NO",
       " visible=\"no\" sizeWidth=\"1\" sizeHeight=\"2\" label=\"l\""},
      {"OUTLINELABEL='l' SIZE=1 2 PERCENT VISIBLE=ASIS",
       " visible=\"asis\" sizeWidthPCT=\"1\" sizeHeightPCT=\"2\" label=\"l\""},
  });
  EXPECT_THAT(refusalsOf("/OBJECTPROPERTIES VISIBLE=MAYBE"),
              ElementsAre("InvalidParamValue(MAYBE, VISIBLE, OBJECTPROPERTIES)"));
}

TEST(ModifyProperties, WritesItsLabelInUtf8WithItsDates) {
  {
    const ScopedEncoding encoding(Encoding::find("windows-1252"));
    expectAttributes({{"OUTLINELABEL='\xE4 & \x80'", " label=\"\xC3\xA4 &amp; \xE2\x82\xAC\""}});
  }
  const std::string before = XMLUtilities::insertDateTime(")SDATE");
  const std::string element = elementOf("/OBJECTPROPERTIES OUTLINELABEL='on )SDATE'");
  const std::string after = XMLUtilities::insertDateTime(")SDATE");
  EXPECT_THAT(element, AnyOf("<objectProperties label=\"on " + before + "\"/>",
                             "<objectProperties label=\"on " + after + "\"/>"));
}

TEST(ModifyProperties, ConvertsASizeToPoints) {
  expectAttributes({
      {"SIZE=2 1 INCHES", " sizeWidth=\"144\" sizeHeight=\"72\""},
      {"SIZE=INCHES(2 1)", " sizeWidth=\"144\" sizeHeight=\"72\""},
      {"SIZE=2, 1 inches", " sizeWidth=\"144\" sizeHeight=\"72\""},
      {"SIZE=1 10 CENTIMETERS", " sizeWidth=\"28.3465\" sizeHeight=\"283.465\""},
      {"SIZE=10.5 0.1 POINTS", " sizeWidth=\"10.5\" sizeHeight=\"0.1\""},
      {"SIZE=1234.567 100 POINTS", " sizeWidth=\"1234.57\" sizeHeight=\"100\""},
      {"SIZE=1 0.00001 POINTS", " sizeWidth=\"1\" sizeHeight=\"1e-05\""},
      {"SIZE=50 75.5 PERCENT", " sizeWidthPCT=\"50\" sizeHeightPCT=\"75.5\""},
      {"SIZE=33.333333 0.1 PERCENT", " sizeWidthPCT=\"33.3333\" sizeHeightPCT=\"0.1\""},
  });
}

TEST(ModifyProperties, WritesNothingForAProportionalMember) {
  expectAttributes({
      {"SIZE=PROPORTIONAL 3 CENTIMETERS", " sizeHeight=\"85.0394\""},
      {"SIZE=3 proportional CENTIMETERS", " sizeWidth=\"85.0394\""},
      {"SIZE=PROPORTIONAL PROPORTIONAL POINTS", ""},
      {"SIZE='Proportional' 5 POINTS", " sizeHeight=\"5\""},
      // It becomes 0 percent, deliberately.
      {"SIZE=PROPORTIONAL 50 PERCENT", " sizeHeightPCT=\"50\""},
      {"SIZE=50 PROPORTIONAL PERCENT", " sizeWidthPCT=\"50\""},
  });
}

TEST(ModifyProperties, AcceptsTheLeastAndTheGreatestSizes) {
  expectAttributes({
      {"SIZE=400 400 PERCENT", " sizeWidthPCT=\"400\" sizeHeightPCT=\"400\""},
      {"SIZE=2000 2000 POINTS", " sizeWidth=\"2000\" sizeHeight=\"2000\""},
      {"SIZE=27.7 27.7 INCHES", " sizeWidth=\"1994.4\" sizeHeight=\"1994.4\""},
      {"SIZE=0.01 1 PERCENT", " sizeWidthPCT=\"0.01\" sizeHeightPCT=\"1\""},
      {"SIZE=1 1 POINTS", " sizeWidth=\"1\" sizeHeight=\"1\""},
      // A height may be 0, a width may not, deliberately.
      {"SIZE=1 0 POINTS", " sizeWidth=\"1\""},
      {"SIZE=1 0 PERCENT", " sizeWidthPCT=\"1\""},
  });
}

TEST(ModifyProperties, RefusesASizeOutOfBounds) {
  const std::string manyDigits = "1 " + std::string(400, '9') + " POINTS";
  for (const char* size :
       {"10 1e400 POINTS", "1e999 1e999 PERCENT", "1e999 1 POINTS", "1 1e999 PERCENT",
        "PROPORTIONAL 1e999 INCHES", manyDigits.c_str(), "400.1 1 PERCENT", "1 400.1 PERCENT",
        "500 500 PERCENT", "2000.1 1 POINTS", "1 2000.1 POINTS", "30 1 INCHES", "1 30 INCHES",
        "71 1 CENTIMETERS", "1 71 CENTIMETERS", "PROPORTIONAL 2001 POINTS", "1e308 1 INCHES",
        "3000 3000 POINTS"}) {
    EXPECT_THAT(refusalsOf(std::string("/OBJECTPROPERTIES SIZE=") + size),
                ElementsAre(kInvalidSize))
        << size;
  }
}

TEST(ModifyProperties, RefusesASizeOfOtherThanTwoMembers) {
  for (const char* size : {"1 POINTS", "POINTS", "1 2 3 POINTS", "POINTS(1 2 3)", "POINTS()", "1",
                           "1 2 3", "PROPORTIONAL INCHES", "(1 2) POINTS"}) {
    EXPECT_THAT(refusalsOf(std::string("/OBJECTPROPERTIES SIZE=") + size),
                ElementsAre(kInvalidSize))
        << size;
  }
  EXPECT_THAT(refusalsOf("/OBJECTPROPERTIES SIZE"),
              ElementsAre("ParamValueRequired(SIZE, OBJECTPROPERTIES)"));
  EXPECT_THAT(refusalsOf("/OBJECTPROPERTIES SIZE=MILES(1 2)"), ElementsAre("ParamNoSubCom(MILES)"));
}

TEST(ModifyProperties, IgnoresASizeWithoutAUnitDeliberately) {
  expectAttributes({
      {"SIZE=1 2", ""},
      {"SIZE=x y", ""},
      {"SIZE=99999 99999 VISIBLE=YES", " visible=\"yes\""},
  });
}

TEST(ModifyProperties, OnlyReportsABadMemberOfASizeDeliberately) {
  const struct {
    const char* size;
    std::string message;
    const char* attributes;
  } cases[] = {
      // What was refused stays, and is written when it is above 0.
      {"0.5 1 POINTS", kWidth, " sizeWidth=\"0.5\""},
      {"0.99999 1 POINTS", kWidth, " sizeWidth=\"0.99999\""},
      {"0 1 POINTS", kWidth, ""},
      {"-1 1 INCHES", kWidth, ""},
      {"0.03 1 CENTIMETERS", kWidth, " sizeWidth=\"0.850394\""},
      // The bad width ends the reading before percent are told from points.
      {"0.005 1 PERCENT", kWidth, " sizeWidth=\"0.5\""},
      {"-1e999 1 POINTS", kWidth, ""},
      {"-1e999 1 PERCENT", kWidth, ""},
      {"5 -1e999 POINTS", kHeight, " sizeWidth=\"5\""},
      {"5 -1 POINTS", kHeight, " sizeWidth=\"5\""},
      {"1 -0.001 INCHES", kHeight, " sizeWidth=\"72\""},
      {"5 -1 PERCENT", kHeight, " sizeWidthPCT=\"5\""},
      {"x 1 INCHES", kInvalidSize, ""},
      {"'2' 1 INCHES", kInvalidSize, ""},
      {"1 x INCHES", kInvalidSize, " sizeWidth=\"72\""},
      {"1 * PERCENT", kInvalidSize, " sizeWidthPCT=\"1\""},
      // A bad width hides a bad height.
      {"0 -1 POINTS", kWidth, ""},
      {"x y POINTS", kInvalidSize, ""},
  };
  for (const auto& test : cases) {
    FakeHost host;
    const CommandRun run(
        outmodify_,
        std::string("OUTPUT MODIFY /SELECT TABLES /OBJECTPROPERTIES OUTLINELABEL='l' SIZE=") +
            test.size + ".",
        &host);
    EXPECT_THAT(messagesOf(run), ElementsAre(test.message)) << test.size;
    EXPECT_THAT(host.modifyDocuments,
                ElementsAre("<modifyOutputObject documentName=\"*\"><modifyEvent tables=\"true\">"
                            "<objectProperties" +
                            std::string(test.attributes) +
                            " label=\"l\"/></modifyEvent></modifyOutputObject>"))
        << test.size;
  }
}

TEST(ModifyProperties, ReportsABadHeightBesideAWidthOutOfBounds) {
  FakeHost host;
  const CommandRun run(
      outmodify_, "OUTPUT MODIFY /SELECT TABLES /OBJECTPROPERTIES SIZE=3000 -1 POINTS.", &host);
  EXPECT_THAT(messagesOf(run), ElementsAre(kHeight, kInvalidSize));
  EXPECT_THAT(host.modifyDocuments, IsEmpty());
}

TEST(ModifyProperties, LeavesValuesOfWrongShapeToTheParser) {
  EXPECT_THAT(refusalsOf("/OBJECTPROPERTIES OUTLINELABEL='a' 'b'"),
              ElementsAre("UnexpectedToken(b, OUTLINELABEL)"));
  EXPECT_THAT(refusalsOf("/OBJECTPROPERTIES /OBJECTPROPERTIES"),
              ElementsAre("SubComRepeated(OBJECTPROPERTIES)"));
}

}  // namespace
}  // namespace vornwout
