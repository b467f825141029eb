// SELECT and the walk over the groups: types, exceptions, the order of the modifiers, and what
// becomes of the groups behind one that fails.
#include "libvornwout/modify/modify_select.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string event(const std::string& attributes, const std::string& content = "") {
  return "<modifyEvent" + attributes + ">" + content + "</modifyEvent>";
}

std::string wholeOf(const std::string& events) {
  return "<modifyOutputObject documentName=\"*\">" + events + "</modifyOutputObject>";
}

TEST(ModifySelect, DeclaresSelectAtTheHeadOfARepeatedGroup) {
  const CommandDescriptor grammar = grammarOf(outmodify_);
  ASSERT_EQ(grammar.groups().size(), 1U);
  const GroupComDescriptor& group = grammar.groups()[0];
  EXPECT_EQ(group.kind(), 0);
  EXPECT_TRUE(group.repeatable());
  EXPECT_EQ(group.message(), "Select command ^1...");
  ASSERT_NE(group.leader(), nullptr);
  EXPECT_EQ(group.leader()->name(), "SELECT");
  EXPECT_THAT(modifyGrammarOf("SELECT"),
              ElementsAre("SELECT 2 tf", "ALL 1 ft 0", "CHARTS 1 ft 0", "HEADINGS 1 ft 0",
                          "LOGS 1 ft 0", "MODELS 1 ft 0", "TABLES 1 ft 0", "TEXTS 1 ft 0",
                          "TREES 1 ft 0", "WARNINGS 1 ft 0", "OUTLINEHEADERS 1 ft 0",
                          "NOTES 1 ft 0", "UNKNOWN 1 ft 0", "OTHER 1 ft 0", "PAGETITLES 1 ft 0",
                          "EXCEPT 5 ft 1 {CHARTS HEADINGS LOGS MODELS TABLES TEXTS TREES WARNINGS "
                          "OUTLINEHEADERS NOTES UNKNOWN OTHER PAGETITLES}"));
}

TEST(ModifySelect, DeclaresTheModifiersBehindItInTheirOrder) {
  const CommandDescriptor grammar = grammarOf(outmodify_);
  std::vector<std::string> names;
  for (const SubComDescriptor& subcommand : grammar.groups().at(0).subcommands()) {
    names.push_back(subcommand.name());
  }
  EXPECT_THAT(names, ElementsAre("SELECT", "IF", "INDEXING", "DELETEOBJECT", "GRAPHS", "TEXTS",
                                 "OBJECTPROPERTIES", "TABLE", "TABLECELLS"));
}

TEST(ModifySelect, WritesTheTypesOfEachGroup) {
  const struct {
    const char* select;
    const char* attributes;
  } cases[] = {
      {"", ""},
      {"TABLES CHARTS", " charts=\"true\" tables=\"true\""},
      {"=TABLES", " tables=\"true\""},
      {"pagetitles Other UNKNOWN", " unknown=\"true\" other=\"true\" pagetitles=\"true\""},
      {"NOTES OUTLINEHEADERS WARNINGS TREES TEXTS MODELS LOGS HEADINGS",
       " headings=\"true\" logs=\"true\" models=\"true\" texts=\"true\" trees=\"true\""
       " warnings=\"true\" outlineheaders=\"true\" notes=\"true\""},
      {"ALL", " all=\"true\""},
      {"ALL TABLES", " all=\"true\""},
      {"TABLES ALL", " all=\"true\""},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(documentOf(std::string("/SELECT ") + test.select), wholeOf(event(test.attributes)))
        << test.select;
  }
}

TEST(ModifySelect, WritesTheExceptionsInTheirOrder) {
  const struct {
    const char* select;
    const char* attributes;
  } cases[] = {
      {"ALL EXCEPT=TABLES CHARTS", " tables=\"false\" charts=\"false\""},
      {"ALL EXCEPT=[TABLES, CHARTS]", " tables=\"false\" charts=\"false\""},
      {"ALL EXCEPT=CHARTS TABLES CHARTS", " charts=\"false\" tables=\"false\" charts=\"false\""},
      {"ALL TABLES EXCEPT=TABLES", " tables=\"false\""},
      {"EXCEPT=LOGS ALL", " logs=\"false\""},
      {"ALL EXCEPT=headings 'models' TEXTS TREES WARNINGS OUTLINEHEADERS NOTES UNKNOWN OTHER "
       "PAGETITLES",
       " headings=\"false\" models=\"false\" texts=\"false\" trees=\"false\" warnings=\"false\""
       " outlineheaders=\"false\" notes=\"false\" unknown=\"false\" other=\"false\""
       " pagetitles=\"false\""},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(documentOf(std::string("/SELECT ") + test.select),
              wholeOf(event(std::string(" all=\"true\"") + test.attributes)))
        << test.select;
  }
}

