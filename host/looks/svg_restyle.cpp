#include "host/looks/svg_restyle.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "host/build/css_filter.h"
#include "host/build/string_xml_writer.h"
#include "host/build/svg_sanitizer.h"
#include "host/looks/svg_marks.h"
#include "host/looks/svg_parts.h"
#include "host/looks/svg_style.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

/// Contrast from which a text is easy to read.
constexpr double kReadableContrast = 4.5;

class Restyler {
 public:
  Restyler(pugi::xml_node root, const ChartStyle& style)
      : root_(root), style_(style), parts_(findSvgParts(root)) {}

  void restyle() {
    for (const SvgPaint& paint : parts_.paints) restylePaint(paint);
    bool isTitle = false;
    for (const SvgText& text : parts_.texts) {
      // The pieces of a text follow it.
      const bool isPiece = text.outerFontSize > 0;
      isTitle = isPiece ? isTitle : text.isTitle;
      restyleText(text, isTitle);
    }
    if (!style_.background.empty()) restylePage();
  }

 private:
  /// The colour that a part gets; empty for the one that it has.
  std::string colorOf(const SvgPaint& paint) const {
    switch (paint.part) {
      case SvgPart::kBackground:
      case SvgPart::kPaper:
        return style_.background;
      case SvgPart::kPanel:
        return style_.panel;
      case SvgPart::kText:
        return style_.text.color;
      case SvgPart::kQuietText:
        return style_.quietText.empty() ? style_.text.color : style_.quietText;
      case SvgPart::kTitle:
        return style_.title.color.empty() ? style_.text.color : style_.title.color;
      case SvgPart::kAxis:
      case SvgPart::kOutline:
        return style_.axis.color;
      case SvgPart::kGrid:
        return style_.grid.color;
      case SvgPart::kFrame:
        return style_.frame.color;
      case SvgPart::kSeries:
        return seriesColor(paint.series);
      case SvgPart::kStep:
        return stepColor(paint.series);
      case SvgPart::kOnSeries:
        return readableOn(seriesColor(paint.series));
      case SvgPart::kOnStep:
        return readableOn(stepColor(paint.series));
      case SvgPart::kOwn:
      case SvgPart::kOther:
        break;
    }
    return {};
  }

  std::string seriesColor(int series) const {
    // One colour for two of the data would say that they are the same.
    const auto count = static_cast<std::size_t>(parts_.seriesCount);
    if (count > style_.series.size() || series < 1) return {};
    if (static_cast<std::size_t>(series) > style_.series.size()) return {};
    return style_.series[static_cast<std::size_t>(series - 1)];
  }

  /// The colour of a text on data that get the colour `ground`: the style's own or that of its
  /// paper, where they can be read. What keeps its colour keeps that of its text.
  std::string readableOn(const std::string& ground) const {
    const std::optional<Rgb> under = parseCellColor(ground);
    if (!under) return {};
    for (const std::string& color :
         {style_.text.color, style_.background, std::string("#000000")}) {
      const std::optional<Rgb> ink = parseCellColor(color);
      if (ink && contrastRatio(*ink, *under) >= kReadableContrast) return color;
    }
    return "#ffffff";
  }

  std::string stepColor(int step) const {
    const std::optional<Rgb> low = parseCellColor(style_.scaleLow);
    const std::optional<Rgb> high = parseCellColor(style_.scaleHigh);
    if (!low || !high) return {};
    const double share = parts_.stepCount > 1 ? (step - 1.0) / (parts_.stepCount - 1.0) : 1;
    const auto mix = [&](int from, int to) {
      return static_cast<int>(std::lround(from + share * (to - from)));
    };
    return fmt::format("#{:02x}{:02x}{:02x}", mix(low->red, high->red),
                       mix(low->green, high->green), mix(low->blue, high->blue));
  }

  const ChartLine* lineOf(SvgPart part) const {
    switch (part) {
      case SvgPart::kAxis:
        return &style_.axis;
      case SvgPart::kGrid:
        return &style_.grid;
      case SvgPart::kFrame:
        return &style_.frame;
      default:
        return nullptr;
    }
  }

  std::string units(double points, double scale) const {
    return svgNumber(lengthOf(points, scale));
  }

  /// In the units of the chart, and never so little that it rounds to nothing.
  double lengthOf(double points, double scale) const {
    return std::max(0.001, points * parts_.unitsPerPoint / positive(scale));
  }

  static double positive(double scale) { return scale > 0 ? scale : 1; }

  void restylePaint(const SvgPaint& paint) {
    SvgProperties properties(paint.node);
    const std::string color = colorOf(paint);
    if (!color.empty()) {
      properties.set(paint.isStroke ? "stroke" : "fill", recolored(paint.color, color));
    }
    if (paint.isStroke && !paint.keepsWidth && !paint.isWide) restyleLine(paint, properties);
    properties.write();
    markSvgPart(paint);
  }

