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

/// What a word for a font size is in pixels.
std::optional<double> pixelsOfWord(std::string_view word) {
  static constexpr std::array<std::pair<std::string_view, double>, 7> kWords{{{"xx-small", 9},
                                                                              {"x-small", 10},
                                                                              {"small", 13},
                                                                              {"medium", 16},
                                                                              {"large", 18},
                                                                              {"x-large", 24},
                                                                              {"xx-large", 32}}};
  const auto* found = std::find_if(kWords.begin(), kWords.end(),
                                   [&](const auto& known) { return known.first == word; });
  return found == kWords.end() ? std::nullopt : std::optional(found->second);
}

/// How much larger the size becomes that "larger" asks for.
constexpr double kLarger = 1.2;

constexpr std::string_view kFont = "font";

bool isPartOfFont(std::string_view name) { return name.starts_with("font-"); }

/// Takes what stands before the next blank or slash.
std::string_view takeWord(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n\f/"));
  text = trimmed(text.substr(word.size()));
  return word;
}

/// What "font" says of the part of this name; nothing for what names no size or no family.
std::optional<std::string_view> partOfFont(std::string_view font, std::string_view name) {
  if (font == "inherit") return font;
  std::string_view weight = "normal";
  std::string_view style = "normal";
  std::string_view variant = "normal";
  std::string_view stretch = "normal";
  std::string_view size;
  while (size.empty()) {
    const std::string_view word = takeWord(font);
    const std::string lowered = asciiLowered(word);
    std::string_view rest = word;
    double number = 0;
    const bool isNumber = takeSvgNumber(rest, number) && rest.empty();
    if (isNumber || lowered == "bold" || lowered == "bolder" || lowered == "lighter") {
      weight = word;
    } else if (lowered == "italic" || lowered == "oblique") {
      style = word;
    } else if (lowered == "small-caps") {
      variant = word;
    } else if (lowered.ends_with("condensed") || lowered.ends_with("expanded")) {
      stretch = word;
    } else if (svgFontSize(word, 1)) {
      size = word;
    } else if (lowered != "normal") {
      return std::nullopt;
    }
  }
  if (font.starts_with('/')) {
    font = trimmed(font.substr(1));
    takeWord(font);
  }
  if (font.empty()) return std::nullopt;
  if (name == "font-size") return size;
  if (name == "font-family") return font;
  if (name == "font-weight") return weight;
  if (name == "font-style") return style;
  if (name == "font-variant") return variant;
  if (name == "font-stretch") return stretch;
  return std::nullopt;
}

}  // namespace

SvgProperties::SvgProperties(pugi::xml_node node, const SvgSheet* sheet)
    : node_(node), declarations_(parseSvgDeclarations(node.attribute("style").value())) {
  if (sheet != nullptr) rules_ = sheet->matching(node);
}

std::optional<std::string_view> SvgProperties::get(std::string_view name) const {
  using Value = std::optional<std::string_view>;
  const bool isOfFont = isPartOfFont(name);
  const auto valueIn = [&](const std::vector<SvgDeclaration>& declarations) -> Value {
    for (auto said = declarations.rbegin(); said != declarations.rend(); ++said) {
      if (said->name == name) return said->value;
      if (!isOfFont || said->name != kFont) continue;
      if (const Value part = partOfFont(said->value, name)) return part;
    }
    return std::nullopt;
  };
  Value value = valueIn(declarations_);
  for (auto rule = rules_.rbegin(); !value && rule != rules_.rend(); ++rule) {
    value = valueIn(**rule);
  }
  if (!value) value = trimmed(node_.attribute(std::string(name).c_str()).value());
  if (value->empty() || *value == "inherit") return std::nullopt;
  return value;
}

void SvgProperties::set(std::string_view name, const std::string& value) {
  isChanged_ = true;
  node_.remove_attribute(std::string(name).c_str());
  SvgDeclaration declaration{std::string(name), value, fmt::format("{}:{}", name, value)};
  const auto isNamed = [&](const SvgDeclaration& known) { return known.name == name; };
  auto first = std::find_if(declarations_.begin(), declarations_.end(), isNamed);
  const bool isOverridden =
      isPartOfFont(name) && std::any_of(first, declarations_.end(), [](const SvgDeclaration& said) {
        return said.name == kFont;
      });
  if (isOverridden) {
    declarations_.erase(std::remove_if(first, declarations_.end(), isNamed), declarations_.end());
    first = declarations_.end();
  }
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

std::optional<double> svgLength(std::string_view text, double whole) {
  double number = 0;
  if (!takeSvgNumber(text, number) || number <= 0) return std::nullopt;
  const std::string unit = asciiLowered(trimmed(text));
  if (unit == "%") return number / 100 * whole;
  if (unit == "em") return number * whole;
  const std::optional<double> pixels = pixelsOf(unit);
  return pixels ? std::optional(number * *pixels) : std::nullopt;
}

std::optional<double> svgFontSize(std::string_view text, double inherited) {
  const std::string word = asciiLowered(trimmed(text));
  if (word == "larger") return inherited * kLarger;
  if (word == "smaller") return inherited / kLarger;
  const std::optional<double> pixels = pixelsOfWord(word);
  return pixels ? pixels : svgLength(text, inherited);
}

bool isRelativeFontSize(std::string_view text) {
  const std::string lowered = asciiLowered(trimmed(text));
  return lowered.ends_with('%') || lowered.ends_with("em") || lowered == "larger" ||
         lowered == "smaller";
}

std::string svgNumber(double value) {
  std::string text = fmt::format("{:.3f}", value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

double roundedSvgNumber(double value) { return std::round(value * 1000) / 1000; }

bool isSvgZero(const std::optional<std::string_view>& text) {
  double value = 1;
  std::string_view rest = text.value_or("1");
  return takeSvgNumber(rest, value) && value <= 0;
}

std::string_view svgTargetOfUrl(std::string_view url) {
  const std::size_t first = url.find('#');
  const std::size_t end = url.find_first_of("\"')", std::min(first, url.size()));
  if (!url.starts_with("url(") || end == std::string_view::npos) return {};
  return url.substr(first + 1, end - first - 1);
}

}  // namespace vornwout
