// The content of a cell, label, title or message: a text, a number, or a text with arguments.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/pivot/display_format.h"
#include "platform/pivot/rare.h"

namespace vornwout {

/// How a number is shown.
struct BpFormatSpec {
  enum class Type : std::uint8_t { kGeneral, kCount };
  Type type = Type::kGeneral;
  std::optional<DisplayFormat> display =
      std::nullopt;  ///< where there is one, it stands before the type
  friend bool operator==(const BpFormatSpec&, const BpFormatSpec&) = default;
};

/// What stands in the place of a secret wherever output is kept.
inline constexpr const char* kHiddenSecret = "***";

/// One content, as plain data in UTF-8.
struct CellText {
  enum class Kind : std::uint8_t { kString, kNumber, kComposite };

  Kind kind = Kind::kString;
  bool secret = false;        ///< a user's, to be shown and kept nowhere
  bool translatable = false;  ///< the system's own text; a user's text is never translated
  bool hasSublist = false;
  BpFormatSpec format;
  double number = 0;
  std::string text;  ///< the string, or the composite's text with "^1" and so on
  Rare<std::vector<CellText>> arguments;  ///< of a composite, "^1" first
  Rare<std::vector<CellText>> sublist;    ///< names listed behind a composite's text

  friend bool operator==(const CellText&, const CellText&) = default;
};

/// A copy with "***" in place of every secret: what a terminal, a trace or a document may have.
CellText withoutSecrets(const CellText& cell);

/// The content as it is shown: numbers formatted, "^1" and so on replaced by the arguments.
/// A placeholder without an argument stays as it is.
std::string renderText(const CellText& cell);

/// A number as its format shows it: by its display format where it has one, otherwise a count
/// without decimals, otherwise whole where it is an integer that a double can hold exactly, else in
/// up to six significant digits, with all that stand before the point, and without an exponent from
/// 1e-4 to 1e15.
std::string renderNumber(double value, BpFormatSpec format);

/// Replaces "^1" to "^9" in `text` by the arguments; one without an argument stays as it is, and a
/// replacement is not looked at again.
std::string substitutePlaceholders(const std::string& text,
                                   const std::vector<std::string>& arguments);

}  // namespace vornwout
