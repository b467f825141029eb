#include "host/draw/chart_image.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <fmt/format.h>

#include "host/build/png_check.h"
#include "host/build/svg_sanitizer.h"
#include "host/document/media_size.h"
#include "host/draw/bounded_process.h"
#include "host/draw/draw_module.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr double kPointsPerInch = 72;

struct RealSize {
  double width = 0;
  double height = 0;
};

struct PixelSize {
  int width = 0;
  int height = 0;
};

MediaSize sizeOf(const MediaContent& chart, const std::optional<ObjectSize>& wanted) {
  const auto size = shownSize(chart, wanted);
  if (!size) throw DrawError(localized("The chart names no size that an image could have."));
  return *size;
}

std::string pixelCount(double count) {
  return count < 1e9 ? fmt::format("{:.0f}", count) : fmt::format("{:.1g}", count);
}

/// Whole pixels, but of any number.
RealSize scaledSize(const MediaSize& size, const ImageOptions& options) {
  const double scale = options.dotsPerInch / kPointsPerInch * options.percent / 100;
  if (!(scale > 0) || !std::isfinite(scale))
    throw DrawError(localized("The image's size is no number."));
  // Less than half a pixel is one.
  return {std::max(1.0, std::round(size.width * scale)),
          std::max(1.0, std::round(size.height * scale))};
}

/// Throws DrawError for what is too large to be drawn.
PixelSize pixelsOf(const RealSize& size) {
  const auto [width, height] = size;
  if (width > kMaxImageSide || height > kMaxImageSide) {
    throw DrawError(localized("The image would be ^1 by ^2 pixels; ^3 are the most.",
                              pixelCount(width), pixelCount(height), kMaxImageSide));
  }
  if (width * height > kMaxImagePixels) {
    throw DrawError(fmt::format("The image would be {} by {} pixels, more than {:.0f} million.",
                                width, height, kMaxImagePixels / 1e6));
  }
  return {static_cast<int>(width), static_cast<int>(height)};
}

std::string sanitized(const std::string& bytes) {
  try {
    return sanitizeSvg(bytes);
  } catch (const SvgError& error) {
    throw DrawError(drawProblem(error.what()));
  }
}

std::string drawn(const DrawRequest& request) {
  DrawModule& module = drawModule();
  const auto draw = [&] { return module.draw(request); };
  try {
    return request.isSvg ? runBounded(draw) : draw();
  } catch (const std::runtime_error& error) {
    throw DrawError(drawProblem(localized("The chart is not drawn: ^1", error.what())));
  }
}

}  // namespace

std::string drawChart(const MediaContent& chart, const std::optional<ObjectSize>& size,
                      const ImageOptions& options) {
  if (chart.bytes == nullptr) throw DrawError(localized("The chart is empty."));
  const bool isPng = chart.mediaType == kPngMediaType;
  if (!isPng && chart.mediaType != kSvgMediaType) {
    throw DrawError(localized("The chart is neither SVG nor PNG."));
  }
  if (isPng) {
    const std::string problem = pngProblem(*chart.bytes);
    if (!problem.empty()) throw DrawError(drawProblem(problem));
  }
  const MediaSize shown = sizeOf(chart, size);
  const std::optional<MediaSize> own = naturalSize(chart);
  const RealSize wanted = scaledSize(shown, options);
  if (isPng && options.format == ImageFormat::kPng && !options.grayscale &&
      wanted.width == own->width / kPointsPerPixel &&
      wanted.height == own->height / kPointsPerPixel) {
    return *chart.bytes;
  }
  const PixelSize pixels = pixelsOf(wanted);
  DrawRequest request;
  request.width = pixels.width;
  request.height = pixels.height;
  request.format = options.format;
  request.grayscale = options.grayscale;
  request.compressBmp = options.compressBmp;
  if (isPng) {
    const double pngPixels = own->width * own->height / kPointsPerPixel / kPointsPerPixel;
    if (pngPixels > kMaxImagePixels) {
      throw DrawError(
          fmt::format("The picture has {:.0f} million pixels, more than {:.0f} million.",
                      std::ceil(pngPixels / 1e6), kMaxImagePixels / 1e6));
    }
    request.bytes = *chart.bytes;
    return drawn(request);
  }
  const std::string svg = sanitized(*chart.bytes);
  request.isSvg = true;
  request.bytes = svg;
  request.shownWidth = shown.width / kPointsPerPixel;
  request.shownHeight = shown.height / kPointsPerPixel;
  return drawn(request);
}

}  // namespace vornwout