TEST(ModifySelect, RefusesAnEmptyListOfExceptions) {
  for (const char* list : {"[]", "[,]", ","}) {
    FakeHost host;
    const CommandRun run(outmodify_, std::string("OUTPUT MODIFY /SELECT ALL EXCEPT=") + list + ".",
                         &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre("ParamValueRequired(EXCEPT, SELECT)")) << list;
    EXPECT_THAT(host.modifyDocuments, IsEmpty()) << list;
  }
}

/// A command that is run with DEBUG, to see its document where it is not sent.
struct DebuggedRun {
  explicit DebuggedRun(const std::string& groups) {
    FakeHost host;
    const CapturedOutput output;
    const CommandRun run(outmodify_, "OUTPUT MODIFY DEBUG " + groups + ".", &host);
    calls = run.parserCalls();
    for (const ParserMessageRecord& message : run.parserMessages) texts.push_back(message.text);
    sent = !host.modifyDocuments.empty();
    const std::string printed = output.text();
    const std::string root = "<modifyOutputObject documentName=\"*\" debug=\"true\">";
    const std::string end = "</modifyOutputObject>\n";
    const std::size_t at = printed.find(end);
    if (!printed.starts_with(root) || at == std::string::npos) {
      ADD_FAILURE() << "printed: " << printed;
      return;
    }
    events = printed.substr(root.size(), at - root.size());
  }
  std::vector<std::string> calls;
  std::vector<std::string> texts;
  std::string events;
  bool sent = false;
};

TEST(ModifySelect, RefusesExceptionsWithoutAll) {
  const DebuggedRun run("/SELECT TABLES EXCEPT=CHARTS /TABLE TABLETITLE='t'");
  EXPECT_THAT(run.calls, ElementsAre("GenericError(SELECT, EXCEPT, ALL)"));
  EXPECT_THAT(run.texts, ElementsAre("Subcommand SELECT invalid keyword EXCEPT unless ALL..."));
  EXPECT_EQ(run.events, event(" tables=\"true\"")) << "neither exceptions nor modifiers";
  EXPECT_FALSE(run.sent);
}

TEST(ModifySelect, LeavesGroupsBehindAFailureTheirTypesOnlyDeliberately) {
  const std::string bad = "/SELECT TABLES /TABLE TLOOK='/no/such/file' ";
  const std::string badEvent = event(" tables=\"true\"");
  const struct {
    const char* condition;
    std::string later;
    std::vector<std::string> laterCalls;
    std::string laterEvents;
  } cases[] = {
      {"types", "/SELECT CHARTS LOGS", {}, event(" charts=\"true\" logs=\"true\"")},
      {"a valid modifier", "/SELECT LOGS /DELETEOBJECT", {}, event(" logs=\"true\"")},
      {"visible only", "/SELECT LOGS /IF VISIBLEONLY=YES", {}, event(" logs=\"true\"")},
      {"an invalid modifier", "/SELECT LOGS /INDEXING INDEXSTART=x", {}, event(" logs=\"true\"")},
      {"exceptions", "/SELECT ALL EXCEPT=LOGS", {}, event(" all=\"true\"")},
      {"exceptions without ALL",
       "/SELECT LOGS EXCEPT=LOGS /SELECT EXCEPT=LOGS",
       {"GenericError(SELECT, EXCEPT, ALL)", "GenericError(SELECT, EXCEPT, ALL)"},
       event(" logs=\"true\"") + event("")},
      {"groups and groups",
       "/SELECT LOGS /TABLE /SELECT ALL /DELETEOBJECT",
       {},
       event(" logs=\"true\"") + event(" all=\"true\"")},
  };
  for (const auto& test : cases) {
    const DebuggedRun run(bad + test.later);
    std::vector<std::string> expected = {"FileNameInvalid(/no/such/file)"};
    expected.insert(expected.end(), test.laterCalls.begin(), test.laterCalls.end());
    EXPECT_EQ(run.calls, expected) << test.condition;
    EXPECT_EQ(run.events, badEvent + test.laterEvents) << test.condition;
    EXPECT_FALSE(run.sent) << test.condition;
  }
}

