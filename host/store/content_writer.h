// Writes the content of an object as XML, as docs/file-format.md describes it.
#pragma once

#include <cstdint>

#include "host/document/object_content.h"
#include "host/store/xml_writer.h"

namespace vornwout {

/// Writes one element with the object's number, or nothing for a heading, which has no content.
/// Secrets are written as "***".
void writeContent(XmlWriter& xml, std::uint64_t id, const ObjectContent& content);

}  // namespace vornwout
