// The module that draws, behind host/draw/draw_module.h: librsvg and Cairo draw, libjpeg packs.
//
// What it is asked for was checked by the host. It keeps nothing between two charts; the libraries
// keep their caches. Nothing is thrown through their C functions.
#include <new>
#include <stdexcept>

#include "host/draw_module/image_writer.h"
#include "host/draw_module/picture_surface.h"

namespace vornwout {

void checkCairo(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  if (status == CAIRO_STATUS_NO_MEMORY) throw std::bad_alloc();
  throw std::runtime_error(cairo_status_to_string(status));
}

namespace {

class CairoModule : public DrawModule {
 public:
  std::string draw(const DrawRequest& request) override {
    const Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, request.width, request.height));
    checkCairo(cairo_surface_status(surface.get()));
    paint(*surface, request);
    if (request.grayscale) makeGray(*surface);
    switch (request.format) {
      case ImageFormat::kJpg:
        return jpgFile(PixelRows(*surface), request.grayscale);
      case ImageFormat::kBmp:
        return bmpFile(PixelRows(*surface), request.grayscale, request.compressBmp);
      case ImageFormat::kPng:
        break;
    }
    return pngFile(*surface);
  }

 private:
  static void paint(cairo_surface_t& surface, const DrawRequest& request) {
    const Context context(cairo_create(&surface));
    if (request.format != ImageFormat::kPng) {
      cairo_set_source_rgb(context.get(), 1, 1, 1);
      cairo_paint(context.get());
    }
    if (request.isSvg) {
      drawSvg(*context, request);
    } else {
      drawPng(*context, request);
    }
    checkCairo(cairo_status(context.get()));
    checkCairo(cairo_surface_status(&surface));
  }
};

}  // namespace
}  // namespace vornwout

extern "C" __attribute__((visibility("default"))) vornwout::DrawModule* vorndrawModule() {
  // Never destroyed: it serves until the process ends.
  static auto* const module = new vornwout::CairoModule;
  return module;
}