TEST(ModifySelect, KeepsWhatTheGroupsBeforeAFailureWrote) {
  const DebuggedRun run("/SELECT LOGS /DELETEOBJECT /SELECT TABLES /INDEXING INDEXSTART=x");
  EXPECT_EQ(run.events, event(" logs=\"true\"", "<deleteObject/>") + event(" tables=\"true\""));
  EXPECT_FALSE(run.sent);
}

TEST(ModifySelect, SkipsTheModifiersBehindTheOneThatFails) {
  // In the order of their turns, whatever order the command has.
  const DebuggedRun run(
      "/SELECT TABLES /TEXTS FONTSIZE=x /TABLE TLOOK='/no/such/file' /DELETEOBJECT "
      "/OBJECTPROPERTIES SIZE=1 /INDEXING");
  EXPECT_THAT(run.calls, ElementsAre("InvalidParam(SIZE, OBJECTPROPERTIES)"));
  EXPECT_EQ(run.events, event(" tables=\"true\"",
                              "<indexObject type=\"number\" indexStart=\"1\"/>"
                              "<deleteObject/>"));
}

TEST(ModifySelect, RunsTheModifiersInOneOrder) {
  const std::string content =
      "<instance instance=\"1\"/><indexObject type=\"number\" indexStart=\"1\"/><deleteObject/>"
      "<modifyGraph></modifyGraph><objectProperties/><modifyTable/>"
      "<tableCells body=\"true\" selectColumns=\"both\"/><modifyText/>";
  const std::vector<std::string> subcommands = {"/IF INSTANCES=1",
                                                "/INDEXING",
                                                "/DELETEOBJECT",
                                                "/GRAPHS",
                                                "/OBJECTPROPERTIES",
                                                "/TABLE",
                                                "/TABLECELLS SELECT=[BODY]",
                                                "/TEXTS"};
  std::string forward;
  std::string backward;
  for (const std::string& subcommand : subcommands) {
    forward += subcommand + " ";
    backward = subcommand + " " + backward;
  }
  EXPECT_EQ(elementOf(forward), content);
  EXPECT_EQ(elementOf(backward), content);
}

TEST(ModifySelect, ForgetsEveryModifierOfTheGroupBefore) {
  const std::string everything =
      "/IF INSTANCES=1 VISIBLEONLY=YES /INDEXING /DELETEOBJECT /GRAPHS VIZSTYLESHEET='v' "
      "/OBJECTPROPERTIES VISIBLE=NO OUTLINELABEL='o' SIZE=2 2 INCHES /TABLE TABLETITLE='t' "
      "TABLESUMMARY='s' TRANSPOSE=YES FORMAT=F8.2 TLOOK=NONE SELECTEDLAYER=['a' 1] "
      "SORT=COLLABEL('c') SORTDIRECTION=DESCENDING /TABLECELLS SELECT=[BODY] "
      "/TEXTS TEXT='x'";
  const std::string full = elementOf(everything);
  const std::string document =
      documentOf("/SELECT TABLES " + everything + " /SELECT LOGS /SELECT TABLES " + everything);
  const std::string fullEvent = event(" tables=\"true\" visibleOnly=\"true\"", full);
  EXPECT_EQ(document, wholeOf(fullEvent + event(" logs=\"true\"") + fullEvent));

  const std::string bare = "/IF /INDEXING /GRAPHS /OBJECTPROPERTIES /TABLE /TEXTS";
  EXPECT_EQ(documentOf("/SELECT TABLES " + everything + " /SELECT LOGS " + bare),
            wholeOf(fullEvent + event(" logs=\"true\"", elementOf(bare))));
}

TEST(ModifySelect, WithoutGroupsWritesNothingAndAccepts) {
  EXPECT_EQ(documentOf(""), wholeOf(""));
  EXPECT_EQ(documentOf("/REPORT PRINTREPORT=NO"), wholeOf(""));
}

