// OUTPUT MODIFY /TABLE: its grammar, what it writes, and what it refuses.
#include "libvornwout/modify/modify_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libvornwout/modify/xml/xml_utilities.h"
#include "platform/text/encoding.h"
#include "tests/support/look_folders.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

struct ElementCase {
  std::string text;  // behind "/TABLE "
  std::string element;
};

void expectElements(const std::vector<ElementCase>& cases) {
  for (const ElementCase& test : cases) {
    EXPECT_EQ(elementOf("/TABLE " + test.text), test.element) << test.text;
  }
}

struct RefusalCase {
  std::string text;  // behind "/TABLE "
  std::vector<std::string> messages;
};

void expectRefusals(const std::vector<RefusalCase>& cases) {
  for (const RefusalCase& test : cases) {
    EXPECT_EQ(refusalsOf("/TABLE " + test.text), test.messages) << test.text;
  }
}

TEST(ModifyTable, DeclaresItsGrammar) {
  EXPECT_THAT(
      modifyGrammarOf("TABLE"),
      ElementsAre("TABLE 1 ff", "TABLETITLE 4 ft 0", "TABLESUMMARY 4 ft 0",
                  "TRANSPOSE 3 ft 0 {YES NO}", "FORMAT 4 ft 0", "TLOOK 2 ft 0 {NONE}",
                  "SELECTEDLAYER 2 ft 0", "SORT 26 ft 0 (COLLABEL 4 ft 0) (COLPOSITION 9 ft 0)",
                  "SORTDIRECTION 3 ft 0 {ASCENDING DESCENDING}"));
}

TEST(ModifyTable, WritesEachAttributeUnderItsCondition) {
  expectElements({
      {"", "<modifyTable/>"},
      {"TABLETITLE='Means'", "<modifyTable title=\"Means\"/>"},
      {"TABLETITLE=Means", "<modifyTable title=\"Means\"/>"},
      {"TABLETITLE=12.50", "<modifyTable title=\"12.50\"/>"},
      {"TABLETITLE=''", "<modifyTable/>"},
      {"TABLESUMMARY='of it'", "<modifyTable summary=\"of it\"/>"},
      {"TABLESUMMARY=\"\"", "<modifyTable/>"},
      {"TRANSPOSE=YES", "<modifyTable transpose=\"true\"/>"},
      {"TRANSPOSE=\"yes\"", "<modifyTable transpose=\"true\"/>"},
      {"TRANSPOSE=NO", "<modifyTable/>"},
      {"FORMAT=f8.2", "<modifyTable format=\"F8.2\"/>"},
      {"FORMAT=''", "<modifyTable/>"},
      // The host knows the formats: nothing is checked here, and nothing escaped.
      {"FORMAT='a <b> \"c\"'", "<modifyTable format=\"A <B> \"C\"\"/>"},
      {"TLOOK=NONE", "<modifyTable defaultTableLook=\"true\"/>"},
      {"TLOOK=none", "<modifyTable defaultTableLook=\"true\"/>"},
  });
}

TEST(ModifyTable, WritesAttributesAndChildrenInOneOrder) {
  expectElements({
      {"SELECTEDLAYER=['a' 'b'] SORTDIRECTION=DESCENDING SORT=COLLABEL('c') TLOOK=NONE FORMAT=F8 "
       "TRANSPOSE=YES TABLESUMMARY='s' TABLETITLE='t'",
       "<modifyTable title=\"t\" summary=\"s\" transpose=\"true\" sortLabel=\"c\" "
       "ascending=\"false\" format=\"F8\" defaultTableLook=\"true\">"
       "<layer layer=\"a\" category=\"b\"/></modifyTable>"},
  });
}

