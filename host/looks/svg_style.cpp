#include "host/looks/svg_style.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "host/build/css_filter.h"
#include "host/looks/svg_shape.h"

namespace vornwout {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\f";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// What a unit is in pixels, which are the units of a chart.
std::optional<double> pixelsOf(std::string_view unit) {
  static constexpr std::array<std::pair<std::string_view, double>, 7> kUnits{{{"", 1},
                                                                              {"px", 1},
                                                                              {"pt", 4.0 / 3},
                                                                              {"pc", 16},
                                                                              {"in", 96},
                                                                              {"cm", 96 / 2.54},
                                                                              {"mm", 96 / 25.4}}};
  const auto* found = std::find_if(kUnits.begin(), kUnits.end(),
                                   [&](const auto& known) { return known.first == unit; });
  return found == kUnits.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

SvgProperties::SvgProperties(pugi::xml_node node, const SvgSheet* sheet)
    : node_(node), declarations_(parseSvgDeclarations(node.attribute("style").value())) {
  if (sheet != nullptr) rules_ = sheet->matching(node);
}

std::optional<std::string_view> SvgProperties::get(std::string_view name) const {
  const auto valueIn = [&](const std::vector<SvgDeclaration>& declarations) {
    const auto found =
        std::find_if(declarations.rbegin(), declarations.rend(),
                     [&](const SvgDeclaration& declaration) { return declaration.name == name; });
    return found == declarations.rend() ? nullptr : &found->value;
  };
  const std::string* declared = valueIn(declarations_);
  for (auto rule = rules_.rbegin(); declared == nullptr && rule != rules_.rend(); ++rule) {
    declared = valueIn(**rule);
  }
  std::string_view value;
  if (declared != nullptr) {
    value = *declared;
  } else {
    value = trimmed(node_.attribute(std::string(name).c_str()).value());
  }
  if (value.empty() || value == "inherit") return std::nullopt;
  return value;
}

void SvgProperties::set(std::string_view name, const std::string& value) {
  isChanged_ = true;
  node_.remove_attribute(std::string(name).c_str());
  SvgDeclaration declaration{std::string(name), value, fmt::format("{}:{}", name, value)};
  const auto isNamed = [&](const SvgDeclaration& known) { return known.name == name; };
  const auto first = std::find_if(declarations_.begin(), declarations_.end(), isNamed);
  if (first == declarations_.end()) {
    declarations_.push_back(std::move(declaration));
    return;
  }
  *first = std::move(declaration);
  declarations_.erase(std::remove_if(first + 1, declarations_.end(), isNamed), declarations_.end());
}

void SvgProperties::write() {
  if (!isChanged_) return;
  std::string style;
  for (const SvgDeclaration& declaration : declarations_) {
    if (!style.empty()) style += ';';
    style += declaration.source;
  }
  pugi::xml_attribute attribute = node_.attribute("style");
  if (!attribute) attribute = node_.append_attribute("style");
  attribute.set_value(style.c_str());
}

std::optional<double> svgFontSize(std::string_view text, double inherited) {
  double number = 0;
  if (!takeSvgNumber(text, number) || number <= 0) return std::nullopt;
  const std::string unit = asciiLowered(trimmed(text));
  if (unit == "%") return number / 100 * inherited;
  if (unit == "em") return number * inherited;
  const std::optional<double> pixels = pixelsOf(unit);
  return pixels ? std::optional(number * *pixels) : std::nullopt;
}

bool isRelativeFontSize(std::string_view text) {
  const std::string lowered = asciiLowered(trimmed(text));
  return lowered.ends_with('%') || lowered.ends_with("em");
}

std::string svgNumber(double value) {
  std::string text = fmt::format("{:.3f}", value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

double roundedSvgNumber(double value) { return std::round(value * 1000) / 1000; }

}  // namespace vornwout
