#include "runner/terminal/terminal_text.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Lines = std::vector<std::string>;

TEST(TerminalText, KeepsLineEndsAndNothingElseThatMoves) {
  EXPECT_EQ(shownText("a\nb\r\nc"), "a\nb\nc");
  EXPECT_EQ(shownText("a\rb\x1b[2J\x07"), "a\uFFFDb\uFFFD[2J\uFFFD");
  EXPECT_EQ(shownText("\xff"), "\uFFFD");
  EXPECT_EQ(shownText("a\r"), "a\uFFFD");
}

TEST(TerminalText, OneLineHasBlanksForLineEnds) {
  EXPECT_EQ(shownLine("a\nb\r\nc\x1b"), "a b c\uFFFD");
}

TEST(TerminalText, WidestLineCounts) {
  EXPECT_EQ(widestLine(""), 0);
  EXPECT_EQ(widestLine("ab\n日本\nx\n"), 4);
}

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
