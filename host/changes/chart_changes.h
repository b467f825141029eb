// Restyles charts as GRAPHS of OUTPUT MODIFY asks for: a ChartChanger for a group,
// ChartChanger::apply() for each of its charts.
//
// A style sheet is a file of the Looks folder, of the installation or else of the user, by its name
// without the ending; chart templates come as contents. Styles apply in the order: sheet,
// templates.
#pragma once

#include <vector>

#include "host/changes/modify_request.h"
#include "host/document/object_content.h"
#include "host/looks/chart_template.h"

namespace vornwout {

class ChartChanger {
 public:
  /// Throws ChangeError for a style sheet that is not there and for a file that is none.
  explicit ChartChanger(const GraphChange& change);

  /// Whether there is a style at all.
  bool changesCharts() const { return !styles_.empty(); }

  /// Gives an SVG chart the styles, one after the other; true when that changed it. Other pictures
  /// stay as they are: they hold no parts that could be told apart. Throws ChangeError for a chart
  /// that cannot be read.
  bool apply(MediaContent& chart) const;

 private:
  std::vector<ChartStyle> styles_;
};

}  // namespace vornwout
