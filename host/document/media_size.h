// The natural size of a medium, from the first bytes of its file: SVG and PNG.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/document/document_object.h"

namespace vornwout {

inline constexpr const char* kSvgMediaType = "image/svg+xml";
inline constexpr const char* kPngMediaType = "image/png";

struct MediaSize {
  double width = 0;  ///< points; a pixel is three quarters of one
  double height = 0;
  bool isInPixels = false;  ///< the file counts pixels, which is how a reader should be told
  friend bool operator==(const MediaSize&, const MediaSize&) = default;
};

/// Points in a pixel, as style sheets define it.
inline constexpr double kPointsPerPixel = 0.75;

/// The size that the medium names; nothing where it names none, is of another type or damaged.
std::optional<MediaSize> naturalSize(const MediaContent& media);

/// Whether the medium is of a type that charts have.
bool isPicture(const MediaContent& media);

/// How large the medium is to be shown: the wanted size where there is one, a side that it leaves
/// open in proportion to the other one; otherwise the natural size.
std::optional<MediaSize> shownSize(const MediaContent& media,
                                   const std::optional<ObjectSize>& wanted);

}  // namespace vornwout
