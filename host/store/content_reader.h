// Reads the content of an object from XML, as docs/file-format.md describes it.
#pragma once

#include <pugixml.hpp>

#include "host/document/object_content.h"

namespace vornwout {

/// The content that `element` holds; StoreError of the kind kDamaged for what is none. Tables that
/// come back are whole: categories form trees, every cell stands in one category per dimension.
ObjectContent readContent(pugi::xml_node element);

}  // namespace vornwout
