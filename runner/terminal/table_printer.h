// Draws a table's grid on a terminal: the title above, a frame, one rule below the header.
//
// Data columns keep the table's width limits, six points to a terminal column: the smaller one
// pads, the larger one wraps. A column that was given a width has it whatever the limits say. On a
// terminal no line is wider than it: the widest texts are wrapped first, numbers last, and a table
// that cannot be read that way is broken into panels that repeat its row labels; of many panels
// those without values are left out, and a line tells so. Footnote marks stand in brackets behind a
// cell's text or the title; below the table stand its caption and the notes. Texts come from
// anywhere, so every one is sanitized before it is measured.
#pragma once

#include <ostream>

#include "host/layout/table_grid.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// Writes the table to `out`, every line ended; a failure is left in the stream's state.
void printTable(std::ostream& out, const TableGrid& grid, const TerminalStyle& style);

}  // namespace vornwout
