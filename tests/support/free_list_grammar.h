// The grammar of the commands that walk their words themselves.
#pragma once

#include <gtest/gtest.h>

#include "platform/parser/grammar_capture.h"

namespace vornwout {

/// Expects that a command declares one required list of free tokens and nothing else.
inline void expectOneFreeTokenList(void (*entry)()) {
  const CommandDescriptor grammar = grammarOf(entry);
  EXPECT_TRUE(grammar.groups().empty());
  ASSERT_EQ(grammar.subcommands().size(), 1U);
  const SubComDescriptor& main = grammar.subcommands()[0];
  EXPECT_EQ(main.name(), "");
  EXPECT_EQ(main.spec(), UPSpecTypes::kTokenList);
  EXPECT_TRUE(main.required());
  EXPECT_FALSE(main.repeatable());
  EXPECT_TRUE(main.params().empty());
}

}  // namespace vornwout
