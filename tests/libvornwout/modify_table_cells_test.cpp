// OUTPUT MODIFY /TABLECELLS: its grammar, what each occurrence writes, and what it refuses.
#include "libvornwout/modify/modify_table_cells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

/// The element of "/TABLECELLS SELECT=[] <text>" has these attributes behind its fixed ones.
struct ChangeCase {
  std::string text;
  std::string attributes;
};

void expectChanges(const std::vector<ChangeCase>& cases) {
  for (const ChangeCase& test : cases) {
    EXPECT_EQ(elementOf("/TABLECELLS SELECT=[] " + test.text),
              "<tableCells selectColumns=\"both\"" + test.attributes + "/>")
        << test.text;
  }
}

struct SelectCase {
  std::string select;  // between the brackets
  std::string attributes;
};

void expectSelections(const std::vector<SelectCase>& cases) {
  for (const SelectCase& test : cases) {
    EXPECT_EQ(elementOf("/TABLECELLS SELECT=[" + test.select + "]"),
              "<tableCells" + test.attributes + " selectColumns=\"both\"/>")
        << test.select;
  }
}

struct RefusalCase {
  std::string text;  // behind "/TABLECELLS "
  std::vector<std::string> messages;
};

void expectRefusals(const std::vector<RefusalCase>& cases) {
  for (const RefusalCase& test : cases) {
    EXPECT_EQ(refusalsOf("/TABLECELLS " + test.text), test.messages) << test.text;
  }
}

const std::string kBadColor = "GenericError(TABLECELLS)";
const std::string kColors =
    " {BLACK BLUE CYAN DARKGRAY DARKGREY GRAY GREY GREEN LIGHTGRAY LIGHTGREY MAGENTA ORANGE PINK "
    "RED WHITE YELLOW RGB}";

TEST(ModifyTableCells, DeclaresItsGrammar) {
  // COLUMNWIDTH is declared twice; what remains is its place of the first time and its bound of the
  // second.
  EXPECT_THAT(
      modifyGrammarOf("TABLECELLS"),
      ElementsAre(
          "TABLECELLS 1 ft",
          "SELECT 2 ft 0 {CORRELATION CORRELATIONS COUNT MEAN MEDIAN PERCENT RESIDUAL RESIDUALS "
          "SIGNIFICANCE BODY HEADERS FOOTNOTES TITLE CAPTION} (POSITION 28 ft 0)",
          "SELECTDIMENSION 3 ft 0 {COLUMNS ROWS BOTH}",
          "SELECTCONDITION 2 ft 0 (ALL 1 ft 0) (SYSMIS 1 ft 0) (TOP 7 ft 0 >=1) "
          "(BOTTOM 9 ft 0 >=1)",
          "COLUMNWIDTH 27 ft 0 >=1 (CENTIMETERS 2 ft 0) (INCHES 2 ft 0) (POINTS 2 ft 0)",
          "APPLYTO 3 ft 0 {CELL COLUMN ROW COLUMNDATA ROWDATA COLUMNHEADER ROWHEADER}",
          "REVERTTODEFAULT 3 ft 0 {NO YES}", "FORMAT 4 ft 0", "FONT 4 ft 0", "FONTSIZE 7 ft 0 >=1",
          "STYLE 5 ft 0 {REGULAR BOLD ITALIC UNDERLINE}", "TEXTCOLOR 2 ft 0" + kColors,
          "BACKGROUNDCOLOR 2 ft 0" + kColors, "REPLACE 2 ft 0"));
}

