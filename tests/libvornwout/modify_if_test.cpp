// IF: the conditions of a group, from the command's text to their elements.
#include "libvornwout/modify/modify_if.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;

struct ElementCase {
  std::string text;
  std::string element;
};

struct RefusalCase {
  const char* text;
  std::vector<std::string> calls;
};

/// What "/IF <text>" says and writes, where it is sent although something was said.
struct ReportedRun {
  explicit ReportedRun(const std::string& text) {
    FakeHost host;
    const CommandRun run(outmodify_, "OUTPUT MODIFY /SELECT TABLES /IF " + text + ".", &host);
    calls = run.parserCalls();
    documents = host.modifyDocuments;
  }
  std::vector<std::string> calls;
  std::vector<std::string> documents;
};

TEST(ModifyIf, DeclaresItsSubcommand) {
  EXPECT_THAT(
      modifyGrammarOf("IF"),
      ElementsAre("IF 1 ff", "COMMANDS 2 ft 1", "SUBTYPES 6 ft 2",
                  "LABELS 28 ft 2 (EXACT 6 ft 0) (BEGINS 6 ft 0) (CONTAINS 6 ft 0) (ENDS 6 ft 0)",
                  "INSTANCES 2 ft 2", "VISIBLEONLY 3 ff 0 {NO YES}"));
}

TEST(ModifyIf, WithoutConditionsWritesNothing) {
  for (const char* text :
       {"", "/IF", "/IF COMMANDS", "/IF INSTANCES", "/IF COMMANDS=[]", "/IF COMMANDS=[,]",
        "/IF INSTANCES=[]", "/IF INSTANCES=[,]", "/IF VISIBLEONLY=NO"}) {
    EXPECT_EQ(elementOf(text), "") << text;
  }
}

TEST(ModifyIf, RefusesAListWithoutMembers) {
  for (const char* list : {"[]", "[,]", ","}) {
    EXPECT_THAT(refusalsOf(std::string("/IF SUBTYPES=") + list),
                ElementsAre("ParamValueRequired(SUBTYPES, IF)"))
        << list;
    EXPECT_THAT(refusalsOf(std::string("/IF LABELS=") + list),
                ElementsAre("ParamValueRequired(LABELS, IF)"))
        << list;
  }
}

TEST(ModifyIfCommands, NameACommandAndItsRuns) {
  const ElementCase cases[] = {
      {"'FREQUENCIES'", "<command commandName=\"FREQUENCIES\"/>"},
      {"'FREQUENCIES(2,3)'",
       "<command commandName=\"FREQUENCIES\" instance=\"2\"/>"
       "<command commandName=\"FREQUENCIES\" instance=\"3\"/>"},
      {"'FREQUENCIES(LAST)'", "<command commandName=\"FREQUENCIES\" last=\"true\"/>"},
      {"'f(last)'", "<command commandName=\"f\" last=\"true\"/>"},
      {"'b' 'a(2)' 'b'",
       "<command commandName=\"b\"/><command commandName=\"a\" instance=\"2\"/>"
       "<command commandName=\"b\"/>"},
      {"['a(1)', 'b']", "<command commandName=\"a\" instance=\"1\"/><command commandName=\"b\"/>"},
      {"'a(3,1,3)'",
       "<command commandName=\"a\" instance=\"3\"/><command commandName=\"a\" instance=\"1\"/>"
       "<command commandName=\"a\" instance=\"3\"/>"},
      {"'a(007,2147483647)'",
       "<command commandName=\"a\" instance=\"7\"/>"
       "<command commandName=\"a\" instance=\"2147483647\"/>"},
      {"'T TEST (1)'", "<command commandName=\"T TEST \" instance=\"1\"/>"},
      {"'a)'", "<command commandName=\"a)\"/>"},
  };
  for (const ElementCase& test : cases) {
    EXPECT_EQ(elementOf("/IF COMMANDS=" + test.text), test.element) << test.text;
  }
}

