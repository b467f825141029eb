#include "host/export/chart_files.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include <fmt/format.h>

#include "host/document/media_size.h"
#include "host/document/outline.h"
#include "host/export/document_exporter.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

std::string_view keyword(ChartImageFormat format) {
  return Keywords<ChartImageFormat>::kNames[static_cast<std::size_t>(format)];
}

ImageFormat drawnAs(ChartImageFormat format) {
  switch (format) {
    case ChartImageFormat::JPG:
      return ImageFormat::kJpg;
    case ChartImageFormat::BMP:
      return ImageFormat::kBmp;
    case ChartImageFormat::PNG:
      break;
  }
  return ImageFormat::kPng;
}

const char* mediaTypeOf(ImageFormat format) {
  switch (format) {
    case ImageFormat::kJpg:
      return "image/jpeg";
    case ImageFormat::kBmp:
      return "image/bmp";
    case ImageFormat::kPng:
      break;
  }
  return kPngMediaType;
}

bool isWithoutColors(ExportPNGSpec::DEPTH depth) {
  return depth == ExportPNGSpec::DEPTH::BLACKWHITE || depth == ExportPNGSpec::DEPTH::GRAYS256;
}

void refuse(const ExportOption& option, const char* name) {
  if (!option.isPresent()) return;
  throw std::runtime_error(localized("because this version cannot draw charts as ^1", name));
}

std::string folderOf(const std::string& path) { return fs::path(path).parent_path().string(); }

}  // namespace

ChartFiles::ChartFiles(const ExportSpec& spec, const std::string& documentFile,
                       ChartImageFormat format, ExportFiles& files)
    : files_(files), documentFolder_(folderOf(documentFile)) {
  refuse(spec.emf, "EMF");
  refuse(spec.eps, "EPS");
  refuse(spec.tif, "TIF");
  std::string root;
  if (spec.png.isPresent()) {
    format = ChartImageFormat::PNG;
    root = spec.png.getImageRoot();
    options_.percent = spec.png.getPercentSize();
    options_.grayscale = isWithoutColors(spec.png.getDepth());
  } else if (spec.jpg.isPresent()) {
    format = ChartImageFormat::JPG;
    root = spec.jpg.getImageRoot();
    options_.percent = spec.jpg.getPercentSize();
    options_.grayscale = spec.jpg.getGrayscale();
  } else if (spec.bmp.isPresent()) {
    format = ChartImageFormat::BMP;
    root = spec.bmp.getImageRoot();
    options_.percent = spec.bmp.getPercentSize();
  }
  options_.compressBmp = spec.bmp.getCompress();
  options_.format = drawnAs(format);
  formatName_ = keyword(format);
  hasRoot_ = !root.empty();
  root_ = root.empty() ? fs::path(documentFile).replace_extension().string() : exportPath(root);
}

bool ChartFiles::isAskedFor(const ExportSpec& spec) {
  return spec.bmp.isPresent() || spec.emf.isPresent() || spec.eps.isPresent() ||
         spec.jpg.isPresent() || spec.png.isPresent() || spec.tif.isPresent();
}

MediaContent ChartFiles::draw(const DocumentObject& object, const MediaContent& chart) const {
  try {
    return {mediaTypeOf(options_.format),
            std::make_shared<const std::string>(drawChart(chart, object.size, options_))};
  } catch (const DrawError& error) {
    if (!isDemanded_) throw;
    throw std::runtime_error(localized("because ^1 cannot be made an image: ^2",
                                       outlineLabel(object), asClause(error.what())));
  }
}

std::string ChartFiles::write(const MediaContent& image) {
  std::string extension = formatName_;
  for (char& c : extension) c = static_cast<char>(c - 'A' + 'a');
  const std::string path = fmt::format("{}{:03}.{}", root_, count_ + 1, extension);
  files_.add(path, *image.bytes, ExportErrorCode::kInvalidRootName);
  ++count_;
  const fs::path folder = fs::path(documentFolder_).lexically_normal();
  const fs::path name = fs::path(path).lexically_normal().lexically_relative(folder);
  return name.empty() ? path : name.string();
}

void ChartFiles::report(ExportResponse& response) const {
  if (count_ == 0) return;
  response.imageRoot = root_;
  response.imageFormat = formatName_;
  response.imageCount = count_;
}

}  // namespace vornwout
