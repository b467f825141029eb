#include "host/looks/svg_color.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <fmt/format.h>

#include "host/build/css_filter.h"
#include "host/store/number_text.h"

namespace vornwout {
namespace {

struct ColorName {
  std::string_view name;
  std::uint32_t value;
};

/// The names that CSS knows, in the order of the alphabet.
constexpr std::array<ColorName, 148> kNames{{{"aliceblue", 0xF0F8FF},
                                             {"antiquewhite", 0xFAEBD7},
                                             {"aqua", 0x00FFFF},
                                             {"aquamarine", 0x7FFFD4},
                                             {"azure", 0xF0FFFF},
                                             {"beige", 0xF5F5DC},
                                             {"bisque", 0xFFE4C4},
                                             {"black", 0x000000},
                                             {"blanchedalmond", 0xFFEBCD},
                                             {"blue", 0x0000FF},
                                             {"blueviolet", 0x8A2BE2},
                                             {"brown", 0xA52A2A},
                                             {"burlywood", 0xDEB887},
                                             {"cadetblue", 0x5F9EA0},
                                             {"chartreuse", 0x7FFF00},
                                             {"chocolate", 0xD2691E},
                                             {"coral", 0xFF7F50},
                                             {"cornflowerblue", 0x6495ED},
                                             {"cornsilk", 0xFFF8DC},
                                             {"crimson", 0xDC143C},
                                             {"cyan", 0x00FFFF},
                                             {"darkblue", 0x00008B},
                                             {"darkcyan", 0x008B8B},
                                             {"darkgoldenrod", 0xB8860B},
                                             {"darkgray", 0xA9A9A9},
                                             {"darkgreen", 0x006400},
                                             {"darkgrey", 0xA9A9A9},
                                             {"darkkhaki", 0xBDB76B},
                                             {"darkmagenta", 0x8B008B},
                                             {"darkolivegreen", 0x556B2F},
                                             {"darkorange", 0xFF8C00},
                                             {"darkorchid", 0x9932CC},
                                             {"darkred", 0x8B0000},
                                             {"darksalmon", 0xE9967A},
                                             {"darkseagreen", 0x8FBC8F},
                                             {"darkslateblue", 0x483D8B},
                                             {"darkslategray", 0x2F4F4F},
                                             {"darkslategrey", 0x2F4F4F},
                                             {"darkturquoise", 0x00CED1},
                                             {"darkviolet", 0x9400D3},
                                             {"deeppink", 0xFF1493},
                                             {"deepskyblue", 0x00BFFF},
                                             {"dimgray", 0x696969},
                                             {"dimgrey", 0x696969},
                                             {"dodgerblue", 0x1E90FF},
                                             {"firebrick", 0xB22222},
                                             {"floralwhite", 0xFFFAF0},
                                             {"forestgreen", 0x228B22},
                                             {"fuchsia", 0xFF00FF},
                                             {"gainsboro", 0xDCDCDC},
                                             {"ghostwhite", 0xF8F8FF},
                                             {"gold", 0xFFD700},
                                             {"goldenrod", 0xDAA520},
                                             {"gray", 0x808080},
                                             {"green", 0x008000},
                                             {"greenyellow", 0xADFF2F},
                                             {"grey", 0x808080},
                                             {"honeydew", 0xF0FFF0},
                                             {"hotpink", 0xFF69B4},
                                             {"indianred", 0xCD5C5C},
                                             {"indigo", 0x4B0082},
                                             {"ivory", 0xFFFFF0},
                                             {"khaki", 0xF0E68C},
                                             {"lavender", 0xE6E6FA},
                                             {"lavenderblush", 0xFFF0F5},
                                             {"lawngreen", 0x7CFC00},
                                             {"lemonchiffon", 0xFFFACD},
                                             {"lightblue", 0xADD8E6},
                                             {"lightcoral", 0xF08080},
                                             {"lightcyan", 0xE0FFFF},
                                             {"lightgoldenrodyellow", 0xFAFAD2},
                                             {"lightgray", 0xD3D3D3},
                                             {"lightgreen", 0x90EE90},
                                             {"lightgrey", 0xD3D3D3},
                                             {"lightpink", 0xFFB6C1},
                                             {"lightsalmon", 0xFFA07A},
                                             {"lightseagreen", 0x20B2AA},
                                             {"lightskyblue", 0x87CEFA},
                                             {"lightslategray", 0x778899},
                                             {"lightslategrey", 0x778899},
                                             {"lightsteelblue", 0xB0C4DE},
                                             {"lightyellow", 0xFFFFE0},
                                             {"lime", 0x00FF00},
                                             {"limegreen", 0x32CD32},
                                             {"linen", 0xFAF0E6},
                                             {"magenta", 0xFF00FF},
                                             {"maroon", 0x800000},
                                             {"mediumaquamarine", 0x66CDAA},
                                             {"mediumblue", 0x0000CD},
                                             {"mediumorchid", 0xBA55D3},
                                             {"mediumpurple", 0x9370DB},
                                             {"mediumseagreen", 0x3CB371},
                                             {"mediumslateblue", 0x7B68EE},
                                             {"mediumspringgreen", 0x00FA9A},
                                             {"mediumturquoise", 0x48D1CC},
                                             {"mediumvioletred", 0xC71585},
                                             {"midnightblue", 0x191970},
                                             {"mintcream", 0xF5FFFA},
                                             {"mistyrose", 0xFFE4E1},
                                             {"moccasin", 0xFFE4B5},
                                             {"navajowhite", 0xFFDEAD},
                                             {"navy", 0x000080},
                                             {"oldlace", 0xFDF5E6},
                                             {"olive", 0x808000},
                                             {"olivedrab", 0x6B8E23},
                                             {"orange", 0xFFA500},
                                             {"orangered", 0xFF4500},
                                             {"orchid", 0xDA70D6},
                                             {"palegoldenrod", 0xEEE8AA},
                                             {"palegreen", 0x98FB98},
                                             {"paleturquoise", 0xAFEEEE},
                                             {"palevioletred", 0xDB7093},
                                             {"papayawhip", 0xFFEFD5},
                                             {"peachpuff", 0xFFDAB9},
                                             {"peru", 0xCD853F},
                                             {"pink", 0xFFC0CB},
                                             {"plum", 0xDDA0DD},
                                             {"powderblue", 0xB0E0E6},
                                             {"purple", 0x800080},
                                             {"rebeccapurple", 0x663399},
                                             {"red", 0xFF0000},
                                             {"rosybrown", 0xBC8F8F},
                                             {"royalblue", 0x4169E1},
                                             {"saddlebrown", 0x8B4513},
                                             {"salmon", 0xFA8072},
                                             {"sandybrown", 0xF4A460},
                                             {"seagreen", 0x2E8B57},
                                             {"seashell", 0xFFF5EE},
                                             {"sienna", 0xA0522D},
                                             {"silver", 0xC0C0C0},
                                             {"skyblue", 0x87CEEB},
                                             {"slateblue", 0x6A5ACD},
                                             {"slategray", 0x708090},
                                             {"slategrey", 0x708090},
                                             {"snow", 0xFFFAFA},
                                             {"springgreen", 0x00FF7F},
                                             {"steelblue", 0x4682B4},
                                             {"tan", 0xD2B48C},
                                             {"teal", 0x008080},
                                             {"thistle", 0xD8BFD8},
                                             {"tomato", 0xFF6347},
                                             {"turquoise", 0x40E0D0},
                                             {"violet", 0xEE82EE},
                                             {"wheat", 0xF5DEB3},
                                             {"white", 0xFFFFFF},
                                             {"whitesmoke", 0xF5F5F5},
                                             {"yellow", 0xFFFF00},
                                             {"yellowgreen", 0x9ACD32}}};

/// How far the parts of a grey may differ.
constexpr int kNeutralSpread = 20;

Rgb rgbOf(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
          static_cast<std::uint8_t>(value)};
}

std::uint8_t toByte(double value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

std::optional<std::uint32_t> hexValue(std::string_view digits) {
  std::uint32_t value = 0;
  for (const char c : digits) {
    const bool isDigit = c >= '0' && c <= '9';
    if (!isDigit && (c < 'a' || c > 'f')) return std::nullopt;
    value = value * 16 + static_cast<std::uint32_t>(isDigit ? c - '0' : c - 'a' + 10);
  }
  return value;
}

std::optional<SvgColor> parseHexColor(std::string_view digits) {
  std::string longForm(digits);
  if (digits.size() == 3 || digits.size() == 4) {
    longForm.clear();
    for (const char c : digits) longForm.append(2, c);
  }
  if (longForm.size() != 6 && longForm.size() != 8) return std::nullopt;
  const auto color = hexValue(std::string_view(longForm).substr(0, 6));
  const auto alpha = hexValue(std::string_view(longForm).substr(6));
  if (!color || !alpha) return std::nullopt;
  SvgColor result{rgbOf(*color), ""};
  if (longForm.size() == 8 && *alpha < 255) result.alpha = fmt::format("{:.3f}", *alpha / 255.0);
  return result;
}

struct ColorArgument {
  double value = 0;
  bool isPercent = false;
  std::string_view text;
};

/// What stands between the brackets of a function; nothing when it is no list of three or four
/// numbers.
std::optional<std::vector<ColorArgument>> colorArguments(std::string_view text) {
  std::vector<ColorArgument> arguments;
  constexpr std::string_view kBetween = " \t\r\n,/";
  for (std::size_t at = text.find_first_not_of(kBetween); at != std::string_view::npos;
       at = text.find_first_not_of(kBetween, at)) {
    const std::size_t end = std::min(text.find_first_of(kBetween, at), text.size());
    ColorArgument argument;
    argument.text = text.substr(at, end - at);
    std::string_view digits = argument.text;
    if (digits.ends_with("deg")) digits.remove_suffix(3);
    argument.isPercent = digits.ends_with('%');
    if (argument.isPercent) digits.remove_suffix(1);
    if (!parseNumber(digits, argument.value) || !std::isfinite(argument.value)) return std::nullopt;
    arguments.push_back(argument);
    at = end;
  }
  if (arguments.size() < 3 || arguments.size() > 4) return std::nullopt;
  return arguments;
}

Rgb rgbOfHsl(double hue, double saturation, double lightness) {
  hue = std::fmod(std::fmod(hue, 360) + 360, 360);
  saturation = std::clamp(saturation / 100, 0.0, 1.0);
  lightness = std::clamp(lightness / 100, 0.0, 1.0);
  const double reach = saturation * std::min(lightness, 1 - lightness);
  const auto part = [&](double turn) {
    const double k = std::fmod(turn + hue / 30, 12);
    return toByte(255 * (lightness - reach * std::clamp(std::min(k - 3, 9 - k), -1.0, 1.0)));
  };
  return {part(0), part(8), part(4)};
}

double linear(std::uint8_t part) {
  const double value = part / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(Rgb color) {
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

}  // namespace

std::optional<SvgColor> parseSvgColor(std::string_view text) {
  // Longer than any colour; what comes may be an address of megabytes.
  if (text.size() > 200) return std::nullopt;
  const std::string lowered = asciiLowered(text);
  const std::string_view color = lowered;
  if (color.starts_with('#')) return parseHexColor(color.substr(1));
  const std::size_t open = color.find('(');
  if (open == std::string_view::npos) {
    const auto* found = std::lower_bound(
        kNames.begin(), kNames.end(), color,
        [](const ColorName& name, std::string_view wanted) { return name.name < wanted; });
    if (found == kNames.end() || found->name != color) return std::nullopt;
    return SvgColor{rgbOf(found->value), ""};
  }
  const std::string_view function = color.substr(0, open);
  const bool isHsl = function == "hsl" || function == "hsla";
  if (!color.ends_with(')') || (!isHsl && function != "rgb" && function != "rgba")) {
    return std::nullopt;
  }
  const auto arguments = colorArguments(color.substr(open + 1, color.size() - open - 2));
  if (!arguments) return std::nullopt;
  SvgColor result;
  if (isHsl) {
    result.value = rgbOfHsl((*arguments)[0].value, (*arguments)[1].value, (*arguments)[2].value);
  } else {
    const auto part = [&](std::size_t i) {
      const ColorArgument& argument = (*arguments)[i];
      return toByte(argument.isPercent ? argument.value * 2.55 : argument.value);
    };
    result.value = {part(0), part(1), part(2)};
  }
  if (arguments->size() == 4) {
    const ColorArgument& alpha = (*arguments)[3];
    if (alpha.value < (alpha.isPercent ? 100 : 1)) result.alpha = alpha.text;
  }
  return result;
}

std::string recolored(const SvgColor& old, const std::string& value) {
  if (old.alpha.empty()) return value;
  const Rgb color = parseCellColor(value).value_or(Rgb{});
  return fmt::format("rgba({},{},{},{})", color.red, color.green, color.blue, old.alpha);
}

double contrastRatio(Rgb a, Rgb b) {
  const double first = luminance(a);
  const double second = luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

double hueOf(Rgb color) {
  const double red = color.red;
  const double green = color.green;
  const double blue = color.blue;
  const auto [low, high] = std::minmax({red, green, blue});
  const double spread = high - low;
  if (spread <= 0) return 0;
  if (high == red) return std::fmod(60 * (green - blue) / spread + 360, 360);
  return high == green ? 120 + 60 * (blue - red) / spread : 240 + 60 * (red - green) / spread;
}

bool isNeutral(Rgb color) {
  const auto [low, high] = std::minmax({color.red, color.green, color.blue});
  return high - low <= kNeutralSpread;
}

}  // namespace vornwout
