// Pictures as their pixels, and pixels as a PNG: just as much of PNG and BMP as tests need, written
// without what is tested.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/store/deflate.h"
#include "tests/support/png_picture.h"

namespace vornwout {

struct Pixels {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<std::uint32_t> values;  ///< 0xRRGGBBAA, from the top to the bottom
  std::uint32_t at(std::uint32_t x, std::uint32_t y) const { return values.at(y * width + x); }
  friend bool operator==(const Pixels&, const Pixels&) = default;
};

inline std::uint32_t littleEndian(std::string_view bytes, std::size_t at, int count = 4) {
  std::uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) {
    value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
  }
  return value;
}

inline std::uint32_t bigEndian(std::string_view bytes, std::size_t at, int count = 4) {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i) {
    value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
  }
  return value;
}

/// A PNG of 8 bits in a sample; `samples` are its rows, one after the other.
inline std::string pngOf(std::uint32_t width, std::uint32_t height, char type,
                         const std::string& samples, const std::string& palette = "") {
  std::string rows;
  const std::size_t stride = samples.size() / height;
  for (std::size_t at = 0; at < samples.size(); at += stride) {
    rows += '\0';
    rows += samples.substr(at, stride);
  }
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (const char c : rows) {
    a = (a + static_cast<unsigned char>(c)) % 65521;
    b = (b + a) % 65521;
  }
  // One block that is stored as it is.
  const auto length = static_cast<std::uint32_t>(rows.size());
  std::string block("\x78\x01\x01", 3);
  for (const std::uint32_t half : {length, ~length}) {
    block += static_cast<char>(half & 255U);
    block += static_cast<char>(half >> 8U & 255U);
  }
  block += rows + pngNumber(b << 16U | a);
  return std::string("\x89PNG\r\n\x1A\n", 8) + pngHeader(width, height, 8, type) +
         (palette.empty() ? "" : pngChunk("PLTE", palette)) + pngChunk("IDAT", block) +
         pngChunk("IEND", "");
}

/// Of a PNG with 8 bits in a sample, as RGB or RGBA.
inline Pixels pixelsOfPng(std::string_view png) {
  Pixels pixels{bigEndian(png, 16), bigEndian(png, 20), {}};
  const bool hasAlpha = png.at(25) == 6;
  if (png.at(24) != 8 || (!hasAlpha && png.at(25) != 2)) throw std::runtime_error("no such PNG");
  std::string packed;
  for (std::size_t at = 8; at < png.size(); at += 12 + bigEndian(png, at)) {
    if (png.substr(at + 4, 4) == "IDAT") packed += png.substr(at + 8, bigEndian(png, at));
  }
  const std::size_t unit = hasAlpha ? 4 : 3;
  const std::size_t stride = pixels.width * unit;
  std::string raw((stride + 1) * pixels.height, '\0');
  if (!inflateAll(std::string_view(packed).substr(2, packed.size() - 6), raw)) {
    throw std::runtime_error("a damaged PNG");
  }
  std::vector<int> above(stride);
  for (std::uint32_t y = 0; y < pixels.height; ++y) {
    const std::size_t start = y * (stride + 1);
    std::vector<int> row(stride);
    for (std::size_t i = 0; i < stride; ++i) {
      const int left = i < unit ? 0 : row[i - unit];
      const int corner = i < unit ? 0 : above[i - unit];
      const int up = above[i];
      int guess = 0;
      switch (raw[start]) {
        case 1:
          guess = left;
          break;
        case 2:
          guess = up;
          break;
        case 3:
          guess = (left + up) / 2;
          break;
        case 4: {
          const int sum = left + up - corner;
          const int toLeft = std::abs(sum - left);
          const int toUp = std::abs(sum - up);
          const int toCorner = std::abs(sum - corner);
          guess = toLeft <= toUp && toLeft <= toCorner ? left : toUp <= toCorner ? up : corner;
          break;
        }
        default:
          break;
      }
      row[i] = (static_cast<unsigned char>(raw[start + 1 + i]) + guess) & 255;
    }
    for (std::size_t i = 0; i < stride; i += unit) {
      std::uint32_t value = 0;
      for (std::size_t k = 0; k < 4; ++k) {
        value = value << 8U | static_cast<std::uint32_t>(k < unit ? row[i + k] : 255);
      }
      pixels.values.push_back(value);
    }
    above = row;
  }
  return pixels;
}

/// Of a BMP of 24 bits, or of 8 with a palette and perhaps in run lengths.
inline Pixels pixelsOfBmp(std::string_view bmp) {
  if (bmp.substr(0, 2) != "BM" || littleEndian(bmp, 2) != bmp.size() ||
      littleEndian(bmp, 14) != 40 || littleEndian(bmp, 26, 2) != 1) {
    throw std::runtime_error("no such BMP");
  }
  Pixels pixels{littleEndian(bmp, 18), littleEndian(bmp, 22), {}};
  const std::uint32_t bits = littleEndian(bmp, 28, 2);
  const bool isPacked = littleEndian(bmp, 30) == 1;
  const std::size_t start = littleEndian(bmp, 10);
  pixels.values.resize(std::size_t{pixels.width} * pixels.height);
  const auto put = [&](std::uint32_t x, std::uint32_t fromBottom, std::uint32_t rgb) {
    pixels.values.at((pixels.height - 1 - fromBottom) * pixels.width + x) = rgb << 8U | 255U;
  };
  const auto ofPalette = [&](std::size_t at) {
    return littleEndian(bmp, 54 + 4 * littleEndian(bmp, at, 1)) & 0xFFFFFFU;
  };
  if (isPacked) {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    for (std::size_t at = start;; at += 2) {
      const std::uint32_t count = littleEndian(bmp, at, 1);
      for (std::uint32_t i = 0; i < count; ++i) put(x++, y, ofPalette(at + 1));
      if (count != 0) continue;
      if (x != pixels.width) throw std::runtime_error("a row has another length");
      if (littleEndian(bmp, at + 1, 1) == 1) {
        if (at + 2 != bmp.size()) throw std::runtime_error("something stands behind the rows");
        return pixels;
      }
      x = 0;
      ++y;
    }
  }
  const std::size_t stride = (pixels.width * bits / 8 + 3) / 4 * 4;
  if (start + stride * pixels.height != bmp.size()) throw std::runtime_error("another length");
  for (std::uint32_t y = 0; y < pixels.height; ++y) {
    for (std::uint32_t x = 0; x < pixels.width; ++x) {
      const std::size_t at = start + y * stride + x * bits / 8;
      put(x, y, bits == 8 ? ofPalette(at) : littleEndian(bmp, at, 3));
    }
  }
  return pixels;
}

}  // namespace vornwout