TEST(ModifyIfCommands, WithoutANameDeliberatelyHaveTwoBlanks) {
  const ElementCase cases[] = {
      // The bare word is not tied to the command before it.
      {"'T-TEST' LAST", "<command commandName=\"T-TEST\"/><command  last=\"true\"/>"},
      {"LAST", "<command  last=\"true\"/>"},
      {"last 'a' Last",
       "<command  last=\"true\"/><command commandName=\"a\"/><command  last=\"true\"/>"},
      {"'(2)'", "<command  instance=\"2\"/>"},
      {"''", "<command />"},
  };
  for (const ElementCase& test : cases) {
    EXPECT_EQ(elementOf("/IF COMMANDS=" + test.text), test.element) << test.text;
  }
}

TEST(ModifyIfCommands, DeliberatelySkipWhatIsNeitherQuotedNorLast) {
  const ElementCase cases[] = {
      {"FREQUENCIES", ""},
      {"ALL", ""},
      {"3 (2)", ""},
      {"FREQUENCIES 'a' 3 LASTING", "<command commandName=\"a\"/>"},
      {"'LAST'", "<command commandName=\"LAST\"/>"},
  };
  for (const ElementCase& test : cases) {
    EXPECT_EQ(elementOf("/IF COMMANDS=" + test.text), test.element) << test.text;
  }
}

TEST(ModifyIfCommands, RefuseParenthesesThatDoNotEndThem) {
  const std::string unbalanced = "GenericError(COMMANDS, IF)";
  for (const char* text : {"'F(2'", "'F()'", "'F('", "'F(2)x'", "'F(2) '", "'(' "}) {
    EXPECT_THAT(refusalsOf(std::string("/IF COMMANDS=") + text), ElementsAre(unbalanced)) << text;
  }
  EXPECT_THAT(
      refusalTextsOf("/IF COMMANDS='F(2'"),
      ElementsAre("Unbalanced parentheses in effect, parameter COMMANDS, subcommand IF ..."));
  // The commands behind such a one are still looked at.
  EXPECT_THAT(refusalsOf("/IF COMMANDS='F(' 'a' 'G()' 'H(x)' 'I('"),
              ElementsAre(unbalanced, unbalanced, "ParamNeedIntegerList(IF)"));
}

TEST(ModifyIfCommands, StopAtRunsThatAreNeitherNumbersNorLast) {
  for (const char* text :
       {"'F(x)'", "'F(1, 2)'", "'F(-1)'", "'F(1.5)'", "'F(1;2)'", "'F(LAST,1)'", "'F( LAST)'",
        "'F(1)(2)'", "'F((1))'", "'F(+1)'", "'F(x)' 'G(' 'H(0)'"}) {
    EXPECT_THAT(refusalsOf(std::string("/IF COMMANDS=") + text),
                ElementsAre("ParamNeedIntegerList(IF)"))
        << text;
  }
}

TEST(ModifyIfCommands, SkipRunsThatAreZeroAndDeliberatelySendTheRest) {
  const struct {
    const char* text;
    std::size_t reports;
    const char* element;
  } cases[] = {
      {"F(1,,2)", 1,
       "<command commandName=\"F\" instance=\"1\"/><command commandName=\"F\" instance=\"2\"/>"},
      {"F(1,)", 1, "<command commandName=\"F\" instance=\"1\"/>"},
      {"F(,1)", 1, "<command commandName=\"F\" instance=\"1\"/>"},
      {"F(0,1,00)", 2, "<command commandName=\"F\" instance=\"1\"/>"},
      // With none left it is about any run.
      {"F(0)", 1, "<command commandName=\"F\"/>"},
      {"F(,)", 2, "<command commandName=\"F\"/>"},
      // What no run can be is like zero.
      {"F(2147483648,5)", 1, "<command commandName=\"F\" instance=\"5\"/>"},
      {"F(4294967297)", 1, "<command commandName=\"F\"/>"},
      {"F(99999999999999999999)", 1, "<command commandName=\"F\"/>"},
  };
  for (const auto& test : cases) {
    const std::string literal = test.text;
    const ReportedRun run("COMMANDS='" + literal + "'");
    EXPECT_EQ(run.calls,
              std::vector<std::string>(test.reports, "ParamNeedInteger(" + literal + ", IF)"));
    EXPECT_THAT(run.documents,
                ElementsAre("<modifyOutputObject documentName=\"*\"><modifyEvent tables=\"true\">" +
                            std::string(test.element) + "</modifyEvent></modifyOutputObject>"))
        << literal;
  }
}

