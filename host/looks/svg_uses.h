// What the use elements of an SVG chart draw: a letter, a point of the data, a text; and what that
// leaves to the use and to what is around it.
//
// Entry points: SvgUses::note() for every element, then settle(), then the questions. Each element
// is looked at once, so that the time is in proportion to the chart.
#pragma once

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <pugixml.hpp>

#include "host/looks/svg_sheet.h"

namespace vornwout {

/// Whether something that is used is a letter: a path alone may be one, or a point of the data.
enum class SvgGlyph { kNone, kBare, kNamed };

/// What something that is used leaves to whoever uses it: whether a piece of it says none.
struct SvgOpenInks {
  bool fill = false;
  bool stroke = false;
  bool text = false;  ///< the fill of a text
};

bool isSvgShapeName(std::string_view localName);

class SvgUses {
 public:
  /// `sheet` must outlive this, and be whole before settle().
  explicit SvgUses(const SvgSheet& sheet) : sheet_(sheet) {}

  /// Takes notice of an element, in the order of the chart.
  void note(pugi::xml_node node);
  void settle();

  /// The element of an identifier, if there is one.
  pugi::xml_node elementOf(std::string_view id) const;
  /// The identifier as the chart has it, which lasts; empty when it has none such.
  std::string_view lastingIdentifier(std::string_view id) const;
  bool isUsed(pugi::xml_node node) const { return used_.count(node.attribute("id").value()) > 0; }

  /// Whether a mask uses it, so that its colours say what is shown.
  bool isMask(pugi::xml_node node) const {
    return !masks_.empty() && masks_.count(node.attribute("id").value()) > 0;
  }

  SvgGlyph glyphOf(pugi::xml_node use) const;
  SvgOpenInks openInksOf(pugi::xml_node use) const;

 private:
  SvgOpenInks openInksWithin(pugi::xml_node node);
  bool isBare(pugi::xml_node node) const;

  const SvgSheet& sheet_;
  std::vector<std::string_view> order_;  ///< of the identifiers
  std::unordered_map<std::string_view, pugi::xml_node> identified_;
  std::unordered_set<std::string_view> used_;                   ///< identifiers
  std::unordered_set<std::string_view> masks_;                  ///< of what masks use
  std::unordered_map<std::string_view, SvgOpenInks> openInks_;  ///< of those that are used
};

}  // namespace vornwout
