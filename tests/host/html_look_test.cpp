#include "host/export/html/html_look.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(HtmlLook, FontsThatCouldEndTheStyleAreLeftOut) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"DejaVu Sans", "font-family:'DejaVu Sans';"},
      {"Source-Code 2_x", "font-family:'Source-Code 2_x';"},
      {"明朝", "font-family:'明朝';"},
      {"a'b", ""},
      {"a\"b", ""},
      {"a\\b", ""},
      {"a;b", ""},
      {"a\nb", ""},
      {"url(x)", ""},
      {"a,b", ""},
      {std::string("a\0b", 3), ""},
      {"a\xFF", "font-family:'a\uFFFD';"},
  };
  for (const auto& [font, css] : cases) EXPECT_EQ(fontCss(font, 0), css) << font;
}

TEST(HtmlLook, SizesThatNobodyCanReadAreLeftToThePage) {
  const std::vector<std::pair<double, std::string>> cases = {
      {0, ""},
      {-1, ""},
      {3.9, ""},
      {4, "font-size:4pt;"},
      {10.25, "font-size:10.25pt;"},
      {96, "font-size:96pt;"},
      {96.1, ""},
      {std::numeric_limits<double>::infinity(), ""},
      {std::numeric_limits<double>::quiet_NaN(), ""},
  };
  for (const auto& [size, css] : cases) EXPECT_EQ(fontCss("", size), css) << size;
}

TEST(HtmlLook, WhatIsSetIsSaidAndNothingElse) {
  const std::vector<std::pair<TextLook, std::string>> cases = {
      {{}, ""},
      {{"red", "", true, true, true, "Arial", 9},
       "color:#ff0000;font-weight:bold;font-style:italic;text-decoration:underline;"
       "font-family:'Arial';font-size:9pt;"},
      {{"", "", false, false, false, "", 0},
       "font-weight:normal;font-style:normal;text-decoration:none;"},
      {{"", "#000000", {}, {}, {}, "", 0}, "color:#ffffff;background:#000000;"},
      {{"dog", "expression(1)", {}, {}, {}, "", 0}, ""},
  };
  for (const auto& [look, style] : cases) EXPECT_EQ(lookCss(look).style, style);
}

TEST(HtmlLook, AColourWithoutABackgroundNeedsALightOne) {
  EXPECT_TRUE(lookCss({"red", "", {}, {}, {}, "", 0}).needsLight);
  EXPECT_TRUE(lookCss({"red", "dog", {}, {}, {}, "", 0}).needsLight);
  EXPECT_FALSE(lookCss({"red", "blue", {}, {}, {}, "", 0}).needsLight);
  EXPECT_FALSE(lookCss({"", "blue", {}, {}, {}, "", 0}).needsLight);
  EXPECT_FALSE(lookCss({"", "", true, {}, {}, "", 0}).needsLight);
}

}  // namespace
}  // namespace vornwout
