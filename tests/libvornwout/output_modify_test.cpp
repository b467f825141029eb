// OUTPUT MODIFY: its own grammar, what it hands to the host, and what it makes of the answer.
#include <functional>
#include <new>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/adapter/go_to_caller.h"
#include "platform/message/parser_message.h"
#include "platform/pivot/bp_procedure.h"
#include "platform/text/encoding.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/modify_run.h"
#include "tests/support/table_rows.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kOpened = "open Output Modify 2";
constexpr const char* kClosed = "close Output Modify";
constexpr const char* kEmptyDocument =
    "<modifyOutputObject documentName=\"*\"></modifyOutputObject>";

void expectNothingLeft() {
  EXPECT_EQ(BpProcedure::current(), nullptr);
  EXPECT_EQ(ParserMessage::current(), nullptr);
  EXPECT_EQ(CurrentCommand::current(), nullptr);
  EXPECT_EQ(GetAdapter(), nullptr);
  EXPECT_THAT(outputSinks(), IsEmpty());
}

/// A run with a host that answers `answer`.
struct AnsweredRun : CommandRun {
  explicit AnsweredRun(const std::string& text, const std::string& answer = "") {
    host.modifyAnswer = answer;
    host.whenModified = [this] { events.push_back("modify"); };
    run(outmodify_, text, &host);
  }
  FakeHost host;
};

/// What the host's operation throws, by its kind.
struct ThrowingRun : CommandRun {
  explicit ThrowingRun(std::function<void()> thrower,
                       const std::string& text = "OUTPUT MODIFY /REPORT PRINTREPORT=YES.") {
    host.modifyAnswer = "(3,2,1) Invalid format (F99)";
    host.whenModified = std::move(thrower);
    run(outmodify_, text, &host);
  }
  FakeHost host;
};

TEST(OutputModify, DeclaresItsMainSubcommandAndItsReport) {
  const CommandDescriptor grammar = grammarOf(outmodify_);
  EXPECT_EQ(grammar.name(), "OUTPUT MODIFY");
  ASSERT_EQ(grammar.subcommands().size(), 2U);
  const SubComDescriptor& main = grammar.subcommands()[0];
  EXPECT_EQ(main.name(), "");
  EXPECT_EQ(main.spec(), UPSpecTypes::kKeywords);
  EXPECT_FALSE(main.required() || main.repeatable());
  ASSERT_EQ(main.params().size(), 2U);
  EXPECT_EQ(describe(main.params()[0]), "NAME 2 ft 0");
  EXPECT_EQ(describe(main.params()[1]), "DEBUG 2 ft 0");
  const SubComDescriptor& report = grammar.subcommands()[1];
  EXPECT_EQ(report.name(), "REPORT");
  EXPECT_EQ(report.spec(), UPSpecTypes::kKeywords);
  EXPECT_FALSE(report.required() || report.repeatable());
  ASSERT_EQ(report.params().size(), 1U);
  EXPECT_EQ(describe(report.params()[0]), "PRINTREPORT 3 ft 0 {NO YES}");
  EXPECT_EQ(grammar.groups().size(), 1U);
}

TEST(OutputModify, NamesTheDocument) {
  const struct {
    const char* text;
    const char* name;
  } cases[] = {
      {"", "*"},
      {"NAME=*", "*"},
      {"NAME=ALL", ""},
      {"name=all", ""},
      {"NAME='ALL'", "ALL"},
      {"NAME=doc1", "doc1"},
      {"NAME='my doc'", "my doc"},
      {"NAME='a&b'", "a&amp;b"},
      {"NAME='<a> \"b\" &amp;'", "&lt;a&gt; &quot;b&quot; &amp;amp;"},
      {"NAME=\"it's\"", "it&apos;s"},
      {"NAME=''", ""},
      // What is no one text is no name, and so like ALL, deliberately.
      {"NAME", ""},
      {"NAME=a b", ""},
      {"NAME=(a)", ""},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(documentOf(test.text), std::string("<modifyOutputObject documentName=\"") +
                                         test.name + "\"></modifyOutputObject>")
        << test.text;
  }
}

TEST(OutputModify, TakesTheNameInTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(documentOf("NAME='\xE4&'"),
            "<modifyOutputObject documentName=\"\xC3\xA4&amp;\"></modifyOutputObject>");
}

TEST(OutputModify, SendsItsDocumentOnceBehindTheFlush) {
  const AnsweredRun run("OUTPUT MODIFY /SELECT LOGS.");
  EXPECT_THAT(run.events, ElementsAre(kOpened, "flush", "modify", kClosed));
  EXPECT_THAT(run.host.modifyDocuments,
              ElementsAre("<modifyOutputObject documentName=\"*\"><modifyEvent logs=\"true\">"
                          "</modifyEvent></modifyOutputObject>"));
  EXPECT_THAT(run.host.requests, IsEmpty()) << "the document is the whole request";
  expectNothingLeft();
}

