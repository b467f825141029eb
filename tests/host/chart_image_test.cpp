#include "host/draw/chart_image.h"

#include <cmath>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "host/document/media_size.h"
#include "platform/text/display_width.h"
#include "tests/support/file_content.h"
#include "tests/support/picture_pixels.h"
#include "tests/support/scratch_directory.h"

namespace vornwout {
namespace {

MediaContent media(const char* type, std::string bytes) {
  return {type, std::make_shared<const std::string>(std::move(bytes))};
}

MediaContent svg(const std::string& attributes, const std::string& body = "") {
  return media(kSvgMediaType,
               "<svg xmlns='http://www.w3.org/2000/svg' "
               "xmlns:xlink='http://www.w3.org/1999/xlink' " +
                   attributes + ">" + body + "</svg>");
}

MediaContent png(std::string bytes) { return media(kPngMediaType, std::move(bytes)); }

std::string problemOf(const MediaContent& chart, const std::optional<ObjectSize>& size = {},
                      const ImageOptions& options = {}) {
  try {
    drawChart(chart, size, options);
  } catch (const DrawError& error) {
    const std::string text = error.what();
    EXPECT_LE(displayWidth(text), 72) << text;
    EXPECT_EQ(text.find('\n'), std::string::npos) << text;
    return text;
  }
  return "none";
}

TEST(ChartImage, WhatCannotBeDrawnIsSaid) {
  const std::string noSize = "The chart names no size that an image could have.";
  const std::string noNumber = "The image's size is no number.";
  struct Case {
    MediaContent chart;
    std::string problem;
    std::optional<ObjectSize> size;
    ImageOptions options;
  };
  const Case cases[] = {
      {{kSvgMediaType, nullptr}, "The chart is empty."},
      {media("text/html", "x"), "The chart is neither SVG nor PNG."},
      {svg(""), noSize},
      {svg("width='1e9' height='1e9'"), noSize},
      {svg("width='9' height='9'"), noSize, ObjectSize{1e8, 1e8, false}},
      {svg("width='9' height='9'"), noNumber, {}, {.percent = std::nan("")}},
      {svg("width='9' height='9'"), noNumber, {}, {.percent = -1}},
      {svg("width='9' height='9'"), noNumber, {}, {.dotsPerInch = 0}},
      {svg("width='9' height='9'"), noNumber, {}, {.dotsPerInch = HUGE_VAL}},
      {svg("width='9' height='9'"),
       "The image would be 9e+99 by 9e+99 pixels; 32767 are the most.",
       {},
       {.percent = 1e101}},
      {svg("width='40000' height='1'"),
       "The image would be 40000 by 1 pixels; 32767 are the most."},
      {svg("width='9' height='9'"),
       "The image would be 10000 by 10000 pixels, more than 64 million.",
       ObjectSize{7500, 7500, false}},
      {media(kSvgMediaType, "<html width='9' height='9'/>"), noSize},
      {media(kSvgMediaType, "<svg width='9' height='9'>"),
       "The chart is no well-formed XML: Start-end tags mismatch."},
      {svg("width='9' height='9'", std::string(300'000, '<')),
       "The chart is no well-formed XML: "
       "Could not determine tag type."},
      {media(kSvgMediaType, "<!DOCTYPE svg [<!ENTITY a 'b'>]><svg width='9' height='9'>&a;</svg>"),
       "The chart's document type has declarations of its own."},
      {png("GIF89a"), "This is no PNG file."},
      {png(pngPicture().substr(0, 40)), "The picture is cut off."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.problem);
    EXPECT_EQ(problemOf(c.chart, c.size, c.options), c.problem);
  }
}

TEST(ChartImage, NestingIsBounded) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<g>";
  for (int i = 0; i < 100'000; ++i) deep += "</g>";
  EXPECT_EQ(problemOf(svg("width='9' height='9'", deep)),
            "The chart's elements are nested more than 200 deep.");
}

TEST(ChartImage, PngAskedForAsItIsComesBackUnchanged) {
  const std::string bytes = pngOf(2, 1, 2, std::string("\xFF\0\0\0\xFF\0", 6));
  EXPECT_TRUE(drawChart(png(bytes), {}, {}) == bytes);
  EXPECT_TRUE(drawChart(png(bytes), ObjectSize{1.5, 0.75, false}, {}) == bytes);
  EXPECT_TRUE(drawChart(png(bytes), ObjectSize{50, 0, true}, {.percent = 200}) == bytes);
  // Even one that is too large to be decoded.
  const std::string huge = std::string("\x89PNG\r\n\x1A\n", 8) + pngHeader(40'000, 2'000, 8, 6) +
                           pngChunk("IDAT", "xx") + pngChunk("IEND", "");
  EXPECT_TRUE(drawChart(png(huge), {}, {}) == huge);
  EXPECT_EQ(problemOf(png(huge), {}, {.percent = 1}),
            "The picture has 80 million pixels, more than 64 million.");
}

#if VORN_HAS_DRAWING

constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kRed = 0xFF0000FF;
constexpr std::uint32_t kGreen = 0x00FF00FF;
constexpr std::uint32_t kBlue = 0x0000FFFF;

/// Red, green, blue and nothing, each in its quarter.
const std::string kQuarters =
    "<rect width='10' height='5' fill='#f00'/><rect x='10' width='10' height='5' fill='#0f0'/>"
    "<rect y='5' width='10' height='5' fill='#00f'/>";

/// A picture as it stands inside a chart.
std::string address(const std::string& type, const std::string& bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "data:image/" + type + ",";
  for (const char c : bytes) {
    text += '%';
    text += kDigits[static_cast<unsigned char>(c) / 16];
    text += kDigits[static_cast<unsigned char>(c) % 16];
  }
  return text;
}

Pixels bmpOf(const MediaContent& chart, const std::optional<ObjectSize>& size = {},
             ImageOptions options = {}) {
  options.format = ImageFormat::kBmp;
  return pixelsOfBmp(drawChart(chart, size, options));
}

TEST(ChartImage, SizeIsTheShownOneInPixels) {
  struct Case {
    std::optional<ObjectSize> size;
    double percent;
    double dotsPerInch;
    std::uint32_t width;
    std::uint32_t height;
  };
  const MediaContent chart = svg("width='72pt' height='36pt'");
  const Case cases[] = {
      {{}, 100, 96, 96, 48},
      {{}, 50, 96, 48, 24},
      {{}, 100, 192, 192, 96},
      {{}, 100, 72, 72, 36},
      {{}, 33, 96, 32, 16},
      {{}, 0.01, 96, 1, 1},
      {ObjectSize{144, 0, false}, 100, 96, 192, 96},
      {ObjectSize{144, 36, false}, 100, 96, 192, 48},
      {ObjectSize{50, 200, true}, 100, 96, 48, 96},
      {ObjectSize{50, 0, true}, 200, 48, 48, 24},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.width) + " by " + std::to_string(c.height));
    const ImageOptions options{.percent = c.percent, .dotsPerInch = c.dotsPerInch};
    const Pixels bmp = bmpOf(chart, c.size, options);
    EXPECT_EQ(bmp.width, c.width);
    EXPECT_EQ(bmp.height, c.height);
    const std::string file = drawChart(chart, c.size, options);
    EXPECT_EQ(bigEndian(file, 16), c.width);
    EXPECT_EQ(bigEndian(file, 20), c.height);
  }
}

void expectQuarters(const Pixels& pixels, std::uint32_t ground) {
  const std::uint32_t right = pixels.width - 1;
  const std::uint32_t bottom = pixels.height - 1;
  EXPECT_EQ(pixels.at(0, 0), kRed);
  EXPECT_EQ(pixels.at(right / 2, bottom / 2), kRed);
  EXPECT_EQ(pixels.at(right / 2 + 1, 0), kGreen);
  EXPECT_EQ(pixels.at(right, bottom / 2), kGreen);
  EXPECT_EQ(pixels.at(0, bottom), kBlue);
  EXPECT_EQ(pixels.at(right / 2, bottom / 2 + 1), kBlue);
  EXPECT_EQ(pixels.at(right, bottom), ground);
}

TEST(ChartImage, ColoursStandWhereTheSvgPutsThem) {
  // 18 pixels, so that the rows of a BMP are padded.
  const std::optional<ObjectSize> sizes[] = {{}, ObjectSize{13.5, 7.5, false}};
  for (const auto& size : sizes) {
    const MediaContent chart = svg("width='20' height='10'", kQuarters);
    const ImageOptions tripled{.percent = 300};
    expectQuarters(bmpOf(chart, size), kWhite);
    expectQuarters(bmpOf(chart, size, tripled), kWhite);
    expectQuarters(pixelsOfPng(drawChart(chart, size, {})), 0);
    expectQuarters(pixelsOfPng(drawChart(chart, size, tripled)), 0);
  }
}

TEST(ChartImage, SvgWithAViewBoxKeepsItsProportionsAndOneWithoutIsStretched) {
  const ObjectSize square{15, 15, false};
  const Pixels kept = bmpOf(svg("viewBox='0 0 20 10'", kQuarters), square);
  EXPECT_EQ(kept.at(0, 0), kWhite);
  EXPECT_EQ(kept.at(0, 5), kRed);
  EXPECT_EQ(kept.at(0, 14), kBlue);
  EXPECT_EQ(kept.at(0, 15), kWhite);
  expectQuarters(bmpOf(svg("width='20' height='10'", kQuarters), square), kWhite);
  expectQuarters(bmpOf(svg("viewBox='0 0 20 10' preserveAspectRatio='none'", kQuarters), square),
                 kWhite);
}

TEST(ChartImage, PngIsDrawnInItsColours) {
  const std::string samples("\xFF\0\0\xFF\0\xFF\0\xFF\0\0\xFF\xFF\xFF\xFF\xFF\0", 16);
  const MediaContent chart = png(pngOf(2, 2, 6, samples));
  expectQuarters(bmpOf(chart), kWhite);
  const Pixels doubled = pixelsOfPng(drawChart(chart, {}, {.percent = 800}));
  EXPECT_EQ(doubled.width, 16U);
  EXPECT_EQ(doubled.at(0, 0), kRed);
  EXPECT_EQ(doubled.at(15, 0), kGreen);
  EXPECT_EQ(doubled.at(0, 15), kBlue);
  EXPECT_EQ(doubled.at(15, 15) & 0xFFU, 0U);
}

TEST(ChartImage, EveryKindOfPngIsRead) {
  struct Case {
    char type;
    std::string sample;
    std::uint32_t pixel;
    std::string palette = {};
  };
  const Case cases[] = {
      {0, "\x40", 0x404040FF},
      {2, "\x10\x20\x30", 0x102030FF},
      {3, std::string(1, '\1'), 0x102030FF, "xyz\x10\x20\x30"},
      {4, std::string("\x40\0", 2), kWhite},
      {6, "\x10\x20\x30\xFF", 0x102030FF},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(int{c.type});
    EXPECT_EQ(bmpOf(png(pngOf(1, 1, c.type, c.sample, c.palette))).at(0, 0), c.pixel);
  }
}

TEST(ChartImage, DamagedPngIsRefusedWhateverItPromises) {
  for (const std::uint32_t side : {1U, 8'000U}) {
    const std::string bytes = std::string("\x89PNG\r\n\x1A\n", 8) + pngHeader(side, side, 8, 6) +
                              pngChunk("IDAT", "xx") + pngChunk("IEND", "");
    const std::string problem = problemOf(png(bytes), {}, {.format = ImageFormat::kJpg});
    EXPECT_EQ(problem, "The chart is not drawn: its pixels are damaged, or memory ran out.");
  }
}

TEST(ChartImage, GroundIsTransparentInPngAndWhiteElsewhere) {
  const MediaContent empty = svg("width='4' height='4'");
  const std::string half = "<rect width='4' height='4' fill='#f00' fill-opacity='.5'/>";
  EXPECT_EQ(pixelsOfPng(drawChart(empty, {}, {})).at(3, 3), 0U);
  EXPECT_EQ(bmpOf(empty).at(3, 3), kWhite);
  const std::uint32_t mixed =
      pixelsOfPng(drawChart(svg("width='4' height='4'", half), {}, {})).at(1, 1);
  EXPECT_EQ(mixed >> 8U, 0xFF0000U);
  EXPECT_NEAR(mixed & 255U, 128, 1);
  EXPECT_NEAR(bmpOf(svg("width='4' height='4'", half)).at(1, 1) >> 16U & 255U, 127, 1);
  const MediaContent white =
      svg("width='4' height='4'", "<rect width='4' height='4' fill='#fff'/>");
  const ImageOptions jpg{.format = ImageFormat::kJpg};
  EXPECT_TRUE(drawChart(empty, {}, jpg) == drawChart(white, {}, jpg));
}

TEST(ChartImage, GrayscaleHasTheBrightnessOfTheColours) {
  const MediaContent chart = svg("viewBox='0 0 20 10'", kQuarters);
  const std::string bmp = drawChart(chart, {}, {.format = ImageFormat::kBmp, .grayscale = true});
  EXPECT_EQ(littleEndian(bmp, 28, 2), 8U);
  const Pixels gray = pixelsOfBmp(bmp);
  EXPECT_EQ(gray.at(0, 0), 0x4C4C4CFFU);
  EXPECT_EQ(gray.at(19, 0), 0x969696FFU);
  EXPECT_EQ(gray.at(0, 9), 0x1D1D1DFFU);
  EXPECT_EQ(gray.at(19, 9), kWhite);
  const Pixels png = pixelsOfPng(drawChart(chart, {}, {.grayscale = true}));
  EXPECT_EQ(png.at(0, 0), 0x4C4C4CFFU);
  EXPECT_EQ(png.at(19, 9), 0U);
}

TEST(ChartImage, RunLengthsHoldTheSamePixels) {
  // Longer than a run may be.
  const MediaContent chart = svg("viewBox='0 0 20 10' width='600'", kQuarters);
  ImageOptions options{.format = ImageFormat::kBmp, .grayscale = true};
  const std::string plain = drawChart(chart, {}, options);
  options.compressBmp = true;
  const std::string packed = drawChart(chart, {}, options);
  EXPECT_EQ(littleEndian(packed, 30), 1U);
  EXPECT_LT(packed.size(), plain.size() / 10);
  EXPECT_EQ(pixelsOfBmp(packed), pixelsOfBmp(plain));
  options.grayscale = false;
  EXPECT_EQ(littleEndian(drawChart(chart, {}, options), 30), 0U);
}

struct JpgFrame {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t components = 0;
};

JpgFrame frameOf(const std::string& jpg) {
  for (std::size_t at = 2; at < jpg.size(); at += 2 + bigEndian(jpg, at + 2, 2)) {
    if (bigEndian(jpg, at, 2) == 0xFFC0) {
      return {bigEndian(jpg, at + 7, 2), bigEndian(jpg, at + 5, 2), bigEndian(jpg, at + 9, 1)};
    }
  }
  return {};
}

TEST(ChartImage, JpgIsWholeAndAsLargeAsTheImage) {
  const MediaContent chart = svg("viewBox='0 0 20 10'", kQuarters);
  for (const bool grayscale : {false, true}) {
    const std::string jpg =
        drawChart(chart, {}, {.format = ImageFormat::kJpg, .percent = 250, .grayscale = grayscale});
    EXPECT_EQ(bigEndian(jpg, 0, 3), 0xFFD8FFU);
    EXPECT_EQ(bigEndian(jpg, jpg.size() - 2, 2), 0xFFD9U);
    const JpgFrame frame = frameOf(jpg);
    EXPECT_EQ(frame.width, 50U);
    EXPECT_EQ(frame.height, 25U);
    EXPECT_EQ(frame.components, grayscale ? 1U : 3U);
  }
}

TEST(ChartImage, JpgHasTheColoursOfTheChart) {
  // The chart again, from a JPG inside of an SVG.
  const std::string jpg = drawChart(svg("viewBox='0 0 20 10'", kQuarters), {},
                                    {.format = ImageFormat::kJpg, .percent = 800});
  const Pixels pixels =
      bmpOf(svg("width='160' height='80'",
                "<image width='160' height='80' xlink:href='" + address("jpeg", jpg) + "'/>"));
  const auto expectNear = [&](std::uint32_t x, std::uint32_t y, std::uint32_t wanted) {
    for (const int shift : {8, 16, 24}) {
      EXPECT_NEAR(pixels.at(x, y) >> shift & 255U, wanted >> shift & 255U, 3) << x << ' ' << y;
    }
  };
  expectNear(40, 20, kRed);
  expectNear(120, 20, kGreen);
  expectNear(40, 60, kBlue);
  expectNear(120, 60, kWhite);
}

TEST(ChartImage, NothingOutsideOfTheChartIsRead) {
  const ScratchDirectory directory;
  const std::string file = directory.write("red.png", pngOf(1, 1, 2, std::string("\xFF\0\0", 3)));
  for (const std::string& place : {"file://" + file, file, std::string("red.png")}) {
    const std::string body = "<image width='9' height='9' xlink:href='" + place + "'/>";
    EXPECT_EQ(bmpOf(svg("width='9' height='9'", body)).at(4, 4), kWhite) << place;
  }
}

TEST(ChartImage, LoopsEnd) {
  const std::string body =
      "<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>" + kQuarters;
  EXPECT_EQ(bmpOf(svg("width='20' height='10'", body)).at(0, 0), kRed);
}

TEST(ChartImage, WhatBringsALibraryDownEndsNothingElse) {
  // A kernel that is larger than what it runs over.
  std::string kernel;
  for (int i = 0; i < 90'000; ++i) kernel += "1 ";
  const std::string body = "<filter id='f'><feConvolveMatrix order='300' kernelMatrix='" + kernel +
                           "'/></filter><rect width='1000' height='1000' filter='url(#f)'/>";
  const std::string problem = problemOf(svg("width='1000' height='1000'", body));
  EXPECT_TRUE(problem == "none" || problem.starts_with("The chart is not drawn: ")) << problem;
  EXPECT_EQ(bmpOf(svg("width='20' height='10'", kQuarters)).at(0, 0), kRed);
}

TEST(ChartImage, PictureInAChartThatPromisesTooMuchCostsNothingHere) {
  // 40,000 by 40,000 pixels, 6.4 GB.
  const std::string bomb = std::string("\x89PNG\r\n\x1A\n", 8) + pngHeader(40'000, 40'000, 8, 6) +
                           pngChunk("IDAT", "xx") + pngChunk("IEND", "");
  const std::string problem =
      problemOf(svg("width='9' height='9'",
                    "<image width='9' height='9' xlink:href='" + address("png", bomb) + "'/>"));
  EXPECT_TRUE(problem == "none" || problem.starts_with("The chart is not drawn: ")) << problem;
}

TEST(ChartImage, ChartsOfTheExamplesAreDrawn) {
  for (const char* name : {"air", "titanic", "sunspots"}) {
    SCOPED_TRACE(name);
    const MediaContent chart =
        media(kSvgMediaType,
              fileContent(std::string(VORN_SOURCE_DIR "/examples/open-data/") + name + ".svg"));
    const auto size = naturalSize(chart);
    ASSERT_TRUE(size);
    const Pixels pixels = bmpOf(chart);
    EXPECT_EQ(pixels.width, std::lround(size->width / kPointsPerPixel));
    std::size_t dark = 0;
    for (const std::uint32_t pixel : pixels.values) dark += pixel != kWhite ? 1 : 0;
    EXPECT_GT(dark, pixels.values.size() / 50);
  }
}

#endif

}  // namespace
}  // namespace vornwout
