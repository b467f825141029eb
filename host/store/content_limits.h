// How many small things one content may hold, for reading and writing alike.
//
// A hostile part has a run or a footnote for six bytes, and each takes hundreds in memory. Cells of
// tables are not counted here: they are what large documents are made of, and cost little more than
// their text.
#pragma once

#include <cstddef>
#include <string_view>

#include <pugixml.hpp>

namespace vornwout {

/// Runs, paragraphs, footnotes, arguments, items and notes of one content, together.
inline constexpr std::size_t kMaxTextElements = 1'000'000;

/// How many of them stand in a content that XmlWriter has written.
std::size_t textElementCount(std::string_view written);

/// Throws StoreError of the kind kDamaged when the element holds too many of them.
void checkTextElements(pugi::xml_node content);

}  // namespace vornwout
