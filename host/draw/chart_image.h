// Charts as image files: SVG and PNG drawn as PNG, JPG or BMP.
//
// What draws stands in a module of its own (host/draw_module/), which is loaded for the first
// chart; a system without it has everything but these images. A chart is hostile until it is drawn:
// its size is bounded before anything is allocated for it; an SVG is drawn as sanitizeSvg() leaves
// it, with nothing fetched, and in a child process, for what its filters, masks and pictures take
// cannot be told beforehand.
//
// Entry point: drawChart().
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "host/document/document_object.h"
#include "host/document/object_content.h"

namespace vornwout {

/// Why a chart is not drawn: a sentence of at most 72 columns.
class DrawError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class ImageFormat { kPng, kJpg, kBmp };

struct ImageOptions {
  ImageFormat format = ImageFormat::kPng;
  double percent = 100;      ///< of the size at which the chart is shown
  double dotsPerInch = 96;   ///< pixels in 72 points
  bool grayscale = false;    ///< a BMP then has 8 bits in a pixel, otherwise 24
  bool compressBmp = false;  ///< by run lengths, which there is for 8 bits only
};

/// Longest side and most pixels of an image, and of a PNG that one is made of.
inline constexpr int kMaxImageSide = 32'767;
inline constexpr double kMaxImagePixels = 64e6;

/// The chart as the bytes of an image file. It is as large as shownSize() tells for `size`. The
/// ground is white in JPG and BMP and stays transparent in PNG. A PNG that is asked for as it is
/// comes back unchanged. Throws DrawError, which names the package where one is missing, and
/// std::bad_alloc.
std::string drawChart(const MediaContent& chart, const std::optional<ObjectSize>& size,
                      const ImageOptions& options);

}  // namespace vornwout
