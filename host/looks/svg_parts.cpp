#include "host/looks/svg_parts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/build/css_filter.h"
#include "host/looks/svg_grounds.h"
#include "host/looks/svg_marks.h"
#include "host/looks/svg_shape.h"
#include "host/looks/svg_style.h"
#include "host/looks/svg_uses.h"
#include "host/looks/svg_viewport.h"

namespace vornwout {
namespace {

/// Contrast below which something has the colour of the paper.
constexpr double kPaperContrast = 1.25;
/// Contrast below which a long line is the grid's.
constexpr double kGridContrast = 2.5;
/// Contrast below which a text is not meant for that paper.
constexpr double kFaintContrast = 1.6;
constexpr Rgb kWhite{255, 255, 255};
/// Shares of the page.
constexpr double kWholePage = 0.98;
constexpr double kLargeArea = 0.25;
constexpr double kLongLine = 0.3;
/// Points above which the width of a line says something.
constexpr double kWidestLine = 4;
/// How much hides what is under it.
constexpr double kOpaque = 0.5;
/// Lines of a box, and of a box that is open on some side.
constexpr int kMaxFrameLines = 5;
/// How much larger than the others a title is.
constexpr double kTitleRatio = 1.1;
/// How much less contrast than most texts a quiet one has.
constexpr double kQuietRatio = 0.75;
constexpr double kDefaultFontSize = 16;
constexpr double kPixelsPerPoint = 4.0 / 3;
/// Colours that make a scale, and how many degrees they may be away from the first one.
constexpr std::size_t kMinSteps = 3;
constexpr double kScaleHues = 25;
/// What an element is filled or drawn with.
struct Ink {
  enum class Kind {
    kUnset,
    kUnknown,  ///< a gradient, a style sheet's, that of whoever uses it
    kNone,
    kColor,
  };
  Kind kind = Kind::kUnset;
  SvgColor color;
  bool isCurrent = false;  ///< whatever the color is where it is drawn

  bool isColor() const { return kind == Kind::kColor; }
};

/// What a marker goes by: the line that it stands on.
struct MarkedLine {
  bool isKnown = false;
  Rgb color;
  SvgPart part = SvgPart::kOther;
  int series = 0;
};

/// What an element passes on to those within it.
struct Inherited {
  Ink color;  ///< what "currentColor" is
  Ink fill;
  Ink stroke;
  double fontSize = kDefaultFontSize;
  double lineWidth = 1;
  double anchor = 0;            ///< how much of a text stands to the left of its place
  SvgMatrix matrix;             ///< to the units of the page
  SvgView view;                 ///< what percentages are of
  std::optional<SvgBox> edges;  ///< of the page's piece that is drawn on, where it is not all of it
  std::array<std::string_view, 3> markers;  ///< identifiers, empty for none
  std::optional<SvgBox> port;               ///< of the chart within the chart that it stands in
  bool isDefined = false;                   ///< not drawn where it stands
  bool isUsed = false;                      ///< drawn where it is used
  bool isInvisible = false;                 ///< but what is within may be visible again
  const MarkedLine* marked = nullptr;       ///< of what stands in a marker
};

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::uint32_t keyOf(Rgb color) {
  return std::uint32_t{color.red} << 16 | std::uint32_t{color.green} << 8 | color.blue;
}

constexpr std::array<const char*, 3> kMarkerProperties = {"marker-start", "marker-mid",
                                                          "marker-end"};

class PartFinder {
 public:
  PartFinder(pugi::xml_node root, Rgb paper) : root_(root), paper_(paper) {}

  /// Whether the texts of a chart without a ground are light: it was made for a dark page.
  bool isForDarkPage() const {
    return !parts_.hasBackground && !hasMarks_ && paper_ == kWhite && labels_.empty() &&
           mostTexts_ > 0 && contrastRatio(textColor_, kWhite) < kFaintContrast;
  }

  SvgParts find() {
    readIdentifiers();
    uses_.settle();
    readPage();
    Inherited page;
    page.view = view_;
    walkChildren(root_, enter(root_, SvgProperties(root_, &sheet_), page));
    settleSvgGrounds(grounds_, boxes_, parts_.paints, paper_, view_.width * view_.height);
    settleSvgWidths(parts_.paints);
    settleGlyphs();
    settleSeries();
    decidingTexts_ = pendingTexts_.size();
    decidingLetters_ = parts_.texts.size();
    isDeciding_ = false;
    for (const auto& [node, outer] : unseen_) walk(node, outer);
    walkMarkers();
    settleTexts();
    settleScale();
    parts_.seriesCount = seriesCount_;
    return parts_;
  }

