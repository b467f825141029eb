#include "host/looks/svg_parts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/build/css_filter.h"
#include "host/looks/svg_shape.h"
#include "host/looks/svg_style.h"
#include "host/looks/svg_uses.h"
#include "host/looks/svg_viewport.h"

namespace vornwout {
namespace {

/// Contrast below which something has the colour of the paper.
constexpr double kPaperContrast = 1.25;
/// Contrast up to which a grey box is a ground and not a bar.
constexpr double kPanelContrast = 1.6;
/// Contrast below which a long line is the grid's.
constexpr double kGridContrast = 2.5;
/// Shares of the page.
constexpr double kWholePage = 0.98;
constexpr double kLargeArea = 0.25;
constexpr double kLongLine = 0.3;
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
constexpr int kMaxMarkedSeries = 100'000;

constexpr const char* kFillMark = "data-fill-part";
constexpr const char* kStrokeMark = "data-stroke-part";
constexpr std::string_view kSeriesMark = "series-";
constexpr std::string_view kStepMark = "step-";

constexpr std::array<std::pair<SvgPart, std::string_view>, 10> kPartNames{
    {{SvgPart::kBackground, "background"},
     {SvgPart::kPanel, "panel"},
     {SvgPart::kPaper, "paper"},
     {SvgPart::kText, "text"},
     {SvgPart::kQuietText, "quiet-text"},
     {SvgPart::kTitle, "title"},
     {SvgPart::kAxis, "axis"},
     {SvgPart::kGrid, "grid"},
     {SvgPart::kFrame, "frame"},
     {SvgPart::kOutline, "outline"}}};

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
  SvgMatrix matrix;             ///< to the units of the page
  SvgView view;                 ///< what percentages are of
  std::optional<SvgBox> edges;  ///< of the page's piece that is drawn on, where it is not all of it
  std::array<std::string_view, 3> markers;  ///< identifiers, empty for none
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

bool isZero(const std::optional<std::string_view>& text) {
  double value = 1;
  std::string_view rest = text.value_or("1");
  return takeSvgNumber(rest, value) && value <= 0;
}

constexpr std::array<const char*, 3> kMarkerProperties = {"marker-start", "marker-mid",
                                                          "marker-end"};

/// The identifier in "url(#id)"; empty for what refers to none.
std::string_view targetOfUrl(std::string_view url) {
  const std::size_t first = url.find('#');
  const std::size_t end = url.find_first_of("\"')", std::min(first, url.size()));
  if (!url.starts_with("url(") || end == std::string_view::npos) return {};
  return url.substr(first + 1, end - first - 1);
}

class PartFinder {
 public:
  explicit PartFinder(pugi::xml_node root) : root_(root) {}

  SvgParts find() {
    readIdentifiers();
    uses_.settle();
    readPage();
    Inherited page;
    page.view = view_;
    walkChildren(root_, enter(root_, SvgProperties(root_, &sheet_), page));
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
    return std::move(parts_);
  }

