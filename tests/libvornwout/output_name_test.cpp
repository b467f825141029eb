// OUTPUT NAME: the walk's result as a request, and the checks that it makes and does not make.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/command_run.h"
#include "tests/support/free_list_grammar.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputName, DeclaresOneFreeTokenList) { expectOneFreeTokenList(outname_); }

struct Sent {
  const char* condition;
  const char* text;
  const char* name;
  int minimized;
};

class OutputNameTest : public testing::TestWithParam<Sent> {};

TEST_P(OutputNameTest, SendsOneRequest) {
  FakeHost host;
  const CommandRun run(outname_, GetParam().text, &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_FALSE(host.requests[0].longForm);
  EXPECT_EQ(static_cast<int>(host.requests[0].command), 3);
  EXPECT_EQ(host.requests[0].name, GetParam().name);
  EXPECT_EQ(host.requests[0].text, "");
  EXPECT_EQ(static_cast<int>(host.requests[0].minimized), GetParam().minimized);
  EXPECT_THAT(run.events, ElementsAre("open Output Name 2", "flush", "close Output Name"));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OutputNameTest,
    testing::Values(Sent{"WithKeywords", "OUTPUT NAME NAME=doc1 MINIMIZED=YES.", "doc1", 1},
                    Sent{"MinimizedNo", "OUTPUT NAME NAME=doc1 MINIMIZED=NO.", "doc1", 0},
                    Sent{"YesThenNoKeepsYes", "OUTPUT NAME a MINIMIZED=YES MINIMIZED=NO.", "a", 1},
                    Sent{"Bare", "OUTPUT NAME doc1.", "doc1", 0},
                    Sent{"BehindAnEqualsSign", "OUTPUT NAME = doc1.", "doc1", 0},
                    Sent{"NameKeptAsWritten", "output name Doc1.", "Doc1", 0},
                    Sent{"KeywordReplacesKeyword", "OUTPUT NAME NAME=a NAME=b.", "b", 0},
                    Sent{"KeywordReplacesBareName", "OUTPUT NAME a NAME=b.", "b", 0},
                    Sent{"EmptyListSendsAnEmptyName", "OUTPUT NAME.", "", 0},
                    Sent{"EmptyQuotedName", "OUTPUT NAME ''.", "", 0},
                    Sent{"InvalidNameIsLeftToTheHost", "OUTPUT NAME '1 2'.", "1 2", 0},
                    Sent{"NumberIsLeftToTheHost", "OUTPUT NAME 5.", "5", 0},
                    Sent{"AsteriskIsLeftToTheHost", "OUTPUT NAME *.", "*", 0}),
    [](const auto& test) { return test.param.condition; });

TEST(OutputName, RefusesWhatTheWalkDoesNotTake) {
  FakeHost host;
  for (const char* text :
       {"OUTPUT NAME a b.", "OUTPUT NAME NAME=a b.", "OUTPUT NAME NAME.", "OUTPUT NAME NAME=.",
        "OUTPUT NAME NAME doc1.", "OUTPUT NAME doc1 MINIMIZED.", "OUTPUT NAME doc1 MINIMIZED=.",
        "OUTPUT NAME '' b."}) {
    const CommandRun run(outname_, text, &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre("WrongValueType(NAME, )")) << text;
    EXPECT_THAT(run.outputMessages, IsEmpty()) << text;
  }
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST(OutputName, SendsSixtyFourBytesAndRefusesSixtyFive) {
  FakeHost host;
  const std::string fits(64, 'a');
  const CommandRun sent(outname_, "OUTPUT NAME " + fits + ".", &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_EQ(host.requests[0].name, fits);
  const CommandRun refused(outname_, "OUTPUT NAME NAME=" + fits + "b.", &host);
  EXPECT_EQ(host.requests.size(), 1U);
  EXPECT_THAT(refused.outputTexts(), ElementsAre("Output name " + fits + "b is too long. (3)"));
  EXPECT_THAT(refused.parserMessages, IsEmpty());
}

TEST(OutputName, KeepsTheNameUnvalidatedThatOutputNewValidates) {
  FakeHost host;
  const CommandRun named(outname_, "OUTPUT NAME 'a b'.", &host);
  EXPECT_EQ(host.requests.size(), 1U);
  const CommandRun created(outnew_, "OUTPUT NEW NAME='a b'.", &host);
  EXPECT_EQ(host.requests.size(), 1U);
}

}  // namespace
}  // namespace vornwout
