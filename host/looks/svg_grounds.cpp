#include "host/looks/svg_grounds.h"

#include <algorithm>

#include "host/looks/svg_marks.h"
#include "host/looks/svg_sheet.h"

namespace vornwout {
namespace {

/// Contrast below which a box has the colour of the paper, with something on it and without.
constexpr double kPaperContrast = 1.25;
constexpr double kSameContrast = 1.1;
/// Contrast up to which a colour is as pale as a ground is.
constexpr double kPanelContrast = 1.6;
/// Shares of the page.
constexpr double kLargeArea = 0.25;
constexpr double kZoneArea = 0.05;
/// How many things lie on a ground, if it may as well be a bar.
constexpr int kMinThings = 3;
/// Points above which the width of a line says something.
constexpr double kWidestLine = 4;
/// How many times as wide a line may be that is as wide.
constexpr double kSameWidth = 1.05;

/// Width of a letter and height of its middle, in font sizes.
constexpr double kLetterWidth = 0.55;
constexpr double kMidLetter = 0.35;
constexpr std::size_t kMaxLabel = 200;

constexpr long kMaxLooks = 20'000'000;

bool isElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

bool holds(const SvgShape& box, double x, double y) {
  return x >= box.left && x <= box.right && y >= box.top && y <= box.bottom;
}

/// The letters of a text, or the first of them.
std::string_view textOf(pugi::xml_node node) {
  std::string_view text = node.child_value();
  while (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    node = node.find_child(isElement);
    if (!node) return {};
    text = node.child_value();
  }
  return text;
}

/// Where a text, or a piece of one, starts along an axis.
double textPlace(pugi::xml_node node, const std::string& axis, double size, double whole) {
  double place = 0;
  for (; node; node = node.parent()) {
    std::string_view shift = node.attribute(("d" + axis).c_str()).value();
    double by = 0;
    if (takeSvgNumber(shift, by)) place += shift.starts_with("em") ? by * size : by;
    std::string_view text = node.attribute(axis.c_str()).value();
    if (takeSvgNumber(text, by)) return place + (text.starts_with('%') ? by / 100 * whole : by);
    if (svgLocalName(node.name()) == "text") break;
  }
  return place;
}

}  // namespace

bool SvgGrounds::mayLook() { return ++looks_ <= kMaxLooks; }

std::optional<std::size_t> SvgGrounds::under(double x, double y) {
  for (auto fill = fills_.rbegin(); fill != fills_.rend() && mayLook(); ++fill) {
    if (!holds(fill->shape, x, y)) continue;
    if (!fill->node || svgShapeHolds(fill->node, fill->matrix, fill->view, x, y))
      return fill->paint;
  }
  return std::nullopt;
}

int SvgGrounds::thingsOn(const SvgGroundBox& box, int limit) {
  const SvgShape& ground = box.shape;
  // Edges that meet are not drawn to the last digit.
  const double slack = 0.005 * std::max(ground.width(), ground.height());
  int count = 0;
  for (std::size_t i = box.order; i < things_.size() && count < limit && mayLook(); ++i) {
    const SvgShape& thing = things_[i].shape;
    const double room = things_[i].isLine ? -slack : slack;
    const bool isOn = thing.left >= ground.left + room && thing.right <= ground.right - room &&
                      thing.top >= ground.top + room && thing.bottom <= ground.bottom - room;
    // The edge of the box is drawn on its own by some.
    const bool isEdge = things_[i].isLine && thing.width() >= ground.width() - slack &&
                        thing.height() >= ground.height() - slack;
    if (isOn && !isEdge) ++count;
  }
  return count;
}

bool SvgGrounds::isCrossed(const SvgGroundBox& box) {
  for (std::size_t i = box.order; i < things_.size() && mayLook(); ++i) {
    const SvgShape& thing = things_[i].shape;
    const bool meets = thing.left < box.shape.right && thing.right > box.shape.left &&
                       thing.top < box.shape.bottom && thing.bottom > box.shape.top;
    if (things_[i].isLine && !thing.isRule && meets) return true;
  }
  return false;
}

void settleSvgGrounds(SvgGrounds& grounds, const std::vector<SvgGroundBox>& boxes,
                      std::vector<SvgPaint>& paints, Rgb paper, double pageArea) {
  for (const SvgGroundBox& box : boxes) {
    SvgPaint& paint = paints[box.paint];
    const Rgb color = paint.color.value;
    const double contrast = contrastRatio(color, paper);
    if (contrast < kSameContrast && isNeutral(color)) continue;
    const double area = box.shape.width() * box.shape.height() / pageArea;
    const bool isPale = contrast < kPanelContrast;
    const bool isLarge = area >= kLargeArea;
    SvgPart part = SvgPart::kSeries;
    if (isLarge || (isPale && isNeutral(color))) {
      const bool isFaint = contrast < kPaperContrast;
      const int enough = isFaint || (isLarge && isPale) ? 1 : kMinThings;
      const bool isGround = grounds.thingsOn(box, enough) >= enough;
      if (isGround) part = isFaint && !isLarge ? SvgPart::kPaper : SvgPart::kPanel;
    }
    const bool isZone = isPale && !isNeutral(color) && area >= kZoneArea;
    if (part == SvgPart::kSeries && isZone && grounds.isCrossed(box)) part = SvgPart::kOwn;
    if (part == paint.part) continue;
    paint.part = part;
    paint.series = 0;
    if (box.paint + 1 == paints.size()) continue;
    SvgPaint& edge = paints[box.paint + 1];
    if (edge.node != paint.node || isSvgMarked(edge.node, true)) continue;
    if (part == SvgPart::kSeries && edge.color == paint.color) {
      edge.part = SvgPart::kSeries;
    } else if (isNeutral(edge.color.value)) {
      edge.part = part == SvgPart::kPanel ? SvgPart::kFrame : SvgPart::kOutline;
    }
  }
}

void settleSvgWidths(std::vector<SvgPaint>& paints) {
  const auto isLine = [](const SvgPaint& paint) {
    return paint.isStroke && paint.part == SvgPart::kSeries && paint.width > 0;
  };
  double least = 0;
  double most = 0;
  for (const SvgPaint& paint : paints) {
    if (!isLine(paint) || paint.width > kWidestLine) continue;
    least = least > 0 ? std::min(least, paint.width) : paint.width;
    most = std::max(most, paint.width);
  }
  for (SvgPaint& paint : paints) {
    if (!isLine(paint)) continue;
    paint.isWide = paint.width > kWidestLine || most > least * kSameWidth;
  }
}

SvgShape svgTextPoint(pugi::xml_node node, bool isWord, const SvgProperties& properties,
                      const SvgLetters& letters) {
  const bool isUse = svgLocalName(node.name()) == "use";
  const SvgMatrix matrix =
      isUse && isWord ? letters.matrix * parseSvgTransform(node.attribute("transform").value())
                      : letters.matrix;
  const double size = isUse ? 0 : letters.size;
  const double count = static_cast<double>(std::min(textOf(node).size(), kMaxLabel));
  const double width = kLetterWidth * size * count;
  const double x = textPlace(node, "x", size, letters.view.width) + (0.5 - letters.anchor) * width;
  const auto baseline = properties.get("dominant-baseline").value_or("auto");
  const bool isMiddle = baseline == "middle" || baseline == "central";
  const double y =
      textPlace(node, "y", size, letters.view.height) - (isMiddle ? 0 : kMidLetter * size);
  SvgShape point;
  point.left = point.right = matrix.a * x + matrix.c * y + matrix.e;
  point.top = point.bottom = matrix.b * x + matrix.d * y + matrix.f;
  return point;
}

}  // namespace vornwout
