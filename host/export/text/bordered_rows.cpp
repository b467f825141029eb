#include "host/export/text/bordered_rows.h"

#include <algorithm>
#include <stdexcept>

#include "platform/strings/localized.h"
#include "platform/text/display_width.h"

namespace vornwout {
namespace {

constexpr int kBlanks = 2;  // one on either side of a text

TextBorders drawable(const TextBorders& borders) {
  const TextBorders defaults;
  TextBorders result;
  const auto choose = [](const std::string& border, const std::string& fallback) {
    const std::string shown = sanitizeForTerminal(border);
    return displayWidth(shown) > 0 ? shown : fallback;
  };
  result.row = choose(borders.row, defaults.row);
  result.column = choose(borders.column, defaults.column);
  return result;
}

void appendTimes(std::string& text, std::string_view part, std::size_t times) {
  if (part.size() == 1) {
    text.append(times, part[0]);
    return;
  }
  for (; times > 0; --times) text += part;
}

}  // namespace

int BorderedRows::columnsBetween(const TextBorders& borders) {
  return kBlanks + displayWidth(drawable(borders).column);
}

BorderedRows::BorderedRows(TextOutput& out, const TextBorders& borders,
                           const std::vector<int>& widths)
    : out_(out) {
  const TextBorders drawn = drawable(borders);
  const auto columnWidth = static_cast<std::size_t>(displayWidth(drawn.column));
  // The blanks of a line take a byte for each display column; only the borders may take more.
  borderExcess_ = drawn.column.size() - columnWidth;
  std::size_t width = columnWidth;
  blankLine_ = drawn.column;
  for (const int column : widths) {
    starts_.push_back(blankLine_.size());
    blankLine_.append(static_cast<std::size_t>(column) + kBlanks, ' ');
    ends_.push_back(blankLine_.size());
    blankLine_ += drawn.column;
    width += static_cast<std::size_t>(column) + kBlanks + columnWidth;
  }
  blankLine_ += '\n';
  const auto rowWidth = static_cast<std::size_t>(displayWidth(drawn.row));
  appendTimes(rule_, drawn.row, width / rowWidth);
  rule_.append(width % rowWidth, ' ');
  rule_ += '\n';
}

void BorderedRows::rule() { out_.append(rule_); }

/// Display columns of a cell's text.
std::size_t BorderedRows::roomOf(int column, int columnSpan) const {
  const auto first = static_cast<std::size_t>(column);
  const std::size_t bytes =
      ends_[first + static_cast<std::size_t>(columnSpan) - 1] - starts_[first];
  return bytes - static_cast<std::size_t>(columnSpan - 1) * borderExcess_ - kBlanks;
}

/// Whether nothing but the row itself is to be drawn: no cell is wrapped or reaches into other rows
/// in a way that can be seen there.
bool BorderedRows::fitsOneLine(std::span<const TextCell> cells) const {
  if (!slots_.empty()) return false;
  return std::all_of(cells.begin(), cells.end(), [&](const TextCell& cell) {
    return cell.isOneLine && (cell.rowSpan == 1 || cell.columnSpan == 1) &&
           static_cast<std::size_t>(cell.width) <= roomOf(cell.column, cell.columnSpan);
  });
}

void BorderedRows::row(std::span<const TextCell> cells) {
  if (fitsOneLine(cells)) {
    for (const TextCell& cell : cells) {
      draw({cell.column, cell.columnSpan, cell.alignment, cell.width, cell.text});
    }
    endLine();
    return;
  }
  beginCells(cells);
  drawSlots();
}

void BorderedRows::beginCells(std::span<const TextCell> cells) {
  for (const TextCell& cell : cells) {
    Slot& slot = slots_.emplace_back();
    slot.column = cell.column;
    slot.columnSpan = cell.columnSpan;
    slot.rowsLeft = cell.rowSpan;
    slot.alignment = cell.alignment;
    const std::size_t room = roomOf(cell.column, cell.columnSpan);
    if (cell.isOneLine && static_cast<std::size_t>(cell.width) <= room) {
      slot.lines.emplace_back(cell.text);
    } else {
      slot.lines = wrapToWidth(cell.text, static_cast<int>(std::min<std::size_t>(room, INT32_MAX)));
    }
  }
  std::sort(slots_.begin(), slots_.end(),
            [](const Slot& left, const Slot& right) { return left.column < right.column; });
}

void BorderedRows::drawSlots() {
  // A cell that spans rows flows through them; only its last row must take what is left of it.
  std::size_t height = 1;
  for (const Slot& slot : slots_) {
    if (slot.rowsLeft == 1) height = std::max(height, slot.lines.size() - slot.next);
  }
  wrapped_ += (height - 1) * blankLine_.size();
  if (wrapped_ > kMostWrapped) {
    throw std::runtime_error(localized(
        "because a table's wrapped cells would take more than a gigabyte; SEPARATOR=TAB wraps "
        "none"));
  }
  for (std::size_t line = 0; line < height; ++line) {
    for (Slot& slot : slots_) {
      const bool hasText = slot.next < slot.lines.size();
      // Where nothing is written the blank line is right, unless borders must go.
      if (!hasText && slot.columnSpan == 1) continue;
      const std::string_view text = hasText ? std::string_view(slot.lines[slot.next]) : "";
      draw({slot.column, slot.columnSpan, slot.alignment, displayWidth(text), text});
      if (hasText) ++slot.next;
    }
    endLine();
  }
  for (Slot& slot : slots_) --slot.rowsLeft;
  std::erase_if(slots_, [](const Slot& slot) { return slot.rowsLeft <= 0; });
}

void BorderedRows::draw(const Piece& piece) {
  const auto first = static_cast<std::size_t>(piece.column);
  const std::size_t room = roomOf(piece.column, piece.columnSpan);
  const auto width = static_cast<std::size_t>(piece.width);
  // A character of two columns in a room of one reaches into the blank behind it.
  const std::size_t spare = room > width ? room - width : 0;
  const std::size_t before = piece.alignment == CellAlignment::kRight    ? spare
                             : piece.alignment == CellAlignment::kCenter ? spare / 2
                                                                         : 0;
  const std::size_t start = starts_[first];
  if (piece.columnSpan == 1) {
    const std::size_t textAt = start + kBlanks / 2 + before;
    line_.append(blankLine_, drawnTo_, textAt - drawnTo_);
    line_ += piece.text;
    drawnTo_ = textAt + width;
    return;
  }
  line_.append(blankLine_, drawnTo_, start - drawnTo_);
  line_.append(kBlanks / 2 + before, ' ');
  line_ += piece.text;
  line_.append(room + kBlanks / 2 - before - width, ' ');
  drawnTo_ = ends_[first + static_cast<std::size_t>(piece.columnSpan) - 1];
}

void BorderedRows::endLine() {
  line_.append(blankLine_, drawnTo_, std::string::npos);
  out_.append(line_);
  line_.clear();
  drawnTo_ = 0;
}

}  // namespace vornwout
