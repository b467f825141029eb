// The rows of a table as texts: what a file of lines shows of a grid's cells.
//
// Entry point: TextRow::read().
#pragma once

#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/export/text/text_output.h"
#include "host/layout/table_grid.h"

namespace vornwout {

/// One cell. Its text may have several lines, and lives as long as the row that it came with.
struct TextCell {
  int column = 0;
  int rowSpan = 1;
  int columnSpan = 1;
  CellAlignment alignment = CellAlignment::kLeft;
  bool isOneLine = true;
  int width = 0;  ///< display columns of the widest line
  std::string_view text;
};

/// `text` with the marks of the footnotes `notes` behind it.
std::string withMarks(std::string text, const std::vector<int>& notes, const TableGrid& grid);

class TextRow {
 public:
  /// Both must outlive the row.
  TextRow(const TextOutput& out, const TableGrid& grid, bool withNotes)
      : out_(out), grid_(grid), withNotes_(withNotes) {}

  /// The cells of a row of the grid. What it gives lives until the next call, as long as `cells`
  /// do.
  std::span<const TextCell> read(std::span<const GridCell> cells);

 private:
  TextCell textOf(const GridCell& cell);

  const TextOutput& out_;
  const TableGrid& grid_;
  bool withNotes_;
  std::vector<TextCell> cells_;
  std::deque<std::string> texts_;  ///< those that are not the cells' own
};

}  // namespace vornwout
