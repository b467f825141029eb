#include "host/export/text/chart_files.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include <fmt/format.h>

#include "host/export/document_exporter.h"

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

bool isWithoutColors(ExportPNGSpec::DEPTH depth) {
  return depth == ExportPNGSpec::DEPTH::BLACKWHITE || depth == ExportPNGSpec::DEPTH::GRAYS256;
}

void refuse(const ExportOption& option, const char* name) {
  if (!option.isPresent()) return;
  throw std::runtime_error(fmt::format("because this version cannot draw charts as {}", name));
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
  root_ = root.empty() ? fs::path(documentFile).replace_extension().string() : exportPath(root);
}

std::string ChartFiles::add(const MediaContent& chart, const std::optional<ObjectSize>& size) {
  const std::string image = drawChart(chart, size, options_);
  std::string extension = formatName_;
  for (char& c : extension) c = static_cast<char>(c - 'A' + 'a');
  const std::string path = fmt::format("{}{:03}.{}", root_, count_ + 1, extension);
  files_.add(path, image, ExportErrorCode::kInvalidRootName);
  ++count_;
  return folderOf(path) == documentFolder_ ? fs::path(path).filename().string() : path;
}

void ChartFiles::report(ExportResponse& response) const {
  if (count_ == 0) return;
  response.imageRoot = root_;
  response.imageFormat = formatName_;
  response.imageCount = count_;
}

}  // namespace vornwout
