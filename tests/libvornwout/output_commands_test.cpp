// Messages in the output: with and without an argument.
#include "libvornwout/frame/output_commands.h"

#include <gtest/gtest.h>

#include "platform/text/encoding.h"
#include "tests/support/command_run.h"

namespace vornwout {
namespace {

OutputMessageRecord reported(const char* text, const char* argument, int level) {
  CommandRun run;
  const SinkRegistration sink(run);
  OutputCommands::ErrorWarn(text, argument, level);
  EXPECT_EQ(run.outputMessages.size(), 1U);
  return run.outputMessages.at(0);
}

TEST(OutputCommands, FillsThePlaceholderWithTheArgument) {
  const OutputMessageRecord record = reported("Output name ^1 is too long.", "doc1", 3);
  EXPECT_EQ(record.message.kind, CellText::Kind::kComposite);
  EXPECT_EQ(record.message.text, "Output name ^1 is too long.");
  EXPECT_TRUE(record.message.translatable);
  ASSERT_EQ(record.message.arguments.size(), 1U);
  EXPECT_EQ(record.message.arguments[0].kind, CellText::Kind::kString);
  EXPECT_EQ(record.message.arguments[0].text, "doc1");
  EXPECT_FALSE(record.message.arguments[0].translatable);
  EXPECT_FALSE(record.message.hasSublist);
  EXPECT_EQ(renderText(record.message), "Output name doc1 is too long.");
}

TEST(OutputCommands, ShowsThePlaceholderUnreplacedWithoutAnArgument) {
  for (const char* argument : {static_cast<const char*>(nullptr), ""}) {
    const OutputMessageRecord record = reported("^1 currently not implemented.", argument, 3);
    EXPECT_EQ(record.message.kind, CellText::Kind::kString);
    EXPECT_TRUE(record.message.translatable);
    EXPECT_EQ(renderText(record.message), "^1 currently not implemented.");
    EXPECT_EQ(record.show, 2);
    EXPECT_EQ(record.level, 3);
  }
}

TEST(OutputCommands, ReportsATextAloneLikeAnEmptyArgument) {
  CommandRun run;
  const SinkRegistration sink(run);
  OutputCommands::ErrorWarn0("No output documents are open.", 2);
  ASSERT_EQ(run.outputMessages.size(), 1U);
  const OutputMessageRecord other = reported("No output documents are open.", "", 2);
  EXPECT_EQ(run.outputMessages[0].message, other.message);
  EXPECT_EQ(run.outputMessages[0].show, other.show);
  EXPECT_EQ(run.outputMessages[0].level, other.level);
}

TEST(OutputCommands, FillsThePlaceholderWithNothingWhenAlwaysToFillIt) {
  const struct {
    const char* argument;
    bool translatable;
    const char* text;
  } cases[] = {
      {"", false, "No  here."}, {"doc1", false, "No doc1 here."}, {"x", true, "No x here."}};
  for (const auto& test : cases) {
    CommandRun run;
    const SinkRegistration sink(run);
    OutputCommands::errorWarnAlways("No ^1 here.", test.argument, 2, test.translatable);
    ASSERT_EQ(run.outputMessages.size(), 1U);
    const OutputMessageRecord& record = run.outputMessages[0];
    EXPECT_EQ(renderText(record.message), test.text);
    EXPECT_EQ(record.show, 2);
    EXPECT_EQ(record.level, 2);
    EXPECT_TRUE(record.message.translatable);
    EXPECT_EQ(record.message.arguments.at(0).translatable, test.translatable);
  }
}

TEST(OutputCommands, DoesNotLookForPlaceholdersInTheArgument) {
  EXPECT_EQ(renderText(reported("No ^1.", "^1 ^2", 3).message), "No ^1 ^2.");
}

TEST(OutputCommands, PassesEveryLevelOnAsItComes) {
  for (const int level : {-1, 0, 1, 2, 3, 99}) {
    const OutputMessageRecord withArgument = reported("^1", "x", level);
    EXPECT_EQ(withArgument.level, level);
    EXPECT_EQ(withArgument.show, 2);
    EXPECT_EQ(reported("x", "", level).level, level);
  }
}

TEST(OutputCommands, KeepsAWarningAWarning) {
  EXPECT_EQ(reported("x", "y", 2).severity(), MessageSeverity::kWarning);
  EXPECT_EQ(reported("x", "y", 3).severity(), MessageSeverity::kError);
}

TEST(OutputCommands, TakesTextsInTheCurrentEncoding) {
  const ScopedEncoding scope(Encoding::find("windows-1252"));
  EXPECT_EQ(renderText(reported("Name ^1", "\xE4", 3).message), "Name \xC3\xA4");
}

}  // namespace
}  // namespace vornwout
