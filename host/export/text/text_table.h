// Writes a pivot table into a text: title and layers, the rows, caption and footnotes.
//
// Entry point: TextTables::write(). Rows come from the layout one by one. Columns of fixed widths
// and tabs need no more; for columns that fit their contents the rows wait packed until the last
// one is measured.
#pragma once

#include <cstdint>
#include <optional>

#include "host/export/text/bordered_rows.h"
#include "host/export/text/text_output.h"
#include "host/layout/table_layout.h"
#include "platform/exportspec/export_spec.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// What could not be written as it is.
struct TextTableProblems {
  bool hasLongRowLabel = false;  ///< one was wrapped that is wider than kWidestTextColumn
  bool isTooLarge = false;       ///< a line stands in the place of the table
};

class TextTables {
 public:
  /// Throws std::runtime_error, with a reason that goes on behind "because", for columns of a width
  /// that no text has.
  TextTables(TextOutput& out, const ExportTextSpec& spec, ShownLayers layers);

  /// A table that cannot be laid out has a line with the reason in its place. Throws StoreError.
  TextTableProblems write(const PivotTable& table);

 private:
  void writeGrid(GridRows& rows);
  void writeHeading(const TableGrid& grid);
  void writeBordered(GridRows& rows);
  void writeTabbed(GridRows& rows);
  void writeNotes(const TableGrid& grid);
  void findLongLabels(std::span<const GridCell> cells, std::span<const TextCell> texts);

  TextOutput& out_;
  ShownLayers layers_;
  bool isTabbed_;
  bool withNotes_;
  std::optional<int> columnWidth_;
  TextBorders borders_;
  TextTableProblems problems_;
};

}  // namespace vornwout
