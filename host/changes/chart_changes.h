// Restyles charts as GRAPHS of OUTPUT MODIFY asks for: chartStyles() once for a group,
// changeChart() for each of its charts.
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

/// Throws ChangeError for a style sheet that is not there and for a file that is none.
std::vector<ChartStyle> chartStyles(const GraphChange& change);

/// Gives an SVG chart the styles, one after the other; true when that changed it. Other pictures
/// stay as they are: they hold no parts that could be told apart. Throws ChangeError for a chart
/// that cannot be read.
bool changeChart(MediaContent& chart, const std::vector<ChartStyle>& styles);

}  // namespace vornwout
