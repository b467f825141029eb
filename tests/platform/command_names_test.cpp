// The names of commands as the parser knows them.
#include "platform/parser/command_names.h"

#include <gtest/gtest.h>

#include "tests/support/parsed_command.h"

namespace vornwout {
namespace {

TEST(CommandNames, AreFoundWordByWordWithoutRegardToCase) {
  const ScopedCommandNames names({"OUTPUT NEW", "GO"});
  const TokenizedText text("go Output nEW OUTPUT NEWS OUTPUT 'NEW' GO.");
  const bool expected[] = {true, true, false, false, false, false, false, true};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(beginsCommandName(text.command(), i), expected[i]) << i;
  }
  EXPECT_FALSE(beginsCommandName(text.command(), std::size(expected)));
}

TEST(CommandNames, ThatEndBehindTheCommandAreNotFound) {
  const ScopedCommandNames names({"OUTPUT NEW"});
  const TokenizedText text("OUTPUT.");
  EXPECT_FALSE(beginsCommandName(text.command(), 0));
}

TEST(CommandNames, AreKnownInTheirScopeOnly) {
  const TokenizedText text("GO STOP.");
  EXPECT_FALSE(beginsCommandName(text.command(), 0));
  {
    const ScopedCommandNames outer({"GO"});
    {
      const ScopedCommandNames inner({"STOP"});
      EXPECT_FALSE(beginsCommandName(text.command(), 0));
      EXPECT_TRUE(beginsCommandName(text.command(), 1));
    }
    EXPECT_TRUE(beginsCommandName(text.command(), 0));
    EXPECT_FALSE(beginsCommandName(text.command(), 1));
  }
  EXPECT_FALSE(beginsCommandName(text.command(), 0));
}

}  // namespace
}  // namespace vornwout
