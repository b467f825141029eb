// Refuses XML that is larger, deeper or wider than a document of an export can be, before a parser
// spends time on it.
#pragma once

#include <string_view>

namespace vornwout {

/// Throws XmlError. Costs one pass over the bytes and no memory.
void checkXmlBounds(std::string_view xml);

}  // namespace vornwout
