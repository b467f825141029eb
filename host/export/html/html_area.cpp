#include "host/export/html/html_area.h"

#include <fmt/format.h>

#include "host/export/html/html_writer.h"
#include "platform/pivot/cell_color.h"

namespace vornwout {
namespace {

const char* styleName(LookLineStyle style) {
  switch (style) {
    case LookLineStyle::kNone:
      return "none";
    case LookLineStyle::kSolid:
      return "solid";
    case LookLineStyle::kDashed:
      return "dashed";
    case LookLineStyle::kDotted:
      return "dotted";
    case LookLineStyle::kDouble:
      break;
  }
  return "double";
}

std::string lineCss(const char* side, const LookLine& line) {
  if (line.style == LookLineStyle::kNone) return fmt::format("border-{}:0;", side);
  const std::optional<Rgb> color = parseCellColor(line.color);
  return fmt::format("border-{}:{:.6g}pt {} {};", side, line.width, styleName(line.style),
                     color ? htmlColor(*color) : "currentColor");
}

const char* verticalName(LookVertical vertical) {
  switch (vertical) {
    case LookVertical::kTop:
      return "top";
    case LookVertical::kMiddle:
      return "middle";
    case LookVertical::kBottom:
      break;
  }
  return "bottom";
}

std::string marginCss(const LookMargins& margins) {
  return fmt::format("padding:{:.6g}pt {:.6g}pt {:.6g}pt {:.6g}pt;", margins.top, margins.right,
                     margins.bottom, margins.left);
}

const SharedLook& textLookOf(const TableGrid& grid, LookArea area) {
  switch (area) {
    case LookArea::kTitle:
      return grid.titleLook;
    case LookArea::kLayers:
      return grid.layersLook;
    case LookArea::kCaption:
      return grid.captionLook;
    default:
      return grid.footnoteLook;
  }
}

/// The area of a place and how far it reaches.
struct Extent {
  LookArea area;
  int firstRow;
  int endRow;
  int firstColumn;
  int endColumn;
};

Extent extentAt(const TableGrid& grid, int row, int column) {
  const bool isHeader = row < grid.headerRows;
  const bool isLabel = column < grid.headerColumns;
  return {isHeader ? (isLabel ? LookArea::kCorner : LookArea::kColumnLabels)
                   : (isLabel ? LookArea::kRowLabels : LookArea::kData),
          isHeader ? 0 : grid.headerRows, isHeader ? grid.headerRows : grid.rowCount,
          isLabel ? 0 : grid.headerColumns, isLabel ? grid.headerColumns : grid.columnCount};
}

}  // namespace

std::string areaCss(const TableGrid& grid, int row, int column, int rowSpan, int columnSpan) {
  if (grid.tableLook.empty()) return {};
  const Extent extent = extentAt(grid, row, column);
  const AreaLook& look = grid.tableLook->area(extent.area);
  const LookBorders& lines = look.borders;
  std::string css = marginCss(look.margins);
  css += fmt::format("vertical-align:{};", verticalName(look.vertical));
  css += lineCss("top", row == extent.firstRow ? lines.top : lines.rows);
  css += lineCss("bottom", row + rowSpan >= extent.endRow ? lines.bottom : lines.rows);
  css += lineCss("left", column == extent.firstColumn ? lines.left : lines.columns);
  css += lineCss("right", column + columnSpan >= extent.endColumn ? lines.right : lines.columns);
  const LookWidths& widths = grid.tableLook->rowLabelColumns;
  if (column < grid.headerColumns && columnSpan == 1) {
    if (widths.min > 0) css += fmt::format("min-width:{}pt;", widths.min);
    if (widths.max > 0) css += fmt::format("max-width:{}pt;", widths.max);
  }
  return css;
}

std::string boxCss(const TableGrid& grid, LookArea area) {
  if (grid.tableLook.empty()) return {};
  const AreaLook& look = grid.tableLook->area(area);
  const char* side = look.horizontal == LookHorizontal::kCenter  ? "center"
                     : look.horizontal == LookHorizontal::kRight ? "right"
                                                                 : "left";
  std::string css = fmt::format("text-align:{};", side) + marginCss(look.margins);
  css += lineCss("top", look.borders.top) + lineCss("bottom", look.borders.bottom) +
         lineCss("left", look.borders.left) + lineCss("right", look.borders.right);
  const auto ground = parseCellColor(textLookOf(grid, area)->backgroundColor);
  if (ground) css += "background:" + htmlColor(*ground) + ";";
  return css;
}

std::string footnoteCss(const TableGrid& grid, bool isFirst) {
  if (grid.tableLook.empty()) return {};
  const AreaLook& look = grid.tableLook->area(LookArea::kFootnotes);
  const char* side = look.horizontal == LookHorizontal::kCenter  ? "center"
                     : look.horizontal == LookHorizontal::kRight ? "flex-end"
                                                                 : "flex-start";
  return fmt::format("justify-content:{};", side) +
         (isFirst ? std::string() : lineCss("top", look.borders.rows));
}

}  // namespace vornwout
