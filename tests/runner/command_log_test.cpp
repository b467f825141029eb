// What a document keeps of a command: everything but its passwords.
#include "runner/command_log.h"

#include <gtest/gtest.h>

#include "platform/parser/grammar_capture.h"
#include "platform/parser/tokenizer.h"
#include "platform/text/encoding.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

std::string logOf(const std::string& text) {
  Tokenizer tokenizer(text);
  TokenizedCommand command;
  tokenizer.next(command);
  return commandLogText(command, nullptr);
}

struct Logged {
  const char* condition;
  const char* command;
  const char* log;
};

class CommandLogTest : public testing::TestWithParam<Logged> {};

TEST(CommandLog, GoesByTheGrammarOfItsCommand) {
  const std::string text = "OUTPUT OPEN FILE='a' PASSWORD='s3cret' LOCK YES.";
  Tokenizer tokenizer(text);
  TokenizedCommand command;
  ASSERT_TRUE(tokenizer.next(command));
  const CommandDescriptor grammar = grammarOf(outopen_);
  EXPECT_EQ(commandLogText(command, &grammar), "OUTPUT OPEN FILE='a' PASSWORD=*** LOCK YES");
  EXPECT_EQ(commandLogText(command, nullptr), "OUTPUT OPEN FILE='a' PASSWORD=*** *** ***");
}

TEST_P(CommandLogTest, HidesPasswordsAndNothingElse) {
  EXPECT_EQ(logOf(GetParam().command), GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, CommandLogTest,
    testing::Values(
        Logged{"None", "OUTPUT NEW  NAME=a.", "OUTPUT NEW  NAME=a"},
        Logged{"Quoted", "OUTPUT OPEN FILE='a' PASSWORD='s3cret' NAME=x.",
               "OUTPUT OPEN FILE='a' PASSWORD=*** NAME=x"},
        Logged{"Comment", "OUTPUT NEW /* a remark */ NAME=a.", "OUTPUT NEW /* a remark */ NAME=a"},
        Logged{"CommentThatNamesPasswords", "OUTPUT NEW /* Password='s3cret' */ NAME=a.",
               "OUTPUT NEW *** NAME=a"},
        Logged{"CommentBesideASecret", "OUTPUT OPEN PASSWORD='s3cret' /* 'older' */ NAME=x.",
               "OUTPUT OPEN PASSWORD=*** *** NAME=x"},
        Logged{"CommentThatIsLeftOpen", "OUTPUT OPEN FILE='a' /* PASSWORD='s3cret' NAME=x.",
               "OUTPUT OPEN FILE='a'"},
        Logged{"Unquoted", "OUTPUT OPEN PASSWORD = s3cret.", "OUTPUT OPEN PASSWORD = ***"},
        Logged{"WithoutEqualsSign", "OUTPUT OPEN password 's3cret'.", "OUTPUT OPEN password ***"},
        Logged{"SeveralWords", "OUTPUT OPEN PASSWORD='s3' cret 5 NAME=x.",
               "OUTPUT OPEN PASSWORD=*** *** *** NAME=x"},
        Logged{"NoneKeyword", "OUTPUT OPEN PASSWORD=NONE.", "OUTPUT OPEN PASSWORD=NONE"},
        Logged{"QuotedNoneIsAPassword", "OUTPUT OPEN PASSWORD='NONE'.", "OUTPUT OPEN PASSWORD=***"},
        Logged{"Unterminated", "OUTPUT OPEN PASSWORD='s3cret.", "OUTPUT OPEN PASSWORD=***"},
        Logged{"BeforeASubcommand", "OUTPUT SAVE /PASSPROTECT PASSWORD='s' /X 'hidden'.",
               "OUTPUT SAVE /PASSPROTECT PASSWORD=*** /X ***"},
        Logged{"UnquotedWithASlash", "OUTPUT OPEN PASSWORD=a/b NAME=x.",
               "OUTPUT OPEN PASSWORD=********* NAME=x"},
        Logged{"TextBehindPassprotect", "OUTPUT SAVE /PASSPROTECT 's3cret'.",
               "OUTPUT SAVE /PASSPROTECT ***"},
        Logged{"Twice", "X PASSWORD='a' PASSWORD='b'.", "X PASSWORD=*** PASSWORD=***"},
        Logged{"Nothing", "OUTPUT OPEN PASSWORD=.", "OUTPUT OPEN PASSWORD="}),
    [](const auto& tested) { return tested.param.condition; });

TEST(CommandLog, IsUtf8WhateverTheJobsEncoding) {
  const ScopedEncoding encoding(Encoding::find("windows-1252"));
  EXPECT_EQ(logOf("OUTPUT NEW NAME=\xe4."), "OUTPUT NEW NAME=\xc3\xa4");
}

}  // namespace
}  // namespace vornwout
