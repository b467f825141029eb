#include "host/looks/svg_shape.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>

namespace vornwout {
namespace {

bool isBetween(char c) { return c == ' ' || c == ',' || c == '\t' || c == '\n' || c == '\r'; }

void skipBetween(std::string_view& text) {
  while (!text.empty() && isBetween(text.front())) text.remove_prefix(1);
}

std::string_view localName(pugi::xml_node node) {
  const std::string_view name = node.name();
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// A length in the units of the chart; a percentage of `whole`.
double lengthOf(pugi::xml_attribute attribute, double whole) {
  std::string_view text = attribute.value();
  double value = 0;
  if (!takeSvgNumber(text, value)) return 0;
  return text.starts_with('%') ? value / 100 * whole : value;
}

/// Follows a pen over the paper.
class Tracer {
 public:
  explicit Tracer(const SvgMatrix& matrix) : matrix_(matrix) {}

  /// Asks whether what is drawn from now on, filled, holds the point.
  void probe(double x, double y) { probe_ = {x, y}; }

  void moveTo(double x, double y) {
    cross(mapped(x_, y_), mapped(startX_, startY_));
    endPiece();
    x_ = startX_ = x;
    y_ = startY_ = y;
  }

  void lineTo(double x, double y) {
    const Point from = mapped(x_, y_);
    const Point to = mapped(x, y);
    include(from);
    include(to);
    cross(from, to);
    const double reach = std::max(std::fabs(to.x - from.x), std::fabs(to.y - from.y));
    const double slack = 1e-3 + reach * 1e-4;
    const bool isLevel = std::fabs(to.y - from.y) <= slack;
    const bool isUpright = std::fabs(to.x - from.x) <= slack;
    // A line of no length runs nowhere.
    if (!isLevel || !isUpright) {
      ++pieceLines_;
      hasLevel_ = hasLevel_ || isLevel;
      hasUpright_ = hasUpright_ || isUpright;
      if (!isLevel && !isUpright) shape_.isStraight = false;
      if (hasLevel_ && hasUpright_) shape_.isRule = false;
    }
    x_ = x;
    y_ = y;
  }

  /// A curve by way of the point in its middle.
  void curveTo(double middleX, double middleY, double x, double y) {
    const Point from = mapped(x_, y_);
    const Point middle = mapped(middleX, middleY);
    const Point to = mapped(x, y);
    include(from);
    include(to);
    cross(from, middle);
    cross(middle, to);
    ++pieceLines_;
    shape_.isStraight = false;
    x_ = x;
    y_ = y;
  }

  void control(double x, double y) { include(mapped(x, y)); }

  void close() {
    if (isStarted_) lineTo(startX_, startY_);
    endPiece();
  }

  double x() const { return x_; }
  double y() const { return y_; }

  bool holdsProbe() {
    cross(mapped(x_, y_), mapped(startX_, startY_));
    return holdsProbe_;
  }

  std::optional<SvgShape> finish() {
    endPiece();
    if (!isStarted_ || !std::isfinite(shape_.width()) || !std::isfinite(shape_.height())) {
      return std::nullopt;
    }
    shape_.isRule = shape_.isRule && shape_.isStraight;
    return shape_;
  }

 private:
  struct Point {
    double x;
    double y;
  };

  Point mapped(double x, double y) const {
    return {matrix_.a * x + matrix_.c * y + matrix_.e, matrix_.b * x + matrix_.d * y + matrix_.f};
  }

  /// One line of the outline: whoever crosses it to the right of the point changes sides.
  void cross(Point from, Point to) {
    if ((from.y > probe_.y) == (to.y > probe_.y)) return;
    const double x = from.x + (to.x - from.x) * (probe_.y - from.y) / (to.y - from.y);
    if (probe_.x < x) holdsProbe_ = !holdsProbe_;
  }

  void include(Point point) {
    if (!isStarted_) {
      shape_.left = shape_.right = point.x;
      shape_.top = shape_.bottom = point.y;
      isStarted_ = true;
    }
    shape_.left = std::min(shape_.left, point.x);
    shape_.right = std::max(shape_.right, point.x);
    shape_.top = std::min(shape_.top, point.y);
    shape_.bottom = std::max(shape_.bottom, point.y);
  }

  void endPiece() {
    shape_.longestPiece = std::max(shape_.longestPiece, pieceLines_);
    pieceLines_ = 0;
    hasLevel_ = hasUpright_ = false;
  }

  SvgMatrix matrix_;
  SvgShape shape_;
  Point probe_{};
  bool holdsProbe_ = false;
  bool isStarted_ = false;
  int pieceLines_ = 0;
  bool hasLevel_ = false;
  bool hasUpright_ = false;
  double x_ = 0;
  double y_ = 0;
  double startX_ = 0;
  double startY_ = 0;
};

/// Numbers of one step of a path command; -1 for what is no command.
int argumentCount(char command) {
  switch (command) {
    case 'M':
    case 'L':
    case 'T':
      return 2;
    case 'H':
    case 'V':
      return 1;
    case 'Q':
    case 'S':
      return 4;
    case 'C':
      return 6;
    case 'A':
      return 7;
    case 'Z':
      return 0;
    default:
      return -1;
  }
}

bool takeFlag(std::string_view& text, double& value) {
  skipBetween(text);
  if (text.empty() || (text.front() != '0' && text.front() != '1')) return false;
  value = text.front() - '0';
  text.remove_prefix(1);
  return true;
}

/// Draws the arc of an ellipse, as if it were a circle's of the larger radius.
void traceArc(Tracer& pen, double radius, bool isLarge, bool isClockwise, double x, double y) {
  const double dx = x - pen.x();
  const double dy = y - pen.y();
  const double chord = std::hypot(dx, dy);
  const double far = std::sqrt(std::max(0.0, radius * radius - chord * chord / 4));
  const double rise = (isLarge ? radius + far : radius - far) * (isClockwise ? 1 : -1);
  const double share = chord > 0 ? rise / chord : 0;
  pen.curveTo(pen.x() + dx / 2 + dy * share, pen.y() + dy / 2 - dx * share, x, y);
}

/// Follows the path up to the first thing in it that is none, as it is drawn.
void tracePath(Tracer& pen, std::string_view text) {
  char letter = 0;
  for (skipBetween(text); !text.empty(); skipBetween(text)) {
    const char first = text.front();
    const bool isLetter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
    if (isLetter) {
      letter = first;
      text.remove_prefix(1);
    } else if (letter == 'Z' || letter == 'z') {
      return;
    }
    const bool isRelative = letter >= 'a';
    const char command = isRelative ? static_cast<char>(letter - 'a' + 'A') : letter;
    const int count = argumentCount(command);
    if (count < 0) return;
    std::array<double, 7> n{};
    for (int i = 0; i < count; ++i) {
      double& value = n[static_cast<std::size_t>(i)];
      const bool isFlag = command == 'A' && (i == 3 || i == 4);
      if (isFlag ? !takeFlag(text, value) : !takeSvgNumber(text, value)) return;
    }
    const double dx = isRelative ? pen.x() : 0;
    const double dy = isRelative ? pen.y() : 0;
    switch (command) {
      case 'M':
        pen.moveTo(n[0] + dx, n[1] + dy);
        letter = isRelative ? 'l' : 'L';
        break;
      case 'L':
        pen.lineTo(n[0] + dx, n[1] + dy);
        break;
      case 'H':
        pen.lineTo(n[0] + dx, pen.y());
        break;
      case 'V':
        pen.lineTo(pen.x(), n[0] + dy);
        break;
      case 'T':
        pen.curveTo((pen.x() + n[0] + dx) / 2, (pen.y() + n[1] + dy) / 2, n[0] + dx, n[1] + dy);
        break;
      case 'Q':
      case 'S':
        pen.control(n[0] + dx, n[1] + dy);
        pen.curveTo((pen.x() + 2 * (n[0] + dx) + n[2] + dx) / 4,
                    (pen.y() + 2 * (n[1] + dy) + n[3] + dy) / 4, n[2] + dx, n[3] + dy);
        break;
      case 'C':
        pen.control(n[0] + dx, n[1] + dy);
        pen.control(n[2] + dx, n[3] + dy);
        pen.curveTo((pen.x() + 3 * (n[0] + n[2] + 2 * dx) + n[4] + dx) / 8,
                    (pen.y() + 3 * (n[1] + n[3] + 2 * dy) + n[5] + dy) / 8, n[4] + dx, n[5] + dy);
        break;
      case 'A':
        traceArc(pen, std::max(n[0], n[1]), n[3] != 0, n[4] != 0, n[5] + dx, n[6] + dy);
        break;
      default:
        pen.close();
        break;
    }
  }
}

void tracePoints(Tracer& pen, std::string_view text, bool isClosed) {
  double x = 0;
  double y = 0;
  for (bool isFirst = true; takeSvgNumber(text, x) && takeSvgNumber(text, y); isFirst = false) {
    if (isFirst) {
      pen.moveTo(x, y);
    } else {
      pen.lineTo(x, y);
    }
  }
  if (isClosed) pen.close();
}

void traceEllipse(Tracer& pen, double x, double y, double rx, double ry) {
  pen.moveTo(x - rx, y - ry);
  pen.curveTo(x, y - ry, x + rx, y - ry);
  pen.curveTo(x + rx, y, x + rx, y + ry);
  pen.curveTo(x, y + ry, x - rx, y + ry);
}

SvgMatrix transformOf(std::string_view function, const std::array<double, 6>& n, int count) {
  SvgMatrix result;
  if (function == "matrix" && count == 6) return {n[0], n[1], n[2], n[3], n[4], n[5]};
  if (function == "translate" && count >= 1) return {1, 0, 0, 1, n[0], n[1]};
  if (function == "scale" && count >= 1) return {n[0], 0, 0, count > 1 ? n[1] : n[0], 0, 0};
  const double angle = n[0] * std::numbers::pi / 180;
  if (function == "rotate" && count >= 1) {
    const SvgMatrix turn{std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0};
    return SvgMatrix{1, 0, 0, 1, n[1], n[2]} * turn * SvgMatrix{1, 0, 0, 1, -n[1], -n[2]};
  }
  if (function == "skewX" && count == 1) result.c = std::tan(angle);
  if (function == "skewY" && count == 1) result.b = std::tan(angle);
  return result;
}

/// False for what draws no shape.
bool traceShape(Tracer& pen, pugi::xml_node node, const SvgView& view) {
  const std::string_view name = localName(node);
  const auto across = [&](const char* key) { return lengthOf(node.attribute(key), view.width); };
  const auto down = [&](const char* key) { return lengthOf(node.attribute(key), view.height); };
  if (name == "path") {
    tracePath(pen, node.attribute("d").value());
  } else if (name == "rect") {
    const double x = across("x");
    const double y = down("y");
    const double width = across("width");
    const double height = down("height");
    if (width <= 0 || height <= 0) return false;
    pen.moveTo(x, y);
    pen.lineTo(x + width, y);
    pen.lineTo(x + width, y + height);
    pen.lineTo(x, y + height);
    pen.close();
  } else if (name == "line") {
    pen.moveTo(across("x1"), down("y1"));
    pen.lineTo(across("x2"), down("y2"));
  } else if (name == "polyline" || name == "polygon") {
    tracePoints(pen, node.attribute("points").value(), name == "polygon");
  } else if (name == "circle") {
    const double radius = across("r");
    traceEllipse(pen, across("cx"), down("cy"), radius, radius);
  } else if (name == "ellipse") {
    traceEllipse(pen, across("cx"), down("cy"), across("rx"), down("ry"));
  } else {
    return false;
  }
  return true;
}

}  // namespace

double SvgMatrix::scale() const { return std::sqrt(std::fabs(a * d - b * c)); }

SvgMatrix operator*(const SvgMatrix& outer, const SvgMatrix& inner) {
  return {outer.a * inner.a + outer.c * inner.b,
          outer.b * inner.a + outer.d * inner.b,
          outer.a * inner.c + outer.c * inner.d,
          outer.b * inner.c + outer.d * inner.d,
          outer.a * inner.e + outer.c * inner.f + outer.e,
          outer.b * inner.e + outer.d * inner.f + outer.f};
}

SvgMatrix parseSvgTransform(std::string_view text) {
  SvgMatrix result;
  for (skipBetween(text); !text.empty(); skipBetween(text)) {
    const std::size_t open = text.find('(');
    const std::size_t close = text.find(')', open);
    if (open == std::string_view::npos || close == std::string_view::npos) return result;
    std::string_view name = text.substr(0, open);
    while (!name.empty() && isBetween(name.back())) name.remove_suffix(1);
    std::string_view inside = text.substr(open + 1, close - open - 1);
    std::array<double, 6> numbers{};
    int count = 0;
    while (count < 6 && takeSvgNumber(inside, numbers[static_cast<std::size_t>(count)])) ++count;
    result = result * transformOf(name, numbers, count);
    text.remove_prefix(close + 1);
  }
  return result;
}

std::optional<SvgShape> svgShape(pugi::xml_node node, const SvgMatrix& matrix,
                                 const SvgView& view) {
  Tracer pen(matrix);
  return traceShape(pen, node, view) ? pen.finish() : std::nullopt;
}

bool svgShapeHolds(pugi::xml_node node, const SvgMatrix& matrix, const SvgView& view, double x,
                   double y) {
  const std::string_view name = localName(node);
  if (name == "circle" || name == "ellipse") {
    const std::optional<SvgShape> box = svgShape(node, matrix, view);
    if (!box || box->width() <= 0 || box->height() <= 0) return false;
    return std::hypot((2 * x - box->left - box->right) / box->width(),
                      (2 * y - box->top - box->bottom) / box->height()) <= 1;
  }
  Tracer pen(matrix);
  pen.probe(x, y);
  return traceShape(pen, node, view) && pen.holdsProbe();
}

bool takeSvgNumber(std::string_view& text, double& value) {
  skipBetween(text);
  std::string_view digits = text;
  if (digits.starts_with('+')) digits.remove_prefix(1);
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || !std::isfinite(value)) return false;
  text = std::string_view(stop, static_cast<std::size_t>(end - stop));
  return true;
}

}  // namespace vornwout