TEST(OutputModify, GivesItsMessagesItsNameAndTitle) {
  struct NamedRun : CommandRun {
    void logFlushed() override {
      names = {ParserMessage::current()->commandName(), ParserMessage::current()->procedureTitle()};
    }
    std::vector<std::string> names;
  };
  FakeHost host;
  NamedRun run;
  run.run(outmodify_, "OUTPUT MODIFY.", &host);
  EXPECT_THAT(run.names, ElementsAre("OUTPUT MODIFY", "Output Modify"));
}

TEST(OutputModify, NeedsNoOutputController) {
  FakeHost host;
  host.hasController = false;
  const CommandRun run(outmodify_, "OUTPUT MODIFY.", &host);
  EXPECT_THAT(run.outputMessages, IsEmpty());
  EXPECT_THAT(host.modifyDocuments, ElementsAre(kEmptyDocument));
}

TEST(OutputModify, WithoutAdapterIsNotImplementedUnlessTheParserRefusesIt) {
  const CapturedOutput output;
  const CommandRun valid(outmodify_, "OUTPUT MODIFY DEBUG /SELECT TABLES EXCEPT=LOGS.", nullptr);
  EXPECT_THAT(
      valid.events,
      ElementsAre(kOpened, "flush", "output OUTPUT MODIFY currently not implemented.", kClosed));
  ASSERT_EQ(valid.outputMessages.size(), 1U);
  EXPECT_EQ(valid.outputMessages[0].message.text, "^1 currently not implemented.");
  EXPECT_EQ(valid.outputMessages[0].level, 3);

  const CommandRun refused(outmodify_, "OUTPUT MODIFY DEBUG /SELECT FOO.", nullptr);
  EXPECT_THAT(refused.events, ElementsAre(kOpened, "parser UnknownParam", "flush", kClosed));
  EXPECT_EQ(output.text(), "");
}

TEST(OutputModify, EndsAtWhatTheParserRefuses) {
  const struct {
    const char* text;
    std::vector<std::string> calls;
  } cases[] = {
      {"NAME=", {"ParamValueRequired(NAME, )"}},
      {"NAME=a NAME=b", {"ParamRepeated(NAME, )"}},
      {"/REPORT PRINTREPORT=MAYBE", {"InvalidParamValue(MAYBE, PRINTREPORT, REPORT)"}},
      {"/REPORT /REPORT", {"SubComRepeated(REPORT)"}},
      // The groups are not read.
      {"/REPORT PRINTREPORT=MAYBE /SELECT LOGS /INDEXING INDEXSTART=x",
       {"InvalidParamValue(MAYBE, PRINTREPORT, REPORT)"}},
  };
  for (const auto& test : cases) {
    const CapturedOutput output;
    const AnsweredRun run(std::string("OUTPUT MODIFY ") + test.text + " .", "(3,2,1)");
    EXPECT_EQ(run.parserCalls(), test.calls) << test.text;
    EXPECT_THAT(run.host.modifyDocuments, IsEmpty()) << test.text;
    EXPECT_EQ(run.events.end()[-2], "flush") << test.text;
    EXPECT_EQ(output.text(), "") << test.text;
  }
}

TEST(OutputModify, SendsNothingWhenAGroupFails) {
  const AnsweredRun run(
      "OUTPUT MODIFY /REPORT PRINTREPORT=YES /SELECT LOGS /INDEXING INDEXSTART=x.",
      "(3,2,1) Invalid font (f)");
  EXPECT_THAT(run.host.modifyDocuments, IsEmpty());
  EXPECT_THAT(run.events, ElementsAre(kOpened, "flush", "parser ParamNeedInteger", kClosed));
  EXPECT_THAT(run.tables, IsEmpty());
}

TEST(OutputModifyDebug, PrintsTheDocumentAndTheAnswer) {
  // Whatever value DEBUG is given, deliberately.
  for (const char* debug : {"DEBUG", "debug=YES", "DEBUG=NO", "DEBUG=1 2"}) {
    const CapturedOutput output;
    const AnsweredRun run(std::string("OUTPUT MODIFY ") + debug + " /SELECT ALL.", "(1,2)\nb");
    EXPECT_EQ(output.text(),
              "<modifyOutputObject documentName=\"*\" debug=\"true\"><modifyEvent all=\"true\">"
              "</modifyEvent></modifyOutputObject>\n\n\nReturned Value is : (1,2)\nb\n")
        << debug;
    EXPECT_EQ(run.host.modifyDocuments.size(), 1U);
  }
}

