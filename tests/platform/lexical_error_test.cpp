// Errors below the level of tokens: what is told of them, and about which bytes.
#include "platform/parser/lexical_error.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/message/parser_message.h"
#include "tests/support/parsed_command.h"
#include "tests/support/recording_sink.h"

namespace vornwout {
namespace {

/// "NulCharacter@1:3+1" for every error that is reported.
std::vector<std::string> reportsOf(const std::string& source) {
  const TokenizedText text(source);
  RecordingSink sink;
  const ParserMessage messages;
  const int count = reportLexicalErrors(messages, text.command());
  EXPECT_EQ(count, static_cast<int>(sink.parserMessages.size()));
  std::vector<std::string> reports;
  for (const ParserMessageRecord& record : sink.parserMessages) {
    reports.push_back(std::string(record.operation) + "@" + std::to_string(record.place.line) +
                      ":" + std::to_string(record.place.column) + "+" +
                      std::to_string(record.length));
  }
  return reports;
}

TEST(LexicalErrorReports, AreAboutTheBytesThatAreWrong) {
  using testing::ElementsAre;
  EXPECT_THAT(reportsOf("a b."), testing::IsEmpty());
  EXPECT_THAT(reportsOf("a 'bc."), ElementsAre("UnterminatedString@1:3+3"));
  EXPECT_THAT(reportsOf("a 'b\n \"cd\n."),
              ElementsAre("UnterminatedString@1:3+2", "UnterminatedString@2:2+3"));
  EXPECT_THAT(reportsOf("a /* b."), ElementsAre("UnterminatedComment@1:3+2"));
  EXPECT_THAT(reportsOf("/* b."), ElementsAre("UnterminatedComment@1:1+2"));
}

TEST(LexicalErrorReports, OfAZeroByteAreOneForTheWholeCommand) {
  EXPECT_THAT(reportsOf(std::string("a 'b\n\0\0 \"c /* d.", 16)),
              testing::ElementsAre("NulCharacter@2:1+1"));
}

}  // namespace
}  // namespace vornwout