TEST(ModifyTableCells, SelectsKindsInItsOwnOrder) {
  expectSelections({
      {"", ""},
      {"CORRELATION", " correlation=\"true\""},
      {"CORRELATIONS", " correlation=\"true\""},
      {"COUNT", " count=\"true\""},
      {"MEAN", " mean=\"true\""},
      {"MEDIAN", " median=\"true\""},
      {"PERCENT", " percent=\"true\""},
      {"RESIDUAL", " residual=\"true\""},
      {"RESIDUALS", " residual=\"true\""},
      {"SIGNIFICANCE", " significance=\"true\""},
      {"BODY", " body=\"true\""},
      {"HEADERS", " headers=\"true\""},
      {"FOOTNOTES", " footnotes=\"true\""},
      {"TITLE", " title=\"true\""},
      {"CAPTION", " caption=\"true\""},
      {"mean Mean MEAN", " mean=\"true\""},
      // "body" deliberately stands before "significance".
      {"CAPTION TITLE FOOTNOTES HEADERS BODY SIGNIFICANCE RESIDUAL PERCENT MEDIAN MEAN COUNT "
       "CORRELATION",
       " correlation=\"true\" count=\"true\" mean=\"true\" median=\"true\" percent=\"true\" "
       "residual=\"true\" body=\"true\" significance=\"true\" headers=\"true\" footnotes=\"true\" "
       "title=\"true\" caption=\"true\""},
  });
}

TEST(ModifyTableCells, SelectsLabelsAndPositions) {
  expectSelections({
      // Labels go under a name that says expression, deliberately.
      {"'Mean'", " selectExpression=\"Mean\""},
      {"'MEAN' MEAN", " mean=\"true\" selectExpression=\"MEAN\""},
      {"'b' 'a'", " selectExpression=\"b;a\""},
      {"'a<\"' '&'", " selectExpression=\"a&lt;&quot;;&amp;\""},
      // What a label holds is not told from what stands between labels, deliberately.
      {"'a;b' 'c'", " selectExpression=\"a;b;c\""},
      {"''", " selectExpression=\"\""},
      {"'' 'a' ''", " selectExpression=\";a;\""},
      {"POSITION(3)", " selectPosition=\"3\""},
      {"position(3 1 2)", " selectPosition=\"3;1;2\""},
      {"POSITION(3, 1, 2)", " selectPosition=\"3;1;2\""},
      {"POSITION(1) POSITION(-7 0)", " selectPosition=\"1;-7;0\""},
      {"'a' POSITION(1 2) BODY 'b'",
       " body=\"true\" selectExpression=\"a;b\" selectPosition=\"1;2\""},
  });
}

TEST(ModifyTableCells, RefusesAWrongSelection) {
  const std::string brackets = "SquareBracketRequired(SELECT, TABLECELLS)";
  const std::string integers = "ParamNeedIntegerList(POSITION, TABLECELLS)";
  const std::string parentheses = "ParenRequired(TABLECELLS)";
  const auto invalid = [](const std::string& token) {
    return "InvalidParam(" + token + ", TABLECELLS)";
  };
  expectRefusals({
      {"", {"ParamRequiredForSubCom(SELECT, TABLECELLS)"}},
      {"STYLE=BOLD", {"ParamRequiredForSubCom(SELECT, TABLECELLS)"}},
      {"SELECT", {brackets}},
      {"SELECT=MEAN", {brackets}},
      {"SELECT='a'", {brackets}},
      {"SELECT='a' 'b'", {brackets}},
      {"SELECT=(MEAN)", {brackets}},
      {"SELECT=['a'] 'b'", {brackets}},
      {"SELECT='[' 'a' ']'", {brackets}},
      {"SELECT=[RANGE]", {invalid("RANGE")}},
      {"SELECT=[5]", {invalid("5")}},
      {"SELECT=[ALL]", {invalid("ALL")}},
      {"SELECT=[*]", {invalid("*")}},
      // A comma is a token like any other, deliberately.
      {"SELECT=['a', 'b']", {invalid(",")}},
      {"SELECT=[POSITION]", {parentheses}},
      {"SELECT=[POSITION 1]", {parentheses, invalid("1")}},
      {"SELECT=[POSITION '(' ]", {parentheses}},
      {"SELECT=[POSITION()]", {integers}},
      {"SELECT=[MEAN POSITION() POSITION(1)]", {integers}},
      {"SELECT=[POSITION(a)]", {integers}},
      {"SELECT=[POSITION(1 'a' 2.5 b)]", {integers}},
      {"SELECT=[POSITION(2147483648)]", {integers}},
      {"SELECT=[POSITION((1) 2)]", {integers, invalid("2"), invalid(")")}},
      {"SELECT=[x MEAN y POSITION(z)]", {invalid("x"), invalid("y"), integers}},
  });
}

