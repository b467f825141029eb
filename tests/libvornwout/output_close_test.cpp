// OUTPUT CLOSE: exactly two forms, and the word by which all documents are meant.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/command_run.h"
#include "tests/support/free_list_grammar.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputClose, DeclaresOneFreeTokenList) { expectOneFreeTokenList(outclose_); }

struct Sent {
  const char* condition;
  const char* text;
  const char* name;
};

class OutputCloseTest : public testing::TestWithParam<Sent> {};

TEST_P(OutputCloseTest, SendsOneRequest) {
  FakeHost host;
  const CommandRun run(outclose_, GetParam().text, &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_FALSE(host.requests[0].longForm);
  EXPECT_EQ(static_cast<int>(host.requests[0].command), 1);
  EXPECT_EQ(host.requests[0].name, GetParam().name);
  EXPECT_EQ(host.requests[0].text, "");
  EXPECT_EQ(host.requests[0].minimized, OutputDocumentMinimized::kNotApplicable);
  EXPECT_THAT(run.events, ElementsAre("open Output Close 2", "flush", "close Output Close"));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OutputCloseTest,
    testing::Values(Sent{"Bare", "OUTPUT CLOSE doc1.", "doc1"},
                    Sent{"NameKeptAsWritten", "OUTPUT CLOSE Doc1.", "Doc1"},
                    Sent{"WithKeyword", "OUTPUT CLOSE NAME=doc1.", "doc1"},
                    Sent{"WithKeywordInLowerCase", "OUTPUT CLOSE name = doc1.", "doc1"},
                    Sent{"Asterisk", "OUTPUT CLOSE *.", "*"},
                    Sent{"AsteriskWithKeyword", "OUTPUT CLOSE NAME=*.", "*"},
                    Sent{"All", "OUTPUT CLOSE ALL.", "ALL"},
                    Sent{"AllInMixedCase", "OUTPUT CLOSE All.", "ALL"},
                    Sent{"AllWithKeyword", "OUTPUT CLOSE NAME=all.", "ALL"},
                    Sent{"QuotedAllStillMeansEveryDocument", "OUTPUT CLOSE 'aLL'.", "ALL"},
                    Sent{"NamedName", "OUTPUT CLOSE NAME=NAME.", "NAME"},
                    Sent{"QuotedEqualsSignIsKept", "OUTPUT CLOSE NAME '=' doc1.", "doc1"},
                    Sent{"EqualsSignAloneIsAName", "OUTPUT CLOSE =.", "="},
                    Sent{"EmptyQuotedName", "OUTPUT CLOSE ''.", ""},
                    Sent{"InvalidNameIsLeftToTheHost", "OUTPUT CLOSE '1 2'.", "1 2"},
                    Sent{"MinimizedIsNoKeywordHere", "OUTPUT CLOSE MINIMIZED.", "MINIMIZED"}),
    [](const auto& test) { return test.param.condition; });

TEST(OutputClose, RefusesEveryOtherShape) {
  FakeHost host;
  for (const char* text :
       {"OUTPUT CLOSE.", "OUTPUT CLOSE doc1 doc2.", "OUTPUT CLOSE NAME.", "OUTPUT CLOSE NAME=.",
        "OUTPUT CLOSE NAME doc1.", "OUTPUT CLOSE NAME doc1 doc2.", "OUTPUT CLOSE NAME=doc1 doc2.",
        "OUTPUT CLOSE = doc1.", "OUTPUT CLOSE NAME=a MINIMIZED=YES.", "OUTPUT CLOSE a b c.",
        "OUTPUT CLOSE NAME == a."}) {
    const CommandRun run(outclose_, text, &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre("WrongValueType(NAME, )")) << text;
    EXPECT_THAT(run.outputMessages, IsEmpty()) << text;
  }
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST(OutputClose, KeepsANameOfAnyLength) {
  FakeHost host;
  const std::string name(100, 'a');
  const CommandRun run(outclose_, "OUTPUT CLOSE " + name + ".", &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_EQ(host.requests[0].name, name);
  EXPECT_THAT(run.outputMessages, IsEmpty());
}

}  // namespace
}  // namespace vornwout
