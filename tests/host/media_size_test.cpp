#include "host/document/media_size.h"

#include <cmath>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

MediaContent media(const char* type, std::string bytes) {
  return {type, std::make_shared<const std::string>(std::move(bytes))};
}

MediaContent svg(const std::string& attributes) {
  return media(kSvgMediaType, "<?xml version=\"1.0\"?>\n<svg " + attributes + "><g/></svg>");
}

MediaContent png(std::uint32_t width, std::uint32_t height) {
  std::string bytes("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
  for (const std::uint32_t value : {width, height}) {
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 255U);
  }
  return media(kPngMediaType, bytes);
}

struct SvgCase {
  const char* attributes;
  double width;  // points; 0 for none
  double height;
};

TEST(MediaSize, SvgIsAsLargeAsItsRootSays) {
  const SvgCase cases[] = {
      {"width='576pt' height='324pt'", 576, 324},
      {"width=\"400\" height=\"200px\"", 300, 150},
      {"width='1in' height='2.54cm'", 72, 72},
      {"width='25.4mm' height='6pc'", 72, 72},
      {"width=' 8pt ' height='9pt'", 8, 9},
      {"viewBox='0 0 400 200'", 300, 150},
      {"viewBox='-5,-5,400,200' width='100%' height='100%'", 300, 150},
      {"width='100pt' viewBox='0 0 2 1'", 100, 50},
      {"height='100pt' viewBox='0 0 2 1'", 200, 100},
      {"title='a>b' width='8pt' height='9pt'", 8, 9},
      {"width='100pt'", 0, 0},
      {"width='-1' height='5'", 0, 0},
      {"width='0' height='5'", 0, 0},
      {"width='nan' height='5'", 0, 0},
      {"width='1e300' height='5'", 0, 0},
      {"width='3em' height='5'", 0, 0},
      {"viewBox='0 0 400'", 0, 0},
      {"viewBox='0 0 0 0'", 0, 0},
      {"", 0, 0},
  };
  for (const SvgCase& c : cases) {
    SCOPED_TRACE(c.attributes);
    const auto size = naturalSize(svg(c.attributes));
    ASSERT_EQ(size.has_value(), c.width > 0);
    if (!size) continue;
    EXPECT_NEAR(size->width, c.width, 1e-9);
    EXPECT_NEAR(size->height, c.height, 1e-9);
    EXPECT_FALSE(size->isInPixels);
  }
}

TEST(MediaSize, PngIsAsLargeAsItsHeaderSays) {
  EXPECT_EQ(naturalSize(png(800, 600)), (MediaSize{600, 450, true}));
  EXPECT_FALSE(naturalSize(png(0, 600)));
  EXPECT_FALSE(naturalSize(png(0xFFFFFFFF, 600)));
  std::string cut = *png(800, 600).bytes;
  cut.pop_back();
  EXPECT_FALSE(naturalSize(media(kPngMediaType, cut)));
}

TEST(MediaSize, WhatIsNoMediumOfItsTypeHasNone) {
  for (const char* bytes : {"", "<", "<svg", "<svg width='5pt' height='5pt'", "<html/>"}) {
    EXPECT_FALSE(naturalSize(media(kSvgMediaType, bytes))) << bytes;
  }
  EXPECT_FALSE(naturalSize(media("image/jpeg", "abc")));
  EXPECT_FALSE(naturalSize(MediaContent{kSvgMediaType, nullptr}));
  // The root must begin near the start and end there.
  const std::string far(100'000, ' ');
  EXPECT_FALSE(naturalSize(media(kSvgMediaType, far + "<svg width='5pt' height='5pt'/>")));
  EXPECT_FALSE(naturalSize(media(kSvgMediaType, "<svg" + far + "width='5pt' height='5pt'/>")));
}

TEST(MediaSize, ShownSizeFollowsTheObject) {
  const MediaContent chart = svg("width='200pt' height='100pt'");
  struct Case {
    std::optional<ObjectSize> wanted;
    double width;
    double height;
  };
  const Case cases[] = {
      {std::nullopt, 200, 100},
      {ObjectSize{}, 200, 100},
      {ObjectSize{50, 80, false}, 50, 80},
      {ObjectSize{50, 0, false}, 50, 25},
      {ObjectSize{0, 50, false}, 100, 50},
      {ObjectSize{50, 50, true}, 100, 50},
      {ObjectSize{50, 0, true}, 100, 50},
  };
  for (const Case& c : cases) {
    const auto size = shownSize(chart, c.wanted);
    ASSERT_TRUE(size);
    EXPECT_DOUBLE_EQ(size->width, c.width);
    EXPECT_DOUBLE_EQ(size->height, c.height);
  }
  EXPECT_FALSE(shownSize(chart, ObjectSize{1e9, 1e9, false}));
  EXPECT_FALSE(shownSize(chart, ObjectSize{NAN, 5, false}).has_value() &&
               std::isnan(shownSize(chart, ObjectSize{NAN, 5, false})->width));
  EXPECT_FALSE(shownSize(svg(""), ObjectSize{50, 0, false}));
  EXPECT_TRUE(shownSize(svg(""), ObjectSize{50, 60, false}));
}

}  // namespace
}  // namespace vornwout
