#include "host/changes/table_changes.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/changes/replace_value.h"
#include "host/changes/row_sort.h"
#include "host/layout/table_axis.h"
#include "host/looks/look_element.h"
#include "host/looks/table_look_xml.h"
#include "platform/pivot/cell_text.h"
#include "platform/pivot/display_format.h"

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

TableLook lookOf(const std::string& xml) {
  try {
    return parseTableLook(xml);
  } catch (const LookError& error) {
    throw ChangeError(std::string("in the table look, ") + error.what());
  }
}

}  // namespace

void checkTableChange(const TableChange& change, ChangeNotes& notes) {
  if (!change.look.empty()) static_cast<void>(lookOf(change.look));
  if (!change.format.empty() && !parseDisplayFormat(change.format)) {
    notes.invalidFormat(change.format);
  }
}

bool changeTable(PivotTable& table, const TableChange& change, ChangeNotes& notes) {
  bool changed = false;
  if (change.title) changed |= changeTitle(table, *change.title);
  if (change.summary) changed |= replaceValue(table.summary, *change.summary);
  if (change.usesDefaultLook)
    changed |= replaceValue(table.tableLook, Shared<TableLook>(defaultTableLook()));
  if (!change.look.empty()) {
    changed |= replaceValue(table.tableLook, Shared<TableLook>(lookOf(change.look)));
  }
  if (change.transposes) changed |= transpose(table);
  changed |= chooseLayers(table, change.layers);
  if (change.sort) changed |= sortRows(table, *change.sort);
  if (!change.format.empty()) {
    const std::optional<DisplayFormat> format = parseDisplayFormat(change.format);
    if (!format) notes.invalidFormat(change.format);
    if (format) changed |= changeFormat(table, *format);
  }
  return changed;
}

}  // namespace vornwout
