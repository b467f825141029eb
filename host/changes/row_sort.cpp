#include "host/changes/row_sort.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unicode/coll.h>

#include "host/changes/change_notes.h"
#include "host/layout/table_axis.h"
#include "host/layout/table_grid.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/language.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

std::size_t at(int index) { return static_cast<std::size_t>(index); }

bool isMissing(const CellText& value) {
  switch (value.kind) {
    case CellText::Kind::kNumber:
      return !std::isfinite(value.number);
    case CellText::Kind::kString:
      return value.text.empty();
    default:
      return renderText(value).empty();
  }
}

/// The order of texts in the current language, as keys that are compared byte by byte.
class Collation {
 public:
  Collation() {
    UErrorCode status = U_ZERO_ERROR;
    const auto locale = icu::Locale::createFromName(std::string(currentLanguage()).c_str());
    collator_.reset(icu::Collator::createInstance(locale, status));
    if (U_FAILURE(status))
      throw ChangeError(localized("there are no rules for the order of texts"));
  }

  std::string keyOf(const std::string& text) {
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
    auto length = collator_->getSortKey(wide, buffer_.data(), static_cast<int>(buffer_.size()));
    if (at(length) > buffer_.size()) {
      buffer_.resize(at(length));
      length = collator_->getSortKey(wide, buffer_.data(), length);
    }
    return {buffer_.begin(), buffer_.begin() + length};
  }

 private:
  std::unique_ptr<icu::Collator> collator_;
  std::vector<std::uint8_t> buffer_ = std::vector<std::uint8_t>(256);
};

/// What a row is sorted by. Kinds have their order in either direction.
struct SortValue {
  enum class Kind { kNumber, kText, kMissing };
  Kind kind = Kind::kMissing;
  double number = 0;
  std::string key;

  bool isBefore(const SortValue& other, bool isAscending) const {
    if (kind != other.kind) return kind < other.kind;
    const SortValue& low = isAscending ? *this : other;
    const SortValue& high = isAscending ? other : *this;
    return kind == Kind::kNumber ? low.number < high.number : low.key < high.key;
  }
};

/// Finds the values that the rows of one table are sorted by.
class SortColumn {
 public:
  explicit SortColumn(const PivotTable& table)
      : table_(table),
        rows_(table, PivotPlace::kRows),
        columns_(table, PivotPlace::kColumns),
        layers_(table, PivotPlace::kLayers) {
    for (const PivotCell& cell : table.cells) {
      if (cell.at.size() != table.dimensions.size()) {
        throw ChangeError(localized("a cell does not name one category per dimension"));
      }
    }
  }

  /// The dimension whose categories are sorted, null where nothing can be.
  const AxisDimension* sorted() const {
    return rows_.dimensions().empty() ? nullptr : &rows_.dimensions().back();
  }

  /// By leaf of the sorted dimension; empty when there is no such column or nothing in it.
  std::vector<SortValue> values(const SortChange& sort);

 private:
  bool isInLayer(const PivotCell& cell) const { return layers_.keyOf(cell) == layer_; }
  /// The least of what `keyOf` gives for the cells: each has a key or nothing.
  template <typename KeyOf>
  std::optional<std::uint64_t> least(const KeyOf& keyOf) const {
    std::optional<std::uint64_t> least;
    for (const PivotCell& cell : table_.cells) {
      const std::optional<std::uint64_t> key = keyOf(cell);
      if (key && (!least || *key < *least)) least = key;
    }
    return least;
  }

  std::optional<std::uint64_t> columnOf(const std::string& label) const;
  std::optional<std::uint64_t> columnAt(std::uint64_t index) const;
  bool areAllColumnsShown() const;
  std::uint64_t blockOf(const PivotCell& cell) const {
    return rows_.keyOf(cell) / static_cast<std::uint64_t>(sorted()->leafCount());
  }

  const PivotTable& table_;
  TableAxis rows_;
  TableAxis columns_;
  TableAxis layers_;
  std::uint64_t layer_ = 0;
};

std::vector<SortValue> SortColumn::values(const SortChange& sort) {
  const auto layer = least([&](const PivotCell& cell) {
    return layers_.shows(cell) ? std::optional(layers_.keyOf(cell)) : std::nullopt;
  });
  if (!layer) return {};
  layer_ = *layer;
  std::optional<std::uint64_t> column;
  if (sort.label) {
    column = columnOf(*sort.label);
  } else if (sort.position >= 1) {
    column = columnAt(static_cast<std::uint64_t>(sort.position) - 1);
  }
  if (!column) return {};
  const auto isInColumn = [&](const PivotCell& cell) {
    return isInLayer(cell) && columns_.keyOf(cell) == *column;
  };
  const auto block = least([&](const PivotCell& cell) {
    return isInColumn(cell) && !isMissing(cell.value) ? std::optional(blockOf(cell)) : std::nullopt;
  });
  if (!block) return {};
  // Of several cells at one place the last one is shown.
  std::vector<const CellText*> cells(at(sorted()->leafCount()), nullptr);
  for (const PivotCell& cell : table_.cells) {
    if (isInColumn(cell) && blockOf(cell) == *block) {
      cells[at(cell.at[sorted()->index()])] = &cell.value;
    }
  }
  Collation collation;
  std::vector<SortValue> values(cells.size());
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (cells[i] == nullptr || isMissing(*cells[i])) continue;
    if (cells[i]->kind == CellText::Kind::kNumber) {
      values[i].kind = SortValue::Kind::kNumber;
      values[i].number = cells[i]->number;
    } else {
      values[i].kind = SortValue::Kind::kText;
      values[i].key = collation.keyOf(renderText(*cells[i]));
    }
  }
  return values;
}