TEST(OutputModifyDebug, PrintsTheDocumentBeforeTheHostHasIt) {
  const CapturedOutput output;
  std::string printed;
  const ThrowingRun run([&] { printed = output.text(); }, "OUTPUT MODIFY DEBUG.");
  EXPECT_EQ(printed,
            "<modifyOutputObject documentName=\"*\" debug=\"true\"></modifyOutputObject>\n");
}

TEST(OutputModifyDebug, PrintsTheDocumentThoughItIsNotSent) {
  const CapturedOutput output;
  const AnsweredRun run("OUTPUT MODIFY DEBUG /SELECT LOGS /INDEXING INDEXSTART=x.", "(3,2,1)");
  EXPECT_EQ(output.text(),
            "<modifyOutputObject documentName=\"*\" debug=\"true\"><modifyEvent logs=\"true\">"
            "</modifyEvent></modifyOutputObject>\n");
  EXPECT_THAT(run.host.modifyDocuments, IsEmpty());
}

TEST(OutputModifyDebug, PrintsAnEmptyAnswerWhenTheHostFails) {
  const CapturedOutput output;
  const ThrowingRun run([] { throw std::runtime_error("gone"); }, "OUTPUT MODIFY DEBUG.");
  EXPECT_THAT(output.text(),
              testing::EndsWith("</modifyOutputObject>\n\n\nReturned Value is : \n"));
}

TEST(OutputModifyDebug, PrintsNothingUnlessAsked) {
  const CapturedOutput output;
  const AnsweredRun run("OUTPUT MODIFY NAME=DEBUG /SELECT ALL.", "(1,2,3)");
  EXPECT_EQ(output.text(), "");
}

TEST(OutputModifyFailure, IsReportedByWhatTheHostThrows) {
  const struct {
    const char* condition;
    std::function<void()> thrower;
    const char* message;
  } cases[] = {
      {"an exception", [] { throw std::runtime_error("disk full"); },
       "Failed to modify output disk full... (3)"},
      {"an exception's child", [] { throw std::out_of_range("^1 & <x>"); },
       "Failed to modify output ^1 & <x>... (3)"},
      {"no memory", [] { throw std::bad_alloc(); },
       "Failed to modify output std::bad_alloc... (3)"},
      {"a character string", [] { throw "no such thing"; },
       "Failed to modify output no such thing... (3)"},
      {"a character string to write to",
       [] {
         static char text[] = "own text";
         throw static_cast<char*>(text);
       },
       "Failed to modify output own text... (3)"},
      {"a string", [] { throw std::string("a string"); },
       "Failed to modify output a string... (3)"},
      // Without a text the placeholder stays, as everywhere.
      {"an empty text", [] { throw ""; }, "Failed to modify output ^1... (3)"},
      {"a null text", [] { throw static_cast<const char*>(nullptr); },
       "Failed to modify output ^1... (3)"},
      {"a number", [] { throw 42; }, "Failed to modify output... (3)"},
      {"a wide string", [] { throw L"wide"; }, "Failed to modify output... (3)"},
  };
  for (const auto& test : cases) {
    const ThrowingRun run(test.thrower);
    EXPECT_THAT(run.outputTexts(), ElementsAre(test.message)) << test.condition;
    EXPECT_THAT(run.tables, IsEmpty()) << test.condition;
    EXPECT_EQ(run.host.modifyDocuments.size(), 1U) << test.condition;
    EXPECT_THAT(run.events, ElementsAre(kOpened, "flush", StartsWith("output Failed"), kClosed));
  }
  expectNothingLeft();
}

TEST(OutputModifyFailure, PassesTheHostsUnwindingOnAndDestroysEverything) {
  struct Derived : VornGoToCaller {};
  for (const bool derived : {false, true}) {
    const CapturedOutput output;
    FakeHost host;
    CommandRun run;
    host.whenModified = [&] {
      EXPECT_NE(BpProcedure::current(), nullptr);
      EXPECT_NE(ParserMessage::current(), nullptr);
      if (derived) throw Derived();
      throw VornGoToCaller();
    };
    EXPECT_THROW(run.run(outmodify_, "OUTPUT MODIFY DEBUG /SELECT ALL.", &host), VornGoToCaller);
    EXPECT_THAT(run.events, ElementsAre(kOpened, "flush", kClosed));
    EXPECT_THAT(output.text(), testing::EndsWith("</modifyOutputObject>\n"));
    expectNothingLeft();
  }
  const AnsweredRun next("OUTPUT MODIFY.");
  EXPECT_THAT(next.host.modifyDocuments, ElementsAre(kEmptyDocument));
}

