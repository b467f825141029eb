#include "host/changes/index_text.h"

#include <limits>
#include <set>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

using Style = IndexChange::Style;

TEST(IndexText, EachStyleHasItsWriting) {
  static constexpr struct {
    Style style;
    int number;
    const char* text;
  } kCases[] = {
      {Style::kNumber, 1, "1"},
      {Style::kNumber, 4711, "4711"},
      {Style::kLetter, 1, "a"},
      {Style::kLetter, 26, "z"},
      {Style::kLetter, 27, "aa"},
      {Style::kLetter, 52, "az"},
      {Style::kLetter, 53, "ba"},
      {Style::kLetter, 702, "zz"},
      {Style::kLetter, 703, "aaa"},
      {Style::kLetter, std::numeric_limits<int>::max(), "fxshrxw"},
      {Style::kCapitalLetter, 28, "AB"},
      {Style::kRoman, 1, "i"},
      {Style::kRoman, 4, "iv"},
      {Style::kRoman, 14, "xiv"},
      {Style::kRoman, 40, "xl"},
      {Style::kRoman, 60, "lx"},
      {Style::kRoman, 99, "xcix"},
      {Style::kRoman, 444, "cdxliv"},
      {Style::kCapitalRoman, 1994, "MCMXCIV"},
      {Style::kCapitalRoman, 3888, "MMMDCCCLXXXVIII"},
      {Style::kCapitalRoman, 3999, "MMMCMXCIX"},
      {Style::kRoman, 4000, "mmmm"},
      {Style::kCapitalRoman, 4999, "MMMMCMXCIX"},
  };
  for (const auto& [style, number, text] : kCases) EXPECT_EQ(indexText(style, number), text);
}

TEST(IndexText, NumberWithoutAWritingIsDecimal) {
  for (const Style style : {Style::kNumber, Style::kLetter, Style::kCapitalLetter, Style::kRoman,
                            Style::kCapitalRoman}) {
    EXPECT_EQ(indexText(style, 0), "0");
    EXPECT_EQ(indexText(style, -7), "-7");
    EXPECT_EQ(indexText(style, std::numeric_limits<int>::min()), "-2147483648");
  }
  EXPECT_EQ(indexText(Style::kRoman, 5000), "5000");
  EXPECT_EQ(indexText(Style::kCapitalRoman, 5000), "5000");
}

TEST(IndexText, NoTwoNumbersHaveOneText) {
  for (const Style style : {Style::kLetter, Style::kRoman}) {
    std::set<std::string> texts;
    for (int number = 1; number <= 5000; ++number) texts.insert(indexText(style, number));
    EXPECT_EQ(texts.size(), 5000u);
  }
}

}  // namespace
}  // namespace vornwout