std::optional<std::uint64_t> SortColumn::columnOf(const std::string& label) const {
  // Per column dimension, by leaf, whether it has the label; only those in which one has.
  std::vector<std::pair<std::size_t, std::vector<bool>>> labelled;
  for (const AxisDimension& dimension : columns_.dimensions()) {
    std::vector<bool> fits(at(dimension.leafCount()));
    const std::vector<PivotCategory>& categories = table_.dimensions[dimension.index()].categories;
    // The label of a group stands for all below it, however the groups are nested.
    std::vector<bool> isNamed(categories.size());
    for (std::size_t i = 0; i < categories.size(); ++i) {
      const int parent = categories[i].parent;
      isNamed[i] = (parent >= 0 && at(parent) < i && isNamed[at(parent)]) ||
                   renderText(categories[i].label) == label;
      if (!categories[i].isGroup && isNamed[i]) fits[at(categories[i].leaf)] = true;
    }
    if (std::find(fits.begin(), fits.end(), true) != fits.end()) {
      labelled.emplace_back(dimension.index(), std::move(fits));
    }
  }
  if (labelled.empty()) return std::nullopt;
  return least([&](const PivotCell& cell) -> std::optional<std::uint64_t> {
    if (!isInLayer(cell)) return std::nullopt;
    const std::uint64_t key = columns_.keyOf(cell);
    const bool fits = std::any_of(labelled.begin(), labelled.end(), [&](const auto& dimension) {
      return dimension.second[at(cell.at[dimension.first])];
    });
    return fits ? std::optional(key) : std::nullopt;
  });
}

bool SortColumn::areAllColumnsShown() const {
  const std::uint64_t limit = LayoutOptions().completeLimit;
  const bool hasOneDimension = columns_.dimensions().size() <= 1;
  if (layers_.dimensions().empty()) return hasOneDimension || columns_.combinations() <= limit;
  std::vector<std::uint64_t> layers;
  layers.reserve(table_.cells.size());
  for (const PivotCell& cell : table_.cells) {
    if (layers_.shows(cell)) layers.push_back(layers_.keyOf(cell));
  }
  std::sort(layers.begin(), layers.end());
  layers.erase(std::unique(layers.begin(), layers.end()), layers.end());
  return (layers.size() == 1 && hasOneDimension) ||
         columns_.combinations() <= limit / layers.size();
}

std::optional<std::uint64_t> SortColumn::columnAt(std::uint64_t index) const {
  if (index >= columns_.combinations()) return std::nullopt;
  if (areAllColumnsShown()) return index;
  std::vector<std::uint64_t> used;
  for (const PivotCell& cell : table_.cells) {
    if (isInLayer(cell)) used.push_back(columns_.keyOf(cell));
  }
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  return index < used.size() ? std::optional(used[index]) : std::nullopt;
}

/// For every category the one that comes to its place: leaves change places with leaves of the same
/// group.
std::vector<int> sortedOrder(const std::vector<PivotCategory>& categories,
                             const std::vector<SortValue>& values, bool isAscending) {
  std::vector<int> places;
  for (std::size_t i = 0; i < categories.size(); ++i) {
    if (!categories[i].isGroup) places.push_back(static_cast<int>(i));
  }
  std::vector<int> moved = places;
  const auto parentOf = [&](int place) { return categories[at(place)].parent; };
  std::stable_sort(places.begin(), places.end(),
                   [&](int a, int b) { return parentOf(a) < parentOf(b); });
  std::stable_sort(moved.begin(), moved.end(), [&](int a, int b) {
    if (parentOf(a) != parentOf(b)) return parentOf(a) < parentOf(b);
    return values[at(categories[at(a)].leaf)].isBefore(values[at(categories[at(b)].leaf)],
                                                       isAscending);
  });
  std::vector<int> order(categories.size());
  std::iota(order.begin(), order.end(), 0);
  for (std::size_t i = 0; i < places.size(); ++i) order[at(places[i])] = moved[i];
  return order;
}

/// Puts the categories of a dimension in an order and the cells where they then stand.
void reorder(PivotTable& table, std::size_t index, const std::vector<int>& order) {
  PivotDimension& dimension = table.dimensions[index];
  std::vector<int> leafOf(at(dimension.leafCount));
  std::vector<PivotCategory> categories;
  categories.reserve(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    PivotCategory& category = categories.emplace_back(dimension.categories[at(order[i])]);
    if (category.isGroup) continue;
    const int leaf = dimension.categories[i].leaf;
    leafOf[at(category.leaf)] = leaf;
    category.leaf = leaf;
  }
  dimension.categories = std::move(categories);
  for (PivotCell& cell : table.cells) {
    int& leaf = cell.at[index];
    if (leaf < 0 || leaf >= dimension.leafCount) {
      throw ChangeError(localized("a cell of the table belongs to no category"));
    }
    leaf = leafOf[at(leaf)];
  }
}

}  // namespace

bool sortRows(PivotTable& table, const SortChange& sort) {
  std::vector<SortValue> values;
  std::size_t index = 0;
  try {
    SortColumn column(table);
    if (column.sorted() == nullptr) return false;
    index = column.sorted()->index();
    values = column.values(sort);
  } catch (const std::length_error&) {
    throw ChangeError(kTooManyCombinations);
  } catch (const std::logic_error& error) {
    // What cannot be laid out has no columns to sort by.
    throw ChangeError(error.what());
  }
  if (values.empty()) return false;
  const std::vector<int> order =
      sortedOrder(table.dimensions[index].categories, values, sort.isAscending);
  if (std::is_sorted(order.begin(), order.end())) return false;
  reorder(table, index, order);
  return true;
}

}  // namespace vornwout