TEST(ModifyTableCells, SelectsAlongADimension) {
  const struct {
    const char* text;
    const char* columns;
  } cases[] = {{"", "both"},
               {"SELECTDIMENSION=BOTH", "both"},
               {"SELECTDIMENSION=columns", "true"},
               {"SELECTDIMENSION='ROWS'", "false"}};
  for (const auto& test : cases) {
    EXPECT_EQ(elementOf(std::string("/TABLECELLS SELECT=[] ") + test.text),
              std::string("<tableCells selectColumns=\"") + test.columns + "\"/>")
        << test.text;
  }
  expectRefusals({{"SELECT=[] SELECTDIMENSION=LAYERS",
                   {"InvalidParamValue(LAYERS, SELECTDIMENSION, TABLECELLS)"}}});
}

TEST(ModifyTableCells, SelectsUnderACondition) {
  expectChanges({
      {"SELECTCONDITION=ALL", " selectCondition=\"all\""},
      {"SELECTCONDITION='all'", " selectCondition=\"all\""},
      {"SELECTCONDITION=sysmis", " selectCondition=\"missing\""},
      {"SELECTCONDITION=TOP(1)", " selectCondition=\"top(1)\""},
      {"SELECTCONDITION=top(2147483647)", " selectCondition=\"top(2147483647)\""},
      {"SELECTCONDITION=BOTTOM(5)", " selectCondition=\"bottom(5)\""},
      // Two attributes of one name, deliberately, in this order.
      {"SELECTCONDITION=BOTTOM(2) TOP(3)",
       " selectCondition=\"top(3)\" selectCondition=\"bottom(2)\""},
      // Only the first token tells a condition, deliberately.
      {"SELECTCONDITION=ALL SYSMIS", " selectCondition=\"all\""},
      {"SELECTCONDITION=SYSMIS TOP(x)", " selectCondition=\"missing\""},
      {"SELECTCONDITION=TOP(2) ALL SYSMIS", " selectCondition=\"top(2)\""},
      // Nothing is put between the tokens of an expression, deliberately.
      {"SELECTCONDITION=[x < 0.05]", " selectCondition=\"x&lt;0.05\""},
      {"SELECTCONDITION=[ABS(x) >= 3 & x ~= 'a b']",
       " selectCondition=\"ABS(x)&gt;=3&amp;x~=a b\""},
      {"SELECTCONDITION=[TOP(5)]", " selectCondition=\"TOP(5)\""},
      {"SELECTCONDITION=[ALL]", " selectCondition=\"ALL\""},
      {"SELECTCONDITION=['' x]", " selectCondition=\"x\""},
  });
}

TEST(ModifyTableCells, RefusesAWrongCondition) {
  const auto value = [](const std::string& text) {
    return "InvalidParamValue(" + text + ", SELECTCONDITION, TABLECELLS)";
  };
  const std::string top = "ParamNeedInteger(TOP, TABLECELLS)";
  const std::vector<RefusalCase> cases = {
      {"TOP(0)", {top}},
      {"TOP(-1)", {top}},
      {"TOP(1.5)", {top}},
      {"TOP(a)", {top}},
      {"TOP('1')", {top}},
      {"TOP(1 2)", {top}},
      {"TOP()", {top}},
      {"TOP", {top}},
      {"TOP(2147483648)", {top}},
      // The message names TOP for a bad BOTTOM, too, deliberately.
      {"BOTTOM(0)", {top}},
      {"BOTTOM(x)", {top}},
      {"BOTTOM", {top}},
      {"BOTTOM(1.0)", {top}},
      {"TOP(x) BOTTOM(y)", {top, top}},
      {"TOP(1) MIDDLE(2)", {"ParamNoSubCom(MIDDLE)"}},
      {"[]", {value("[]")}},
      {"['']", {value("['']")}},
      {"x", {value("x")}},
      {"x < 5", {value("x < 5")}},
      {"(x < 5)", {value("(x < 5)")}},
      {"[x] < 5", {value("[x] < 5")}},
      {"MIDDLE(2)", {value("MIDDLE(2)")}},
  };
  for (const RefusalCase& test : cases) {
    EXPECT_EQ(refusalsOf("/TABLECELLS SELECT=[] SELECTCONDITION=" + test.text), test.messages)
        << test.text;
  }
  EXPECT_THAT(refusalsOf("/TABLECELLS SELECT=[] SELECTCONDITION"), ElementsAre(value("")));
}

