#include "host/export/html/html_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <fmt/format.h>

#include "host/export/html/html_area.h"
#include "host/export/html/html_look.h"
#include "host/export/html/paper_width.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

// More than this a browser does not count.
constexpr int kMostColumnsSpanned = 1000;
constexpr int kMostRowsSpanned = 65'534;

std::size_t at(int index) { return static_cast<std::size_t>(index); }

/// Writes the rows of one grid.
class GridWriter {
 public:
  GridWriter(HtmlWriter& html, GridRows& rows, const HtmlTableOptions& options)
      : html_(html),
        rows_(rows),
        grid_(rows.grid()),
        options_(options),
        isNested_(rows.hasNestedLabels()),
        isBare_(!isNested_ && grid_.tableLook.empty()),
        coveredUntil_(at(grid_.columnCount), 0),
        paperWidth_(grid_),
        columnHeaders_(at(grid_.columnCount)),
        rowHeaders_(at(grid_.headerColumns)) {}

  void write();
  /// How what was written is printed.
  PaperFit paperFit() const { return paperWidth_.fit(); }

 private:
  /// A header cell that is above or beside what comes now.
  struct ActiveHeader {
    std::string id;
    int untilRow = 0;
  };

  bool isHeader(const GridCell& cell) const { return cell.role != CellRole::kData; }
  void writeRow();
  void writeGap(int row, int from, int to);
  /// Whether there is a line before the column, or another area begins there.
  bool isLineBetween(int row, int column) const;
  void writeCell(const GridCell& cell, int column, int columnSpan);
  void writeHeaderAttributes(const GridCell& cell, int column, int columnSpan);
  void writeScope(const GridCell& cell, int columnSpan);
  void writeStyle(const GridCell& cell, int column, int columnSpan);
  std::string headersOf(int row, int column) const;

  HtmlWriter& html_;
  GridRows& rows_;
  const TableGrid& grid_;
  const HtmlTableOptions& options_;
  bool isNested_;
  bool isBare_;                    ///< data cells have nothing but what they say of themselves
  std::vector<int> coveredUntil_;  ///< by column: the first row that is free
  PaperWidth paperWidth_;
  std::vector<std::vector<std::string>> columnHeaders_;  ///< by column: ids, outermost first
  std::vector<ActiveHeader> rowHeaders_;                 ///< by header column
  int lastId_ = 0;
};

void writeMarks(HtmlWriter& html, const std::vector<int>& notes, const TableGrid& grid,
                const HtmlTableOptions& options) {
  if (notes.empty()) return;
  html.start("sup");
  const char* separator = "";
  for (const int note : notes) {
    const std::string& mark = grid.footnotes[at(note)].mark;
    html.raw(separator);
    html.start("a");
    html.attribute("href", "#" + options.idPrefix + "n" + mark);
    html.attribute("aria-label", localized("Footnote ^1", mark));
    html.text(mark);
    html.end("a");
    separator = ",";
  }
  html.end("sup");
}

void GridWriter::write() {
  const auto section = [&](const char* name, int from, int to) {
    if (from == to) return;
    html_.start(name);
    html_.newLine();
    for (int row = from; row < to && rows_.next(); ++row) writeRow();
    html_.end(name);
    html_.newLine();
  };
  section("thead", 0, grid_.headerRows);
  section("tbody", grid_.headerRows, grid_.rowCount);
}

void GridWriter::writeRow() {
  const int row = rows_.row();
  html_.start("tr");
  int column = 0;
  for (const GridCell& cell : rows_.cells()) {
    writeGap(row, column, cell.column);
    paperWidth_.add(cell);
    column = cell.column;
    const int end = cell.column + cell.columnSpan;
    while (column < end) {
      const int span = std::min(end - column, kMostColumnsSpanned);
      writeCell(cell, column, span);
      column += span;
    }
  }
  writeGap(row, column, grid_.columnCount);
  html_.end("tr");
  html_.newLine();
}

