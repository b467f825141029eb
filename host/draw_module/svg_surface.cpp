// SVG onto a surface, by librsvg. The chart has no address that anything in it could be relative
// to, so nothing outside of it is found.
#include <memory>
#include <stdexcept>

#include <librsvg/rsvg.h>

#include "host/draw_module/picture_surface.h"

namespace vornwout {
namespace {

/// Pixels of style sheets in an inch.
constexpr double kDotsPerInch = 96;

struct GlibRelease {
  void operator()(GInputStream* stream) const { g_object_unref(stream); }
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
  void operator()(GError* error) const { g_error_free(error); }
};

[[noreturn]] void throwError(GError* raw) {
  const std::unique_ptr<GError, GlibRelease> error(raw);
  throw std::runtime_error(error == nullptr ? "librsvg does not say why." : error->message);
}

std::unique_ptr<RsvgHandle, GlibRelease> loadedSvg(std::string_view svg) {
  const std::unique_ptr<GInputStream, GlibRelease> stream(
      g_memory_input_stream_new_from_data(svg.data(), static_cast<gssize>(svg.size()), nullptr));
  GError* error = nullptr;
  // Pictures in it may be long; how long and how deep an SVG may be was checked before.
  std::unique_ptr<RsvgHandle, GlibRelease> handle(rsvg_handle_new_from_stream_sync(
      stream.get(), nullptr, RSVG_HANDLE_FLAG_UNLIMITED, nullptr, &error));
  if (handle == nullptr) throwError(error);
  rsvg_handle_set_dpi(handle.get(), kDotsPerInch);
  return handle;
}

}  // namespace

void drawSvg(cairo_t& context, const DrawRequest& request) {
  const auto handle = loadedSvg(request.bytes);
  gboolean hasViewBox = FALSE;
  rsvg_handle_get_intrinsic_dimensions(handle.get(), nullptr, nullptr, nullptr, nullptr,
                                       &hasViewBox, nullptr);
  double width = request.shownWidth;
  double height = request.shownHeight;
  if (hasViewBox == FALSE) {
    // Nothing in it says how it fits another size: it is stretched, as browsers do.
    double ownWidth = 0;
    double ownHeight = 0;
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &ownWidth, &ownHeight) != FALSE &&
        ownWidth > 0 && ownHeight > 0) {
      width = ownWidth;
      height = ownHeight;
    }
  }
  cairo_scale(&context, request.width / width, request.height / height);
  const RsvgRectangle viewport{0, 0, width, height};
  GError* error = nullptr;
  if (rsvg_handle_render_document(handle.get(), &context, &viewport, &error) == FALSE) {
    throwError(error);
  }
}

}  // namespace vornwout
