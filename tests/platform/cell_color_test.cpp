#include "platform/pivot/cell_color.h"

#include <gtest/gtest.h>

namespace vornwout {
namespace {

struct CellColorCase {
  const char* text;
  std::optional<Rgb> value;
};

TEST(CellColor, NamesAndHexValuesAreKnownExactly) {
  const CellColorCase cases[] = {
      {"black", Rgb{0, 0, 0}},
      {"BLACK", Rgb{0, 0, 0}},
      {"blue", Rgb{0, 0, 255}},
      {"BLUE", Rgb{0, 0, 255}},
      {"cyan", Rgb{0, 255, 255}},
      {"CYAN", Rgb{0, 255, 255}},
      {"darkGray", Rgb{64, 64, 64}},
      {"DARK_GRAY", Rgb{64, 64, 64}},
      {"gray", Rgb{128, 128, 128}},
      {"GRAY", Rgb{128, 128, 128}},
      {"green", Rgb{0, 255, 0}},
      {"GREEN", Rgb{0, 255, 0}},
      {"lightGray", Rgb{192, 192, 192}},
      {"LIGHT_GRAY", Rgb{192, 192, 192}},
      {"magenta", Rgb{255, 0, 255}},
      {"MAGENTA", Rgb{255, 0, 255}},
      {"orange", Rgb{255, 200, 0}},
      {"ORANGE", Rgb{255, 200, 0}},
      {"pink", Rgb{255, 175, 175}},
      {"PINK", Rgb{255, 175, 175}},
      {"red", Rgb{255, 0, 0}},
      {"RED", Rgb{255, 0, 0}},
      {"white", Rgb{255, 255, 255}},
      {"WHITE", Rgb{255, 255, 255}},
      {"yellow", Rgb{255, 255, 0}},
      {"YELLOW", Rgb{255, 255, 0}},
      {"#12aBfF", Rgb{0x12, 0xab, 0xff}},
      {"", std::nullopt},
      {"Black", std::nullopt},
      {"#12345z", std::nullopt},
      {"#-1-1-1", std::nullopt},
      {"#12345", std::nullopt},
      {"#1234567", std::nullopt},
      {"# 1 2 3", std::nullopt},
      {"123456", std::nullopt},
  };
  for (const CellColorCase& c : cases) EXPECT_EQ(parseCellColor(c.text), c.value) << c.text;
}

TEST(CellColor, Has26NamesInTwoSpellingsOfThirteenColors) {
  EXPECT_EQ(cellColorNames().size(), 26U);
  for (const NamedColor& color : cellColorNames()) {
    int spellings = 0;
    for (const NamedColor& other : cellColorNames())
      spellings += other.value == color.value ? 1 : 0;
    EXPECT_EQ(spellings, 2) << color.name;
    EXPECT_EQ(namedCellColor(color.name), color.value);
  }
  EXPECT_EQ(namedCellColor("#000000"), std::nullopt);
}

TEST(CellColor, TextIsReadableOnEveryNamedBackground) {
  EXPECT_EQ(readableOn({255, 255, 0}), (Rgb{0, 0, 0}));
  EXPECT_EQ(readableOn({0, 0, 255}), (Rgb{255, 255, 255}));
  EXPECT_EQ(readableOn({0, 0, 0}), (Rgb{255, 255, 255}));
}

}  // namespace
}  // namespace vornwout
