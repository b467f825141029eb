// Colours on a terminal: values to SGR codes, and what is readable on what.
#pragma once

#include <string>
#include <string_view>

#include "platform/pivot/cell_color.h"
#include "runner/terminal/style.h"

namespace vornwout {

/// The nearest colour of the 256-colour palette: of its cube (16 to 231) and its greys (232 to
/// 255). The first 16 are never used, for they are what the user has set them to.
int nearestPaletteColor(Rgb color);

/// SGR parameters that set the colour of text or background; empty when nothing is styled.
std::string foregroundCode(Rgb color, ColorDepth depth);
std::string backgroundCode(Rgb color, ColorDepth depth);

/// `text` between the sequence for the SGR parameters `codes` and the one that resets them; the
/// text alone when nothing is styled or there are no codes.
std::string withStyle(std::string_view text, std::string_view codes, const TerminalStyle& style);

}  // namespace vornwout
