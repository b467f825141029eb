// OUTPUT NEW: the request that each form sends, and what is refused before one is sent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/parser/grammar_capture.h"
#include "platform/text/encoding.h"
#include "tests/support/command_run.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputNew, DeclaresItsKeywordsInOrder) {
  const CommandDescriptor grammar = grammarOf(outnew_);
  ASSERT_EQ(grammar.subcommands().size(), 1U);
  const SubComDescriptor& main = grammar.subcommands()[0];
  EXPECT_EQ(main.name(), "");
  EXPECT_EQ(main.spec(), 1);
  EXPECT_FALSE(main.required());
  EXPECT_FALSE(main.repeatable());
  std::vector<std::string> names;
  for (const ParamDescriptor& param : main.params()) {
    names.push_back(param.name());
    EXPECT_EQ(param.spec(), 3);
    EXPECT_FALSE(param.required());
    EXPECT_TRUE(param.standard());
    EXPECT_EQ(param.brackets(), 0);
  }
  EXPECT_THAT(names, ElementsAre("TYPE", "NAME", "MINIMIZED"));
  EXPECT_THAT(main.params()[0].values(), ElementsAre("VIEWER", "DRAFT"));
  EXPECT_THAT(main.params()[1].values(), IsEmpty());
  EXPECT_THAT(main.params()[2].values(), ElementsAre("YES", "NO"));
}

struct Sent {
  const char* condition;
  const char* text;
  const char* name;
  int minimized;
};

class OutputNewTest : public testing::TestWithParam<Sent> {};

TEST_P(OutputNewTest, SendsOneRequest) {
  FakeHost host;
  const CommandRun run(outnew_, GetParam().text, &host);
  ASSERT_EQ(host.requests.size(), 1U);
  const SentRequest& request = host.requests[0];
  EXPECT_FALSE(request.longForm);
  EXPECT_EQ(static_cast<int>(request.command), 4);
  EXPECT_EQ(request.name, GetParam().name);
  EXPECT_EQ(request.text, "");
  EXPECT_EQ(static_cast<int>(request.minimized), GetParam().minimized);
  EXPECT_THAT(run.events, ElementsAre("open Output New 2", "flush", "close Output New"));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OutputNewTest,
    testing::Values(Sent{"Alone", "OUTPUT NEW.", "", 0},
                    Sent{"WithName", "OUTPUT NEW NAME=doc1.", "doc1", 0},
                    Sent{"InLowerCase", "output new name=Doc1.", "Doc1", 0},
                    Sent{"WithQuotedName", "OUTPUT NEW NAME='doc1'.", "doc1", 0},
                    Sent{"WithEmptyNameThatIsNotValidated", "OUTPUT NEW NAME=''.", "", 0},
                    Sent{"MinimizedYes", "OUTPUT NEW MINIMIZED=YES.", "", 1},
                    Sent{"MinimizedYesInLowerCase", "OUTPUT NEW MINIMIZED=yes.", "", 1},
                    Sent{"MinimizedNo", "OUTPUT NEW MINIMIZED=NO.", "", 0},
                    Sent{"MinimizedNoInMixedCase", "OUTPUT NEW MINIMIZED=No.", "", 0},
                    Sent{"MinimizedNoQuoted", "OUTPUT NEW MINIMIZED=\"NO\".", "", 0},
                    Sent{"TypeViewerKeptWithoutEffect", "OUTPUT NEW TYPE=VIEWER.", "", 0},
                    Sent{"TypeDraftKeptWithoutEffect", "OUTPUT NEW TYPE=DRAFT.", "", 0},
                    Sent{"EverythingInReverse", "OUTPUT NEW MINIMIZED=YES NAME=a TYPE=DRAFT.", "a",
                         1}),
    [](const auto& test) { return test.param.condition; });

TEST(OutputNew, TakesANameOfSixtyFourBytes) {
  FakeHost host;
  const std::string name(64, 'a');
  const CommandRun run(outnew_, "OUTPUT NEW NAME=" + name + ".", &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_EQ(host.requests[0].name, name);
}

TEST(OutputNew, RefusesSixtyFiveBytesBeforeItLooksAtTheName) {
  FakeHost host;
  const std::string name = std::string(64, '1') + "-";
  const CommandRun run(outnew_, "OUTPUT NEW NAME='" + name + "'.", &host);
  EXPECT_THAT(run.outputTexts(), ElementsAre("Output name " + name + " is too long. (3)"));
  EXPECT_THAT(run.parserMessages, IsEmpty());
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST(OutputNew, CountsBytesOfTheJobsEncodingNotCharacters) {
  FakeHost host;
  std::string utf8;
  std::string latin;
  for (int i = 0; i < 33; ++i) {
    utf8 += "\xC3\xA4";
    latin += "\xE4";
  }
  const CommandRun tooLong(outnew_, "OUTPUT NEW NAME=" + utf8 + ".", &host);
  EXPECT_EQ(tooLong.outputMessages.size(), 1U);
  EXPECT_THAT(host.requests, IsEmpty());
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  const CommandRun fits(outnew_, "OUTPUT NEW NAME=" + latin + ".", &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_EQ(host.requests[0].name, latin);
}

TEST(OutputNew, RefusesAnInvalidNameAtItsPlace) {
  FakeHost host;
  for (const char* name : {"5", "'1a'", "'a b'", "'a.'", "'*'", "' a'", "'a-b'"}) {
    const std::string text = std::string("OUTPUT NEW NAME=") + name + " MINIMIZED=YES.";
    const CommandRun run(outnew_, text, &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre("WrongValueType(NAME, )")) << name;
    EXPECT_EQ(run.parserMessages.at(0).place, (SourcePlace{1, 17})) << name;
    EXPECT_THAT(run.outputMessages, IsEmpty());
  }
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST(OutputNew, LeavesValuesOutsideTheirListToTheParser) {
  FakeHost host;
  for (const char* text :
       {"OUTPUT NEW TYPE=PAPER.", "OUTPUT NEW MINIMIZED=MAYBE.", "OUTPUT NEW NAME=.",
        "OUTPUT NEW COLOR=RED.", "OUTPUT NEW NAME=a NAME=b.", "OUTPUT NEW NAME==.",
        "OUTPUT NEW /NAME=a."}) {
    const CommandRun run(outnew_, text, &host);
    EXPECT_FALSE(run.parserMessages.empty()) << text;
    EXPECT_THAT(run.outputMessages, IsEmpty()) << text;
  }
  EXPECT_THAT(host.requests, IsEmpty());
}

}  // namespace
}  // namespace vornwout
