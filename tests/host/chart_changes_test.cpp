// Why the style of a chart is refused.
#include "host/changes/chart_changes.h"

#include <string>

#include <gtest/gtest.h>

#include "host/changes/change_notes.h"

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
  EXPECT_EQ(refusalOf(change), "in the chart's style, text: its size is not allowed: \"x\"");
}

TEST(ChartChanges, NameOfAMissingStyleSheetIsShortened) {
  GraphChange change;
  change.styleSheet = std::string(100, 'x');
  EXPECT_EQ(refusalOf(change),
            "there is no style sheet " + std::string(23, 'x') + "… in the Looks folder");
}

}  // namespace
}  // namespace vornwout
