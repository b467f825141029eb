// Pixels as the bytes of an image file: PNG by Cairo, JPG by libjpeg, BMP here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <cairo/cairo.h>

namespace vornwout {

/// The pixels of a surface in Cairo's format ARGB32: alpha in the highest eight bits, blue in the
/// lowest, colours already multiplied by alpha. Valid as long as the surface is.
class PixelRows {
 public:
  /// The surface holds everything that was drawn.
  explicit PixelRows(cairo_surface_t& surface);
  int width() const { return width_; }
  int height() const { return height_; }
  std::uint32_t* row(int y) const;

 private:
  unsigned char* data_ = nullptr;
  std::ptrdiff_t stride_ = 0;
  int width_ = 0;
  int height_ = 0;
};

/// Takes the colours out of a surface.
void makeGray(cairo_surface_t& surface);

/// All three throw std::runtime_error and std::bad_alloc. What `isGray` says is true of the pixels.
std::string pngFile(cairo_surface_t& surface);
std::string jpgFile(const PixelRows& pixels, bool isGray);
std::string bmpFile(const PixelRows& pixels, bool isGray, bool compress);

}  // namespace vornwout
