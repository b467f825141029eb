#include "runner/terminal/table_printer.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/adapter/progress_listener.h"
#include "platform/strings/localized.h"
#include "platform/text/display_width.h"
#include "runner/terminal/color.h"
#include "runner/terminal/column_widths.h"
#include "runner/terminal/terminal_text.h"

namespace vornwout {
namespace {

constexpr int kPointsPerColumn = 6;
constexpr int kCellPadding = 2;      // a blank on either side of a cell's text
constexpr int kFrame = 2;            // the lines left and right
constexpr int kNarrowestText = 8;    // texts in narrower columns are hard to read
constexpr int kWidestColumn = 500;   // where neither table nor terminal sets a limit
constexpr int kWidestGrowth = 32;    // a label over several columns widens them up to this
constexpr int kNarrowestCover = 12;  // room in a panel for a label over columns of several panels
constexpr std::size_t kMostEmptyPanels = 10;  // above, panels without values are left out
constexpr int kRowsBetweenReports = 256;
constexpr std::size_t kMostOfACell = 64 << 10;  // bytes
constexpr std::string_view kBold = "1";
constexpr std::string_view kDim = "2";
constexpr std::string_view kItalic = "3";
constexpr std::string_view kUnderlined = "4";

std::size_t at(int index) { return static_cast<std::size_t>(index); }

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

/// A text with the marks of the footnotes `notes` behind it.
std::string withMarks(std::string text, const std::vector<int>& notes, const TableGrid& grid) {
  if (notes.empty()) return text;
  const char* separator = text.empty() ? "[" : " [";
  for (const int note : notes) {
    text += separator + grid.footnotes[at(note)].mark;
    separator = ",";
  }
  return text + "]";
}

/// A cell's text with its footnote marks; the start of one that nobody would read to its end.
std::string markedText(const GridCell& cell, const TableGrid& grid) {
  const std::string_view start = startOf(cell.text, kMostOfACell);
  std::string text = shownText(start);
  if (start.size() < cell.text.size()) text += "…";
  return withMarks(std::move(text), cell.notes, grid);
}

/// Measures the columns of a grid.
class ColumnMeter {
 public:
  explicit ColumnMeter(const TableGrid& grid)
      : grid_(grid), needs_(at(grid.columnCount)), numberWidths_(at(grid.columnCount), 0) {}

  std::vector<ColumnNeed> measure();

  /// Widens what measure() found for columns that may come to stand in different panels, where a
  /// label over several of them has only some of their room.
  void widenForPanels(std::vector<ColumnNeed>& needs) const;

 private:
  bool isData(std::size_t column) const { return column >= at(grid_.headerColumns); }
  int widestOf(std::size_t column) const;
  void measureCell(const GridCell& cell);
  void applyLimits(std::size_t column);
  void growUnder(const GridCell& cell);

