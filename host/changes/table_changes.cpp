#include "host/changes/table_changes.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "host/changes/replace_value.h"
#include "host/changes/row_sort.h"
#include "host/changes/usable_values.h"
#include "host/layout/table_axis.h"
#include "host/looks/look_element.h"
#include "host/looks/table_look_xml.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

bool changeTitle(PivotTable& table, const std::string& text) {
  CellText title;
  title.text = text;
  const bool wasHidden = std::exchange(table.titleHidden, false);
  return replaceValue(table.title, title) || wasHidden;
}

bool transpose(PivotTable& table) {
  bool changed = false;
  for (PivotDimension& dimension : table.dimensions) {
    const PivotPlace place = dimension.place();
    if (place == PivotPlace::kLayers) continue;
    if (!dimension.position) dimension.position.emplace();
    dimension.position->place =
        static_cast<int>(place == PivotPlace::kRows ? PivotPlace::kColumns : PivotPlace::kRows);
    changed = true;
  }
  return changed;
}

/// The categories of the layers, in the order in which they are shown.
class Layers {
 public:
  explicit Layers(PivotTable& table) : table_(table) {
    for (std::size_t i = 0; i < table.dimensions.size(); ++i) {
      if (table.dimensions[i].place() == PivotPlace::kLayers) layers_.emplace_back(table, i);
    }
    std::stable_sort(
        layers_.begin(), layers_.end(),
        [](const AxisDimension& a, const AxisDimension& b) { return a.order() < b.order(); });
  }

  void choose(const LayerChoice& choice) {
    for (const AxisDimension& layer : chosen(choice)) {
      const std::optional<int> leaf = leafOf(layer, choice);
      if (leaf) table_.dimensions[layer.index()].shownLeaf = *leaf;
    }
  }

 private:
  std::span<const AxisDimension> chosen(const LayerChoice& choice) const;
  static std::optional<int> leafOf(const AxisDimension& layer, const LayerChoice& choice);

  PivotTable& table_;
  std::vector<AxisDimension> layers_;
};

std::span<const AxisDimension> Layers::chosen(const LayerChoice& choice) const {
  const std::span<const AxisDimension> all(layers_);
  if (choice.layer) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const AxisDimension& layer) {
      return renderText(layer.label()) == *choice.layer;
    });
    return found == all.end() ? std::span<const AxisDimension>() : std::span(&*found, 1);
  }
  if (choice.layerPosition == 0) return all;
  const auto index = static_cast<std::size_t>(choice.layerPosition) - 1;
  if (choice.layerPosition < 0 || index >= all.size()) return {};
  return all.subspan(index, 1);
}

std::optional<int> Layers::leafOf(const AxisDimension& layer, const LayerChoice& choice) {
  const auto count = static_cast<std::uint64_t>(layer.leafCount());
  if (choice.category) {
    for (std::uint64_t rank = 0; rank < count; ++rank) {
      const PivotCategory& category = layer.leafAt(rank);
      if (renderText(category.label) == *choice.category) return category.leaf;
    }
    return std::nullopt;
  }
  const std::uint64_t position =
      choice.categoryPosition == 0 ? count : static_cast<std::uint64_t>(choice.categoryPosition);
  if (choice.categoryPosition < 0 || position < 1 || position > count) return std::nullopt;
  return layer.leafAt(position - 1).leaf;
}

std::vector<int> shownLeaves(const PivotTable& table) {
  std::vector<int> leaves;
  for (const PivotDimension& dimension : table.dimensions) leaves.push_back(dimension.shownLeaf);
  return leaves;
}

bool chooseLayers(PivotTable& table, const std::vector<LayerChoice>& choices) {
  if (choices.empty()) return false;
  // A later choice may take back what one before it did.
  const std::vector<int> before = shownLeaves(table);
  try {
    Layers layers(table);
    for (const LayerChoice& choice : choices) layers.choose(choice);
  } catch (const std::logic_error& error) {
    // Categories that form no tree cannot be counted.
    throw ChangeError(error.what());
  }
  return shownLeaves(table) != before;
}

bool changeFormat(PivotTable& table, DisplayFormat format) {
  bool changed = false;
  for (PivotCell& cell : table.cells) {
    if (cell.value.kind != CellText::Kind::kNumber) continue;
    changed |= replaceValue(cell.value.format.display, std::optional(format));
  }
  return changed;
}

/// The look that tables get; nothing when they keep theirs.
std::optional<Shared<TableLook>> lookOf(const TableChange& change) {
  try {
    if (!change.look.empty()) return Shared<TableLook>(parseTableLook(change.look));
  } catch (const LookError& error) {
    throw ChangeError(localized("in ^1, ^2", localizedText(kTableLookName), error.what()));
  }
  if (change.usesDefaultLook) return Shared<TableLook>(defaultTableLook());
  return std::nullopt;
}

}  // namespace

TableChanger::TableChanger(const TableChange& change, ChangeNotes& notes)
    : change_(change), format_(usableFormat(change.format, notes)), look_(lookOf(change)) {}

bool TableChanger::apply(PivotTable& table) const {
  bool changed = false;
  if (change_.title) changed |= changeTitle(table, *change_.title);
  if (change_.summary) changed |= replaceValue(table.summary, *change_.summary);
  if (look_) changed |= replaceValue(table.tableLook, *look_);
  if (change_.transposes) changed |= transpose(table);
  changed |= chooseLayers(table, change_.layers);
  if (change_.sort) changed |= sortRows(table, *change_.sort);
  if (format_) changed |= changeFormat(table, *format_);
  return changed;
}

}  // namespace vornwout
