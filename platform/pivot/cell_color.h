// The colours of table cells: names and "#rrggbb", and the values they stand for.
//
// One table serves the comment command, which says what is a colour, and everything that shows
// tables. The names are compared exactly. The command also accepts a "#" value with other
// characters in it; such a value has no colour, and nothing is coloured.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vornwout {

struct Rgb {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

struct NamedColor {
  std::string_view name;
  Rgb value;
};

/// The 26 names, each of the thirteen colours in two spellings.
std::span<const NamedColor> cellColorNames();

/// The value of one of the names; nothing for any other text.
std::optional<Rgb> namedCellColor(std::string_view name);

/// The value of a name or of "#rrggbb"; nothing for any other text.
std::optional<Rgb> parseCellColor(std::string_view text);

/// Black or white, whichever is easier to read on `background`.
Rgb readableOn(Rgb background);

}  // namespace vornwout
