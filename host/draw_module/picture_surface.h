// Handles of Cairo, and the two ways in which a chart becomes pixels.
#pragma once

#include <memory>

#include <cairo/cairo.h>

#include "host/draw/draw_module.h"

namespace vornwout {

struct CairoRelease {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Context = std::unique_ptr<cairo_t, CairoRelease>;
using Surface = std::unique_ptr<cairo_surface_t, CairoRelease>;

/// Throws std::bad_alloc for want of memory, std::runtime_error for any other failure.
void checkCairo(cairo_status_t status);

/// Draws the SVG over all of the request's image.
void drawSvg(cairo_t& context, const DrawRequest& request);

/// Draws the PNG over all of the request's image.
void drawPng(cairo_t& context, const DrawRequest& request);

}  // namespace vornwout
