// The exchange with the output controller: what is sent, and what a failing answer says.
#include "libvornwout/frame/output_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/command_run.h"

namespace vornwout {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OutputExchange, SendsTheShortFormWithAnEmptySecondText) {
  FakeHost host;
  std::string name = "doc1";
  OutputExchange exchange(OutputControllerCommand::kName, name, OutputDocumentMinimized::kYes);
  name = "overwritten";
  EXPECT_TRUE(exchange.send(host));
  ASSERT_EQ(host.requests.size(), 1U);
  EXPECT_FALSE(host.requests[0].longForm);
  EXPECT_EQ(host.requests[0].command, OutputControllerCommand::kName);
  EXPECT_EQ(host.requests[0].name, "doc1");
  EXPECT_EQ(host.requests[0].text, "");
  EXPECT_EQ(host.requests[0].minimized, OutputDocumentMinimized::kYes);
}

TEST(OutputExchange, TakesItsNumberWhenItIsMade) {
  FakeHost host;
  const int last = NextOutputRequestId();
  OutputExchange exchange(OutputControllerCommand::kNew, "", OutputDocumentMinimized::kNo);
  EXPECT_EQ(NextOutputRequestId(), last + 2);
  exchange.send(host);
  EXPECT_EQ(host.requests.at(0).id, last + 1);
}

TEST(OutputExchange, StartsWithAnEmptyResponseAndKeepsTheAnswer) {
  FakeHost host;
  host.answer.addDocument(OutputDocumentItem{"a", true});
  OutputExchange exchange(OutputControllerCommand::kDisplay, "",
                          OutputDocumentMinimized::kNotApplicable);
  EXPECT_EQ(exchange.response().GetOutputDocumentCount(), 0);
  EXPECT_EQ(exchange.response().GetErrorSeverity(), 0);
  EXPECT_TRUE(exchange.send(host));
  EXPECT_EQ(exchange.response().GetOutputDocumentCount(), 1);
}

struct Failure {
  const char* condition;
  int severity;
  const char* message;
  const char* argument;
  const char* shown;
};

class OutputExchangeFailure : public testing::TestWithParam<Failure> {};

TEST_P(OutputExchangeFailure, IsReportedOnceAsTheControllerHasIt) {
  FakeHost host;
  host.succeeds = false;
  host.answer.setError(GetParam().severity, GetParam().message, GetParam().argument);
  CommandRun run;
  const SinkRegistration sink(run);
  EXPECT_FALSE(sendShortRequest(host, OutputControllerCommand::kClose, "a",
                                OutputDocumentMinimized::kNotApplicable));
  EXPECT_EQ(host.requests.size(), 1U);  // never tried again
  ASSERT_EQ(run.outputMessages.size(), 1U);
  const OutputMessageRecord& record = run.outputMessages[0];
  EXPECT_EQ(renderText(record.message), GetParam().shown);
  EXPECT_EQ(record.level, GetParam().severity);
  EXPECT_EQ(record.show, 2);
}

INSTANTIATE_TEST_SUITE_P(Answers, OutputExchangeFailure,
                         testing::Values(Failure{"WithArgument", 3, "No document is named ^1.",
                                                 "doc1", "No document is named doc1."},
                                         Failure{"WithoutArgument", 3, "No document is named ^1.",
                                                 "", "No document is named ^1."},
                                         Failure{"AsAWarning", 2, "^1 is shared.", "doc1",
                                                 "doc1 is shared."},
                                         Failure{"AtAnUnusualLevel", 7, "Odd.", "", "Odd."},
                                         Failure{"AtLevelZero", 0, "Odd.", "", "Odd."},
                                         Failure{"WithoutText", 3, "", "", ""}),
                         [](const auto& test) { return test.param.condition; });

TEST(OutputExchange, SaysNothingOnSuccessEvenWhenTheResponseHoldsAText) {
  FakeHost host;
  host.answer.setError(3, "Left over.", "");
  CommandRun run;
  const SinkRegistration sink(run);
  EXPECT_TRUE(
      sendShortRequest(host, OutputControllerCommand::kNew, "", OutputDocumentMinimized::kNo));
  EXPECT_THAT(run.outputMessages, IsEmpty());
}

TEST(CheckNameLength, CountsBytesUpToSixtyFour) {
  CommandRun run;
  const SinkRegistration sink(run);
  EXPECT_TRUE(checkNameLength(""));
  EXPECT_TRUE(checkNameLength(std::string(64, 'a')));
  EXPECT_THAT(run.outputMessages, IsEmpty());
  EXPECT_FALSE(checkNameLength(std::string(65, 'a')));
  EXPECT_THAT(run.outputTexts(),
              ElementsAre("Output name " + std::string(65, 'a') + " is too long. (3)"));
  EXPECT_EQ(run.outputMessages[0].message.text, "Output name ^1 is too long.");
}

}  // namespace
}  // namespace vornwout
