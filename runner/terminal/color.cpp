#include "runner/terminal/color.h"

#include <algorithm>
#include <array>

namespace vornwout {
namespace {

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

}  // namespace

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