void GridWriter::writeGap(int row, int from, int to) {
  for (int column = from; column < to;) {
    if (coveredUntil_[at(column)] > row) {
      ++column;
      continue;
    }
    int end = column + 1;
    // A gap is one cell, so that a sparse table costs no more than what it holds; but for where the
    // look draws lines in it.
    while (end < to && end - column < kMostColumnsSpanned && coveredUntil_[at(end)] <= row &&
           !isLineBetween(row, end)) {
      ++end;
    }
    html_.start("td");
    if (end - column > 1) html_.attribute("colspan", end - column);
    const SharedLook& look = grid_.emptyLookAt(row, column);
    html_.optionalAttribute("style", (look.empty() ? "" : lookCss(look.get()).style) +
                                         areaCss(grid_, row, column, 1, end - column));
    html_.end("td");
    column = end;
  }
}

bool GridWriter::isLineBetween(int row, int column) const {
  if (grid_.tableLook.empty()) return false;
  if (column == grid_.headerColumns) return true;
  const bool isHeader = row < grid_.headerRows;
  const bool isLabel = column < grid_.headerColumns;
  const LookArea area = isHeader ? (isLabel ? LookArea::kCorner : LookArea::kColumnLabels)
                                 : (isLabel ? LookArea::kRowLabels : LookArea::kData);
  return grid_.tableLook->area(area).borders.columns.style != LookLineStyle::kNone;
}

void GridWriter::writeScope(const GridCell& cell, int columnSpan) {
  const bool isRow = cell.role == CellRole::kRowLabel;
  if (isRow) {
    html_.attribute("scope", cell.rowSpan > 1 ? "rowgroup" : "row");
  } else {
    // One label over everything is no group.
    html_.attribute("scope", isNested_ && columnSpan > 1 ? "colgroup" : "col");
  }
}

void GridWriter::writeHeaderAttributes(const GridCell& cell, int column, int columnSpan) {
  writeScope(cell, columnSpan);
  if (!isNested_) return;
  const std::string id = fmt::format("{}h{}", options_.idPrefix, ++lastId_);
  html_.attribute("id", id);
  if (cell.role == CellRole::kColumnLabel) {
    for (int i = 0; i < columnSpan; ++i) columnHeaders_[at(column + i)].push_back(id);
  } else if (cell.role == CellRole::kRowLabel) {
    for (int i = 0; i < columnSpan; ++i) rowHeaders_[at(column + i)] = {{}, 0};
    rowHeaders_[at(column)] = {id, cell.row + cell.rowSpan};
  }
}

std::string GridWriter::headersOf(int row, int column) const {
  std::string ids;
  const auto add = [&](const std::string& id) {
    if (!ids.empty()) ids += ' ';
    ids += id;
  };
  for (const ActiveHeader& header : rowHeaders_) {
    if (header.untilRow > row) add(header.id);
  }
  for (const std::string& id : columnHeaders_[at(column)]) add(id);
  return ids;
}

void GridWriter::writeStyle(const GridCell& cell, int column, int columnSpan) {
  std::string cssClass;
  const auto addClass = [&](const char* name) {
    if (!cssClass.empty()) cssClass += ' ';
    cssClass += name;
  };
  // A number stays on one line; a text is wrapped wherever it stands.
  if (cell.alignment == CellAlignment::kRight) addClass(cell.isNumber ? "n" : "r");
  if (cell.alignment == CellAlignment::kCenter) addClass("c");
  if (cell.role == CellRole::kCorner) addClass("corner");
  const bool isGroup =
      cell.role == CellRole::kRowLabel && cell.column + cell.columnSpan < grid_.headerColumns;
  if (isGroup) addClass("group");
  LookCss look;
  if (!cell.look.empty()) look = lookCss(cell.look.get());
  // A colour was chosen for a light page; on a dark one its cell stays light.
  if (look.needsLight) addClass("ink");
  html_.optionalAttribute("class", cssClass);
  html_.optionalAttribute("style",
                          look.style + areaCss(grid_, cell.row, column, cell.rowSpan, columnSpan));
}