 private:
  void readPage() {
    const double width = lengthInPixels("width");
    const double height = lengthInPixels("height");
    parts_.unitsPerPoint = kPixelsPerPoint;
    if (const std::optional<SvgView> box = svgViewBox(root_)) {
      view_ = *box;
      // The side that leaves less room is what the chart is scaled by.
      const double across = width > 0 ? view_.width / width : 0;
      const double down = height > 0 ? view_.height / height : 0;
      if (across > 0 || down > 0) parts_.unitsPerPoint *= std::max(across, down);
    } else {
      view_ = {0, 0, width > 0 ? width : 300, height > 0 ? height : 150};
    }
    parts_.left = view_.x;
    parts_.top = view_.y;
    const SvgProperties properties(root_, &sheet_);
    for (const char* name : {"background", "background-color"}) {
      const auto color = parseSvgColor(properties.get(name).value_or(""));
      if (color) paper_ = color->value;
    }
  }

  double lengthInPixels(const char* name) const {
    const std::string_view text = root_.attribute(name).value();
    return isRelativeFontSize(text) ? 0 : svgLength(text, 0).value_or(0);
  }

  /// Without recursion, as every element is looked at and not only what is drawn.
  void readIdentifiers() {
    pugi::xml_node node = root_;
    while (node) {
      uses_.note(node);
      if (svgLocalName(node.name()) == "style") sheet_.add(node.child_value());
      pugi::xml_node next = node.first_child();
      while (!next && node && node != root_) {
        next = node.next_sibling();
        if (!next) node = node.parent();
      }
      if (!next) return;
      node = next;
    }
  }

  static Ink inkOf(const std::optional<std::string_view>& text, const Ink& inherited) {
    if (!text) return inherited;
    if (asciiLowered(*text) == "currentcolor") return {Ink::Kind::kColor, {}, true};
    if (*text == "none" || *text == "transparent") return {Ink::Kind::kNone, {}};
    const std::optional<SvgColor> color = parseSvgColor(*text);
    return color ? Ink{Ink::Kind::kColor, *color} : Ink{Ink::Kind::kUnknown, {}};
  }

  /// The ink that "currentColor" is where `color` is in force.
  Ink settled(const Ink& ink, const Ink& color) const {
    if (!ink.isCurrent) return ink;
    // A rule that is not understood may say a color; without one it is black.
    const bool isOpen = color.kind == Ink::Kind::kUnset && !sheet_.isWhole();
    if (isOpen || color.kind == Ink::Kind::kUnknown) return {Ink::Kind::kUnknown, {}, true};
    return {Ink::Kind::kColor, color.color, true};
  }

  Inherited enter(pugi::xml_node node, const SvgProperties& properties,
                  const Inherited& outer) const {
    Inherited inner = outer;
    if (const auto color = properties.get("color")) {
      const Ink said = inkOf(color, outer.color);
      if (!said.isCurrent) inner.color = said;
    }
    inner.fill = inkOf(properties.get("fill"), outer.fill);
    inner.stroke = inkOf(properties.get("stroke"), outer.stroke);
    inner.fill = settled(inner.fill, inner.color);
    inner.stroke = settled(inner.stroke, inner.color);
    if (const auto size = properties.get("font-size")) {
      inner.fontSize = svgFontSize(*size, outer.fontSize).value_or(outer.fontSize);
    }
    if (const pugi::xml_attribute transform = node.attribute("transform")) {
      inner.matrix = outer.matrix * parseSvgTransform(transform.value());
    }
    if (const auto width = properties.get("stroke-width")) {
      inner.lineWidth = svgLength(*width, outer.view.width).value_or(outer.lineWidth);
    }
    if (const auto anchor = properties.get("text-anchor")) {
      inner.anchor = *anchor == "middle" ? 0.5 : *anchor == "end" ? 1 : 0;
    }
    if (const auto visibility = properties.get("visibility")) {
      inner.isInvisible = *visibility != "visible";
    }
    const auto anyMarker = properties.get("marker");
    for (std::size_t i = 0; i < kMarkerProperties.size(); ++i) {
      auto marker = properties.get(kMarkerProperties[i]);
      if (!marker) marker = anyMarker;
      if (marker) inner.markers[i] = uses_.lastingIdentifier(svgTargetOfUrl(*marker));
    }
    return inner;
  }

