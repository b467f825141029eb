#include "host/layout/look_of_grid.h"

#include <cstddef>
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

SharedLook GridLooks::AreaLooks::merged(const SharedLook& own) {
  if (own.empty()) return alone_;
  // Cells of one look share it, so its address tells them; the copy keeps it.
  const auto [known, isNew] = made_.try_emplace(&own.get());
  if (isNew) known->second = {own, SharedLook(mergedLook(base_, own.get()))};
  return known->second.second;
}

GridLooks::GridLooks(TableGrid& grid)
    : look_(grid.tableLook),
      headerRows_(grid.headerRows),
      hasBands_(!look_->banding.fill.empty()),
      areas_{AreaLooks(textOf(look_.get(), LookArea::kCorner)),
             AreaLooks(textOf(look_.get(), LookArea::kColumnLabels)),
             AreaLooks(textOf(look_.get(), LookArea::kRowLabels)),
             AreaLooks(textOf(look_.get(), LookArea::kData))},
      bandedData_(banded(look_.get(), LookArea::kData)),
      bandedLabels_(banded(look_.get(), LookArea::kRowLabels)) {
  if (look_.empty()) return;
  grid.emptyCornerLook = areas_[static_cast<std::size_t>(CellRole::kCorner)].merged({});
  grid.emptyDataLook = areas_[static_cast<std::size_t>(CellRole::kData)].merged({});
  grid.emptyBandLook = hasBands_ ? bandedData_.merged({}) : grid.emptyDataLook;
  if (look_->dataColumns.min > 0 && !grid.minDataColumnWidth) {
    grid.minDataColumnWidth = look_->dataColumns.min;
  }
  if (look_->dataColumns.max > 0 && !grid.maxDataColumnWidth) {
    grid.maxDataColumnWidth = look_->dataColumns.max;
  }
  const auto merge = [&](SharedLook& own, LookArea area) {
    own = SharedLook(mergedLook(textOf(look_.get(), area), own.get()));
  };
  merge(grid.titleLook, LookArea::kTitle);
  merge(grid.layersLook, LookArea::kLayers);
  merge(grid.captionLook, LookArea::kCaption);
  merge(grid.footnoteLook, LookArea::kFootnotes);
}

GridLooks::AreaLooks& GridLooks::looksOf(const GridCell& cell) {
  const bool isInBand = hasBands_ && cell.row >= headerRows_ && (cell.row - headerRows_) % 2 == 1 &&
                        cell.rowSpan == 1;
  if (isInBand && cell.role == CellRole::kData) return bandedData_;
  if (isInBand && cell.role == CellRole::kRowLabel && look_->banding.rowLabels) {
    return bandedLabels_;
  }
  return areas_[static_cast<std::size_t>(cell.role)];
}

void GridLooks::apply(GridCell& cell) {
  if (look_.empty()) return;
  cell.look = looksOf(cell).merged(cell.look);
  cell.alignment = aligned(look_->area(areaOf(cell.role)).horizontal, cell.alignment);
}

void applyTableLook(TableGrid& grid) {
  GridLooks looks(grid);
  for (GridCell& cell : grid.cells) looks.apply(cell);
}

}  // namespace vornwout
