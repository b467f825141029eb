// What writing and reading stored contents must agree on: the words for what is an enumerator in
// memory, and the bounds of numbers.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace vornwout {

inline constexpr const char* kDocumentNamespace = "urn:vornwout:document:1";

/// By PivotPlace.
inline constexpr std::array<std::string_view, 3> kPlaceNames = {"rows", "columns", "layers"};
/// By MessageSeverity, whose values start at 1.
inline constexpr std::array<std::string_view, 3> kSeverityNames = {"information", "warning",
                                                                   "error"};
/// By TextParagraph::Kind.
inline constexpr std::array<std::string_view, 6> kParagraphNames = {"plain",    "heading", "bullet",
                                                                    "numbered", "quote",   "code"};

/// The largest size of a table's texts, and the widest width of its columns, in points.
inline constexpr double kMaxLookSize = 1000;
inline constexpr int kMaxColumnWidth = 2000;

template <std::size_t Count>
std::optional<int> indexOfName(const std::array<std::string_view, Count>& names,
                               std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<int>(found - names.begin());
}

}  // namespace vornwout
