// Finds out which element of an SVG chart plays which part: paper, axis, grid, text, data.
//
// Entry point: findSvgParts(). docs/looks.md has the rules, and the attributes that go before them.
// The time is in proportion to the chart, whatever is in it.
#pragma once

#include <string>
#include <vector>

#include <pugixml.hpp>

#include "host/looks/svg_color.h"

namespace vornwout {

enum class SvgPart {
  kBackground,
  kPanel,
  kPaper,  ///< what has the colour of the background without being it
  kText,
  kQuietText,
  kTitle,
  kAxis,
  kGrid,
  kFrame,
  kOutline,  ///< grey line around something that is data
  kSeries,
  kStep,      ///< data, too, but of a scale from little to much of one colour
  kOnSeries,  ///< text that stands on data
  kOnStep,
  kOwn,    ///< stays as it is: a zone behind the data, a text on it or on a gradient
  kOther,  ///< not told yet, or left as it is
};

/// One fill or stroke and the part that it plays.
struct SvgPaint {
  pugi::xml_node node;
  bool isStroke = false;
  SvgColor color;
  SvgPart part = SvgPart::kOther;
  int series = 0;           ///< from 1, of a series or a step, or of the one that a text stands on
  double scale = 1;         ///< of the element's units on the page
  bool isUnfilled = false;  ///< the shape is a line and nothing else
  bool keepsWidth = false;  ///< its width goes by the line that it marks, or is data
  bool isWide = false;      ///< its width is data
  double width = 0;         ///< of a line that is told by its width for the first time, in points
};

/// A text that is written in letters, or a piece of one with a font size of its own.
struct SvgText {
  pugi::xml_node node;
  double fontSize = 0;       ///< in the element's units
  double outerFontSize = 0;  ///< of the text that it is a piece of, 0 for a whole text
  double scale = 1;
  bool isTitle = false;
};

struct SvgParts {
  std::vector<SvgPaint> paints;  ///< in the order of the chart
  std::vector<SvgText> texts;    ///< likewise
  int seriesCount = 0;
  int stepCount = 0;
  double unitsPerPoint = 1;
  bool hasBackground = false;
  double left = 0;  ///< corner of the page
  double top = 0;
};

SvgParts findSvgParts(pugi::xml_node root);

}  // namespace vornwout
