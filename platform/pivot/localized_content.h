// Output in the current language: what a command's output is turned into where a person sees it.
//
// Commands send their texts as the English originals, marked as the system's own. Terminals and
// documents show them in the language of the run; a trace keeps the originals. What is not marked
// is a user's text and stays as it is.
#pragma once

#include <memory>

#include "platform/pivot/cell_text.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// A content with the system's own texts in the current language.
CellText localizedContent(const CellText& cell);

/// A table with its title, caption, labels, footnotes and cells in the current language. Its
/// subtype stays: that is what jobs select tables by, whatever the language. The same table where
/// nothing changes.
std::shared_ptr<const PivotTable> localizedTable(const std::shared_ptr<const PivotTable>& table);

}  // namespace vornwout
