// A table's grid as an HTML table that a screen reader can read: the title as its caption, header
// cells that say what they stand for, footnotes with links both for eye and ear.
//
// Where labels are nested, the place of a header cell alone does not tell which cells it is about;
// then every header cell has an id and every data cell lists the headers that apply to it.
#pragma once

#include <string>
#include <string_view>

#include "host/export/html/html_writer.h"
#include "host/layout/table_layout.h"

namespace vornwout {

struct HtmlTableOptions {
  /// Stands before every id of the table, so that a page may hold many: letters and digits.
  std::string idPrefix = "t";
  /// What to call a table whose title is hidden, for those who do not see it.
  std::string label;
  /// Writes caption, footnotes and their marks.
  bool withNotes = true;
};

/// Writes the table, its caption and its footnotes, row by row.
void writeHtmlTable(HtmlWriter& html, GridRows& rows, const HtmlTableOptions& options);

/// "Sex: Male, Age: Adult", the combination of layers that a grid shows; empty without layers.
std::string layerHeading(const TableGrid& grid);

/// Writes the combination as a heading of this level, in the look of the layers; nothing without
/// layers.
void writeLayerHeading(HtmlWriter& html, const TableGrid& grid, int level);

}  // namespace vornwout
