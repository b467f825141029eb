#include "host/looks/svg_restyle.h"

#include <filesystem>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/build/svg_sanitizer.h"
#include "tests/support/file_content.h"

namespace vornwout {
namespace {

const std::string kExamples = VORN_SOURCE_DIR "/examples/open-data";
const std::string kLooks = VORN_SOURCE_DIR "/Looks";

/// A chart of 400 by 300 points on white paper.
std::string chart(const std::string& inside) {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"400pt\" height=\"300pt\" "
         "viewBox=\"0 0 400 300\">" +
         inside + "</svg>";
}

/// What restyling makes of the inside of a chart.
std::string restyled(const std::string& inside, const ChartStyle& style) {
  const std::string frame = chart("");
  const std::string result = restyleSvg(chart(inside), style);
  const std::size_t head = frame.size() - 6;
  return result.substr(head, result.size() - head - 6);
}

/// A style in which every part has a colour of its own.
ChartStyle colors() {
  ChartStyle style;
  style.panel = "#00000a";
  style.text.color = "#000001";
  style.quietText = "#000002";
  style.axis.color = "#000003";
  style.grid.color = "#000004";
  style.frame.color = "#000005";
  style.series = {"#0000f1", "#0000f2", "#0000f3"};
  style.scaleLow = "#100000";
  style.scaleHigh = "#300000";
  return style;
}

std::vector<ChartStyle> finishedStyles() {
  return {parseChartTemplate(fileContent(kLooks + "/Calm.qgt")),
          parseChartTemplate(fileContent(kLooks + "/NightChart.qgt")),
          parseChartStyleSheet(fileContent(kLooks + "/Journal.qgs")),
          parseChartStyleSheet(fileContent(kLooks + "/Slides.qgs"))};
}

std::vector<std::string> realCharts() {
  std::vector<std::string> charts;
  for (const auto& entry : std::filesystem::directory_iterator(kExamples)) {
    if (entry.path().extension() == ".svg") charts.push_back(fileContent(entry.path()));
  }
  return charts;
}

/// Everything but colours, lines and marks: what a chart says.
std::string withoutStyle(const std::string& svg) {
  static const std::regex pattern(
      R"re( (style|data-(fill|stroke)-part|data-stroke-width)="[^"]*")re");
  return std::regex_replace(svg, pattern, "");
}

TEST(SvgRestyle, EachPartIsToldFromWhatIsDrawn) {
  struct Case {
    const char* inside;
    const char* restyled;
  };
  const Case cases[] = {
      // Rules: long and faint ones are the grid's.
      {"<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" stroke=\"#ddd\"/>",
       "<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" style=\"stroke:#000004\" "
       "data-stroke-part=\"grid\"/>"},
      {"<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" stroke=\"#333\"/>",
       "<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" style=\"stroke:#000003\" "
       "data-stroke-part=\"axis\"/>"},
      {"<path d=\"M9 9v5\" style=\"fill:none;stroke:#ddd\"/>",
       "<path d=\"M9 9v5\" style=\"fill:none;stroke:#000003\" data-stroke-part=\"axis\"/>"},
      // Boxes.
      {"<rect x=\"9\" y=\"9\" width=\"50\" height=\"50\" fill=\"none\" stroke=\"black\"/>",
       "<rect x=\"9\" y=\"9\" width=\"50\" height=\"50\" fill=\"none\" style=\"stroke:#000005\" "
       "data-stroke-part=\"frame\"/>"},
      {"<polyline points=\"9,9 9,99 99,99\" fill=\"none\" stroke=\"black\"/>",
       "<polyline points=\"9,9 9,99 99,99\" fill=\"none\" style=\"stroke:#000005\" "
       "data-stroke-part=\"frame\"/>"},
      {"<rect x=\"9\" y=\"9\" width=\"300\" height=\"200\" fill=\"#ebebeb\" stroke=\"gray\"/>",
       "<rect x=\"9\" y=\"9\" width=\"300\" height=\"200\" style=\"fill:#00000a;stroke:#000005\" "
       "data-fill-part=\"panel\" data-stroke-part=\"frame\"/>"},
      // Data: colours, and greys that no furniture has the form of.
      {"<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" stroke=\"red\"/>",
       "<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" style=\"stroke:#0000f1\" "
       "data-stroke-part=\"series-1\"/>"},
      {"<polyline points=\"9,9 50,60 99,20\" fill=\"none\" stroke=\"#000\"/>",
       "<polyline points=\"9,9 50,60 99,20\" fill=\"none\" style=\"stroke:#0000f1\" "
       "data-stroke-part=\"series-1\"/>"},
      {"<path d=\"M1 1H9V9H20V20H30V30H40\" fill=\"none\" stroke=\"#000\"/>",
       "<path d=\"M1 1H9V9H20V20H30V30H40\" fill=\"none\" style=\"stroke:#0000f1\" "
       "data-stroke-part=\"series-1\"/>"},
      {"<rect x=\"9\" y=\"9\" width=\"9\" height=\"90\" fill=\"#808080\" stroke=\"#222\"/>",
       "<rect x=\"9\" y=\"9\" width=\"9\" height=\"90\" style=\"fill:#0000f1;stroke:#000003\" "
       "data-fill-part=\"series-1\" data-stroke-part=\"outline\"/>"},
      {"<circle r=\"5\"/>", "<circle r=\"5\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>"},
      // The same colour is the same series, another one the next.
      {"<g fill=\"blue\"><circle r=\"5\"/><circle r=\"5\" fill=\"#f00\"/></g>"
       "<circle r=\"5\" fill=\"hsl(240, 100%, 50%)\"/>",
       "<g fill=\"blue\"><circle r=\"5\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>"
       "<circle r=\"5\" style=\"fill:#0000f2\" data-fill-part=\"series-2\"/></g>"
       "<circle r=\"5\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>"},
      // Three shades of one colour are a scale.
      {"<circle r=\"5\" fill=\"#000088\"/><circle r=\"5\" fill=\"#8888ff\"/>"
       "<circle r=\"5\" fill=\"#0000ff\"/>",
       "<circle r=\"5\" style=\"fill:#300000\" data-fill-part=\"step-3\"/>"
       "<circle r=\"5\" style=\"fill:#100000\" data-fill-part=\"step-1\"/>"
       "<circle r=\"5\" style=\"fill:#200000\" data-fill-part=\"step-2\"/>"},
      // Four colours, and three to give: they stay apart.
      {"<circle r=\"5\" fill=\"red\"/><circle r=\"5\" fill=\"lime\"/>"
       "<circle r=\"5\" fill=\"blue\"/><circle r=\"5\" fill=\"cyan\"/>",
       "<circle r=\"5\" fill=\"red\" data-fill-part=\"series-1\"/>"
       "<circle r=\"5\" fill=\"lime\" data-fill-part=\"series-2\"/>"
       "<circle r=\"5\" fill=\"blue\" data-fill-part=\"series-3\"/>"
       "<circle r=\"5\" fill=\"cyan\" data-fill-part=\"series-4\"/>"},
      // How much is seen through stays.
      {"<circle r=\"5\" style=\"fill: rgba(255, 0, 0, .5); opacity: 0.7\"/>",
       "<circle r=\"5\" style=\"fill:rgba(0,0,241,.5); opacity: 0.7\" "
       "data-fill-part=\"series-1\"/>"},
      // Texts.
      {"<text>a</text><text fill=\"#111\">b</text><text>c</text><text fill=\"#888\">d</text>",
       "<text style=\"fill:#000001\" data-fill-part=\"text\">a</text>"
       "<text style=\"fill:#000001\" data-fill-part=\"text\">b</text>"
       "<text style=\"fill:#000001\" data-fill-part=\"text\">c</text>"
       "<text style=\"fill:#000002\" data-fill-part=\"quiet-text\">d</text>"},
      {"<text fill=\"red\">of it</text><circle r=\"5\" fill=\"red\"/><text fill=\"white\">on it"
       "<tspan fill=\"#fefefe\">!</tspan></text>",
       "<text style=\"fill:#0000f1\" data-fill-part=\"series-1\">of it</text>"
       "<circle r=\"5\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>"
       "<text fill=\"white\" data-fill-part=\"paper\">on it"
       "<tspan fill=\"#fefefe\" data-fill-part=\"paper\">!</tspan></text>"},
      // Words that are drawn.
      {"<defs><symbol id=\"a\"><path style=\"stroke:none;\" d=\"M1 1L2 3z\"/></symbol></defs>"
       "<g fill=\"#222\"><use href=\"#a\"/><use href=\"#a\"/></g>",
       "<defs><symbol id=\"a\"><path style=\"stroke:none;\" d=\"M1 1L2 3z\"/></symbol></defs>"
       "<g style=\"fill:#000001\" data-fill-part=\"text\"><use href=\"#a\"/><use "
       "href=\"#a\"/></g>"},
      // Marks that are used bring their own ink.
      {"<defs><path id=\"m\" d=\"M0 0V3\" style=\"stroke: #000\"/></defs>"
       "<use href=\"#m\" style=\"stroke: #000\"/>",
       "<defs><path id=\"m\" d=\"M0 0V3\" style=\"stroke:#000003\" data-stroke-part=\"axis\"/>"
       "</defs><use href=\"#m\" style=\"stroke:#000003\" data-stroke-part=\"axis\"/>"},
      // What is not drawn, or not in a colour, stays.
      {"<clipPath id=\"c\"><rect width=\"9\" height=\"9\"/></clipPath>",
       "<clipPath id=\"c\"><rect width=\"9\" height=\"9\"/></clipPath>"},
      {"<circle r=\"5\" fill=\"url(#g)\" stroke=\"none\"/>",
       "<circle r=\"5\" fill=\"url(#g)\" stroke=\"none\"/>"},
      // The current color is that of where it is drawn, and black at first.
      {"<line x2=\"9\" stroke=\"currentColor\"/>",
       "<line x2=\"9\" style=\"stroke:#000003\" data-stroke-part=\"axis\"/>"},
      {"<g color=\"red\"><circle r=\"5\" fill=\"CurrentColor\"/></g>",
       "<g color=\"red\"><circle r=\"5\" style=\"fill:#0000f1\" "
       "data-fill-part=\"series-1\"/></g>"},
      {"<g fill=\"currentColor\" color=\"red\"><circle r=\"5\" color=\"currentColor\"/>"
       "<circle r=\"5\" style=\"color:blue\"/></g>",
       "<g fill=\"currentColor\" color=\"red\"><circle r=\"5\" color=\"currentColor\" "
       "style=\"fill:#0000f1\" data-fill-part=\"series-1\"/><circle r=\"5\" "
       "style=\"color:blue;fill:#0000f2\" data-fill-part=\"series-2\"/></g>"},
      {"<style>circle[r] { color: red }</style><circle r=\"5\" fill=\"currentColor\"/>",
       "<style>circle[r] { color: red }</style><circle r=\"5\" fill=\"currentColor\"/>"},
      // A text that is drawn by a use is in the colour of the use, or in its own.
      {"<defs><g id=\"g\"><text>a</text></g><text>unused</text></defs><use href=\"#g\"/>",
       "<defs><g id=\"g\"><text>a</text></g><text>unused</text></defs>"
       "<use href=\"#g\" style=\"fill:#000001\" data-fill-part=\"text\"/>"},
      {"<defs><text id=\"t\" fill=\"#111\">a</text></defs><use href=\"#t\"/>",
       "<defs><text id=\"t\" style=\"fill:#000001\" data-fill-part=\"text\">a</text></defs>"
       "<use href=\"#t\"/>"},
      {"<circle r=\"5\" fill-opacity=\"0\"/>", "<circle r=\"5\" fill-opacity=\"0\"/>"},
      {"<style>circle[r] { fill: red }</style><circle r=\"5\"/>",
       "<style>circle[r] { fill: red }</style><circle r=\"5\"/>"},
      {"<style>@media print { circle { fill: red } }</style><circle r=\"5\"/>",
       "<style>@media print { circle { fill: red } }</style><circle r=\"5\"/>"},
      // Style sheets.
      {"<style>circle, .no { fill: none; stroke: red } .a { stroke: blue }</style>"
       "<circle r=\"5\" fill=\"lime\"/><circle r=\"5\" class=\"b a\"/>",
       "<style>circle, .no { fill: none; stroke: red } .a { stroke: blue }</style>"
       "<circle r=\"5\" fill=\"lime\" style=\"stroke:#0000f1\" data-stroke-part=\"series-1\"/>"
       "<circle r=\"5\" class=\"b a\" style=\"stroke:#0000f2\" data-stroke-part=\"series-2\"/>"},
      {"<style>.plot line { stroke: #000 } #x > * line.d { stroke: red }</style><g class=\"plot\" "
       "id=\"x\"><line x2=\"9\"/><g><line class=\"d\" x2=\"9\"/></g></g><line x2=\"9\"/>",
       "<style>.plot line { stroke: #000 } #x &gt; * line.d { stroke: red }</style>"
       "<g class=\"plot\" id=\"x\"><line x2=\"9\" style=\"stroke:#000003\" "
       "data-stroke-part=\"axis\"/><g><line class=\"d\" x2=\"9\" style=\"stroke:#0000f1\" "
       "data-stroke-part=\"series-1\"/></g></g><line x2=\"9\"/>"},
      // What the chart itself says goes before all that.
      {"<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" stroke=\"red\" data-stroke-part=\"grid\"/>",
       "<line x1=\"9\" y1=\"9\" x2=\"300\" y2=\"9\" data-stroke-part=\"grid\" "
       "style=\"stroke:#000004\"/>"},
      {"<circle r=\"5\" fill=\"red\" data-fill-part=\"series-3\"/>",
       "<circle r=\"5\" data-fill-part=\"series-3\" style=\"fill:#0000f3\"/>"},
  };
  for (const Case& c : cases) EXPECT_EQ(restyled(c.inside, colors()), c.restyled) << c.inside;
}

TEST(SvgRestyle, MarksThatAreNoneAreGuessedAt) {
  for (const char* mark : {"series-0", "series-", "series-1x", "series-99999999999", "nothing"}) {
    const std::string inside =
        "<circle r=\"5\" fill=\"red\" data-fill-part=\"" + std::string(mark) + "\"/>";
    EXPECT_EQ(restyled(inside, colors()),
              "<circle r=\"5\" data-fill-part=\"series-1\" style=\"fill:#0000f1\"/>");
  }
}

TEST(SvgRestyle, PageGetsItsBackground) {
  ChartStyle style;
  style.background = "#14181f";
  const std::string ground = "style=\"fill:#14181f\" data-fill-part=\"background\"/>";
  const std::string added =
      "<rect x=\"0\" y=\"0\" width=\"100%\" height=\"100%\" "
      "style=\"fill:#14181f;stroke:none\" data-fill-part=\"background\"/>";
  const std::pair<const char*, std::string> cases[] = {
      {"<rect width=\"100%\" height=\"100%\" fill=\"white\"/>",
       "<rect width=\"100%\" height=\"100%\" " + ground},
      {"<path d=\"M0 300L400 300 400 0 0 0z\" fill=\"#fff\"/>",
       "<path d=\"M0 300L400 300 400 0 0 0z\" " + ground},
      {"<g transform=\"scale(2) translate(-1,-1)\"><rect x=\"1\" y=\"1\" width=\"200\" "
       "height=\"150\" fill=\"#eee\"/></g>",
       "<g transform=\"scale(2) translate(-1,-1)\"><rect x=\"1\" y=\"1\" width=\"200\" "
       "height=\"150\" " +
           ground + "</g>"},
      // None is there: it is the first thing that is drawn.
      {"<title>a</title><g/>", "<title>a</title>" + added + "<g/>"},
      {"", added},
      // What had the colour of the paper has that of the new one.
      {"<rect width=\"400\" height=\"300\" fill=\"white\"/>"
       "<rect width=\"40\" height=\"30\" fill=\"#f8f8f8\"/>",
       "<rect width=\"400\" height=\"300\" " + ground +
           "<rect width=\"40\" height=\"30\" style=\"fill:#14181f\" data-fill-part=\"paper\"/>"},
  };
  for (const auto& [inside, expected] : cases) {
    EXPECT_EQ(restyled(inside, style), expected) << inside;
  }
  EXPECT_EQ(
      restyleSvg("<svg xmlns=\"http://www.w3.org/2000/svg\" style=\"background: #fff\"/>", style),
      "<svg xmlns=\"http://www.w3.org/2000/svg\" style=\"background:#14181f\">" + added + "</svg>");
}

TEST(SvgRestyle, LettersGetFontsSizesAndStyles) {
  ChartStyle style;
  style.text = {"Noto Sans", 9, false, std::nullopt, ""};
  style.title = {"", 12, true, true, ""};
  const std::string inside =
      "<text font-size=\"20\" font-family=\"serif\" style=\"fill:#000\">Title</text>"
      "<text font-size=\"10\">a<tspan font-size=\"7\">2</tspan><tspan font-size=\"70%\">3</tspan>"
      "</text><g transform=\"scale(.5)\"><text font-size=\"1em\">b</text></g>";
  EXPECT_EQ(
      restyled(inside, style),
      "<text style=\"fill:#000;font-size:12px;font-family:'Noto Sans',sans-serif;font-weight:bold;"
      "font-style:italic\" data-fill-part=\"title\">Title</text>"
      "<text data-fill-part=\"text\" style=\"font-size:9px;font-family:'Noto Sans',sans-serif;"
      "font-weight:normal\">a<tspan style=\"font-size:6.3px\">2</tspan>"
      "<tspan font-size=\"70%\">3</tspan></text><g transform=\"scale(.5)\">"
      "<text data-fill-part=\"text\" style=\"font-size:18px;font-family:'Noto Sans',sans-serif;"
      "font-weight:normal\">b</text></g>");
  // Points are those of the picture's own size.
  const std::pair<const char*, const char*> sizes[] = {
      {"width=\"400pt\" viewBox=\"0 0 400 300\"", "9px"},
      {"width=\"400pt\" viewBox=\"0 0 800 600\"", "18px"},
      {"width=\"400px\" viewBox=\"0 0 400 300\"", "12px"},
      {"width=\"400\" height=\"300\"", "12px"},
      {"height=\"300\" viewBox=\"0 0 4000 3000\"", "120px"},
      {"width=\"800\" height=\"200\" viewBox=\"0 0 200 200\"", "12px"},
      {"width=\"100%\" viewBox=\"0 0 400 300\"", "12px"},
  };
  for (const auto& [head, size] : sizes) {
    const std::string svg =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" " + std::string(head) + "><text>a</text></svg>";
    EXPECT_NE(restyleSvg(svg, style).find("font-size:" + std::string(size)), std::string::npos)
        << head;
  }
}

TEST(SvgRestyle, FontWhoseNameWouldNotBeKeptIsLeftOut) {
  ChartStyle style;
  style.text.font = "My Behavior";
  EXPECT_EQ(restyled("<text>a</text>", style), "<text data-fill-part=\"text\">a</text>");
}

TEST(SvgRestyle, LinesGetWidthsAndDashes) {
  ChartStyle style;
  style.axis.width = 0.75;
  style.grid = {"", 0.5, ChartDash::kDotted};
  style.frame = {"", 1, ChartDash::kDashed};
  style.seriesWidth = 2;
  const std::pair<const char*, const char*> cases[] = {
      {"<line x2=\"9\" stroke=\"#000\" stroke-width=\"3\"/>",
       "<line x2=\"9\" stroke=\"#000\" style=\"stroke-width:0.75\" data-stroke-part=\"axis\"/>"},
      {"<line x2=\"300\" stroke=\"#ddd\"/>",
       "<line x2=\"300\" stroke=\"#ddd\" style=\"stroke-width:0.5;stroke-dasharray:0.5,1\" "
       "data-stroke-part=\"grid\"/>"},
      {"<rect width=\"9\" height=\"9\" fill=\"none\" stroke=\"#000\"/>",
       "<rect width=\"9\" height=\"9\" fill=\"none\" stroke=\"#000\" "
       "style=\"stroke-width:1;stroke-dasharray:5,3\" data-stroke-part=\"frame\"/>"},
      {"<path d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\" stroke-dasharray=\"1 2\"/>",
       "<path d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\" stroke-dasharray=\"1 2\" "
       "style=\"stroke-width:2\" data-stroke-part=\"series-1\"/>"},
      // The edge of something is no line of the data.
      {"<circle r=\"5\" fill=\"red\" stroke=\"red\"/>",
       "<circle r=\"5\" fill=\"red\" stroke=\"red\" data-fill-part=\"series-1\" "
       "data-stroke-part=\"series-1\"/>"},
  };
  for (const auto& [inside, expected] : cases) EXPECT_EQ(restyled(inside, style), expected);
  style.grid.dash = ChartDash::kSolid;
  EXPECT_NE(restyled("<line x2=\"300\" stroke=\"#ddd\"/>", style).find("stroke-dasharray:none"),
            std::string::npos);
}

TEST(SvgRestyle, WidthsThatSaySomethingStay) {
  ChartStyle style;
  style.seriesWidth = 2;
  style.axis.width = 1;
  style.grid.width = 1;
  const std::string thick = "<path d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\" stroke-width=\"30\"";
  const std::string grey = "<line x2=\"300\" stroke=\"#ddd\" stroke-width=\"30\"";
  for (const std::string& line : {thick, grey}) {
    const std::string once = restyled(line + "/>", style);
    EXPECT_EQ(once, line + " data-stroke-part=\"series-1\" data-stroke-width=\"own\"/>");
  }
  // Lines of one width get another; of two, they keep both.
  const std::string line = "<path d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\" stroke-width=\"1\"";
  const std::string other = "<path d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\" stroke-width=\"3\"";
  const std::string result = restyled(line + "/>" + other + "/>", style);
  EXPECT_EQ(result, line + " data-stroke-part=\"series-1\" data-stroke-width=\"own\"/>" + other +
                        " data-stroke-part=\"series-1\" data-stroke-width=\"own\"/>");
  EXPECT_EQ(restyled(result, style), result);
}

TEST(SvgRestyle, BoxesAreGroundsWhereSomethingLiesOnThem) {
  const auto box = [](int x, int y, int width, int height, const std::string& fill) {
    return "<rect x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
           std::to_string(width) + "\" height=\"" + std::to_string(height) + "\" fill=\"" + fill +
           "\"/>";
  };
  const std::string lines =
      "<polyline points=\"60,60 90,90 150,70\" fill=\"none\" stroke=\"red\"/>"
      "<line x1=\"50\" y1=\"90\" x2=\"160\" y2=\"90\" stroke=\"#eee\"/><circle cx=\"80\" cy=\"70\" "
      "r=\"3\" fill=\"red\"/>";
  const std::pair<std::string, const char*> cases[] = {
      // Bars, however pale.
      {box(50, 50, 30, 200, "lightgray"), "series-1"},
      {box(50, 50, 30, 200, "#eee"), "series-1"},
      {box(50, 50, 110, 100, "#d9d9d9"), "series-1"},
      // Small multiples and legends.
      {box(50, 50, 110, 100, "#d9d9d9") + lines, "panel"},
      {box(50, 50, 110, 100, "#eee") + lines, "paper"},
      // Large ones whatever their colour.
      {box(40, 40, 300, 200, "lightyellow") + lines, "panel"},
      {box(40, 40, 300, 200, "#1e1e4e") + lines, "panel"},
      {box(40, 40, 300, 200, "#1e1e4e"), "series-1"},
      // A zone that the data run through stays.
      {box(70, 0, 30, 300, "#d4edda") + lines, "own"},
  };
  for (const auto& [inside, part] : cases) {
    const std::string result = restyled(inside, colors());
    EXPECT_NE(result.substr(0, result.find('>')).find("fill-part=\"" + std::string(part) + "\""),
              std::string::npos)
        << inside << "\n"
        << result;
  }
}

TEST(SvgRestyle, RulesThatColorNothingAreNoMatter) {
  for (const char* const rule :
       {"circle:hover { fill: red }", "@font-face { font-family: A; src: local(A) }",
        "@keyframes k { from { fill: red } }", ":where(.plot) { max-width: 100% }"}) {
    const std::string result =
        restyled("<style>" + std::string(rule) + "</style><circle r=\"5\"/>", colors());
    EXPECT_NE(result.find("<circle r=\"5\" style=\"fill:#0000f1\""), std::string::npos) << result;
  }
}

TEST(SvgRestyle, TextOnDataCanBeRead) {
  ChartStyle style;
  style.background = "#101418";
  style.text.color = "#f0f0f0";
  style.series = {"#7fd0ff", "#102060"};
  const std::string bars =
      "<rect x=\"50\" y=\"50\" width=\"60\" height=\"90\" fill=\"red\"/>"
      "<path d=\"M300 200V100A100 100 0 0 1 400 200Z\" fill=\"blue\"/>";
  const std::pair<const char*, const char*> cases[] = {
      {"<text x=\"80\" y=\"100\" text-anchor=\"middle\">12</text>",
       "fill:#101418\" data-fill-part=\"on-series-1\""},
      {"<text x=\"325\" y=\"180\" fill=\"white\">12</text>",
       "fill:#f0f0f0\" data-fill-part=\"on-series-2\""},
      {"<text x=\"390\" y=\"110\" text-anchor=\"middle\">12</text>",
       "fill:#f0f0f0\" data-fill-part=\"text\""},
      {"<text x=\"80\" y=\"250\">12</text>", "fill:#f0f0f0\" data-fill-part=\"text\""},
  };
  for (const auto& [text, expected] : cases) {
    const std::string result = restyled(bars + text, style);
    EXPECT_NE(result.find(expected), std::string::npos) << result;
  }
  // On what keeps its colour, a text keeps its own.
  style.series = {"#7fd0ff"};
  EXPECT_NE(
      restyled(bars + cases[1].first, style).find("fill=\"white\" data-fill-part=\"on-series-2\""),
      std::string::npos);
  const std::string gradient =
      "<rect x=\"50\" y=\"50\" width=\"60\" height=\"90\" fill=\"url(#g)\"/>";
  EXPECT_NE(restyled(gradient + cases[0].first, style).find("data-fill-part=\"own\""),
            std::string::npos);
}

TEST(SvgRestyle, ChartWithinAChartIsMeasuredWhereItIsDrawn) {
  ChartStyle style;
  style.background = "#14181f";
  style.panel = "#00000a";
  style.text.size = 9;
  style.title.size = 12;
  const std::string added =
      "<rect x=\"0\" y=\"0\" width=\"100%\" height=\"100%\" "
      "style=\"fill:#14181f;stroke:none\" data-fill-part=\"background\"/>";
  const auto boxed = [](const std::string& attributes, const std::string& part) {
    return "<svg " + attributes + "><rect width=\"400\" height=\"300\" " + part + "/></svg>";
  };
  const std::string open = "fill=\"#d9d9d9\"";
  const std::string panel = "style=\"fill:#00000a\" data-fill-part=\"panel\"";
  const std::string ground = "style=\"fill:#14181f\" data-fill-part=\"background\"";
  const std::string tenth = "width=\"40\" height=\"30\" viewBox=\"0 0 400 300\"";
  const std::string half = "width=\"400\" height=\"300\" viewBox=\"0 0 800 600\"";
  const std::string twice = "width=\"400\" height=\"300\" viewBox=\"0 0 200 150\"";
  const struct {
    std::string attributes;
    std::string part;
    bool addsGround;
  } cases[] = {
      {"x=\"10\" y=\"10\" " + tenth, panel, true},
      {tenth + " overflow=\"visible\"", panel, true},
      {half, panel, true},
      {twice, ground, false},
      {"width=\"100%\" height=\"100%\"", ground, false},
      {"viewBox=\"0 0 400 300\"", ground, false},
      // Cut off at the edges, or not.
      {"width=\"40\" height=\"30\"", panel, true},
      {"width=\"40\" height=\"30\" style=\"overflow:visible\"", ground, false},
      // The box keeps its form, or fills what there is.
      {"width=\"400\" height=\"300\" viewBox=\"0 0 400 600\"", panel, true},
      {"width=\"400\" height=\"300\" viewBox=\"0 0 400 600\" preserveAspectRatio=\"xMidYMid "
       "slice\"",
       panel, true},
      {"width=\"400\" height=\"300\" viewBox=\"0 0 400 600\" preserveAspectRatio=\"xMidYMin "
       "slice\"",
       ground, false},
      {"width=\"400\" height=\"300\" viewBox=\"0 0 800 300\" preserveAspectRatio=\"none\"", panel,
       true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(restyled(boxed(c.attributes, open), style),
              (c.addsGround ? added : "") + boxed(c.attributes, c.part))
        << c.attributes;
  }
  // Ten of its units are one of the page's, so the text within is the smaller one.
  const std::string texts = restyled(
      "<svg " + tenth + "><text font-size=\"90\">n</text></svg><text font-size=\"10\">a</text>",
      style);
  EXPECT_NE(texts.find("font-size:90px\">n"), std::string::npos) << texts;
  EXPECT_NE(texts.find("font-size:12px\">a"), std::string::npos) << texts;
}

TEST(SvgRestyle, WhatIsNotSeenDecidesNothing) {
  ChartStyle style = colors();
  style.background = "#14181f";
  style.text.size = 9;
  style.title.size = 12;
  const std::string added =
      "<rect x=\"0\" y=\"0\" width=\"100%\" height=\"100%\" "
      "style=\"fill:#14181f;stroke:none\" data-fill-part=\"background\"/>";
  const std::string seen = "<path d=\"M0 0L9 99L20 5\" stroke=\"#f00\" fill=\"none\"/>";
  const std::string seenRestyled =
      "<path d=\"M0 0L9 99L20 5\" fill=\"none\" style=\"stroke:#0000f1\" "
      "data-stroke-part=\"series-1\"/>";
  for (const std::string hiding : {"display=\"none\"", "visibility=\"hidden\"", "opacity=\"0\"",
                                   "style=\"visibility:collapse\"", "style=\"display:none\""}) {
    const std::string start = "<g " + hiding + ">";
    // A page, a colour of its own, and a colour that is seen elsewhere.
    const std::string result =
        restyled(start +
                     "<rect width=\"400\" height=\"300\" fill=\"white\"/>"
                     "<path d=\"M0 0L9 99L20 3\" stroke=\"#00ff00\" fill=\"none\"/>"
                     "<circle r=\"5\" fill=\"red\"/></g>" +
                     seen,
                 style);
    EXPECT_EQ(result, added + start +
                          "<rect width=\"400\" height=\"300\" style=\"fill:#14181f\" "
                          "data-fill-part=\"paper\"/>"
                          "<path d=\"M0 0L9 99L20 3\" stroke=\"#00ff00\" fill=\"none\"/>"
                          "<circle r=\"5\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>"
                          "</g>" +
                          seenRestyled);
    const std::string texts =
        restyled(start +
                     "<text font-size=\"40\">n</text></g><text font-size=\"20\">a</text>"
                     "<text font-size=\"10\">b</text>",
                 style);
    EXPECT_NE(texts.find("font-size:9px\" data-fill-part=\"text\">n"), std::string::npos) << texts;
    EXPECT_NE(texts.find("font-size:12px\" data-fill-part=\"title\">a"), std::string::npos)
        << texts;
    // What a mark says of it is done, but counts for nothing.
    EXPECT_EQ(restyled(start +
                           "<circle r=\"5\" fill=\"lime\" data-fill-part=\"series-9\"/>"
                           "<circle r=\"5\" fill=\"lime\" data-fill-part=\"background\"/></g>" +
                           seen,
                       style),
              added + start +
                  "<circle r=\"5\" fill=\"lime\" data-fill-part=\"series-9\"/>"
                  "<circle r=\"5\" data-fill-part=\"background\" style=\"fill:#14181f\"/></g>" +
                  seenRestyled);
  }
  // What is visible again within what is not, is seen.
  EXPECT_EQ(restyled("<g visibility=\"hidden\"><circle r=\"5\" fill=\"lime\"/><circle r=\"5\" "
                     "fill=\"red\" visibility=\"visible\"/></g>",
                     colors()),
            "<g visibility=\"hidden\"><circle r=\"5\" fill=\"lime\"/><circle r=\"5\" "
            "visibility=\"visible\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/></g>");
}

TEST(SvgRestyle, MarkersGoByTheLineThatTheyStandOn) {
  const auto markerOf = [](const std::string& shape) {
    return "<marker id=\"k\">" + shape + "</marker>";
  };
  const std::string axis = "<line x2=\"9\" stroke=\"#000\" marker-end=\"url(#k)\"/>";
  const std::string axisRestyled =
      "<line x2=\"9\" marker-end=\"url(#k)\" style=\"stroke:#000003\" "
      "data-stroke-part=\"axis\"/>";
  const std::string data = "<path d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\"/>";
  const std::string dataRestyled =
      "<path d=\"M1 1L5 9\" fill=\"none\" style=\"stroke:#0000f1\" "
      "data-stroke-part=\"series-1\"/>";
  const struct {
    std::string inside;
    std::string restyled;
  } cases[] = {
      {markerOf("<path d=\"M0 0L9 5L0 9z\" fill=\"black\"/>") + axis,
       markerOf("<path d=\"M0 0L9 5L0 9z\" style=\"fill:#000003\" data-fill-part=\"axis\"/>") +
           axisRestyled},
      // In a place of its own, with a line of its own, in a color that nobody says.
      {"<defs>" + markerOf("<path d=\"M0 0L9 5\" stroke=\"#000\" stroke-width=\"2\"/>") +
           "</defs>" + axis,
       "<defs>" +
           markerOf("<path d=\"M0 0L9 5\" stroke-width=\"2\" "
                    "style=\"fill:#000003;stroke:#000003\" data-fill-part=\"axis\" "
                    "data-stroke-part=\"axis\"/>") +
           "</defs>" + axisRestyled},
      {markerOf("<circle r=\"2\" fill=\"#555\"/><circle r=\"1\" fill=\"white\"/>") + axis,
       markerOf("<circle r=\"2\" style=\"fill:#000003\" data-fill-part=\"outline\"/>"
                "<circle r=\"1\" fill=\"white\" data-fill-part=\"paper\"/>") +
           axisRestyled},
      // Data, by the colour; one that only the marker has is none of the data's.
      {data + axis + markerOf("<circle r=\"2\" fill=\"red\"/><circle r=\"2\" fill=\"lime\"/>"),
       dataRestyled + axisRestyled +
           markerOf("<circle r=\"2\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>"
                    "<circle r=\"2\" fill=\"lime\"/>")},
      {"<g style=\"marker:url(#k)\">" + data + "</g>" + markerOf("<circle r=\"2\" fill=\"red\"/>"),
       "<g style=\"marker:url(#k)\">" + dataRestyled + "</g>" +
           markerOf("<circle r=\"2\" style=\"fill:#0000f1\" data-fill-part=\"series-1\"/>")},
      // Nobody's.
      {markerOf("<circle r=\"2\"/>"), markerOf("<circle r=\"2\"/>")},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(restyled(c.inside, colors()), c.restyled) << c.inside;
  }
  // Its lengths are multiples of those of the line.
  ChartStyle style = colors();
  style.axis.width = 2;
  const std::string wide = restyled(
      markerOf("<path d=\"M0 0L9 5\" fill=\"none\" stroke=\"#000\" stroke-width=\"1\"/>") + axis,
      style);
  EXPECT_NE(wide.find("stroke-width=\"1\" style=\"stroke:#000003\""), std::string::npos) << wide;
}

TEST(SvgRestyle, TextThatChangesIsNoLongerDrawnToALength) {
  const std::string inside =
      "<text font-size=\"8\" textLength=\"40\" lengthAdjust=\"spacing\">ab"
      "<tspan textLength=\"20\">cd</tspan></text>";
  const ChartStyle finished = finishedStyles().back();
  EXPECT_EQ(restyled(inside, finished).find("ength"), std::string::npos);
  for (int i = 0; i < 5; ++i) {
    ChartStyle style;
    style.text.color = "#112233";
    if (i == 1) style.text.size = 9;
    if (i == 2) style.text.font = "Noto Sans";
    if (i == 3) style.text.bold = true;
    if (i == 4) style.text.italic = false;
    const std::string result = restyled(inside, style);
    const bool isKept = i == 0;
    for (const char* const length : {" textLength=\"40\"", "lengthAdjust", "textLength=\"20\""}) {
      EXPECT_EQ(result.find(length) != std::string::npos, isKept) << i << length << result;
    }
  }
}

TEST(SvgRestyle, LineThatDoesNotScaleIsAsWideAsItIsDrawn) {
  ChartStyle style;
  style.seriesWidth = 1.2;
  const std::string line = "d=\"M1 1L5 9\" fill=\"none\" stroke=\"red\" stroke-width=\".3\"";
  for (const char* const said :
       {"vector-effect=\"non-scaling-stroke\"", "style=\"vector-effect:non-scaling-stroke\""}) {
    const std::string svg =
        chart("<g transform=\"scale(10)\"><path " + line + " " + said + "/></g>");
    EXPECT_NE(restyleSvg(svg, style).find("stroke-width:1.6"), std::string::npos) << said;
  }
  EXPECT_NE(restyled("<g transform=\"scale(10)\"><path " + line + "/></g>", style)
                .find("stroke-width:0.12"),
            std::string::npos);
}

TEST(SvgRestyle, StyleThatSaysNothingChangesNothing) {
  ChartStyle style;
  style.name = "Nothing";
  const std::string svg = "<?xml version=\"1.0\"?>" + chart("<circle r=\"5\"/>");
  EXPECT_EQ(restyleSvg(svg, style), svg);
}

TEST(SvgRestyle, WhatIsNoChartIsRefused) {
  for (const char* svg : {"", "<html/>", "<svg", "text"}) {
    EXPECT_THROW(restyleSvg(svg, colors()), SvgError) << svg;
  }
}

TEST(SvgRestyle, RealChartsKeepWhatTheySayAndNeedNoCleaning) {
  const std::vector<std::string> charts = realCharts();
  ASSERT_EQ(charts.size(), 7u);
  for (const std::string& svg : charts) {
    for (const ChartStyle& style : finishedStyles()) {
      const std::string once = restyleSvg(svg, style);
      EXPECT_EQ(withoutStyle(once), withoutStyle(sanitizeSvg(svg)));
      EXPECT_TRUE(sanitizeSvg(once) == once) << style.name;
    }
  }
}

TEST(SvgRestyle, SecondTimeChangesNothingAndTheLastStyleIsSeen) {
  const std::vector<ChartStyle> styles = finishedStyles();
  for (const std::string& svg : realCharts()) {
    for (const ChartStyle& style : styles) {
      const std::string once = restyleSvg(svg, style);
      EXPECT_TRUE(restyleSvg(once, style) == once) << style.name;
      for (const ChartStyle& other : styles) {
        EXPECT_TRUE(restyleSvg(restyleSvg(svg, other), style) == once)
            << other.name << ", " << style.name;
      }
    }
  }
}

TEST(SvgRestyle, RealChartsShowNoColorButThatOfTheStyle) {
  const std::regex pattern("(fill|stroke):(#[0-9a-f]{6}|rgb[^;]*)");
  for (const ChartStyle& style : finishedStyles()) {
    std::set<std::string> known(style.series.begin(), style.series.end());
    known.insert({style.background, style.panel, style.text.color, style.quietText,
                  style.axis.color, style.grid.color, style.frame.color});
    for (const std::string& svg : realCharts()) {
      const std::string result = restyleSvg(svg, style);
      // The shades of a scale are mixed.
      if (result.find("step-") != std::string::npos) continue;
      for (auto it = std::sregex_iterator(result.begin(), result.end(), pattern);
           it != std::sregex_iterator(); ++it) {
        EXPECT_TRUE(known.contains((*it)[2].str())) << style.name << (*it)[0];
      }
    }
  }
}

/// A chart of elements, attributes and values that were not made for each other.
class ChartGenerator {
 public:
  explicit ChartGenerator(unsigned int seed) : random_(seed) {}

  std::string chart() {
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
    if (coin()) svg += " viewBox=\"" + pick(kNumbers) + " " + pick(kNumbers) + " 90 60\"";
    if (coin()) svg += " width=\"" + pick(kLengths) + "\"";
    svg += ">";
    if (coin()) {
      svg += "<style>" + pick(kElements) + ", .a " + pick(kElements) + " { fill: " + pick(kColors) +
             "; stroke:" + pick(kColors) + "}</style>";
    }
    for (int i = number(12); i >= 0; --i) svg += element(0);
    return svg + "</svg>";
  }

 private:
  using Words = std::vector<std::string>;
  inline static const Words kElements = {"g",        "rect",    "circle",  "path",  "line",
                                         "polyline", "text",    "use",     "tspan", "defs",
                                         "symbol",   "polygon", "ellipse", "svg",   "marker"};
  inline static const Words kColors = {
      "red",     "#00f",    "none",    "#eee",      "black",          "rgb(10%, 20%, 90%)",
      "#88f8",   "inherit", "url(#a)", "white",     "rgba(1,2,3,.4)", "hsl(120,50%,50%)",
      "#000080", "#8080ff", "nothing", "#12345678", "currentColor",   "#0000c0"};
  inline static const Words kNumbers = {"0",  "1",   "-5", "30", "60",
                                        "90", "1e3", ".5", "x",  "1e300"};
  inline static const Words kHidings = {"display=\"none\"", "visibility=\"hidden\"",
                                        "visibility=\"visible\"", "opacity=\"0\""};
  inline static const Words kLengths = {"10", "100%", "12pt", "2em", "90", "60", "0", "-3", "9cm"};

  int number(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  bool coin() { return number(2) == 0; }
  const std::string& pick(const Words& words) {
    return words[static_cast<std::size_t>(number(static_cast<int>(words.size())))];
  }

  std::string element(int depth) {
    const std::string& name = pick(kElements);
    std::string svg = "<" + name;
    for (const char* key : {"x", "y", "width", "height", "r", "cx", "x2", "y1", "font-size"}) {
      if (number(3) == 0) svg += " " + std::string(key) + "=\"" + pick(kLengths) + "\"";
    }
    for (const char* key : {"fill", "stroke"}) {
      if (coin()) svg += " " + std::string(key) + "=\"" + pick(kColors) + "\"";
    }
    if (coin()) {
      svg += " style=\"fill:" + pick(kColors) + ";;stroke : " + pick(kColors) +
             "!important; font-size: " + pick(kLengths) + "\"";
    }
    if (number(4) == 0) svg += " class=\"b a\"";
    if (number(12) == 0) svg += " " + pick(kHidings);
    if (number(8) == 0) svg += " marker-end=\"url(#marker)\" vector-effect=\"non-scaling-stroke\"";
    if (name == "svg" && coin()) svg += " viewBox=\"0 0 90 " + pick(kLengths) + "\"";
    if (name == "text" && coin()) svg += " textLength=\"" + pick(kLengths) + "\"";
    if (number(4) == 0) svg += " transform=\"scale(" + pick(kNumbers) + ") rotate(90)\"";
    if (number(4) == 0) svg += " id=\"" + pick(kElements) + "\"";
    if (name == "use") svg += " href=\"#" + pick(kElements) + "\"";
    if (name == "path") {
      svg += " d=\"";
      for (int i = number(8); i >= 0; --i) {
        svg += std::string(1, "MLHVCSQTAZmlhvcsqtaz"[number(20)]);
        for (int j = number(8); j > 0; --j) svg += pick(kNumbers) + " ";
      }
      svg += "\"";
    }
    if (name.starts_with("poly")) svg += " points=\"0 0 " + pick(kNumbers) + ",9 9\"";
    svg += ">";
    if (name == "text" || name == "tspan") svg += "a";
    for (int i = depth < 4 ? number(3) : 0; i > 0; --i) svg += element(depth + 1);
    return svg + "</" + name + ">";
  }

  std::mt19937 random_;
};

TEST(SvgRestyle, LawsHoldForAnyChart) {
  const std::vector<ChartStyle> styles = finishedStyles();
  const std::regex size("font-size:[0-9.]+px");
  for (unsigned int seed = 0; seed < 1000; ++seed) {
    const std::string svg = ChartGenerator(seed).chart();
    const ChartStyle& style = styles[seed % styles.size()];
    const ChartStyle& other = styles[(seed / 4) % styles.size()];
    const std::string once = restyleSvg(svg, style);
    ASSERT_EQ(restyleSvg(once, style), once) << seed << "\n" << svg;
    ASSERT_EQ(sanitizeSvg(once), once) << seed << "\n" << svg;
    // A style with six colours leaves seven as they are, which may be those of the other style.
    if (once.find("series-7") != std::string::npos) continue;
    // The sizes of pieces of a text are rounded once more.
    ASSERT_EQ(std::regex_replace(restyleSvg(restyleSvg(svg, other), style), size, ""),
              std::regex_replace(once, size, ""))
        << seed << "\n"
        << svg;
  }
}

TEST(SvgRestyle, TimeIsInProportionToTheChart) {
  std::string many;
  for (int i = 0; i < 20'000; ++i) {
    many += "<circle r=\"1\" class=\"c" + std::to_string(i) + "\" fill=\"rgb(" +
            std::to_string(i % 250) + "," + std::to_string(i / 250) + ",0)\"/>";
  }
  std::string sheet = "<style>";
  for (int i = 0; i < 5'000; ++i) sheet += ".c" + std::to_string(i) + "{fill:red}";
  EXPECT_NE(restyleSvg(chart(sheet + "</style>" + many), colors()), "");
  std::string deep;
  for (int i = 0; i < kMaxSvgDepth - 1; ++i) deep += "<g transform=\"scale(9)\">";
  for (int i = 0; i < kMaxSvgDepth - 1; ++i) deep += "</g>";
  EXPECT_EQ(restyled(deep, colors()),
            deep.substr(0, deep.find("</g>") - 1) + "/>" + deep.substr(deep.find("</g>") + 4));
}

}  // namespace
}  // namespace vornwout
