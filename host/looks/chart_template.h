// How charts look: the styles that a chart template (.qgt) or a style sheet (.qgs) gives to the
// parts of a chart.
//
// Both are the same XML under another root element, which docs/chart-template.xsd describes: a
// template travels within a command, a style sheet is named and lies in Looks/. What neither says
// stays as the chart has it. How a style gets into a chart is svg_restyle.h's.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/looks/look_element.h"

namespace vornwout {

struct ChartText {
  std::string font;  ///< a family's name, empty for the chart's own
  double size = 0;   ///< points, 0 for the chart's own
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::string color;  ///< "#rrggbb", empty for the chart's own
  friend bool operator==(const ChartText&, const ChartText&) = default;
};

enum class ChartDash { kOwn, kSolid, kDashed, kDotted };

struct ChartLine {
  std::string color;  ///< "#rrggbb", empty for the chart's own
  double width = 0;   ///< points, 0 for the chart's own
  ChartDash dash = ChartDash::kOwn;
  friend bool operator==(const ChartLine&, const ChartLine&) = default;
};

struct ChartStyle {
  std::string name;
  std::string background;           ///< "#rrggbb" behind the whole chart, empty for its own
  std::string panel;                ///< "#rrggbb" behind the data, empty for the chart's own
  ChartText text;                   ///< of all texts
  ChartText title;                  ///< of the largest text, before `text`
  std::string quietText;            ///< "#rrggbb" of texts that were fainter than most
  ChartLine axis;                   ///< axes and their ticks
  ChartLine grid;                   ///< lines across the data
  ChartLine frame;                  ///< boxes around the data, the legend, the chart
  double seriesWidth = 0;           ///< points of the lines of the data, 0 for their own
  std::vector<std::string> series;  ///< "#rrggbb" for the first, the second ... colour of the data
  /// "#rrggbb" of the least and the most, for data whose colours are steps of one; both or none.
  std::string scaleLow;
  std::string scaleHigh;
  friend bool operator==(const ChartStyle&, const ChartStyle&) = default;
};

/// Reads a template, whole or from its root element on. Throws LookError.
ChartStyle parseChartTemplate(std::string_view xml);

/// Likewise a style sheet.
ChartStyle parseChartStyleSheet(std::string_view xml);

}  // namespace vornwout
