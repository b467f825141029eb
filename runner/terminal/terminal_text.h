// Shown texts on their way to the terminal: broken into lines, and cut.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text/shown_text.h"

namespace vornwout {

/// The start of a text as one shown line of at most `columns` columns, as cutLine() gives it. The
/// rest of a long text costs nothing.
std::string shownStart(std::string_view utf8, int columns);

/// The start of a text, in at most about `bytes` bytes of whole characters; the text where it has
/// no more.
std::string_view startOf(std::string_view utf8, std::size_t bytes);

/// The lines of a shown text at most `columns` wide; 0 for no limit.
std::vector<std::string> shownLines(const std::string& shown, int columns);

/// A shown line in at most `columns` columns: cut at a word where there is one, with an ellipsis
/// where something is missing. Looks at no more of it than that may take.
std::string cutLine(const std::string& line, int columns);

/// A count of blanks, box lines or the like: `text` `times` times over; nothing when negative.
std::string repeated(std::string_view text, int times);

}  // namespace vornwout
