// The sizes and margins of DOC and PPT, and the widths of EPS: numbers with a unit.
//
// A measure without a unit is refused: nothing else would tell the user that it has no effect.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "libvornwout/export/export_keywords.h"
#include "platform/exportspec/export_spec.h"

namespace vornwout {

inline constexpr std::array kMarginKeywords{"TOPMARGIN", "BOTTOMMARGIN", "LEFTMARGIN",
                                            "RIGHTMARGIN"};

/// A keyword that takes a width and a height in INCHES or MM.
ParamDescriptor sizeKeyword(const char* name);
/// Adds the four margins, each in INCHES or MM.
void addMarginKeywords(SubComDescriptor& subcommand);

/// Splits a measure that was given into its text and its unit; false after reporting one that has
/// no unit.
bool splitGivenMeasure(const ParamObj& param, const SubComObj& subcommand,
                       const ParserMessage& messages, std::string& text, ParamObj& unit);

/// The enumeration's value for a unit.
template <typename Unit>
Unit unitOf(const ParamObj& unit) {
  return enumerationValue<Unit>([&](std::string_view name) { return unit.getParamName() == name; })
      .value_or(Unit{});
}

/// Reads the number of a unit, written as `token`; false after reporting one that is not above 0.
bool readAboveZero(const ParamObj& unit, const std::string& token, const ParserMessage& messages,
                   double& number);

/// Reads a length above 0. False after reporting another one; a keyword that was not given leaves
/// `length` empty.
bool readLength(const SubComObj& subcommand, const char* keyword, const ParserMessage& messages,
                std::optional<PageMeasure>& length);

struct PageSize {
  PageMeasure width;
  PageMeasure height;
};

/// The same for a width and a height.
bool readSize(const SubComObj& subcommand, const char* keyword, const ParserMessage& messages,
              std::optional<PageSize>& size);

/// Reads the four margins; false after reporting each that is refused.
inline bool readMargins(const SubComObj& subcommand, const ParserMessage& messages,
                        PagedOption& option) {
  using Setter = void (PagedOption::*)(MEASUREMENT_TYPE, double, const std::string&);
  constexpr std::array<Setter, kMarginKeywords.size()> kSetters{
      &PagedOption::setTopMargin, &PagedOption::setBottomMargin, &PagedOption::setLeftMargin,
      &PagedOption::setRightMargin};
  bool accepted = true;
  for (std::size_t i = 0; i < kSetters.size(); ++i) {
    std::optional<PageMeasure> length;
    accepted = readLength(subcommand, kMarginKeywords[i], messages, length) && accepted;
    if (length) (option.*kSetters[i])(length->unit, length->value, length->text);
  }
  return accepted;
}

}  // namespace vornwout