TEST(ModifyTable, EscapesTextsOfTheUserOnce) {
  expectElements({
      {"TABLETITLE='a<b & \"c\"' TABLESUMMARY='it''s >'",
       "<modifyTable title=\"a&lt;b &amp; &quot;c&quot;\" summary=\"it&apos;s &gt;\"/>"},
      {"TABLETITLE='&amp;'", "<modifyTable title=\"&amp;amp;\"/>"},
      {"SORT=COLLABEL('<&>')", "<modifyTable sortLabel=\"&lt;&amp;&gt;\" ascending=\"true\"/>"},
      {"SELECTEDLAYER=['<' '\"']",
       "<modifyTable><layer layer=\"&lt;\" category=\"&quot;\"/></modifyTable>"},
  });
}

TEST(ModifyTable, FillsInDatesInItsTitleAndSummaryOnly) {
  const std::string before = XMLUtilities::insertDateTime(")SDATE");
  const std::string element = elementOf(
      "/TABLE TABLETITLE='on )SDATE' TABLESUMMARY=')SDATE!' SORT=COLLABEL(')SDATE') "
      "SELECTEDLAYER=[')SDATE' 1]");
  const std::string after = XMLUtilities::insertDateTime(")SDATE");
  const auto on = [](const std::string& date) {
    return "<modifyTable title=\"on " + date + "\" summary=\"" + date +
           "!\" sortLabel=\")SDATE\" ascending=\"true\">"
           "<layer layer=\")SDATE\" categoryInt=\"1\"/></modifyTable>";
  };
  EXPECT_THAT(element, testing::AnyOf(on(before), on(after)));
}

TEST(ModifyTable, WritesItsTextsDeliberatelyInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  expectElements({
      {"TABLETITLE='\xE4' TABLESUMMARY='\x80'", "<modifyTable title=\"\xE4\" summary=\"\x80\"/>"},
      {"SORT=COLLABEL('\xE4') SELECTEDLAYER=['\xF6' '\xFC']",
       "<modifyTable sortLabel=\"\xE4\" ascending=\"true\">"
       "<layer layer=\"\xF6\" category=\"\xFC\"/></modifyTable>"},
      {"FORMAT='\xE4'", "<modifyTable format=\"\xC4\"/>"},
  });
}

TEST(ModifyTable, SortsByALabelElseByAPosition) {
  expectElements({
      {"SORT", "<modifyTable sortPosition=\"-1\" ascending=\"true\"/>"},
      {"SORT=COLPOSITION(2)", "<modifyTable sortPosition=\"2\" ascending=\"true\"/>"},
      {"SORT=colposition(2147483647)",
       "<modifyTable sortPosition=\"2147483647\" ascending=\"true\"/>"},
      // No bound is declared: the host knows the columns.
      {"SORT=COLPOSITION(-5)", "<modifyTable sortPosition=\"-5\" ascending=\"true\"/>"},
      {"SORT=COLLABEL('Mean')", "<modifyTable sortLabel=\"Mean\" ascending=\"true\"/>"},
      {"SORT=COLLABEL('Mean') SORTDIRECTION=ASCENDING",
       "<modifyTable sortLabel=\"Mean\" ascending=\"true\"/>"},
      {"SORT SORTDIRECTION=descending", "<modifyTable sortPosition=\"-1\" ascending=\"false\"/>"},
      // An empty label is none, deliberately.
      {"SORT=COLLABEL('')", "<modifyTable sortPosition=\"-1\" ascending=\"true\"/>"},
      {"SORT=COLLABEL('') COLPOSITION(3)", "<modifyTable sortPosition=\"3\" ascending=\"true\"/>"},
      // Only a position above 0 contradicts a label, deliberately.
      {"SORT=COLPOSITION(0) COLLABEL('x')", "<modifyTable sortLabel=\"x\" ascending=\"true\"/>"},
      {"SORT=COLLABEL('x'), COLPOSITION(-1)", "<modifyTable sortLabel=\"x\" ascending=\"true\"/>"},
      {"SORTDIRECTION=DESCENDING", "<modifyTable/>"},
  });
}

