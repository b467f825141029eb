#include "host/looks/svg_viewport.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "host/looks/svg_style.h"

namespace vornwout {
namespace {

/// A length in the units around the element; a percentage of `whole`.
double lengthOf(pugi::xml_attribute attribute, double whole, double absent) {
  if (!attribute) return absent;
  std::string_view text = attribute.value();
  double value = 0;
  // A length is written as a font size is, but may be 0 or negative.
  if (const auto length = svgLength(text, whole)) return *length;
  return takeSvgNumber(text, value) ? value : absent;
}

/// How much of the room that is left lies before the view box.
double shareBefore(std::string_view align, std::string_view axis) {
  const std::size_t at = align.find(axis);
  const std::string_view rest = at == std::string_view::npos ? "Mid" : align.substr(at + 1);
  return rest.starts_with("Min") ? 0 : rest.starts_with("Max") ? 1 : 0.5;
}

}  // namespace

std::optional<SvgView> svgViewBox(pugi::xml_node node) {
  std::string_view box = node.attribute("viewBox").value();
  SvgView view;
  if (takeSvgNumber(box, view.x) && takeSvgNumber(box, view.y) && takeSvgNumber(box, view.width) &&
      takeSvgNumber(box, view.height) && view.width > 0 && view.height > 0) {
    return view;
  }
  return std::nullopt;
}

std::optional<SvgViewport> nestedViewport(pugi::xml_node node, const SvgView& outer) {
  const double x = lengthOf(node.attribute("x"), outer.width, 0);
  const double y = lengthOf(node.attribute("y"), outer.height, 0);
  const double width = lengthOf(node.attribute("width"), outer.width, outer.width);
  const double height = lengthOf(node.attribute("height"), outer.height, outer.height);
  if (width <= 0 || height <= 0) return std::nullopt;
  SvgViewport port;
  port.edges = {x, y, x + width, y + height};
  const std::optional<SvgView> box = svgViewBox(node);
  if (!box) {
    port.view = {0, 0, width, height};
    port.matrix = {1, 0, 0, 1, x, y};
    return port;
  }
  port.view = *box;
  double across = width / box->width;
  double down = height / box->height;
  double left = x;
  double top = y;
  const std::string_view align = node.attribute("preserveAspectRatio").value();
  if (align.find("none") == std::string_view::npos) {
    const bool isCut = align.find("slice") != std::string_view::npos;
    across = down = isCut ? std::max(across, down) : std::min(across, down);
    left += (width - box->width * across) * shareBefore(align, "x");
    top += (height - box->height * down) * shareBefore(align, "Y");
  }
  port.matrix = SvgMatrix{across, 0, 0, down, left, top} * SvgMatrix{1, 0, 0, 1, -box->x, -box->y};
  return port;
}

SvgBox mappedBox(const SvgBox& box, const SvgMatrix& matrix) {
  SvgBox mapped{INFINITY, INFINITY, -INFINITY, -INFINITY};
  for (const double x : {box.left, box.right}) {
    for (const double y : {box.top, box.bottom}) {
      const double toX = matrix.a * x + matrix.c * y + matrix.e;
      const double toY = matrix.b * x + matrix.d * y + matrix.f;
      mapped.left = std::min(mapped.left, toX);
      mapped.right = std::max(mapped.right, toX);
      mapped.top = std::min(mapped.top, toY);
      mapped.bottom = std::max(mapped.bottom, toY);
    }
  }
  return mapped;
}

std::optional<SvgShape> clippedShape(SvgShape shape, const SvgBox& edges) {
  shape.left = std::max(shape.left, edges.left);
  shape.top = std::max(shape.top, edges.top);
  shape.right = std::min(shape.right, edges.right);
  shape.bottom = std::min(shape.bottom, edges.bottom);
  if (shape.left > shape.right || shape.top > shape.bottom) return std::nullopt;
  return shape;
}

}  // namespace vornwout
