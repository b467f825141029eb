// Reads the values of a table from their texts: numbers, dates and times of day.
//
// Numbers are decimal, with an exponent or without, as std::from_chars() reads them; a file may
// have another decimal mark and group its thousands. Dates and times are those of ISO 8601, without
// a time zone: a table shows what the file says. Blanks around a value do not count.
#pragma once

#include <optional>
#include <string_view>

#include "platform/pivot/display_format.h"

namespace vornwout {

struct NumberMarks {
  char decimal = '.';
  /// 0 for none. A blank stands for the no-break, narrow and thin ones as well, the apostrophe for
  /// the right single quotation mark.
  char thousands = 0;
};

/// A number; nothing for what is none, or too large to be held. What is too small to be held is 0.
std::optional<double> readNumber(std::string_view text, const NumberMarks& marks = {});

/// Whether a text is a number, but too large to be held.
bool isTooLargeNumber(std::string_view text, const NumberMarks& marks = {});

/// A date or a time as the display formats count it; nothing for what is none. TIME takes
/// "[-]hours:minutes[:seconds]", the others "year-month-day", with a "T" or a blank and a time
/// behind it.
std::optional<double> readDateOrTime(std::string_view text, DisplayFormat::Kind kind);

/// The text without blanks at both ends.
std::string_view withoutBlanks(std::string_view text);

}  // namespace vornwout
