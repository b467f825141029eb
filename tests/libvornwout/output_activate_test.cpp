// OUTPUT ACTIVATE: the walk's reduced form as a request.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/command_run.h"
#include "tests/support/free_list_grammar.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputActivate, DeclaresOneFreeTokenList) { expectOneFreeTokenList(outactiv8_); }

struct Sent {
  const char* condition;
  const char* text;
  const char* name;
  int minimized;
};

class OutputActivateTest : public testing::TestWithParam<Sent> {};

TEST_P(OutputActivateTest, SendsOneRequest) {
  FakeHost host;
  const CommandRun run(outactiv8_, GetParam().text, &host);
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_FALSE(host.requests[0].longForm);
  EXPECT_EQ(static_cast<int>(host.requests[0].command), 0);
  EXPECT_EQ(host.requests[0].name, GetParam().name);
  EXPECT_EQ(host.requests[0].text, "");
  EXPECT_EQ(static_cast<int>(host.requests[0].minimized), GetParam().minimized);
  EXPECT_THAT(run.events, ElementsAre("open Output Activate 2", "flush", "close Output Activate"));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OutputActivateTest,
    testing::Values(Sent{"Bare", "OUTPUT ACTIVATE doc1.", "doc1", 0},
                    Sent{"WithKeyword", "OUTPUT ACTIVATE NAME=doc1.", "doc1", 0},
                    Sent{"BareAndMinimized", "OUTPUT ACTIVATE doc1 MINIMIZED=YES.", "doc1", 1},
                    Sent{"MinimizedFirst", "OUTPUT ACTIVATE MINIMIZED=yes doc1.", "doc1", 1},
                    Sent{"MinimizedNo", "OUTPUT ACTIVATE doc1 MINIMIZED=NO.", "doc1", 0},
                    Sent{"MinimizedOtherwise", "OUTPUT ACTIVATE doc1 MINIMIZED=X.", "doc1", 0},
                    Sent{"Asterisk", "OUTPUT ACTIVATE *.", "*", 0},
                    Sent{"EqualsSignAloneIsAName", "OUTPUT ACTIVATE =.", "=", 0},
                    Sent{"EmptyList", "OUTPUT ACTIVATE.", "", 0},
                    Sent{"InvalidNameIsLeftToTheHost", "OUTPUT ACTIVATE '1 2'.", "1 2", 0}),
    [](const auto& test) { return test.param.condition; });

TEST(OutputActivate, RefusesWhatTheWalkDoesNotTake) {
  FakeHost host;
  for (const char* text :
       {"OUTPUT ACTIVATE doc1 doc2.", "OUTPUT ACTIVATE = doc1.", "OUTPUT ACTIVATE NAME.",
        "OUTPUT ACTIVATE NAME=.", "OUTPUT ACTIVATE NAME doc1.", "OUTPUT ACTIVATE MINIMIZED=."}) {
    const CommandRun run(outactiv8_, text, &host);
    EXPECT_THAT(run.parserCalls(), ElementsAre("WrongValueType(NAME, )")) << text;
    EXPECT_THAT(run.outputMessages, IsEmpty()) << text;
  }
  EXPECT_THAT(host.requests, IsEmpty());
}

TEST(OutputActivate, KeepsANameOfAnyLength) {
  FakeHost host;
  for (const std::size_t length : {65U, 100U, 100000U}) {
    const std::string name(length, 'a');
    const CommandRun run(outactiv8_, "OUTPUT ACTIVATE " + name + ".", &host);
    ASSERT_FALSE(host.requests.empty());
    EXPECT_EQ(host.requests.back().name, name);
    EXPECT_THAT(run.outputMessages, IsEmpty());
  }
  EXPECT_EQ(host.requests.size(), 3U);
}

}  // namespace
}  // namespace vornwout