  const TableGrid& grid_;
  std::vector<ColumnNeed> needs_;
  std::vector<int> numberWidths_;
};

int columnsOf(int points) { return std::max(1, points / kPointsPerColumn); }

int ColumnMeter::widestOf(std::size_t column) const {
  if (const int points = grid_.columnWidth(static_cast<int>(column)); points > 0) {
    return std::min(kWidestColumn, columnsOf(points));
  }
  if (!isData(column) || !grid_.maxDataColumnWidth) return kWidestColumn;
  return std::min(kWidestColumn, columnsOf(*grid_.maxDataColumnWidth));
}

void ColumnMeter::measureCell(const GridCell& cell) {
  const std::string text = markedText(cell, grid_);
  const int width = widestLine(text);
  const std::size_t column = at(cell.column);
  needs_[column].natural = std::max(needs_[column].natural, width);
  if (cell.isNumber) numberWidths_[column] = std::max(numberWidths_[column], width);
  if (!isAscii(text)) needs_[column].least = 2;
}

void ColumnMeter::applyLimits(std::size_t column) {
  ColumnNeed& need = needs_[column];
  const int content = need.natural;
  if (grid_.columnWidth(static_cast<int>(column)) > 0) {
    need.natural = widestOf(column);
  } else if (isData(column) && grid_.minDataColumnWidth) {
    need.natural = std::max(need.natural, columnsOf(*grid_.minDataColumnWidth));
  }
  // The larger limit comes last: where the two contradict each other, it holds.
  need.natural = std::max(need.least, std::min(need.natural, widestOf(column)));
  const int readable = std::max(numberWidths_[column], std::min(content, kNarrowestText));
  need.floor = std::clamp(readable, need.least, need.natural);
}

void ColumnMeter::growUnder(const GridCell& cell) {
  const std::string text = markedText(cell, grid_);
  int missing = std::min(widestLine(text), kWidestGrowth) + kCellPadding;
  for (int i = 0; i < cell.columnSpan; ++i) {
    ColumnNeed& need = needs_[at(cell.column + i)];
    if (!isAscii(text)) {
      need.least = 2;
      need.natural = std::max(need.natural, need.least);
      need.floor = std::max(need.floor, need.least);
    }
    missing -= need.natural + kCellPadding;
  }
  for (int i = 0; i < cell.columnSpan && missing > 0; ++i) {
    const std::size_t column = at(cell.column + i);
    const int share = (missing + cell.columnSpan - i - 1) / (cell.columnSpan - i);
    const int growth = std::clamp(widestOf(column) - needs_[column].natural, 0, share);
    needs_[column].natural += growth;
    missing -= growth;
  }
}

std::vector<ColumnNeed> ColumnMeter::measure() {
  for (const GridCell& cell : grid_.cells) {
    if (cell.columnSpan == 1) measureCell(cell);
  }
  for (std::size_t i = 0; i < needs_.size(); ++i) applyLimits(i);
  for (const GridCell& cell : grid_.cells) {
    if (cell.columnSpan > 1) growUnder(cell);
  }
  return std::move(needs_);
}

void ColumnMeter::widenForPanels(std::vector<ColumnNeed>& needs) const {
  for (const GridCell& cell : grid_.cells) {
    if (cell.columnSpan == 1 || !isData(at(cell.column))) continue;
    const int cover = std::min(widestLine(markedText(cell, grid_)), kNarrowestCover);
    for (int i = 0; i < cell.columnSpan; ++i) {
      ColumnNeed& need = needs[at(cell.column + i)];
      need.natural = std::max(need.natural, cover);
      need.floor = std::max(need.floor, cover);
    }
  }
}

/// Draws the row labels and some data columns of a grid, all rows.
class PanelPainter {
 public:
  /// `widths` holds the row labels' columns first, then those of the data columns [first, last).
  PanelPainter(std::ostream& out, const TableGrid& grid, const TerminalStyle& style, int first,
               int last, std::vector<int> widths)
      : out_(out),
        grid_(grid),
        style_(style),
        first_(first),
        last_(last),
        widths_(std::move(widths)),
        slots_(widths_.size()) {}

  void paint();

 private:
  /// A cell that is being drawn, over as many rows as it spans.
  struct Slot {
    std::vector<std::string> lines;
    std::size_t next = 0;
    int rowsLeft = 0;
    std::size_t columns = 1;
    CellAlignment alignment = CellAlignment::kLeft;
    std::string codes;
  };

  bool hasDivider() const { return grid_.headerColumns > 0 && last_ > first_; }
  int innerWidth(std::size_t position, std::size_t columns) const;
  void beginCell(const GridCell& cell);
  void beginRow(int row);
  void paintRow();
  std::string cellLine(Slot& slot, int width) const;
  void paintBorder(std::string_view left, std::string_view divider, std::string_view right);

