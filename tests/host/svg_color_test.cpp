#include "host/looks/svg_color.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(SvgColor, EveryNotationIsRead) {
  struct Case {
    const char* text;
    std::optional<SvgColor> color;
  };
  const std::string longText(201, ' ');
  const Case cases[] = {
      {"#0a1B2c", SvgColor{{10, 27, 44}, ""}},
      {"#1af", SvgColor{{17, 170, 255}, ""}},
      {"#1aff", SvgColor{{17, 170, 255}, ""}},
      {"#1af0", SvgColor{{17, 170, 255}, "0.000"}},
      {"#0a1b2c80", SvgColor{{10, 27, 44}, "0.502"}},
      {"rgb(1, 2, 300)", SvgColor{{1, 2, 255}, ""}},
      {"RGB(0%,44.70%,100%)", SvgColor{{0, 114, 255}, ""}},
      {"rgba(1,2,3,0.25)", SvgColor{{1, 2, 3}, "0.25"}},
      {"rgb(1 2 3 / 50%)", SvgColor{{1, 2, 3}, "50%"}},
      {"rgba(1,2,3,1)", SvgColor{{1, 2, 3}, ""}},
      {"rgba(1,2,3,100%)", SvgColor{{1, 2, 3}, ""}},
      {"hsl(0, 100%, 50%)", SvgColor{{255, 0, 0}, ""}},
      {"hsl(-120deg 100% 25%)", SvgColor{{0, 0, 128}, ""}},
      {"hsla(120,100%,50%,.5)", SvgColor{{0, 255, 0}, ".5"}},
      {"aliceblue", SvgColor{{240, 248, 255}, ""}},
      {"SteelBlue", SvgColor{{70, 130, 180}, ""}},
      {"grey", SvgColor{{128, 128, 128}, ""}},
      {"yellowgreen", SvgColor{{154, 205, 50}, ""}},
      {"", std::nullopt},
      {"none", std::nullopt},
      {"zzz", std::nullopt},
      {"currentColor", std::nullopt},
      {"url(#a)", std::nullopt},
      {"#12", std::nullopt},
      {"#12345", std::nullopt},
      {"#12345g", std::nullopt},
      {"rgb(1,2)", std::nullopt},
      {"rgb(1,2,3,4,5)", std::nullopt},
      {"rgb(1,2,nan)", std::nullopt},
      {"rgb(1,2,x)", std::nullopt},
      {"rgb(1,2,3", std::nullopt},
      {"cmyk(1,2,3)", std::nullopt},
      {longText.c_str(), std::nullopt},
  };
  for (const Case& c : cases) EXPECT_EQ(parseSvgColor(c.text), c.color) << c.text;
}

TEST(SvgColor, HowMuchIsSeenThroughStays) {
  EXPECT_EQ(recolored({{1, 2, 3}, ""}, "#0a0b0c"), "#0a0b0c");
  EXPECT_EQ(recolored({{1, 2, 3}, "50%"}, "#0a0b0c"), "rgba(10,11,12,50%)");
}

TEST(SvgColor, ContrastIsThatOfTheGuidelines) {
  EXPECT_DOUBLE_EQ(contrastRatio({0, 0, 0}, {255, 255, 255}), 21);
  EXPECT_DOUBLE_EQ(contrastRatio({9, 9, 9}, {9, 9, 9}), 1);
  EXPECT_NEAR(contrastRatio({255, 255, 255}, {118, 118, 118}), 4.54, 0.005);
  EXPECT_NEAR(contrastRatio({255, 0, 0}, {255, 255, 255}), 4.0, 0.005);
}

TEST(SvgColor, HuesAndGreys) {
  EXPECT_DOUBLE_EQ(hueOf({255, 0, 0}), 0);
  EXPECT_DOUBLE_EQ(hueOf({0, 9, 0}), 120);
  EXPECT_DOUBLE_EQ(hueOf({0, 0, 255}), 240);
  EXPECT_DOUBLE_EQ(hueOf({255, 0, 255}), 300);
  EXPECT_DOUBLE_EQ(hueOf({7, 7, 7}), 0);
  EXPECT_TRUE(isNeutral({100, 110, 120}));
  EXPECT_FALSE(isNeutral({100, 110, 121}));
}

}  // namespace
}  // namespace vornwout