TEST(ModifyIf, WritesSubtypesAndLabelsByTheirKinds) {
  const ElementCase cases[] = {
      {"SUBTYPES='a'", "<subtype subtype=\"a\"/>"},
      {"SUBTYPES=['b', 'a' 'b']",
       "<subtype subtype=\"b\"/><subtype subtype=\"a\"/><subtype subtype=\"b\"/>"},
      {"SUBTYPES=''", "<subtype subtype=\"\"/>"},
      {"LABELS=EXACT('a')", "<label expression=\"a\" exact=\"true\"/>"},
      {"LABELS=BEGINS('a')", "<label expression=\"a\" begins=\"true\"/>"},
      {"LABELS=ENDS('a')", "<label expression=\"a\" ends=\"true\"/>"},
      {"LABELS=CONTAINS('a')", "<label expression=\"a\" contains=\"true\"/>"},
      {"LABELS=[exact('b', 'a')]",
       "<label expression=\"b\" exact=\"true\"/><label expression=\"a\" exact=\"true\"/>"},
      {"LABELS=CONTAINS('d') ENDS('c') BEGINS('b') EXACT('a') CONTAINS('e')",
       "<label expression=\"a\" exact=\"true\"/><label expression=\"b\" begins=\"true\"/>"
       "<label expression=\"c\" ends=\"true\"/><label expression=\"d\" contains=\"true\"/>"
       "<label expression=\"e\" contains=\"true\"/>"},
  };
  for (const ElementCase& test : cases) {
    EXPECT_EQ(elementOf("/IF " + test.text), test.element) << test.text;
  }
}

TEST(ModifyIfInstances, ArePositionsOrTheLast) {
  const ElementCase cases[] = {
      {"3", "<instance instance=\"3\"/>"},
      {"LAST", "<instance last=\"true\"/>"},
      {"[2, last 1]",
       "<instance instance=\"2\"/><instance last=\"true\"/><instance instance=\"1\"/>"},
      {"2147483647", "<instance instance=\"2147483647\"/>"},
      // Zero and below are the last one, deliberately.
      {"0", "<instance last=\"true\"/>"},
      {"-1 -7", "<instance last=\"true\"/><instance last=\"true\"/>"},
  };
  for (const ElementCase& test : cases) {
    EXPECT_EQ(elementOf("/IF INSTANCES=" + test.text), test.element) << test.text;
  }
}

TEST(ModifyIfInstances, AreRefusedOneByOneDeliberatelyUnderTheKeywordsSingular) {
  const RefusalCase cases[] = {
      {"FOO", {"InvalidParamValue(FOO, INSTANCES, INSTANCE)"}},
      {"2.5", {"InvalidParamValue(2.5, INSTANCES, INSTANCE)"}},
      {"'3'", {"InvalidParamValue(3, INSTANCES, INSTANCE)"}},
      {"ALL", {"InvalidParamValue(ALL, INSTANCES, INSTANCE)"}},
      {"2147483648", {"InvalidParamValue(2147483648, INSTANCES, INSTANCE)"}},
      {"1 A 2 * LAST",
       {"InvalidParamValue(A, INSTANCES, INSTANCE)", "InvalidParamValue(*, INSTANCES, INSTANCE)"}},
  };
  for (const RefusalCase& test : cases) {
    EXPECT_EQ(refusalsOf(std::string("/IF INSTANCES=") + test.text), test.calls) << test.text;
  }
}

TEST(ModifyIf, WritesItsConditionsInAFixedOrder) {
  EXPECT_EQ(elementOf("/IF INSTANCES=1 LABELS=EXACT('l') SUBTYPES='s' COMMANDS='c'"),
            "<command commandName=\"c\"/><subtype subtype=\"s\"/>"
            "<label expression=\"l\" exact=\"true\"/><instance instance=\"1\"/>");
}