TEST(ModifyTable, RefusesAWrongSort) {
  expectRefusals({
      {"SORT=COLLABEL('a') COLPOSITION(1)", {"ParamExclusive(COLPOSITION, COLLABEL, SORT)"}},
      {"SORT=COLPOSITION(1) COLLABEL('a')", {"ParamExclusive(COLPOSITION, COLLABEL, SORT)"}},
      {"SORT=COLLABEL(Mean)", {"InvalidParamValue(, COLLABEL, TABLE)"}},
      {"SORT=COLLABEL('a' 'b')", {"InvalidParamValue(, COLLABEL, TABLE)"}},
      // The message repeats the label read so far, deliberately.
      {"SORT=COLLABEL('so far') COLLABEL(b)", {"InvalidParamValue(so far, COLLABEL, TABLE)"}},
      {"SORT=COLPOSITION('2')", {"ParamNeedInteger(COLPOSITION, TABLE)"}},
      {"SORT=COLPOSITION(2.0)", {"ParamNeedInteger(COLPOSITION, TABLE)"}},
      {"SORT=COLPOSITION(2147483648)", {"ParamNeedInteger(COLPOSITION, TABLE)"}},
      {"SORT=COLPOSITION(1 2)", {"ParamNeedInteger(COLPOSITION, TABLE)"}},
      // All qualifiers are looked at.
      {"SORT=COLLABEL(a) COLPOSITION(b) COLLABEL('c') COLPOSITION(4)",
       {"InvalidParamValue(, COLLABEL, TABLE)", "ParamNeedInteger(COLPOSITION, TABLE)",
        "ParamExclusive(COLPOSITION, COLLABEL, SORT)"}},
      {"SORT=COLUMN(1)", {"ParamNoSubCom(COLUMN)"}},
      {"SORT=COLPOSITION(b) SORTDIRECTION=ASCENDING", {"ParamNeedInteger(COLPOSITION, TABLE)"}},
      {"SORTDIRECTION=UP", {"InvalidParamValue(UP, SORTDIRECTION, TABLE)"}},
  });
}

TEST(ModifyTable, WritesLayersByKindOfPairDeliberately) {
  const auto layers = [](const std::string& children) {
    return "<modifyTable>" + children + "</modifyTable>";
  };
  const std::string strStr = "<layer layer=\"a\" category=\"b\"/>";
  const std::string strInt = "<layer layer=\"a\" categoryInt=\"2\"/>";
  const std::string intStr = "<layer layerInt=\"1\" category=\"b\"/>";
  const std::string intInt = "<layer layerInt=\"1\" categoryInt=\"2\"/>";
  expectElements({
      {"SELECTEDLAYER=['a' 'b']", layers(strStr)},
      {"SELECTEDLAYER=['a' 2]", layers(strInt)},
      {"SELECTEDLAYER=[1 'b']", layers(intStr)},
      {"SELECTEDLAYER=[1 2]", layers(intInt)},
      {"SELECTEDLAYER=[1 2 1 'b' 'a' 2 'a' 'b']", layers(strStr + strInt + intStr + intInt)},
      {"SELECTEDLAYER=[1 'b' 'a' 'b' 1 2 'a' 2]", layers(strStr + strInt + intStr + intInt)},
      // Within a kind the order is the command's.
      {"SELECTEDLAYER=[9 8 'z' 'y' 7 6 'a' 'b']",
       layers(
           "<layer layer=\"z\" category=\"y\"/>" + strStr +
           "<layer layerInt=\"9\" categoryInt=\"8\"/><layer layerInt=\"7\" categoryInt=\"6\"/>")},
      {"SELECTEDLAYER=[2147483647 1]",
       layers("<layer layerInt=\"2147483647\" categoryInt=\"1\"/>")},
      {"SELECTEDLAYER=[ALL LAST]", layers("<layer layerInt=\"0\" categoryInt=\"0\"/>")},
      {"SELECTEDLAYER=[all last]", layers("<layer layerInt=\"0\" categoryInt=\"0\"/>")},
      {"SELECTEDLAYER=[ALL 'b' 'a' LAST]",
       layers("<layer layer=\"a\" categoryInt=\"0\"/><layer layerInt=\"0\" category=\"b\"/>")},
      // In quotes a keyword is a label.
      {"SELECTEDLAYER=['ALL' 'LAST']", layers("<layer layer=\"ALL\" category=\"LAST\"/>")},
      // An empty label counts as position -1, deliberately.
      {"SELECTEDLAYER=['' 2]", layers("<layer layerInt=\"-1\" categoryInt=\"2\"/>")},
      {"SELECTEDLAYER=['a' '']", layers("<layer layer=\"a\" categoryInt=\"-1\"/>")},
      {"SELECTEDLAYER=['' '']", layers("<layer layerInt=\"-1\" categoryInt=\"-1\"/>")},
  });
}

