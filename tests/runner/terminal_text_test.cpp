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
  // Marks without width are not looked at beyond a bound.
  std::string marks = "a";
  while (marks.size() < 100'000) marks += "\u0301";
  EXPECT_LT(cutLine(marks, 10).size(), 2'000U);
  EXPECT_EQ(cutLine(std::string(100'000, 'x'), 10), "xxxxxxxxx…");
  EXPECT_EQ(cutLine(std::string(100'000, 'x'), 0), "");
}

TEST(TerminalText, StartOfATextIsOneLine) {
  EXPECT_EQ(shownStart("a\nb\x1b", 10), "a b\uFFFD");
  EXPECT_EQ(shownStart("one two", 6), "one…");
  std::string text;
  while (text.size() < 100'000) text += "日";
  EXPECT_EQ(shownStart(text, 5), "日日…");
  EXPECT_EQ(shownStart(std::string(100'000, '\xBF'), 3), "\uFFFD\uFFFD…");
}

TEST(TerminalText, StartEndsBetweenCharacters) {
  EXPECT_EQ(startOf("abc", 3), "abc");
  EXPECT_EQ(startOf("abcd", 3), "abc");
  EXPECT_EQ(startOf("a日本", 3), "a");
  EXPECT_EQ(startOf("a日本", 4), "a日");
  EXPECT_EQ(startOf("日", 2), "");
  EXPECT_EQ(startOf(std::string(20, '\xBF'), 10).size(), 6U) << "no character is that long";
}

}  // namespace
}  // namespace vornwout
