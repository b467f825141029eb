#include "host/build/png_check.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/store/deflate.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
constexpr std::uint32_t kMaxSide = 65535;
/// 100 million pixels are 400 MB once they are decoded.
constexpr std::uint64_t kMaxPixels = 100'000'000;
constexpr std::size_t kMaxBytes = std::size_t{256} << 20;
constexpr std::size_t kChunkFrame = 12;  ///< length, name and checksum

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return number;
}

/// Bit depths that go with a colour type.
bool fitsColorType(unsigned depth, unsigned type) {
  struct Allowed {
    unsigned type;
    std::array<unsigned, 5> depths;
  };
  static constexpr std::array<Allowed, 5> kAllowed = {{{0, {1, 2, 4, 8, 16}},
                                                       {2, {8, 16, 0, 0, 0}},
                                                       {3, {1, 2, 4, 8, 0}},
                                                       {4, {8, 16, 0, 0, 0}},
                                                       {6, {8, 16, 0, 0, 0}}}};
  return depth != 0 && std::any_of(kAllowed.begin(), kAllowed.end(), [&](const Allowed& allowed) {
           return allowed.type == type && std::find(allowed.depths.begin(), allowed.depths.end(),
                                                    depth) != allowed.depths.end();
         });
}

std::string headerProblem(std::string_view header) {
  if (header.size() != 13) return localized("The picture's header has a wrong size.");
  const std::uint32_t width = numberAt(header, 0);
  const std::uint32_t height = numberAt(header, 4);
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(header[at]); };
  if (width == 0 || height == 0) return localized("The picture is empty.");
  if (width > kMaxSide || height > kMaxSide || std::uint64_t{width} * height > kMaxPixels) {
    return localized("The picture is too large: ^1 by ^2 pixels.", width, height);
  }
  if (!fitsColorType(byteAt(8), byteAt(9)) || byteAt(10) != 0 || byteAt(11) != 0 ||
      byteAt(12) > 1) {
    return localized("The picture's header names a form of colours that there is not.");
  }
  return {};
}

}  // namespace

bool hasPngSignature(std::string_view bytes) { return bytes.starts_with(kSignature); }

std::string pngProblem(std::string_view bytes) {
  if (!hasPngSignature(bytes)) return localized("This is no PNG file.");
  if (bytes.size() > kMaxBytes) return localized("The picture is larger than 256 MiB.");
  bool hasHeader = false;
  bool hasPalette = false;
  bool needsPalette = false;
  bool hasData = false;
  for (std::size_t at = kSignature.size();;) {
    if (bytes.size() - at < kChunkFrame) return localized("The picture is cut off.");
    const std::size_t length = numberAt(bytes, at);
    if (length > bytes.size() - at - kChunkFrame) return localized("The picture is cut off.");
    const std::string_view name = bytes.substr(at + 4, 4);
    const std::string_view data = bytes.substr(at + 8, length);
    const bool isName = std::all_of(name.begin(), name.end(), [](char c) {
      return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
    if (!isName) return localized("A part of the picture has no name.");
    const std::string_view covered = bytes.substr(at + 4, length + 4);
    if (checksumOf(covered) != numberAt(bytes, at + 8 + length)) {
      return localized("The picture is damaged: the checksum of its part ^1 does not fit.", name);
    }
    if (!hasHeader) {
      if (name != "IHDR") return localized("The picture does not start with its header.");
      if (const std::string problem = headerProblem(data); !problem.empty()) return problem;
      needsPalette = data[9] == 3;
      hasHeader = true;
    } else if (name == "IHDR") {
      return localized("The picture has two headers.");
    } else if (name == "PLTE") {
      if (hasPalette || hasData || length == 0 || length > 768 || length % 3 != 0) {
        return localized("The picture's palette is wrong.");
      }
      hasPalette = true;
    } else if (name == "IDAT") {
      hasData = true;
    } else if (name == "IEND") {
      if (!hasData) return localized("The picture has no pixels.");
      if (needsPalette && !hasPalette) return localized("The picture's palette is missing.");
      if (at + kChunkFrame + length != bytes.size())
        return localized("Something stands behind the picture.");
      return {};
    } else if (name[0] >= 'A' && name[0] <= 'Z') {
      return localized("The picture has a part ^1 that must be understood and is not.", name);
    }
    at += kChunkFrame + length;
  }
}

}  // namespace vornwout