  void walkChildren(pugi::xml_node node, const Inherited& state) {
    for (const pugi::xml_node child : node.children()) {
      if (child.type() == pugi::node_element) walk(child, state);
    }
  }

  /// Moves on to what stands in an svg element; false when nothing of it is drawn.
  static bool enterViewport(pugi::xml_node node, const SvgProperties& properties,
                            Inherited& state) {
    const std::optional<SvgViewport> port = nestedViewport(node, state.view);
    if (!port) return false;
    state.port = mappedBox(port->edges, state.matrix);
    if (properties.get("overflow").value_or("hidden") != "visible") {
      SvgBox edges = *state.port;
      if (state.edges) {
        edges = {std::max(edges.left, state.edges->left), std::max(edges.top, state.edges->top),
                 std::min(edges.right, state.edges->right),
                 std::min(edges.bottom, state.edges->bottom)};
      }
      state.edges = edges;
    }
    state.matrix = state.matrix * port->matrix;
    state.view = port->view;
    return true;
  }

  /// Whether an element is not seen, whatever stands within it.
  static bool isHidden(const SvgProperties& properties) {
    return properties.get("display").value_or("inline") == "none" ||
           isSvgZero(properties.get("opacity"));
  }

  void walk(pugi::xml_node node, const Inherited& outer) {
    const std::string_view name = svgLocalName(node.name());
    if (isOneOf(name, {"svg", "g", "a", "switch", "defs", "symbol", "text", "use"}) ||
        isSvgShapeName(name)) {
      if (uses_.isMask(node)) return;
      const SvgProperties properties(node, &sheet_);
      Inherited state = enter(node, properties, outer);
      const bool isLetters = name == "g" && isWord(node, state);
      const bool isLeaf = isOneOf(name, {"text", "use"}) || isSvgShapeName(name) || isLetters;
      bool isUnseen = isHidden(properties) || (state.isInvisible && isLeaf);
      if (name == "svg") isUnseen = !enterViewport(node, properties, state) || isUnseen;
      if (isDeciding_ && isUnseen) {
        unseen_.emplace_back(node, outer);
        return;
      }
      state.isUsed = state.isUsed || uses_.isUsed(node);
      if (name == "defs" || name == "symbol") {
        state.isDefined = true;
        state.color = state.fill = state.stroke = Ink{Ink::Kind::kUnknown, {}};
      }
      if (name == "text") {
        if (!state.isDefined || state.isUsed) readText(node, state, 0);
      } else if (name == "use") {
        readUse(node, properties, state);
      } else if (isSvgShapeName(name)) {
        readShape(node, properties, state);
      } else if (isLetters) {
        addTextPaint(node, state, uses_.glyphOf(node.find_child(isElement)));
      } else {
        walkChildren(node, state);
      }
    }
  }

  // ---- texts

  /// Bare paths in a colour that texts do not have are data: points, bars.
  void settleGlyphs() {
    for (const std::size_t index : pendingGlyphs_) {
      SvgPaint& paint = parts_.paints[index];
      const Rgb color = paint.color.value;
      const bool isTextColor = mostTexts_ > 0 && color == textColor_;
      if (!isNeutral(color) && !isTextColor && color != paper_) paint.part = SvgPart::kSeries;
    }
  }

  /// Numbers the colours that no mark has a number for, behind all marks: one further on may have
  /// any number.
  void settleSeries() {
    for (SvgPaint& paint : parts_.paints) {
      if (paint.part != SvgPart::kSeries || paint.series > 0) continue;
      const Rgb color = paint.color.value;
      const auto [known, isNew] = series_.try_emplace(keyOf(color), seriesCount_ + 1);
      paint.series = known->second;
      if (!isNew) continue;
      ++seriesCount_;
      seriesColors_.push_back(color);
    }
  }

  static bool isElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

  /// Letters are filled and have no edge.
  static bool isInkOfLetters(const Inherited& state) {
    return state.fill.kind != Ink::Kind::kNone && !state.stroke.isColor();
  }

  bool isWord(pugi::xml_node group, const Inherited& state) const {
    const bool isMarked = isSvgMarked(group, false);
    bool hasGlyph = false;
    for (const pugi::xml_node child : group.children()) {
      if (!isElement(child)) continue;
      if (svgLocalName(child.name()) != "use") return false;
      if (!isMarked && SvgProperties(child, &sheet_).get("fill")) return false;
      const SvgGlyph glyph = isMarked ? SvgGlyph::kNamed : uses_.glyphOf(child);
      if (glyph == SvgGlyph::kNone || (glyph == SvgGlyph::kBare && !isInkOfLetters(state))) {
        return false;
      }
      hasGlyph = true;
    }
    return hasGlyph;
  }

