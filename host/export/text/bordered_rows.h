// Draws the rows of a table with columns of fixed widths and borders between and around them.
//
// Every line of a table has the same display width: what is wider than its cell is wrapped there,
// and the cell of a label over several columns has the room of their borders too. A label over
// several rows stands at the top of them and flows through them.
//
// Entry points: rule() and row(), in the order in which they are to stand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/export/text/text_output.h"
#include "host/export/text/text_row.h"

namespace vornwout {

/// The characters that lines and columns are set off with.
struct TextBorders {
  std::string row = "-";
  std::string column = "|";
};

/// Bytes that the lines of a table may have which are there for wrapped cells only: each of them is
/// as long as the table is wide, so that a single long text can come to any size.
inline constexpr std::uint64_t kMostWrapped = std::uint64_t{1} << 30;

class BorderedRows {
 public:
  /// `widths` are those of the columns' texts, at least 1; a blank stands on either side of a text.
  /// A border that is no character that can be seen is drawn as its default.
  BorderedRows(TextOutput& out, const TextBorders& borders, const std::vector<int>& widths);

  /// Display columns between the texts of neighbours.
  static int columnsBetween(const TextBorders& borders);

  /// Throws StoreError, as row() does.
  void rule();
  /// The cells that begin in the next row, from left to right. Throws std::runtime_error, with a
  /// reason that goes on behind "because", where wrapped cells come to more than kMostWrapped.
  void row(std::span<const TextCell> cells);

 private:
  /// What one line of a cell shows.
  struct Piece {
    int column;
    int columnSpan;
    CellAlignment alignment;
    int width;
    std::string_view text;
  };
  /// A cell that is being drawn, over as many rows as it spans.
  struct Slot {
    int column;
    int columnSpan;
    int rowsLeft;
    CellAlignment alignment;
    std::vector<std::string> lines;
    std::size_t next = 0;
  };

  std::size_t roomOf(int column, int columnSpan) const;
  bool fitsOneLine(std::span<const TextCell> cells) const;
  void beginCells(std::span<const TextCell> cells);
  void drawSlots();
  void draw(const Piece& piece);
  void endLine();

  TextOutput& out_;
  std::string blankLine_;            ///< a row without texts, its end included
  std::vector<std::size_t> starts_;  ///< by column: the blank before its text in `blankLine_`
  std::vector<std::size_t> ends_;    ///< the byte behind the blank after it
  std::size_t borderExcess_ = 0;     ///< bytes of a column border beyond its display columns
  std::string rule_;
  std::vector<Slot> slots_;  ///< by column
  std::string line_;
  std::size_t drawnTo_ = 0;    ///< of `blankLine_`
  std::uint64_t wrapped_ = 0;  ///< bytes of lines for wrapped cells
};

}  // namespace vornwout
