// How a number is shown: the display formats by which a table's values and a command name them.
//
// Entry points: parseDisplayFormat() for "COMMA10.2" and the like, displayFormatName() for the way
// back, renderNumber() for the text of a value. A date is a number of seconds since midnight of
// 14 October 1582, the eve of the Gregorian calendar; a time is a number of seconds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vornwout {

struct DisplayFormat {
  enum class Kind : std::uint8_t {
    kF,         ///< 1234.50
    kE,         ///< 1.2345E+03
    kComma,     ///< 1,234.50
    kDot,       ///< 1.234,50
    kDollar,    ///< $1,234.50
    kPct,       ///< 12.5%, the value as it stands
    kN,         ///< digits only, filled with zeros
    kA,         ///< a text
    kDate,      ///< 20-NOV-2026
    kADate,     ///< 11/20/2026
    kEDate,     ///< 20.11.2026
    kSDate,     ///< 2026/11/20
    kTime,      ///< 13:05:59
    kDateTime,  ///< 20-NOV-2026 13:05:59
  };
  Kind kind = Kind::kF;
  std::uint8_t width = 8;     ///< characters, 1 to 40; a longer text is not cut
  std::uint8_t decimals = 0;  ///< digits behind the decimal point, 0 to 16

  friend bool operator==(const DisplayFormat&, const DisplayFormat&) = default;
};

/// A format as it is written in commands and files, without regard to case; nothing for what is
/// none: an unknown name, a width or decimals out of bounds or not of the format.
std::optional<DisplayFormat> parseDisplayFormat(std::string_view text);

/// The format in upper case, decimals only where there are some: "F8.2", "DATE11".
std::string displayFormatName(DisplayFormat format);

/// A value as the format shows it, without padding to the width (but for N, whose zeros are part of
/// it). A number that is not finite is shown as a period.
std::string renderNumber(double value, DisplayFormat format);

/// Whether values of the format are dates or times of day.
bool isDateOrTime(DisplayFormat::Kind kind);

}  // namespace vornwout
