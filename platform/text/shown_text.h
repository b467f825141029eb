// Foreign texts as they may be shown in lines of characters, on a terminal or in a text file:
// nothing in them moves what stands around them.
//
// Entry points: shownText(), shownLine(), widestLine().
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

/// The text as it may be shown, with "\n" for each of its line ends and nothing else that moves.
std::string shownText(std::string_view utf8);

/// The same as one line: line ends become blanks.
std::string shownLine(std::string_view utf8);

/// Columns of the widest line of a shown text.
int widestLine(std::string_view shown);

}  // namespace vornwout
