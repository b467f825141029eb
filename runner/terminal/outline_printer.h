// A document's outline on a terminal: its objects as a tree, each with its number, label, type and
// the command that made it.
#pragma once

#include <ostream>
#include <vector>

#include "host/document/outline.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// Writes a line per entry. Labels are cut where a line would be wider than the terminal. `entries`
/// begin at any place of an outline and go on without a gap.
void printOutline(std::ostream& out, const std::vector<OutlineEntry>& entries,
                  const TerminalStyle& style);

}  // namespace vornwout
