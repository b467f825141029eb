#include "runner/terminal/color.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

TEST(Color, NearestOfThePaletteIsExactWhereThePaletteHasIt) {
  EXPECT_EQ(nearestPaletteColor({0, 0, 0}), 16);
  EXPECT_EQ(nearestPaletteColor({255, 255, 255}), 231);
  EXPECT_EQ(nearestPaletteColor({255, 0, 0}), 196);
  EXPECT_EQ(nearestPaletteColor({0, 255, 0}), 46);
  EXPECT_EQ(nearestPaletteColor({0, 0, 255}), 21);
  EXPECT_EQ(nearestPaletteColor({95, 135, 175}), 67);
  EXPECT_EQ(nearestPaletteColor({8, 8, 8}), 232);
  EXPECT_EQ(nearestPaletteColor({238, 238, 238}), 255);
}

TEST(Color, NearestOfThePaletteIsNeverBeatenByAnother) {
  const auto valueOf = [](int index) -> Rgb {
    if (index >= 232) {
      const auto level = static_cast<std::uint8_t>(8 + 10 * (index - 232));
      return {level, level, level};
    }
    const auto step = [](int digit) {
      return static_cast<std::uint8_t>(digit == 0 ? 0 : 55 + 40 * digit);
    };
    return {step((index - 16) / 36), step((index - 16) / 6 % 6), step((index - 16) % 6)};
  };
  const auto distance = [](Rgb a, Rgb b) {
    const int r = a.red - b.red, g = a.green - b.green, blue = a.blue - b.blue;
    return r * r + g * g + blue * blue;
  };
  for (int code = 0; code < 256 * 256 * 256; code += 4099) {
    const Rgb color{static_cast<std::uint8_t>(code >> 16), static_cast<std::uint8_t>(code >> 8),
                    static_cast<std::uint8_t>(code)};
    const int chosen = distance(color, valueOf(nearestPaletteColor(color)));
    for (int index = 16; index < 256; ++index) {
      ASSERT_LE(chosen, distance(color, valueOf(index))) << code << " against " << index;
    }
  }
}

TEST(Color, CodesFollowTheDepth) {
  const Rgb orange{255, 200, 0};
  EXPECT_EQ(foregroundCode(orange, ColorDepth::kTrueColor), "38;2;255;200;0");
  EXPECT_EQ(backgroundCode(orange, ColorDepth::kTrueColor), "48;2;255;200;0");
  EXPECT_EQ(foregroundCode(orange, ColorDepth::k256), "38;5;220");
  EXPECT_EQ(backgroundCode(orange, ColorDepth::k256), "48;5;220");
  EXPECT_EQ(foregroundCode(orange, ColorDepth::kNone), "");
}

TEST(Color, TextIsStyledOnlyWhereAskedFor) {
  const TerminalStyle styled{ColorDepth::k256, 0};
  EXPECT_EQ(withStyle("x", "1", styled), "\x1b[1mx\x1b[0m");
  EXPECT_EQ(withStyle("x", "", styled), "x");
  EXPECT_EQ(withStyle("", "1", styled), "");
  EXPECT_EQ(withStyle("x", "1", TerminalStyle{}), "x");
}

}  // namespace
}  // namespace vornwout
