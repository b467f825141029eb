// Gives an SVG chart another look, whatever program drew it, and leaves its data and texts alone.
//
// Entry point: restyleSvg(). A chart does not say which of its lines is an axis, so that is told
// from what is drawn: greys are furniture and colours are data, unless the form says otherwise; a
// line along the page is a rule, a faint and long one the grid; what covers the page is paper;
// docs/looks.md has the rules. What was found is written down at each element, in `data-fill-part`
// and `data-stroke-part`, and goes before all rules the next time. That is why one style after
// another gives the last one's look, and why the same one a second time changes nothing; a chart
// whose author wrote these attributes is not guessed at.
#pragma once

#include <string>

#include "host/looks/chart_template.h"

namespace vornwout {

/// The chart in the given style, as sanitizeSvg() leaves it; the same text when the style says
/// nothing. Throws SvgError for what sanitizeSvg() refuses.
std::string restyleSvg(const std::string& svg, const ChartStyle& style);

}  // namespace vornwout
