// Texts on a terminal: how many columns they take, where to break them, how to show them safely.
//
// Columns are counted per grapheme cluster, the unit that a terminal draws in one place: the
// cluster is as wide as its widest character, so a letter with accents takes one column and an
// emoji joined from several takes two. Boundaries come from ICU; the width of a character from its
// East Asian Width and emoji properties.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vornwout {

enum class NewlineHandling { kReplace, kKeep };

/// Calls `take(cluster, columns)` for every grapheme cluster of UTF-8 text, in order. What is not
/// safe for a terminal takes one column, as it does when it is replaced.
void forEachCluster(std::string_view utf8,
                    const std::function<void(std::string_view cluster, int columns)>& take);

/// The columns that UTF-8 text takes as sanitizeForTerminal() shows it: a control character, a line
/// end and a byte that is not valid take one each.
int displayWidth(std::string_view utf8);

/// Breaks UTF-8 text into lines of at most `columns` columns (at least 1): at every '\n' (a '\r'
/// before it goes with it), at word boundaries, and inside a word only where the word alone is too
/// wide. A cluster wider than `columns` stands alone on its line. Blanks at a break are dropped.
/// Never empty: an empty text is one empty line. The lines are valid UTF-8 but not sanitized.
std::vector<std::string> wrapToWidth(std::string_view utf8, int columns);

/// The text as it may go to a terminal: control characters, escape, bidirectional overrides and
/// isolates, line and paragraph separators and bytes that are not valid become U+FFFD, a tab a
/// blank. Nothing in the result moves the cursor, changes colours or reorders its surroundings;
/// only '\n' stays, where it is asked for.
std::string sanitizeForTerminal(std::string_view utf8,
                                NewlineHandling newlines = NewlineHandling::kReplace);

}  // namespace vornwout