TEST(ModifyTableCells, WritesTheColumnWidthInWholePoints) {
  expectChanges({
      {"COLUMNWIDTH=1 CENTIMETERS", " columnWidth=\"28\""},
      {"COLUMNWIDTH=2.53 centimeters", " columnWidth=\"71\""},
      {"COLUMNWIDTH=100 CENTIMETERS", " columnWidth=\"2834\""},
      {"COLUMNWIDTH=1 INCHES", " columnWidth=\"72\""},
      {"COLUMNWIDTH=INCHES(1.99)", " columnWidth=\"143\""},
      {"COLUMNWIDTH=1 POINTS", " columnWidth=\"1\""},
      {"COLUMNWIDTH=POINTS(99.999)", " columnWidth=\"99\""},
      // The bound is one of points: less than one centimetre is no less than one point.
      {"COLUMNWIDTH=0.04 CENTIMETERS", " columnWidth=\"1\""},
      {"COLUMNWIDTH=2147483647.9 POINTS", " columnWidth=\"2147483647\""},
  });
}

TEST(ModifyTableCells, RefusesAWrongColumnWidth) {
  const struct {
    const char* width;
    const char* value;
  } cases[] = {{"0.5 POINTS", "0.5"},
               {"0 INCHES", "0"},
               {"-1 INCHES", "-1"},
               {"0.03 CENTIMETERS", "0.03"},
               {"2", "2"},
               {"wide", "wide"},
               {"wide POINTS", "wide"},
               {"'2' POINTS", "2"},
               {"1 2 POINTS", "1 2"},
               {"POINTS", ""},
               {"POINTS()", ""},
               {"1e300 INCHES", "1e300"},
               {"3000000000 POINTS", "3000000000"}};
  for (const auto& test : cases) {
    EXPECT_THAT(
        refusalsOf(std::string("/TABLECELLS SELECT=[] COLUMNWIDTH=") + test.width),
        ElementsAre(std::string("InvalidParamValue(") + test.value + ", COLUMNWIDTH, TABLECELLS)"))
        << test.width;
  }
  expectRefusals(
      {{"SELECT=[] COLUMNWIDTH=2 MILES", {"InvalidParamValue(2 MILES, COLUMNWIDTH, TABLECELLS)"}},
       {"SELECT=[] COLUMNWIDTH=MILES(2)", {"ParamNoSubCom(MILES)"}}});
}

