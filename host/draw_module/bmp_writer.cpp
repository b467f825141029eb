// BMP: a file header of 14 bytes, a BITMAPINFOHEADER, a palette of grays where pixels have 8 bits,
// and the rows from the bottom to the top, each padded to four bytes unless they are run lengths.
#include <cstddef>

#include "host/draw_module/image_writer.h"

namespace vornwout {
namespace {

constexpr std::uint32_t kFileHeaderSize = 14;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kPaletteSize = 256;
constexpr int kMaxRun = 255;

void append(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> 8 * i & 255U);
}

std::string paletteOfGrays() {
  std::string palette;
  for (std::uint32_t gray = 0; gray < kPaletteSize; ++gray) append(palette, gray * 0x10101U, 4);
  return palette;
}

/// Pairs of how often and what, a pair of 0 and 0 behind each row, of 0 and 1 behind the last.
std::string runsOf(const PixelRows& pixels) {
  std::string bytes;
  for (int y = pixels.height() - 1; y >= 0; --y) {
    const std::uint32_t* const row = pixels.row(y);
    for (int x = 0; x < pixels.width();) {
      int end = x + 1;
      while (end < pixels.width() && end - x < kMaxRun && (row[end] & 255U) == (row[x] & 255U)) {
        ++end;
      }
      append(bytes, static_cast<std::uint32_t>(end - x), 1);
      append(bytes, row[x], 1);
      x = end;
    }
    append(bytes, y == 0 ? 0x0100U : 0, 2);
  }
  return bytes;
}

std::string plainRows(const PixelRows& pixels, int bytesPerPixel) {
  const std::size_t used = static_cast<std::size_t>(pixels.width()) * bytesPerPixel;
  const std::size_t stride = (used + 3) / 4 * 4;
  std::string bytes(stride * pixels.height(), '\0');
  auto start = bytes.begin();
  for (int y = pixels.height() - 1; y >= 0; --y) {
    const std::uint32_t* const row = pixels.row(y);
    auto at = start;
    for (int x = 0; x < pixels.width(); ++x) {
      for (int i = 0; i < bytesPerPixel; ++i) *at++ = static_cast<char>(row[x] >> 8 * i & 255U);
    }
    start += static_cast<std::ptrdiff_t>(stride);
  }
  return bytes;
}

}  // namespace

std::string bmpFile(const PixelRows& pixels, bool isGray, bool compress) {
  const bool isPacked = isGray && compress;
  const std::string palette = isGray ? paletteOfGrays() : std::string();
  const std::string rows = isPacked ? runsOf(pixels) : plainRows(pixels, isGray ? 1 : 3);
  const std::uint32_t start =
      kFileHeaderSize + kInfoHeaderSize + static_cast<std::uint32_t>(palette.size());
  std::string bytes = "BM";
  bytes.reserve(start + rows.size());
  append(bytes, start + static_cast<std::uint32_t>(rows.size()), 4);
  append(bytes, 0, 4);
  append(bytes, start, 4);
  append(bytes, kInfoHeaderSize, 4);
  append(bytes, static_cast<std::uint32_t>(pixels.width()), 4);
  append(bytes, static_cast<std::uint32_t>(pixels.height()), 4);
  append(bytes, 1, 2);  // planes
  append(bytes, isGray ? 8 : 24, 2);
  append(bytes, isPacked ? 1 : 0, 4);
  append(bytes, static_cast<std::uint32_t>(rows.size()), 4);
  append(bytes, 0, 4);  // pixels in a meter, which are not said
  append(bytes, 0, 4);
  append(bytes, isGray ? kPaletteSize : 0, 4);
  append(bytes, 0, 4);  // all colours matter
  bytes += palette;
  bytes += rows;
  return bytes;
}

}  // namespace vornwout