  void addTextPaint(pugi::xml_node node, const Inherited& state,
                    SvgGlyph glyph = SvgGlyph::kNamed) {
    if (state.isDefined && !state.isUsed && !isSvgMarked(node, false)) return;
    Ink fill = state.fill;
    // A style sheet may say another colour, but no text is without one.
    if (fill.kind == Ink::Kind::kUnset) fill.kind = Ink::Kind::kColor;
    if (!fill.isColor()) return;
    const std::size_t before = parts_.paints.size();
    add(node, false, fill.color, SvgPart::kOther, state);
    if (isDeciding_ && !state.isDefined) noteLabel(node, state, before);
    if (glyph != SvgGlyph::kBare && isDeciding_) {
      if (const std::size_t count = ++textCounts_[keyOf(fill.color.value)]; count > mostTexts_) {
        mostTexts_ = count;
        textColor_ = fill.color.value;
      }
    }
    if (parts_.paints.size() > before && parts_.paints.back().part == SvgPart::kOther) {
      pendingTexts_.push_back(before);
      if (glyph == SvgGlyph::kBare && isDeciding_) pendingGlyphs_.push_back(before);
    }
  }

  /// Takes notice of where a text is, and of what it stands on.
  void noteLabel(pugi::xml_node node, const Inherited& state, std::size_t paint) {
    const pugi::xml_node word =
        svgLocalName(node.name()) == "g" ? node.find_child(isElement) : node;
    const SvgShape point = svgTextPoint(word, word != node, SvgProperties(word, &sheet_),
                                        {state.matrix, view_, state.fontSize, state.anchor});
    grounds_.addThing(point, false);
    const bool isNew = parts_.paints.size() > paint && parts_.paints.back().part == SvgPart::kOther;
    if (!isNew) return;
    if (const auto ground = grounds_.under(point.left, point.top)) {
      labels_.emplace_back(paint, *ground);
    }
  }

  /// Texts on data go by these, and by the paper where what they stand on has its colour.
  void settleLabels() {
    for (const auto& [index, ground] : labels_) {
      SvgPaint& text = parts_.paints[index];
      if (ground == SvgGrounds::kNoPaint) {
        text.part = SvgPart::kOwn;
        continue;
      }
      const SvgPaint& under = parts_.paints[ground];
      if (under.part == SvgPart::kOwn) text.part = SvgPart::kOwn;
      if (under.part != SvgPart::kSeries && under.part != SvgPart::kStep) continue;
      text.part = under.part == SvgPart::kSeries ? SvgPart::kOnSeries : SvgPart::kOnStep;
      text.series = under.series;
    }
  }

  /// A text, or a piece of the text whose font size is `outerFontSize`.
  void readText(pugi::xml_node node, const Inherited& state, double outerFontSize) {
    const SvgProperties properties(node, &sheet_);
    const std::optional<std::string_view> size = properties.get("font-size");
    const bool isPiece = outerFontSize > 0;
    if (!isPiece || properties.get("fill")) addTextPaint(node, state);
    if (!isPiece || (size && !isRelativeFontSize(*size))) {
      parts_.texts.push_back({node, state.fontSize, outerFontSize, state.matrix.scale()});
    }
    for (const pugi::xml_node child : node.children()) {
      if (!isOneOf(svgLocalName(child.name()), {"tspan", "textPath", "a"})) continue;
      Inherited inner = enter(child, SvgProperties(child, &sheet_), state);
      // A piece is not transformed.
      inner.matrix = state.matrix;
      readText(child, inner, isPiece ? outerFontSize : state.fontSize);
    }
  }

