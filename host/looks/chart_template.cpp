#include "host/looks/chart_template.h"

#include <array>

#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr double kMaxLine = 20;  ///< points
/// More colours than anybody tells apart.
constexpr std::size_t kMaxSeries = 100;

constexpr std::array<std::pair<ChartDash, std::string_view>, 3> kDashes{
    {{ChartDash::kSolid, "solid"}, {ChartDash::kDashed, "dashed"}, {ChartDash::kDotted, "dotted"}}};

std::string readColor(LookElement& element) {
  std::string color = element.requiredColor("color");
  element.refuseRest();
  return color;
}

ChartText readText(LookElement& element) {
  ChartText text;
  text.font = element.font("font");
  text.size = element.fontSize("size");
  text.bold = element.flag("bold");
  text.italic = element.flag("italic");
  text.color = element.color("color");
  element.refuseRest();
  return text;
}

ChartLine readLine(LookElement& element) {
  ChartLine line;
  line.color = element.color("color");
  line.width = element.number("width", 0, 0.001, kMaxLine);
  line.dash = element.choice("style", ChartDash::kOwn, kDashes);
  element.refuseRest();
  return line;
}

void readSeries(LookElement& element, ChartStyle& style) {
  style.seriesWidth = element.number("width", 0, 0.001, kMaxLine);
  element.refuseOthers();
  element.readChildren(
      [&](LookElement& child) {
        if (child.name() != "color") return false;
        style.series.push_back(child.requiredColor("value"));
        child.refuseRest();
        return true;
      },
      "color");
  if (style.series.size() > kMaxSeries) element.refuse(localized("it has more than 100 colors"));
}

bool readPart(LookElement& element, ChartStyle& style) {
  const std::string_view name = element.name();
  if (name == "background") {
    style.background = readColor(element);
  } else if (name == "panel") {
    style.panel = readColor(element);
  } else if (name == "text") {
    // Asked for here, so that a title has none.
    style.quietText = element.color("quietColor");
    style.text = readText(element);
  } else if (name == "title") {
    style.title = readText(element);
  } else if (name == "axis") {
    style.axis = readLine(element);
  } else if (name == "grid") {
    style.grid = readLine(element);
  } else if (name == "frame") {
    style.frame = readLine(element);
  } else if (name == "series") {
    readSeries(element, style);
  } else if (name == "scale") {
    style.scaleLow = element.requiredColor("low");
    style.scaleHigh = element.requiredColor("high");
    element.refuseRest();
  } else {
    return false;
  }
  return true;
}

ChartStyle parseStyle(std::string_view xml, const char* rootName) {
  ChartStyle style;
  parseLook(xml, rootName, [&](LookElement& root) {
    style.name = root.text("name").value_or("");
    root.refuseOthers();
    root.readChildren([&](LookElement& child) { return readPart(child, style); });
  });
  return style;
}

}  // namespace

ChartStyle parseChartTemplate(std::string_view xml) { return parseStyle(xml, "template"); }

ChartStyle parseChartStyleSheet(std::string_view xml) { return parseStyle(xml, "styleSheet"); }

}  // namespace vornwout
