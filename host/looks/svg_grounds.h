// What lies under what in an SVG chart: which boxes are the ground of something, and on which
// shape a text stands.
//
// Entry points: SvgGrounds::addThing() and addFill() in the order of the drawing, then the
// questions. So that the time stays in proportion to the chart, there is an end to the looking; a
// chart of so many shapes and texts gets the answers for nothing being there.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <pugixml.hpp>

#include "host/looks/svg_parts.h"
#include "host/looks/svg_shape.h"
#include "host/looks/svg_style.h"

namespace vornwout {

/// A box that may be a ground.
struct SvgGroundBox {
  SvgShape shape;
  std::size_t paint = 0;
  std::size_t order = 0;  ///< how many things were drawn before it
};

class SvgGrounds {
 public:
  /// The paint of a fill that is not to be told: a gradient, a pattern, a picture.
  static constexpr std::size_t kNoPaint = static_cast<std::size_t>(-1);

  /// Something is drawn: a shape, or a text as the point that it stands at. `isLine` is for what
  /// is drawn without a fill.
  void addThing(const SvgShape& shape, bool isLine) { things_.push_back({shape, isLine}); }

  /// A fill that hides what is under it: all of the box where no node is given.
  void addFill(pugi::xml_node node, const SvgShape& shape, const SvgMatrix& matrix,
               const SvgView& view, std::size_t paint) {
    fills_.push_back({node, shape, matrix, view, paint});
  }

  std::size_t thingCount() const { return things_.size(); }

  /// The paint of the topmost fill at a point; kNoPaint where it is not to be told, nothing where
  /// there is none.
  std::optional<std::size_t> under(double x, double y);

  /// How many things, `limit` at most, lie on the box: within it and apart from its edges, or lines
  /// within it.
  int thingsOn(const SvgGroundBox& box, int limit);

  /// Whether a line that was drawn later runs across the box.
  bool isCrossed(const SvgGroundBox& box);

 private:
  struct Thing {
    SvgShape shape;
    bool isLine;
  };
  struct Fill {
    pugi::xml_node node;
    SvgShape shape;
    SvgMatrix matrix;
    SvgView view;
    std::size_t paint;
  };

  bool mayLook();

  std::vector<Thing> things_;
  std::vector<Fill> fills_;
  long looks_ = 0;
};

/// Tells grounds from bars: what others lie on is no bar, and what nothing lies on is.
void settleSvgGrounds(SvgGrounds& grounds, const std::vector<SvgGroundBox>& boxes,
                      std::vector<SvgPaint>& paints, Rgb paper, double pageArea);

/// Tells which lines of the data have widths that say something.
void settleSvgWidths(std::vector<SvgPaint>& paints);

/// How a text is written.
struct SvgLetters {
  SvgMatrix matrix;
  SvgView view;
  double size = 0;
  double anchor = 0;  ///< how much of it stands to the left of its place
};

/// The middle of a text, a piece of one, or a use that draws a letter, as nearly as it can be known
/// without its font. `isWord` is for the first of several uses.
SvgShape svgTextPoint(pugi::xml_node node, bool isWord, const SvgProperties& properties,
                      const SvgLetters& letters);

}  // namespace vornwout
