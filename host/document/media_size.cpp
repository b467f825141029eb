#include "host/document/media_size.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include <pugixml.hpp>

namespace vornwout {
namespace {

constexpr double kLargestSide = 1e6;
/// A root element with more attributes than this holds is no chart's.
constexpr std::size_t kLargestHead = 65'536;

struct LengthUnit {
  std::string_view name;
  double points;
};
constexpr std::array<LengthUnit, 7> kUnits = {{{"", kPointsPerPixel},
                                               {"px", kPointsPerPixel},
                                               {"pt", 1},
                                               {"pc", 12},
                                               {"in", 72},
                                               {"cm", 72 / 2.54},
                                               {"mm", 72 / 25.4}}};

bool isUsable(double side) { return std::isfinite(side) && side > 0 && side <= kLargestSide; }

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes a number off the front of `text`.
std::optional<double> takeNumber(std::string_view& text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

/// A length in points; nothing for a percentage, which is one of a room that is not known here.
std::optional<double> lengthIn(std::string_view text) {
  text = trimmed(text);
  const std::optional<double> number = takeNumber(text);
  const auto* unit = std::find_if(kUnits.begin(), kUnits.end(),
                                  [&](const LengthUnit& known) { return known.name == text; });
  if (!number || unit == kUnits.end() || !isUsable(*number * unit->points)) return std::nullopt;
  return *number * unit->points;
}

std::optional<MediaSize> sizeOfViewBox(std::string_view text) {
  std::array<double, 4> values{};
  for (double& value : values) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n,"), text.size()));
    const std::optional<double> number = takeNumber(text);
    if (!number) return std::nullopt;
    value = *number;
  }
  const MediaSize size{values[2] * kPointsPerPixel, values[3] * kPointsPerPixel, false};
  if (!isUsable(size.width) || !isUsable(size.height)) return std::nullopt;
  return size;
}

/// The start tag of the root element as an element of its own; empty when there is none.
std::string rootElement(std::string_view svg) {
  const std::size_t start = svg.substr(0, kLargestHead).find("<svg");
  if (start == std::string_view::npos) return {};
  const std::string_view tag = svg.substr(start, kLargestHead);
  char quote = 0;
  for (std::size_t i = 0; i < tag.size(); ++i) {
    if (quote != 0) {
      if (tag[i] == quote) quote = 0;
    } else if (tag[i] == '"' || tag[i] == '\'') {
      quote = tag[i];
    } else if (tag[i] == '>') {
      return std::string(tag.substr(0, tag[i - 1] == '/' ? i - 1 : i)) + "/>";
    }
  }
  return {};
}

std::optional<MediaSize> sizeOfSvg(std::string_view svg) {
  const std::string root = rootElement(svg);
  pugi::xml_document parsed;
  if (root.empty() || !parsed.load_buffer(root.data(), root.size())) return std::nullopt;
  const pugi::xml_node element = parsed.document_element();
  const std::optional<MediaSize> box = sizeOfViewBox(element.attribute("viewBox").value());
  std::optional<double> width = lengthIn(element.attribute("width").value());
  std::optional<double> height = lengthIn(element.attribute("height").value());
  if (!width && !height) return box;
  if (!width || !height) {
    if (!box) return std::nullopt;
    if (!width) width = *height * box->width / box->height;
    if (!height) height = *width * box->height / box->width;
    if (!isUsable(*width) || !isUsable(*height)) return std::nullopt;
  }
  return MediaSize{*width, *height, false};
}

std::uint32_t bigEndian(std::string_view bytes) {
  std::uint32_t value = 0;
  for (const char byte : bytes.substr(0, 4)) value = value << 8U | static_cast<std::uint8_t>(byte);
  return value;
}

std::optional<MediaSize> sizeOfPng(std::string_view png) {
  // The signature and the length and name of the first chunk, which is always the header.
  constexpr std::string_view kStart("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
  if (png.size() < 24 || !png.starts_with(kStart)) return std::nullopt;
  const MediaSize size{bigEndian(png.substr(16)) * kPointsPerPixel,
                       bigEndian(png.substr(20)) * kPointsPerPixel, true};
  if (!isUsable(size.width) || !isUsable(size.height)) return std::nullopt;
  return size;
}

}  // namespace

std::optional<MediaSize> naturalSize(const MediaContent& media) {
  if (media.bytes == nullptr) return std::nullopt;
  if (media.mediaType == kSvgMediaType) return sizeOfSvg(*media.bytes);
  if (media.mediaType == kPngMediaType) return sizeOfPng(*media.bytes);
  return std::nullopt;
}

std::optional<MediaSize> shownSize(const MediaContent& media,
                                   const std::optional<ObjectSize>& wanted) {
  std::optional<MediaSize> size = naturalSize(media);
  if (!wanted || (wanted->width <= 0 && wanted->height <= 0)) return size;
  const bool isWide = wanted->width > 0;
  const bool isHigh = wanted->height > 0;
  if (wanted->percent || !isWide || !isHigh) {
    if (!size) return std::nullopt;
    const double wide = wanted->width / (wanted->percent ? 100 : size->width);
    const double high = wanted->height / (wanted->percent ? 100 : size->height);
    size = MediaSize{size->width * (isWide ? wide : high), size->height * (isHigh ? high : wide),
                     size->isInPixels};
  } else {
    size = MediaSize{wanted->width, wanted->height, false};
  }
  if (!isUsable(size->width) || !isUsable(size->height)) return std::nullopt;
  return size;
}

bool isPicture(const MediaContent& media) {
  return media.mediaType == kSvgMediaType || media.mediaType == kPngMediaType;
}

}  // namespace vornwout