void GridWriter::writeCell(const GridCell& cell, int column, int columnSpan) {
  // Nearly all cells of a large table are like this.
  if (isBare_ && cell.role == CellRole::kData && cell.isNumber && cell.look.empty() &&
      cell.notes.empty()) {
    const bool isRight = cell.alignment == CellAlignment::kRight && !html_.isPlain();
    html_.raw(isRight ? "<td class=\"n\">" : "<td>");
    html_.text(cell.text);
    html_.raw("</td>");
    coveredUntil_[at(column)] = cell.row + 1;
    return;
  }
  const int rowSpan = std::min(cell.rowSpan, kMostRowsSpanned);
  const char* name = isHeader(cell) ? "th" : "td";
  html_.start(name);
  if (columnSpan > 1) html_.attribute("colspan", columnSpan);
  if (rowSpan > 1) html_.attribute("rowspan", rowSpan);
  writeStyle(cell, column, columnSpan);
  if (isHeader(cell)) {
    writeHeaderAttributes(cell, column, columnSpan);
  } else if (isNested_) {
    html_.optionalAttribute("headers", headersOf(cell.row, column));
  }
  html_.direction(cell.text);
  html_.lines(cell.text);
  if (options_.withNotes) writeMarks(html_, cell.notes, grid_, options_);
  html_.end(name);
  for (int i = 0; i < columnSpan; ++i) coveredUntil_[at(column + i)] = cell.row + rowSpan;
}

/// The attributes of a look, into an element that takes "ink".
void writeLookAttributes(HtmlWriter& html, const LookCss& look) {
  if (look.needsLight) html.attribute("class", "ink");
  html.optionalAttribute("style", look.style);
}

/// A text in an element that itself takes no look.
void writeLooked(HtmlWriter& html, const std::string& text, const LookCss& look) {
  const bool needsElement = !look.style.empty() || mayTurn(text);
  if (needsElement) {
    html.start("span");
    writeLookAttributes(html, look);
    html.direction(text);
  }
  html.lines(text);
  if (needsElement) html.end("span");
}

void writeFootnotes(HtmlWriter& html, const TableGrid& grid, const HtmlTableOptions& options) {
  if (grid.footnotes.empty()) return;
  const LookCss look = lookCss(grid.footnoteLook.get());
  html.start("dl");
  html.attribute("class", "notes");
  html.optionalAttribute("style", boxCss(grid, LookArea::kFootnotes));
  html.newLine();
  for (const Footnote& footnote : grid.footnotes) {
    html.start("div");
    html.attribute("id", options.idPrefix + "n" + footnote.mark);
    html.optionalAttribute("style", footnoteCss(grid, &footnote == &grid.footnotes.front()));
    html.start("dt");
    writeLooked(html, footnote.mark, look);
    html.end("dt");
    html.start("dd");
    writeLooked(html, footnote.text, look);
    html.end("dd");
    html.end("div");
    html.newLine();
  }
  html.end("dl");
  html.newLine();
}

void writeTitle(HtmlWriter& html, const TableGrid& grid, const HtmlTableOptions& options) {
  // Without styles nothing is unseen.
  const std::string layers = html.isPlain() ? std::string() : layerHeading(grid);
  const std::string& title = grid.title.empty() && !html.isPlain() ? options.label : grid.title;
  if (title.empty() && layers.empty()) return;
  html.start("caption");
  html.attribute("id", options.idPrefix + "c");
  if (!grid.title.empty()) html.optionalAttribute("style", boxCss(grid, LookArea::kTitle));
  if (!title.empty()) {
    html.start("span");
    if (grid.title.empty()) {
      html.attribute("class", "unseen");
    } else {
      writeLookAttributes(html, lookCss(grid.titleLook.get()));
    }
    html.direction(title);
    html.lines(title);
    if (!grid.title.empty() && options.withNotes) {
      writeMarks(html, grid.titleNotes, grid, options);
    }
    html.end("span");
  }
  // The heading above says it to the eye; a list of tables has the captions alone.
  if (!layers.empty()) html.element("span", " " + layers, "unseen");
  html.end("caption");
  html.newLine();
}

/// Says the widths of columns that were given one; columns of one width together, so that a wide
/// table costs no more than what it says.
void writeColumnWidths(HtmlWriter& html, const TableGrid& grid) {
  int last = grid.columnCount;
  while (last > 0 && grid.columnWidth(last - 1) == 0) --last;
  if (last == 0) return;
  html.start("colgroup");
  for (int column = 0; column < last;) {
    const int width = grid.columnWidth(column);
    int end = column + 1;
    while (end < last && end - column < kMostColumnsSpanned && grid.columnWidth(end) == width) {
      ++end;
    }
    html.start("col");
    if (end - column > 1) html.attribute("span", end - column);
    if (width > 0) html.attribute("style", fmt::format("width:{}pt;", width));
    column = end;
  }
  html.end("colgroup");
  html.newLine();
}

