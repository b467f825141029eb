#include "host/build/png_check.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace vornwout {
namespace {

const std::string kSignature("\x89PNG\r\n\x1A\n", 8);

std::string number(std::uint32_t value) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(value >> shift & 0xFFU);
  return bytes;
}

/// The checksum of PNG, bit by bit.
std::uint32_t checksum(const std::string& bytes) {
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~sum;
}

std::string chunk(const std::string& name, const std::string& data) {
  return number(static_cast<std::uint32_t>(data.size())) + name + data +
         number(checksum(name + data));
}

std::string header(std::uint32_t width, std::uint32_t height, char depth, char type) {
  return chunk("IHDR", number(width) + number(height) + depth + type + std::string(3, '\0'));
}

const std::string kData = chunk("IDAT", "xx");
const std::string kEnd = chunk("IEND", "");

TEST(PngCheck, SoundPicturesAreTaken) {
  EXPECT_EQ(pngProblem(kSignature + header(1, 1, 8, 6) + kData + kData + kEnd), "");
  EXPECT_EQ(pngProblem(kSignature + header(65535, 1, 1, 0) + chunk("tEXt", "a") + kData + kEnd),
            "");
  EXPECT_EQ(pngProblem(kSignature + header(1, 1, 4, 3) + chunk("PLTE", "rgb") + kData + kEnd), "");
}

TEST(PngCheck, WhatIsWrongIsSaid) {
  const std::string sound = header(1, 1, 8, 2);
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
      {kSignature + number(0xFFFFFFFFU) + "IHDR" + std::string(20, 'x'), "The picture is cut off."},
      {flipped, "The picture is damaged: the checksum of its part IDAT does not fit."},
      {kSignature + kData + kEnd, "The picture does not start with its header."},
      {kSignature + chunk("IHDR", "x") + kEnd, "The picture's header has a wrong size."},
      {kSignature + header(0, 1, 8, 2) + kData + kEnd, "The picture is empty."},
      {kSignature + header(65536, 1, 8, 2) + kData + kEnd,
       "The picture is too large: 65536 by 1 pixels."},
      {kSignature + header(20000, 20000, 8, 2) + kData + kEnd,
       "The picture is too large: 20000 by 20000 pixels."},
      {kSignature + header(1, 1, 4, 2) + kData + kEnd,
       "The picture's header names a form of colours that there is not."},
      {kSignature + header(1, 1, 0, 2) + kData + kEnd,
       "The picture's header names a form of colours that there is not."},
      {kSignature + header(1, 1, 8, 5) + kData + kEnd,
       "The picture's header names a form of colours that there is not."},
      {kSignature + sound + sound + kData + kEnd, "The picture has two headers."},
      {kSignature + sound + kEnd, "The picture has no pixels."},
      {kSignature + header(1, 1, 8, 3) + kData + kEnd, "The picture's palette is missing."},
      {kSignature + sound + chunk("PLTE", "rg") + kData + kEnd, "The picture's palette is wrong."},
      {kSignature + sound + kData + kEnd + "x", "Something stands behind the picture."},
      {kSignature + sound + chunk("ABCD", "") + kData + kEnd,
       "The picture has a part ABCD that must be understood and is not."},
      {kSignature + sound + chunk("A\n\tD", ""), "A part of the picture has no name."},
  };
  for (const Case& c : cases) EXPECT_EQ(pngProblem(c.bytes), c.problem);
}

TEST(PngCheck, EveryCutIsNoticed) {
  const std::string whole = kSignature + header(1, 1, 8, 2) + kData + kEnd;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(pngProblem(std::string_view(whole).substr(0, length)), "") << length;
  }
}

}  // namespace
}  // namespace vornwout