  void settleTexts() {
    settleLabels();
    // Texts of a colour of the data name what has that colour.
    std::unordered_map<std::uint32_t, std::size_t> counts;
    std::size_t most = 0;
    Rgb usual;
    for (std::size_t i = 0; i < pendingTexts_.size(); ++i) {
      const std::size_t index = pendingTexts_[i];
      SvgPaint& paint = parts_.paints[index];
      if (paint.part != SvgPart::kOther && paint.part != SvgPart::kSeries) continue;
      const Rgb color = paint.color.value;
      const auto known = series_.find(keyOf(color));
      if (known != series_.end() && !isNeutral(color)) {
        paint.part = SvgPart::kSeries;
        paint.series = known->second;
      } else if (contrastRatio(color, paper_) < kPaperContrast) {
        paint.part = SvgPart::kPaper;
      } else if (i >= decidingTexts_) {
        continue;
      } else if (const std::size_t count = ++counts[keyOf(color)]; count > most) {
        most = count;
        usual = color;
      }
    }
    const double usualContrast = contrastRatio(usual, paper_);
    for (const std::size_t index : pendingTexts_) {
      SvgPaint& paint = parts_.paints[index];
      if (paint.part != SvgPart::kOther) continue;
      const double contrast = contrastRatio(paint.color.value, paper_);
      paint.part = contrast < usualContrast * kQuietRatio ? SvgPart::kQuietText : SvgPart::kText;
    }
    settleTitle();
  }

  void settleTitle() {
    bool isMarked = false;
    for (SvgText& text : parts_.texts) {
      text.isTitle = isSvgTitle(text.node);
      isMarked = isMarked || isSvgMarked(text.node, false);
    }
    if (isMarked) return;
    SvgText* largest = nullptr;
    double second = 0;
    for (std::size_t i = 0; i < decidingLetters_; ++i) {
      SvgText& text = parts_.texts[i];
      if (text.outerFontSize > 0) continue;
      const double size = text.fontSize * text.scale;
      if (largest == nullptr || size > largest->fontSize * largest->scale) {
        if (largest != nullptr) second = largest->fontSize * largest->scale;
        largest = &text;
      } else {
        second = std::max(second, size);
      }
    }
    if (largest == nullptr || second <= 0 ||
        largest->fontSize * largest->scale < second * kTitleRatio) {
      return;
    }
    for (SvgPaint& paint : parts_.paints) {
      const bool isText = paint.part == SvgPart::kText || paint.part == SvgPart::kQuietText;
      if (paint.node != largest->node || !isText) continue;
      paint.part = SvgPart::kTitle;
      largest->isTitle = true;
    }
  }

  /// Shades of one colour, or greys, go from little to much; other colours would hide that.
  void settleScale() {
    if (hasMarks_ || seriesColors_.size() < kMinSteps || seriesCount_ > kMaxMarkedSeries) return;
    const Rgb first = seriesColors_.front();
    const bool isScale = std::all_of(seriesColors_.begin(), seriesColors_.end(), [&](Rgb color) {
      const double apart = std::fabs(hueOf(color) - hueOf(first));
      return isNeutral(color) == isNeutral(first) &&
             (isNeutral(first) || std::min(apart, 360 - apart) <= kScaleHues);
    });
    if (!isScale) return;
    std::vector<std::size_t> order(seriesColors_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return contrastRatio(seriesColors_[a], paper_) < contrastRatio(seriesColors_[b], paper_);
    });
    std::vector<int> steps(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) steps[order[i]] = static_cast<int>(i) + 1;
    for (SvgPaint& paint : parts_.paints) {
      if (paint.part != SvgPart::kSeries && paint.part != SvgPart::kOnSeries) continue;
      paint.part = paint.part == SvgPart::kSeries ? SvgPart::kStep : SvgPart::kOnStep;
      paint.series = steps[static_cast<std::size_t>(paint.series - 1)];
    }
    parts_.stepCount = static_cast<int>(steps.size());
  }

  // ---- shapes

  void readUse(pugi::xml_node node, const SvgProperties& properties, const Inherited& state) {
    // One that is marked is known to be seen, whatever has become of what it uses.
    const bool isMarked = isSvgMarked(node, false);
    const SvgGlyph glyph = isMarked ? SvgGlyph::kNamed : uses_.glyphOf(node);
    if (glyph == SvgGlyph::kNamed || (glyph == SvgGlyph::kBare && isInkOfLetters(state))) {
      addTextPaint(node, state, glyph);
      if (!isSvgMarked(node, true)) return;
    }
    // A mark: what it does not say itself, what it uses may say, or else whatever is around it.
    const Ink unknown{Ink::Kind::kUnknown, {}};
    const SvgOpenInks open = uses_.openInksOf(node);
    const bool drawsText = !isMarked && open.text;
    if (drawsText) addTextPaint(node, state);
    Inherited own = state;
    if (isMarked || drawsText) {
      own.fill = unknown;
    } else if (!properties.get("fill") && !(open.fill && state.fill.isColor())) {
      own.fill = unknown;
    }
    if (!properties.get("stroke") && !(open.stroke && state.stroke.isColor())) own.stroke = unknown;
    addShape(node, own, SvgShape());
  }