TEST(ModifyTableCells, WritesWhereToApplyFormatAndFontInUpperCase) {
  expectChanges({
      {"APPLYTO=CELL", " applyTo=\"CELL\""},
      {"APPLYTO=column", " applyTo=\"COLUMN\""},
      {"APPLYTO='Row'", " applyTo=\"ROW\""},
      {"APPLYTO=COLUMNDATA", " applyTo=\"COLUMNDATA\""},
      {"APPLYTO=ROWDATA", " applyTo=\"ROWDATA\""},
      {"APPLYTO=COLUMNHEADER", " applyTo=\"COLUMNHEADER\""},
      {"APPLYTO=ROWHEADER", " applyTo=\"ROWHEADER\""},
      {"REVERTTODEFAULT=YES", " revertToDefault=\"true\""},
      {"REVERTTODEFAULT=NO", ""},
      {"FORMAT=pct5.1", " format=\"PCT5.1\""},
      {"FONT='Noto Sans'", " font=\"NOTO SANS\""},
      {"FONT=Arial", " font=\"ARIAL\""},
      {"FONT='' FORMAT=''", ""},
      // Neither is escaped, deliberately.
      {"FONT='a&<\"b' FORMAT='>'", " format=\">\" font=\"A&<\"B\""},
  });
  expectRefusals(
      {{"SELECT=[] APPLYTO=TABLE", {"InvalidParamValue(TABLE, APPLYTO, TABLECELLS)"}},
       {"SELECT=[] REVERTTODEFAULT=1", {"InvalidParamValue(1, REVERTTODEFAULT, TABLECELLS)"}},
       {"SELECT=[] FONT=Noto Sans", {"UnexpectedToken(Sans, FONT)"}}});
}

TEST(ModifyTableCells, WritesTheFontSizeWithSixDigitsAtMost) {
  expectChanges({
      {"FONTSIZE=1", " fontSize=\"1\""},
      {"FONTSIZE=10", " fontSize=\"10\""},
      {"FONTSIZE=10.50", " fontSize=\"10.5\""},
      {"FONTSIZE=10.123456", " fontSize=\"10.1235\""},
      {"FONTSIZE=1e6", " fontSize=\"1e+06\""},
      {"FONTSIZE=999999", " fontSize=\"999999\""},
      {"FONTSIZE=1234567", " fontSize=\"1.23457e+06\""},
  });
  for (const char* size : {"0", "0.999", "-1", "x", "'10'", "*"}) {
    EXPECT_THAT(refusalsOf(std::string("/TABLECELLS SELECT=[] FONTSIZE=") + size),
                ElementsAre("ParamNeedNumber(FONTSIZE, TABLECELLS)"))
        << size;
  }
}

TEST(ModifyTableCells, WritesTheStyleInItsOwnOrder) {
  expectChanges({
      {"STYLE=REGULAR", " bold=\"false\" underline=\"false\" italic=\"false\""},
      {"STYLE=BOLD", " bold=\"true\""},
      {"STYLE=ITALIC", " italic=\"true\""},
      {"STYLE=UNDERLINE", " underline=\"true\""},
      {"STYLE=italic bold underline", " bold=\"true\" underline=\"true\" italic=\"true\""},
      {"STYLE=BOLD REGULAR", " bold=\"false\" underline=\"false\" italic=\"false\""},
      {"STYLE=REGULAR BOLD", " bold=\"true\" underline=\"false\" italic=\"false\""},
      {"STYLE=ITALIC, REGULAR, UNDERLINE", " bold=\"false\" underline=\"true\" italic=\"false\""},
  });
  expectRefusals({{"SELECT=[] STYLE=LIGHT", {"InvalidParamValue(LIGHT, STYLE, TABLECELLS)"}}});
}

TEST(ModifyTableCells, WritesColoursOfTextAndBackground) {
  expectChanges({
      {"TEXTCOLOR=BLACK", " textRed=\"0\" textGreen=\"0\" textBlue=\"0\""},
      {"TEXTCOLOR=orange", " textRed=\"255\" textGreen=\"200\" textBlue=\"0\""},
      {"BACKGROUNDCOLOR=RGB(1 2 3)",
       " backgroundRed=\"1\" backgroundGreen=\"2\" backgroundBlue=\"3\""},
      {"BACKGROUNDCOLOR=PINK TEXTCOLOR=RGB(255,0,128)",
       " textRed=\"255\" textGreen=\"0\" textBlue=\"128\" backgroundRed=\"255\" "
       "backgroundGreen=\"175\" backgroundBlue=\"175\""},
  });
  expectRefusals({
      {"SELECT=[] TEXTCOLOR=BROWN", {kBadColor}},
      {"SELECT=[] TEXTCOLOR=RGB(0 0 256)", {kBadColor}},
      {"SELECT=[] TEXTCOLOR=RGB(0 0 1e999)", {kBadColor}},
      {"SELECT=[] TEXTCOLOR=RGB(0 0 -1e999)", {kBadColor}},
      {"SELECT=[] BACKGROUNDCOLOR=GREY", {kBadColor}},
      {"SELECT=[] BACKGROUNDCOLOR=RGB(-1 0 0)", {kBadColor}},
      {"SELECT=[] BACKGROUNDCOLOR", {kBadColor}},
      {"SELECT=[] TEXTCOLOR=BROWN BACKGROUNDCOLOR=BROWN", {kBadColor}},
  });
}

