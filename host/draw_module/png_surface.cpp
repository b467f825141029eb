// PNG onto a surface, by Cairo, which reads it as well.
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "host/draw_module/picture_surface.h"

namespace vornwout {
namespace {

cairo_status_t readNext(void* closure, unsigned char* data, unsigned int length) {
  auto& rest = *static_cast<std::string_view*>(closure);
  if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, rest.data(), length);
  rest.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

void drawPng(cairo_t& context, const DrawRequest& request) {
  std::string_view rest = request.bytes;
  const Surface picture(cairo_image_surface_create_from_png_stream(readNext, &rest));
  // Cairo reports both by the same status.
  if (cairo_surface_status(picture.get()) == CAIRO_STATUS_NO_MEMORY) {
    throw std::runtime_error("its pixels are damaged, or memory ran out");
  }
  checkCairo(cairo_surface_status(picture.get()));
  const int width = cairo_image_surface_get_width(picture.get());
  const int height = cairo_image_surface_get_height(picture.get());
  cairo_scale(&context, static_cast<double>(request.width) / width,
              static_cast<double>(request.height) / height);
  cairo_set_source_surface(&context, picture.get(), 0, 0);
  // Without it the picture's border would be mixed with what is around it, which is nothing.
  cairo_pattern_set_extend(cairo_get_source(&context), CAIRO_EXTEND_PAD);
  cairo_pattern_set_filter(cairo_get_source(&context), CAIRO_FILTER_GOOD);
  cairo_rectangle(&context, 0, 0, width, height);
  cairo_fill(&context);
}

}  // namespace vornwout