TEST(ModifyTable, RefusesAWrongLayer) {
  const std::string needsInteger = "ParamNeedInteger(SELECTEDLAYER, TABLE)";
  const std::string invalid = "InvalidParam(SELECTEDLAYER, TABLE)";
  const std::string brackets = "SquareBracketRequired(SELECTEDLAYER, TABLE)";
  const auto value = [](const std::string& text) {
    return "InvalidParamValue(" + text + ", SELECTEDLAYER, TABLE)";
  };
  expectRefusals({
      {"SELECTEDLAYER", {value("")}},
      {"SELECTEDLAYER=[]", {value("")}},
      {"SELECTEDLAYER='a' 'b'", {value("")}},
      {"SELECTEDLAYER=['a']", {value("]")}},
      {"SELECTEDLAYER=['a' 1 2]", {value("]")}},
      {"SELECTEDLAYER='a' 1 2", {value("2")}},
      {"SELECTEDLAYER='a' 1 'b' 2", {brackets}},
      {"SELECTEDLAYER=('a' 1)", {brackets}},
      {"SELECTEDLAYER=['a' 1] 2 3", {brackets}},
      {"SELECTEDLAYER=1 2 ['a' 1]", {brackets}},
      // A quoted bracket is a text.
      {"SELECTEDLAYER='[' 'a' 1 ']'", {brackets}},
      // Commas are tokens like any other, deliberately.
      {"SELECTEDLAYER=['a', 1]", {value("]")}},
      {"SELECTEDLAYER=['a', 1,]", {invalid, invalid}},
      {"SELECTEDLAYER=[0 1]", {needsInteger}},
      {"SELECTEDLAYER=[1 0]", {needsInteger}},
      {"SELECTEDLAYER=[-1 'b']", {needsInteger}},
      {"SELECTEDLAYER=[1.5 1]", {invalid}},
      {"SELECTEDLAYER=[2147483648 1]", {invalid}},
      {"SELECTEDLAYER=[LAST 1]", {invalid}},
      {"SELECTEDLAYER=[1 ALL]", {invalid}},
      {"SELECTEDLAYER=[LAST ALL]", {invalid, invalid}},
      {"SELECTEDLAYER=[a b]", {invalid, invalid}},
      // A bad pair does not stop the reading.
      {"SELECTEDLAYER=[0 x 'a' 'b' 1 0]", {needsInteger, invalid, needsInteger}},
  });
}

TEST(ModifyTable, ReadsLayersWhateverCameBeforeButNoSortAfterABadLook) {
  const LookFolders folders;
  const std::string noFile = "FileNameInvalid(nowhere)";
  expectRefusals({
      {"TLOOK='nowhere' SORT=COLPOSITION(x) SORTDIRECTION=DESCENDING", {noFile}},
      {"TLOOK='nowhere' SORT=COLPOSITION(x) SELECTEDLAYER=[1 0]",
       {noFile, "ParamNeedInteger(SELECTEDLAYER, TABLE)"}},
      {"SORT=COLPOSITION(x) SELECTEDLAYER=[1 2 3]",
       {"ParamNeedInteger(COLPOSITION, TABLE)", "InvalidParamValue(], SELECTEDLAYER, TABLE)"}},
      // Good layers do not heal what was refused.
      {"SELECTEDLAYER=['a' 1] TLOOK='nowhere'", {noFile}},
  });
}

