// The conditions that TABLECELLS of OUTPUT MODIFY sets for cells, read once for any number of
// tables: CellConditions::narrow() leaves the cells of one that meet any of them.
//
// Only numbers meet any condition but "all". A number that is not finite is what is missing. Of
// equal numbers top(n) and bottom(n) prefer the one that stands first in PivotTable::cells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/changes/cell_expression.h"
#include "platform/pivot/pivot_table.h"

namespace vornwout {

class CellConditions {
 public:
  /// Alternatives, as CellsChange::conditions has them. Throws ChangeError for one that cannot be
  /// read.
  explicit CellConditions(const std::vector<std::string>& texts);

  bool areAllMet() const { return areAllMet_; }
  /// `reasons` is 0 for the cells that do not count, by their indexes; those that meet no condition
  /// become 0.
  void narrow(const PivotTable& table, std::vector<std::uint8_t>& reasons) const;

 private:
  struct Extreme {
    bool isTop;
    std::size_t count;
  };

  static std::optional<Extreme> extreme(const std::string& text);
  static void markExtreme(const Extreme& wanted, const PivotTable& table,
                          const std::vector<std::uint8_t>& reasons, std::vector<std::uint8_t>& met);
  void markFulfilled(const PivotTable& table, const std::vector<std::uint8_t>& reasons,
                     std::vector<std::uint8_t>& met) const;

  bool areAllMet_ = false;
  bool takesMissing_ = false;
  std::vector<Extreme> extremes_;
  std::vector<CellExpression> expressions_;
};

}  // namespace vornwout
