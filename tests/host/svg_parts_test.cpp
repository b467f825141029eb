// What the marks of a chart become that are drawn by use elements, and which number a colour gets.
#include "host/looks/svg_parts.h"

#include <string>

#include <gtest/gtest.h>

#include "host/looks/svg_restyle.h"

namespace vornwout {
namespace {

std::string restyled(const std::string& inside) {
  ChartStyle style;
  style.text.color = "#000001";
  style.quietText = "#000002";
  style.series = {"#0000f1", "#0000f2", "#0000f3"};
  style.title.size = 30;
  style.text.size = 15;
  return restyleSvg(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"300\" height=\"200\">" + inside + "</svg>",
      style);
}

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

const std::string kText = "<text x='5' y='190' font-size='9'>t</text>";

TEST(SvgParts, MarksThatAreUsedAreDataOfTheirColors) {
  const std::string path = "<path d='M-3 0h6v6z'/>";
  const std::string uses = "<use href='#m' fill='#1f77b4'/><use href='#m' fill='#ff7f0e'/>";
  const std::string groups =
      "<g fill='#1f77b4'><use href='#m'/></g><g fill='#ff7f0e'><use href='#m'/></g>";
  const std::string bare = "<defs><path id='m' d='M-3 0h6v6z'/></defs>";
  const std::string symbol = "<defs><symbol id='m'>" + path + "</symbol></defs>";
  const std::string round = "<defs><symbol id='m'><circle r='4'/></symbol></defs>";
  const std::string group = "<defs><g id='m'><g><circle r='4'/></g></g></defs>";
  const std::string classes =
      "<style>.a{fill:#1f77b4}.b{fill:#ff7f0e}</style><use class='a' href='#m'/>"
      "<use class='b' href='#m'/>";
  const std::string strokes =
      "<g fill='none' stroke='#1f77b4'><use href='#m'/></g>"
      "<g fill='none' stroke='#ff7f0e'><use href='#m'/></g>";
  for (const std::string& inside :
       {symbol + uses, round + uses, symbol + classes, bare + groups, symbol + groups,
        round + groups, group + groups, bare + strokes, group + strokes}) {
    const std::string result = restyled(inside + kText);
    for (const char* const n : {"1", "2"}) {
      EXPECT_TRUE(has(result, std::string(":#0000f") + n)) << result;
      EXPECT_TRUE(has(result, std::string("-part=\"series-") + n)) << result;
    }
    EXPECT_FALSE(has(result, "series-3")) << result;
    EXPECT_FALSE(has(result, "quiet-text")) << result;
  }
}

TEST(SvgParts, WhatAMaskUsesStays) {
  const std::string defs =
      "<defs><rect id='full' width='300' height='200' fill='white'/>"
      "<mask id='m'><g><use href='#full'/></g></mask></defs>";
  const std::string result = restyled(defs + "<g mask='url(#m)'><circle r='5' fill='red'/></g>");
  EXPECT_TRUE(has(result, "<rect id=\"full\" width=\"300\" height=\"200\" fill=\"white\"/>"))
      << result;
}

TEST(SvgParts, LightTextsWithoutAGroundAreForADarkPage) {
  const std::string result = restyled(
      "<circle r='5' fill='red'/><text x='9' y='190' fill='#fff'>a</text>"
      "<text x='90' y='190' fill='#fff'>b</text>");
  EXPECT_FALSE(has(result, "paper")) << result;
  EXPECT_TRUE(has(result, "data-fill-part=\"text\"")) << result;
}

TEST(SvgParts, WordsOfBarePathsStayText) {
  const std::string bare = "<defs><path id='m' d='M-3 0h6v6z'/></defs>";
  for (const char* const color : {"#222", "#1f77b4"}) {
    const std::string ink = std::string("fill='") + color + "'";
    const std::string result =
        restyled(bare + "<text " + ink + ">a</text><g " + ink + "><use href='#m'/></g>");
    EXPECT_TRUE(has(result, "<g style=\"fill:#000001\" data-fill-part=\"text\">")) << result;
  }
}

TEST(SvgParts, CurrentColorOfAMarkIsLeftToItsUse) {
  const std::string bar =
      "<symbol id='bar'><rect width='10' height='100' fill='currentColor'/></symbol>";
  const std::string result =
      restyled(bar + "<use href='#bar' color='#1f77b4'/><use href='#bar' color='#ff7f0e'/>");
  EXPECT_TRUE(has(result, "height=\"100\" fill=\"currentColor\"/>")) << result;
  EXPECT_FALSE(has(result, "series-")) << result;
}

TEST(SvgParts, MarkInTheColorAroundItIsApartFromOtherData) {
  const std::string result = restyled(
      "<defs><circle id='m' r='4'/></defs><g fill='#0b5fa5'><use href='#m'/></g>"
      "<rect x='40' y='100' width='20' height='50' fill='#d62728'/>");
  EXPECT_TRUE(has(result, "<use href=\"#m\" style=\"fill:#0000f1\"")) << result;
  EXPECT_TRUE(has(result, "style=\"fill:#0000f2\" data-fill-part=\"series-2\"")) << result;
}

TEST(SvgParts, ColorWithoutAMarkIsNumberedBehindAllMarks) {
  const std::string box = "<rect x='9' y='9' width='9' height='90' ";
  const std::string result =
      restyled(box + "fill='red'/>" + box + "fill='blue' data-fill-part='series-1'/>" + box +
               "fill='blue'/>");
  EXPECT_TRUE(has(result, "style=\"fill:#0000f2\" data-fill-part=\"series-2\"")) << result;
  EXPECT_TRUE(has(result, "data-fill-part=\"series-1\" style=\"fill:#0000f1\"")) << result;
  EXPECT_FALSE(has(result, "series-3")) << result;
}

TEST(SvgParts, SmallTextIsNoTitleHoweverItsSizeIsSaid) {
  const std::string title = "<text font-size='16'>Ttl</text>";
  for (const char* const small :
       {"<text style='font:bold 9px serif'>s</text>", "<text font-size='small'>s</text>",
        "<style>.s{font:10px sans-serif}</style><text class='s'>s</text>",
        "<g style='font:italic 700 9px/1.2 serif'><text>s</text></g>",
        "<text style='font-size:30px;font:10px Arial'>s</text>"}) {
    const std::string result = restyled(title + small);
    EXPECT_LT(result.find("data-fill-part=\"title\""), result.find(">Ttl")) << result;
  }
  EXPECT_TRUE(
      has(restyled("<text style='font-size:9px;font:10px Arial'>s</text>"), "font:10px Arial;"));
}

}  // namespace
}  // namespace vornwout