  void readShape(pugi::xml_node node, const SvgProperties& properties, Inherited state) {
    std::optional<SvgShape> shape = svgShape(node, state.matrix, state.view);
    if (shape && state.edges) shape = clippedShape(*shape, *state.edges);
    if (!shape) return;
    if (!sheet_.isWhole()) {
      // It may say what the element leaves open.
      if (state.fill.kind == Ink::Kind::kUnset) state.fill.kind = Ink::Kind::kUnknown;
      if (state.stroke.kind == Ink::Kind::kUnset) state.stroke.kind = Ink::Kind::kUnknown;
    }
    if (state.fill.kind == Ink::Kind::kUnset) state.fill.kind = Ink::Kind::kColor;
    if (isSvgZero(properties.get("fill-opacity")) || svgLocalName(node.name()) == "line") {
      state.fill.kind = Ink::Kind::kNone;
    }
    if (isSvgZero(properties.get("stroke-opacity")) || isSvgZero(properties.get("stroke-width"))) {
      state.stroke.kind = Ink::Kind::kNone;
    }
    // A line that does not scale is drawn in pixels.
    const bool isFixed = properties.get("vector-effect").value_or("") == "non-scaling-stroke";
    state.lineWidth = isFixed ? state.lineWidth / kPixelsPerPoint
                              : state.lineWidth * state.matrix.scale() / parts_.unitsPerPoint;
    const std::size_t before = parts_.paints.size();
    addShape(node, state, *shape);
    if (isDeciding_ && !state.isDefined && state.marked == nullptr) {
      noteGround(node, properties, state, *shape, before);
    }
    const bool isDrawnLine = parts_.paints.size() > before && parts_.paints.back().isStroke;
    if (isDrawnLine && isFixed) {
      parts_.paints.back().scale = parts_.unitsPerPoint / kPixelsPerPoint;
    }
    if (state.marked == nullptr) noteMarkers(state, isDrawnLine);
  }

  void noteGround(pugi::xml_node node, const SvgProperties& properties, const Inherited& state,
                  const SvgShape& shape, std::size_t before) {
    const bool isLine = state.fill.kind == Ink::Kind::kNone;
    if (!isLine || state.stroke.kind != Ink::Kind::kNone) grounds_.addThing(shape, isLine);
    const bool isAdded = parts_.paints.size() > before;
    if (isLine) {
      // A bar that is drawn as one thick line.
      if (!isAdded || !shape.isRule || state.lineWidth <= kWidestLine) return;
      SvgShape bar = shape;
      const double half = state.lineWidth * parts_.unitsPerPoint / 2;
      if (bar.width() < bar.height()) {
        bar.left -= half;
        bar.right += half;
      } else {
        bar.top -= half;
        bar.bottom += half;
      }
      grounds_.addFill({}, bar, state.matrix, state.view, before);
      return;
    }
    double opacity = 1;
    std::string_view text = properties.get("fill-opacity").value_or("1");
    takeSvgNumber(text, opacity);
    if (opacity < kOpaque) return;
    const bool isTold = isAdded && !parts_.paints[before].isStroke;
    grounds_.addFill(node, shape, state.matrix, state.view, isTold ? before : SvgGrounds::kNoPaint);
    const bool isBox = shape.isStraight && shape.longestPiece == 4;
    if (!isTold || !isBox || isSvgMarked(node, false)) return;
    // The ground of a chart within the chart.
    const bool fillsPort = state.port &&
                           shape.width() >= kWholePage * (state.port->right - state.port->left) &&
                           shape.height() >= kWholePage * (state.port->bottom - state.port->top);
    SvgPart& part = parts_.paints[before].part;
    const Rgb color = parts_.paints[before].color.value;
    if (part != SvgPart::kSeries && part != SvgPart::kPaper) return;
    if (fillsPort && isNeutral(color) && contrastRatio(color, paper_) < kGridContrast) {
      part = contrastRatio(color, paper_) < kPaperContrast ? SvgPart::kPaper : SvgPart::kPanel;
      return;
    }
    boxes_.push_back({shape, before, grounds_.thingCount()});
  }

  // ---- markers

