// The command that is being carried out, and the place of what was read last.
#include "platform/parser/current_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/parser/command_names.h"
#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

TEST(CurrentCommand, IsNoneBeforeAndAfter) {
  EXPECT_EQ(CurrentCommand::current(), nullptr);
  {
    const TokenizedText text("A b.");
    CurrentCommand command(text.command(), 1);
    EXPECT_EQ(CurrentCommand::current(), &command);
  }
  EXPECT_EQ(CurrentCommand::current(), nullptr);
}

TEST(CurrentCommand, InsideAnotherIsCurrentUntilItEnds) {
  const TokenizedText text("A b.");
  CurrentCommand outer(text.command(), 1);
  {
    CurrentCommand inner(text.command(), 1);
    EXPECT_EQ(CurrentCommand::current(), &inner);
  }
  EXPECT_EQ(CurrentCommand::current(), &outer);
}

TEST(CurrentCommand, HasTheTokensBehindItsName) {
  const TokenizedText text("OUTPUT NEW NAME=a.");
  EXPECT_THAT(CurrentCommand(text.command(), 0).argumentTokens(), SizeIs(5));
  EXPECT_THAT(CurrentCommand(text.command(), 2).argumentTokens(), SizeIs(3));
  EXPECT_THAT(CurrentCommand(text.command(), 5).argumentTokens(), IsEmpty());
}

TEST(CurrentCommand, ShorterThanItsNameHasNoTokens) {
  const TokenizedText text("OUTPUT.");
  EXPECT_THAT(CurrentCommand(text.command(), 2).argumentTokens(), IsEmpty());
}

TEST(CurrentCommandSecrets, AreThoseOfItsGrammarUntilThatIsForgotten) {
  const TokenizedText text("GO KEY='a' PASSWORD b.");
  const std::vector<Token>& tokens = text.command().tokens();
  CommandDescriptor grammar("GO");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  ParamDescriptor key("KEY", UPSpecTypes::kString, false, true);
  key.setSecret();
  main.addParamDesc(key);
  main.addParamDesc("PASSWORD", UPSpecTypes::kString, false, true);
  grammar.addSubComDesc(main);

  CurrentCommand known(text.command(), 1);
  known.setGrammar(grammar);
  EXPECT_TRUE(known.isSecret(tokens[3]));
  EXPECT_FALSE(known.isSecret(tokens[5]));
  CurrentCommand::forgetGrammar(grammar);
  EXPECT_TRUE(known.isSecret(tokens[3])) << "what was found stays";

  CurrentCommand guessed(text.command(), 1);
  guessed.setGrammar(grammar);
  {
    const CurrentCommand inner(text.command(), 1);
    CurrentCommand::forgetGrammar(grammar);
  }
  EXPECT_FALSE(guessed.isSecret(tokens[3]));
  EXPECT_TRUE(guessed.isSecret(tokens[5]));
}

TEST(CurrentCommandSecrets, AreNoTokensOfAnotherCommand) {
  const TokenizedText text("GO PASSWORD=a.");
  const TokenizedText other("GO PASSWORD=a.");
  const CurrentCommand current(text.command(), 1);
  EXPECT_TRUE(current.isSecret(text.command().tokens()[3]));
  EXPECT_FALSE(current.isSecret(other.command().tokens()[3]));
  const TokenizedText empty("/* never closed");
  EXPECT_FALSE(CurrentCommand(empty.command(), 2).isSecret(text.command().tokens()[3]));
}

TEST(CurrentCommandPlace, IsTheCommandUntilSomethingIsRead) {
  const TokenizedText text("\n  A b\n c.");
  CurrentCommand command(text.command(), 1);
  EXPECT_EQ(command.place(), (SourcePlace{2, 3}));
  command.noteRead(&text.command().tokens()[2]);
  EXPECT_EQ(command.place(), (SourcePlace{3, 2}));
  command.noteRead(nullptr);
  EXPECT_EQ(command.place(), (SourcePlace{2, 3}));
}

TEST(CurrentCommandSpot, HasTheBytesOfWhatWasRead) {
  const TokenizedText text("\n  AB 'c d'.");
  CurrentCommand command(text.command(), 1);
  EXPECT_EQ(command.spot(), (SourceSpot{{2, 3}, 3, 2}));
  command.noteRead(&text.command().tokens()[1]);
  EXPECT_EQ(command.spot(), (SourceSpot{{2, 6}, 6, 5}));
}

TEST(StrayCommand, IsTheFirstThatBeginsALineBehindTheName) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  const TokenizedText text("OUTPUT NEW OUTPUT NEW\nNEW OUTPUT NEW\n  Output\nnew a\nOUTPUT NEW.");
  const CurrentCommand command(text.command(), 2);
  const Token* stray = command.strayCommand();
  ASSERT_NE(stray, nullptr);
  EXPECT_EQ(text.command().place(*stray), (SourcePlace{3, 3}));
  const TokenizedText without("OUTPUT NEW OUTPUT NEW\nOUTPUT\n'OUTPUT' NEW.");
  EXPECT_EQ(CurrentCommand(without.command(), 2).strayCommand(), nullptr);
  const TokenizedText empty("/* never closed");
  EXPECT_EQ(CurrentCommand(empty.command(), 2).strayCommand(), nullptr);
}

TEST(CurrentCommandPlace, OfACommandWithoutTokensIsUnknown) {
  const TokenizedText text("/* never closed");
  EXPECT_EQ(CurrentCommand(text.command(), 0).place(), SourcePlace{});
}

TEST(CurrentCommandPlace, IsTheValueThatWasReadLastThenTheKeyword) {
  CommandDescriptor grammar("GO");
  SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
  main.addParamDesc("NAME", UPSpecTypes::kDeclaredValue, false, true);
  main.addParamDesc("DEBUG", UPSpecTypes::kRawTokens, false, true);
  grammar.addSubComDesc(main);
  const ParsedCommand parsed(grammar, "NAME = a DEBUG");
  const SubComObj* subcommand = parsed.spec().getSubComObj("");
  ASSERT_NE(subcommand, nullptr);
  ASSERT_NE(subcommand->getParamObj("name"), nullptr);
  EXPECT_EQ(CurrentCommand::current()->place(), (SourcePlace{1, 11}));
  ASSERT_NE(subcommand->getParamObj("DEBUG"), nullptr);
  EXPECT_EQ(CurrentCommand::current()->place(), (SourcePlace{1, 13}));
  ASSERT_EQ(subcommand->getParamObj("MISSING"), nullptr);
  EXPECT_EQ(CurrentCommand::current()->place(), (SourcePlace{1, 13})) << "nothing was read";
}

}  // namespace
}  // namespace vornwout
