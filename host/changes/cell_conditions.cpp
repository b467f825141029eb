#include "host/changes/cell_conditions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <span>
#include <string_view>
#include <utility>

namespace vornwout {
namespace {

/// Values that are collected before an expression judges them.
constexpr std::size_t kValuesAtOnce = 4096;

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

/// The number of a cell, not finite for one that is missing or none.
double valueOf(const PivotCell& cell) {
  return cell.value.kind == CellText::Kind::kNumber ? cell.value.number
                                                    : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

CellConditions::CellConditions(const std::vector<std::string>& texts) : areAllMet_(texts.empty()) {
  for (const std::string& text : texts) {
    const std::string word = lowered(text);
    if (word == "all") {
      areAllMet_ = true;
    } else if (word == "missing") {
      takesMissing_ = true;
    } else if (const auto wanted = extreme(word)) {
      extremes_.push_back(*wanted);
    } else {
      expressions_.push_back(CellExpression::compile(text));
    }
  }
}

std::optional<CellConditions::Extreme> CellConditions::extreme(const std::string& text) {
  for (const auto& [name, isTop] : {std::pair("top(", true), std::pair("bottom(", false)}) {
    const std::string_view start(name);
    if (text.compare(0, start.size(), start) != 0 || text.back() != ')') continue;
    const char* const first = text.data() + start.size();
    const char* const last = text.data() + text.size() - 1;
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(first, last, count);
    if (end != last || error == std::errc::invalid_argument) continue;
    // More than can be counted is more than there are.
    if (error != std::errc()) count = std::numeric_limits<std::size_t>::max();
    return Extreme{isTop, count};
  }
  return std::nullopt;
}

void CellConditions::narrow(const PivotTable& table, std::vector<std::uint8_t>& reasons) const {
  if (areAllMet_) return;
  std::vector<std::uint8_t> met(reasons.size());
  if (takesMissing_) {
    for (std::size_t i = 0; i < met.size(); ++i) {
      const CellText& value = table.cells[i].value;
      if (value.kind == CellText::Kind::kNumber && !std::isfinite(value.number)) met[i] = 1;
    }
  }
  for (const Extreme& wanted : extremes_) markExtreme(wanted, table, reasons, met);
  if (!expressions_.empty()) markFulfilled(table, reasons, met);
  for (std::size_t i = 0; i < met.size(); ++i) {
    if (met[i] == 0) reasons[i] = 0;
  }
}

void CellConditions::markExtreme(const Extreme& wanted, const PivotTable& table,
                                 const std::vector<std::uint8_t>& reasons,
                                 std::vector<std::uint8_t>& met) {
  // The smaller the first, the better; of equal ones the earlier cell is.
  std::vector<std::pair<double, std::uint32_t>> numbers;
  for (std::size_t i = 0; i < reasons.size(); ++i) {
    if (reasons[i] == 0) continue;
    const double value = valueOf(table.cells[i]);
    if (!std::isfinite(value)) continue;
    numbers.emplace_back(wanted.isTop ? -value : value, static_cast<std::uint32_t>(i));
  }
  const std::size_t count = std::min(wanted.count, numbers.size());
  std::nth_element(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(count),
                   numbers.end());
  for (std::size_t i = 0; i < count; ++i) met[numbers[i].second] = 1;
}

void CellConditions::markFulfilled(const PivotTable& table,
                                   const std::vector<std::uint8_t>& reasons,
                                   std::vector<std::uint8_t>& met) const {
  std::vector<double> values;
  std::vector<std::uint32_t> cells;
  values.reserve(kValuesAtOnce);
  cells.reserve(kValuesAtOnce);
  std::vector<std::uint8_t> results(kValuesAtOnce);
  const auto judge = [&] {
    for (const CellExpression& expression : expressions_) {
      expression.evaluate(values, std::span(results).first(values.size()));
      for (std::size_t i = 0; i < cells.size(); ++i) met[cells[i]] |= results[i];
    }
    values.clear();
    cells.clear();
  };
  for (std::size_t i = 0; i < reasons.size(); ++i) {
    if (reasons[i] == 0) continue;
    values.push_back(valueOf(table.cells[i]));
    cells.push_back(static_cast<std::uint32_t>(i));
    if (values.size() == kValuesAtOnce) judge();
  }
  judge();
}

}  // namespace vornwout
