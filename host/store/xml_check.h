// Refuses stored XML that is not well-formed in ways that the parser passes over: it stops at the
// first root, and takes references, attributes and characters as they come.
//
// Entry points: checkXml() before a part is parsed, xmlNodeCount() for what is about to be written.
// One pass over the bytes, without memory of its own but for one element's attributes. That end
// tags fit their start tags is left to the parser, which sees it anyway.
#pragma once

#include <cstddef>
#include <string_view>

namespace vornwout {

/// Throws StoreError of the kind kDamaged for UTF-8 that is no well-formed XML document, has a
/// document type declaration, or more than `maxNodes` elements, attributes, comments, CDATA
/// sections and instructions. True when there are any of the last three, which may part a text.
bool checkXml(std::string_view bytes, std::size_t maxNodes);

/// Elements and attributes of what XmlWriter has written; rather too many than too few.
std::size_t xmlNodeCount(std::string_view written);

}  // namespace vornwout
