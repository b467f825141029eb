#include "host/looks/svg_marks.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>

namespace vornwout {
namespace {

constexpr const char* kFillMark = "data-fill-part";
constexpr const char* kStrokeMark = "data-stroke-part";
constexpr const char* kWidthMark = "data-stroke-width";
constexpr std::string_view kOwnWidth = "own";

/// Of the parts that have numbers.
constexpr std::array<std::pair<SvgPart, std::string_view>, 4> kNumberedNames{
    {{SvgPart::kSeries, "series-"},
     {SvgPart::kStep, "step-"},
     {SvgPart::kOnSeries, "on-series-"},
     {SvgPart::kOnStep, "on-step-"}}};

constexpr std::array<std::pair<SvgPart, std::string_view>, 11> kPartNames{
    {{SvgPart::kBackground, "background"},
     {SvgPart::kPanel, "panel"},
     {SvgPart::kPaper, "paper"},
     {SvgPart::kText, "text"},
     {SvgPart::kQuietText, "quiet-text"},
     {SvgPart::kTitle, "title"},
     {SvgPart::kAxis, "axis"},
     {SvgPart::kGrid, "grid"},
     {SvgPart::kFrame, "frame"},
     {SvgPart::kOutline, "outline"},
     {SvgPart::kOwn, "own"}}};

const char* keyOf(bool isStroke) { return isStroke ? kStrokeMark : kFillMark; }

void setAttribute(pugi::xml_node node, const char* name, std::string_view value) {
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) attribute = node.append_attribute(name);
  attribute.set_value(value.data(), value.size());
}

}  // namespace

std::optional<SvgMark> readSvgMark(pugi::xml_node node, bool isStroke) {
  const std::string_view mark = node.attribute(keyOf(isStroke)).value();
  for (const auto& [part, name] : kNumberedNames) {
    if (!mark.starts_with(name)) continue;
    const std::string_view digits = mark.substr(name.size());
    const char* const end = digits.data() + digits.size();
    int number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end || number < 1 || number > kMaxMarkedSeries) break;
    return SvgMark{part, number};
  }
  for (const auto& [part, name] : kPartNames) {
    if (mark == name) return SvgMark{part, 0};
  }
  return std::nullopt;
}

bool isSvgMarked(pugi::xml_node node, bool isStroke) {
  return !std::string_view(node.attribute(keyOf(isStroke)).value()).empty();
}

bool isSvgTitle(pugi::xml_node text) {
  const std::optional<SvgMark> mark = readSvgMark(text, false);
  return mark && mark->part == SvgPart::kTitle;
}

bool hasOwnSvgWidth(pugi::xml_node node) { return node.attribute(kWidthMark).value() == kOwnWidth; }

void markSvgPart(const SvgPaint& paint) {
  std::string mark;
  for (const auto& [part, name] : kNumberedNames) {
    // So many colours get no others anyway.
    if (paint.part == part && paint.series > kMaxMarkedSeries) return;
    if (paint.part == part) mark = std::string(name) + std::to_string(paint.series);
  }
  for (const auto& [part, name] : kPartNames) {
    if (paint.part == part) mark = name;
  }
  if (mark.empty()) return;
  setAttribute(paint.node, paint.isStroke ? kStrokeMark : kFillMark, mark);
  if (paint.isWide) setAttribute(paint.node, kWidthMark, kOwnWidth);
}

}  // namespace vornwout
