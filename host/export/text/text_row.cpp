#include "host/export/text/text_row.h"

#include <utility>

#include "platform/text/shown_text.h"

namespace vornwout {
namespace {

/// Printable ASCII, which is shown as it is, a column for each byte.
bool isPlain(std::string_view text) {
  bool isPlain = true;
  for (const char c : text) isPlain = isPlain && c >= 0x20 && c < 0x7F;
  return isPlain;
}

}  // namespace

std::string withMarks(std::string text, const std::vector<int>& notes, const TableGrid& grid) {
  if (notes.empty()) return text;
  const char* separator = text.empty() ? "[" : " [";
  for (const int note : notes) {
    text += separator + grid.footnotes[static_cast<std::size_t>(note)].mark;
    separator = ",";
  }
  return text + "]";
}

std::span<const TextCell> TextRow::read(std::span<const GridCell> cells) {
  cells_.clear();
  texts_.clear();
  for (const GridCell& cell : cells) cells_.push_back(textOf(cell));
  return cells_;
}

TextCell TextRow::textOf(const GridCell& cell) {
  TextCell result;
  result.column = cell.column;
  result.rowSpan = cell.rowSpan;
  result.columnSpan = cell.columnSpan;
  result.alignment = cell.alignment;
  if ((cell.notes.empty() || !withNotes_) && isPlain(cell.text)) {
    result.text = cell.text;
    result.width = static_cast<int>(cell.text.size());
    return result;
  }
  std::string shown = out_.shownText(cell.text);
  if (withNotes_) shown = withMarks(std::move(shown), cell.notes, grid_);
  result.text = texts_.emplace_back(std::move(shown));
  result.width = widestLine(result.text);
  result.isOneLine = result.text.find('\n') == std::string_view::npos;
  return result;
}

}  // namespace vornwout
