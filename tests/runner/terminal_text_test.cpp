#include "runner/terminal/terminal_text.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Lines = std::vector<std::string>;

TEST(TerminalText, LinesAreWrappedOnlyAtALimit) {
  EXPECT_EQ(shownLines("one two", 4), (Lines{"one", "two"}));
  EXPECT_EQ(shownLines("one two", 0), (Lines{"one two"}));
  EXPECT_EQ(shownLines("", 0), (Lines{""}));
}

TEST(TerminalText, RepeatsNothingNegativeTimes) {
  EXPECT_EQ(repeated("─", 3), "───");
  EXPECT_EQ(repeated("x", -1), "");
}

TEST(TerminalText, LineIsCutWithAnEllipsis) {
  EXPECT_EQ(cutLine("one two", 7), "one two");
  EXPECT_EQ(cutLine("one two", 6), "one…");
  EXPECT_EQ(cutLine("abcdef", 3), "ab…");
  EXPECT_EQ(cutLine("日本", 2), "…");
  EXPECT_EQ(cutLine("日本語", 4), "日…");
  EXPECT_EQ(cutLine("x", 0), "");
  EXPECT_EQ(cutLine("", 0), "");
}

}  // namespace
}  // namespace vornwout
