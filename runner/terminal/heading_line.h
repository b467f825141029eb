// The lines that tell a reader of the terminal where things begin: a rule with a document's name,
// the heading above what belongs together.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "runner/terminal/style.h"

namespace vornwout {

/// A rule over the terminal's width with `name` in it, cut to one line; the rule alone for none.
void printRule(std::ostream& out, std::string_view name, const TerminalStyle& style);

/// A heading, wrapped to the terminal's width.
void printHeading(std::ostream& out, std::string_view text, const TerminalStyle& style);

}  // namespace vornwout
