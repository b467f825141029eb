// The styles that stand at the elements of a chart: the properties of a style attribute, and what
// an element passes on to those within it.
//
// Entry points: SvgProperties, which reads one element, svgLength() and svgFontSize(). A style
// attribute goes before the rules of a sheet, and these before attributes, as SVG has it. What
// "font" says of one of its parts counts where it stands, as if it were said by that name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "host/looks/svg_sheet.h"

namespace vornwout {

class SvgProperties {
 public:
  /// `sheet` may be null and must outlive this.
  explicit SvgProperties(pugi::xml_node node, const SvgSheet* sheet = nullptr);

  /// What is said of the property, in the style attribute, the sheet or an attribute of its name;
  /// nothing when it says nothing or asks for what it inherits.
  std::optional<std::string_view> get(std::string_view name) const;

  /// Says the property in the style attribute, in place of whatever the element said of it; a part
  /// of the font behind what says all of them.
  void set(std::string_view name, const std::string& value);

  /// Writes what was set to the element.
  void write();

 private:
  pugi::xml_node node_;
  std::vector<SvgDeclaration> declarations_;
  std::vector<const SvgSheet::Declarations*> rules_;
  bool isChanged_ = false;
};

/// A length in the units of the chart; nothing for what is none. `whole` is what percentages and
/// ems are of.
std::optional<double> svgLength(std::string_view text, double whole);

/// A font size in the units of the chart: a length or a word for one; nothing for what is no size.
/// `inherited` is what those go by that are relative.
std::optional<double> svgFontSize(std::string_view text, double inherited);

/// Whether it is a multiple of what is inherited.
bool isRelativeFontSize(std::string_view text);

/// Whether a property is said, and as nothing or less.
bool isSvgZero(const std::optional<std::string_view>& text);

/// The identifier in "url(#id)"; empty for what refers to none.
std::string_view svgTargetOfUrl(std::string_view url);

/// A number with at most three decimals.
std::string svgNumber(double value);
/// The number that svgNumber() writes.
double roundedSvgNumber(double value);

}  // namespace vornwout
