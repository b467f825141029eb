// Why the style of a chart is refused.
#include "host/changes/chart_changes.h"

#include <string>

#include <gtest/gtest.h>

#include "host/changes/change_notes.h"
#include "platform/text/display_width.h"
#include "tests/support/look_folders.h"

namespace vornwout {
namespace {

std::string refusalOf(const GraphChange& change) {
  try {
    const ChartChanger changer(change);
  } catch (const ChangeError& error) {
    return error.what();
  }
  return "nothing was refused";
}

TEST(ChartChanges, StyleThatCannotBeReadIsRefusedWithItsPlaceFirst) {
  GraphChange change;
  change.chartTemplates = {"<template><text size='x'/></template>"};
  EXPECT_EQ(refusalOf(change), "in chart template 1, text: size \"x\" is not allowed");
  change.chartTemplates = {"<template/>", "<template><bogus/></template>"};
  EXPECT_EQ(refusalOf(change), "in chart template 2, template: unknown element bogus");
  const LookFolders folders;
  folders.install("Journalist.qgs", "<styleSheet><text size='2000'/></styleSheet>");
  change.styleSheet = "Journalist";
  EXPECT_EQ(refusalOf(change), "in the style sheet Journal…, text: size \"2000\" is above 1000");
}

TEST(ChartChanges, ReasonIsSeenInWhole) {
  const LookFolders folders;
  const std::string longText(100, 'x');
  const std::string insides[] = {
      "<" + longText + "/>",
      "<series><" + longText + "/></series>",
      "<text quietColor='" + longText + "'/>",
      "<text " + longText + "='1'/>",
      "<text size='" + longText + "'/>",
      "<text size='99999.999'/>",
      "<axis width='0.0001'/>",
      "<text font=';" + longText + "'/>",
      "<text bold='" + longText + "'/>",
      "<grid style='" + longText + "'/>",
      "<background/>",
      "<background>" + longText + "</background>",
      "<background color='#123456'/><background color='#123456'/>",
      "<scale low='#123456'/>",
      "</" + longText + ">",
      "<text size='1' size='2'/>",
      "<text>&" + longText + ";</text>",
      "<text>\xFF</text>",
  };
  for (const std::string& inside : insides) {
    GraphChange change;
    folders.install("Journalist.qgs", "<styleSheet>" + inside + "</styleSheet>");
    change.styleSheet = "Journalist";
    const std::string reason = refusalOf(change);
    EXPECT_TRUE(reason.starts_with("in the style sheet Journal…, ")) << reason;
    EXPECT_LE(displayWidth(reason), 72) << reason;
  }
}

TEST(ChartChanges, NameOfAMissingStyleSheetIsShortened) {
  GraphChange change;
  change.styleSheet = std::string(100, 'x');
  EXPECT_EQ(refusalOf(change),
            "there is no style sheet " + std::string(23, 'x') + "… in the Looks folder");
}

}  // namespace
}  // namespace vornwout
