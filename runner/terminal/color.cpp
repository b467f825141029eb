#include "runner/terminal/color.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vornwout {
namespace {

struct NamedColor {
  std::string_view name;
  Rgb value;
};

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

constexpr std::array<int, 6> kCubeSteps{0, 95, 135, 175, 215, 255};

int nearestStep(int value) {
  int best = 0;
  for (int i = 1; i < 6; ++i) {
    const auto step = [](int index) { return kCubeSteps[static_cast<std::size_t>(index)]; };
    if (std::abs(step(i) - value) < std::abs(step(best) - value)) best = i;
  }
  return best;
}

int squaredDistance(Rgb color, int red, int green, int blue) {
  const int r = color.red - red;
  const int g = color.green - green;
  const int b = color.blue - blue;
  return r * r + g * g + b * b;
}

std::string colorCode(Rgb color, ColorDepth depth, const std::string& selector) {
  switch (depth) {
    case ColorDepth::kNone:
      return {};
    case ColorDepth::k256:
      return selector + ";5;" + std::to_string(nearestPaletteColor(color));
    case ColorDepth::kTrueColor:
      break;
  }
  return selector + ";2;" + std::to_string(color.red) + ";" + std::to_string(color.green) + ";" +
         std::to_string(color.blue);
}

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

std::optional<Rgb> parseColor(std::string_view text) {
  if (text.size() == 7 && text[0] == '#') return parseHex(text.substr(1));
  const auto* found = std::find_if(kNamedColors.begin(), kNamedColors.end(),
                                   [&](const NamedColor& color) { return color.name == text; });
  if (found == kNamedColors.end()) return std::nullopt;
  return found->value;
}

int nearestPaletteColor(Rgb color) {
  const int red = nearestStep(color.red);
  const int green = nearestStep(color.green);
  const int blue = nearestStep(color.blue);
  const auto step = [](int index) { return kCubeSteps[static_cast<std::size_t>(index)]; };
  const int cubeDistance = squaredDistance(color, step(red), step(green), step(blue));
  // The greys are 8, 18, ..., 238; the nearest one to the mean is the nearest one to the colour.
  const int mean = (color.red + color.green + color.blue) / 3;
  const int gray = std::clamp((mean - 3) / 10, 0, 23);
  const int level = 8 + 10 * gray;
  if (squaredDistance(color, level, level, level) < cubeDistance) return 232 + gray;
  return 16 + 36 * red + 6 * green + blue;
}

Rgb readableOn(Rgb background) {
  const int brightness = 299 * background.red + 587 * background.green + 114 * background.blue;
  return brightness >= 128'000 ? kBlack : kWhite;
}

std::string foregroundCode(Rgb color, ColorDepth depth) { return colorCode(color, depth, "38"); }

std::string backgroundCode(Rgb color, ColorDepth depth) { return colorCode(color, depth, "48"); }

std::string withStyle(std::string_view text, std::string_view codes, const TerminalStyle& style) {
  if (!style.isStyled() || codes.empty() || text.empty()) return std::string(text);
  std::string result = "\x1b[";
  result += codes;
  result += 'm';
  result += text;
  result += "\x1b[0m";
  return result;
}

}  // namespace vornwout
