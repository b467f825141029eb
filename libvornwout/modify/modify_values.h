// Values that several modifiers declare and read in the same way: texts with date and time fields,
// colours, font styles, lengths.
//
// Each kind of value has one pair of operations here, one that declares its keyword and one that
// reads it, so that it means the same wherever it stands.
#pragma once

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "libvornwout/frame/blame.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

/// A keyword of a modifier: never required.
ParamDescriptor modifierKeyword(const char* name, UPSpecTypes::ParamSpec spec,
                                std::initializer_list<const char*> values = {});

/// One text with its date and time fields filled in and its XML characters escaped; nothing when
/// the keyword was not given.
std::optional<std::string> readExpandedText(const SubComObj& subcommand, const char* keyword);

/// The text of one token and whether it was quoted; an empty text when the value is not one token.
std::string readText(const ParamObj& param, bool* quoted = nullptr);

/// The content of a file from the first occurrence of a start tag on, so that nothing before it,
/// such as an XML declaration, is embedded; the whole content when it has none, empty when there is
/// no such file.
std::string fetchFrom(const std::string& path, std::string_view startTag);

/// A colour's components, 0 to 255, or -1 when none was given.
struct RgbColor {
  int red = -1;
  int green = -1;
  int blue = -1;
};

/// Declares a keyword that takes one of seventeen colours or RGB(red green blue).
ParamDescriptor colorKeyword(const char* name);

/// Reads it. Three of the declared names, the ones spelt with GREY, are deliberately unknown to the
/// reader. False after reporting a value that is no colour; `reportedName` is what the message
/// calls the subcommand.
bool readColor(const SubComObj& subcommand, const char* keyword, const char* reportedName,
               const ParserMessage& messages, RgbColor& color);

/// A font's style, each part with whether it was asked for.
struct FontStyle {
  bool regular = false;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool regularSpecified = false;
  bool boldSpecified = false;
  bool italicSpecified = false;
  bool underlineSpecified = false;
};

/// Declares the keyword STYLE, a list of REGULAR, BOLD, ITALIC and UNDERLINE.
ParamDescriptor styleKeyword();

/// Reads it in the order of the list: REGULAR asks for all three parts to be off, a part named
/// behind it is on all the same. False when the list is none, which the parser has reported.
bool readStyle(const SubComObj& subcommand, FontStyle& style);

/// A unit of length and what one of it is in points.
struct LengthUnit {
  const char* keyword;
  double points;
};

inline constexpr std::array kLengthUnits = {
    LengthUnit{"CENTIMETERS", 28.3464567},
    LengthUnit{"INCHES", 72},
    LengthUnit{"POINTS", 1},
};

/// The points of one unit by its keyword, or nothing.
std::optional<double> pointsOfUnit(std::string_view keyword);

}  // namespace vornwout
