// How a table as a whole looks, as plain data: its areas, lines, bands and column widths.
//
// A look is made once and given to many tables. What it leaves open is left to whoever shows the
// table, so a look without colours follows a page into the dark. What a single cell or label says
// of itself (text_look.h) goes before all of this.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "platform/pivot/text_look.h"

namespace vornwout {

/// The parts of a table that look alike within themselves.
enum class LookArea {
  kTitle,
  kLayers,  ///< the names of the layers that are shown
  kCorner,  ///< above the row labels, beside the column labels
  kColumnLabels,
  kRowLabels,
  kData,
  kCaption,
  kFootnotes,
};
inline constexpr std::size_t kLookAreaCount = 8;

enum class LookLineStyle { kNone, kSolid, kDashed, kDotted, kDouble };

struct LookLine {
  LookLineStyle style = LookLineStyle::kNone;
  double width = 0.75;  ///< points
  std::string color;    ///< "#rrggbb", empty for the colour of the text
  friend bool operator==(const LookLine&, const LookLine&) = default;
};

/// The lines around an area as a whole, and those between its rows and between its columns. Where
/// two areas meet, the wider line is drawn.
struct LookBorders {
  LookLine top;
  LookLine right;
  LookLine bottom;
  LookLine left;
  LookLine rows;
  LookLine columns;
  friend bool operator==(const LookBorders&, const LookBorders&) = default;
};

/// Between the edge of a cell and its text, in points.
struct LookMargins {
  double top = 2;
  double right = 5;
  double bottom = 2;
  double left = 5;
  friend bool operator==(const LookMargins&, const LookMargins&) = default;
};

enum class LookHorizontal {
  kByValue,  ///< numbers right, texts left
  kLeft,
  kCenter,
  kRight,
};

enum class LookVertical { kTop, kMiddle, kBottom };

struct AreaLook {
  TextLook text;  ///< its background is the fill of the area
  LookHorizontal horizontal = LookHorizontal::kByValue;
  LookVertical vertical = LookVertical::kTop;
  LookMargins margins;
  LookBorders borders;
  friend bool operator==(const AreaLook&, const AreaLook&) = default;
};

/// A fill for every second row of the data, from the second one on.
struct LookBanding {
  std::string fill;        ///< "#rrggbb", empty for no bands
  bool rowLabels = false;  ///< the bands reach over the row labels
  friend bool operator==(const LookBanding&, const LookBanding&) = default;
};

/// Points, 0 for no limit.
struct LookWidths {
  int min = 0;
  int max = 0;
  friend bool operator==(const LookWidths&, const LookWidths&) = default;
};

struct TableLook {
  std::string name;        ///< for who chooses one
  std::string background;  ///< "#rrggbb" below every area without a fill, empty for the page's
  std::array<AreaLook, kLookAreaCount> areas;
  LookBanding banding;
  LookWidths dataColumns;
  LookWidths rowLabelColumns;

  AreaLook& area(LookArea which) { return areas[static_cast<std::size_t>(which)]; }
  const AreaLook& area(LookArea which) const { return areas[static_cast<std::size_t>(which)]; }
  friend bool operator==(const TableLook&, const TableLook&) = default;
};

}  // namespace vornwout