TEST(ModifyTableCells, NamesItselfInTheMessageOfAColour) {
  for (const char* keyword : {"TEXTCOLOR", "BACKGROUNDCOLOR"}) {
    EXPECT_THAT(refusalTextsOf(std::string("/TABLECELLS SELECT=[] ") + keyword + "=BROWN"),
                ElementsAre("Subcommand TABLECELLS: Not a recognized RGB color"))
        << keyword;
  }
}

TEST(ModifyTableCells, ReplacesWithATextOrANumber) {
  expectChanges({
      {"REPLACE='n/a'", " replace=\"n/a\""},
      // A replacement is written as it stands, deliberately.
      {"REPLACE='<&\">'", " replace=\"<&\">\""},
      {"REPLACE='5'", " replace=\"5\""},
      {"REPLACE=5", " replaceValue=\"5\""},
      {"REPLACE=-1", " replaceValue=\"-1\""},
      {"REPLACE=0.1", " replaceValue=\"0.1\""},
      {"REPLACE=10.5", " replaceValue=\"10.5\""},
      {"REPLACE=1234567", " replaceValue=\"1.23457e+06\""},
      {"REPLACE=0.0000123456789", " replaceValue=\"1.23457e-05\""},
      // An empty replacement goes as a number, deliberately.
      {"REPLACE=''", " replaceValue=\"-1\""},
  });
  const struct {
    const char* text;
    const char* value;
  } refused[] = {{"=none", "none"}, {"=*", "*"},     {"='a' 'b'", "a"},
                 {"=5 6", "5"},     {"=('a')", "("}, {"=[5]", "["},
                 {"=ALL", "ALL"},   {"", ""},        {"=1e999", "1e999"}};
  for (const auto& test : refused) {
    EXPECT_THAT(
        refusalsOf(std::string("/TABLECELLS SELECT=[] REPLACE") + test.text),
        ElementsAre(std::string("InvalidParamValue(") + test.value + ", REPLACE, TABLECELLS)"))
        << test.text;
  }
}

TEST(ModifyTableCells, WritesAllAttributesInOneOrder) {
  EXPECT_EQ(elementOf("/TABLECELLS REPLACE='r' BACKGROUNDCOLOR=RGB(4 5 6) TEXTCOLOR=RGB(1 2 3) "
                      "STYLE=REGULAR FONTSIZE=9 FONT=f FORMAT=g REVERTTODEFAULT=YES APPLYTO=ROW "
                      "COLUMNWIDTH=3 POINTS SELECTCONDITION=TOP(2) SELECTDIMENSION=ROWS "
                      "SELECT=[POSITION(1) 'l' MEAN]"),
            "<tableCells mean=\"true\" selectExpression=\"l\" selectPosition=\"1\" "
            "selectColumns=\"false\" selectCondition=\"top(2)\" revertToDefault=\"true\" "
            "bold=\"false\" underline=\"false\" italic=\"false\" columnWidth=\"3\" fontSize=\"9\" "
            "textRed=\"1\" textGreen=\"2\" textBlue=\"3\" backgroundRed=\"4\" "
            "backgroundGreen=\"5\" backgroundBlue=\"6\" applyTo=\"ROW\" format=\"G\" font=\"F\" "
            "replace=\"r\"/>");
}

