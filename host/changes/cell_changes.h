// Changes cells, labels and texts of a pivot table as TABLECELLS of OUTPUT MODIFY asks for.
//
// CellsChanger::apply() selects the parts (see cell_selection.h) and gives all of them the same: a
// look, a replacement, a format for those that are numbers, and a width for the columns that they
// stand in. REVERTTODEFAULT takes their looks and widths away first. All footnotes of a table share
// one look. A million cells of one look share the one that they get, too.
#pragma once

#include <optional>
#include <string>

#include "host/changes/cell_selection.h"
#include "host/changes/change_notes.h"
#include "host/changes/font_check.h"
#include "host/changes/modify_request.h"
#include "platform/pivot/display_format.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

/// What REPLACE with an empty text arrives as: there is no telling it from the number, and a cell
/// that shows nothing says less that is wrong than one that shows -1.
inline constexpr double kEmptyReplacement = -1;

class CellsChanger {
 public:
  /// Keeps a reference to `change`. A format or font that cannot be used is noted, the rest will be
  /// done. Throws ChangeError as CellSelector does.
  CellsChanger(const CellsChange& change, ChangeNotes& notes, const FontCheck& isFont = {});

  /// Returns whether anything changed. A number that is replaced by a number keeps its format; what
  /// is replaced by a text becomes plain text. Throws ChangeError as CellSelector::select() does,
  /// and then nothing has changed.
  bool apply(PivotTable& table) const;

 private:
  const CellsChange& change_;
  CellSelector selector_;
  std::optional<DisplayFormat> format_;
  std::string font_;  ///< empty when it is to stay
};

}  // namespace vornwout
