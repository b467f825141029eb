#include "host/looks/chart_template.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "host/looks/svg_color.h"
#include "tests/support/file_content.h"
#include "tests/support/schema_check.h"

namespace vornwout {
namespace {

const std::string kLooks = VORN_SOURCE_DIR "/Looks";

std::string style(const std::string& inside) { return "<template>" + inside + "</template>"; }

std::string refusal(const std::string& xml) {
  try {
    parseChartTemplate(xml);
    return {};
  } catch (const LookError& error) {
    return error.what();
  }
}

TEST(ChartTemplate, EveryPartIsRead) {
  const std::string inside =
      "<background color='#FFFFFF'/><panel color='#eeeeee'/>"
      "<text font='Noto Sans' size='9.5' bold='false' italic='1' color='#111111' "
      "quietColor='#555555'/><title size='12' bold='true' color='#222222'/>"
      "<axis color='#333333' width='0.75' style='solid'/><grid style='dotted'/>"
      "<frame style='dashed' width='20'/><series width='1.5'><color value='#AA0000'/>"
      "<color value='#00aa00'/></series><scale low='#cccccc' high='#000000'/>";
  ChartStyle expected;
  expected.name = "N";
  expected.background = "#ffffff";
  expected.panel = "#eeeeee";
  expected.text = {"Noto Sans", 9.5, false, true, "#111111"};
  expected.quietText = "#555555";
  expected.title = {"", 12, true, std::nullopt, "#222222"};
  expected.axis = {"#333333", 0.75, ChartDash::kSolid};
  expected.grid = {"", 0, ChartDash::kDotted};
  expected.frame = {"", 20, ChartDash::kDashed};
  expected.seriesWidth = 1.5;
  expected.series = {"#aa0000", "#00aa00"};
  expected.scaleLow = "#cccccc";
  expected.scaleHigh = "#000000";
  EXPECT_EQ(parseChartTemplate("<template name='N'>" + inside + "</template>"), expected);
  EXPECT_EQ(parseChartStyleSheet("<?xml version='1.0'?><styleSheet version='1' name='N'>" + inside +
                                 "</styleSheet>"),
            expected);
  EXPECT_EQ(parseChartTemplate("<template/>"), ChartStyle());
}

TEST(ChartTemplate, WhatIsRefusedIsRefusedByTheSchemaToo) {
  std::string colors;
  for (int i = 0; i < 100; ++i) colors += "<color value='#123456'/>";
  struct Case {
    std::string xml;
    std::string refusal;  ///< empty for a style that is fine
  };
  const Case cases[] = {
      {style("<series>" + colors + "</series>"), ""},
      {style("<series>" + colors + "<color value='#123456'/></series>"),
       "series: it has more than 100 colors"},
      {style("<series/>"), ""},
      {style("<series><color/></series>"), "color: it has no value"},
      {style("<series><color value='red'/></series>"), "color: value \"red\" is no #rrggbb"},
      {style("<series><colour value='#123456'/></series>"), "series: unknown element colour"},
      {style("<series width='0'/>"), "series: width \"0\" is below 0.001"},
      {style("<series>#123456</series>"), "series: it must not hold a text"},
      {style("<background/>"), "background: it has no color"},
      {style("<background color='#123456' image='a'/>"), "background: unknown attribute image"},
      {style("<panel color='#123456'><a/></panel>"), "panel: unknown element a"},
      {style("<text color='#12'/>"), "text: color \"#12\" is no #rrggbb"},
      {style("<text quietColor='#12'/>"), "text: quietColor \"#12\" is no #rrggbb"},
      {style("<title quietColor='#123456'/>"), "title: unknown attribute quietColor"},
      {style("<text font=\"a'b\"/>"), "text: font \"a'b\" is no font"},
      {style("<axis width='0'/>"), "axis: width \"0\" is below 0.001"},
      {style("<axis width='20.001'/>"), "axis: width \"20.001\" is above 20"},
      {style("<grid style='double'/>"), "grid: style \"double\" is not known"},
      {style("<frame fill='#123456'/>"), "frame: unknown attribute fill"},
      {style("<scale low='#123456'/>"), "scale: it has no high"},
      {style("<scale high='#123456'/>"), "scale: it has no low"},
      {style("<axis/><axis/>"), "template: it holds axis twice"},
      {style("<legend/>"), "template: unknown element legend"},
      {"<template version='1.0'/>", "template: its version is not known"},
      {"<template size='1'/>", "template: unknown attribute size"},
      {"<chart/>", "chart: template is expected"},
  };
  const SchemaCheck schema("chart-template.xsd");
  for (const Case& c : cases) {
    EXPECT_EQ(refusal(c.xml), c.refusal) << c.xml;
    EXPECT_EQ(schema.refusal(c.xml).empty(), c.refusal.empty()) << c.xml;
  }
}

TEST(ChartTemplate, ATemplateIsNoStyleSheet) {
  EXPECT_THROW(parseChartStyleSheet("<template/>"), LookError);
  EXPECT_THROW(parseChartTemplate("<styleSheet/>"), LookError);
}

TEST(FinishedChartStyles, AreValidAndStandOutFromTheirGround) {
  const SchemaCheck schema("chart-template.xsd");
  int templates = 0;
  int styleSheets = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kLooks)) {
    const std::string extension = entry.path().extension().string();
    if (extension == ".qtt") continue;
    const std::string xml = fileContent(entry.path());
    ChartStyle style;
    if (extension == ".qgt") {
      ++templates;
      style = parseChartTemplate(xml);
      EXPECT_EQ(parseChartTemplate(xml.substr(xml.find("<template"))), style);
    } else {
      ++styleSheets;
      ASSERT_EQ(extension, ".qgs");
      style = parseChartStyleSheet(xml);
    }
    const auto path = entry.path();
    EXPECT_EQ(style.name, path.stem().string());
    EXPECT_EQ(schema.refusal(xml), "") << path;

    const auto contrast = [&](const std::string& ink, const std::string& ground) {
      return contrastRatio(parseCellColor(ink).value(), parseCellColor(ground).value());
    };
    EXPECT_GE(style.series.size(), 6u) << path;
    for (const std::string& ground : {style.background, style.panel}) {
      EXPECT_GE(contrast(style.text.color, ground), 4.5) << path;
      EXPECT_GE(contrast(style.quietText, ground), 4.5) << path;
      EXPECT_GE(contrast(style.axis.color, ground), 3) << path;
      EXPECT_GE(contrast(style.scaleHigh, ground), 4.5) << path;
      // A text in the colour of what it names has to be read, too.
      for (const std::string& color : style.series) {
        EXPECT_GE(contrast(color, ground), 4) << path << color;
        EXPECT_FALSE(isNeutral(parseCellColor(color).value())) << path << color;
      }
    }
  }
  EXPECT_EQ(templates, 2);
  EXPECT_EQ(styleSheets, 2);
}

}  // namespace
}  // namespace vornwout