  void restyleLine(const SvgPaint& paint, SvgProperties& properties) const {
    const ChartLine* line = lineOf(paint.part);
    double width = line == nullptr ? 0 : line->width;
    const bool isData = paint.part == SvgPart::kSeries || paint.part == SvgPart::kStep;
    if (isData && paint.isUnfilled) width = style_.seriesWidth;
    if (width > 0) properties.set("stroke-width", units(width, paint.scale));
    if (line == nullptr || line->dash == ChartDash::kOwn) return;
    std::string dashes = "none";
    const double thick = width > 0 ? width : 0.75;
    if (line->dash == ChartDash::kDashed) {
      dashes = fmt::format("{},{}", units(5 * thick, paint.scale), units(3 * thick, paint.scale));
    } else if (line->dash == ChartDash::kDotted) {
      dashes = fmt::format("{},{}", units(thick, paint.scale), units(2 * thick, paint.scale));
    }
    properties.set("stroke-dasharray", dashes);
  }

  void restyleText(const SvgText& text, bool isTitle) const {
    const ChartText& all = style_.text;
    const ChartText& title = style_.title;
    const bool isPiece = text.outerFontSize > 0;
    SvgProperties properties(text.node);
    const double points = isTitle && title.size > 0 ? title.size : all.size;
    if (points > 0) {
      // Rounded before the piece's share is taken, so that the share stays what it is.
      const double whole = roundedSvgNumber(lengthOf(points, text.scale));
      const double share = isPiece ? text.fontSize / text.outerFontSize : 1;
      properties.set("font-size", svgNumber(std::max(0.001, whole * share)) + "px");
    }
    const std::string& font = isTitle && !title.font.empty() ? title.font : all.font;
    const auto bold = isTitle && title.bold ? title.bold : all.bold;
    const auto italic = isTitle && title.italic ? title.italic : all.italic;
    if (!isPiece) {
      if (points > 0 || !font.empty() || bold || italic) releaseLengths(text.node);
      const std::string family = fmt::format("'{}',sans-serif", font);
      // A name may hold a word that a browser could take for an order to load something.
      if (!font.empty() && filteredCss(family) == family) properties.set("font-family", family);
      if (bold) properties.set("font-weight", *bold ? "bold" : "normal");
      if (italic) properties.set("font-style", *italic ? "italic" : "normal");
    }
    properties.write();
  }

  /// Takes away the length that a text, or a piece of it, is drawn to: it was that of the letters
  /// as they were.
  static void releaseLengths(pugi::xml_node text) {
    struct Releaser : pugi::xml_tree_walker {
      bool for_each(pugi::xml_node& node) override {
        node.remove_attribute("textLength");
        node.remove_attribute("lengthAdjust");
        return true;
      }
    } releaser;
    releaser.for_each(text);
    text.traverse(releaser);
  }

  void restylePage() {
    SvgProperties properties(root_);
    for (const char* name : {"background", "background-color"}) {
      if (properties.get(name)) properties.set(name, style_.background);
    }
    properties.write();
    if (parts_.hasBackground) return;
    const std::string_view rootName = root_.name();
    const std::size_t colon = rootName.find(':');
    const std::string prefix(colon == std::string_view::npos ? std::string_view()
                                                             : rootName.substr(0, colon + 1));
    pugi::xml_node ground = root_.insert_child_before((prefix + "rect").c_str(), firstDrawn());
    if (!ground) ground = root_.append_child((prefix + "rect").c_str());
    ground.append_attribute("x") = svgNumber(parts_.left).c_str();
    ground.append_attribute("y") = svgNumber(parts_.top).c_str();
    ground.append_attribute("width") = "100%";
    ground.append_attribute("height") = "100%";
    ground.append_attribute("style") = ("fill:" + style_.background + ";stroke:none").c_str();
    SvgPaint paint;
    paint.node = ground;
    paint.part = SvgPart::kBackground;
    markSvgPart(paint);
  }

  /// The first element that is more than a description.
  pugi::xml_node firstDrawn() const {
    for (const pugi::xml_node child : root_.children()) {
      if (child.type() != pugi::node_element) continue;
      const std::string_view name = svgLocalName(child.name());
      if (name != "title" && name != "desc" && name != "metadata" && name != "defs" &&
          name != "style") {
        return child;
      }
    }
    return {};
  }

  pugi::xml_node root_;
  const ChartStyle& style_;
  SvgParts parts_;
};

}  // namespace

std::string restyleSvg(const std::string& svg, const ChartStyle& style) {
  ChartStyle plain;
  plain.name = style.name;
  if (style == plain) return svg;
  const std::string clean = sanitizeSvg(svg);
  pugi::xml_document document;
  constexpr unsigned kParts = pugi::parse_ws_pcdata | pugi::parse_escapes | pugi::parse_eol;
  const pugi::xml_parse_result result =
      document.load_buffer(clean.data(), clean.size(), kParts, pugi::encoding_utf8);
  if (!result) throw SvgError(localized("The chart is no well-formed XML."));
  const pugi::xml_node root = document.document_element();
  Restyler(root, style).restyle();
  std::string restyled;
  StringXmlWriter writer(restyled);
  root.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  if (restyled.size() > kMaxSvgBytes) throw SvgError(localized("The chart is larger than 64 MiB."));
  return restyled;
}

}  // namespace vornwout
