// Foreign texts on their way to the terminal: sanitized, and broken into lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

/// The text as it may be shown, with "\n" for each of its line ends and nothing else that moves.
std::string shownText(std::string_view utf8);

/// The same as one line: line ends become blanks.
std::string shownLine(std::string_view utf8);

/// Terminal columns of the widest line of a shown text.
int widestLine(std::string_view shown);

/// The lines of a shown text at most `columns` wide; 0 for no limit.
std::vector<std::string> shownLines(const std::string& shown, int columns);

/// A shown line in at most `columns` columns: cut at a word where there is one, with an ellipsis
/// where something is missing.
std::string cutLine(const std::string& line, int columns);

/// A count of blanks, box lines or the like: `text` `times` times over; nothing when negative.
std::string repeated(std::string_view text, int times);

}  // namespace vornwout
