#include "runner/help_text.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/message/catalogue.h"
#include "platform/pivot/cell_color.h"

namespace vornwout {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string usage(std::string_view name) {
  const Command* command = findCommand(name);
  return command == nullptr ? "no command" : usageOf(*command);
}

TEST(HelpText, UsageComesFromTheGrammar) {
  EXPECT_EQ(usage("OUTPUT NEW"),
            "OUTPUT NEW\n  [TYPE={VIEWER | DRAFT}]\n  [NAME=name]\n  [MINIMIZED={YES | NO}].\n");
  EXPECT_THAT(usage("output comment"), HasSubstr("  [WIDTH=number]\n"));
  EXPECT_THAT(usage("output comment"), HasSubstr("[/LINE] ...\n"));
}

TEST(HelpText, UsageOfAFreeListOfWordsIsWrittenDown) {
  EXPECT_EQ(usage("OUTPUT CLOSE"), "OUTPUT CLOSE [NAME=]{name | * | ALL}.\n");
}

TEST(HelpText, OverviewListsTheCommandsOfThisVersion) {
  const std::string overview = commandOverview();
  for (const Command& command : commandTable()) {
    const std::string line = std::string(command.name) + " ";
    EXPECT_EQ(overview.find(line) != std::string::npos, command.run != nullptr) << command.name;
  }
}

TEST(HelpText, OverviewOfAStartListsWhatBeginsWithItsWords) {
  EXPECT_EQ(commandOverview("output") + commandOverview("stb"), commandOverview());
  EXPECT_THAT(commandOverview("output"), Not(HasSubstr("STB PRINT")));
  EXPECT_THAT(commandOverview("OUTPUT"), HasSubstr("OUTPUT NEW"));
  for (const char* start : {"outp", "PIVOT", "NEW", "OUTPUT NEW"}) {
    EXPECT_EQ(commandOverview(start), "") << start;
  }
}

TEST(HelpText, ReferenceHasASectionPerCommandOfThisVersion) {
  const std::string reference = languageReference();
  for (const Command& command : commandTable()) {
    const std::string heading = "\n## " + std::string(command.name) + "\n";
    if (command.run == nullptr) {
      EXPECT_THAT(reference, Not(HasSubstr(heading)));
    } else {
      EXPECT_THAT(reference, HasSubstr(heading + "\n" + std::string(command.summary) + "\n\n```\n" +
                                       usageOf(command) + "```\n"));
    }
  }
}

TEST(HelpText, MessagesAreATableWithEveryRowOfTheCatalogue) {
  const std::string table = messageReference();
  for (const MessageEntry& entry : messageCatalogue()) {
    EXPECT_THAT(table, HasSubstr("\n| `" + std::string(entry.operation) + "` | "));
  }
}

TEST(HelpText, OfTheCommentNamesEveryColor) {
  std::string details(findCommand("OUTPUT COMMENT")->details);
  std::replace(details.begin(), details.end(), '\n', ' ');
  for (const NamedColor& color : cellColorNames()) {
    EXPECT_NE(details.find(" " + std::string(color.name)), std::string::npos) << color.name;
  }
}

}  // namespace
}  // namespace vornwout
