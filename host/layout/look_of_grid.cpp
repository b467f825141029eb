#include "host/layout/look_of_grid.h"

#include <array>
#include <map>
#include <utility>

namespace vornwout {
namespace {

LookArea areaOf(CellRole role) {
  switch (role) {
    case CellRole::kCorner:
      return LookArea::kCorner;
    case CellRole::kColumnLabel:
      return LookArea::kColumnLabels;
    case CellRole::kRowLabel:
      return LookArea::kRowLabels;
    case CellRole::kData:
      break;
  }
  return LookArea::kData;
}

/// The looks of one area, each made once.
class AreaLooks {
 public:
  explicit AreaLooks(TextLook base) : base_(std::move(base)), alone_(base_) {}

  SharedLook merged(const SharedLook& own) {
    if (own.empty()) return alone_;
    // Cells of one look share it, so its address tells them; the copy keeps it.
    const auto [known, isNew] = made_.try_emplace(&own.get());
    if (isNew) known->second = {own, SharedLook(mergedLook(base_, own.get()))};
    return known->second.second;
  }

 private:
  TextLook base_;
  SharedLook alone_;
  std::map<const TextLook*, std::pair<SharedLook, SharedLook>> made_;
};

CellAlignment aligned(LookHorizontal horizontal, CellAlignment byValue) {
  switch (horizontal) {
    case LookHorizontal::kByValue:
      return byValue;
    case LookHorizontal::kLeft:
      return CellAlignment::kLeft;
    case LookHorizontal::kCenter:
      return CellAlignment::kCenter;
    case LookHorizontal::kRight:
      break;
  }
  return CellAlignment::kRight;
}

/// The text of an area with the table's ground below it.
TextLook textOf(const TableLook& look, LookArea area) {
  TextLook text = look.area(area).text;
  if (text.backgroundColor.empty()) text.backgroundColor = look.background;
  return text;
}

TextLook banded(const TableLook& look, LookArea area) {
  TextLook text = textOf(look, area);
  text.backgroundColor = look.banding.fill;
  return text;
}

}  // namespace

TextLook mergedLook(const TextLook& base, const TextLook& own) {
  TextLook merged = own;
  if (merged.textColor.empty()) merged.textColor = base.textColor;
  if (merged.backgroundColor.empty()) merged.backgroundColor = base.backgroundColor;
  if (!merged.bold) merged.bold = base.bold;
  if (!merged.italic) merged.italic = base.italic;
  if (!merged.underlined) merged.underlined = base.underlined;
  if (merged.font.empty()) merged.font = base.font;
  if (merged.size == 0) merged.size = base.size;
  return merged;
}

void applyTableLook(TableGrid& grid) {
  const TableLook& look = grid.tableLook.get();
  if (grid.tableLook.empty()) return;
  std::array<AreaLooks, 4> areas = {
      AreaLooks(textOf(look, LookArea::kCorner)), AreaLooks(textOf(look, LookArea::kColumnLabels)),
      AreaLooks(textOf(look, LookArea::kRowLabels)), AreaLooks(textOf(look, LookArea::kData))};
  AreaLooks bandedData(banded(look, LookArea::kData));
  AreaLooks bandedLabels(banded(look, LookArea::kRowLabels));
  const bool hasBands = !look.banding.fill.empty();
  for (GridCell& cell : grid.cells) {
    const bool isInBand = hasBands && cell.row >= grid.headerRows &&
                          (cell.row - grid.headerRows) % 2 == 1 && cell.rowSpan == 1;
    AreaLooks* looks = &areas[static_cast<std::size_t>(cell.role)];
    if (isInBand && cell.role == CellRole::kData) looks = &bandedData;
    if (isInBand && cell.role == CellRole::kRowLabel && look.banding.rowLabels) {
      looks = &bandedLabels;
    }
    cell.look = looks->merged(cell.look);
    cell.alignment = aligned(look.area(areaOf(cell.role)).horizontal, cell.alignment);
  }
  grid.emptyCornerLook = areas[static_cast<std::size_t>(CellRole::kCorner)].merged({});
  grid.emptyDataLook = areas[static_cast<std::size_t>(CellRole::kData)].merged({});
  grid.emptyBandLook = hasBands ? bandedData.merged({}) : grid.emptyDataLook;
  if (look.dataColumns.min > 0 && !grid.minDataColumnWidth) {
    grid.minDataColumnWidth = look.dataColumns.min;
  }
  if (look.dataColumns.max > 0 && !grid.maxDataColumnWidth) {
    grid.maxDataColumnWidth = look.dataColumns.max;
  }
  const auto merge = [&](SharedLook& own, LookArea area) {
    own = SharedLook(mergedLook(textOf(look, area), own.get()));
  };
  merge(grid.titleLook, LookArea::kTitle);
  merge(grid.layersLook, LookArea::kLayers);
  merge(grid.captionLook, LookArea::kCaption);
  merge(grid.footnoteLook, LookArea::kFootnotes);
}

}  // namespace vornwout