 private:
  void readPage() {
    const double points = lengthInPixels("width") * 0.75;
    if (const std::optional<SvgView> box = svgViewBox(root_)) {
      view_ = *box;
      parts_.unitsPerPoint = points > 0 ? view_.width / points : kPixelsPerPoint;
    } else {
      // The size of a picture that says none.
      const double height = lengthInPixels("height");
      view_ = {0, 0, points > 0 ? points / 0.75 : 300, height > 0 ? height : 150};
      parts_.unitsPerPoint = kPixelsPerPoint;
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
    if (const auto visibility = properties.get("visibility")) {
      inner.isInvisible = *visibility != "visible";
    }
    const auto anyMarker = properties.get("marker");
    for (std::size_t i = 0; i < kMarkerProperties.size(); ++i) {
      auto marker = properties.get(kMarkerProperties[i]);
      if (!marker) marker = anyMarker;
      if (marker) inner.markers[i] = uses_.lastingIdentifier(targetOfUrl(*marker));
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
    if (properties.get("overflow").value_or("hidden") != "visible") {
      SvgBox edges = mappedBox(port->edges, state.matrix);
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
           isZero(properties.get("opacity"));
  }

  void walk(pugi::xml_node node, const Inherited& outer) {
    const std::string_view name = svgLocalName(node.name());
    if (isOneOf(name, {"svg", "g", "a", "switch", "defs", "symbol", "text", "use"}) ||
        isSvgShapeName(name)) {
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
    const bool isMarked = group.attribute(kFillMark);
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
    if (state.isDefined && !state.isUsed && !node.attribute(kFillMark)) return;
    Ink fill = state.fill;
    // A style sheet may say another colour, but no text is without one.
    if (fill.kind == Ink::Kind::kUnset) fill.kind = Ink::Kind::kColor;
    if (!fill.isColor()) return;
    const std::size_t before = parts_.paints.size();
    add(node, false, fill.color, SvgPart::kOther, state);
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
    // Texts of a colour of the data name what has that colour.
    std::unordered_map<std::uint32_t, std::size_t> counts;
    std::size_t most = 0;
    Rgb usual;
    for (std::size_t i = 0; i < pendingTexts_.size(); ++i) {
      const std::size_t index = pendingTexts_[i];
      SvgPaint& paint = parts_.paints[index];
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
      text.isTitle = text.node.attribute(kFillMark).value() == std::string_view("title");
      isMarked = isMarked || text.node.attribute(kFillMark);
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
      if (paint.part != SvgPart::kSeries) continue;
      paint.part = SvgPart::kStep;
      paint.series = steps[static_cast<std::size_t>(paint.series - 1)];
    }
    parts_.stepCount = static_cast<int>(steps.size());
  }

  // ---- shapes

  void readUse(pugi::xml_node node, const SvgProperties& properties, const Inherited& state) {
    // One that is marked is known to be seen, whatever has become of what it uses.
    const bool isMarked = node.attribute(kFillMark);
    const SvgGlyph glyph = isMarked ? SvgGlyph::kNamed : uses_.glyphOf(node);
    if (glyph == SvgGlyph::kNamed || (glyph == SvgGlyph::kBare && isInkOfLetters(state))) {
      addTextPaint(node, state, glyph);
      if (!node.attribute(kStrokeMark)) return;
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
    if (isZero(properties.get("fill-opacity")) || svgLocalName(node.name()) == "line") {
      state.fill.kind = Ink::Kind::kNone;
    }
    if (isZero(properties.get("stroke-opacity")) || isZero(properties.get("stroke-width"))) {
      state.stroke.kind = Ink::Kind::kNone;
    }
    const std::size_t before = parts_.paints.size();
    addShape(node, state, *shape);
    const bool isDrawnLine = parts_.paints.size() > before && parts_.paints.back().isStroke;
    if (isDrawnLine && properties.get("vector-effect").value_or("") == "non-scaling-stroke") {
      // Such a line is drawn in pixels, whatever the chart is scaled by.
      parts_.paints.back().scale = parts_.unitsPerPoint / kPixelsPerPoint;
    }
    if (state.marked == nullptr) noteMarkers(state, isDrawnLine);
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
      const SvgPart part = partOfStroke(state.stroke.color.value, state.fill, fill, shape);
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
    if (contrast < kPaperContrast) return SvgPart::kPaper;
    return isBox && contrast < kPanelContrast ? SvgPart::kPanel : SvgPart::kSeries;
  }

  SvgPart partOfStroke(Rgb color, const Ink& fill, SvgPart fillPart, const SvgShape& shape) const {
    if (!isNeutral(color)) return SvgPart::kSeries;
    const double contrast = contrastRatio(color, paper_);
    const bool isGround = fillPart == SvgPart::kBackground || fillPart == SvgPart::kPanel;
    if (isGround) return SvgPart::kFrame;
    if (fill.isColor()) {
      if (fillPart == SvgPart::kSeries && fill.color.value == color) return SvgPart::kSeries;
      return contrast < kPaperContrast ? SvgPart::kPaper : SvgPart::kOutline;
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
    // Where what is seen has marks, no more is guessed at: its colors are those of a style.
    const bool isMarked = node.attribute(isStroke ? kStrokeMark : kFillMark);
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
    const std::string_view mark =
        paint.node.attribute(paint.isStroke ? kStrokeMark : kFillMark).value();
    if (mark.empty()) return;
    hasMarks_ = hasMarks_ || isDeciding_;
    const bool isSeries = mark.starts_with(kSeriesMark);
    if (isSeries || mark.starts_with(kStepMark)) {
      const std::string_view digits = mark.substr((isSeries ? kSeriesMark : kStepMark).size());
      const char* const end = digits.data() + digits.size();
      int number = 0;
      const auto [stop, error] = std::from_chars(digits.data(), end, number);
      if (error != std::errc() || stop != end || number < 1 || number > kMaxMarkedSeries) return;
      int& count = isSeries ? seriesCount_ : parts_.stepCount;
      if (!isDeciding_ && number > count) return;
      paint.part = isSeries ? SvgPart::kSeries : SvgPart::kStep;
      paint.series = number;
      count = std::max(count, number);
      if (isSeries) series_.try_emplace(keyOf(paint.color.value), number);
      return;
    }
    for (const auto& [part, name] : kPartNames) {
      if (mark == name) paint.part = part;
    }
  }

  pugi::xml_node root_;
  SvgView view_;
  Rgb paper_{255, 255, 255};
  SvgSheet sheet_;
  SvgUses uses_{sheet_};
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

SvgParts findSvgParts(pugi::xml_node root) { return PartFinder(root).find(); }

void markSvgPart(const SvgPaint& paint) {
  std::string mark;
  if (paint.part == SvgPart::kSeries || paint.part == SvgPart::kStep) {
    // So many colours get no others anyway.
    if (paint.series > kMaxMarkedSeries) return;
    mark = paint.part == SvgPart::kSeries ? kSeriesMark : kStepMark;
    mark += std::to_string(paint.series);
  }
  for (const auto& [part, name] : kPartNames) {
    if (paint.part == part) mark = name;
  }
  if (mark.empty()) return;
  const char* const key = paint.isStroke ? kStrokeMark : kFillMark;
  pugi::xml_node node = paint.node;
  pugi::xml_attribute attribute = node.attribute(key);
  if (!attribute) attribute = node.append_attribute(key);
  attribute.set_value(mark.c_str());
}

}  // namespace vornwout