TEST(ModifyTableCells, WritesItsTextsDeliberatelyInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(elementOf("/TABLECELLS SELECT=['\xE4'] SELECTCONDITION=[x = '\x80'] FONT='\xE4' "
                      "FORMAT='\xF6' REPLACE='\xFC'"),
            "<tableCells selectExpression=\"\xE4\" selectColumns=\"both\" "
            "selectCondition=\"x=\x80\" format=\"\xD6\" font=\"\xC4\" replace=\"\xFC\"/>");
}

TEST(ModifyTableCells, WritesOneElementForEachOccurrence) {
  EXPECT_EQ(elementOf("/TABLECELLS SELECT=[MEAN] STYLE=BOLD SELECTDIMENSION=ROWS "
                      "/TABLECELLS SELECT=['a'] /TABLECELLS SELECT=[COUNT] REPLACE=1"),
            "<tableCells mean=\"true\" selectColumns=\"false\" bold=\"true\"/>"
            "<tableCells selectExpression=\"a\" selectColumns=\"both\"/>"
            "<tableCells count=\"true\" selectColumns=\"both\" replaceValue=\"1\"/>");
}

TEST(ModifyTableCells, KeepsNoOccurrenceForTheNextGroup) {
  EXPECT_EQ(documentOf("/SELECT TABLES /TABLECELLS SELECT=[MEAN] /TABLECELLS SELECT=[COUNT] "
                       "/SELECT LOGS /TABLECELLS SELECT=[BODY] /SELECT CHARTS"),
            "<modifyOutputObject documentName=\"*\"><modifyEvent tables=\"true\">"
            "<tableCells mean=\"true\" selectColumns=\"both\"/>"
            "<tableCells count=\"true\" selectColumns=\"both\"/></modifyEvent>"
            "<modifyEvent logs=\"true\"><tableCells body=\"true\" selectColumns=\"both\"/>"
            "</modifyEvent><modifyEvent charts=\"true\"></modifyEvent></modifyOutputObject>");
}

TEST(ModifyTableCells, ReadsNothingBehindTheFirstMistakeButTheRestOfItsSelection) {
  expectRefusals({
      {"SELECT=[x] SELECTCONDITION=y REPLACE=z", {"InvalidParam(x, TABLECELLS)"}},
      {"SELECT=[] REPLACE=z TEXTCOLOR=BROWN FONTSIZE=0 COLUMNWIDTH=0 SELECTCONDITION=y",
       {"InvalidParamValue(y, SELECTCONDITION, TABLECELLS)"}},
      {"SELECT=[] REPLACE=z TEXTCOLOR=BROWN FONTSIZE=0 COLUMNWIDTH=0",
       {"InvalidParamValue(0, COLUMNWIDTH, TABLECELLS)"}},
      {"SELECT=[] REPLACE=z TEXTCOLOR=BROWN FONTSIZE=0", {"ParamNeedNumber(FONTSIZE, TABLECELLS)"}},
      {"SELECT=[] REPLACE=z BACKGROUNDCOLOR=BROWN", {kBadColor}},
      // Later occurrences are not looked at.
      {"SELECT=[x] /TABLECELLS /TABLECELLS SELECT=[y]", {"InvalidParam(x, TABLECELLS)"}},
      {"SELECT=[MEAN] /TABLECELLS /TABLECELLS SELECT=[y]",
       {"ParamRequiredForSubCom(SELECT, TABLECELLS)"}},
  });
}

TEST(ModifyTableCells, AppendsAttributesOfTextsAndOfIntegers) {
  std::string document = "<x";
  ModifyTableCells::Data::append(document, "name", std::string("a<\"b"));
  ModifyTableCells::Data::append(document, "count", -12);
  EXPECT_EQ(document, "<x name=\"a<\"b\" count=\"-12\"");
}

}  // namespace
}  // namespace vornwout