  /// The first line that a marker stands on says what it is.
  void noteMarkers(const Inherited& state, bool isDrawnLine) {
    MarkedLine line;
    if (isDrawnLine) {
      const SvgPaint& paint = parts_.paints.back();
      line = {true, paint.color.value, paint.part, paint.series};
    }
    for (const std::string_view marker : state.markers) {
      if (!marker.empty() && markedLines_.try_emplace(marker, line).second) {
        markers_.push_back(marker);
      }
    }
  }

  void walkMarkers() {
    for (const std::string_view id : markers_) {
      const pugi::xml_node marker = uses_.elementOf(id);
      if (svgLocalName(marker.name()) != "marker") continue;
      Inherited state = stateAround(marker);
      state.isDefined = true;
      state.isInvisible = false;
      state.markers = {};
      state.edges.reset();
      state.marked = &markedLines_.at(id);
      walkChildren(marker, state);
    }
  }

  /// What a marker passes on: it inherits from where it stands, not from the line.
  Inherited stateAround(pugi::xml_node node) const {
    std::vector<pugi::xml_node> path;
    for (; node && node != root_; node = node.parent()) path.push_back(node);
    path.push_back(root_);
    Inherited state;
    state.view = view_;
    for (auto one = path.rbegin(); one != path.rend(); ++one) {
      state = enter(*one, SvgProperties(*one, &sheet_), state);
    }
    return state;
  }

  /// A marker in the colour of its line is a piece of it; a grey one is furniture.
  void addMarkerPaint(pugi::xml_node node, bool isStroke, const SvgColor& color,
                      const Inherited& state) {
    const MarkedLine& line = *state.marked;
    SvgPart part = SvgPart::kSeries;
    int series = 0;
    if (line.isKnown && line.color == color.value) {
      part = line.part;
      series = line.series;
    } else if (contrastRatio(color.value, paper_) < kPaperContrast) {
      part = SvgPart::kPaper;
    } else if (isNeutral(color.value)) {
      part = SvgPart::kOutline;
    }
    const std::size_t before = parts_.paints.size();
    add(node, isStroke, color, part, state, series);
    // Its lengths are multiples of the line's width.
    if (parts_.paints.size() > before) parts_.paints.back().keepsWidth = true;
  }

  void addShape(pugi::xml_node node, const Inherited& state, const SvgShape& shape) {
    if (state.marked != nullptr) {
      if (state.fill.isColor()) addMarkerPaint(node, false, state.fill.color, state);
      if (state.stroke.isColor()) addMarkerPaint(node, true, state.stroke.color, state);
      return;
    }
    SvgPart fill = SvgPart::kOther;
    if (state.fill.isColor()) {
      fill = partOfFill(state.fill.color.value, shape, state);
      add(node, false, state.fill.color, fill, state);
    }
    if (state.stroke.isColor()) {
      const SvgPart part = partOfStroke(state, fill, shape);
      add(node, true, state.stroke.color, part, state);
    }
  }

  SvgPart partOfFill(Rgb color, const SvgShape& shape, const Inherited& state) {
    const bool isBox = shape.isStraight && shape.longestPiece == 4;
    if (isBox && !state.isDefined && shape.width() >= kWholePage * view_.width &&
        shape.height() >= kWholePage * view_.height) {
      if (!isDeciding_) return SvgPart::kPaper;
      if (state.fill.color.alpha.empty()) paper_ = color;
      return SvgPart::kBackground;
    }
    if (!isNeutral(color)) return SvgPart::kSeries;
    const double contrast = contrastRatio(color, paper_);
    const bool isLarge = shape.width() * shape.height() >= kLargeArea * view_.width * view_.height;
    if (isBox && isLarge && contrast < kGridContrast) return SvgPart::kPanel;
    return contrast < kPaperContrast ? SvgPart::kPaper : SvgPart::kSeries;
  }

  SvgPart partOfStroke(const Inherited& state, SvgPart fillPart, const SvgShape& shape) const {
    const Rgb color = state.stroke.color.value;
    const Ink& fill = state.fill;
    if (!isNeutral(color)) return SvgPart::kSeries;
    const double contrast = contrastRatio(color, paper_);
    const bool isGround = fillPart == SvgPart::kBackground || fillPart == SvgPart::kPanel;
    if (isGround) return SvgPart::kFrame;
    if (fill.isColor()) {
      if (fillPart == SvgPart::kSeries && fill.color.value == color) return SvgPart::kSeries;
      return contrast < kPaperContrast ? SvgPart::kPaper : SvgPart::kOutline;
    }
    if (shape.isRule && state.lineWidth > kWidestLine) {
      return contrast < kPaperContrast ? SvgPart::kPaper : SvgPart::kSeries;
    }
    if (shape.isRule) {
      const bool isLong =
          shape.width() >= kLongLine * view_.width || shape.height() >= kLongLine * view_.height;
      return isLong && contrast < kGridContrast ? SvgPart::kGrid : SvgPart::kAxis;
    }
    if (shape.isStraight && shape.longestPiece <= kMaxFrameLines) return SvgPart::kFrame;
    return contrast < kPaperContrast ? SvgPart::kPaper : SvgPart::kSeries;
  }

