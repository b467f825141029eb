// The content of a cell, label, title or message: a text, a number, or a text with arguments.
#pragma once

#include <string>
#include <vector>

namespace vornwout {

/// How a number is shown.
struct BpFormatSpec {
  enum class Type { kGeneral, kCount };
  Type type = Type::kGeneral;
  friend bool operator==(const BpFormatSpec&, const BpFormatSpec&) = default;
};

/// What stands in the place of a secret wherever output is kept.
inline constexpr const char* kHiddenSecret = "***";

/// One content, as plain data in UTF-8.
struct CellText {
  enum class Kind { kString, kNumber, kComposite };

  Kind kind = Kind::kString;
  std::string text;           ///< the string, or the composite's text with "^1" and so on
  bool secret = false;        ///< shown to the user who wrote it, and kept nowhere
  bool translatable = false;  ///< the system's own text; a user's text is never translated
  double number = 0;
  BpFormatSpec format;
  std::vector<CellText> arguments;  ///< of a composite, "^1" first
  std::vector<CellText> sublist;    ///< names listed behind a composite's text
  bool hasSublist = false;

  friend bool operator==(const CellText&, const CellText&) = default;
};

/// A copy with "***" in place of every secret: what a trace or a document may keep.
CellText withoutSecrets(const CellText& cell);

/// The content as it is shown: numbers formatted, "^1" and so on replaced by the arguments.
/// A placeholder without an argument stays as it is.
std::string renderText(const CellText& cell);

/// A number as its format shows it: a count without decimals, otherwise up to six significant
/// digits.
std::string renderNumber(double value, BpFormatSpec format);

/// Replaces "^1" to "^9" in `text` by the arguments; one without an argument stays as it is, and a
/// replacement is not looked at again.
std::string substitutePlaceholders(const std::string& text,
                                   const std::vector<std::string>& arguments);

}  // namespace vornwout
