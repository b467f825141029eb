// Arguments of messages: a secret is what stands where a secret stands, not what looks like one.
#include "platform/message/message_argument.h"

#include <gtest/gtest.h>

#include "platform/parser/current_command.h"
#include "platform/text/encoding.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

TEST(MessageArgument, OfATextHasNoSecret) {
  const MessageArgument argument("PASSWORD");
  EXPECT_FALSE(argument.hasSecrets());
  EXPECT_EQ(argument.hidden(), "PASSWORD");
  EXPECT_EQ(argument.uncovered(), "PASSWORD");
  EXPECT_TRUE(MessageArgument("").empty());
}

TEST(MessageArgument, OfATokenIsSecretWhereTheTokenIs) {
  const TokenizedText text("X NAME='a''b' PASSWORD='a''b'.");
  const std::vector<Token>& tokens = text.command().tokens();
  const CurrentCommand current(text.command(), 1);
  EXPECT_EQ(MessageArgument::ofToken(text.command(), tokens[3]).hidden(), "a'b");
  const MessageArgument secret = MessageArgument::ofToken(text.command(), tokens[6]);
  EXPECT_TRUE(secret.hasSecrets());
  EXPECT_EQ(secret.hidden(), "***");
  EXPECT_EQ(secret.uncovered(), "a'b");
  EXPECT_EQ(secret.text(), "a'b");
  const MessageArgument written = MessageArgument::ofSource(text.command(), tokens[6]);
  EXPECT_EQ(written.hidden(), "***");
  EXPECT_EQ(written.uncovered(), "'a''b'");
}

TEST(MessageArgument, OfAnEmptySecretIsEmpty) {
  const TokenizedText text("X PASSWORD=''.");
  const CurrentCommand current(text.command(), 1);
  EXPECT_EQ(MessageArgument::ofToken(text.command(), text.command().tokens()[3]).hidden(), "");
}

TEST(MessageArgument, OfSeveralHidesOnlyThoseThatAreSecret) {
  const TokenizedText text("X PASSWORD='a' 'b'.");
  const std::vector<Token>& tokens = text.command().tokens();
  const CurrentCommand current(text.command(), 1);
  MessageArgument sum("\"");
  sum += MessageArgument::ofToken(text.command(), tokens[1]);
  sum += " a ";
  sum += MessageArgument::ofToken(text.command(), tokens[3]);
  sum += MessageArgument::ofToken(text.command(), tokens[4]);
  sum += "\"";
  EXPECT_EQ(sum.hidden(), "\"PASSWORD a ******\"");
  EXPECT_EQ(sum.uncovered(), "\"PASSWORD a ab\"");
  sum += sum;
  EXPECT_EQ(sum.hidden(), "\"PASSWORD a ******\"\"PASSWORD a ******\"");
}

TEST(MessageArgument, OfAnotherEncodingIsConvertedPieceByPiece) {
  const ScopedEncoding encoding(Encoding::find("Shift-JIS"));
  const TokenizedText text("X PASSWORD='\x95\x5C'.");
  const CurrentCommand current(text.command(), 1);
  MessageArgument sum("\x95\x5C\x95");  // the last byte is the first half of a character
  sum += MessageArgument::ofToken(text.command(), text.command().tokens()[3]);
  EXPECT_EQ(sum.hidden(), "表\uFFFD***");
}

}  // namespace
}  // namespace vornwout