/// How wide the columns of data may be, for the style sheet to give to their cells.
std::string limitsCss(const TableGrid& grid) {
  std::string css;
  if (grid.minDataColumnWidth) css += fmt::format("--least:{}pt;", *grid.minDataColumnWidth);
  if (grid.maxDataColumnWidth) css += fmt::format("--most:{}pt;", *grid.maxDataColumnWidth);
  return css;
}

}  // namespace

std::string layerHeading(const TableGrid& grid) {
  std::string heading;
  for (const LayerCaption& layer : grid.layers) {
    if (!heading.empty()) heading += ", ";
    heading += layer.dimension;
    if (!layer.dimension.empty() && !layer.category.empty()) heading += ": ";
    heading += layer.category;
  }
  return heading;
}

void writeLayerHeading(HtmlWriter& html, const TableGrid& grid, int level) {
  const std::string layers = layerHeading(grid);
  if (layers.empty()) return;
  const std::string name = fmt::format("h{}", level);
  html.start(name);
  html.attribute("class", "layer");
  html.optionalAttribute("style", boxCss(grid, LookArea::kLayers));
  writeLooked(html, layers, lookCss(grid.layersLook.get()));
  html.end(name);
  html.newLine();
}

void writeHtmlTable(HtmlWriter& html, GridRows& rows, const HtmlTableOptions& options) {
  const TableGrid& grid = rows.grid();
  // A table that is wider than the screen scrolls by itself, also by keyboard.
  html.start("div");
  html.attribute("class", "wide");
  html.attribute("tabindex", "0");
  html.attribute("role", "group");
  const bool hasCaption =
      !grid.title.empty() || (!html.isPlain() && !(options.label.empty() && grid.layers.empty()));
  if (hasCaption) {
    html.attribute("aria-labelledby", options.idPrefix + "c");
  } else {
    html.attribute("aria-label", localized("Table"));
  }
  html.newLine();
  const bool hasSummary = !grid.summary.empty() && !html.isPlain();
  if (hasSummary) {
    html.start("p");
    html.attribute("class", "unseen");
    html.attribute("id", options.idPrefix + "s");
    html.text(grid.summary);
    html.end("p");
    html.newLine();
  }
  html.start("table");
  const std::string limits = limitsCss(grid);
  const char* const limited = limits.empty() ? "" : "limited";
  html.optionalAttribute("class", grid.tableLook.empty() ? limited
                                  : limits.empty()       ? "looked"
                                                         : "looked limited");
  html.optionalAttribute("style", limits);
  if (hasSummary) html.attribute("aria-describedby", options.idPrefix + "s");
  html.newLine();
  writeTitle(html, grid, options);
  writeColumnWidths(html, grid);
  GridWriter writer(html, rows, options);
  if (grid.rowCount == 0 || grid.columnCount == 0) {
    // A table without a cell is none to a browser.
    html.raw("<tbody><tr><td>");
    html.text(localized("(empty)"));
    html.raw("</td></tr></tbody>\n");
  } else {
    writer.write();
  }
  html.end("table");
  const PaperFit fit = html.isPlain() ? PaperFit::kUpright : writer.paperFit();
  if (fit != PaperFit::kUpright) {
    // Known only now, so it stands behind the table; the style sheet looks for it.
    html.raw(fit == PaperFit::kTurned ? "<div class=\"broad\" hidden></div>"
                                      : "<div class=\"broad small\" hidden></div>");
  }
  html.end("div");
  html.newLine();
  if (fit == PaperFit::kCut) {
    html.element("p", localized("On paper the columns beyond the edge are missing."), "cut");
    html.newLine();
  }
  if (!options.withNotes) return;
  if (!grid.caption.empty()) {
    html.start("p");
    html.attribute("class", "caption");
    html.optionalAttribute("style", boxCss(grid, LookArea::kCaption));
    writeLooked(html, grid.caption, lookCss(grid.captionLook.get()));
    html.end("p");
    html.newLine();
  }
  writeFootnotes(html, grid, options);
}

}  // namespace vornwout
