// Colours as SVG charts write them, and how far apart two of them are.
//
// Contrast is that of the Web Content Accessibility Guidelines: from 1 (the same) to 21.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/pivot/cell_color.h"

namespace vornwout {

struct SvgColor {
  Rgb value;
  std::string alpha;  ///< as it was written, empty for an opaque colour
  friend bool operator==(const SvgColor&, const SvgColor&) = default;
};

/// Reads a hexadecimal colour, rgb(), rgba(), hsl(), hsla() or a name; nothing for "none", an
/// address, and whatever else there is.
std::optional<SvgColor> parseSvgColor(std::string_view text);

/// The colour `value`, which is "#rrggbb", as see-through as `old` was.
std::string recolored(const SvgColor& old, const std::string& value);

double contrastRatio(Rgb a, Rgb b);

/// Degrees round the wheel, from 0 (red) to 360; 0 for a grey.
double hueOf(Rgb color);

/// Whether a colour is a grey, black or white, as far as anybody can tell.
bool isNeutral(Rgb color);

}  // namespace vornwout