TEST(ModifySelect, WritesManyGroups) {
  std::string groups;
  std::string events;
  for (int i = 1; i <= 1000; ++i) {
    groups += "/SELECT LOGS /IF INSTANCES=" + std::to_string(i) + "\n";
    events += event(" logs=\"true\"", "<instance instance=\"" + std::to_string(i) + "\"/>");
  }
  EXPECT_TRUE(documentOf(groups) == wholeOf(events));
}

TEST(ModifySelect, LeavesWhatTheParserFindsToIt) {
  const struct {
    const char* text;
    const char* call;
  } cases[] = {
      {"/SELECT FOO", "UnknownParam(FOO, SELECT)"},
      {"/SELECT TABLES TABLES", "ParamRepeated(TABLES, SELECT)"},
      {"/SELECT TABLES=YES", "ParamNoValue(TABLES, SELECT)"},
      {"/SELECT ALL EXCEPT", "ParamValueRequired(EXCEPT, SELECT)"},
      {"/SELECT ALL EXCEPT=FOO", "InvalidParamValue(FOO, EXCEPT, SELECT)"},
      {"/SELECT ALL EXCEPT=ALL", "InvalidParamValue(ALL, EXCEPT, SELECT)"},
      {"/SELECT ALL EXCEPT=LOGS EXCEPT=TABLES", "ParamRepeated(EXCEPT, SELECT)"},
      {"/INDEXING", "SubComNeedsGroup(INDEXING, SELECT)"},
      {"/TABLE /SELECT TABLES", "SubComNeedsGroup(TABLE, SELECT)"},
      {"/SELECT LOGS /TEXTS /TEXTS", "SubComRepeated(TEXTS)"},
  };
  for (const auto& test : cases) {
    FakeHost host;
    const CommandRun run(outmodify_, std::string("OUTPUT MODIFY ") + test.text + ".", &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre(test.call)) << test.text;
    EXPECT_THAT(host.modifyDocuments, IsEmpty()) << test.text;
  }
}

/// A group whose EXCEPT takes what the command's own grammar would not let through.
class LooseExcept {
 public:
  explicit LooseExcept(const std::string& groups) : select_(own_), parsed_(loose(), groups) {
    accepted = select_.populateSpecification(parsed_.spec(), parsed_.messages(), document);
    for (const ParserMessageRecord& record : parsed_.records) {
      std::string call(record.operation);
      for (const std::string& argument : record.arguments) call += " " + argument;
      calls.push_back(call);
    }
  }

  bool accepted = false;
  std::string document;
  std::vector<std::string> calls;

 private:
  static CommandDescriptor loose() {
    SubComDescriptor select("SELECT", UPSpecTypes::kKeywordList, true, false);
    select.addParamDesc("ALL", UPSpecTypes::kNoValue, false, true);
    select.addParamDesc("EXCEPT", UPSpecTypes::kRawTokens, false, true);
    GroupComDescriptor group(0, true, "^1");
    group.addSubComDesc(std::move(select), true);
    CommandDescriptor command("PROBE");
    command.addGroupDesc(std::move(group));
    return command;
  }

  CommandDescriptor own_{"PROBE"};
  ModifySelect select_;
  ParsedCommand parsed_;
};

TEST(ModifySelect, ExaminesEveryExceptionThoughOneIsNoType) {
  const LooseExcept run("/SELECT ALL EXCEPT=FOO logs BAR TABLES /SELECT ALL EXCEPT=FOO.");
  EXPECT_FALSE(run.accepted);
  EXPECT_THAT(run.calls, ElementsAre("InvalidParamValue FOO EXCEPT SELECT",
                                     "InvalidParamValue BAR EXCEPT SELECT"));
  EXPECT_EQ(run.document,
            event(" all=\"true\" logs=\"false\" tables=\"false\"") + event(" all=\"true\""));
}

TEST(ModifySelect, FailsWithoutAWordOfItsOwnWhenTheExceptionsCannotBeRead) {
  const LooseExcept run("/SELECT ALL EXCEPT=( ) /SELECT ALL EXCEPT=LOGS.");
  EXPECT_FALSE(run.accepted);
  EXPECT_THAT(run.calls, IsEmpty());
  EXPECT_EQ(run.document, event(" all=\"true\"") + event(" all=\"true\""));
}

}  // namespace
}  // namespace vornwout
