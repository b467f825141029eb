#include "host/export/text/text_table.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/export/text/column_meter.h"
#include "host/export/text/row_spool.h"
#include "host/export/text/text_row.h"
#include "platform/adapter/progress_listener.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr int kWidestGiven = 10'000;
constexpr std::uint64_t kSpoolMemory = 4 * 1024 * 1024;
constexpr int kRowsPerReport = 1000;

/// Puts the rules above and below the header and at the end around rows that come one by one.
class RuledRows {
 public:
  RuledRows(BorderedRows& rows, const TableGrid& grid)
      : rows_(rows), headerRows_(grid.headerRows), rowCount_(grid.rowCount) {}

  void add(std::span<const TextCell> cells) {
    if (row_ == 0) rows_.rule();
    rows_.row(cells);
    ++row_;
    if (row_ == headerRows_ || row_ == rowCount_) rows_.rule();
  }

 private:
  BorderedRows& rows_;
  int headerRows_;
  int rowCount_;
  int row_ = 0;
};

/// A text as a field between tabs. One that begins with a quotation mark is quoted, as readers of
/// such files would take the mark for the beginning of a quoted field.
void appendField(std::string& line, const TextCell& cell) {
  const std::size_t start = line.size();
  const bool isQuoted = cell.text.starts_with('"');
  if (isQuoted) {
    line += '"';
    for (const char c : cell.text) line.append(c == '"' ? 2 : 1, c);
    line += '"';
  } else {
    line += cell.text;
  }
  if (!cell.isOneLine) {
    std::replace(line.begin() + static_cast<std::ptrdiff_t>(start), line.end(), '\n', ' ');
  }
}

}  // namespace

TextTables::TextTables(TextOutput& out, const ExportTextSpec& spec, ShownLayers layers)
    : out_(out),
      layers_(layers),
      isTabbed_(spec.getSeparator() == ExportTextSpec::SEPARATOR_TYPE::TAB),
      withNotes_(spec.getNotesAndCaptions()),
      columnWidth_(spec.getColumnWidth()),
      borders_{out.shownLine(spec.getRowBorder()), out.shownLine(spec.getColumnBorder())} {
  if (columnWidth_ && (*columnWidth_ < 1 || *columnWidth_ > kWidestGiven)) {
    throw std::runtime_error(
        localized("because a column can be 1 to ^1 characters wide", kWidestGiven));
  }
}

TextTableProblems TextTables::write(const PivotTable& table) {
  problems_ = {};
  const auto refuse = [&](const std::logic_error& error) {
    out_.separate();
    out_.line(out_.shownLine(localized("[This table cannot be shown: ^1.]", error.what())));
  };
  try {
    TableLayout layout(table, {.layers = layers_});
    for (std::size_t i = 0; i < layout.gridCount(); ++i) {
      const ProgressStep step(i, layout.gridCount());
      GridRows rows(layout, i);
      writeGrid(rows);
    }
  } catch (const std::length_error& error) {
    problems_.isTooLarge = true;
    refuse(error);
  } catch (const std::invalid_argument& error) {
    refuse(error);
  }
  return problems_;
}

void TextTables::writeGrid(GridRows& rows) {
  const TableGrid& grid = rows.grid();
  out_.separate();
  writeHeading(grid);
  if (grid.rowCount == 0 || grid.columnCount == 0) {
    out_.line(out_.shownLine(localized("(empty)")));
  } else if (isTabbed_) {
    writeTabbed(rows);
  } else {
    writeBordered(rows);
  }
  if (withNotes_) writeNotes(grid);
}

void TextTables::writeHeading(const TableGrid& grid) {
  if (!grid.title.empty()) {
    const std::string title = out_.shownText(grid.title);
    out_.line(withNotes_ ? withMarks(title, grid.titleNotes, grid) : title);
  }
  for (const LayerCaption& layer : grid.layers) {
    const bool hasBoth = !layer.dimension.empty() && !layer.category.empty();
    out_.line(out_.shownText(layer.dimension + (hasBoth ? ": " : "") + layer.category));
  }
}

void TextTables::writeBordered(GridRows& rows) {
  const TableGrid& grid = rows.grid();
  const auto columns = static_cast<std::size_t>(grid.columnCount);
  TextRow row(out_, grid, withNotes_);
  const auto readRow = [&] {
    const std::span<const TextCell> texts = row.read(rows.cells());
    findLongLabels(rows.cells(), texts);
    return texts;
  };
  if (columnWidth_) {
    BorderedRows drawn(out_, borders_, std::vector<int>(columns, *columnWidth_));
    RuledRows ruled(drawn, grid);
    while (rows.next()) ruled.add(readRow());
    return;
  }
  RowSpool spool(kSpoolMemory, [&] { return out_.makeScratchFile(); });
  ColumnMeter meter(columns, BorderedRows::columnsBetween(borders_));
  {
    const ProgressStep measuring(0, 2);
    while (rows.next()) {
      const std::span<const TextCell> texts = readRow();
      meter.add(texts);
      spool.add(texts);
    }
  }
  const ProgressStep drawing(1, 2);
  BorderedRows drawn(out_, borders_, meter.widths());
  RuledRows ruled(drawn, grid);
  for (int number = 1; spool.next(); ++number) {
    ruled.add(spool.cells());
    if (number % kRowsPerReport == 0) {
      reportWithinStep(static_cast<std::uint64_t>(number),
                       static_cast<std::uint64_t>(grid.rowCount));
    }
  }
}

void TextTables::writeTabbed(GridRows& rows) {
  const TableGrid& grid = rows.grid();
  TextRow row(out_, grid, withNotes_);
  std::string line;
  while (rows.next()) {
    line.clear();
    int column = 0;
    for (const TextCell& cell : row.read(rows.cells())) {
      line.append(static_cast<std::size_t>(cell.column - column), '\t');
      column = cell.column;
      appendField(line, cell);
    }
    line.append(static_cast<std::size_t>(grid.columnCount - 1 - column), '\t');
    line += '\n';
    out_.append(line);
  }
}

void TextTables::writeNotes(const TableGrid& grid) {
  if (!grid.caption.empty()) out_.line(out_.shownText(grid.caption));
  for (const Footnote& footnote : grid.footnotes) {
    out_.line("[" + footnote.mark + "] " + out_.shownText(footnote.text));
  }
}

void TextTables::findLongLabels(std::span<const GridCell> cells, std::span<const TextCell> texts) {
  if (problems_.hasLongRowLabel) return;
  for (std::size_t i = 0; i < cells.size() && cells[i].role != CellRole::kData; ++i) {
    if (cells[i].role == CellRole::kRowLabel && texts[i].width > kWidestTextColumn) {
      problems_.hasLongRowLabel = true;
    }
  }
}

}  // namespace vornwout