  std::ostream& out_;
  const TableGrid& grid_;
  const TerminalStyle& style_;
  int first_;
  int last_;
  std::vector<int> widths_;
  std::vector<Slot> slots_;  ///< by the leftmost column of each; free where no rows are left
};

std::string styleCodes(const TextLook& look, ColorDepth depth) {
  std::string codes;
  const auto add = [&](const std::string& code) {
    if (!codes.empty() && !code.empty()) codes += ';';
    codes += code;
  };
  if (look.bold.value_or(false)) add(std::string(kBold));
  if (look.italic.value_or(false)) add(std::string(kItalic));
  if (look.underlined.value_or(false)) add(std::string(kUnderlined));
  const std::optional<Rgb> background = parseCellColor(look.backgroundColor);
  std::optional<Rgb> foreground = parseCellColor(look.textColor);
  // The terminal's own text colour may be unreadable on a background that it does not know.
  if (background && !foreground) foreground = readableOn(*background);
  if (foreground) add(foregroundCode(*foreground, depth));
  if (background) add(backgroundCode(*background, depth));
  return codes;
}

int PanelPainter::innerWidth(std::size_t position, std::size_t columns) const {
  int width = -kCellPadding;
  for (std::size_t i = 0; i < columns; ++i) width += widths_[position + i] + kCellPadding;
  return width;
}

void PanelPainter::beginCell(const GridCell& cell) {
  int from = cell.column;
  int to = cell.column + cell.columnSpan;
  if (cell.column >= grid_.headerColumns) {
    // A label over columns of several panels stands in each of them.
    from = std::max(from, first_);
    to = std::min(to, last_);
    if (from >= to) return;
    from = from - first_ + grid_.headerColumns;
    to = to - first_ + grid_.headerColumns;
  }
  Slot& slot = slots_[at(from)];
  slot.columns = at(to - from);
  slot.lines = shownLines(markedText(cell, grid_), innerWidth(at(from), slot.columns));
  slot.next = 0;
  slot.rowsLeft = cell.rowSpan;
  slot.alignment = cell.alignment;
  slot.codes = style_.isStyled() ? styleCodes(cell.look.get(), style_.depth) : std::string();
}

void PanelPainter::beginRow(int row) {
  const GridRow cells = grid_.row(row);
  const GridCell* cell = cells.begin();
  if (row < grid_.headerRows) {
    for (; cell != cells.end(); ++cell) beginCell(*cell);
    return;
  }
  for (; cell != cells.end() && cell->column < grid_.headerColumns; ++cell) beginCell(*cell);
  cell = std::lower_bound(cell, cells.end(), first_, [](const GridCell& candidate, int column) {
    return candidate.column < column;
  });
  for (; cell != cells.end() && cell->column < last_; ++cell) beginCell(*cell);
}

std::string PanelPainter::cellLine(Slot& slot, int width) const {
  std::string text;
  if (slot.next < slot.lines.size()) text = slot.lines[slot.next++];
  const int room = std::max(0, width - displayWidth(text));
  const int before = slot.alignment == CellAlignment::kRight    ? room
                     : slot.alignment == CellAlignment::kCenter ? room / 2
                                                                : 0;
  return withStyle(" " + repeated(" ", before) + text + repeated(" ", room - before) + " ",
                   slot.codes, style_);
}

void PanelPainter::paintRow() {
  // A cell that spans rows flows through them; only its last row must take what is left of it.
  std::size_t height = 1;
  for (const Slot& slot : slots_) {
    if (slot.rowsLeft == 1) height = std::max(height, slot.lines.size() - slot.next);
  }
  const std::string frame = withStyle("│", kDim, style_);
  for (std::size_t line = 0; line < height; ++line) {
    std::string drawn = frame;
    for (std::size_t i = 0; i < slots_.size();) {
      if (hasDivider() && i == at(grid_.headerColumns)) drawn += frame;
      Slot& slot = slots_[i];
      if (slot.rowsLeft > 0) {
        drawn += cellLine(slot, innerWidth(i, slot.columns));
        i += slot.columns;
      } else {
        drawn += repeated(" ", widths_[i] + kCellPadding);
        ++i;
      }
    }
    out_ << drawn << frame << '\n';
  }
  for (Slot& slot : slots_) {
    if (slot.rowsLeft > 0) --slot.rowsLeft;
  }
}

void PanelPainter::paintBorder(std::string_view left, std::string_view divider,
                               std::string_view right) {
  std::string border(left);
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (hasDivider() && i == at(grid_.headerColumns)) border += divider;
    border += repeated("─", widths_[i] + kCellPadding);
  }
  border += right;
  out_ << withStyle(border, kDim, style_) << '\n';
}

void PanelPainter::paint() {
  paintBorder("┌", "┬", "┐");
  for (int row = 0; row < grid_.rowCount; ++row) {
    beginRow(row);
    paintRow();
    if (row % kRowsBetweenReports == 0) reportWithinStep(at(row), at(grid_.rowCount));
    if (row + 1 == grid_.headerRows) paintBorder("├", "┼", "┤");
  }
  paintBorder("└", "┴", "┘");
}

void printText(std::ostream& out, const std::string& text, std::string_view codes,
               const TerminalStyle& style) {
  for (const std::string& line : shownLines(shownText(text), style.width)) {
    out << withStyle(line, codes, style) << '\n';
  }
}

void printCaptions(std::ostream& out, const TableGrid& grid, const TerminalStyle& style) {
  // Without a title its notes have no place to be marked at; they stand below the table all the
  // same.
  if (!grid.title.empty()) {
    TextLook look = grid.titleLook.get();
    look.bold = look.bold.value_or(true);
    printText(out, withMarks(grid.title, grid.titleNotes, grid), styleCodes(look, style.depth),
              style);
  }
  const std::string layerCodes = styleCodes(grid.layersLook.get(), style.depth);
  for (const LayerCaption& layer : grid.layers) {
    const bool hasBoth = !layer.dimension.empty() && !layer.category.empty();
    printText(out, layer.dimension + (hasBoth ? ": " : "") + layer.category, layerCodes, style);
  }
}

void printFootnotes(std::ostream& out, const TableGrid& grid, const TerminalStyle& style) {
  std::string codes = styleCodes(grid.footnoteLook.get(), style.depth);
  if (codes.empty()) codes = kDim;
  for (const Footnote& footnote : grid.footnotes) {
    std::string lead = "[" + footnote.mark + "] ";
    const int indent = displayWidth(lead);
    const int room = style.width > 0 ? std::max(1, style.width - indent) : 0;
    for (const std::string& line : shownLines(shownText(footnote.text), room)) {
      out << withStyle(lead + line, codes, style) << '\n';
      lead = repeated(" ", indent);
    }
  }
}

/// Where a table is broken, and how much room there is for each panel.
struct PanelPlan {
  std::vector<ColumnNeed> labels;
  std::vector<ColumnNeed> data;
  std::vector<ColumnPanel> panels;
  int room = 0;  ///< inside the frame
};

PanelPlan planPanels(const TableGrid& grid, int terminalWidth) {
  ColumnMeter meter(grid);
  std::vector<ColumnNeed> needs = meter.measure();
  PanelPlan plan;
  const auto splitAgain = [&] {
    plan.labels.assign(needs.begin(), needs.begin() + grid.headerColumns);
    plan.data.assign(needs.begin() + grid.headerColumns, needs.end());
    // Without a terminal's width there is room for every column's natural one.
    std::int64_t wanted = 0;
    std::int64_t labelRoom = 0;
    for (const ColumnNeed& need : needs) wanted += need.natural + kCellPadding;
    for (const ColumnNeed& label : plan.labels) labelRoom += label.floor + kCellPadding;
    const int divider = !plan.labels.empty() && !plan.data.empty() ? 1 : 0;
    if (terminalWidth > 0) wanted = terminalWidth - kFrame - divider;
    plan.room = static_cast<int>(std::clamp<std::int64_t>(wanted, 0, INT32_MAX));
    const auto dataRoom = static_cast<int>(std::max<std::int64_t>(0, plan.room - labelRoom));
    plan.panels = splitColumns(plan.data, dataRoom, kCellPadding);
  };
  splitAgain();
  if (plan.panels.size() > 1) {
    meter.widenForPanels(needs);
    splitAgain();
  }
  return plan;
}

/// Takes the panels without any value out of many, and returns how many columns they had. In few
/// panels it is of interest which columns are empty.
std::size_t leaveOutEmptyPanels(std::vector<ColumnPanel>& panels, const TableGrid& grid) {
  if (panels.size() <= kMostEmptyPanels) return 0;
  std::vector<bool> hasValues(at(grid.columnCount - grid.headerColumns), false);
  for (const GridCell& cell : grid.cells) {
    if (cell.role == CellRole::kData) hasValues[at(cell.column - grid.headerColumns)] = true;
  }
  std::size_t leftOut = 0;
  const auto isEmpty = [&](const ColumnPanel& panel) {
    const auto first = hasValues.begin() + static_cast<std::ptrdiff_t>(panel.first);
    const auto last = hasValues.begin() + static_cast<std::ptrdiff_t>(panel.last);
    if (std::find(first, last, true) != last) return false;
    leftOut += panel.last - panel.first;
    return true;
  };
  // The first one stays, for a table without any value.
  std::size_t kept = 1;
  for (std::size_t i = 1; i < panels.size(); ++i) {
    if (!isEmpty(panels[i])) panels[kept++] = panels[i];
  }
  panels.resize(kept);
  return leftOut;
}

void printPanels(std::ostream& out, const TableGrid& grid, const TerminalStyle& style) {
  PanelPlan plan = planPanels(grid, style.width);
  const std::size_t leftOut = leaveOutEmptyPanels(plan.panels, grid);
  for (std::size_t i = 0; i < plan.panels.size(); ++i) {
    const ColumnPanel& panel = plan.panels[i];
    if (i > 0) out << '\n';
    std::vector<ColumnNeed> shown = plan.labels;
    shown.insert(shown.end(), plan.data.begin() + static_cast<std::ptrdiff_t>(panel.first),
                 plan.data.begin() + static_cast<std::ptrdiff_t>(panel.last));
    const int padding = static_cast<int>(shown.size()) * kCellPadding;
    PanelPainter(out, grid, style, grid.headerColumns + static_cast<int>(panel.first),
                 grid.headerColumns + static_cast<int>(panel.last),
                 fitColumns(shown, plan.room - padding))
        .paint();
  }
  if (leftOut > 0) {
    printText(out, localized("(^1 columns without values are not shown.)", leftOut), kDim, style);
  }
}

}  // namespace

void printTable(std::ostream& out, const TableGrid& grid, const TerminalStyle& style) {
  printCaptions(out, grid, style);
  if (grid.rowCount == 0 || grid.columnCount == 0) {
    out << withStyle("(empty)", kDim, style) << '\n';
  } else {
    printPanels(out, grid, style);
  }
  if (!grid.caption.empty()) {
    printText(out, grid.caption, styleCodes(grid.captionLook.get(), style.depth), style);
  }
  printFootnotes(out, grid, style);
}

}  // namespace vornwout
