#include "platform/text/shown_text.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(ShownText, KeepsLineEndsAndNothingElseThatMoves) {
  EXPECT_EQ(shownText("a\nb\r\nc"), "a\nb\nc");
  EXPECT_EQ(shownText("a\rb\x1b[2J\x07"), "a\uFFFDb\uFFFD[2J\uFFFD");
  EXPECT_EQ(shownText("\xff"), "\uFFFD");
  EXPECT_EQ(shownText("a\r"), "a\uFFFD");
}

TEST(ShownText, OneLineHasBlanksForLineEnds) {
  EXPECT_EQ(shownLine("a\nb\r\nc\x1b"), "a b c\uFFFD");
}

TEST(ShownText, WidestLineCounts) {
  EXPECT_EQ(widestLine(""), 0);
  EXPECT_EQ(widestLine("ab\n日本\nx\n"), 4);
}

}  // namespace
}  // namespace vornwout