  void add(pugi::xml_node node, bool isStroke, const SvgColor& color, SvgPart part,
           const Inherited& state, int series = 0) {
    SvgPaint paint{node, isStroke, color, part, series, state.matrix.scale()};
    paint.isUnfilled = state.fill.kind == Ink::Kind::kNone;
    if (isStroke && isSvgMarked(node, true)) {
      paint.isWide = hasOwnSvgWidth(node);
    } else if (isStroke && paint.isUnfilled && isSvgShapeName(svgLocalName(node.name()))) {
      paint.width = state.lineWidth;
    }
    // Where what is seen has marks, no more is guessed at: its colors are those of a style.
    const bool isMarked = isSvgMarked(node, isStroke);
    if (!isDeciding_ && hasMarks_ && !isMarked) return;
    readMark(paint);
    if (paint.part == SvgPart::kSeries && paint.series == 0) {
      const auto known = series_.find(keyOf(color.value));
      if (known != series_.end()) {
        paint.series = known->second;
      } else if (!isDeciding_) {
        return;
      }
    }
    if (paint.part == SvgPart::kBackground && isDeciding_) parts_.hasBackground = true;
    parts_.paints.push_back(std::move(paint));
  }

  void readMark(SvgPaint& paint) {
    const std::optional<SvgMark> mark = readSvgMark(paint.node, paint.isStroke);
    hasMarks_ = hasMarks_ || (isDeciding_ && isSvgMarked(paint.node, paint.isStroke));
    if (!mark) return;
    const bool isSeries = mark->part == SvgPart::kSeries;
    if (mark->number > 0) {
      int& count = isSeries || mark->part == SvgPart::kOnSeries ? seriesCount_ : parts_.stepCount;
      if (!isDeciding_ && mark->number > count) return;
      if (isSeries || mark->part == SvgPart::kStep) count = std::max(count, mark->number);
      if (isSeries) series_.try_emplace(keyOf(paint.color.value), mark->number);
      paint.series = mark->number;
    }
    paint.part = mark->part;
  }

  pugi::xml_node root_;
  SvgView view_;
  Rgb paper_;
  SvgSheet sheet_;
  SvgUses uses_{sheet_};
  SvgGrounds grounds_;
  std::vector<SvgGroundBox> boxes_;                          ///< that may be grounds
  std::vector<std::pair<std::size_t, std::size_t>> labels_;  ///< texts and what they stand on
  std::unordered_map<std::uint32_t, int> series_;
  int seriesCount_ = 0;
  std::vector<Rgb> seriesColors_;  ///< in the order of their numbers, where nothing is marked
  bool hasMarks_ = false;
  std::vector<std::size_t> pendingTexts_;
  std::vector<std::size_t> pendingGlyphs_;  ///< of them, those that may be points of the data
  std::unordered_map<std::uint32_t, std::size_t> textCounts_;  ///< of the colours of texts
  std::size_t mostTexts_ = 0;
  Rgb textColor_;  ///< that of most texts
  /// What is not seen goes by what is seen, and comes after it.
  std::vector<std::pair<pugi::xml_node, Inherited>> unseen_;
  bool isDeciding_ = true;           ///< what is seen is looked at
  std::size_t decidingTexts_ = 0;    ///< of pendingTexts_, those that are seen
  std::size_t decidingLetters_ = 0;  ///< of parts_.texts
  std::unordered_map<std::string_view, MarkedLine> markedLines_;  ///< by the marker's identifier
  std::vector<std::string_view> markers_;                         ///< in the order of the chart
  SvgParts parts_;
};

}  // namespace

SvgParts findSvgParts(pugi::xml_node root) {
  PartFinder finder(root, kWhite);
  SvgParts parts = finder.find();
  return finder.isForDarkPage() ? PartFinder(root, Rgb{0, 0, 0}).find() : parts;
}

}  // namespace vornwout
