// How much one content may hold, for reading and writing alike.
//
// A hostile part has a run, a category or a footnote for six bytes, and each takes hundreds in
// memory; a template that names its argument again and again, within others, makes gigabytes of a
// few hundred bytes. Cells of tables are not counted here: they are what large documents are made
// of, and each has a place of its own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "host/document/object_content.h"

namespace vornwout {

/// Runs, paragraphs, footnotes, arguments, items and notes of one content, together.
inline constexpr std::size_t kMaxTextElements = 1'000'000;
/// Categories and groups of one table, in all its dimensions.
inline constexpr std::size_t kMaxCategories = 2'000'000;
inline constexpr std::size_t kMaxDimensions = 1'000;
/// Groups that a category of a table may stand in.
inline constexpr int kMaxGroupDepth = 100;
/// Bytes that the texts of one content have more when they are shown than their templates and
/// arguments have.
inline constexpr std::size_t kMaxTextGrowth = std::size_t{16} << 20;

/// Why a content could not be read again, "holds more than ..."; empty when it could. `written` is
/// what XmlWriter has made of it.
std::string excessOf(const ObjectContent& content, std::string_view written);

/// Throws StoreError of the kind kDamaged when the element, which lies in `size` bytes of XML,
/// holds too many others. Called before anything is made of them. Dimensions are left to their
/// reader.
void checkElementCounts(pugi::xml_node content, std::size_t size);

/// Throws StoreError of the kind kDamaged when the texts of a content that was read from `node`
/// grow too large. Called before any of them is shown.
void checkTextGrowth(pugi::xml_node node, const ObjectContent& content);

}  // namespace vornwout