TEST(ModifyTable, EmbedsATableLookFromItsStartTagOn) {
  const LookFolders folders;
  const std::string plain = folders.write("plain.qtt", "no look & <all>\n");
  const std::string absolute = folders.write(
      "full.qtt",
      "<?xml version=\"1.0\"?>\n<!-- x --><tableProperties a=\"1\"/><tableProperties/>\n");
  folders.install("Blue.qtt", "<tableProperties>installed</tableProperties>");
  folders.keepForUser("Mine.qtt", "\xEF\xBB\xBF<tableProperties/>");
  folders.install("NONE.qtt", "<tableProperties>named none</tableProperties>");
  const auto look = [](const std::string& content) {
    return "<modifyTable><tableLook>" + content + "</tableLook></modifyTable>";
  };
  const std::string full = look("<tableProperties a=\"1\"/><tableProperties/>\n");
  const std::string blue = look("<tableProperties>installed</tableProperties>");
  expectElements({
      {"TLOOK='" + absolute + "'", full},
      {"TLOOK='full.qtt'", full},
      {"TLOOK=full.qtt", full},
      {"TLOOK='looks/full.qtt'", full},
      {"TLOOK='plain.qtt'", look("no look & <all>\n")},
      {"TLOOK='Blue'", blue},
      {"TLOOK=Blue", blue},
      {"TLOOK='Mine'", look("<tableProperties/>")},
      // In quotes NONE is a file of that name.
      {"TLOOK='NONE'", look("<tableProperties>named none</tableProperties>")},
      {"TLOOK='Blue' SELECTEDLAYER=[1 2] TABLETITLE='t'",
       "<modifyTable title=\"t\"><layer layerInt=\"1\" categoryInt=\"2\"/>"
       "<tableLook><tableProperties>installed</tableProperties></tableLook></modifyTable>"},
  });
}

TEST(ModifyTable, RefusesATableLookThatIsNone) {
  const LookFolders folders;
  folders.write("empty.qtt", "");
  folders.install("Chart.qgt", "<template/>");
  expectRefusals({
      {"TLOOK='nowhere'", {"FileNameInvalid(nowhere)"}},
      {"TLOOK=nowhere", {"FileNameInvalid(nowhere)"}},
      {"TLOOK='NONE'", {"FileNameInvalid(NONE)"}},
      {"TLOOK='empty.qtt'", {"FileNameInvalid(empty.qtt)"}},
      {"TLOOK='Chart'", {"FileNameInvalid(Chart)"}},
      {"TLOOK=''", {"FileNameInvalid()"}},
      {"TLOOK=\"\"", {"FileNameInvalid()"}},
      {"TLOOK", {"FileNameInvalid()"}},
      {"TLOOK=NONE NONE", {"FileNameInvalid(NONE NONE)"}},
      {"TLOOK=['a' 'b']", {"FileNameInvalid(['a' 'b'])"}},
  });
}

TEST(ModifyTable, TakesNoFileWithoutANameForAValueOfNoneOrSeveralTokens) {
  const LookFolders folders;
  folders.install(".qtt", "<tableProperties/>");
  expectRefusals({
      {"TLOOK=Blue Sky", {"FileNameInvalid(Blue Sky)"}},
      {"TLOOK", {"FileNameInvalid()"}},
  });
}

TEST(ModifyTable, LeavesValuesOfWrongShapeToTheParser) {
  expectRefusals({
      {"TABLETITLE='a' 'b'", {"UnexpectedToken(b, TABLETITLE)"}},
      {"FORMAT", {"ParamValueRequired(FORMAT, TABLE)"}},
      {"TRANSPOSE=MAYBE", {"InvalidParamValue(MAYBE, TRANSPOSE, TABLE)"}},
      {"TABLETITLE='a' TABLETITLE='b'", {"ParamRepeated(TABLETITLE, TABLE)"}},
      {"/TABLE", {"SubComRepeated(TABLE)"}},
  });
}

}  // namespace
}  // namespace vornwout
