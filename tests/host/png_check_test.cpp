#include "host/build/png_check.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/png_picture.h"

namespace vornwout {
namespace {

const std::string kSignature("\x89PNG\r\n\x1A\n", 8);

const std::string kData = pngChunk("IDAT", "xx");
const std::string kEnd = pngChunk("IEND", "");

TEST(PngCheck, SoundPicturesAreTaken) {
  EXPECT_EQ(pngProblem(kSignature + pngHeader(1, 1, 8, 6) + kData + kData + kEnd), "");
  EXPECT_EQ(
      pngProblem(kSignature + pngHeader(65535, 1, 1, 0) + pngChunk("tEXt", "a") + kData + kEnd),
      "");
  EXPECT_EQ(pngProblem(kSignature + pngHeader(1, 1, 4, 3) + pngChunk("PLTE", "rgb") + kData + kEnd),
            "");
}

TEST(PngCheck, WhatIsWrongIsSaid) {
  const std::string sound = pngHeader(1, 1, 8, 2);
  struct Case {
    std::string bytes;
    const char* problem;
  };
  std::string flipped = kSignature + sound + kData + kEnd;
  flipped[45] = static_cast<char>(flipped[45] ^ 1);
  const Case cases[] = {
      {"", "This is no PNG file."},
      {"GIF89a", "This is no PNG file."},
      {kSignature, "The picture is cut off."},
      {kSignature + sound + kData, "The picture is cut off."},
      {kSignature + pngNumber(0xFFFFFFFFU) + "IHDR" + std::string(20, 'x'),
       "The picture is cut off."},
      {flipped, "The picture is damaged: the checksum of its part IDAT does not fit."},
      {kSignature + kData + kEnd, "The picture does not start with its header."},
      {kSignature + pngChunk("IHDR", "x") + kEnd, "The picture's header has a wrong size."},
      {kSignature + pngHeader(0, 1, 8, 2) + kData + kEnd, "The picture is empty."},
      {kSignature + pngHeader(65536, 1, 8, 2) + kData + kEnd,
       "The picture is too large: 65536 by 1 pixels."},
      {kSignature + pngHeader(20000, 20000, 8, 2) + kData + kEnd,
       "The picture is too large: 20000 by 20000 pixels."},
      {kSignature + pngHeader(1, 1, 4, 2) + kData + kEnd,
       "The picture's header names a form of colours that there is not."},
      {kSignature + pngHeader(1, 1, 0, 2) + kData + kEnd,
       "The picture's header names a form of colours that there is not."},
      {kSignature + pngHeader(1, 1, 8, 5) + kData + kEnd,
       "The picture's header names a form of colours that there is not."},
      {kSignature + sound + sound + kData + kEnd, "The picture has two headers."},
      {kSignature + sound + kEnd, "The picture has no pixels."},
      {kSignature + pngHeader(1, 1, 8, 3) + kData + kEnd, "The picture's palette is missing."},
      {kSignature + sound + pngChunk("PLTE", "rg") + kData + kEnd,
       "The picture's palette is wrong."},
      {kSignature + sound + kData + kEnd + "x", "Something stands behind the picture."},
      {kSignature + sound + pngChunk("ABCD", "") + kData + kEnd,
       "The picture has a part ABCD that must be understood and is not."},
      {kSignature + sound + pngChunk("A\n\tD", ""), "A part of the picture has no name."},
  };
  for (const Case& c : cases) EXPECT_EQ(pngProblem(c.bytes), c.problem);
}

TEST(PngCheck, EveryCutIsNoticed) {
  const std::string whole = kSignature + pngHeader(1, 1, 8, 2) + kData + kEnd;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(pngProblem(std::string_view(whole).substr(0, length)), "") << length;
  }
}

}  // namespace
}  // namespace vornwout
