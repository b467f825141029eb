#include "host/draw_module/image_writer.h"

#include <new>
#include <utility>

#include "host/draw_module/picture_surface.h"

namespace vornwout {
namespace {

/// What of the PNG is there already, and whether memory ran out behind it.
struct PngBytes {
  std::string bytes;
  bool isCut = false;
};

cairo_status_t appendNext(void* closure, const unsigned char* data, unsigned int length) {
  auto& png = *static_cast<PngBytes*>(closure);
  try {
    png.bytes.append(reinterpret_cast<const char*>(data), length);
  } catch (const std::bad_alloc&) {
    // It cannot pass through the C functions that called.
    png.isCut = true;
    return CAIRO_STATUS_NO_MEMORY;
  }
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

PixelRows::PixelRows(cairo_surface_t& surface) {
  cairo_surface_flush(&surface);
  data_ = cairo_image_surface_get_data(&surface);
  stride_ = cairo_image_surface_get_stride(&surface);
  width_ = cairo_image_surface_get_width(&surface);
  height_ = cairo_image_surface_get_height(&surface);
}

std::uint32_t* PixelRows::row(int y) const {
  // Cairo aligns every row for its pixels.
  return static_cast<std::uint32_t*>(static_cast<void*>(data_ + y * stride_));
}

void makeGray(cairo_surface_t& surface) {
  const PixelRows pixels(surface);
  for (int y = 0; y < pixels.height(); ++y) {
    std::uint32_t* const row = pixels.row(y);
    for (int x = 0; x < pixels.width(); ++x) {
      const std::uint32_t pixel = row[x];
      // Rec. 601 in 65536ths, which add up to one: white stays white.
      const std::uint32_t gray = (19595 * (pixel >> 16U & 255U) + 38470 * (pixel >> 8U & 255U) +
                                  7471 * (pixel & 255U) + 32768) >>
                                 16U;
      row[x] = (pixel & 0xFF000000U) | gray << 16U | gray << 8U | gray;
    }
  }
  cairo_surface_mark_dirty(&surface);
}

std::string pngFile(cairo_surface_t& surface) {
  PngBytes png;
  const cairo_status_t status = cairo_surface_write_to_png_stream(&surface, appendNext, &png);
  if (png.isCut) throw std::bad_alloc();
  checkCairo(status);
  return std::move(png.bytes);
}

}  // namespace vornwout
