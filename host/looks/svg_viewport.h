// The coordinates that an svg element sets up: its view box, and where one within another draws.
//
// Entry points: svgViewBox(), nestedViewport(). What stands in an svg element within another is
// placed by x, y, width and height, scaled as viewBox and preserveAspectRatio say, and cut off at
// the edges.
#pragma once

#include <optional>

#include <pugixml.hpp>

#include "host/looks/svg_shape.h"

namespace vornwout {

struct SvgBox {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

/// What the viewBox attribute says; nothing without one that has an area.
std::optional<SvgView> svgViewBox(pugi::xml_node node);

struct SvgViewport {
  SvgMatrix matrix;  ///< from the units within to those around the element
  SvgView view;      ///< what percentages within are of
  SvgBox edges;      ///< in the units around the element
};

/// The viewport of an svg element within another, whose view is `outer`; nothing for one without
/// an area, in which nothing is drawn.
std::optional<SvgViewport> nestedViewport(pugi::xml_node node, const SvgView& outer);

/// The box around `box` where `matrix` puts it.
SvgBox mappedBox(const SvgBox& box, const SvgMatrix& matrix);

/// What of the shape lies within `edges`; nothing when nothing does.
std::optional<SvgShape> clippedShape(SvgShape shape, const SvgBox& edges);

}  // namespace vornwout
