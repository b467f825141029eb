#include "platform/pivot/cell_color.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vornwout {
namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kDarkGray{64, 64, 64};
constexpr Rgb kGray{128, 128, 128};
constexpr Rgb kLightGray{192, 192, 192};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};
constexpr Rgb kBlue{0, 0, 255};
constexpr Rgb kCyan{0, 255, 255};
constexpr Rgb kMagenta{255, 0, 255};
constexpr Rgb kYellow{255, 255, 0};
constexpr Rgb kOrange{255, 200, 0};
constexpr Rgb kPink{255, 175, 175};

constexpr std::array<NamedColor, 26> kNamedColors{{
    {"black", kBlack},
    {"BLACK", kBlack},
    {"blue", kBlue},
    {"BLUE", kBlue},
    {"cyan", kCyan},
    {"CYAN", kCyan},
    {"DARK_GRAY", kDarkGray},
    {"darkGray", kDarkGray},
    {"gray", kGray},
    {"GRAY", kGray},
    {"green", kGreen},
    {"GREEN", kGreen},
    {"LIGHT_GRAY", kLightGray},
    {"lightGray", kLightGray},
    {"magenta", kMagenta},
    {"MAGENTA", kMagenta},
    {"orange", kOrange},
    {"ORANGE", kOrange},
    {"pink", kPink},
    {"PINK", kPink},
    {"red", kRed},
    {"RED", kRed},
    {"white", kWhite},
    {"WHITE", kWhite},
    {"yellow", kYellow},
    {"YELLOW", kYellow},
}};

std::optional<Rgb> parseHex(std::string_view digits) {
  std::array<std::uint8_t, 3> parts{};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const char* first = digits.data() + 2 * i;
    const auto [stop, error] = std::from_chars(first, first + 2, parts[i], 16);
    if (error != std::errc() || stop != first + 2) return std::nullopt;
  }
  return Rgb{parts[0], parts[1], parts[2]};
}

}  // namespace

std::span<const NamedColor> cellColorNames() { return kNamedColors; }

std::optional<Rgb> namedCellColor(std::string_view name) {
  const auto* found = std::find_if(kNamedColors.begin(), kNamedColors.end(),
                                   [&](const NamedColor& color) { return color.name == name; });
  if (found == kNamedColors.end()) return std::nullopt;
  return found->value;
}

std::optional<Rgb> parseCellColor(std::string_view text) {
  if (text.size() == 7 && text[0] == '#') return parseHex(text.substr(1));
  return namedCellColor(text);
}

Rgb readableOn(Rgb background) {
  const int brightness = 299 * background.red + 587 * background.green + 114 * background.blue;
  return brightness >= 128'000 ? Rgb{0, 0, 0} : Rgb{255, 255, 255};
}

}  // namespace vornwout