TEST(OutputModifyAnswer, WarnsOfFormatsThenOfFontsEachInOrder) {
  const struct {
    const char* answer;
    std::vector<std::string> warnings;
  } cases[] = {
      {"", {}},
      {"(3,2,1)", {}},
      {"(3,2,1) Invalid format (F99) Invalid format (A1)",
       {"Value for FORMAT (F99) is not a valid display format. (2)",
        "Value for FORMAT (A1) is not a valid display format. (2)"}},
      {"Invalid font (b) Invalid format (c) Invalid font (a)",
       {"Value for FORMAT (c) is not a valid display format. (2)",
        "Specified FONT (b) is not installed. (2)", "Specified FONT (a) is not installed. (2)"}},
      {"Invalid font (^1)", {"Specified FONT (^1) is not installed. (2)"}},
      // Without a value the placeholder stays, as everywhere.
      {"Invalid font ()", {"Specified FONT (^1) is not installed. (2)"}},
  };
  for (const auto& test : cases) {
    const AnsweredRun run("OUTPUT MODIFY.", test.answer);
    EXPECT_EQ(run.outputTexts(), test.warnings) << test.answer;
    EXPECT_THAT(run.tables, IsEmpty()) << "no report was asked for";
  }
}

TEST(OutputModifyAnswer, IsSummedUpWhenAReportIsAskedFor) {
  const AnsweredRun run("OUTPUT MODIFY /REPORT PRINTREPORT=YES.", "(3,2,1)");
  ASSERT_EQ(run.tables.size(), 1U);
  const PivotTable& table = *run.tables[0];
  EXPECT_EQ(table.title.text, "Output Modify Summary Table");
  EXPECT_TRUE(table.title.translatable);
  EXPECT_EQ(table.subtype.text, "Output Modify Summary");
  EXPECT_TRUE(table.subtype.translatable);
  EXPECT_EQ(table.flag, std::nullopt);
  EXPECT_FALSE(table.titleHidden);
  ASSERT_EQ(table.dimensions.size(), 1U);
  const PivotDimension& dimension = table.dimensions[0];
  EXPECT_EQ(dimension.label.text, "Objects");
  EXPECT_TRUE(dimension.label.translatable);
  EXPECT_EQ(dimension.sort, 2);
  EXPECT_EQ(dimension.position, (PivotPosition{0, 1, true, false}));
  EXPECT_THAT(rowsOf(table),
              ElementsAre("Objects Selected: 3", "Objects Modified: 2", "Objects Deleted: 1"));
  for (const PivotCategory& category : dimension.categories) {
    EXPECT_TRUE(category.label.translatable);
  }
  for (const PivotCell& cell : table.cells) {
    EXPECT_EQ(cell.value.kind, CellText::Kind::kNumber);
    EXPECT_EQ(cell.value.format.type, BpFormatSpec::Type::kCount);
  }
}

TEST(OutputModifyAnswer, IsSummedUpOnlyWhenItHasCountsAndAReportIsAskedFor) {
  const struct {
    const char* text;
    const char* answer;
    std::vector<std::string> rows;
  } cases[] = {
      {"/REPORT PRINTREPORT=YES", "", {}},
      {"/REPORT PRINTREPORT=YES", "3,2,1", {}},
      {"/REPORT PRINTREPORT=YES", "()", {}},
      {"/REPORT PRINTREPORT=NO", "(3,2,1)", {}},
      {"/REPORT", "(3,2,1)", {}},
      {"/SELECT ALL", "(3,2,1)", {}},
      {"/SELECT ALL /REPORT PRINTREPORT='yes'",
       "(5)",
       {"Objects Selected: 5", "Objects Modified: 0", "Objects Deleted: 0"}},
      {"/report printreport=yes",
       "(many)",
       {"Objects Selected: 0", "Objects Modified: 0", "Objects Deleted: 0"}},
  };
  for (const auto& test : cases) {
    const AnsweredRun run(std::string("OUTPUT MODIFY ") + test.text + ".", test.answer);
    const std::string condition = std::string(test.text) + " " + test.answer;
    if (test.rows.empty()) {
      EXPECT_THAT(run.tables, IsEmpty()) << condition;
    } else {
      ASSERT_EQ(run.tables.size(), 1U) << condition;
      EXPECT_EQ(rowsOf(*run.tables[0]), test.rows) << condition;
    }
    EXPECT_THAT(run.outputMessages, IsEmpty()) << condition;
  }
}

TEST(OutputModifyAnswer, IsSummedUpBehindItsWarnings) {
  const AnsweredRun run("OUTPUT MODIFY /REPORT PRINTREPORT=YES.",
                        "(3,2,1) Invalid font (f) Invalid format (F99)");
  EXPECT_THAT(run.events,
              ElementsAre(kOpened, "flush", "modify",
                          "output Value for FORMAT (F99) is not a valid display format.",
                          "output Specified FONT (f) is not installed.",
                          "table Output Modify Summary Table", kClosed));
}

}  // namespace
}  // namespace vornwout
