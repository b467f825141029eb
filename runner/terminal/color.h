// Colours of table cells on a terminal: names and "#rrggbb" to values, values to SGR codes.
//
// The names are those that the comment command accepts, compared exactly. That command also accepts
// a "#" value with other characters in it; such a value has no colour, and nothing is coloured.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "runner/terminal/style.h"

namespace vornwout {

struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

/// The value of a colour name or of "#rrggbb"; nothing for any other text.
std::optional<Rgb> parseColor(std::string_view text);

/// The nearest colour of the 256-colour palette: of its cube (16 to 231) and its greys (232 to
/// 255). The first 16 are never used, for they are what the user has set them to.
int nearestPaletteColor(Rgb color);

/// Black or white, whichever is easier to read on `background`.
Rgb readableOn(Rgb background);

/// SGR parameters that set the colour of text or background; empty when nothing is styled.
std::string foregroundCode(Rgb color, ColorDepth depth);
std::string backgroundCode(Rgb color, ColorDepth depth);

/// `text` between the sequence for the SGR parameters `codes` and the one that resets them; the
/// text alone when nothing is styled or there are no codes.
std::string withStyle(std::string_view text, std::string_view codes, const TerminalStyle& style);

}  // namespace vornwout
