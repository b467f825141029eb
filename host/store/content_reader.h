// Reads the content of an object from XML, as docs/file-format.md describes it.
#pragma once

#include <cstddef>
#include <limits>

#include <pugixml.hpp>

#include "host/document/object_content.h"

namespace vornwout {

/// The content that `element` holds, which lies in a part of `partSize` bytes; StoreError of the
/// kind kDamaged for what is none. Tables that come back are whole: categories form trees, every
/// cell stands in one category per dimension.
ObjectContent readContent(pugi::xml_node element,
                          std::size_t partSize = std::numeric_limits<std::size_t>::max());

}  // namespace vornwout
