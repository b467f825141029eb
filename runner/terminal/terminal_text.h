// Shown texts on their way to the terminal: broken into lines, and cut.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/text/shown_text.h"

namespace vornwout {

/// The lines of a shown text at most `columns` wide; 0 for no limit.
std::vector<std::string> shownLines(const std::string& shown, int columns);

/// A shown line in at most `columns` columns: cut at a word where there is one, with an ellipsis
/// where something is missing.
std::string cutLine(const std::string& line, int columns);

/// A count of blanks, box lines or the like: `text` `times` times over; nothing when negative.
std::string repeated(std::string_view text, int times);

}  // namespace vornwout
