// Where a shape of a chart lies, and whether it is made of straight lines along the axes.
//
// Entry points: parseSvgTransform(), svgShape(), svgShapeHolds(). The box of a curve is that of its
// control points, which holds the curve. Rounded corners of a rectangle are passed over.
#pragma once

#include <optional>
#include <string_view>

#include <pugixml.hpp>

namespace vornwout {

/// x' = a x + c y + e, y' = b x + d y + f.
struct SvgMatrix {
  double a = 1;
  double b = 0;
  double c = 0;
  double d = 1;
  double e = 0;
  double f = 0;

  /// How much longer a length becomes, on average.
  double scale() const;
};

/// What does `inner` first, then `outer`.
SvgMatrix operator*(const SvgMatrix& outer, const SvgMatrix& inner);

/// A list of transformations; the identity for what is none.
SvgMatrix parseSvgTransform(std::string_view text);

struct SvgShape {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  bool isStraight = true;  ///< every line runs along an axis
  bool isRule = true;      ///< straight, and no piece of it turns a corner
  int longestPiece = 0;    ///< lines of the longest piece that is drawn without lifting the pen

  double width() const { return right - left; }
  double height() const { return bottom - top; }
};

/// The size that percentages are of, in the units of the root.
struct SvgView {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

/// The shape that an element draws; nothing for one that draws none, or not a finite one.
std::optional<SvgShape> svgShape(pugi::xml_node node, const SvgMatrix& matrix, const SvgView& view);

/// Whether a shape, filled, holds a point of the page. Curves are taken for two straight lines.
bool svgShapeHolds(pugi::xml_node node, const SvgMatrix& matrix, const SvgView& view, double x,
                   double y);

/// Takes the next number off the front of a list of numbers, which blanks, commas or signs part.
bool takeSvgNumber(std::string_view& text, double& value);

}  // namespace vornwout