TEST(ModifyIf, MarksItsEventForVisibleObjectsOnly) {
  const ElementCase cases[] = {
      {"/SELECT TABLES /IF VISIBLEONLY=YES", "<modifyEvent tables=\"true\" visibleOnly=\"true\">"},
      {"/SELECT ALL EXCEPT=LOGS /IF VISIBLEONLY='yes'",
       "<modifyEvent all=\"true\" logs=\"false\" visibleOnly=\"true\">"},
      {"/SELECT TABLES /IF VISIBLEONLY=NO", "<modifyEvent tables=\"true\">"},
      {"/SELECT TABLES /IF", "<modifyEvent tables=\"true\">"},
  };
  for (const ElementCase& test : cases) {
    EXPECT_THAT(documentOf(test.text), testing::HasSubstr(test.element + "</modifyEvent>"));
    EXPECT_THAT(documentOf(test.text + " INSTANCES=1"),
                testing::HasSubstr(test.element + "<instance instance=\"1\"/></modifyEvent>"));
  }
}

TEST(ModifyIf, WritesTextsInUtf8AndDeliberatelyUnescaped) {
  EXPECT_EQ(elementOf("/IF COMMANDS='a\"<&>b' SUBTYPES='\"' LABELS=ENDS('a\"<&')"),
            "<command commandName=\"a\"<&>b\"/><subtype subtype=\"\"\"/>"
            "<label expression=\"a\"<&\" ends=\"true\"/>");
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(elementOf("/IF COMMANDS='\xE4(1)' SUBTYPES='\xDF' LABELS=EXACT('\x80')"),
            "<command commandName=\"\xC3\xA4\" instance=\"1\"/><subtype subtype=\"\xC3\x9F\"/>"
            "<label expression=\"\xE2\x82\xAC\" exact=\"true\"/>");
}

TEST(ModifyIf, KnowsALetterFromAParenthesisInEveryEncoding) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  EXPECT_EQ(elementOf("/IF COMMANDS='\x83\x5C(2)'"),
            "<command commandName=\"\xE3\x82\xBD\" instance=\"2\"/>");
}

TEST(ModifyIf, ReportsEveryConditionThatIsWrong) {
  EXPECT_THAT(refusalsOf("/IF INSTANCES=A COMMANDS='F(x)' SUBTYPES='s'"),
              ElementsAre("ParamNeedIntegerList(IF)", "InvalidParamValue(A, INSTANCES, INSTANCE)"));
  const RefusalCase parsers[] = {
      {"SUBTYPES=a", {"ParamNeedLiteral(a, SUBTYPES, IF)"}},
      {"LABELS=EXACT(a)", {"ParamNeedLiteral(a, EXACT, IF)"}},
      {"LABELS=FOO('a')", {"ParamNoSubCom(FOO)"}},
      {"LABELS=EXACT", {"ParenRequired(EXACT)"}},
      {"VISIBLEONLY=MAYBE", {"InvalidParamValue(MAYBE, VISIBLEONLY, IF)"}},
      {"COMMANDS=", {"ParamValueRequired(COMMANDS, IF)"}},
      {"INSTANCES=", {"ParamValueRequired(INSTANCES, IF)"}},
  };
  for (const RefusalCase& test : parsers) {
    EXPECT_EQ(refusalsOf(std::string("/IF ") + test.text), test.calls) << test.text;
  }
}

TEST(ModifyIf, ForgetsTheGroupBefore) {
  const std::string document = documentOf(
      "/SELECT LOGS /IF COMMANDS='c' SUBTYPES='s' INSTANCES=1 VISIBLEONLY=YES "
      "LABELS=EXACT('e') BEGINS('b') ENDS('n') CONTAINS('c') /SELECT LOGS "
      "/SELECT LOGS /IF /SELECT LOGS /IF SUBTYPES='t'");
  EXPECT_THAT(document,
              testing::EndsWith("<instance instance=\"1\"/></modifyEvent>"
                                "<modifyEvent logs=\"true\"></modifyEvent>"
                                "<modifyEvent logs=\"true\"></modifyEvent>"
                                "<modifyEvent logs=\"true\"><subtype subtype=\"t\"/></modifyEvent>"
                                "</modifyOutputObject>"));
}

}  // namespace
}  // namespace vornwout
